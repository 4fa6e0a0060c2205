#include "session/mixer/mixer.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "session/inserts/inserts.h"
#include "session/mixer/inactive_entries.h"
#include "session/mixer/io_paths.h"
#include "session/mixer/lanes.h"
#include "session/mixer/midi_outputs.h"
#include "session/mixer/midi_strips.h"
#include "session/mixer/name_table.h"
#include "session/mixer/playlist_owners.h"
#include "session/mixer/strip_records.h"
#include "session/mixer/track_routing.h"
#include "session/mixer/track_rows.h"
#include "session/mixer/wrappers.h"

namespace frt {
namespace {

// The names that do not stand in `others`, in their order.
std::vector<std::string_view> names_beside(std::vector<std::string_view> names,
                                           const std::vector<std::string_view>& others) {
  const std::unordered_set<std::string_view> taken(others.begin(), others.end());
  std::erase_if(names, [&](std::string_view name) { return taken.contains(name); });
  return names;
}

}  // namespace

Mixer read_mixer(const SessionImage& image, const std::vector<Block>& roots,
                 const std::vector<std::string_view>& placement_names, const std::vector<DisplayRow>& display_rows) {
  Mixer mixer;
  StripRows rows = read_strip_rows(image);
  mixer.rows = std::move(rows.rows);
  mixer.names_aligned = rows.names_aligned;
  mixer.table = choose_strip_table(image, placement_names, mixer.rows);
  mixer.bus_names = names_beside(read_bus_names(image), mixer.table.names);
  mixer.listed_buses = read_listed_buses(image.bytes(), roots).value_or(mixer.bus_names);
  mixer.strips = read_strip_records(image, mixer.table.names, mixer.bus_names, mixer.rows);
  read_strip_lanes(image, mixer.strips);
  mixer.master = find_master(image, mixer.rows, mixer.strips);
  mixer.track_rows = read_track_rows(image, mixer.rows, display_rows);
  mixer.midi_setups = read_midi_setups(image, mixer.rows);
  mixer.midi_properties = read_realtime_properties(image, mixer.rows);
  mixer.midi_states = read_midi_track_states(image, mixer.rows);
  mixer.midi_devices = read_midi_devices(image);
  mixer.midi_elsewhere = read_midi_elsewhere(image, mixer.rows, mixer.midi_devices);
  mixer.inserts = read_all_inserts(image, mixer.strips, mixer.rows);
  mixer.key_buses = read_key_buses(image);
  mixer.routes = find_routes(image);
  mixer.routing = read_track_routing(image, mixer.rows, mixer.strips, mixer.routes);
  mixer.leg_routes = find_leg_routes(image, mixer.routes, mixer.routing);
  mixer.one_sided = find_one_sided(mixer.routes, mixer.routing);
  mixer.unusual_strips = strips_of_unusual_width(mixer.strips, display_rows, mixer.one_sided);
  return mixer;
}

TrackList read_track_list(const SessionImage& image, const Mixer& mixer, std::vector<DisplayRow> display_rows) {
  TrackList list;
  list.display_rows = std::move(display_rows);
  list.inactive_names = read_inactive_entries(image);
  list.voice_off_names = read_voice_off_names(image, mixer.rows);
  list.playlist_owners = read_playlist_owners(image, mixer.strips, mixer.rows);
  return list;
}

}  // namespace frt
