#include "mix/sends.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <unordered_set>

namespace frt {
namespace {

using StereoStrips = std::unordered_map<std::string_view, bool>;

StereoStrips stereo_strips(const std::vector<StripRecord>& strips) {
  StereoStrips stereo;
  for (const StripRecord& strip : strips) {
    if (strip.has_mixer_data) stereo.try_emplace(strip.name, strip.is_stereo);
  }
  return stereo;
}

class SendRouter {
 public:
  SendRouter(const BusMaps& buses, const RouteEnds& ends, std::size_t tracks) : buses_(buses), ends_(ends) {
    sends_.prefader_source.resize(tracks);
  }

  // `stereo` is null where the row has no strip that tells it.
  void route(const TrackRouting& row, const SendRecord& send, const bool* stereo) {
    const std::string_view target = target_of(send.bus);
    const double pan = pan_of(row, send, stereo ? *stereo : send.right_pan != 0);
    std::optional<TrackIndex> source = ends_.source(row.display_name);
    if (!source) return;
    const std::size_t cost = 1 + send.volume_lane.points.size() + send.mute_lane.points.size();
    std::vector<ReceiveRecord>& receives = sends_.receives[target];
    do {
      receives.push_back({*source, &send, pan});
      if (!send.post_fader) sends_.prefader_source[*source] = true;
      source = ends_.next_source(*source);
    } while (source && repeats_.take(cost));
  }

  Sends take() { return std::move(sends_); }

 private:
  // A bus that nobody takes is a target of its own.
  std::string_view target_of(std::string_view bus) {
    const ResolvedBus resolved = resolve_bus(buses_, bus);
    if (resolved.count > 1) ++sends_.counts.split_pair;
    if (resolved.aux.empty()) return bus;
    ++sends_.counts.to_aux;
    if (!buses_.bus_aux.contains(bus)) ++sends_.counts.matched_leg;
    return resolved.aux;
  }

  // REAPER gives a send one pan knob, Pro Tools gives a stereo one two.
  double pan_of(const TrackRouting& row, const SendRecord& send, bool stereo) {
    constexpr std::int32_t kFar = 100;
    if (send.pan_count < 2) return 0;
    SendCounts& counts = sends_.counts;
    if (send.first_pan_lane.moves() || send.second_pan_lane.moves()) ++counts.pan_lanes_left;
    if (stereo) {
      const bool moved = send.left_pan != -kFar || send.right_pan != kFar;
      if (moved && centered_.insert(row.display_name).second) counts.centered.emplace_back(row.display_name);
      return 0;
    }
    if (send.left_pan != 0) ++counts.panned;
    return std::clamp(send.left_pan, -kFar, kFar) / double{kFar};
  }

  const BusMaps& buses_;
  const RouteEnds& ends_;
  Sends sends_;
  std::unordered_set<std::string_view> centered_;
  Repeats repeats_;
};

}  // namespace

Sends route_sends(const Mixer& mixer, const BusMaps& buses, const RouteEnds& ends, std::size_t tracks) {
  const StereoStrips strips = stereo_strips(mixer.strips);
  SendRouter router(buses, ends, tracks);
  for (const TrackRouting& row : mixer.routing) {
    const auto strip = strips.find(row.display_name);
    const bool* stereo = strip == strips.end() ? nullptr : &strip->second;
    for (const SendRecord& send : row.sends) router.route(row, send, stereo);
  }
  return router.take();
}

}  // namespace frt
