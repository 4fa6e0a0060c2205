#include "cases/cases.h"

namespace frt::test {
namespace {

// Strips with level, pan, mute, solo, comment and height; clips with fades, a crossfade, gain fixed and drawn, lock and
// sync point; an alternate playlist, a deleted placement, markers and a region.
void studio(Scene& s) {
  s.recording(16, false, 3, 2).timecode(2, 90000).grid(0, 1, 0);
  const AudioFile gtr = s.stereo_file("Gtr", 480000), vox = s.audio_file("Vox.wav", 480000, "Takes");
  s.file("Audio Files/Gtr.L.wav").file("Audio Files/Gtr.R.wav").file("Takes/Vox.wav");

  Track& guitar = s.stereo_track("Gtr").fader_db(-3.5).height(60).comment("double it\nat the octave");
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
}

// Playlists beside the one that plays, what was deleted from either, a clip group, and what Pro Tools keeps of a frozen
// track.
void takes(Scene& s) {
  const AudioFile gtr = s.stereo_file("Gtr", 96000), vox = s.audio_file("Vox.wav", 96000);
  s.file("Audio Files/Gtr.L.wav").file("Audio Files/Gtr.R.wav").file("Audio Files/Vox.wav");
  Track& guitar = s.stereo_track("Gtr");
  guitar.clip(gtr).length(48000).color(51);
  guitar.clip(gtr).name("Gtr-02").at(144000).length(24000).deleted();
  Track& voice = s.track("Vox");
  voice.clip(vox);
  voice.clip(vox).name("Group").at(192000).group();
  Playlist& second = voice.playlist("Vox.01");
  second.clip(vox).name("Vox-02").length(48000);
  second.clip(vox).name("Vox-03").at(144000).deleted();
  voice.playlist("?").clip(vox).name("Vox-04");
  s.audio_file("Vox-FZ.wav", 96000, "Rendered Files");
  s.file("Rendered Files/Vox-FZ.wav");
}

// Two tracks with an alternate playlist of one name: the later strip has both.
void one_name(Scene& s) {
  const AudioFile file = s.audio_file("Take.wav", 48000);
  s.file("Audio Files/Take.wav");
  for (const char* name : {"Lead", "Double"}) {
    Track& track = s.track(name);
    track.clip(file).name(std::string(name) + "-01");
    track.playlist("Best").clip(file).name(std::string(name) + "-02").at(96000);
  }
}

void fades(Scene& s) {
  const AudioFile file = s.audio_file("Vox.wav", 480000);
  s.file("Audio Files/Vox.wav");
  Track& track = s.track("Vox");
  track.clip(file).name("Vox-01").length(48000).fade_in(480);
  track.clip(file).name("Vox-02").at(48000).length(48000).offset(96000).fade_out(960, FadeShape::kSCurve);
  track.crossfade(48000, 1000, 400, FadeShape::kEqualPower);
  for (unsigned i = 0; i < 2; ++i) track.clip(file).name("Vox-04").at(192000 + i * 96000).length(1000).offset(9600);
}

// Files of one name in two folders; files where the session says they are and elsewhere; files that are missing.
void folders(Scene& s) {
  const AudioFile stem = s.audio_file("Mix.wav", 1000, "Stems"), own = s.audio_file("Vox.wav", 1000, "Takes");
  for (const char* name : {"Moved.wav", "Both.wav"}) s.audio_file(name, 1000, "Takes");
  const AudioFile mix = s.audio_file("Mix.wav", 1000, "Mixes"), gone = s.audio_file("Gone.wav", 1000);
  s.audio_file("Bounce.wav", 1000);
  std::vector<AudioFile> more = {
      s.audio_file("Gone and of a name too long for the console's list, which cuts it.wav", 1000)};
  for (int i = 3; i < 7; ++i) more.push_back(s.audio_file("Gone " + std::to_string(i) + ".wav", 1000));
  s.audio_file("Gone, but no clip plays it.wav", 1000);
  // The session's own place, and two files of one name that lay outside of it.
  s.lies_in({"Disk", "Music", "Song"});
  for (const char* folder : {"Disk/Samples/A", "Disk/Samples/B"})
    more.push_back(s.audio_file("Kick.wav", 1000, folder));
  s.file("Stems/Mix.wav").file("Mixes/Mix.wav").file("Takes/Vox.wav").file("Bounced Files/Bounce.wav");
  s.file("Rendered Files/Moved.wav")
      .file("Bounced Files/Moved.wav")
      .file("Takes/Both.wav")
      .file("Audio Files/Both.wav");
  Track& track = s.track("Vox");
  std::uint64_t at = 0;
  for (const AudioFile& file : {stem, mix, own, gone}) track.clip(file).at(at += 48000);
  for (const AudioFile& file : more) track.clip(file).at(at += 1000);
  // One file of three channels: the second alone, then a stereo track that plays the two others.
  const AudioFile wide = s.audio_file("Wide.wav", 1000, "Audio Files", 3);
  s.file("Audio Files/Wide.wav");
  track.clip(wide).at(at + 48000).channel(1);
  s.stereo_track("Wide").clip(wide).channel(1);
}

// A second list that tells no kinds: the files' numbers don't hold, so those of one name are looked for alike.
void second_list(Scene& s) {
  const AudioFile stem = s.audio_file("Mix.wav", 1000, "Stems"), mix = s.audio_file("Mix.wav", 1000, "Mixes");
  s.second_file_list().audio_file("Late.wav", 1000);
  s.file("Stems/Mix.wav").file("Mixes/Mix.wav").file("Audio Files/Late.wav");
  Track& track = s.track("Vox");
  track.clip(stem);
  track.clip(mix).at(48000);
}

// A track that goes by a loose record, as its own counts an entry more than it has placements (a fade whose number is
// no clip's). A placement between two entries takes the lower one, which leaves the upper one to the next.
void near_entries(Scene& s) {
  const AudioFile file = s.audio_file("Hit.wav", 100);
  s.file("Audio Files/Hit.wav");
  s.track("Other").clip(file).fade_in(10).fade_out(20);
  s.track("Hits").clip(file).name("Hit-01").at(500).and_at({1010, 1070}).fade_out(30);
  BlockWriter w;
  w.open(0x1052, 3).text("Hits").u32(3);
  for (const auto& [position, deleted] : {std::pair{1000, false}, {1020, false}, {9000, true}}) {
    w.open(0x1050, 2).open(0x104f, 10).zeros(2).u32(1).u8(0).u64(static_cast<std::uint64_t>(position)).u8(3).i16(-2);
    w.zeros(17).close().u8(deleted).u8(1).close();
  }
  s.payload(0x2650, w.u8(1).u8(0).close().take());
}

}  // namespace

std::vector<Case> clip_cases() {
  return {
      {"studio_session", {"Song.ptx"}, studio},
      {"takes_recovered", {"Song.ptx", "--recover-deleted", "--no-clip-colors"}, takes},
      {"takes_dropped", {"Song.ptx", "--drop-alt-takes"}, takes},
      {"playlists_of_one_name", {"Song.ptx"}, one_name},
      // Fewer clips than fades: the track's record counts an entry that is no placement, so the track has no record.
      {"unpaired_records",
       {"Song.ptx"},
       [](Scene& s) {
         const AudioFile file = s.audio_file("Vox.wav", 48000);
         s.file("Audio Files/Vox.wav");
         s.track("Vox").clip(file).fade_in(480).fade_out(960);
       }},
      {"near_entries", {"Song.ptx"}, near_entries},
      {"fades", {"Song.ptx"}, fades},
      {"fades_left_out", {"Song.ptx", "--no-fades"}, fades},
      {"fade_clips_kept", {"Song.ptx", "--keep-fade-clips"}, fades},
      {"long_clip",
       {"Song.ptx", "--audio-dir", "Elsewhere/"},
       [](Scene& s) {
         const AudioFile hall = s.audio_file("Hall.wav", 48000 * 1200);
         s.track("Hall").clip(hall).length(48000 * 600 + 1);
         s.track("Hall 2").clip(hall).length(48000 * 600);
         s.file("Elsewhere/Hall.wav");
       }},
      {"file_folders", {"Song.ptx"}, folders},
      {"second_file_list", {"Song.ptx"}, second_list},
  };
}

}  // namespace frt::test
