// The command line: what arguments mean, how the session is found among them, and the program's jobs and statuses.
#include "app/command_line.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "app/help.h"
#include "support/process.h"
#include "support/temp_folder.h"

namespace frt {
namespace {

using test::ProcessResult;
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
      {"--recover-deleted", &O::recover_deleted}, {"--ghost-clips", &O::recover_deleted}, {"--list", &O::list_only},
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
  const ConversionOptions rest = read({}).options;
  EXPECT_TRUE(rest.keep_alt_takes && rest.placeholders && rest.aax_slots && rest.prefer_vst3 && rest.kontakt_state);
}

TEST(CommandLineTest, TheLastOfContradictingOptionsWins) {
  EXPECT_TRUE(read({"--drop-alt-takes", "--keep-alt-takes"}).options.keep_alt_takes);
  EXPECT_TRUE(read({"--prefer-vst2", "--prefer-vst3"}).options.prefer_vst3);
  EXPECT_TRUE(read({"--no-kontakt-state", "--kontakt-state"}).options.kontakt_state);
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
  EXPECT_EQ(line.options.vstini_path, "v");
  EXPECT_EQ(line.options.param_files, (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(line.options.want_params_path, "w");
  EXPECT_EQ(line.options.usage_json_path, "u");
  EXPECT_EQ(line.corpus_dir, "c");
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
  EXPECT_TRUE(read({"--tempo-ramps", "ramps"}).options.tempo_ramps);
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

TEST(SessionPathTest, AudioFilesBesideTheSession) {
  EXPECT_EQ(default_audio_dir("Song.ptx"), "./Audio Files");
  EXPECT_EQ(default_audio_dir("/a/b/Song.ptx"), "/a/b/Audio Files");
  EXPECT_EQ(default_audio_dir("a\\Song.ptx"), "a/Audio Files");
  EXPECT_EQ(default_audio_dir("/Song.ptx"), "/Audio Files");
}

// ---- the process ----

ProcessResult ferrite(const std::vector<std::string>& arguments, const test::ProcessSetup& setup = {}) {
  return test::run_process(FERRITE_PROGRAM, arguments, setup);
}

TEST(EntryTest, VersionAndHelp) {
  const ProcessResult version = ferrite({"nowhere.ptx", "--version", "--bogus"});
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.out, "ferrite 1.0.1 (build 287)\n");

  const ProcessResult help = ferrite({"--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_EQ(help.out, test::read_text(std::string(FERRITE_CASES) + "/help/console.txt"));
  EXPECT_EQ(help.err, "");
}

TEST(EntryTest, MisuseIsTold) {
  const ProcessResult unknown = ferrite({"song.ptx", "--bogus"});
  EXPECT_EQ(unknown.status, 2);
  EXPECT_EQ(unknown.out,
            "\n  Unknown option: --bogus\n\n  Nothing was converted. Run  ferrite --help  for the options\n"
            "  this version understands.\n");

  for (const std::vector<std::string>& none : {std::vector<std::string>{}, {""}, {"--check"}}) {
    const ProcessResult result = ferrite(none);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "ferrite: drag a .ptx file onto this program.\n");
  }
}

TEST(EntryTest, ThePromptWaitsBehindEveryJobThatIsNoText) {
  const std::string prompt = "\n  Press Enter to close.\n";
  const test::ProcessSetup enter{{}, "", "\n"};
  EXPECT_TRUE(ferrite({"--pause", "--bogus"}, enter).out.ends_with(prompt));
  EXPECT_TRUE(ferrite({"--pause"}, enter).out.ends_with(prompt));
  EXPECT_TRUE(ferrite({"--pause", "--learn", "a", "b"}, enter).out.ends_with(prompt));
  EXPECT_TRUE(ferrite({"--pause", "nowhere.ptx"}).out.ends_with(prompt)) << "an input that is closed doesn't hang";
  EXPECT_EQ(ferrite({"--pause", "--version"}).out, "ferrite 1.0.1 (build 287)\n");
  EXPECT_EQ(ferrite({"--pause", "--no-pause"}).out.find("Press"), std::string::npos);
}

TEST(EntryTest, AMissingSessionIsNamedByAllItsWordsAndAProblemFollowsTheStages) {
  const ProcessResult plain = ferrite({"no", "such", "song.ptx"});
  EXPECT_EQ(plain.status, 1);
  EXPECT_TRUE(plain.out.starts_with("\n  No such file:\n    no such song.ptx\n")) << plain.out;
  EXPECT_EQ(plain.err, "");

  const ProcessResult progress = ferrite({"--progress", "no", "such", "song.ptx"});
  EXPECT_EQ(progress.status, 1);
  EXPECT_NE(progress.out.find("Not converted: the session file was not found."), std::string::npos);
  EXPECT_EQ(progress.err, "progress 0/6 reading\n");

  const TempFolder folder;
  EXPECT_EQ(ferrite({"--progress", folder.put("song.ptx", "no session")}).err,
            "progress 0/6 reading\nproblem kind=unreadable the session could not be decrypted - is this really a Pro "
            "Tools session file? (code -1)\n");
}

TEST(EntryTest, AFailedRunStillLeavesItsUsageSummary) {
  const TempFolder folder;
  EXPECT_EQ(ferrite({"--usage-json", folder.at("u.json"), "nowhere.ptx"}).status, 1);
  EXPECT_EQ(test::read_text(folder.at("u.json")),
            "{\"schema\":\"kestrel-usage 1\",\"converter\":\"1.0.1\",\"build\":287,\"result\":\"failed\","
            "\"session\":{},\"plugins\":[],\"not_converted\":[],\"warnings\":[]}\n");

  EXPECT_EQ(ferrite({"--check", "--usage-json", folder.at("v.json"), "nowhere.ptx"}).status, 1);
  EXPECT_EQ(ferrite({"--list", "--usage-json", folder.at("v.json"), "nowhere.ptx"}).status, 1);
  EXPECT_FALSE(std::filesystem::exists(folder.at("v.json")));

  EXPECT_TRUE(ferrite({"--usage-json", folder.at("none/u.json"), "nowhere.ptx"})
                  .out.ends_with("  could not write the usage summary file\n"));
}

TEST(EntryTest, AFailedFirstPassHasNoSecond) {
  const TempFolder folder;
  const ProcessResult result = ferrite({"--convert-twice", "-o", folder.at("out.rpp"), folder.at("nowhere.ptx")});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out.find("No such file"), result.out.rfind("No such file"));
  EXPECT_EQ(folder.count(), 0u);
}

}  // namespace
}  // namespace frt
