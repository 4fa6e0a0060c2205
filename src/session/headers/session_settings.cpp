#include "session/headers/session_settings.h"

#include <array>
#include <optional>
#include <utility>

#include "image/content_types.h"

namespace frt {
namespace {

// ---- timecode ----

// Timecode block
//   p + 9   u8   rate code
//   p + 18  u32  session start, frames
// and, where the session knows the faster rates, behind a text
//   p + 34  u32  length of the text, up to 64
//   then    u32  extended rate code
//   then    u32  session start in frames of the extended rate
namespace timecode_layout {
constexpr std::uint64_t kRate = 9, kStart = 18, kText = 34;
constexpr std::uint32_t kAboveSize = 0x15, kMostText = 64;
}  // namespace timecode_layout

struct BaseRate {
  int code;
  std::string_view label;
  double frames_per_second;
  int timemode_rate;
  int timemode_mode;
};

constexpr BaseRate kBaseRates[] = {
    // code  label         frames a second     TIMEMODE
    {1, "24", 24, 24, 0},
    {2, "25", 25, 25, 0},
    {3, "29.97", 29.97002997002997, 30, 2},
    {5, "29.97 drop", 29.97002997002997, 30, 1},
    {8, "30 drop", 30, 30, 0},
    {9, "23.976", 23.976023976023978, 24, 2},
};
constexpr BaseRate kAnyOtherRate = {-1, "30", 30, 30, 0};

struct ExtendedRate {
  int base;
  std::uint32_t extended;
  std::uint32_t multiplier;
  std::string_view short_label;
  std::string_view long_label;
  std::string_view ruler_label;  // where REAPER lacks the drop-frame setting
};

constexpr ExtendedRate kExtendedRates[] = {
    // base, extended, times, labels
    {9, 9, 1, "23.976", "23.976 fps", ""},
    {1, 1, 1, "24", "24 fps", ""},
    {2, 2, 1, "25", "25 fps", ""},
    {3, 3, 1, "29.97", "29.97 fps", ""},
    {5, 5, 1, "29.97 drop", "29.97 fps drop frame", ""},
    {7, 7, 1, "30", "30 fps", ""},
    {8, 8, 1, "30 drop", "30 fps drop frame", "30"},
    {9, 15, 2, "47.952", "47.952 fps", ""},
    {1, 16, 2, "48", "48 fps", ""},
    {2, 10, 2, "50", "50 fps", ""},
    {3, 11, 2, "59.94", "59.94 fps", ""},
    {5, 12, 2, "59.94 drop", "59.94 fps drop frame", "59.94"},
    {7, 13, 2, "60", "60 fps", ""},
    {8, 14, 2, "60 drop", "60 fps drop frame", "60"},
    {2, 17, 4, "100", "100 fps", ""},
    {3, 18, 4, "119.88", "119.88 fps", ""},
    {5, 19, 4, "119.88 drop", "119.88 fps drop frame", "119.88"},
    {7, 20, 4, "120", "120 fps", ""},
    {8, 21, 4, "120 drop", "120 fps drop frame", "120"},
};

constexpr int kDropFrame2997 = 5, kDropFrame30 = 8;

// Rates whose base runs a thousandth slow.
bool pulled_down(int base) { return base == 3 || base == 5 || base == 9; }

const BaseRate& base_rate(int code) {
  for (const BaseRate& rate : kBaseRates) {
    if (rate.code == code) return rate;
  }
  return kAnyOtherRate;
}

struct ExtendedTimecode {
  std::uint32_t code = 0;
  std::uint32_t start = 0;
};

std::optional<ExtendedTimecode> read_extended(ByteView bytes, const FlatBlock& block) {
  const std::uint64_t at = block.start + timecode_layout::kText;
  if (block.end() < at + 4) return std::nullopt;
  const auto length = bytes.u32(at);
  if (!length || *length > timecode_layout::kMostText) return std::nullopt;
  const std::uint64_t behind = at + 4 + *length;
  if (block.end() < behind + 8) return std::nullopt;
  const auto code = bytes.u32(behind), start = bytes.u32(behind + 4);
  if (!code || !start) return std::nullopt;
  return ExtendedTimecode{*code, *start};
}

const ExtendedRate* matching_rate(int base, std::uint32_t base_start, const std::optional<ExtendedTimecode>& extended) {
  for (const ExtendedRate& rate : kExtendedRates) {
    if (rate.base != base) continue;
    const bool match = extended ? rate.extended == extended->code && extended->start / rate.multiplier == base_start
                                : rate.multiplier == 1;
    if (match) return &rate;
  }
  return nullptr;
}

TimecodeSettings read_timecode(const SessionImage& image) {
  using namespace timecode_layout;
  TimecodeSettings timecode;
  std::optional<ExtendedTimecode> extended;
  for (const std::uint32_t index : image.of_type(content::kTimecode)) {
    const FlatBlock& block = image.block(index);
    if (block.size <= kAboveSize) continue;
    timecode.rate_code = image.bytes().u8_or(block.start + kRate, 0);
    timecode.base_start = image.bytes().u32_or(block.start + kStart, 0);
    extended = read_extended(image.bytes(), block);
    break;
  }

  const BaseRate& base = base_rate(timecode.rate_code);
  timecode.rate_label = base.label;
  timecode.timemode_rate = base.timemode_rate;
  timecode.timemode_mode = base.timemode_mode;
  timecode.start_frames = timecode.base_start;
  timecode.project_offset = timecode.base_start / base.frames_per_second;
  timecode.drop_frame = timecode.rate_code == kDropFrame2997 || timecode.rate_code == kDropFrame30;

  const ExtendedRate* rate = matching_rate(timecode.rate_code, timecode.base_start, extended);
  if (rate == nullptr) return timecode;
  timecode.long_label = rate->long_label;
  timecode.ruler_label = rate->ruler_label;
  if (rate->multiplier < 2) return timecode;
  // Only the second record holds a rate above 30.
  timecode.rate_label = rate->short_label;
  timecode.timemode_rate *= static_cast<int>(rate->multiplier);
  timecode.timemode_mode = pulled_down(rate->base) ? 2 : 0;
  timecode.start_frames = extended->start;
  timecode.project_offset = extended->start / (base.frames_per_second * rate->multiplier);
  return timecode;
}

// ---- recording format and pan depth ----

// Settings block
//   p + 9    u8   file type
//   p + 118  u8   pan depth
//   p + 119  u8   float flag
//   p + 121  u8   bit depth
namespace settings_layout {
constexpr std::uint64_t kFileType = 9;
constexpr std::uint64_t kPanDepth = 118, kFloat = 119, kDepth = 121;
constexpr std::uint32_t kAboveSizeForType = 3, kAboveSizeForPan = 0x6F, kLeastSizeForDepth = 115;
}  // namespace settings_layout

// In the sessions we have, of 2014 to 2024, a path stands before these fields, so that their place varies:
//   p + 21   u32  number of path names, 0 to 64
//   p + 25        the names, counted, of up to 255 bytes each
//   q             behind the last of them; 14 or 15 bytes are left from here
//   q + 6    u8   pan depth
//   q + 7    u8   float flag
//   q + 9    u8   bit depth
namespace path_layout {
constexpr std::uint64_t kCount = 21, kNames = 25;
constexpr std::uint32_t kMostNames = 64, kMostName = 255;
constexpr std::uint64_t kLeastLeft = 14, kMostLeft = 15;
constexpr std::uint64_t kPanDepth = 6, kFloat = 7, kDepth = 9;
}  // namespace path_layout

// Where a settings block holds its fields, as positions in the image; nothing for a field it is too short for.
struct SettingsFields {
  std::optional<std::uint64_t> pan_depth, float_flag, depth;
};

std::optional<std::uint64_t> behind_path(ByteView bytes, const FlatBlock& block) {
  using namespace path_layout;
  const auto count = bytes.u32(block.start + kCount);
  if (!count || *count > kMostNames) return std::nullopt;
  std::uint64_t at = block.start + kNames;
  for (std::uint32_t i = 0; i < *count; ++i) {
    const auto length = bytes.u32(at);
    if (!length || *length > kMostName) return std::nullopt;
    at += 4 + *length;
    if (at > block.end()) return std::nullopt;
  }
  if (at + kLeastLeft > block.end() || at + kMostLeft < block.end()) return std::nullopt;
  return at;
}

SettingsFields settings_fields(ByteView bytes, const FlatBlock& block) {
  using namespace settings_layout;
  if (const auto q = behind_path(bytes, block)) {
    return {*q + path_layout::kPanDepth, *q + path_layout::kFloat, *q + path_layout::kDepth};
  }
  SettingsFields fields;
  if (block.size > kAboveSizeForPan) fields.pan_depth = block.start + kPanDepth;
  if (block.size >= kLeastSizeForDepth) {
    fields.float_flag = block.start + kFloat;
    fields.depth = block.start + kDepth;
  }
  return fields;
}

RecordingFormat read_recording(const SessionImage& image) {
  using namespace settings_layout;
  RecordingFormat recording;
  const FlatBlock* block = image.first_of_type(content::kSettings);
  if (block == nullptr) return recording;
  const ByteView bytes = image.bytes();
  if (block->size > kAboveSizeForType) recording.file_type = bytes.u8_or(block->start + kFileType, 0);
  const SettingsFields fields = settings_fields(bytes, *block);
  if (!fields.depth) return recording;
  recording.depth_read = true;
  recording.depth_byte = bytes.u8_or(*fields.depth, 0);
  if (recording.depth_byte == 16 || recording.depth_byte == 24 || recording.depth_byte == 32) {
    recording.depth = recording.depth_byte;
  }
  recording.is_float = recording.depth == 32 && bytes.u8_or(*fields.float_flag, 0) != 0;
  return recording;
}

PanDepth read_pan_depth(const SessionImage& image) {
  static constexpr std::array<double, 4> kDecibels = {-2.5, -3.0, -4.5, -6.0};  // of the values 1 to 4
  PanDepth depth;
  for (const std::uint32_t index : image.of_type(content::kSettings)) {
    const SettingsFields fields = settings_fields(image.bytes(), image.block(index));
    if (!fields.pan_depth) continue;
    depth.was_read = true;
    depth.value = image.bytes().u8_or(*fields.pan_depth, 0);
    depth.recognised = depth.value >= 1 && depth.value <= 4;
    if (depth.recognised) depth.db = kDecibels[static_cast<std::size_t>(depth.value - 1)];
    break;
  }
  return depth;
}

// ---- grid and nudge ----

// Texts among other fields, such as "   0| 1| 000": bars, beats, ticks. The first is the nudge, the second the
// grid.
namespace grid_layout {
constexpr std::uint32_t kLeastSize = 24, kMostSize = 4000;
constexpr std::size_t kMostDigits = 8, kTickDigits = 3;
}  // namespace grid_layout

bool is_digit(char c) { return c >= '0' && c <= '9'; }

// Takes `least` to `most` digits off the front.
std::optional<long> take_number(std::string_view& text, std::size_t least, std::size_t most) {
  long value = 0;
  std::size_t n = 0;
  while (n < most && n < text.size() && is_digit(text[n])) value = value * 10 + (text[n++] - '0');
  if (n < least) return std::nullopt;
  text.remove_prefix(n);
  return value;
}

bool take(std::string_view& text, char c) {
  if (text.empty() || text.front() != c) return false;
  text.remove_prefix(1);
  return true;
}

// Takes a triple off the front; leaves the text as it is if there is none.
std::optional<MusicalStep> take_step(std::string_view& text) {
  std::string_view rest = text;
  while (take(rest, ' ')) {
  }
  const auto bars = take_number(rest, 1, grid_layout::kMostDigits);
  if (!bars || !take(rest, '|')) return std::nullopt;
  take(rest, ' ');
  const auto beats = take_number(rest, 1, grid_layout::kMostDigits);
  if (!beats || !take(rest, '|')) return std::nullopt;
  take(rest, ' ');
  const auto ticks = take_number(rest, grid_layout::kTickDigits, grid_layout::kTickDigits);
  if (!ticks) return std::nullopt;
  text = rest;
  return MusicalStep{*bars, *beats, *ticks};
}

GridSettings read_grid(const SessionImage& image) {
  using namespace grid_layout;
  GridSettings settings;
  for (const std::uint32_t index : image.of_type(content::kGrid)) {
    const FlatBlock& block = image.block(index);
    if (block.size < kLeastSize || block.size > kMostSize) continue;
    std::string_view text = image.bytes().text(block.start, block.end() - block.start).value_or(std::string_view{});
    char before = text.empty() ? ' ' : text.front();
    if (!text.empty()) text.remove_prefix(1);
    const auto in_number = [](char c) { return c == ' ' || is_digit(c); };
    while (!text.empty() && !settings.grid_read) {
      if (in_number(text.front()) && !in_number(before)) {
        if (const auto step = take_step(text)) {
          (settings.nudge_read ? settings.grid : settings.nudge) = *step;
          (settings.nudge_read ? settings.grid_read : settings.nudge_read) = true;
          before = '0';  // the step's last digit
          continue;
        }
      }
      before = text.front();
      text.remove_prefix(1);
    }
    break;
  }
  return settings;
}

// Colour coding, from the block's mark. A block of its own at + 9 may stand in front of the codes.
//   e      u8  of tracks; e behind the block at + 9, else at + 36
//   e + 2  u8  of clips
namespace coding_layout {
constexpr std::uint64_t kInner = 9, kUsual = 0x24, kClips = 2;
constexpr std::uint32_t kLeastSize = 0x1e, kLeastSizeWithClips = 0x20;
}  // namespace coding_layout

ColorCoding read_color_coding(const SessionImage& image) {
  namespace at = coding_layout;
  ColorCoding coding;
  for (const std::uint32_t i : image.of_type(content::kColorCoding)) {
    const FlatBlock& block = image.block(i);
    if (block.size < at::kLeastSize) continue;
    const FlatBlock* inner = image.at(block.start + at::kInner);
    const std::uint64_t e = inner && inner->end() + at::kClips < block.end() ? inner->end() : block.start + at::kUsual;
    if (coding.tracks < 0) coding.tracks = image.bytes().u8_or(e, 0);
    if (block.size < at::kLeastSizeWithClips) continue;
    coding.clips = image.bytes().u8_or(e + at::kClips, 0);
    break;
  }
  return coding;
}

}  // namespace

SessionSettings read_session_settings(const SessionImage& image) {
  return {read_timecode(image), read_recording(image), read_pan_depth(image), read_grid(image),
          read_color_coding(image)};
}

double quarters_of(const MusicalStep& step, std::uint32_t numerator, std::uint32_t denominator) {
  const double bars = static_cast<double>(step.bars), beats = static_cast<double>(step.beats);
  return numerator * bars * 4.0 / denominator + beats * 4.0 / denominator + static_cast<double>(step.ticks) / 960.0;
}

}  // namespace frt
