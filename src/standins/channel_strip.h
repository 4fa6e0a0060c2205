// Avid's Channel Strip and the Clip Effects of a clip: one processor in two places, as a chain of REAPER's own
// plug-ins.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/by_name.h"
#include "session/inserts/insert_tables.h"
#include "standins/slot.h"

namespace frt {

inline constexpr std::string_view kChannelStripSignature = "AVIDChSt";

struct ChannelStripBand {
  bool in = true;
  bool shelf = false;  // of the lowest and the highest band alone
  double gain = 0;     // dB
  double frequency = 1000;
  double q = 1;

  // It changes the sound.
  bool wired() const;
};

struct ChannelStripFilter {
  bool in = false;
  int type = 0;  // 0 high-pass, 1 low-pass, 2 band-pass, others notch
  double frequency = 1000;
  double q = 1;
  bool steep = false;  // 24 dB an octave in the place of 12
};

// What the processor is set to: gains, thresholds, knees and depths in dB, times in ms, frequencies in Hz.
struct ChannelStripSettings {
  std::string_view name = "Channel Strip";  // that its slots begin with
  bool clip = false;                        // of a clip, not of an insert

  bool phase = false;  // polarity flipped
  double input_trim = 0;

  bool eq_present = true, eq_on = true;
  std::array<ChannelStripBand, 4> bands;  // from the lowest on
  bool filters_present = true, filters_on = true;
  std::array<ChannelStripFilter, 2> filters;

  bool dyn_on = true;
  bool sc_peak = true;  // the detector follows peaks, not the average
  bool sc_filter_on = true;
  int sc_filter_type = 0;  // 0 high-pass, 1 low-pass, others band-pass or notch
  double sc_filter_freq = 20;
  int sc_source = 0;  // 0 own signal, 1 key, 2 all sides of the clip or track

  bool exp_on = true;
  double exp_ratio = 1, exp_thr = -80, exp_attack = 0, exp_release = 200, exp_hold = 1;
  double exp_knee = 0, exp_depth = -36, exp_hysteresis = 0;
  bool exp_extrapolated = false;    // the ratio lies beyond those measured
  bool exp_hysteresis_set = false;  // to a value whose unit nobody knows: a clip's
  bool exp_hold_set = false;

  bool cmp_on = true;
  double cmp_ratio = 1, cmp_thr = -24, cmp_attack = 0, cmp_release = 200, cmp_knee = 0, cmp_makeup = 0;
  bool cmp_extrapolated = false;
  bool cmp_depth_set = false;

  double fader = 0;
  bool fader_on = false;
  bool clip_fader = false;  // a clip's is moved, by a scale that nobody knows

  bool order_other = false;  // not equaliser, filters, dynamics
  bool range_other = false;  // of the equaliser or the dynamics
};

// The controls of an insert by name, in their own units; empty where its first chunk is no list of controls. The first
// of a name counts; values that are no sensible number are left out.
ByName<double> named_controls(ByteView image, const InsertRecord& insert);

// Nothing where the list lacks what every Channel Strip's has.
std::optional<ChannelStripSettings> channel_strip_of_insert(const ByName<double>& controls);

// A clip's values by the names of the insert's controls, 0 to 1.
using ClipEffects = std::vector<std::pair<std::string, double>>;

// A clip's list with the values that stand where it is silent.
class ClipControls {
 public:
  explicit ClipControls(const ClipEffects& list);

  // Held to 0 to 1.
  double clip_value(std::string_view name) const;
  // In the list, and not at what it is from the start.
  bool clip_changed(std::string_view name) const;

 private:
  ByName<double> values_;
};

ChannelStripSettings channel_strip_of_clip(const ClipControls& controls);

// Where the chain stands.
struct ChannelStripPlace {
  double sample_rate = 0;         // 48 kHz where it is 0
  std::uint32_t fxid_seed = 0;    // of the first slot's identifier
  bool bypassed = false;          // the whole insert
  bool key_wired = false;         // a key input arrives ...
  int key_pair = 0;               // ... on this channel pair, 0 for 3/4
  bool side_of_a_stereo = false;  // one of a stereo pair of clips
};

struct ChannelStripChain {
  StandIn stand_in;
  std::vector<std::string_view> plugins;  // REAPER's that it is made of, each once
};

ChannelStripChain channel_strip_chain(const ChannelStripSettings& settings, const ChannelStripPlace& place);

}  // namespace frt
