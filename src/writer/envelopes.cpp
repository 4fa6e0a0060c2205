#include "writer/envelopes.h"

#include <algorithm>

#include "base/text_target.h"

namespace frt {
namespace {

constexpr std::string_view kTrackIndent = "    ", kMasterIndent = "  ";

// The envelopes that record moves while the track is in Read; trim, the master and sends never do.
constexpr std::string_view kArmable[] = {"VOLENV2", "PANENV2", "MUTEENV", "DUALPANENVL", "DUALPANENV"};

double printed_value(double value, EnvelopeKind kind) {
  switch (kind) {
    case EnvelopeKind::kVolume:
      return gain_of_db(value / 10.0);
    case EnvelopeKind::kMute:
      return value == 1.0 ? 0.0 : 1.0;
    case EnvelopeKind::kPan:
    case EnvelopeKind::kDualPan:
      break;
  }
  return value == 0.0 ? 0.0 : value / -100.0;  // no "-0" in the project
}

double seconds_of(double position, const AutomationLane& lane, const LaneTimes& times) {
  if (lane.in_ticks) return times.tempo.timeline_seconds(position);
  return position / times.sample_rate;
}

class StringTarget : public TextTarget {
 public:
  bool write(const char* data, std::size_t n) override {
    text.append(data, n);
    return true;
  }
  std::string text;
};

}  // namespace

int write_envelope(ProjectText& out, std::string_view block, const AutomationLane& lane, EnvelopeKind kind,
                   std::string_view indent, bool force, const EnvelopeState& state, const LaneTimes& times) {
  if (lane.points.empty() && !force) return 0;
  const bool mute = kind == EnvelopeKind::kMute;
  const bool armed = state.armed && std::find(std::begin(kArmable), std::end(kArmable), block) != std::end(kArmable);
  const std::string_view shape = mute ? " 1\n" : " 0\n";
  out.text(indent).text("<").text(block).text("\n");
  out.text(indent).text("  ACT ").text(state.active ? "1" : "0").text(" -1\n");
  out.text(indent).text("  VIS 1 1 1\n");
  out.text(indent).text("  LANEHEIGHT 0 0\n");
  out.text(indent).text("  ARM ").text(armed ? "1" : "0").text("\n");
  out.text(indent).text("  DEFSHAPE ").text(mute ? "1" : "0").text(" -1 -1\n");
  const auto point = [&](double seconds, double value) {
    out.text(indent).text("  PT ").fixed(seconds, 10).text(" ").fixed(printed_value(value, kind), 9).text(shape);
  };
  point(0.0, lane.initial);
  for (const auto& [position, value] : lane.points) point(seconds_of(position, lane, times), value);
  out.text(indent).text(">\n");
  return static_cast<int>(lane.points.size());
}

void write_strip_envelopes(ProjectText& out, const StripRecord& strip, const StripPanning& panning,
                           const EnvelopeState& state, const LaneTimes& times, RunCounters& counters) {
  const bool has_pan_points = !strip.pan_lane.points.empty();
  if (strip.volume_lane.points.empty() && strip.mute_lane.points.empty() && !has_pan_points &&
      strip.trim_lane.points.empty() && strip.dual_pan == 0) {
    return;
  }
  if (panning.wide_strip && has_pan_points) {
    counters.surround_pan_points += static_cast<int>(strip.pan_lane.points.size());
    ++counters.surround_pan_strips;
  }
  if (panning.surround_panner && has_pan_points && panning.panner_lanes_left) ++counters.surround_panner_lanes_left;

  const auto write = [&](std::string_view block, const AutomationLane& lane, EnvelopeKind kind, bool force) {
    return write_envelope(out, block, lane, kind, kTrackIndent, force, state, times);
  };
  int points = write("VOLENV2", strip.volume_lane, EnvelopeKind::kVolume, false);
  points += write("MUTEENV", strip.mute_lane, EnvelopeKind::kMute, false);
  if (!panning.wide_strip && !panning.surround_panner) {
    points += write("PANENV2", strip.pan_lane, EnvelopeKind::kPan, false);
  }
  points += write("VOLENV3", strip.trim_lane, EnvelopeKind::kVolume, false);
  const bool dual_pan_moves = !strip.dual_left_lane.points.empty() || !strip.right_pan_lane.points.empty();
  if (strip.is_stereo && strip.dual_pan != 0 && dual_pan_moves && !panning.surround_panner) {
    points += write("DUALPANENVL", strip.dual_left_lane, EnvelopeKind::kDualPan, true);
    points += write("DUALPANENV", strip.right_pan_lane, EnvelopeKind::kDualPan, true);
  }
  counters.automation_points += points;
  if (points > 0) ++counters.tracks_with_points;
}

std::string master_envelopes(const StripRecord& master, const LaneTimes& times) {
  StringTarget target;
  {
    ProjectText out(target);
    const EnvelopeState at_rest;
    write_envelope(out, "MASTERVOLENV2", master.volume_lane, EnvelopeKind::kVolume, kMasterIndent, false, at_rest,
                   times);
    write_envelope(out, "MASTERMUTEENV", master.mute_lane, EnvelopeKind::kMute, kMasterIndent, false, at_rest, times);
  }
  return std::move(target.text);
}

}  // namespace frt
