// The console notes: the forms of rows, and what no whole run prints. Wording is held by the cases.
#include "report/notes.h"

#include <gtest/gtest.h>

#include <string>

#include "base/text.h"
#include "report/note_row.h"
#include "report/timecode_text.h"
#include "support/console.h"

namespace frt {
namespace {

// A run with nothing to tell; a test sets what its note needs.
struct Scene {
  ConversionOptions options;
  Session session;
  Problem problem;
  Plugins plugins;
  Told told{options, session, plugins, problem};
};
using Change = void (*)(Scene&);

std::string notes_of(Change change, void (*print)(const Told&) = print_notes) {
  Scene scene;
  scene.session.mixer.names_aligned = true;
  change(scene);
  test::Console console;
  print(scene.told);
  return console.take();
}

// ---- forms of rows ----

const NameVector& strips(const Told& told) { return told.wide_strips; }
bool recovers(const Told& told) { return told.options.recover_deleted; }

constexpr Note kForms[] = {
    {in<&MixCounts::return_tracks>, "%d of %d, %s\n", in<&ReceiveCounts::sends>, "always"},
    {in<&MixCounts::return_tracks>, recovers, "%d recovered\n"},
    {in<&MixCounts::return_tracks>, unless(recovers), "%d left\n"},
    {always, "plain\n"},
    {strips, NameList::kLines, "%d lines:%s\n"},
    {strips, NameList::kQuotedLines, "%d quoted lines:%s\n"},
    {strips, NameList::kBlanks, "%d blanks:%s\n"},
    {strips, NameList::kQuoted, "%d quoted:%s\n"},
    {strips, NameList::kCommas, "%d commas:%s\n"},
};

TEST(NoteRow, PrintsItsCountItsValuesOrItsNames) {
  const auto print = [](const Told& told) {
    for (const Note& note : kForms) note.print(told);
  };
  EXPECT_EQ(notes_of([](Scene&) {}, print), "plain\n");
  EXPECT_EQ(notes_of(
                [](Scene& s) {
                  s.told.mix.return_tracks = 2, s.told.mix.tracks.receives.sends = 7;
                  s.told.wide_strips = {"A", "B"};
                },
                print),
            R"(2 of 7, always
2 left
plain
2 lines:
      A
      B
2 quoted lines:
      "A"
      "B"
2 blanks: A B
2 quoted: "A", "B"
2 commas: A, B
)");
}

// ---- rows ----

TEST(Notes, APairOfKeyedPlugInsIsToldAheadOfTheRest) {
  static InsertRecord first;
  first.signature = "AbcdComp";
  const auto pair = [](Scene& s) { s.told.mix.routing.multi_mono_pairs = {{"Bass", "K.L", "K.R", &first, nullptr}}; };
  EXPECT_TRUE(notes_of(pair, print_mix_notes)
                  .starts_with("  NOTE: 'Bass' carries what looks like ONE unlinked MULTI-MONO\n"
                               "    AbcdComp: two records, keyed off 'K.L' and 'K.R'. "));
}

TEST(Notes, RowsWithAConditionOrNamesThatNoWholeRunReaches) {
  const struct {
    const char* note;
    Change change;
  } rows[] = {
      {"line, which is NOT carried (a fixed group gain is):\n      \"A\"\n",
       [](Scene& s) { s.told.clips.gain.group_lines = {"A"}; }},
      {"arrive in REAPER's default color: A, B\n",
       [](Scene& s) {
         s.told.mix.header.markers.unmapped_colors = {"A", "B"};
       }},
      {"  1 MIDI event(s) kept but muted -- ", [](Scene& s) { s.told.mix.midi.muted_events = 1; }},
      {"  1 MIDI note event(s) kept but muted:",
       [](Scene& s) { s.told.mix.midi.muted_events = 1, s.options.keep_inaudible_midi = true; }},
      {"midi: 3 MIDI event(s) outside",
       [](Scene& s) { s.told.midi.kept_unmuted = 3, s.options.keep_inaudible_midi = true; }},
      {"  1 note(s) run past a clip edge; those", [](Scene& s) { s.told.midi.notes_past_edges = 1; }},
      {"-clip: 1 note(s) run past a clip edge and are CUT",
       [](Scene& s) { s.told.midi.notes_past_edges = 1, s.options.truncate_midi_to_clip = true; }},
      {"instead of their own: Bass (2), Pad (1)\n",
       [](Scene& s) {
         s.told.mix.routing.keys.key_mismatch = {{"Bass", 2}, {"Pad", 1}};
       }},
      {"send is off on them: \"A\", \"A\", \"A\", \"A\", \"A\", \"A\", \"A\", \"A\", \"A\", \"A\", \"A\", \"A\", ...\n",
       [](Scene& s) { s.told.mix.routing.no_output_names.assign(13, "A"); }},
      {"  1 sidechain key inputs wired to channels 3/4\n  2 more key",
       [](Scene& s) { s.told.mix.routing.keys.wired = 1, s.told.mix.routing.keys.more_wired = 2; }},
      {"the way down:\n      Aux\n", [](Scene& s) { s.told.mix.tracks.prefader_faders_down = {"Aux"}; }},
      {"quiet in REAPER:\n      Pad\n", [](Scene& s) { s.told.mix.tracks.prefader_kept_muted = {"Pad"}; }},
      {"-stand-ins: 0 Avid plug-in(s) left",
       [](Scene& s) { s.told.mix.trims.one_sided_strips = 1, s.options.no_stand_ins = true; }},
      {"      1 ramp(s) left as Pro Tools' steps",
       [](Scene& s) {
         s.told.mix.header.tempo.tempo_changes = 9, s.told.mix.header.tempo.ramps_left = 1;
         s.options.tempo_ramps = true;
       }},
      {"the records disagree,",
       [](Scene& s) { s.told.clips.pairing.judged = 1, s.told.clips.pairing.records_exist = true; }},
      {"  \"A\" holds a Click II but also", [](Scene& s) { s.told.order.click_kept = {"A"}; }},
      {"  2 Click track(s) left out (--no-click): \"A\", \"B\"\n",
       [](Scene& s) {
         s.told.order.click_left_out = 2, s.told.order.click_left_out_names = {"A", "B"};
       }},
      {"  1 internal freeze record(s)", [](Scene& s) { s.told.order.freeze_records = 1; }},
  };
  for (const auto& row : rows) {
    const std::string text = notes_of(row.change);
    EXPECT_TRUE(contains(text, row.note)) << row.note << " is not in:\n" << text;
  }
}

TEST(Notes, WhatLeavesARowOut) {
  const struct {
    const char* note;
    Change change;
  } rows[] = {
      {"freeze record", [](Scene& s) { s.told.order.freeze_records = 2, s.told.frozen_tracks_delivered = 1; }},
      {"automation mode other than",
       [](Scene& s) { s.told.mix.tracks.tracks_not_in_read = 1, s.told.mix.tracks.automation_off_tracks = {"A"}; }},
      {"--no-stand-ins: on", [](Scene& s) { s.options.no_stand_ins = true, s.told.mix.fx.stand_ins.left_out = 1; }},
      {"no drawn ramp", [](Scene& s) { s.options.tempo_ramps = true, s.told.mix.header.tempo.ramps_left = 1; }},
      {"ramp(s)",
       [](Scene& s) { s.told.mix.header.tempo = {.tempo_changes = 9, .ramps_written = 1, .ramps_left = 1}; }},
      {"None carried", [](Scene& s) { s.told.mix.header.markers.markers = s.told.mix.header.markers.colored = 1; }},
      {"is outside that",
       [](Scene& s) {
         s.session.saved_by = {"Pro Tools", "12.5.1", 12};
       }},
      {"is outside that",
       [](Scene& s) {
         s.session.saved_by = {"Pro Tools", "0.1", 0};
       }},
      {"Pan law",
       [](Scene& s) {
         s.session.headers.settings.pan_depth = {true, 2, true, -3.0};
       }},
      {"AIFF",
       [](Scene& s) {
         s.session.headers.settings.recording = {true, 24, 24, false, 4};
       }},
      {"Nudge",
       [](Scene& s) {
         s.session.headers.settings.grid.nudge = {0, 1, 60};
       }},
  };
  for (const auto& row : rows) EXPECT_FALSE(contains(notes_of(row.change), row.note)) << row.note;
}

TEST(Notes, RowsOfManySubjectsKeepTheirOrder) {
  const std::string text = notes_of([](Scene& s) {
    s.session.mixer.names_aligned = false;
    s.told.wide_strips = {"Surr"};
    s.told.clips.fades.unbound = s.told.clips.gain.group_clips = 1;
    s.told.order.freeze_records = s.told.mix.tracks.midi_tracks_muted = s.told.mix.tracks.surround_aux_widths = 1;
    s.told.mix.header.markers.unmapped_colors = {"A"};
    s.told.midi.sysex = s.told.midi.cut_clips = s.told.midi.sample_based_clips = 1;
  });
  std::size_t at = 0;
  for (const char* row : {"1 SysEx event(s)", "1 MIDI track(s) muted", "1 MIDI clip(s) cut", "inside a clip group",
                          "marker(s) carry", "1 aux(es) taking", "a SAMPLE-BASED track", "neither mono nor",
                          "freeze record", "CURRENT track names", "fades sat on"}) {
    const std::size_t next = text.find(row, at);
    ASSERT_NE(next, text.npos) << row << text;
    at = next;
  }
}

TEST(Notes, NamesUpToTheirLimit) {
  const auto strips = [](Scene& s) { s.told.wide_strips.assign(8, "S"); };
  const auto one_more = [](Scene& s) { s.told.wide_strips.assign(9, "S"); };
  EXPECT_FALSE(contains(notes_of(strips), "... and"));
  EXPECT_TRUE(contains(notes_of(one_more), "      S\n      ... and 1 more\n"));
  const auto files = [](Scene& s) { s.told.media.missing_files.assign(6, "a.wav"); };
  EXPECT_FALSE(contains(notes_of(files, print_media_notes), "... and"));
  const auto meters = [](Scene& s) {
    s.session.headers.meters.assign(9, {0, 1, 4, 4});
    for (std::uint32_t i = 1; i < 9; ++i) s.session.headers.meters.push_back({0, i, 4 - i % 2, 4});
  };
  EXPECT_FALSE(contains(notes_of(meters), "... and"));
}

TEST(TimecodeText, Table) {
  const struct {
    std::uint32_t frames, rate;
    bool drop;
    const char* text;
  } rows[] = {
      // Two numbers are dropped at each minute but every tenth, times the rate over 30.
      {1800, 30, true, "00:01:00;02"},
      {17981, 30, true, "00:09:59;29"},
      {17982, 30, true, "00:10:00;00"},
      {215784, 60, true, "01:00:00;00"},
      {431568, 120, true, "01:00:00;000"},
      {50, 25, true, "00:00:02;00"},  // no multiple of 30: nothing to drop, but the mark stays
      {199, 100, false, "00:00:01:99"},
      {201, 101, false, "00:00:01:100"},
      {4294967295u, 30, false, "39768:12:56:15"},
      {5, 0, true, ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(timecode_text(row.frames, row.rate, row.drop), row.text) << row.frames << " at " << row.rate;
  }
}

}  // namespace
}  // namespace frt
