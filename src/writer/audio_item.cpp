#include "writer/audio_item.h"

#include <cmath>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "base/decibel.h"
#include "mix/media_files.h"

namespace frt {
namespace {

constexpr std::size_t kPairsALine = 28;  // stretch markers

// Of a track with lanes: the height of one, and where this item's stands.
struct LanePlace {
  double top = 0;
  double height = 0;  // 0 on a track without lanes
};

// A "-0" prints as such.
bool is_plain_zero(double value) { return value == 0.0 && !std::signbit(value); }

std::string_view fade_shape(FadeShape shape) {
  switch (shape) {
    case FadeShape::kLinear:
      return "0";
    case FadeShape::kCurved:
      return "1";
    case FadeShape::kSCurve:
      return "5.1";
  }
  return "0";
}

void write_stretch_markers(ProjectText& out, const std::vector<std::pair<double, double>>& markers) {
  for (std::size_t k = 0; k < markers.size(); ++k) {
    if (k % kPairsALine == 0) {
      out.text(k == 0 ? "      SM " : "\n      SM ");
    } else {
      out.text(" + ");
    }
    out.fixed(markers[k].first, 10).text(" ").fixed(markers[k].second, 10);
  }
  out.text("\n");
}

void write_gain_envelope(ProjectText& out, const std::vector<ItemGainPoint>& points) {
  if (points.empty()) return;
  out.text(
      "      <VOLENV\n        ACT 1 -1\n        VIS 1 1 1\n"
      "        LANEHEIGHT 0 0\n        ARM 0\n"
      "        DEFSHAPE 0 -1 -1\n        VOLTYPE 1\n");
  for (const auto& [time, db] : points) {
    out.text("        PT ").fixed(time, 10).text(" ").fixed(gain_of_db(db), 9).text(" 0\n");
  }
  out.text("      >\n");
}

// The plug-ins of a clip: a clip edited in Melodyne and a clip with Clip Effects bring a text each.
void write_take_fx(ProjectText& out, std::string_view melodyne, std::string_view clip_effects) {
  if (melodyne.empty() && clip_effects.empty()) return;
  out.text("      <TAKEFX\n        SHOW 0\n        LASTSEL 0\n        DOCKED 0\n")
      .text(melodyne)
      .text(clip_effects)
      .text("      >\n");
}

void write_item(ProjectText& out, const OutputItem& item, const LanePlace& lane) {
  out.text("    <ITEM\n      POSITION ").fixed(item.position, 10).text("\n      SNAPOFFS ");
  if (item.sync_offset > 0.0) {
    out.general(item.sync_offset, 10);
  } else {
    out.text("0");
  }
  out.text("\n      LENGTH ").fixed(item.length, 10);
  const std::string_view in_shape = fade_shape(item.fade_in_shape), out_shape = fade_shape(item.fade_out_shape);
  out.text("\n      LOOP 0\n      ALLTAKES 0\n      FADEIN ").text(in_shape).text(" ");
  out.fixed(item.fade_in, 10).text(" 0 ").text(in_shape).text(" 0 0 0\n      FADEOUT ");
  out.text(out_shape).text(" ");
  out.fixed(item.fade_out, 10).text(" 0 ").text(out_shape).text(" 0 0 0\n");
  out.text(item.muted ? "      MUTE 1 0\n" : "      MUTE 0 0\n");
  if (item.locked) out.text("      LOCK 1\n");
  out.text("      SOFFS ");
  out.fixed(item.source_offset, 10).text("\n");
  if (item.clip_color != 0) out.text("      COLOR ").integer(item.clip_color).text(" R\n");
  if (lane.height > 0.0) {
    out.text("      YPOS ").fixed(lane.top, 6).text(" ").fixed(lane.height, 6).text(" 2\n");
  }
  // Stretch markers carry the rate themselves.
  const bool markers = item.warp.size() > 2;
  out.text("      PLAYRATE ");
  if (markers || item.playrate == 1.0) {
    out.text("1.000000000 1 ");
  } else {
    out.fixed(item.playrate, 9).text(" 1 ");
  }
  if (is_plain_zero(item.pitch_semitones)) {
    out.text("0.000000");
  } else {
    out.fixed(item.pitch_semitones, 6);
  }
  out.text(" -1 0 0.0025\n      CHANMODE ")
      .integer(item.channel_mode)
      .text("\n      NAME ")
      .quoted(item.clip_name)
      .text("\n");
  if (markers) write_stretch_markers(out, item.warp);
  if (item.has_gain || item.pan_side != 0.0 || item.polarity) {
    out.text("      VOLPAN ");
    if (item.gain_db == 0.0) {
      out.text("1.000000000 ");
    } else {
      out.fixed(gain_of_db(item.gain_db), 9).text(" ");
    }
    out.general(item.pan_side).text(item.polarity ? " -1 -1\n" : " 1 -1\n");
  }
  write_gain_envelope(out, item.gain_line);
  // A clip edited in Melodyne names its GUID and its audio archive here, by its running number.
  out.text("      <SOURCE WAVE\n        FILE ").quoted(item.media ? item.media->project_path : "").text("\n      >\n");
  write_take_fx(out, {}, {});  // neither Melodyne clips nor Clip Effects are read yet
  out.text("    >\n");
}

}  // namespace

void write_audio_items(ProjectText& out, const OutputTrack& track) {
  const double height = track.lanes.empty() ? 0.0 : 1.0 / static_cast<double>(track.lanes.size() + 1);
  LanePlace place{0.0, height};
  for (const OutputItem& item : track.items) write_item(out, item, place);
  const auto lane_count = static_cast<double>(track.lanes.size() + 1);
  for (std::size_t k = 0; k < track.lanes.size(); ++k) {
    place.top = static_cast<double>(k + 1) / lane_count;
    for (const OutputItem& item : track.lanes[k].items) write_item(out, item, place);
  }
}

}  // namespace frt
