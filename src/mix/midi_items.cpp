#include "mix/midi_items.h"

#include <algorithm>
#include <optional>
#include <unordered_map>

#include "mix/bind.h"
#include "mix/track_page.h"

namespace frt {
namespace {

constexpr std::uint8_t kPolyAftertouch = 0xa0;
constexpr std::uint8_t kVolumeController = 7, kPanController = 10;
constexpr int kLastNote = 127;

MidiTransform transform_of(const RealTimeProperties& properties) {
  MidiTransform transform;
  if (properties.transpose_on) transform.transpose = properties.octaves * 12 + properties.semitones;
  transform.scale_velocity = properties.velocity_on;
  transform.velocity_percent = properties.velocity_percent;
  transform.velocity_offset = properties.velocity_offset;
  if (properties.delay_on) transform.delay = properties.delay_ticks;
  return transform;
}

std::uint8_t scaled_velocity(int velocity, const MidiTransform& transform) {
  const int scaled = (velocity * transform.velocity_percent + 50) / 100;  // rounded, halves up
  return static_cast<std::uint8_t>(std::clamp(scaled + transform.velocity_offset, 1, 127));
}

class MidiItemMixer {
 public:
  MidiItemMixer(const Session& session, const ConversionOptions& options) : colors_(session, options) {
    const Mixer& mixer = session.mixer;
    setups_ = by_row_names<MidiStripSetup>(mixer.rows, [&](std::size_t k) {
      const bool has = k < mixer.midi_setups.size() && mixer.midi_setups[k].cc7 >= 0;
      return has ? std::optional(mixer.midi_setups[k]) : std::nullopt;
    });
    properties_ = by_row_names<RealTimeProperties>(mixer.rows, [&](std::size_t k) {
      const bool has = k < mixer.midi_properties.size() && mixer.midi_properties[k].any_on();
      return has ? std::optional(mixer.midi_properties[k]) : std::nullopt;
    });
  }

  void add_items(TrackPage& page) {
    const OutputTrack& track = *page.track;
    if (track.midi_items.empty()) return;
    const MidiStripSetup* setup = find_by_pt_name_first(setups_, track);
    const RealTimeProperties* found = find_by_pt_name_first(properties_, track);
    const RealTimeProperties properties = found ? *found : RealTimeProperties{};
    const MidiTransform transform = transform_of(properties);
    bool sends_fader = false;
    for (const MidiItem& item : track.midi_items) {
      if (!(item.length > 0.0)) continue;
      MidiItemPage& made = page.midi_items.emplace_back(item, transform);
      made.color = colors_.of_midi_clip(item.color);
      if (properties.transpose_on || properties.velocity_on || properties.delay_on) ++counts_.processed_items;
      if (properties.quantize_on || properties.duration_on) ++counts_.unprocessed_items;
      count(made, transform);
      if (setup) sends_fader |= set_up(made, *setup, streamed(item.content));
    }
    if (sends_fader) ++counts_.fader_tracks;
  }

  MidiItemCounts take_counts() {
    counts_.colors = colors_.counts();
    return std::move(counts_);
  }

 private:
  // Those that the clip streams itself.
  struct Controllers {
    bool volume = false, pan = false;
  };
  static Controllers streamed(const MidiContent& content) {
    Controllers found;
    if (!content.controllers) return found;
    for (const MidiControllerStream& stream : content.controllers->streams) {
      if (stream.kind() != MidiControllerStream::kController || stream.size() == 0) continue;
      found.volume |= (stream.controller() & 0x7f) == kVolumeController;
      found.pan |= (stream.controller() & 0x7f) == kPanController;
    }
    return found;
  }

  void count(const MidiItemPage& made, const MidiTransform& transform) {
    const MidiItem& item = made.item();
    // Making the events of every item only to count them took as long again as writing them.
    if (transform.transpose == 0 && item.notes_in_range) {
      counts_.notes += item.note_count - item.muted_notes;
      counts_.muted_events += 2 * item.muted_notes + item.muted_controllers;
      return;
    }
    const WrittenMidiEvents events = made.events();
    for (std::size_t i = 0; i < events.size(); ++i) {
      const WrittenMidiEvent event = events[i];
      if (event.out_of_range) ++counts_.out_of_range;
      // A SysEx event has no muted form.
      if (event.muted && event.status != MidiEvent::kSysEx) ++counts_.muted_events;
      if (!event.muted && event.status == MidiEvent::kNoteOn) ++counts_.notes;
    }
  }

  // A clip with a stream of the controller keeps its stream. True if the fader or the pan is sent.
  static bool set_up(MidiItemPage& made, const MidiStripSetup& setup, const Controllers& own) {
    if (!own.volume) made.volume = setup.cc7;
    if (!own.pan) made.pan = setup.cc10;
    made.program = setup.program;
    return !own.volume || !own.pan;
  }

  std::unordered_map<std::string_view, MidiStripSetup> setups_;
  std::unordered_map<std::string_view, RealTimeProperties> properties_;
  ClipColors colors_;
  MidiItemCounts counts_;
};

}  // namespace

std::uint64_t WrittenMidiEvents::tick(std::size_t i) const {
  const auto delayed = static_cast<std::int64_t>(made_.events[i].tick) + transform_.delay;
  return static_cast<std::uint64_t>(std::max<std::int64_t>(delayed, 0));
}

WrittenMidiEvent WrittenMidiEvents::operator[](std::size_t i) const {
  const MidiEvent& event = made_.events[i];
  WrittenMidiEvent made{0, event.status, event.data1, event.data2, event.muted, false, {}};
  const std::uint64_t before = i == 0 ? 0 : tick(i - 1), now = tick(i);
  made.delta = now > before ? now - before : 0;
  if (event.status == MidiEvent::kNoteOff || event.status == MidiEvent::kNoteOn || event.status == kPolyAftertouch) {
    const int note = event.data1 + transform_.transpose;
    made.data1 = static_cast<std::uint8_t>(std::clamp(note, 0, kLastNote));
    made.out_of_range = note < 0 || note > kLastNote;
    made.muted |= made.out_of_range;
  }
  if (event.status == MidiEvent::kNoteOn && event.data2 > 0 && transform_.scale_velocity)
    made.data2 = scaled_velocity(event.data2, transform_);
  if (event.status == MidiEvent::kSysEx && event.sysex < made_.sysex.size())
    made.sysex = made_.sysex[event.sysex].bytes;
  return made;
}

MidiItemCounts mix_midi_items(const Session& session, std::span<TrackPage> pages, const ConversionOptions& options) {
  MidiItemMixer mixer(session, options);
  for (TrackPage& page : pages) mixer.add_items(page);
  return mixer.take_counts();
}

}  // namespace frt
