#include "mix/header_page.h"

#include <utility>

#include "base/decibel.h"

namespace frt {
namespace {

constexpr int kCommentsInProject = 1;

std::optional<TimecodePage> timecode_page(const TimecodeSettings& timecode) {
  if (!timecode.differs_from_default()) return std::nullopt;
  return TimecodePage{timecode.project_offset, timecode.timemode_rate, timecode.timemode_mode};
}

// REAPER's setting for WAV; what it writes for AIFF and for 24 bits (its default) isn't known.
std::optional<int> wav_depth(const RecordingFormat& recording) {
  if ((recording.depth == 16 || recording.depth == 32) && !recording.is_aiff()) return recording.depth;
  return std::nullopt;
}

std::optional<double> grid_quarters(const GridSettings& grid, const MeterEvent& meter) {
  constexpr double kMost = 1000.0;
  if (!grid.grid_read) return std::nullopt;
  const double quarters = quarters_of(grid.grid, meter.numerator, meter.denominator);
  if (quarters > 0.0 && quarters < kMost) return quarters;
  return std::nullopt;
}

MasterPage master_page(const Session& session, HeaderCounts& counts) {
  MasterPage page;
  const MasterStrip& master = session.mixer.master;
  if (!master.strip) return page;
  const StripRecord& strip = session.mixer.strips[*master.strip];
  page.mute = strip.muted;
  if (strip.volume_lane.moves()) {
    ++counts.faders_at_unity;  // REAPER multiplies fader and envelope: the envelope alone carries the level
  } else {
    page.volume = gain_of_db(strip.fader_db);
  }
  page.envelopes = master_envelopes(strip, session.clock);
  return page;
}

}  // namespace

Header make_header_page(const Session& session, const ConversionOptions& options) {
  Header header;
  HeaderPage& page = header.page;
  const SessionSettings& settings = session.headers.settings;
  if (options.comments_mode == kCommentsInProject) page.notes = track_comments(session.mixer);
  page.rate = session.rate;
  page.tempo = session.clock.tempo.session_tempo;
  page.meter = first_meter(session.headers.meters);
  page.timecode = timecode_page(settings.timecode);
  page.wav_depth = wav_depth(settings.recording);
  TempoPoints tempo = make_tempo_points(session.clock, session.headers.meters, options.tempo_ramps);
  page.tempo_points = std::move(tempo.points);
  header.counts.tempo = tempo.counts;
  MarkerPages markers = make_marker_pages(session.headers.locations, session.clock);
  page.markers = std::move(markers.pages);
  header.counts.markers = std::move(markers.counts);
  page.pan_law = gain_of_db(settings.pan_depth.db);
  page.grid_quarters = grid_quarters(settings.grid, page.meter);
  page.master = master_page(session, header.counts);
  return header;
}

}  // namespace frt
