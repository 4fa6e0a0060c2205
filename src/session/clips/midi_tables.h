// What the session's MIDI data and MIDI playlists tell beside notes and placements.
//
// Texts and bytes are views into the session image, which outlives every table. Ticks are 1/960000 of a quarter note.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "base/by_name.h"
#include "base/bytes.h"

namespace frt {

struct MidiControllerEvent {
  std::uint64_t position = 0;  // ticks, 40 bits as stored
  std::int32_t value = 0;
};

// One stream of controller values. They stay where they are and are read when they are asked for.
class MidiControllerStream {
 public:
  static constexpr std::uint8_t kPitchBend = 1, kController = 2, kAftertouch = 4;

  MidiControllerStream() = default;
  // `events` is the image from the first event on, holding at least `count` of them.
  MidiControllerStream(ByteView events, std::uint32_t count, std::uint8_t kind, std::uint8_t controller)
      : events_(events), count_(count), kind_(kind), controller_(controller) {}

  std::uint8_t kind() const { return kind_; }
  std::uint8_t controller() const { return controller_; }  // its number, for kController
  std::uint32_t size() const { return count_; }
  MidiControllerEvent operator[](std::uint32_t i) const;  // all 0 for an index outside

 private:
  ByteView events_;
  std::uint32_t count_ = 0;
  std::uint8_t kind_ = 0, controller_ = 0;
};

struct SysExEvent {
  std::uint64_t position = 0;  // ticks, 40 bits as stored
  std::string_view bytes;      // without 0xf0 and 0xf7
};

// What stands behind one run of notes: the same numbers as those of the note chunks, where the data is whole.
struct MidiChunk {
  std::uint64_t origin = 0;  // ticks, 40 bits as stored: the chunk's zero
  std::uint32_t note_count = 0;
  std::vector<MidiControllerStream> streams;
  std::vector<SysExEvent> sysex;
};

// One entry of a MIDI playlist.
struct MidiInfoEntry {
  std::uint32_t clip = 0;   // the clip's number
  std::int16_t color = -2;  // palette index, -2 for none
  std::uint8_t kind = 0;    // 1: lies on top of what follows; 2 and 3: what follows lies on top
  bool locked = false;
  std::uint64_t position = 0;  // ticks, the distance from the tick origin
};

// The same place as the playlist stores it, for tracks that count in samples.
struct MidiPosition {
  std::uint16_t clip = 0;      // the clip's number
  std::uint64_t position = 0;  // 40 bits as stored
};

struct MidiPlaylists {
  // By the playlist's name, in file order. Where several bear a name, their entries follow each other.
  ByName<std::vector<MidiInfoEntry>> info;
  ByName<std::vector<MidiPosition>> positions;
};

}  // namespace frt
