#include "mix/header_page.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/decibel.h"

namespace frt {
namespace {

constexpr int kCommentsInProject = 1;

// A session with a song start of its own begins before bar 1.
int measures_before_bar_1(const TempoMap& tempo, const MeterEvent& meter) {
  constexpr double kWhole = 1e-6;  // of a measure
  if (!tempo.has_song_start()) return 0;
  const double bpm = tempo.events.empty() ? tempo.session_tempo : tempo.events.front().bpm;
  const double measures = tempo.song_start * bpm / 60.0 * meter.denominator / (4.0 * meter.numerator);
  return static_cast<int>(std::clamp(std::ceil(measures - kWhole), 1.0, 1e9));
}

std::optional<TimecodePage> timecode_page(const TimecodeSettings& timecode, int measures_before) {
  if (!timecode.differs_from_default() && measures_before == 0) return std::nullopt;
  return TimecodePage{timecode.project_offset, timecode.timemode_rate, timecode.timemode_mode, measures_before};
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
  page.timecode = timecode_page(settings.timecode, measures_before_bar_1(session.clock.tempo, page.meter));
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
