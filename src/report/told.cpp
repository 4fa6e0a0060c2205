#include "report/told.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/text.h"

namespace frt {
namespace {

std::vector<std::string> slots_of(const std::vector<UnusualStrip>& strips) {
  std::vector<std::string> texts;
  for (const UnusualStrip& strip : strips)
    texts.push_back(std::string(strip.name) + format_text(" (%u control slots)", strip.lane_count));
  return texts;
}

}  // namespace

Told::Told(const ConversionOptions& its_options, const Session& its_session, const Plugins& its_plugins,
           const Problem& its_problem)
    : options(its_options),
      session(its_session),
      plugins(its_plugins),
      problem(its_problem),
      wide_strips(slots_of(its_session.mixer.unusual_strips)) {}

int Told::strips_with_mixer_data() const {
  const std::vector<StripRecord>& strips = session.mixer.strips;
  return static_cast<int>(
      std::count_if(strips.begin(), strips.end(), [](const StripRecord& strip) { return strip.has_mixer_data; }));
}

DualPanCounts Told::dual_pan() const {
  DualPanCounts counts;
  for (const StripRecord& strip : session.mixer.strips) {
    if (!strip.has_mixer_data || !strip.dual_pan_moves()) continue;
    counts.points += static_cast<int>(strip.dual_left_lane.points.size() + strip.right_pan_lane.points.size());
    ++counts.tracks;
  }
  return counts;
}

double Told::longest_file_minutes() const {
  std::int64_t longest = 0;
  for (const std::int64_t length : session.media.lengths) longest = std::max(longest, length);
  return static_cast<double>(longest) / (60.0 * session.clock.rate);
}

}  // namespace frt
