#include "cases/cases.h"

namespace frt::test {
namespace {

// A tempo and meter map, a tick-based track beside a surround one, playlists without names, and strips that are
// hidden, inactive and renamed.
void score(Scene& s) {
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
}

// A tick-based clip and a marker, which move with the tempo.
void beats(Scene& s) {
  s.track("Loop").tick_based().clip(s.audio_file("Loop.wav", 24000)).at(4 * kQuarter);
  s.marker("Chorus", 8 * kQuarter).ticks();
  s.file("Audio Files/Loop.wav");
}

// A track with a clip that a playlist of its own stands beside, as sessions of any year hold it.
void any_year(Scene& s) {
  const AudioFile file = s.audio_file("Vox.wav", 48000);
  Track& track = s.track("Vox").fader_db(-6).renamed_from("Audio 1");
  track.clip(file).name("Vox-01").at(48000).sync(4800).gain_db(-3).fade_in(480);
  track.playlist("Audio 1.01").clip(file).name("Vox-02").at(96000).length(24000);
  s.file("Audio Files/Vox.wav");
}

}  // namespace

std::vector<Case> header_cases() {
  return {
      {"score_session", {"Song.ptx"}, score},
      {"tempo_given", {"Song.ptx", "--tempo", "97.5"}, beats},
      {"song_start",
       {"Song.ptx", "--tempo-ramps"},
       [](Scene& s) {
         s.song_start(48000).tempo_event(4 * kQuarter, 60);
         beats(s);
         s.track("Pickup").tick_based().clip(s.audio_file("Pickup.wav", 24000)).at(0 - kQuarter);
         s.midi_track("Keys").midi_clip("Ahead", 0 - kQuarter, kQuarter, {{0, kQuarter / 2, 60, 100}});
         s.file("Audio Files/Pickup.wav");
       },
       kTables},
      {"tempo_ramp",
       {"Song.ptx", "--tempo-ramps"},
       [](Scene& s) {
         std::uint64_t tick = 8 * kQuarter;
         for (unsigned bpm = 122; bpm <= 132; tick += 4000 * bpm, bpm += 2) s.tempo_event(tick, bpm);  // 0.25 s each
         s.tempo_event(24 * kQuarter, 100).marker("After", 24 * kQuarter).ticks();
       }},
      {"meter_changes",
       {"Song.ptx", "--report"},
       [](Scene& s) {
         s.meter(0, 1, 4, 4).recording(20, false, 3, 5);
         for (unsigned bar = 1; bar < 10; ++bar) s.meter(bar * 4 * kQuarter, bar + 1, 4, 4);
         for (unsigned bar = 10; bar < 20; ++bar) s.meter(bar * 4 * kQuarter, bar + 1, 3 + bar % 2, 4);
       }},
      {"settings",
       {"Song.ptx", "--report"},
       [](Scene& s) {
         s.rate(96000).extended_timecode(12, 3600).timecode(5, 1800).recording(32, true, 4, 4).grid(0, 1, 240);
         s.meter(0, 1, 6, 8).meter(6 * kQuarter, 3, 6, 8).meter(9 * kQuarter, 4, 3, 4);
         s.marker("Set", 96000).color(51);
         s.marker("None", 0).kind = 0;
         s.region("Part \"1\"", 2 * kQuarter, 4 * kQuarter).ticks();
         s.region("No length", 192000, 192000);
       }},

      // The layouts of the years, and the theme that Pro Tools draws in from 2020.11 on.
      {"saved_by_10",
       {"Song.ptx", "--pt-theme", "classic", "--report"},
       [](Scene& s) {
         s.layout.old_clip_list = s.layout.old_placements = true;
         s.layout.file_kinds = s.layout.settings_paths = s.layout.tempo_signature = s.layout.saved_by_at_end = false;
         s.layout.extended_timecode = false;
         s.layout.row_entry = 31;
         s.saved_by("Pro Tools HD", "10.3.8").version(10).timecode(8, 900);
         any_year(s);
       }},
      {"saved_by_2020_10",
       {"Song.ptx", "--pt-theme", "classic"},
       [](Scene& s) {
         s.layout.playlist_ordinals = s.layout.fade_kind = false;
         s.layout.row_entry = 61;
         s.saved_by("Pro Tools", "2020.10.0").key(0xC3);
         any_year(s);
       }},
      {"saved_by_2020_11",
       {"Song.ptx", "--pt-theme", "classic"},
       [](Scene& s) {
         s.layout.row_entry = 65;
         s.saved_by("Pro Tools", "2020.11.0");
         any_year(s);
       }},
      {"saved_by_nobody",
       {"Song.ptx", "--pt-theme", "classic"},
       [](Scene& s) {
         s.layout.playlist_names = false;
         s.layout.row_entry = 72;
         s.layout.row_entry_end = 0;  // inactive
         s.saved_by("", "");
         any_year(s);
       }},
  };
}

}  // namespace frt::test
