#include "writer/project_header.h"

#include <array>
#include <cstdint>

#include "base/base64.h"
#include "writer/comments.h"
#include "writer/envelope.h"
#include "writer/fx_chain.h"

namespace frt {
namespace {

void write_recording_format(ProjectText& project, std::optional<int> wav_depth) {
  project.text("  <RECORD_CFG\n");
  if (wav_depth) {
    const std::array<std::uint8_t, 7> wav = {'e', 'v', 'a', 'w', static_cast<std::uint8_t>(*wav_depth), 0, 1};
    project.text("    ").text(base64(ByteView(wav.data(), wav.size()))).text("\n");
  }
  project.text("  >\n");
}

void write_tempo_envelope(ProjectText& project, const std::vector<TempoPoint>& points) {
  if (points.empty()) return;
  project.text("  <TEMPOENVEX\n");
  for (const TempoPoint& point : points) {
    project.text("    PT ").fixed(point.time, 10).text(" ").fixed(point.bpm, 6).text(" ").integer(point.shape);
    if (point.flags != TempoPoint::kPlain) {
      project.text(" ").integer(point.code).text(" 0 ").integer(point.flags);
    }
    project.text("\n");
  }
  project.text("  >\n");
}

void write_markers(ProjectText& project, const std::vector<MarkerPage>& markers) {
  std::uint32_t number = 0;
  for (const MarkerPage& marker : markers) {
    ++number;
    project.text("  MARKER ").integer(number).text(" ").fixed(marker.start, 10).text(" ");
    project.quoted(marker.name).text(marker.end ? " 1 " : " 0 ").integer(marker.color).text(" 1 R ");
    project.text(make_guid(guid_seed::kMarker + number)).text(" 0\n");
    if (marker.end) {
      project.text("  MARKER ").integer(number).text(" ").fixed(*marker.end, 10).text(" \"\" 1\n");
    }
  }
}

}  // namespace

void write_project_header(ProjectText& project, const HeaderPage& page) {
  project.text("<REAPER_PROJECT 0.1 \"7.0\" 0\n");
  write_project_notes(project, page.notes);
  project.text("  RIPPLE 0\n  GROUPOVERRIDE 0 0 0\n  AUTOXFADE 1\n");
  project.text("  SAMPLERATE ").integer(page.rate).text(" 0 0\n");
  project.text("  TEMPO ").general(page.tempo);
  project.text(" ").integer(page.meter.numerator).text(" ").integer(page.meter.denominator);
  project.text("\n  PLAYRATE 1 0 0.25 4\n");
  if (page.timecode) {
    project.text("  PROJOFFS ").fixed(page.timecode->project_offset, 10).text(" ");
    project.integer(-page.timecode->measures_before).text(" 0\n");
    project.print("  TIMEMODE 1 5 -1 %d %d 0 -1 0\n", page.timecode->rate, page.timecode->mode);
  }
  write_recording_format(project, page.wav_depth);
  project.text("  <APPLYFX_CFG\n  >\n  RENDER_FILE \"\"\n");
  write_tempo_envelope(project, page.tempo_points);
  write_markers(project, page.markers);
  project.print("  MASTERMUTESOLO %d\n  MASTER_NCH 2 2\n", page.master.mute ? 1 : 0);
  project.text("  PANLAW ").fixed(page.pan_law, 10).text("\n");
  if (page.grid_quarters) project.text("  GRID 3199 8 ").general(*page.grid_quarters, 14).text(" 8 1 0 0 0\n");
  project.text("  MASTER_VOLUME ").fixed(page.master.volume, 9);
  project.text(" 0.000000 -1 -1.000000 1.000000\n  MASTER_PANMODE 3\n");
  if (!page.master.envelopes.empty()) project.text("  MASTERAUTOMODE 1\n");
  write_envelopes(project, page.master.envelopes, "  ");
  write_fx_chain(project, page.master.fx);
}

}  // namespace frt
