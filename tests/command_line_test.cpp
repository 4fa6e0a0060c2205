// The command line: what arguments mean, and how the session is found among them.
#include "app/command_line.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "support/temp_folder.h"

namespace frt {
namespace {

using test::TempFolder;
using Job = CommandLine::Job;

CommandLine read(std::vector<const char*> arguments) {
  arguments.insert(arguments.begin(), "bin/ferrite");
  return read_command_line(static_cast<int>(arguments.size()), arguments.data());
}

// ---- options ----

// Every switch moves its own field away from where it rests, and none is mistaken for a path.
TEST(CommandLineTest, SwitchesSetTheirField) {
  using O = ConversionOptions;
  // clang-format off
  const std::pair<const char*, bool O::*> switches[] = {
      {"--drop-alt-takes", &O::keep_alt_takes}, {"--no-alt-takes", &O::keep_alt_takes},
      {"--recover-deleted", &O::recover_deleted}, {"--dump-tables", &O::dump_tables}, {"--ghost-clips", &O::recover_deleted}, {"--list", &O::list_only},
      {"--check", &O::check_only}, {"--no-stretch", &O::no_stretch}, {"--keep-fade-clips", &O::keep_fade_clips},
      {"--no-fades", &O::no_fades}, {"--dump-cache", &O::dump_cache}, {"--dump-cc", &O::dump_cc},
      {"--no-placeholders", &O::placeholders}, {"--no-aax-slots", &O::aax_slots},
      {"--skip-missing-fx", &O::skip_missing_fx}, {"--no-click", &O::no_click},
      {"--skip-hidden-tracks", &O::skip_hidden_tracks}, {"--skip-inactive-tracks", &O::skip_inactive_tracks},
      {"--no-sidechain", &O::no_sidechain}, {"--prefer-vst2", &O::prefer_vst3}, {"--prefer-clap", &O::prefer_clap},
      {"--usage-shared", &O::usage_shared}, {"--keep-frozen", &O::keep_frozen},
      {"--keep-inaudible-midi", &O::keep_inaudible_midi}, {"--truncate-midi-to-clip", &O::truncate_midi_to_clip},
      {"--no-track-colors", &O::no_track_colors}, {"--no-clip-colors", &O::no_clip_colors},
      {"--no-stand-ins", &O::no_stand_ins}, {"--no-ara", &O::no_ara}, {"--no-kontakt-state", &O::kontakt_state},
      {"--keep-plugin-midi", &O::keep_plugin_midi}, {"--report", &O::write_report}, {"--overwrite", &O::overwrite},
      {"--tempo-ramps", &O::tempo_ramps},
  };
  // clang-format on
  for (const auto& [option, field] : switches) {
    const CommandLine line = read({option});
    EXPECT_NE(line.options.*field, read({}).options.*field) << option;
    EXPECT_TRUE(line.positionals.empty()) << option;
  }
}

TEST(CommandLineTest, TheLastOfContradictingOptionsWins) {
  const auto rest = read({"--drop-alt-takes", "--keep-alt-takes", "--prefer-vst2", "--prefer-vst3",
                          "--no-kontakt-state", "--kontakt-state"})
                        .options;
  EXPECT_TRUE(rest.keep_alt_takes && rest.prefer_vst3 && rest.kontakt_state);
  EXPECT_EQ(read({"--skip-bypassed-fx", "--offline-bypassed-fx"}).options.fx_bypass_mode, 1);
  EXPECT_EQ(read({"--offline-bypassed-fx", "--skip-muted-fx"}).options.fx_bypass_mode, 2);
  EXPECT_FALSE(read({"--pause", "--no-pause"}).pause_at_exit);
  EXPECT_FALSE(read({"--report", "--check"}).options.write_report);
  EXPECT_TRUE(read({"--check", "--report"}).options.write_report);
}

TEST(CommandLineTest, ValuesAreTheNextElementWhateverItIs) {
  const CommandLine line =
      read({"-o", "--list", "--audio-dir", "", "--vstini", "v", "--params", "a", "--params", "b", "--want-params", "w",
            "--usage-json", "u", "--dump-corpus", "c", "--tempo", "97.25bpm", "x.ptx"});
  EXPECT_EQ(line.options.output_path, "--list");
  EXPECT_FALSE(line.options.list_only);
  EXPECT_TRUE(line.options.audio_dir_given);
  EXPECT_EQ(line.options.audio_dir, "");
  EXPECT_EQ(line.options.param_files, (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(line.options.vstini_path + line.options.want_params_path, "vw");
  EXPECT_EQ(line.options.usage_json_path + line.options.corpus_dir, "uc");
  EXPECT_EQ(line.options.tempo_override, 97.25);
  EXPECT_EQ(line.positionals, std::vector<std::string>{"x.ptx"});
  EXPECT_EQ(read({"--tempo", "fast"}).options.tempo_override, 0.0);
}

TEST(CommandLineTest, WordsOfModes) {
  for (const auto& [word, mode] : {std::pair{"item", 0}, {"project", 1}, {"none", 2}, {"nonsense", 1}, {"Item", 1}}) {
    EXPECT_EQ(read({"--comments", word}).options.comments_mode, mode) << word;
  }
  for (const auto& [word, theme] : {std::pair{"classic", 1}, {"light", 1}, {"dark", 2}, {"auto", 0}, {"Dark", 0}}) {
    EXPECT_EQ(read({"--pt-theme", word}).options.pt_theme, theme) << word;
  }
  EXPECT_FALSE(read({"--tempo-ramps", "steps"}).options.tempo_ramps);
  const CommandLine line = read({"--tempo-ramps", "--no-fades", "--tempo-ramps", "song.ptx"});  // no words of its own
  EXPECT_TRUE(line.options.tempo_ramps && line.options.no_fades);
  EXPECT_EQ(line.positionals, std::vector<std::string>{"song.ptx"});
}

TEST(CommandLineTest, WhatItRefuses) {
  for (const char* option :
       {"-", "--", "--Check", "--check=1", "--comment", "-x", "--tempo", "--audio-dir", "-o", "--vstini", "--params",
        "--want-params", "--pt-theme", "--learn", "--usage-json", "--dump-corpus", "--comments"}) {
    const CommandLine line = read({"song.ptx", option});
    EXPECT_EQ(line.job, Job::kRefuse) << option;
    EXPECT_EQ(line.unknown_option, option);
  }
  EXPECT_EQ(read({"--learn", "only one"}).unknown_option, "--learn");
}

TEST(CommandLineTest, JobsAreTakenInOrder) {
  EXPECT_EQ(read({"missing.ptx", "--version", "--bogus"}).job, Job::kTellVersion);
  EXPECT_EQ(read({"--bogus", "--version"}).job, Job::kRefuse);
  EXPECT_EQ(read({"-h", "--version"}).job, Job::kTellHelp);
  EXPECT_EQ(read({"--learn", "a", "b", "--help"}).job, Job::kTellHelp);
  const CommandLine learn = read({"x.ptx", "--learn", "chain", "--sign", "y.ptx"});
  EXPECT_EQ(learn.job, Job::kLearnPlugin);
  EXPECT_EQ(learn.learn_chain_path + "|" + learn.learn_signature, "chain|--sign");
  EXPECT_EQ(read({"", "--version"}).job, Job::kTellVersion) << "empty elements are passed over";
}

// ---- the session among the arguments ----

TEST(SessionPathTest, TheLongestRunThatOpensWins) {
  const TempFolder folder;
  const auto at = [&](const char* name) { return folder.at(name); };
  folder.put("Song.ptx", "x");
  EXPECT_EQ(find_session_path({at("My"), at("Song.ptx")}), at("Song.ptx"));

  folder.put("My Song.ptx", "x");
  EXPECT_EQ(find_session_path({at("My"), "Song.ptx"}), at("My Song.ptx"));
  EXPECT_EQ(find_session_path({"take", at("My"), "Song.ptx", at("Song.ptx")}), at("My Song.ptx"));

  folder.put("Other.ptx", "x");
  EXPECT_EQ(find_session_path({at("Song.ptx"), at("Other.ptx")}), at("Song.ptx")) << "of equal runs the leftmost";
  EXPECT_EQ(find_session_path({"none", "opens.ptx"}), "none opens.ptx");
  EXPECT_EQ(find_session_path({}), "");

  std::vector<std::string> many(3000, std::string(200, 'x'));  // no trap
  many.push_back(at("Song.ptx"));
  EXPECT_EQ(find_session_path(many), at("Song.ptx"));
}

}  // namespace
}  // namespace frt
