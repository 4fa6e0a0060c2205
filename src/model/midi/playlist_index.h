// What the session's MIDI playlists tell of the clips placed on them.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "session/clips/clip_source.h"
#include "session/clips/midi_tables.h"

namespace frt {

// How playlists say that a clip lies on top of the one behind it, or below it.
inline constexpr std::uint8_t kAboveNext = 1, kBelowNext = 2, kBelowNextToo = 3;

// Looks entries up by playlist and clip. Every playlist is put in order once, when it is first asked for.
class MidiPlaylistIndex {
 public:
  explicit MidiPlaylistIndex(const ByName<std::vector<MidiInfoEntry>>& info) : info_(info) {}

  // The kind of the clip's entry nearest to a place in ticks, at most 960 ticks off; 0 if there is none.
  std::uint8_t kind(std::string_view playlist, std::uint32_t clip, std::uint64_t position);

  struct Look {
    std::int32_t color = -2;  // palette index, -2 for none
    bool locked = false;
  };
  Look look(std::string_view playlist, std::uint32_t clip);

 private:
  struct Playlist {
    std::vector<const MidiInfoEntry*> by_place;  // by clip, then position, then as stored
    std::unordered_map<std::uint32_t, Look> looks;
  };
  const Playlist& of(std::string_view name);

  const ByName<std::vector<MidiInfoEntry>>& info_;
  std::unordered_map<std::string_view, Playlist> playlists_;
};

// By placement: its position in samples where it stands on a sample-based track.
std::vector<std::optional<std::uint64_t>> find_sample_positions(const MidiSource& midi, double rate);

}  // namespace frt
