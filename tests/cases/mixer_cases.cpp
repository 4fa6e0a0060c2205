#include "cases/cases.h"

namespace frt::test {
namespace {

void states(Scene& s) {
  s.track("Unvoiced").turn_voice_off();
  s.track("Old takes").hide().deactivate();
  s.track("Muted solo").solo().mute().comment("one\ntwo");
  Track& off = s.stereo_track("Off").fader_db(-6).automation_mode(0).volume_points({{0, -6}, {48000, 0}});
  off.pan(-20, 60).pan_points({{0, -20}, {48000, -100}}).right_pan_points({{0, 60}, {48000, 100}});
  s.track("Latch").automation_mode(3).height(40).solo_safe();
}

// One kind of strip each; of these the VCA and the video track have no level of their own.
void kinds(Scene& s) {
  const AudioFile file = s.audio_file("Vox.wav", 48000);
  s.file("Audio Files/Vox.wav");
  s.track("Vox").clip(file);
  s.aux("Verb").fader_db(-12).mute();
  s.vca("All");
  s.video("Film");
  s.midi_track("Keys").midi_clip("Keys-01", 0, kQuarter, {{0, kQuarter / 2}});
  s.instrument("Pad").fader_db(-3).comment("not written");
  s.master("Master 1").fader_db(-3).mute().volume_points({{0, -3}, {96000, -20}}).mute_points({{48000, 1}});
  s.master("Master 2");
}

// A track with all that one can have, a stereo one of which a single side moves, one at rest, a wide one, one in ticks.
void automation(Scene& s) {
  const AudioFile file = s.audio_file("Lead.wav", 48000);
  s.file("Audio Files/Lead.wav");
  Track& lead = s.track("Lead").fader_db(-6).pan(20).volume_points({{0, -6}, {48000, 0}}).trim_points({{96000, -3}});
  lead.pan_points({{24000, -50}, {72000, 50}}).mute_points({{24000, 1}, {72000, 0}}).comment("sing\n>");
  lead.playlist("Lead.01").clip(file);
  s.stereo_track("Pads").pan_points({{0, -100}, {96000, -20}});
  s.stereo_track("Strings").pan(-30, 60);
  s.track("Amb", 6).fader_db(-2).volume_points({{0, -2}, {48000, 0}}).trim_points({{48000, -6}, {96000, 0}});
  s.track("Steps").tick_based().volume_points({{kQuarter, -3}, {2 * kQuarter, 0}});
}

// Strips without trim lanes, whose groups tell mono from stereo; MIDI tracks, of which mute alone is carried.
void automation_without_trim(Scene& s) {
  s.layout.lanes = LaneLayout::kPanGroupsNoTrim;
  s.track("Lead").fader_db(-6).pan(20).pan_points({{24000, -50}});
  s.stereo_track("Pads").pan(-80, 100).volume_points({{0, -6}});
  s.stereo_track("Side").output("Out / 1").right_pan_points({{0, 30}});
  s.io_path(PathKind::kOutput, "Out / 1-2", {1, 2});
  s.midi_track("Keys")
      .mute_points({{0, 1}, {48000, 0}})
      .volume_points({{0, 90}})
      .midi_clip("riff", 0, kQuarter, {{0, kQuarter / 2}});
  s.midi_track("Bells").mute().midi_clip("ding", 0, kQuarter, {{0, kQuarter / 2}});
}

// MIDI clips with everything beside notes, on tracks that set, shift and send it; a sample-based one; tracks that play
// instruments elsewhere.
void midi(Scene& s) {
  constexpr std::uint64_t kSixteenth = kQuarter / 4;
  s.color_coding(1, 1).midi_device("Sampler 1", true).midi_device("Port A", false);
  Track& keys = s.instrument("Keys").instrument_id(77).patch(5).midi_levels(90, 30);
  keys.midi_clip("Ends", 0, kQuarter, {{0, kQuarter / 2}, {kQuarter / 2, kQuarter, 64, 90}, {2 * kQuarter, 480, 67, 1}})
      .controller(7, {{0, 100}, {kQuarter / 2, 80}})
      .pitch_bend({{0, -8192}, {kSixteenth, 9000}})
      .aftertouch({{kSixteenth, 200}})
      .sysex(0, "\x7e\x7f")
      .sysex(kQuarter, "late")
      .color(31)
      .lock();
  keys.midi_clip("Muted", 3 * kQuarter, kQuarter, {{0, kQuarter}, {kQuarter, 400, 61}}).color(2).mute();
  Track& bass = s.midi_track("Bass").plays_device(1);
  bass.real_time_properties({-1, 2, 50, 10, -240, true, true});
  bass.midi_clip("Low", 0, 2 * kQuarter, {{0, kQuarter, 4, 1}, {kQuarter, kQuarter, 40, 127}});
  s.midi_track("Pads").instrument_id(77).midi_clip("Pad-01", kQuarter, kQuarter, {{0, kQuarter}});
  s.midi_track("Port").plays_device(2).instrument_id(78).mute();
  s.midi_track("Lost").instrument_id(78);
  s.midi_track("Cues").sample_based_midi().midi_clip("Hit", 48000, 24000, {{0, 12000}, {12000, 24000}});
}

// A send whose level is drawn so finely that the next one's record stands far behind it.
void sends(Scene& s) {
  Automation drawn;
  for (unsigned i = 0; i < 450; ++i) drawn.push_back({i * 480, -0.1 * i});
  s.track("Vox").fader_db(-3).send("Plate", -12, drawn).send("Echo", -20);
  s.track("Bass").fader_db(-1).pan(30);
  s.track("Keys").fader_db(-2).pan(-40);
}

// Buses that an aux takes, whole and by a leg, and buses that nobody takes; a wide one; an output to one side; a second
// pair of outputs; a track that plays nowhere.
void routing(Scene& s) {
  const AudioFile file = s.audio_file("Kick.wav", 48000);
  s.file("Audio Files/Kick.wav");
  s.bus("Drums", {1, 2}).bus("Verb", {3, 4}).bus("Verb.L", {3}).bus("Free", {5, 6}).bus("5.0", {7, 8, 9, 10, 11});
  s.bus("Pair", {12, 13}).bus("Pair.L", {12}).bus("Pair.R", {13});
  s.io_path(PathKind::kOutput, "Out / 1-2", {1, 2}).io_path(PathKind::kLegs, "Synth 3-4", {1, 2});
  s.track("Kick").output("Drums").mute().send(Send("Verb", -6).pre_fader().pan(-50)).clip(file);
  s.track("Clap").output("Drums").send(Send("Verb.L", 0).off()).send("Cue", -10, {{48000, -20}, {96000, -30}});
  s.stereo_track("Loop").output("Free").send(Send("Cue", 0).pan(-20, 60).pan_points({{48000, 10}})).send("Pair", -3);
  s.track("Side").output("Out / 2");
  s.track("Notes").no_output().send(Send("Cue", -40).mute_points({{24000, 1}, {48000, 0}}));
  s.instrument("Synth").input_bus("Synth 3-4");
  s.aux("Synth out").takes_legs_of("Synth 3-4");
  s.aux("Drum bus").input_bus("Drums").output("5.0");
  s.aux("Plate").input_bus("Verb");
  s.aux("Left").input_bus("Pair.L");
  s.aux("Right").input_bus("Pair.R");
  s.aux("Sub").input_bus("5.0").output("Nowhere");
}

}  // namespace

std::vector<Case> mixer_cases() {
  return {
      {"track_states", {"Song.ptx", "--comments", "item"}, states},
      {"kinds_of_strips", {"Song.ptx", "--comments", "none", "--report"}, kinds},
      {"midi", {"Song.ptx", "--dump-cc", "--report"}, midi, kTables},
      {"automation", {"Song.ptx", "--comments", "item"}, automation},
      {"automation_without_trim", {"Song.ptx"}, automation_without_trim},
      {"routing", {"Song.ptx", "--report"}, routing},
      {"list",
       {"Song.ptx", "--list", "--usage-json", "usage.json"},
       [](Scene& s) {
         sends(s);
         s.aux("Echo");
         const AudioFile file = s.audio_file("Gtr.wav", 1000);
         Track& guitar = s.track("Gtr");
         guitar.clip(file);
         guitar.playlist("Gtr.01").clip(file);
       }},
      {"list_of_io_setup",
       {"Song.ptx", "--list"},
       [](Scene& s) {
         s.track("Vox");
         BlockWriter w;
         const auto path = [&w](unsigned kind, const char* name, unsigned parent) {
           w.open(0x1021).u8(kind).u8(0).text(name).u32(1).u16(7).u16(parent).close();
         };
         // Inputs, legs, and a name that comes again are none; a bus named like a track is one.
         path(0, "In 1", 0xffff);
         path(2, "Drums", 0xffff);
         path(2, "Drums.L", 0);
         path(2, "Vox", 0xffff);
         path(2, "Drums", 0xffff);
         s.payload(0x1022, w.take());
       }},
      {"records_far_apart", {"Song.ptx"}, sends, kTables},
      {"basic_folder",
       {"Song.ptx"},
       [](Scene& s) {
         s.basic_folder("Band");
         s.track("Bass");
         s.basic_folder("Vocals");
         s.track("Lead").renamed_from("Audio 2");
       }},
  };
}

}  // namespace frt::test
