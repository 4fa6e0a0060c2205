// Everything that the session tells of its mixer strips and of the order in which its tracks stand.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string_view>
#include <vector>

#include "base/by_name.h"
#include "image/blocks.h"
#include "image/skips.h"
#include "session/inserts/insert_tables.h"
#include "session/mixer/master.h"
#include "session/mixer/mixer_tables.h"
#include "session/mixer/strip_rows.h"

namespace frt {

struct Mixer {
  std::vector<StripRow> rows;  // one per strip, in file order
  bool names_aligned = false;  // the track table's names line up with the rows

  StripTable table;                            // the strips' names in mixer order
  std::vector<StripRecord> strips;             // by place in the table: levels, sends, lanes
  std::vector<std::string_view> bus_names;     // by which the sends of level records are found
  std::vector<std::string_view> listed_buses;  // as the I/O setup lists them; bus_names where it can't be read
  MasterStrip master;

  // By row.
  std::vector<TrackRow> track_rows;
  std::vector<MidiStripSetup> midi_setups;
  std::vector<RealTimeProperties> midi_properties;

  std::vector<MidiDevice> midi_devices;
  std::vector<MidiElsewhere> midi_elsewhere;  // in row order

  std::vector<Route> routes;          // in file order, each once
  std::vector<TrackRouting> routing;  // of audio and instrument rows that have a name, in file order
  std::vector<LegRoute> leg_routes;   // in the order of their routes
  // By display name: the track plays to one channel of a stereo output, -1 the left or 1 the right.
  std::map<std::string_view, int> one_sided;
  std::vector<UnusualStrip> unusual_strips;  // in table order
  Inserts inserts;
  ByName<MidiTrackState> midi_states;  // by the row's current name, or its original one

  std::map<std::uint16_t, std::string_view> key_buses;  // bus name by key input id
};

struct TrackList {
  std::vector<DisplayRow> display_rows;           // the edit window's rows, top to bottom
  std::vector<std::string_view> inactive_names;   // tracks that the track table marks as inactive
  std::vector<std::string_view> voice_off_names;  // tracks whose voice is off
  ByName<std::size_t> playlist_owners;            // playlist name -> index of the strip that holds it
};

// `placement_names` are the track names of all placements.
Mixer read_mixer(const SessionImage& image, const std::vector<Block>& roots,
                 const std::vector<std::string_view>& placement_names, const std::vector<DisplayRow>& display_rows);
TrackList read_track_list(const SessionImage& image, const Mixer& mixer, std::vector<DisplayRow> display_rows);

}  // namespace frt
