#include "model/midi/midi_events.h"

#include <algorithm>
#include <cmath>

namespace frt {
namespace {

constexpr int kLeastBend = -8192, kMostBend = 8191;

double rounded(double ticks) { return std::floor(ticks + 0.5); }

std::uint64_t to_tick(double ticks) {
  constexpr double kLastTick = 1e18;
  return ticks > 0.0 ? static_cast<std::uint64_t>(std::min(ticks, kLastTick)) : 0;
}

// Raw units from the source's start as the item holds it: the clip's own start, or the notes' zero where the clip
// starts behind that.
double from_source_start(const MidiContent& content, std::int64_t place) {
  return static_cast<double>(content.offset < 0 ? place - content.offset : place);
}

bool is_inside(const MidiContent& content, std::int64_t place) {
  return place >= 0 && (place < content.length || content.length == 0);
}

struct PlacedNote {
  std::uint64_t on = 0, off = 0;
  std::int64_t end = 0;  // raw units from the clip's start
  bool inside = false;
  bool too_short = false;  // to exist at the item's resolution

  bool muted(const MidiContent& content) const { return too_short || (!inside && !content.keep_inaudible); }
  bool past_end(const MidiContent& content) const {
    return inside && !too_short && content.length > 0 && end > content.length;
  }
};

PlacedNote placed(const MidiContent& content, const MidiNote& note) {
  // A note before the chunk's zero has a position that wraps.
  const std::int64_t start = static_cast<std::int64_t>(note.position) + content.offset;
  PlacedNote result;
  result.end = start + static_cast<std::int64_t>(note.length);
  result.inside = is_inside(content, start);
  const double on = rounded(from_source_start(content, start) * content.unit);
  const double off = rounded(from_source_start(content, result.end) * content.unit);
  result.too_short = !(off > on);
  result.on = to_tick(on);
  result.off = std::max(to_tick(off), result.on + 1);
  return result;
}

template <typename Function>
void for_each_note(const MidiContent& content, Function function) {
  if (!content.notes) return;
  const NoteChunk& notes = *content.notes;
  for (std::uint32_t i = 0; i < notes.size(); ++i) {
    if (const MidiNote note = notes[i]; note.length > 0) function(note, placed(content, note));
  }
}

// Where a controller or SysEx event stands, of a position as stored.
struct PlacedEvent {
  std::uint64_t tick = 0;
  bool inside = false;
};

PlacedEvent placed(const MidiContent& content, std::uint64_t position) {
  const auto rel = static_cast<std::int64_t>(position) - static_cast<std::int64_t>(content.controllers->origin);
  const std::int64_t place = rel + content.offset;
  return {to_tick(rounded(from_source_start(content, place) * content.unit)), is_inside(content, place)};
}

MidiEvent controller_event(const MidiControllerStream& stream, std::int32_t value) {
  MidiEvent event;
  event.size = 2;
  const auto low_bits = [](std::int32_t number) { return static_cast<std::uint8_t>(number & 0x7f); };
  switch (stream.kind()) {
    case MidiControllerStream::kAftertouch:
      event.status = MidiEvent::kAftertouch;
      event.data1 = low_bits(value);
      event.size = 1;
      break;
    case MidiControllerStream::kController:
      event.status = MidiEvent::kController;
      event.data1 = stream.controller() & 0x7f;
      event.data2 = low_bits(value);
      break;
    default: {
      const std::int32_t bend = std::clamp(value, kLeastBend, kMostBend);
      event.status = MidiEvent::kPitchBend;
      event.data1 = low_bits(bend);
      event.data2 = low_bits(bend >> 7) ^ 0x40;  // the wheel at rest is 0x40 0x00
    }
  }
  return event;
}

}  // namespace

MidiEvents events_of(const MidiContent& content) {
  MidiEvents result;
  std::vector<MidiEvent>& events = result.events;
  if (content.notes) events.reserve(std::size_t{content.notes->size()} * 2);
  for_each_note(content, [&](const MidiNote& note, const PlacedNote& place) {
    MidiEvent event;
    event.data1 = note.note;
    event.size = 2;
    event.muted = place.muted(content);
    event.tick = place.on;
    event.status = MidiEvent::kNoteOn;
    event.data2 = note.velocity;
    events.push_back(event);
    event.tick = place.off;
    event.status = MidiEvent::kNoteOff;
    event.data2 = 0;
    events.push_back(event);
  });
  if (content.controllers) {
    const auto add = [&](MidiEvent event, const PlacedEvent& place) {
      event.tick = place.tick;
      event.muted = !place.inside && !content.keep_inaudible;
      events.push_back(event);
    };
    for (const MidiControllerStream& stream : content.controllers->streams) {
      for (std::uint32_t i = 0; i < stream.size(); ++i) {
        const MidiControllerEvent event = stream[i];
        add(controller_event(stream, event.value), placed(content, event.position));
      }
    }
    result.sysex = content.controllers->sysex;
    for (std::uint32_t i = 0; i < result.sysex.size(); ++i) {
      MidiEvent event;
      event.status = MidiEvent::kSysEx;
      event.sysex = i;
      add(event, placed(content, result.sysex[i].position));
    }
  }
  const auto earlier = [](const MidiEvent& a, const MidiEvent& b) { return a.tick < b.tick; };
  if (!std::is_sorted(events.begin(), events.end(), earlier)) std::stable_sort(events.begin(), events.end(), earlier);
  return result;
}

MidiContentCounts count_content(const MidiContent& content) {
  MidiContentCounts counts;
  for_each_note(content, [&](const MidiNote& note, const PlacedNote& place) {
    constexpr std::uint8_t kLastNote = 127;
    ++counts.notes;
    if (place.muted(content)) ++counts.muted_notes;
    if (note.note > kLastNote) counts.notes_in_range = false;
    if (place.past_end(content)) {
      ++counts.notes_past_end;
      counts.overrun = std::max(counts.overrun, place.end - content.length);
    }
    if (content.keep_inaudible && !place.inside && !place.too_short) counts.kept_unmuted += 2;
  });
  if (!content.controllers) return counts;
  for (const MidiControllerStream& stream : content.controllers->streams) {
    for (std::uint32_t i = 0; i < stream.size(); ++i) {
      const bool inside = placed(content, stream[i].position).inside;
      ++(inside ? counts.controllers : counts.kept_unmuted);
      if (!inside && !content.keep_inaudible) ++counts.muted_controllers;
    }
  }
  for (const SysExEvent& event : content.controllers->sysex) {
    ++counts.sysex;
    if (placed(content, event.position).inside) continue;
    ++counts.sysex_outside;
    ++counts.kept_unmuted;
  }
  if (!content.keep_inaudible) counts.kept_unmuted = 0;
  return counts;
}

}  // namespace frt
