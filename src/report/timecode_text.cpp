#include "report/timecode_text.h"

#include "base/text.h"

namespace frt {

std::string timecode_text(std::uint32_t frames, std::uint32_t rate, bool drop) {
  if (rate == 0) return {};
  std::uint64_t nominal = frames;
  if (drop && rate >= 30 && rate % 30 == 0) {
    // Drop-frame numbering leaves out 2n numbers at every minute but each tenth.
    const std::uint64_t n = rate / 30;
    const std::uint64_t tens = frames / (17982 * n);
    const std::uint64_t rest = frames % (17982 * n);
    const std::uint64_t minutes = (rest < 2 * n ? 0 : rest - 2 * n) / (1798 * n);
    nominal += 18 * n * tens + 2 * n * minutes;
  }
  const std::uint64_t seconds = nominal / rate;
  const auto part = [](std::uint64_t value) { return static_cast<unsigned>(value); };
  const unsigned hour = part(seconds / 3600), minute = part(seconds / 60 % 60), second = part(seconds % 60);
  const unsigned frame = part(nominal % rate);
  const char separator = drop ? ';' : ':';
  return rate < 101 ? format_text("%02u:%02u:%02u%c%02u", hour, minute, second, separator, frame)
                    : format_text("%02u:%02u:%02u%c%03u", hour, minute, second, separator, frame);
}

std::string session_start_text(const TimecodeSettings& timecode) {
  return timecode_text(timecode.start_frames, static_cast<std::uint32_t>(timecode.timemode_rate), timecode.drop_frame);
}

}  // namespace frt
