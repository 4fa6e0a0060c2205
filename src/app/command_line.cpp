#include "app/command_line.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "base/file.h"
#include "base/text.h"

namespace frt {
namespace {

using Values = const char* const*;  // the elements behind an option

struct OptionRow {
  std::string_view name;
  int values;  // how many elements behind it belong to it
  void (*apply)(CommandLine&, Values);
};

// For the many options that set one field of the record to one value.
template <auto kField, auto kValue>
void set(CommandLine& line, Values /*values*/) {
  line.options.*kField = kValue;
}
template <auto kField>
void take(CommandLine& line, Values values) {
  line.options.*kField = values[0];
}
template <auto kField, bool kValue = true>
void set_own(CommandLine& line, Values /*values*/) {
  line.*kField = kValue;
}

using O = ConversionOptions;

void set_check(CommandLine& line, Values /*values*/) {
  line.options.check_only = true;
  line.options.write_report = false;
}

void take_tempo(CommandLine& line, Values values) { line.options.tempo_override = std::strtod(values[0], nullptr); }

void take_audio_dir(CommandLine& line, Values values) {
  line.options.audio_dir = values[0];
  line.options.audio_dir_given = true;
}

void take_param_file(CommandLine& line, Values values) { line.options.param_files.emplace_back(values[0]); }

void take_theme(CommandLine& line, Values values) {
  const std::string_view name = values[0];
  line.options.pt_theme = name == "classic" || name == "light" ? 1 : name == "dark" ? 2 : 0;
}

void take_comments(CommandLine& line, Values values) {
  const std::string_view mode = values[0];
  line.options.comments_mode = mode == "item" ? 0 : mode == "none" ? 2 : 1;
}

void take_learn(CommandLine& line, Values values) {
  line.job = CommandLine::Job::kLearnPlugin;
  line.learn_chain_path = values[0];
  line.learn_signature = values[1];
}

void ignore(CommandLine& /*line*/, Values /*values*/) {}

void ask_version(CommandLine& line, Values /*values*/) { line.job = CommandLine::Job::kTellVersion; }
void ask_help(CommandLine& line, Values /*values*/) { line.job = CommandLine::Job::kTellHelp; }

// `--tempo-ramps` is not here: whether the next element belongs to it depends on its word.
constexpr OptionRow kOptions[] = {
    {"--version", 0, ask_version},
    {"-h", 0, ask_help},
    {"--help", 0, ask_help},
    {"--tempo", 1, take_tempo},
    {"--audio-dir", 1, take_audio_dir},
    {"-o", 1, take<&O::output_path>},
    {"--keep-alt-takes", 0, set<&O::keep_alt_takes, true>},
    {"--drop-alt-takes", 0, set<&O::keep_alt_takes, false>},
    {"--no-alt-takes", 0, set<&O::keep_alt_takes, false>},
    {"--recover-deleted", 0, set<&O::recover_deleted, true>},
    {"--ghost-clips", 0, set<&O::recover_deleted, true>},
    {"--list", 0, set<&O::list_only, true>},
    {"--dump-tables", 0, set<&O::dump_tables, true>},  // for developers; the help doesn't name it
    {"--check", 0, set_check},
    {"--no-stretch", 0, set<&O::no_stretch, true>},
    {"--keep-fade-clips", 0, set<&O::keep_fade_clips, true>},
    {"--no-fades", 0, set<&O::no_fades, true>},
    {"--vstini", 1, take<&O::vstini_path>},
    {"--params", 1, take_param_file},
    {"--want-params", 1, take<&O::want_params_path>},
    {"--dump-cache", 0, set<&O::dump_cache, true>},
    {"--dump-cc", 0, set<&O::dump_cc, true>},
    {"--skip-bypassed-fx", 0, set<&O::fx_bypass_mode, 2>},
    {"--skip-muted-fx", 0, set<&O::fx_bypass_mode, 2>},
    {"--offline-bypassed-fx", 0, set<&O::fx_bypass_mode, 1>},
    {"--pt-theme", 1, take_theme},
    {"--learn", 2, take_learn},
    {"--no-placeholders", 0, set<&O::placeholders, false>},
    {"--no-aax-slots", 0, set<&O::aax_slots, false>},
    {"--skip-missing-fx", 0, set<&O::skip_missing_fx, true>},
    {"--no-click", 0, set<&O::no_click, true>},
    {"--skip-hidden-tracks", 0, set<&O::skip_hidden_tracks, true>},
    {"--skip-inactive-tracks", 0, set<&O::skip_inactive_tracks, true>},
    {"--no-sidechain", 0, set<&O::no_sidechain, true>},
    {"--prefer-vst3", 0, set<&O::prefer_vst3, true>},
    {"--prefer-vst2", 0, set<&O::prefer_vst3, false>},
    {"--prefer-clap", 0, set<&O::prefer_clap, true>},
    {"--usage-json", 1, take<&O::usage_json_path>},
    {"--usage-shared", 0, set<&O::usage_shared, true>},
    {"--keep-frozen", 0, set<&O::keep_frozen, true>},
    {"--keep-inaudible-midi", 0, set<&O::keep_inaudible_midi, true>},
    {"--truncate-midi-to-clip", 0, set<&O::truncate_midi_to_clip, true>},
    {"--no-track-colors", 0, set<&O::no_track_colors, true>},
    {"--no-clip-colors", 0, set<&O::no_clip_colors, true>},
    {"--no-stand-ins", 0, set<&O::no_stand_ins, true>},
    {"--no-ara", 0, set<&O::no_ara, true>},
    {"--progress", 0, set_own<&CommandLine::show_progress>},
    {"--no-kontakt-state", 0, set<&O::kontakt_state, false>},
    {"--kontakt-state", 0, set<&O::kontakt_state, true>},
    {"--predict", 0, ignore},
    {"--dump-corpus", 1, take<&O::corpus_dir>},
    {"--keep-plugin-midi", 0, set<&O::keep_plugin_midi, true>},
    {"--report", 0, set<&O::write_report, true>},
    {"--pause", 0, set_own<&CommandLine::pause_at_exit>},
    {"--no-pause", 0, set_own<&CommandLine::pause_at_exit, false>},
    {"--overwrite", 0, set<&O::overwrite, true>},
    {"--convert-twice", 0, set_own<&CommandLine::convert_twice>},
    {"--comments", 1, take_comments},
};

}  // namespace

CommandLine read_command_line(int argc, const char* const* argv) {
  CommandLine line;
  if (argc > 0 && argv[0]) line.options.program_path = argv[0];
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    if (argument.empty()) continue;
    if (argument == "--tempo-ramps") {
      line.options.tempo_ramps = true;
      const std::string_view next = i + 1 < argc ? argv[i + 1] : "";
      if (next == "ramps" || next == "steps") {
        line.options.tempo_ramps = next == "ramps";
        ++i;
      }
      continue;
    }
    const auto* const row = std::find_if(std::begin(kOptions), std::end(kOptions), [&](const OptionRow& option) {
      return option.name == argument && option.values < argc - i;
    });
    if (row != std::end(kOptions)) {
      row->apply(line, argv + i + 1);
      i += row->values;
      if (line.job == CommandLine::Job::kTellVersion || line.job == CommandLine::Job::kTellHelp) return line;
    } else if (argument.starts_with('-')) {
      line.job = CommandLine::Job::kRefuse;
      line.unknown_option = argument;
      return line;
    } else {
      line.positionals.emplace_back(argument);
    }
  }
  return line;
}

std::string find_session_path(const std::vector<std::string>& positionals) {
  std::string all;
  std::vector<std::size_t> starts;
  for (const std::string& positional : positionals) {
    if (!starts.empty()) all += ' ';
    starts.push_back(all.size());
    all += positional;
  }
  const std::size_t n = positionals.size();
  // No system opens a longer path, and each element and its blank are two characters at least.
  constexpr std::size_t kLongestPath = 4096;
  for (std::size_t k = std::min(n, kLongestPath / 2 + 1); k > 0; --k) {
    for (std::size_t i = 0; i + k <= n; ++i) {
      const std::size_t length = starts[i + k - 1] + positionals[i + k - 1].size() - starts[i];
      if (length > kLongestPath) continue;
      std::string candidate = all.substr(starts[i], length);
      if (can_open(candidate)) return candidate;
    }
  }
  return all;
}

}  // namespace frt
