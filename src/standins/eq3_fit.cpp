#include "standins/eq3_fit.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>
#include <span>
#include <utility>
#include <vector>

namespace frt {
namespace {

// ---- the grid ----

constexpr double kFirstFrequency = 20, kTopFrequency = 20000;  // Hz
constexpr double kTopOfRate = 0.46, kLastOfRate = 0.48;
constexpr int kPointsPerOctave = 24, kPointsBehindTop = 8;

// Above the first of these levels errors count as dB, down to the other as amplitudes.
constexpr double kAmplitudeBelow = -20, kIgnoredBelow = -50;  // dB
constexpr double kAmplitudeWeight = 25;

constexpr double kNearEnough = 0.05, kWithinReach = 0.5;  // dB
constexpr double kLeastGain = 1e-6;                       // dB, of a filter that does anything

// ---- what bands can hold ----

constexpr double kLeastFrequency = 10, kMostOfRate = 0.49;

// ---- the search ----

// Restarts, and above which error they are worth their time: a few to come nearer, more to come within reach.
constexpr std::size_t kFirstRestarts = 4, kFewRestarts = 12, kMostRestarts = kFewRestarts + 27;
constexpr double kWorthFew = 0.3, kWorthMost = 0.45;  // dB
constexpr double worth_restarting(std::size_t i) {
  return i < kFirstRestarts ? kNearEnough : i < kFewRestarts ? kWorthFew : kWorthMost;
}
constexpr std::array<double, 7> kRestartSteps = {1, 5, -2, -8, 2.5, -12, 0.5};

constexpr double kLogStep = 0.1, kGainStep = 1.0;
constexpr std::size_t kMostBands = 6;  // a shelf with its corner, and three
constexpr std::size_t kMostCoordinates = 3 * kMostBands;

bool has_gain(const ReaEqBand& band) { return band.is_shelf() || band.type == ReaEqType::kBand; }

// A round's added band: a start for each of the three pairs of frequency and gain.
struct AddedBand {
  ReaEqType type;
  double bandwidth;
  std::array<double, 3> of_rate;
};
constexpr std::array<AddedBand, 3> kAdded = {{{ReaEqType::kHighShelf, 0.7, {0.45, 0.4, 0.33}},
                                              {ReaEqType::kBand, 1.0, {0.42, 0.38, 0.3}},
                                              {ReaEqType::kBand, 1.0, {0.36, 0.3, 0.25}}}};
constexpr std::array<double, 3> kAddedGains = {0, 3, -3};  // dB

// ---- numbers by pairs: one instruction takes two points, in each build the same ----

using Pair [[gnu::vector_size(16)]] = double;
using PairBits [[gnu::vector_size(16)]] = std::uint64_t;

constexpr std::size_t kChunk = 4;  // pairs, between looks at the limit

Pair both(double value) { return Pair{value, value}; }

// The natural logarithm of numbers above 0. Within 1e-9 of it, at a third of the time.
Pair log_of(Pair x) {
  constexpr std::uint64_t kRootHalf = 0x3FE6A09E667F3BCD, kExponentZero = std::uint64_t{0x400} << 52;
  constexpr std::uint64_t kExponentBits = ~((std::uint64_t{1} << 52) - 1), kToDouble = 0x4330000000000000;
  const auto bits = std::bit_cast<PairBits>(x);
  // x is m times a power of 2, m from sqrt(1/2) to sqrt(2); the power, plus 1024, stands in the upper bits of k.
  const PairBits k = bits - kRootHalf + kExponentZero;
  const Pair m = std::bit_cast<Pair>(bits - (k & kExponentBits) + kExponentZero);
  const Pair e = std::bit_cast<Pair>((k >> 52) | kToDouble) - (0x1p52 + 1024);
  const Pair z = (m - 1.0) / (m + 1.0);
  const Pair zz = z * z;
  return e * std::numbers::ln2 + z * (2.0 + zz * (2.0 / 3 + zz * (2.0 / 5 + zz * (2.0 / 7 + zz * (2.0 / 9)))));
}

Pair size_of(Pair x) { return std::bit_cast<Pair>(std::bit_cast<PairBits>(x) & (std::uint64_t{0x7FFFFFFFFFFFFFFF})); }

// ---- responses ----

// The squared amplitude as a quotient: both sides a + b x + c x², x the squared frequency over that of the corner.
struct Response {
  std::array<double, 3> above{}, below{};

  double at(double x) const {
    return (above[0] + x * (above[1] + x * above[2])) / (below[0] + x * (below[1] + x * below[2]));
  }
};

double amplitude_of(double gain) { return std::pow(10.0, gain / 40); }

Response peak_response(double a, double q) {
  const double wide = a / q, narrow = 1 / (a * q);
  return {{1, wide * wide - 2, 1}, {1, narrow * narrow - 2, 1}};
}

Response shelf_response(bool high, double a, double q) {
  const double middle = a / (q * q) - 2 * a, aa = a * a;
  const std::array<double, 3> rising = {1, middle, aa}, falling = {aa, middle, 1};
  Response result{high ? rising : falling, high ? falling : rising};
  for (double& term : result.above) term *= aa;
  return result;
}

Response pass_response(bool high, double q) {
  const std::array<double, 3> below = {1, 1 / (q * q) - 2, 1};
  return high ? Response{{0, 0, 1}, below} : Response{{1, 0, 0}, below};
}

// The analog form of the band: its digital one is the same at the tangents of the half frequencies.
Response band_response(const ReaEqBand& band) {
  switch (band.type) {
    case ReaEqType::kLowShelf:
    case ReaEqType::kHighShelf:
      return shelf_response(band.type == ReaEqType::kHighShelf, amplitude_of(band.gain), band.bandwidth);
    case ReaEqType::kLowPass:
    case ReaEqType::kHighPass:
      return pass_response(band.type == ReaEqType::kHighPass, band.bandwidth);
    case ReaEqType::kNotch:
      return {{1, -2, 1}, {1, 1 / (band.bandwidth * band.bandwidth) - 2, 1}};
    case ReaEqType::kBandPass:
      return {{0, 1 / (band.bandwidth * band.bandwidth), 0}, {1, 1 / (band.bandwidth * band.bandwidth) - 2, 1}};
    case ReaEqType::kBand:
      break;
  }
  return peak_response(amplitude_of(band.gain), band.bandwidth);
}

double target_power(const EqFilter& filter, double frequency) {
  const double ratio = frequency / filter.freq, x = ratio * ratio;
  switch (filter.kind) {
    case EqFilter::Kind::kShelf:
      return shelf_response(filter.is_high(), amplitude_of(filter.gain), filter.q).at(x);
    case EqFilter::Kind::kPass: {
      double power = x;
      for (int i = 1; i < filter.order; ++i) power *= x;
      return (filter.is_high() ? power : 1) / (1 + power);
    }
    case EqFilter::Kind::kPeak:
    case EqFilter::Kind::kNotch:
      break;
  }
  return peak_response(amplitude_of(filter.gain), filter.q).at(x);
}

// A value that is no number counts as the lower end.
double held(double value, double least, double most) { return value > least ? std::min(value, most) : least; }

double tangent_square(double frequency, double sample_rate) {
  const double t = std::tan(std::numbers::pi * frequency / sample_rate);
  return t * t;
}

enum class Measure : std::uint8_t { kMeanOfEighthPowers, kWorst };

}  // namespace

// ---- one filter's search ----

class EqFitter::Search {
 public:
  explicit Search(double sample_rate) : rate_(sample_rate) {
    const double top = std::min(kTopOfRate * rate_, kTopFrequency), last = kLastOfRate * rate_;
    for (int k = 0;; ++k) {
      const double frequency = kFirstFrequency * std::exp2(static_cast<double>(k) / kPointsPerOctave);
      if (!(frequency < top)) break;
      grid_.push_back(frequency);
    }
    for (int k = 0; k < kPointsBehindTop; ++k) grid_.push_back(top + (last - top) * k / (kPointsBehindTop - 1));
    // From the top down: there the errors are, and a vertex that has too many is not measured to the end.
    std::reverse(grid_.begin(), grid_.end());
    for (const double frequency : grid_) tangents_.push_back(tangent_square(frequency, rate_));
  }

  void aim_at(const EqFilter& filter);
  double worst_error(std::span<const ReaEqBand> bands);
  // Two walks, by either measure; the bands where the second ended, and their worst error.
  double walk(std::vector<ReaEqBand>& bands, double step = 1);

  ReaEqBand added(const AddedBand& band, std::size_t pair) const {
    return {band.type, true, band.of_rate[pair] * rate_, kAddedGains[pair], band.bandwidth};
  }
  void hold(std::span<ReaEqBand> bands) const {
    for (ReaEqBand& band : bands) hold(band);
  }
  void hold_below_half(std::span<ReaEqBand> bands) const {
    for (ReaEqBand& band : bands) band.frequency = std::min(band.frequency, kMostOfRate * rate_);
  }

 private:
  // Two of them. What stands behind the bands (a first-order filter) is in `scale`.
  struct Points {
    Pair tangent;  // of the half frequency, squared
    Pair scale;    // of the bands' squared amplitude; of points in dB over that of the target
    Pair target;   // amplitude
    Pair weight;   // 0 for one that only fills up
  };
  using Point = std::array<double, 3>;  // the first three
  struct Vertex {
    std::array<double, kMostCoordinates> at{};
    double error = 0;
  };
  struct Terms {
    std::array<double, 3> above, below;
  };

  void hold(ReaEqBand& band) const;
  static std::vector<Points> paired(const std::vector<Point>& points);
  Terms terms_of(const ReaEqBand& band) const;
  double error_of(std::span<const Terms> terms, Measure measure, double limit) const;
  std::vector<double> coordinates_of(std::span<const ReaEqBand> bands) const;
  void measure(Vertex& vertex, double limit);
  void place(const Vertex& vertex);
  void walk_once(std::vector<double>& start, double step, int iterations);

  double rate_;
  std::vector<double> grid_, tangents_;
  std::vector<Points> in_db_, in_amplitude_;

  // Of the walk.
  std::vector<ReaEqBand> bands_;
  std::vector<Terms> terms_;
  Measure measure_ = Measure::kWorst;
};

void EqFitter::Search::hold(ReaEqBand& band) const {
  band.frequency = held(band.frequency, kLeastFrequency, kMostOfRate * rate_);
  band.gain = held(band.gain, kLeastEqGain, kMostEqGain);
  band.bandwidth = held(band.bandwidth, kLeastEqQ, kMostEqQ);
  if (band.is_shelf()) band.bandwidth = std::min(band.bandwidth, steepest_shelf_q(band.gain));
}

std::vector<EqFitter::Search::Points> EqFitter::Search::paired(const std::vector<Point>& points) {
  std::vector<Points> pairs;
  for (std::size_t i = 0; i < points.size() || pairs.size() % kChunk != 0; i += 2) {
    const Point &a = points[std::min(i, points.size() - 1)], &b = points[std::min(i + 1, points.size() - 1)];
    const Pair weight = {i < points.size() ? 1.0 : 0.0, i + 1 < points.size() ? 1.0 : 0.0};
    pairs.push_back(Points{Pair{a[0], b[0]}, Pair{a[1], b[1]}, Pair{a[2], b[2]}, weight});
  }
  return pairs;
}

void EqFitter::Search::aim_at(const EqFilter& filter) {
  const double k = pole_tangent(filter.pole_freq, rate_), kk = k * k;
  std::vector<Point> in_db, in_amplitude;
  for (std::size_t i = 0; i < grid_.size(); ++i) {
    const double target = target_power(filter, grid_[i]), level = 10 * std::log10(target);
    if (!(level >= kIgnoredBelow)) continue;
    const double t = tangents_[i];
    const double pole = filter.pole_freq > 0 ? (filter.is_high() ? t : kk) / (kk + t) : 1;
    if (level < kAmplitudeBelow) {
      in_amplitude.push_back({t, pole, std::sqrt(target)});
    } else {
      in_db.push_back({t, pole / target, 1});
    }
  }
  in_db_ = paired(in_db);
  in_amplitude_ = paired(in_amplitude);
}

EqFitter::Search::Terms EqFitter::Search::terms_of(const ReaEqBand& band) const {
  const Response analog = band_response(band);
  const double over = 1 / tangent_square(band.frequency, rate_), squared = over * over;
  return {{analog.above[0], analog.above[1] * over, analog.above[2] * squared},
          {analog.below[0], analog.below[1] * over, analog.below[2] * squared}};
}

// The sum of eighth powers, or the largest. What passes the limit on the way is infinite: nobody asks by how much.
double EqFitter::Search::error_of(std::span<const Terms> terms, Measure measure, double limit) const {
  constexpr double kDbPerNeper = 10 / std::numbers::ln10;
  Pair total = both(0), worst = both(0);
  const auto walk_points = [&](const std::vector<Points>& points, auto&& error_at) {
    for (std::size_t i = 0; i < points.size(); i += kChunk) {
      std::array<Pair, kChunk> above, below;
      for (std::size_t j = 0; j < kChunk; ++j) above[j] = points[i + j].scale, below[j] = both(1);
      for (const Terms& term : terms) {
        for (std::size_t j = 0; j < kChunk; ++j) {
          const Pair t = points[i + j].tangent;
          above[j] *= term.above[0] + t * (term.above[1] + t * term.above[2]);
          below[j] *= term.below[0] + t * (term.below[1] + t * term.below[2]);
        }
      }
      for (std::size_t j = 0; j < kChunk; ++j) {
        const Pair e = error_at(above[j] / below[j], points[i + j]);
        if (measure == Measure::kWorst) {
          worst = e > worst ? e : worst;
        } else {
          const Pair ee = e * e, eeee = ee * ee;
          total += eeee * eeee * points[i + j].weight;
        }
      }
      const double now = measure == Measure::kWorst ? std::max(worst[0], worst[1]) : total[0] + total[1];
      if (!(now < limit)) return false;
    }
    return true;
  };
  const bool below_limit =
      walk_points(in_db_, [&](Pair power, const Points&) { return size_of(log_of(power) * kDbPerNeper); }) &&
      walk_points(in_amplitude_, [&](Pair power, const Points& point) {
        const Pair amplitude = {std::sqrt(power[0]), std::sqrt(power[1])};
        return size_of(amplitude - point.target) * kAmplitudeWeight;
      });
  if (!below_limit) return std::numeric_limits<double>::infinity();
  return measure == Measure::kWorst ? std::max(worst[0], worst[1]) : total[0] + total[1];
}

double EqFitter::Search::worst_error(std::span<const ReaEqBand> bands) {
  terms_.clear();
  for (const ReaEqBand& band : bands) terms_.push_back(terms_of(band));
  return error_of(terms_, Measure::kWorst, std::numeric_limits<double>::infinity());
}

// A low- or high-pass has no gain to move.
std::vector<double> EqFitter::Search::coordinates_of(std::span<const ReaEqBand> bands) const {
  std::vector<double> result;
  for (const ReaEqBand& band : bands) {
    result.push_back(std::log(band.frequency));
    if (has_gain(band)) result.push_back(band.gain);
    result.push_back(std::log(band.bandwidth));
  }
  return result;
}

void EqFitter::Search::place(const Vertex& vertex) {
  std::size_t at = 0;
  for (ReaEqBand& band : bands_) {
    band.frequency = std::exp(vertex.at[at++]);
    if (has_gain(band)) band.gain = vertex.at[at++];
    band.bandwidth = std::exp(vertex.at[at++]);
    hold(band);
  }
}

void EqFitter::Search::measure(Vertex& vertex, double limit) {
  place(vertex);
  for (std::size_t i = 0; i < bands_.size(); ++i) terms_[i] = terms_of(bands_[i]);
  vertex.error = error_of(terms_, measure_, limit);
}

// A downhill simplex from `start`, which becomes its best vertex.
void EqFitter::Search::walk_once(std::vector<double>& start, double step, int iterations) {
  constexpr double kNoLimit = std::numeric_limits<double>::infinity();
  const std::size_t n = start.size();
  std::vector<Vertex> vertices(n + 1);
  for (Vertex& vertex : vertices) std::copy(start.begin(), start.end(), vertex.at.begin());
  std::size_t coordinate = 0;
  for (const ReaEqBand& band : bands_) {
    const auto move = [&](double by) { ++coordinate, vertices[coordinate].at[coordinate - 1] += by; };
    move(step * kLogStep);
    if (has_gain(band)) move(step * kGainStep);
    move(step * kLogStep);
  }
  for (Vertex& vertex : vertices) measure(vertex, kNoLimit);

  const auto by_error = [](const Vertex& a, const Vertex& b) { return a.error < b.error; };
  std::stable_sort(vertices.begin(), vertices.end(), by_error);
  Vertex center, reflected, other;
  for (int i = 0; i < iterations; ++i) {
    Vertex& worst = vertices.back();
    for (std::size_t k = 0; k < n; ++k) {
      double sum = 0;
      for (std::size_t v = 0; v < n; ++v) sum += vertices[v].at[k];
      center.at[k] = sum / static_cast<double>(n);
    }
    const auto go = [&](Vertex& vertex, double by, double limit) {  // from the center, away from the worst
      for (std::size_t k = 0; k < n; ++k) vertex.at[k] = center.at[k] + by * (center.at[k] - worst.at[k]);
      measure(vertex, limit);
    };
    go(reflected, 1, vertices[n - 1].error);
    bool replaced = true;
    if (reflected.error < vertices.front().error) {
      go(other, 2, reflected.error);
      worst = other.error < reflected.error ? other : reflected;
    } else if (reflected.error < vertices[n - 1].error) {
      worst = reflected;
    } else {
      go(other, -0.5, worst.error);
      replaced = other.error < worst.error;
      if (replaced) worst = other;
    }
    if (replaced) {
      // Behind those as good as it.
      const Vertex added = vertices.back();
      const auto place = std::upper_bound(vertices.begin(), vertices.end() - 1, added, by_error);
      std::move_backward(place, vertices.end() - 1, vertices.end());
      *place = added;
      continue;
    }
    const Vertex& best = vertices.front();
    for (std::size_t v = 1; v <= n; ++v) {
      for (std::size_t k = 0; k < n; ++k) vertices[v].at[k] = 0.5 * (vertices[v].at[k] + best.at[k]);
      measure(vertices[v], kNoLimit);
    }
    std::stable_sort(vertices.begin(), vertices.end(), by_error);
  }
  std::copy_n(vertices.front().at.begin(), n, start.begin());
}

double EqFitter::Search::walk(std::vector<ReaEqBand>& bands, double step) {
  bands_ = bands;
  terms_.resize(bands.size());
  const std::vector<double> start = coordinates_of(bands);
  std::vector<double> end = start;
  const int n = static_cast<int>(bands.size());
  measure_ = Measure::kMeanOfEighthPowers;
  walk_once(end, step, 30 * n + 400);
  measure_ = Measure::kWorst;
  walk_once(end, 0.1, 10 * n + 200);
  if (end != start) {  // else the bands stay to the last bit
    Vertex vertex;
    std::copy(end.begin(), end.end(), vertex.at.begin());
    place(vertex);
    bands = bands_;
  }
  return worst_error(bands);
}

// ---- the rounds ----

EqFitter::EqFitter(double sample_rate) : search_(std::make_unique<Search>(sample_rate)) {}
EqFitter::~EqFitter() = default;
EqFitter::EqFitter(EqFitter&&) noexcept = default;
EqFitter& EqFitter::operator=(EqFitter&&) noexcept = default;

EqFitter::Result EqFitter::searched(const EqFilter& filter) {
  Search& search = *search_;
  search.aim_at(filter);
  Result result{.bands = filter.bands};
  search.hold_below_half(result.bands);
  result.worst_error = search.worst_error(result.bands);
  if (result.worst_error <= kNearEnough) return result;
  if (searches_left_ == 0) {
    result.within_reach = false;
    return result;
  }
  --searches_left_;

  search.hold(result.bands);
  result.worst_error = search.worst_error(result.bands);
  const std::vector<ReaEqBand> start = result.bands;
  std::vector<ReaEqBand> bands = start;
  for (std::size_t round = 0; round <= kAdded.size(); ++round) {
    double error = std::numeric_limits<double>::infinity();
    if (round == 0) {
      if (bands.empty()) continue;
      error = search.walk(bands);
    } else {
      // On from the bands of the round before, even if they were worse than an earlier one's.
      const AddedBand& added = kAdded[round - 1];
      const std::vector<ReaEqBand> before = bands;
      for (std::size_t i = 0; i < kAddedGains.size(); ++i) {
        std::vector<ReaEqBand> trial = before;
        trial.push_back(search.added(added, i));
        const double trial_error = search.walk(trial);
        if (i > 0 && !(trial_error < error)) continue;
        error = trial_error;
        bands = std::move(trial);
      }
    }
    if (error < result.worst_error) {
      result.worst_error = error;
      result.bands = bands;
    }
    if (error <= kNearEnough) break;
  }
  // A walk may have come to rest too early: it starts anew from where the best one ended, with longer steps and shorter
  // ones; where that doesn't help, from the bands of all rounds at once.
  for (std::size_t i = 0; i < kMostRestarts && result.worst_error > worth_restarting(i); ++i) {
    std::vector<ReaEqBand> trial = i < kFewRestarts ? result.bands : start;
    if (i >= kFewRestarts) {
      std::size_t pairs = i - kFewRestarts;  // a digit of base 3 for each band
      for (const AddedBand& added : kAdded) {
        trial.push_back(search.added(added, pairs % 3));
        pairs /= 3;
      }
    }
    const double error = search.walk(trial, kRestartSteps[i % kRestartSteps.size()]);
    if (!(error < result.worst_error)) continue;
    result.worst_error = error;
    result.bands = std::move(trial);
  }
  result.extra_bands = static_cast<int>(result.bands.size() - start.size());
  result.fitted = result.bands != start;
  result.within_reach = result.worst_error <= kWithinReach;
  return result;
}

bool EqFitter::fit(EqFilter& filter) {
  const bool needs_gain = filter.kind == EqFilter::Kind::kPeak || filter.kind == EqFilter::Kind::kShelf;
  if (!filter.enabled || filter.kind == EqFilter::Kind::kNotch) return true;
  if (needs_gain && std::fabs(filter.gain) < kLeastGain) return true;
  const auto kind = static_cast<std::uint64_t>(filter.kind), side = static_cast<std::uint64_t>(filter.side);
  const Key key = {kind << 16 | side << 8 | static_cast<std::uint64_t>(filter.order),
                   std::bit_cast<std::uint64_t>(filter.freq), std::bit_cast<std::uint64_t>(filter.gain),
                   std::bit_cast<std::uint64_t>(filter.q)};
  auto known = known_.find(key);
  if (known == known_.end()) known = known_.emplace(key, searched(filter)).first;
  const Result& result = known->second;
  filter.bands = result.bands;
  filter.fitted = result.fitted;
  filter.extra_bands = result.extra_bands;
  filter.worst_error = result.worst_error;
  return result.within_reach;
}

}  // namespace frt
