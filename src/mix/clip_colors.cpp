#include "mix/clip_colors.h"

#include "model/palette.h"

namespace frt {
namespace {

constexpr int kFollowSession = 0, kDark = 2;  // --pt-theme
constexpr std::int32_t kNoIndex = -2;

}  // namespace

ClipColors::ClipColors(const Session& session, const ConversionOptions& options)
    : dark_(options.pt_theme == kDark || (options.pt_theme == kFollowSession && session.saved_by.dark_by_default())),
      coded_by_channels_(session.headers.settings.color_coding.clips == ColorCoding::kMidiChannels),
      leave_out_(options.no_clip_colors) {}

std::uint32_t ClipColors::of_midi_clip(std::int32_t index) {
  if (index != kNoIndex) return of_index(index);
  if (!coded_by_channels_) return 0;
  ++counts_.midi_clip_color;
  return written(dark_ ? kMidiClipColorDark : kMidiClipColor);
}

std::uint32_t ClipColors::of_index(std::int32_t index) {
  const ClipColor found = clip_color(index, dark_);
  if (found.kind == ClipColor::kAutoAssigned) {
    ++counts_.auto_assigned;
    counts_.auto_assigned_indices.insert(index);
    return 0;
  }
  if (found.shade == ClipColor::Shade::kDarkMeasured) ++counts_.dark_measured;
  if (found.shade == ClipColor::Shade::kDarkDerived) ++counts_.dark_derived;
  if (written(found.color) == 0) return 0;
  ++counts_.colored;
  counts_.indices.insert(index);
  if (found.kind == 2) ++counts_.hand_picked;
  if (found.kind == 3) ++counts_.invented;
  return found.color;
}

std::uint32_t ClipColors::written(std::uint32_t color) {
  if (!leave_out_) return color;
  ++counts_.left_out;
  return 0;
}

}  // namespace frt
