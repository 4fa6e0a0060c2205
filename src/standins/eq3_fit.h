// Moves a filter's ReaEQ bands, and adds up to three, until their curve is that of the analog filter.
//
// A digital filter bends towards half the sample rate; Pro Tools' equaliser doesn't. The search is a fixed count of
// steps, so that a session gives the same bands each time.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>

#include "standins/eq_filter.h"

namespace frt {

class EqFitter {
 public:
  explicit EqFitter(double sample_rate);
  ~EqFitter();
  EqFitter(EqFitter&&) noexcept;
  EqFitter& operator=(EqFitter&&) noexcept;

  // What a session may ask: a hostile one holds ten thousands of filters, and a search takes milliseconds.
  static constexpr int kMostSearched = 1000;

  // A realised filter gets the bands that come nearest. A filter met again gets what it got before. False if the
  // curve stays beyond reach, or if it was not near enough and so many were searched before that nothing was.
  bool fit(EqFilter& filter);

 private:
  using Key = std::array<std::uint64_t, 4>;
  struct Result {
    std::vector<ReaEqBand> bands;
    bool fitted = false, within_reach = true;
    int extra_bands = 0;
    double worst_error = 0;
  };
  class Search;

  Result searched(const EqFilter& filter);

  std::unique_ptr<Search> search_;
  std::map<Key, Result> known_;
  int searches_left_ = kMostSearched;
};

}  // namespace frt
