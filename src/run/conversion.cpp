// The conversion run: its stages in order, and what one hands to the next.
#include "run/conversion.h"

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <system_error>
#include <unordered_set>
#include <vector>

#include "base/file.h"
#include "base/text.h"
#include "model/clip_shaping.h"
#include "model/folding.h"
#include "model/order.h"
#include "ptf/ptf_format.h"
#include "report/notes.h"
#include "report/report.h"
#include "run/problem.h"
#include "run/session_list.h"
#include "run/text_output.h"
#include "session/audio_files.h"
#include "session/clips.h"
#include "session/intake.h"
#include "session/lanes.h"
#include "session/master.h"
#include "session/memory_locations.h"
#include "session/meter_map.h"
#include "session/midi_strips.h"
#include "session/name_table.h"
#include "session/playlist_owners.h"
#include "session/session_settings.h"
#include "session/strip_records.h"
#include "session/strip_rows.h"
#include "session/tempo_blocks.h"
#include "session/track_rows.h"
#include "writer/comments.h"
#include "writer/envelopes.h"
#include "writer/media_path.h"
#include "writer/project_header.h"
#include "writer/track_block.h"

namespace frt {

std::string corpus_dir;

namespace {

constexpr std::int64_t kDefaultRate = 48000;
constexpr int kStages = 6;

// Collects the console text of a run for as long as it lives.
class Capture {
 public:
  explicit Capture(ConversionResult* result) : result_(result) {
    if (result_) text_capture = &result_->console_text;
  }
  ~Capture() {
    if (result_) text_capture = nullptr;
  }
  Capture(const Capture&) = delete;
  Capture& operator=(const Capture&) = delete;

 private:
  ConversionResult* result_;
};

// What a check writes to.
class NullTarget final : public TextTarget {
 public:
  bool write(const char*, std::size_t) override { return true; }
};

// Where the media of a session lies.
struct Folders {
  std::string media;    // without a separator at its end
  std::string session;  // the folder that holds it
};

Folders media_folders(const ConversionOptions& options) {
  Folders folders;
  folders.media = options.audio_dir_given ? options.audio_dir : folder_of(options.session_path) + "/Audio Files";
  while (folders.media.size() > 1 && (folders.media.back() == '/' || folders.media.back() == '\\'))
    folders.media.pop_back();
  folders.session = folder_of(folders.media);
  return folders;
}

// Everything one conversion owns, in the order in which it is filled.
struct Run {
  explicit Run(const ConversionOptions& given, frtgui::Progress* reports_to)
      : options(given), progress(reports_to), folders(media_folders(given)), output_path(given.output_path) {}

  void stage(int step, const char* name) {
    if (progress) progress->report(step, kStages, name);
  }

  const ConversionOptions& options;
  frtgui::Progress* progress;
  const Folders folders;
  std::string output_path;
  Problem problem;
  RunCounters counters;

  PTFFormat ptf;
  std::optional<SessionImage> image;
  std::int64_t rate = kDefaultRate;  // Hz
  SavedBy saved_by;
  TempoMap tempo;
  ClipTables clips;
  AudioFileFolders file_folders;
  std::vector<StripRow> rows;
  StripTable strip_table;
  std::vector<std::string_view> bus_names;
  std::vector<StripRecord> strips;

  ShapedClips shaped;
  TrackMaps maps;
  ByName<TrackRow> track_rows;
  std::vector<TrackComment> comments;
  std::vector<OutputTrack> tracks;
  std::vector<MeterEvent> meters;
  SessionSettings settings;
  MediaFolders media{folders.media, folders.session, file_folders};
};

enum class ReadResult { kFailed, kListed, kRead };

// The names that do not stand in `others`, in their order.
std::vector<std::string_view> names_beside(std::vector<std::string_view> names,
                                           const std::vector<std::string_view>& others) {
  const std::unordered_set<std::string_view> taken(others.begin(), others.end());
  std::erase_if(names, [&](std::string_view name) { return taken.contains(name); });
  return names;
}

ReadResult read_stage(Run& run) {
  run.stage(0, "reading");
  const int result = load_session(run.ptf, run.options.session_path);
  if (!accept_session(run.options.session_path, run.ptf, result, run.progress != nullptr, run.problem))
    return ReadResult::kFailed;
  if (run.ptf.session_rate() > 0) run.rate = run.ptf.session_rate();

  const SessionImage& image = run.image.emplace(run.ptf.image());
  run.tempo = read_tempo(image, static_cast<double>(run.rate), run.options.tempo_override);
  run.clips = walk_clips(image, run.ptf.audio_files(), run.tempo.has_song_start());
  run.file_folders = read_audio_file_folders(image);
  run.saved_by = read_saved_by(image);
  report_damage(measure_damage(image), image.size(), run.options.check_only);

  const std::vector<std::string_view> names = placement_names(run.clips);
  run.rows = read_strip_rows(image, &run.counters.names_aligned);
  run.strip_table = choose_strip_table(image, names, run.rows);
  run.bus_names = names_beside(read_bus_names(image), run.strip_table.names);
  run.counters.name_scan_count = run.strip_table.name_scan_count;
  run.counters.strip_table_size = static_cast<int>(run.strip_table.names.size());
  if (run.options.list_only) {
    print_session_list(run.tempo.session_tempo, run.rate, run.strip_table.names, run.bus_names, names);
    return ReadResult::kListed;
  }

  run.strips = read_strip_records(image, run.strip_table.names, run.bus_names, run.rows);
  read_strip_lanes(image, run.strips);
  if (std::getenv("FRT_DUMP_LANES")) dump_lanes(run.strips);
  // Routing rows, inserts and the plug-in lists are read here when they are built.
  run.counters.wide_strips = strips_of_unknown_width(run.strips);
  for (const StripRecord& strip : run.strips) run.counters.strips_with_mixer_data += strip.has_mixer_data;
  return ReadResult::kRead;
}

void clips_stage(Run& run) {
  run.stage(1, "clips");
  run.shaped = shape_clips(*run.image, run.clips, run.tempo, static_cast<double>(run.rate), run.options, run.counters);
}

void tracks_stage(Run& run) {
  run.stage(2, "tracks");
  const SessionImage& image = *run.image;
  const std::vector<TrackRow> track_rows = read_track_rows(image, run.rows);
  run.track_rows = track_rows_by_name(run.rows, track_rows);
  run.comments = track_comments(run.rows, track_rows);

  const auto owners = read_playlist_owners(image, run.strips, run.rows);
  std::vector<OutputTrack> folded =
      fold_tracks(std::move(run.shaped.tracks), run.strip_table.names, owners, run.options, run.maps, run.counters);
  // MIDI tracks are made here, groups, colour coding and click tracks are read here, and the selection of hidden and
  // inactive tracks follows the order, when they are built.
  run.tracks = order_tracks({.image = image,
                             .rows = run.rows,
                             .options = run.options,
                             .maps = run.maps,
                             .folded = std::move(folded),
                             .display_rows = read_display_rows(image),
                             .voice_off_names = read_inactive_names(image, run.rows),
                             .audio_files = run.ptf.audio_files()},
                            run.counters, run.problem);
}

// A name that no file bears yet: the path with " (n)" ahead of its extension; empty if there is none left.
std::string numbered_name(const std::string& path) {
  const std::string base = without_extension(path), extension = extension_of(path);
  for (int n = 1; n <= 9999; ++n) {
    std::string candidate = base + format_text(" (%d)", n) + extension;
    if (!can_open(candidate)) return candidate;
  }
  return {};
}

void prepare_output_path(Run& run) {
  if (run.output_path.empty()) run.output_path = without_extension(run.options.session_path) + ".rpp";
}

// Opens the project's file under the name rules; false if it can't be written.
bool open_output(Run& run, OutputFile& file) {
  prepare_output_path(run);
  if (!run.options.overwrite && can_open(run.output_path)) {
    const std::string free_name = numbered_name(run.output_path);
    if (free_name.empty()) return false;
    print_text("\n  %s already exists - writing %s instead\n  (--overwrite to replace it)\n", run.output_path.c_str(),
               free_name.c_str());
    run.output_path = free_name;
  }
  // The session itself is never the target, whatever was asked for.
  std::error_code unknown;
  if (std::filesystem::equivalent(run.output_path, run.options.session_path, unknown)) return false;
  return file.open(run.output_path);
}

// Prints the project from its first line to its last.
void write_project(Run& run, TextTarget& target) {
  const SessionImage& image = *run.image;
  const double sample_rate = static_cast<double>(run.rate);
  const MasterStrip master = find_master(image, run.rows, run.strips);
  const std::vector<MemoryLocation> locations = read_memory_locations(image);
  const std::string notes = run.options.comments_mode == 1 ? project_notes(run.comments) : std::string();
  const std::string envelopes =
      master.strip ? master_envelopes(*master.strip, {.tempo = run.tempo, .sample_rate = sample_rate}) : std::string();

  ProjectText project(target);
  write_project_header(project,
                       {.session_rate = run.ptf.session_rate(),
                        .sample_rate = sample_rate,
                        .tempo = run.tempo,
                        .meters = run.meters,
                        .locations = locations,
                        .settings = run.settings,
                        .master = master,
                        .tempo_ramps = run.options.tempo_ramps,
                        .notes_block = notes,
                        .master_envelopes = envelopes},
                       run.counters);
  const StripIndex strips = index_strips(run.strips);
  Names wide_strips;
  for (const StripRecord& strip : run.strips)
    if (strip.lane_count > 0 && !strip.known_width) wide_strips.emplace(strip.name);
  AudioItems items{.options = run.options, .media = run.media, .sample_rate = sample_rate};
  write_tracks(project, run.tracks,
               {.options = run.options,
                .tempo = run.tempo,
                .sample_rate = sample_rate,
                .strips = strips,
                .track_rows = run.track_rows,
                .maps = run.maps,
                .wide_strips = std::move(wide_strips)},
               items, run.counters, run.progress);
  project.text(">\n");
  project.flush();
}

// False if the project could not be written whole; what stood in its place is then still there.
bool writing_stage(Run& run) {
  run.stage(3, "writing");
  // Routing and folders are worked out here, on the final track list, when they are built.
  run.meters = read_meter_map(*run.image);
  run.settings = read_session_settings(*run.image);
  if (run.options.check_only) {
    prepare_output_path(run);
    NullTarget nowhere;
    write_project(run, nowhere);
    return true;
  }
  OutputFile file;
  bool written = open_output(run, file);
  if (written) {
    write_project(run, file);
    written = file.commit();
  }
  if (!written) print_text("\nCould not write %s\n", run.output_path.c_str());
  return written;
}

void report_stage(Run& run, ConversionResult* result, RunOutcome& outcome) {
  if (!run.progress && !result && !run.options.write_report) return;
  run.stage(5, "report");
  ReportOutcome report = build_report({.options = run.options,
                                       .counters = run.counters,
                                       .problem = run.problem,
                                       .session_version = run.ptf.version(),
                                       .version_major = run.saved_by.version_major,
                                       .session_rate = run.rate,
                                       .tempo = run.tempo,
                                       .settings = run.settings,
                                       .tracks = run.tracks,
                                       .plugins = PluginTables(),
                                       .output_path = run.output_path});
  outcome.summary_line = report.summary_line;
  if (run.options.write_report) {
    const std::string path = report_path(run.output_path);
    if (save_report(path, report.text) && result) result->report_path = path;
  }
  if (result) result->report_text = std::move(report.text);
}

// Pro Tools draws in its Dark theme by default from 2020.11 on; a session that doesn't say counts as new.
bool is_dark_by_default(const SavedBy& saved_by) {
  if (saved_by.version.empty()) return true;
  const std::string version(saved_by.version);
  const long major = std::strtol(version.c_str(), nullptr, 10);
  const std::size_t dot = version.find('.');
  const long minor = dot == version.npos ? 0 : std::strtol(version.c_str() + dot + 1, nullptr, 10);
  return major > 2020 || (major == 2020 && minor > 10);
}

// All stages of a run; its status.
int run_stages(Run& run, ConversionResult* result, RunOutcome& outcome) {
  if (run.options.session_path.empty()) {
    print_text("ferrite: drag a .ptx file onto this program.\n");
    return 1;
  }
  switch (read_stage(run)) {
    case ReadResult::kFailed:
      return 1;
    case ReadResult::kListed:
      return 0;
    case ReadResult::kRead:
      break;
  }
  clips_stage(run);
  tracks_stage(run);
  if (!writing_stage(run)) return 1;

  const NotesInput notes{.options = run.options,
                         .counters = run.counters,
                         .saved_by = run.saved_by,
                         .dark_theme_default = is_dark_by_default(run.saved_by),
                         .session_rate = run.rate,
                         .tempo = run.tempo,
                         .meters = run.meters,
                         .strips = run.strips,
                         .settings = run.settings,
                         .output_path = run.output_path,
                         .media_folder = run.folders.media,
                         .long_clips = find_long_clips(run.clips.audio_clips, run.ptf.audio_file_lengths(), run.rate)};
  print_notes(notes);
  run.stage(4, "media");
  check_audio_files(run.media, run.ptf.audio_files(), run.counters);
  print_media_notes(notes);
  report_stage(run, result, outcome);
  print_closing_notes(notes);
  if (run.options.check_only)
    print_text(
        "\n  --check: nothing was written. The lines above are what a real\n      conversion of this session would "
        "produce.\n");
  return 0;
}

}  // namespace

RunOutcome run_conversion(const ConversionOptions& options, ConversionResult* result, frtgui::Progress* progress) {
  if (result) *result = {};
  const Capture capture(result);
  Run run(options, progress);
  RunOutcome outcome;
  outcome.status = run_stages(run, result, outcome);
  outcome.problem_kind = run.problem.kind;
  outcome.problem_detail = run.problem.detail;
  return outcome;
}

}  // namespace frt
