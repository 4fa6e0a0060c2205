#include "mix/envelopes.h"

#include "base/decibel.h"

namespace frt {
namespace {

// The envelopes that record moves while the track is in Read; trim, the master and sends never do.
bool takes_moves(EnvelopeTarget target) {
  switch (target) {
    case EnvelopeTarget::kVolume:
    case EnvelopeTarget::kMute:
    case EnvelopeTarget::kPan:
    case EnvelopeTarget::kLeftPan:
    case EnvelopeTarget::kRightPan:
      return true;
    case EnvelopeTarget::kTrim:
    case EnvelopeTarget::kMasterVolume:
    case EnvelopeTarget::kMasterMute:
    case EnvelopeTarget::kSendVolume:
    case EnvelopeTarget::kSendMute:
      break;
  }
  return false;
}

Envelope envelope_of(EnvelopeTarget target, const AutomationLane& lane, const EnvelopeState& state,
                     const Clock& clock) {
  Envelope envelope(target, lane, clock);
  envelope.active = state.active;
  envelope.armed = state.armed && takes_moves(target);
  return envelope;
}

void count_points(const std::vector<Envelope>& envelopes, EnvelopeCounts& counts) {
  int points = 0;
  for (const Envelope& envelope : envelopes) points += static_cast<int>(envelope.size());
  counts.automation_points += points;
  if (points > 0) ++counts.tracks_with_points;
}

void count_unwritten_pan(const StripRecord& strip, EnvelopeCounts& counts) {
  if (!strip.pan_lane.moves()) return;
  counts.surround_pan_points += static_cast<int>(strip.pan_lane.points.size());
  ++counts.surround_pan_strips;
}

}  // namespace

double Envelope::value_of(double stored) const {
  switch (target_) {
    case EnvelopeTarget::kVolume:
    case EnvelopeTarget::kTrim:
    case EnvelopeTarget::kMasterVolume:
    case EnvelopeTarget::kSendVolume:
      return gain_of_db(stored / 10.0);
    case EnvelopeTarget::kMute:
    case EnvelopeTarget::kMasterMute:
    case EnvelopeTarget::kSendMute:
      return stored == 1.0 ? 0.0 : 1.0;
    case EnvelopeTarget::kPan:
    case EnvelopeTarget::kLeftPan:
    case EnvelopeTarget::kRightPan:
      break;
  }
  return stored == 0.0 ? 0.0 : stored / -100.0;  // no "-0" in the project
}

void add_envelope(std::vector<Envelope>& envelopes, EnvelopeTarget target, const AutomationLane& lane,
                  const EnvelopeState& state, const Clock& clock) {
  if (lane.moves()) envelopes.push_back(envelope_of(target, lane, state, clock));
}

std::vector<Envelope> strip_envelopes(const StripRecord& strip, const StripPanning& panning, const EnvelopeState& state,
                                      const Clock& clock, EnvelopeCounts& counts) {
  std::vector<Envelope> envelopes;
  if (!strip.volume_lane.moves() && !strip.mute_lane.moves() && !strip.pan_lane.moves() && !strip.trim_lane.moves() &&
      strip.dual_pan == 0) {
    return envelopes;
  }
  if (panning.wide_strip) count_unwritten_pan(strip, counts);
  if (panning.surround_panner && strip.pan_lane.moves() && panning.panner_lanes_left)
    ++counts.surround_panner_lanes_left;

  const auto add = [&](EnvelopeTarget target, const AutomationLane& lane) {
    add_envelope(envelopes, target, lane, state, clock);
  };
  add(EnvelopeTarget::kVolume, strip.volume_lane);
  add(EnvelopeTarget::kMute, strip.mute_lane);
  if (!panning.wide_strip && !panning.surround_panner) add(EnvelopeTarget::kPan, strip.pan_lane);
  add(EnvelopeTarget::kTrim, strip.trim_lane);
  if (strip.is_stereo && strip.dual_pan_moves() && !panning.surround_panner) {
    // Both sides, also one that rests: REAPER's dual pan takes both from envelopes.
    envelopes.push_back(envelope_of(EnvelopeTarget::kLeftPan, strip.dual_left_lane, state, clock));
    envelopes.push_back(envelope_of(EnvelopeTarget::kRightPan, strip.right_pan_lane, state, clock));
  }
  count_points(envelopes, counts);
  return envelopes;
}

std::vector<Envelope> return_envelopes(const StripRecord& strip, bool wide_strip, const EnvelopeState& state,
                                       const Clock& clock, EnvelopeCounts& counts) {
  std::vector<Envelope> envelopes;
  add_envelope(envelopes, EnvelopeTarget::kVolume, strip.volume_lane, state, clock);
  add_envelope(envelopes, EnvelopeTarget::kMute, strip.mute_lane, state, clock);
  if (wide_strip) {
    count_unwritten_pan(strip, counts);
  } else {
    add_envelope(envelopes, EnvelopeTarget::kPan, strip.pan_lane, state, clock);
  }
  count_points(envelopes, counts);
  return envelopes;
}

std::vector<Envelope> master_envelopes(const StripRecord& master, const Clock& clock) {
  std::vector<Envelope> envelopes;
  add_envelope(envelopes, EnvelopeTarget::kMasterVolume, master.volume_lane, {}, clock);
  add_envelope(envelopes, EnvelopeTarget::kMasterMute, master.mute_lane, {}, clock);
  return envelopes;
}

}  // namespace frt
