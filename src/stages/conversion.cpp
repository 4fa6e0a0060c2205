// The conversion: its stages in order, and what one hands to the next.
#include "stages/conversion.h"

#include <cstdlib>
#include <optional>
#include <utility>

#include "base/file.h"
#include "base/path.h"
#include "base/plain_numbers.h"
#include "base/text.h"
#include "mix/mix.h"
#include "model/clips/shape_clips.h"
#include "model/midi/midi_tracks.h"
#include "model/tracks/folding.h"
#include "model/tracks/order.h"
#include "plugins/load_plugins.h"
#include "ptf/ptf_format.h"
#include "report/notes.h"
#include "report/report.h"
#include "report/told.h"
#include "run/problem.h"
#include "run/text_output.h"
#include "session/mixer/lanes.h"
#include "session/session.h"
#include "stages/intake.h"
#include "stages/midi_statistics.h"
#include "stages/session_list.h"
#include "stages/writing.h"
#include "state/clap_overrides.h"
#include "state/corpus.h"

namespace frt {
namespace {

using frtgui::Step;

// Prints a long text in pieces, so that no limit on one text cuts it.
void print_long_text(const std::string& text) {
  constexpr std::size_t kPiece = 4000;
  for (std::size_t at = 0; at < text.size(); at += kPiece) print_text("%s", text.substr(at, kPiece).c_str());
}

// Everything one conversion owns, in the order in which it is filled.
class Conversion {
 public:
  Conversion(const ConversionOptions& options, ConversionResult* result, frtgui::Progress* progress)
      : options_(options), result_(result), progress_(progress) {}

  RunOutcome run() {
    RunOutcome outcome;
    outcome.status = run_stages(outcome);
    outcome.problem_kind = problem_.kind;
    outcome.problem_detail = problem_.detail;
    return outcome;
  }

 private:
  int run_stages(RunOutcome& outcome) {
    if (options_.session_path.empty()) {
      print_text("ferrite: drag a .ptx file onto this program.\n");
      return 1;
    }
    if (!read()) return 1;
    if (options_.list_only || options_.dump_tables) return 0;
    Told told(options_, session_, plugins_, problem_);
    shape(told);
    arrange_tracks(told);
    if (!write(told)) return 1;
    tell(told, outcome);
    return 0;
  }

  bool read() {
    report_step(progress_, Step::kReading);
    const int result = load_session(ptf_, options_.session_path);
    if (!accept_session(options_.session_path, ptf_, result, progress_ != nullptr, problem_)) return false;
    image_.emplace(ptf_.image());
    const FileFacts file{ptf_.version(), ptf_.session_rate(), ptf_.audio_files(), ptf_.audio_file_lengths(),
                         ptf_.audio_file_facts()};
    session_ = read_session(*image_, file, {.tempo_override = options_.tempo_override});
    report_damage(session_.damage, options_.check_only);
    if (options_.dump_cc) print_midi_statistics(session_.midi.streams);
    if (options_.list_only) print_session_list(session_);
    if (options_.dump_tables) print_long_text(dump(session_));
    if (!options_.list_only && std::getenv("FRT_DUMP_LANES")) dump_lanes(session_.mixer.strips);
    if (options_.list_only || options_.dump_tables) return true;
    plugins_ = load_plugins(options_, session_.mixer.inserts, [this](Plugins& plugins) {
      prefer_clap_builds(plugins, session_.mixer.inserts, options_);
    });
    return true;
  }

  void shape(Told& told) {
    report_step(progress_, Step::kClips);
    shaped_ = shape_clips(std::move(session_.clips), session_.clock, options_);
    told.clips = std::move(shaped_.counts);
  }

  void arrange_tracks(Told& told) {
    report_step(progress_, Step::kTracks);
    FoldedTracks folded = fold_tracks(std::move(shaped_.tracks), session_.mixer.table.names,
                                      session_.track_list.playlist_owners, options_);
    told.folding = folded.counts;
    MidiTracks midi =
        make_midi_tracks(session_.midi, session_.clock, folded.tracks, session_.mixer.table.names, options_);
    told.midi = midi.counts;
    tables_.sample_based_midi = std::move(midi.sample_based);
    // Groups, colour coding and click tracks are looked up here, and the selection of hidden
    // and inactive tracks follows the order, when they are built.
    ordered_ = order_tracks({.rows = session_.mixer.rows,
                             .options = options_,
                             .folded = std::move(folded.tracks),
                             .midi = std::move(midi.tracks),
                             .facts = std::move(folded.facts),
                             .display_rows = session_.track_list.display_rows,
                             .inactive_names = session_.track_list.inactive_names,
                             .voice_off_names = session_.track_list.voice_off_names,
                             .audio_files = session_.media.files,
                             .freeze_files = session_.media.freeze_files});
    told.order = std::move(ordered_.counts);
    if (const int unmatched = told.order.unmatched_tracks; unmatched > 0)
      problem_.set("unmatched-tracks", format_text("%d track(s) matched no strip row", unmatched));
  }

  bool write(Told& told) {
    report_step(progress_, Step::kWriting);
    told.output_path = wanted_output_path(options_);
    media_.emplace(media_places(options_, told.output_path), session_.media);
    mix_ = mix_tracks(session_, plugins_, ordered_.tracks, ordered_.facts, tables_, *media_, options_);
    told.mix = std::move(mix_.counts);
    told.header = &mix_.header;
    told.tracks = ordered_.tracks;
    print_mix_notes(told);
    const MediaPlaces& places = media_->places();
    told.media_folder = folder_from_project(places.media, places.project, places.working);
    if (!write_output(mix_, options_, told.output_path, progress_)) return false;
    if (!options_.corpus_dir.empty()) save_corpus();
    return true;
  }

  // What was written of each plug-in with its settings.
  void save_corpus() {
    const auto save = [&](const FxChain& chain) {
      for (const FxSlot& slot : chain.slots) {
        if (!slot.has_state) continue;
        dump_corpus(options_.corpus_dir, options_.session_path, *slot.insert, *slot.record,
                    view_of(slot.carried_state()), slot.image);
      }
    };
    save(mix_.header.master.fx);
    for (const TrackPage& page : mix_.tracks) save(page.fx);
    for (const ReturnPage& page : mix_.returns) save(page.fx);
  }

  // The plug-ins whose parameter names would have placed lanes that no other rule knows.
  void write_wanted_params(const Told& told) {
    if (options_.want_params_path.empty()) return;
    std::string names;
    for (const std::string& plugin : told.mix.fx.parameters.wanted_params) names += plugin + "\n";
    OutputFile file;
    if (file.open(options_.want_params_path) && file.write(names)) file.commit();
  }

  void tell(Told& told, RunOutcome& outcome) {
    print_notes(told);
    report_step(progress_, Step::kMedia);
    told.media = media_->check();
    print_media_notes(told);
    if (progress_ || result_ || options_.write_report) report(told, outcome);
    print_closing_notes(told);
    write_wanted_params(told);
    if (options_.check_only)
      print_text(
          "\n  --check: nothing was written. The lines above are what a real\n      conversion of this session would "
          "produce.\n");
  }

  void report(const Told& told, RunOutcome& outcome) {
    report_step(progress_, Step::kReport);
    ReportOutcome report = build_report(told);
    outcome.summary_line = report.summary_line;
    if (options_.write_report) {
      const std::string path = report_path(told.output_path);
      if (save_report(path, report.text) && result_) result_->report_path = path;
    }
    if (result_) result_->report_text = std::move(report.text);
  }

  const ConversionOptions& options_;
  ConversionResult* result_;
  frtgui::Progress* progress_;
  Problem problem_;

  PTFFormat ptf_;
  std::optional<SessionImage> image_;
  Session session_;
  Plugins plugins_;
  ShapedClips shaped_;
  OrderedTracks ordered_;
  MixTables tables_;  // most of passes that are yet to come
  std::optional<MediaFiles> media_;
  Mix mix_;
};

}  // namespace

RunOutcome run_conversion(const ConversionOptions& options, ConversionResult* result, frtgui::Progress* progress) {
  const PlainNumbers plain;  // for every text of the run: project, console, report
  std::optional<TextCapture> capture;
  if (result) {
    *result = {};
    capture.emplace(result->console_text);
  }
  return Conversion(options, result, progress).run();
}

}  // namespace frt
