#include "mix/receives.h"

#include <algorithm>

#include "base/decibel.h"

namespace frt {
namespace {

constexpr int kFirstKeyChannel = 2;  // 3/4

template <typename Map>
const typename Map::mapped_type* find(const Map& map, std::string_view key) {
  const auto found = map.find(key);
  return found == map.end() ? nullptr : &found->second;
}

}  // namespace

std::vector<BusReceive> ReceiveMaker::bus_receives(std::string_view key, TrackIndex index, int channels) {
  const StripKeys* keys = find(routing_.keys.strips, key);
  const auto* legs = find(routing_.bus_legs, key);
  const auto* feeds = find(routing_.bus_feeds, key);
  std::vector<BusReceive> receives;
  const std::size_t lines =
      (keys ? 1 + keys->extra_keys.size() : 0) + (legs ? legs->size() : 0) + (feeds ? feeds->size() : 0);
  if (lines == 0) return receives;
  // The first track of a key gets all that goes by it, others as long as there is room.
  const bool is_first = met_by_bus_.insert(key).second;
  if (!is_first && !repeats_.take(lines)) return receives;
  receives.reserve(lines);
  if (keys && keys->first_key != index) {
    int channel = kFirstKeyChannel;
    receives.push_back({.source = keys->first_key, .tap = Tap::kPreFx, .channel = channel});
    for (const TrackIndex source : keys->extra_keys) {
      channel += 2;
      if (source != index) receives.push_back({.source = source, .tap = Tap::kPreFx, .channel = channel});
    }
  }
  if (legs) {
    for (const BusLeg& leg : *legs) {
      if (leg.source != index) receives.push_back({.source = leg.source, .source_channel = leg.channel});
    }
  }
  if (feeds) {
    for (const TrackIndex source : *feeds) {
      if (source == index) continue;
      receives.push_back({.source = source, .source_width = feed_width(source, channels)});
      ++counts.bus_feeds;
    }
  }
  return receives;
}

std::vector<SendReceive> ReceiveMaker::send_receives(std::string_view key, TrackIndex index, bool active) {
  std::vector<SendReceive> receives;
  const auto* records = find(routing_.sends.receives, key);
  if (!records) return receives;
  const bool is_first = met_by_sends_.insert(key).second;
  for (const ReceiveRecord& record : *records) {
    if (record.source == index) continue;
    const SendRecord& send = *record.send;
    if (!is_first && !repeats_.take(1 + send.volume_lane.points.size() + send.mute_lane.points.size())) break;
    SendReceive& receive = receives.emplace_back();
    receive.source = record.source;
    receive.tap = send.post_fader ? Tap::kPostFader : Tap::kPreFader;
    receive.gain = gain_of_db(send.level_db);
    receive.pan = record.pan;
    receive.mute = !send.mute_lane.moves() && send.mute_lane.initial != 0;
    add_envelope(receive.envelopes, EnvelopeTarget::kSendVolume, send.volume_lane, {active, false}, clock_);
    add_envelope(receive.envelopes, EnvelopeTarget::kSendMute, send.mute_lane, {active, false}, clock_);
    ++counts.sends;
    if (receive.mute) ++counts.sends_off;
    for (const Envelope& envelope : receive.envelopes) counts.send_points += static_cast<int>(envelope.size());
  }
  return receives;
}

// A feed carries all channels of a wide source if this track is wide enough for them, else its first pair.
int ReceiveMaker::feed_width(TrackIndex source, int channels) const {
  constexpr int kPair = 2;
  const int width = bound_.tracks[source].width > 0 ? bound_.tracks[source].width : kPair;
  const SurroundPanner* panner = find_by_key(panners_, tracks_[source]);
  const int carried = (std::max(width, panner ? panner->speakers : 0) + 1) / 2 * 2;
  return carried != kPair && carried <= channels ? carried : 0;
}

}  // namespace frt
