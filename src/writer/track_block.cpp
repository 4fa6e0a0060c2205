#include "writer/track_block.h"

#include <cstddef>
#include <cstdint>
#include <string>

#include "writer/audio_item.h"
#include "writer/comments.h"
#include "writer/envelope.h"
#include "writer/fx_chain.h"
#include "writer/midi_item.h"
#include "writer/receives.h"

namespace frt {
namespace {

// REAPER's numbers. It has no Touch/Latch.
int automode(AutomationMode mode) {
  switch (mode) {
    case AutomationMode::kUntold:
    case AutomationMode::kOff:
      return 0;
    case AutomationMode::kRead:
      return 1;
    case AutomationMode::kTouch:
      return 2;
    case AutomationMode::kWrite:
      return 3;
    case AutomationMode::kLatch:
    case AutomationMode::kTouchLatch:
      return 4;
  }
  return 0;
}

int beat(Timebase timebase) {
  switch (timebase) {
    case Timebase::kDefault:
      return -1;
    case Timebase::kTime:
      return 0;
    case Timebase::kBeats:
      return 1;
    case Timebase::kBeatsPosition:
      return 2;
  }
  return -1;
}

constexpr int kSoloInPlace = 2;
constexpr int kPannedApart = 6;  // a pan mode

void write_group_flags(ProjectText& out, const GroupLinks& groups) {
  // Where each mask stands in REAPER's row of fields: as leader and as follower, VCA links apart.
  struct Fields {
    GroupLinks::Link link;
    std::size_t first, last;
  };
  static constexpr Fields kFields[] = {
      {GroupLinks::kVolume, 0, 1},           {GroupLinks::kMute, 4, 5},        {GroupLinks::kSolo, 6, 7},
      {GroupLinks::kAutomationMode, 12, 13}, {GroupLinks::kVcaMaster, 20, 20}, {GroupLinks::kVcaMember, 21, 21},
  };
  std::uint32_t flags[22] = {};
  std::size_t count = 0;
  for (const Fields& fields : kFields) {
    const std::uint32_t mask = groups.masks[fields.link];
    if (mask == 0) continue;
    flags[fields.first] = flags[fields.last] = mask;
    count = fields.last + 1;
  }
  if (count == 0) return;
  out.text("    GROUP_FLAGS");
  for (std::size_t k = 0; k < count; ++k) out.text(" ").integer(flags[k]);
  out.text("\n");
}

void write_visibility_and_groups(ProjectText& out, const StripPage& page) {
  if (page.hidden) out.text("    SHOWINMIX 0 0.6667 0.5 0 0.5 0 0 0 0\n");
  write_group_flags(out, page.groups);
}

void write_lane_names(ProjectText& out, const OutputTrack& track) {
  if (track.lanes.empty()) return;
  out.text("    FIXEDLANES 9 0 0 0 0\n    LANESOLO 1 0 0 0 0 0 0 0\n    ITEMLANES ")
      .integer(static_cast<long long>(track.lanes.size()) + 1)
      .text("\n    LANENAME ")
      .quoted(track.key());
  for (const Lane& lane : track.lanes) out.text(" ").quoted(lane.name);
  out.text("\n");
}

void write_track(ProjectText& out, const TrackPage& page, std::uint32_t index) {
  const OutputTrack& track = *page.track;
  const std::uint32_t seed = guid_seed::kTrack + index;
  out.text("  <TRACK ").text(make_guid(seed)).text("\n    NAME ").quoted(track.name);
  out.print("\n    PEAKCOL %lu\n    BEAT %d\n    AUTOMODE %d\n", static_cast<unsigned long>(page.color),
            beat(page.timebase), automode(page.automation_mode));
  out.print("    VOLPAN %.6f %g -1 %.6f %.6f\n", page.volume, page.pan, page.left_pan, page.right_pan);
  out.print("    MUTESOLO %d %d %d\n    IPHASE %d\n    ISBUS %d %d\n", page.mute ? 1 : 0, page.solo ? kSoloInPlace : 0,
            page.solo_safe ? 1 : 0, page.inverted ? 1 : 0, page.folder.kind, page.folder.depth);
  write_visibility_and_groups(out, page);
  if (page.pan_mode != PanMode::kDefault)
    out.print("    PANMODE %d\n", page.pan_mode == PanMode::kDual ? kPannedApart : 3);
  out.print("    FREEMODE %d\n    TRACKHEIGHT %d 0 0 0 0 0 0\n    INQ 0 0 0 0.5 100 0 0 100\n",
            track.lanes.empty() ? 0 : 2, page.height);
  out.print("    NCHAN %d\n    FX 1\n    TRACKID %s\n    MAINSEND %d 0\n", page.channels,
            make_guid(guid_seed::kTrackId + index).c_str(), page.main_send ? 1 : 0);
  write_bus_receives(out, page.bus_receives);
  write_fx_chain(out, page.fx);
  write_send_receives(out, page.send_receives);
  if (page.silenced_take) out.text("    MUTESOLO 1 0 0\n");  // the later line holds
  write_lane_names(out, track);
  write_envelopes(out, page.envelopes, "    ");
  write_audio_items(out, track);
  write_midi_items(out, page.midi_items);
  // For a track delivered frozen its render comes here.
  if (!page.comment.empty()) write_comment_item(out, page.comment, seed);
  out.text("  >\n");
}

void write_return_track(ProjectText& out, const ReturnPage& page, std::uint32_t index) {
  const std::uint32_t seed = guid_seed::kReturnTrack + index;
  out.text("  <TRACK ").text(make_guid(seed)).text("\n    NAME ").quoted(page.name);
  out.print("\n    PEAKCOL %lu\n    BEAT %d\n    AUTOMODE %d\n", static_cast<unsigned long>(page.color),
            beat(Timebase::kDefault), automode(page.automation_mode));
  out.print("    VOLPAN %.6f %g -1 ", page.volume, page.pan);
  if (page.stereo) {
    out.print("%.6f %.6f", page.left_pan, page.right_pan);
  } else {
    out.text("-1 1");
  }
  out.print("\n    MUTESOLO %d %d %d\n    IPHASE %d\n    ISBUS 0 0\n", page.mute ? 1 : 0, page.solo ? kSoloInPlace : 0,
            page.solo_safe ? 1 : 0, page.inverted ? 1 : 0);
  if (page.stereo) out.print("    PANMODE %d\n", kPannedApart);
  write_visibility_and_groups(out, page);
  out.print("    FREEMODE 0\n    TRACKHEIGHT %d 0 0 0 0 0 0\n    INQ 0 0 0 0.5 100 0 0 100\n", page.height);
  out.print("    NCHAN 2\n    FX 1\n    TRACKID %s\n    MAINSEND %d 0\n",
            make_guid(guid_seed::kReturnTrackId + index).c_str(), page.main_send ? 1 : 0);
  write_fx_chain(out, page.fx);
  write_send_receives(out, page.send_receives);
  write_envelopes(out, page.envelopes, "    ");
  if (!page.comment.empty()) write_comment_item(out, page.comment, seed);
  out.text("  >\n");
}

}  // namespace

void write_tracks(ProjectText& out, std::span<const TrackPage> pages, frtgui::Progress* progress) {
  for (std::size_t i = 0; i < pages.size(); ++i) {
    if (progress) {
      const std::string stage = format_text("%.24s %lu/%lu", frtgui::name_of(frtgui::Step::kWriting),
                                            static_cast<unsigned long>(i), static_cast<unsigned long>(pages.size()));
      progress->report(frtgui::number_of(frtgui::Step::kWriting), frtgui::kSteps, stage.c_str());
    }
    write_track(out, pages[i], static_cast<std::uint32_t>(i));
  }
}

void write_return_tracks(ProjectText& out, std::span<const ReturnPage> pages) {
  for (std::size_t j = 0; j < pages.size(); ++j) write_return_track(out, pages[j], static_cast<std::uint32_t>(j));
}

void write_solo_keeper(ProjectText& out) {
  out.print(
      "  <TRACK %s\n    NAME \"Pro Tools solo (the soloed tracks were muted)\"\n    VOLPAN 1 0 -1 -1 1\n"
      "    MUTESOLO 0 2 0\n    IPHASE 0\n    ISBUS 0 0\n    NCHAN 2\n    MAINSEND 1 0\n  >\n",
      make_guid(guid_seed::kSoloKeeper).c_str());
}

}  // namespace frt
