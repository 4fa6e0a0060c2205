#include "writer/project_header.h"

#include <array>
#include <string>

#include "base/base64.h"
#include "session/meter_map.h"
#include "writer/markers.h"
#include "writer/tempo_envelope.h"

namespace frt {
namespace {

void write_timecode(ProjectText& project, const TimecodeSettings& timecode, RunCounters& counters) {
  counters.project_offset = timecode.project_offset;
  counters.timecode_written = timecode.differs_from_default();
  if (!counters.timecode_written) return;
  project.text("  PROJOFFS ").fixed(timecode.project_offset, 10).text(" 0 0\n");
  project.print("  TIMEMODE 1 5 -1 %d %d 0 -1 0\n", timecode.timemode_rate, timecode.timemode_mode);
}

void write_recording_format(ProjectText& project, const RecordingFormat& recording, RunCounters& counters) {
  // REAPER's setting for WAV; what it writes for AIFF and for 24 bits (its default) isn't known.
  counters.recording_format_written = (recording.depth == 16 || recording.depth == 32) && !recording.is_aiff();
  project.text("  <RECORD_CFG\n");
  if (counters.recording_format_written) {
    const std::array<std::uint8_t, 7> wav = {'e', 'v', 'a', 'w', static_cast<std::uint8_t>(recording.depth), 0, 1};
    project.text("    ").text(base64(ByteView(wav.data(), wav.size()))).text("\n");
  }
  project.text("  >\n");
}

void write_grid(ProjectText& project, const GridSettings& grid, const MeterEvent& meter, RunCounters& counters) {
  if (!grid.grid_read) return;
  const double quarters = quarters_of(grid.grid, meter.numerator, meter.denominator);
  if (!(quarters > 0.0 && quarters < 1000.0)) return;
  counters.grid_written = true;
  counters.grid_quarters = quarters;
  project.text("  GRID 3199 8 ").general(quarters, 14).text(" 8 1 0 0 0\n");
}

double master_gain(const MasterStrip& master, RunCounters& counters) {
  if (!master.strip) return 1.0;
  if (!master.has_volume_automation()) return gain_of_db(master.strip->fader_db);
  // REAPER multiplies fader and envelope: the envelope alone carries the level.
  ++counters.faders_at_unity;
  return 1.0;
}

}  // namespace

void write_project_header(ProjectText& project, const HeaderTables& tables, RunCounters& counters) {
  const MeterEvent meter = first_meter(tables.meters);
  const MasterStrip& master = tables.master;
  counters.master_faders = master.count;
  counters.master_name = master.name;

  project.text("<REAPER_PROJECT 0.1 \"7.0\" 0\n").text(tables.notes_block);
  project.text("  RIPPLE 0\n  GROUPOVERRIDE 0 0 0\n  AUTOXFADE 1\n");
  project.text("  SAMPLERATE ").integer(tables.session_rate).text(" 0 0\n");
  project.text("  TEMPO ").general(tables.tempo.session_tempo);
  project.text(" ").integer(meter.numerator).text(" ").integer(meter.denominator).text("\n  PLAYRATE 1 0 0.25 4\n");
  write_timecode(project, tables.settings.timecode, counters);
  write_recording_format(project, tables.settings.recording, counters);
  project.text("  <APPLYFX_CFG\n  >\n  RENDER_FILE \"\"\n");
  write_tempo_envelope(
      project, make_tempo_points(tables.tempo, tables.meters, tables.tempo_ramps, tables.sample_rate, counters));
  write_markers(project, tables.locations, tables.tempo, tables.sample_rate, counters);
  project.print("  MASTERMUTESOLO %d\n  MASTER_NCH 2 2\n", master.strip && master.strip->muted ? 1 : 0);
  project.text("  PANLAW ").fixed(gain_of_db(tables.settings.pan_depth.db), 10).text("\n");
  write_grid(project, tables.settings.grid, meter, counters);
  project.text("  MASTER_VOLUME ").fixed(master_gain(master, counters), 9);
  project.text(" 0.000000 -1 -1.000000 1.000000\n  MASTER_PANMODE 3\n");
  if (master.has_volume_automation() || master.has_mute_automation()) project.text("  MASTERAUTOMODE 1\n");
  project.text(tables.master_envelopes).text(tables.master_fx_chain);
}

}  // namespace frt
