#include "standins/reaeq.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>

#include "base/decibel.h"
#include "plugins/knowledge.h"

namespace frt {
namespace {

constexpr std::string_view kIdent = "1919247729<56535472656571726561657100000000>";
constexpr std::uint32_t kTailWord = 0x00100000;

// Version, band count; of each band type, enabled, frequency, linear gain, bandwidth, a flag; two words, the output
// gain, the end.
constexpr std::uint32_t kVersion = 33;
constexpr std::size_t kAroundBands = 40, kBandSize = 33;
constexpr std::uint8_t kBandFlag[] = {1}, kEnd[] = {2, 0, 1, 0};
constexpr std::size_t kZerosAtEnd = 12;

constexpr double kOctavesPerAsinh = 2.8853900817779268;  // 2 / ln 2
constexpr double kSteepestSlope = 1.2, kLeastDivisor = 1e-9;

void put_double(StateWriter& out, double value) {
  const auto bits = std::bit_cast<std::uint64_t>(value);
  out.u32(bits).u32(bits >> 32);
}

double held_gain(double db) { return gain_of_db(std::clamp(db, kLeastEqGain, kMostEqGain)); }

}  // namespace

double octaves_of_q(double q) { return kOctavesPerAsinh * std::asinh(1 / (2 * q)); }

double octave_share(double frequency, double sample_rate) {
  const double w = std::min(2 * std::numbers::pi * frequency / sample_rate, std::numbers::pi / 2);
  return w > 0 ? std::sin(w) / w : 1;
}

double shelf_bandwidth(double q, double gain) {
  const double a = std::pow(10.0, gain / 40);
  const double divisor = 1 + (1 / (q * q) - 2) / (a + 1 / a);
  const double slope = divisor > kLeastDivisor ? 1 / divisor : kSteepestSlope;
  return 1 / std::sqrt(std::min(slope, kSteepestSlope));
}

ReaEqBand written(const ReaEqBand& band, double sample_rate) {
  ReaEqBand result = band;
  result.frequency = std::clamp(band.frequency, kLeastEqFrequency, kMostEqFrequency);
  result.gain = std::clamp(band.gain, kLeastEqGain, kMostEqGain);
  const double q = std::clamp(band.bandwidth, kLeastEqQ, kMostEqQ);
  result.bandwidth =
      band.is_shelf() ? shelf_bandwidth(q, result.gain) : octaves_of_q(q) * octave_share(result.frequency, sample_rate);
  return result;
}

StateBytes reaeq_state(std::span<const ReaEqBand> bands, double output_gain) {
  StateWriter out(kAroundBands + kBandSize * bands.size());
  out.u32(kVersion).u32(bands.size());
  for (const ReaEqBand& band : bands) {
    out.u32(static_cast<std::uint32_t>(band.type)).u32(band.enabled ? 1 : 0);
    put_double(out, band.frequency);
    put_double(out, held_gain(band.gain));
    put_double(out, band.bandwidth);
    out.raw({kBandFlag, sizeof kBandFlag});
  }
  out.u32(1).u32(1);
  put_double(out, held_gain(output_gain));
  return out.zeros(kZerosAtEnd).raw({kEnd, sizeof kEnd}).take();
}

StandInSlot reaeq_slot(std::span<const ReaEqBand> bands, double output_gain) {
  StandInSlot slot;
  slot.vst_display = "VST: ReaEQ (Cockos)";
  slot.vst_file = "reaeq.dll";
  slot.vst_ident = kIdent;
  slot.vst_state = reaeq_state(bands, output_gain);
  KnowledgeRecord record;
  record.ident = kIdent;
  record.tail_word = kTailWord;
  slot.vst_header = state_header(record, slot.vst_state.size(), StripPins{});
  slot.vst_record = {0, 0, 0x10, 0, 0, 0};
  return slot;
}

}  // namespace frt
