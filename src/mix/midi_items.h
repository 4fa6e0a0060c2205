// MIDI clips as they are written: what stands at their start, and their events as the track's Real-Time Properties make
// them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "mix/clip_colors.h"
#include "model/midi/midi_events.h"
#include "model/midi/midi_item.h"
#include "model/tracks.h"
#include "run/options.h"
#include "session/session.h"

namespace frt {

struct TrackPage;

// What Pro Tools' Real-Time Properties do to each event; at rest nothing.
struct MidiTransform {
  std::int32_t transpose = 0;  // semitones
  bool scale_velocity = false;
  std::int32_t velocity_percent = 100, velocity_offset = 0;
  std::int32_t delay = 0;  // ticks, 960 to the quarter note
};

// One event as it is written.
struct WrittenMidiEvent {
  std::uint64_t delta = 0;  // ticks from the event before it
  std::uint8_t status = 0, data1 = 0, data2 = 0;
  bool muted = false;
  bool out_of_range = false;  // transposed past the notes there are
  std::string_view sysex;
};

class WrittenMidiEvents {
 public:
  WrittenMidiEvents(MidiEvents made, const MidiTransform& transform) : made_(std::move(made)), transform_(transform) {}

  std::size_t size() const { return made_.events.size(); }
  WrittenMidiEvent operator[](std::size_t i) const;

 private:
  std::uint64_t tick(std::size_t i) const;

  MidiEvents made_;
  MidiTransform transform_;
};

// One MIDI item as it is written. Its events are made when they are asked for, as those of the item are.
class MidiItemPage {
 public:
  // `item` must live as long as the page.
  MidiItemPage(const MidiItem& item, const MidiTransform& transform) : item_(&item), transform_(transform) {}

  const MidiItem& item() const { return *item_; }
  WrittenMidiEvents events() const { return {events_of(item_->content), transform_}; }

  std::uint32_t color = 0;                  // REAPER's form, 0 for none
  int volume = -1, pan = -1, program = -1;  // sent at the item's start; -1 for none

 private:
  const MidiItem* item_;
  MidiTransform transform_;
};

struct MidiItemCounts {
  int notes = 0;                                   // that sound
  int muted_events = 0;                            // kept but muted
  int out_of_range = 0;                            // of these: transposed past the notes there are
  int fader_tracks = 0;                            // whose clips send the track's MIDI fader or pan
  int processed_items = 0, unprocessed_items = 0;  // Real-Time Properties applied; quantize or duration, not applied
  ClipColorCounts colors;
};

// Makes the pages of the tracks' MIDI items. `pages` must hold their tracks.
MidiItemCounts mix_midi_items(const Session& session, std::span<TrackPage> pages, const ConversionOptions& options);

}  // namespace frt
