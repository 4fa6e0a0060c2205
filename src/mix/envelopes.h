// Automation as REAPER's envelopes: which lanes of a strip become which envelope, and what their points are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "session/clock.h"
#include "session/mixer/mixer_tables.h"

namespace frt {

enum class EnvelopeTarget : std::uint8_t {
  kVolume,
  kMute,
  kPan,
  kTrim,
  kLeftPan,  // of a stereo strip whose sides are panned apart
  kRightPan,
  kMasterVolume,
  kMasterMute,
  kSendVolume,
  kSendMute,
};

// One envelope as it is written. A point is worked out when it is asked for: a long lane isn't held twice.
class Envelope {
 public:
  struct Point {
    double seconds = 0;
    double value = 0;  // gain for volume and trim; 1 for "plays", 0 for muted; pan -1 to 1, positive to the left
  };

  // `lane` and `clock` must live as long as the envelope.
  Envelope(EnvelopeTarget target, const AutomationLane& lane, const Clock& clock)
      : target_(target), lane_(&lane), clock_(&clock) {}

  EnvelopeTarget target() const { return target_; }
  bool is_switch() const {
    return target_ == EnvelopeTarget::kMute || target_ == EnvelopeTarget::kMasterMute ||
           target_ == EnvelopeTarget::kSendMute;
  }
  double initial() const { return value_of(lane_->initial); }
  double stored_initial() const { return lane_->initial; }
  std::size_t size() const { return lane_->points.size(); }
  Point operator[](std::size_t i) const { return {seconds(i), value_of(stored(i))}; }
  // The same in two steps, for those who meet one stored value again and again.
  double seconds(std::size_t i) const { return clock_->of(lane_->points[i].first, lane_->in_ticks); }
  double stored(std::size_t i) const { return lane_->points[i].second; }  // in Pro Tools' unit
  double value_of(double stored) const;

  bool active = true;  // plays
  bool armed = false;  // takes new moves

 private:
  EnvelopeTarget target_;
  const AutomationLane* lane_;
  const Clock* clock_;
};

// Whether the envelopes of a track play and take new moves.
struct EnvelopeState {
  bool active = true;
  bool armed = false;
};

// What else decides a strip's pan envelopes.
struct StripPanning {
  bool wide_strip = false;       // wider than stereo or of unknown width: it has no single pan
  bool surround_panner = false;  // a surround panner on the track places it
  // With a panner: its lanes are not written, as its source is stereo or it holds fewer than seven.
  bool panner_lanes_left = false;
};

struct EnvelopeCounts {
  int automation_points = 0, tracks_with_points = 0;
  int surround_pan_points = 0;         // pan points of wide strips, not written
  int surround_pan_strips = 0;         // wide strips that have such points
  int surround_panner_lanes_left = 0;  // panner lanes not written
};

// The envelope of one lane; nothing for a lane without points.
void add_envelope(std::vector<Envelope>& envelopes, EnvelopeTarget target, const AutomationLane& lane,
                  const EnvelopeState& state, const Clock& clock);

// All envelopes of a track's strip, in the order in which they are written.
std::vector<Envelope> strip_envelopes(const StripRecord& strip, const StripPanning& panning, const EnvelopeState& state,
                                      const Clock& clock, EnvelopeCounts& counts);

// Those of a track that stands for a send target alone.
std::vector<Envelope> return_envelopes(const StripRecord& strip, bool wide_strip, const EnvelopeState& state,
                                       const Clock& clock, EnvelopeCounts& counts);

// The master's.
std::vector<Envelope> master_envelopes(const StripRecord& master, const Clock& clock);

}  // namespace frt
