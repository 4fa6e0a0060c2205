// Whole projects, small enough to read. With FERRITE_UPDATE_GOLDEN set in the environment the files are written anew:
// a change to one is a decision.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>

#include "support/convert.h"
#include "support/temp_folder.h"

namespace frt::test {
namespace {

void expect_golden(const std::string& project, const std::string& name) {
  const std::string path = std::string(FERRITE_GOLDEN) + "/" + name;
  if (std::getenv("FERRITE_UPDATE_GOLDEN")) std::ofstream(path, std::ios::binary) << project;
  EXPECT_EQ(project, read_text(path)) << "see " << path;
}

// Strips with level, pan, mute, solo, comment and height; clips with fades, a crossfade, gain fixed and drawn, lock and
// sync point; an alternate playlist, a deleted placement, markers and a region.
TEST(Golden, StudioSession) {
  SessionBuilder s;
  s.rate(48000).tempo(120).saved_by("Pro Tools", "12.5.0").recording(16, false, 3, 2).timecode(2, 90000).grid(0, 1, 0);
  const AudioFile gtr = s.stereo_file("Gtr", 480000), vox = s.audio_file("Vox.wav", 480000, "Takes");

  Track& guitar = s.stereo_track("Gtr").fader_db(-3.5).height(60).comment("double it");
  guitar.clip(gtr).name("Gtr-01").at(48000).length(48000).fade_in(480).gain_db(-2).locked();
  guitar.clip(gtr).name("Gtr-02").at(96000).length(48000).offset(100000).fade_out(960, FadeShape::kSCurve);
  guitar.crossfade(96000, 1000, 400, FadeShape::kEqualPower);

  Track& voice = s.track("Vox").pan(-20).mute();
  voice.clip(vox).gain_line({{0, 0}, {48000, -6}, {96000, 3}}).sync(4800).at(9600).length(96000);
  voice.clip(vox).name("Vox-02").at(500000).length(1000).deleted();
  voice.playlist("Vox.01").clip(vox).name("Vox-03").at(1000).length(5000).muted();

  s.aux("Verb \"long\"").solo();
  s.master("Master 1").fader_db(-1);
  s.marker("Chorus", 96000).color(51);
  s.region("Solo", 96000, 192000);

  const Converted converted = convert(s);
  EXPECT_EQ(converted.status, 0) << converted.console;
  EXPECT_EQ(converted.error, "");
  expect_golden(converted.project, "studio_session.rpp");
}

// A tempo and meter map, a tick-based track beside a surround one, playlists without names, and strips that are
// hidden, inactive and renamed.
TEST(Golden, ScoreSession) {
  SessionBuilder s;
  s.layout.playlist_names = false;
  s.layout.row_entry = 72;
  s.rate(44100).tempo(120).tempo_event(8 * kQuarter, 90).tempo_event(16 * kQuarter, 140);
  s.meter(0, 1, 4, 4).meter(8 * kQuarter, 3, 3, 4).meter(11 * kQuarter, 4, 3, 4).timecode(5, 0);
  const AudioFile amb = s.audio_file("Amb.wav", 441000), drum = s.audio_file("Drum.wav", 22050);

  s.track("Amb", 6).clip(amb).length(220500).fade_out(44100);
  Track& drums = s.track("Drums").tick_based().renamed_from("Audio 1");
  for (unsigned beat = 6; beat < 12; beat += 2) drums.clip(drum).at(beat * kQuarter).fade_in(kQuarter / 8);
  s.track("Old takes").hide().deactivate();
  s.marker("Slower", 8 * kQuarter).ticks();

  const Converted converted = convert(s);
  EXPECT_EQ(converted.status, 0) << converted.console;
  expect_golden(converted.project, "score_session.rpp");
}

}  // namespace
}  // namespace frt::test
