// What the session's MIDI playlists tell of the clips placed on them.
#pragma once

#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

#include "model/midi/placed_tracks.h"
#include "session/clips/clip_source.h"
#include "session/clips/midi_tables.h"

namespace frt {

// How playlists say that a clip lies on top of the one behind it, or below it.
inline constexpr std::uint8_t kAboveNext = 1, kBelowNext = 2, kBelowNextToo = 3;

// Looks entries up by playlist, which is named as its track is, and clip.
class MidiPlaylistIndex {
 public:
  // `info` must live as long as the index.
  MidiPlaylistIndex(const ByName<std::vector<MidiInfoEntry>>& info, const PlacedMidiTracks& tracks);

  // The kind of the clip's entry nearest to a place in ticks, at most 960 ticks off; 0 if there is none.
  //   name  the playlist's, as PlacedMidiTracks numbers names
  std::uint8_t kind(std::uint32_t name, std::uint32_t clip, std::uint64_t position) const;

  struct Look {
    std::int32_t color = -2;  // palette index, -2 for none
    bool locked = false;
  };
  Look look(std::uint32_t name, std::uint32_t clip) const;

 private:
  struct Playlist {
    std::vector<const MidiInfoEntry*> by_place;  // by clip, then position, then as stored
    std::unordered_map<std::uint32_t, Look> looks;
  };

  std::vector<Playlist> playlists_;  // by name
};

// By placement: its position in samples where it stands on a sample-based track.
std::vector<std::optional<std::uint64_t>> find_sample_positions(const MidiSource& midi, const PlacedMidiTracks& tracks,
                                                                double rate);

}  // namespace frt
