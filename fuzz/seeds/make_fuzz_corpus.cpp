// Makes the seeds of the session fuzz targets, in the corpus folder given: small sessions of every layout.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "support/session_builder.h"

namespace {

using namespace frt::test;

void put(const std::filesystem::path& path, const std::vector<std::uint8_t>& bytes) {
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

std::vector<std::uint8_t> bytes_of(const std::string& text) { return {text.begin(), text.end()}; }

// A mono track with three clips; what most seeds begin with.
Track& small_track(SessionBuilder& s) {
  const AudioFile file = s.audio_file("Vox.wav", 480000);
  Track& t = s.track("Vox").fader_db(-3).pan(-20).comment("dry");
  t.clip(file).name("Vox-01").at(48000).length(48000).fade_in(480).gain_db(-2);
  t.clip(file).name("Vox-02").at(96000).length(48000).offset(96000).fade_out(960, FadeShape::kSCurve).locked();
  t.clip(file).name("Vox-03").at(400000).length(4800).sync(100).color(51).muted();
  t.crossfade(96000, 480, 200);
  return t;
}

struct Seed {
  const char* name;
  std::function<void(SessionBuilder&)> make;
};

const Seed kSeeds[] = {
    {"empty", [](SessionBuilder&) {}},
    {"mono", [](SessionBuilder& s) { small_track(s); }},
    {"stereo",
     [](SessionBuilder& s) {
       const AudioFile file = s.stereo_file("Gtr", 96000);
       s.stereo_track("Gtr").mute().solo().clip(file).fade_out(4800).gain_line({{0, 0}, {48000, -6}});
     }},
    {"surround", [](SessionBuilder& s) { s.track("Amb", 6).clip(s.audio_file("Amb.wav", 96000)); }},
    {"playlists",
     [](SessionBuilder& s) {
       Track& t = small_track(s);
       t.playlist("Vox.01").clip(t.playlists.front().clips.front().file).name("Vox-04").at(100).length(100);
       t.playlist("?").clip(t.playlists.front().clips.front().file).name("Vox-05").deleted();
     }},
    {"nameless_ids",
     [](SessionBuilder& s) {
       s.layout.playlist_names = s.layout.playlist_ordinals = false;
       Track& t = small_track(s);
       t.playlist("Vox.01").clip(t.playlists.front().clips.front().file).name("Vox-04").at(100).length(100);
     }},
    {"ticks",
     [](SessionBuilder& s) {
       small_track(s).tick_based();
       s.tempo_event(4 * kQuarter, 90).tempo_event(8 * kQuarter, 140).meter(0, 1, 4, 4).meter(4 * kQuarter, 2, 3, 4);
       s.song_start(4800);
     }},
    {"old",
     [](SessionBuilder& s) {
       s.layout.old_clip_list = s.layout.old_placements = true;
       s.layout.file_kinds = s.layout.settings_paths = s.layout.tempo_signature = s.layout.saved_by_at_end = false;
       s.layout.extended_timecode = false;
       s.saved_by("Pro Tools HD", "10.3.8").version(10);
       small_track(s);
     }},
    {"locations",
     [](SessionBuilder& s) {
       s.marker("Verse", 96000).color(51);
       s.region("Chorus", kQuarter, 8 * kQuarter).ticks();
       s.timecode(5, 1800).extended_timecode(12, 3600).grid(0, 1, 240).recording(32, true, 4, 3);
     }},
    {"strips",
     [](SessionBuilder& s) {
       s.aux("Verb");
       s.master("Master 1").fader_db(-1);
       s.vca("All");
       s.video("Film");
     }},
    {"midi",
     [](SessionBuilder& s) {
       s.midi_track("Keys").midi_clip("Keys-01", 0, 4 * kQuarter, {{0, kQuarter}, {kQuarter, kQuarter / 2, 64, 90}});
       s.instrument("Pad").hide();
     }},
    {"routes",
     [](SessionBuilder& s) {
       s.bus("Verb", {3, 4}).bus("Verb.L", {3}).io_path(PathKind::kOutput, "Out / 1-2", {1, 2});
       s.io_path(PathKind::kLegs, "Pair", {1});
       small_track(s).output("Out / 2").send(Send("Verb", -6).pre_fader().pan_points({{0, 30}, {4800, -30}}));
       s.stereo_track("Gtr").no_output().send(Send("Verb", 0, {{0, -6}}).pan(-90, 80).mute_points({{0, 1}}));
       s.aux("Reverb").input_bus("Verb").takes_legs_of("Pair").volume_points({{0, -3}});
       s.aux("Source").input_bus("Pair").output("Verb.L");
       s.midi_track("Keys").mute_points({{0, 1}, {4800, 0}}).volume_points({{0, 90}});
     }},
    {"panners",
     [](SessionBuilder& s) {
       s.layout.lanes = LaneLayout::kPanners;
       s.layout.row_names = false;
       s.bus("Verb", {3, 4, 5});
       small_track(s).send("Verb", -6).pan_points({{0, 30}});
       s.stereo_track("Gtr").output("Verb").send("Verb", -6).right_pan_points({{0, 30}});
       s.aux("Reverb").input_bus("Verb");
     }},
    {"no_trim",
     [](SessionBuilder& s) {
       s.layout.lanes = LaneLayout::kPanGroupsNoTrim;
       small_track(s);
       s.stereo_track("Gtr").send("Verb", -6);
     }},
    {"plain_lanes",
     [](SessionBuilder& s) {
       s.layout.lanes = LaneLayout::kPlain;
       small_track(s).trim_points({{0, -3}});
       s.stereo_track("Gtr").send("Verb", -6);
     }},
    {"midi_data",
     [](SessionBuilder& s) {
       s.midi_device("Sampler 1", true).color_coding(1, 1);
       Track& keys =
           s.instrument("Keys").instrument_id(77).patch(5).real_time_properties({1, 2, 50, 10, -240, true, true});
       keys.midi_clip("Keys-01", 0, kQuarter, {{0, kQuarter}, {kQuarter, kQuarter / 2, 64, 90}})
           .controller(7, {{0, 100}})
           .pitch_bend({{0, -8192}})
           .aftertouch({{0, 20}})
           .sysex(0, "\x7e\x7f")
           .color(31)
           .lock();
       keys.midi_clip("Keys-02", kQuarter / 2, kQuarter, {{0, kQuarter}});
       s.midi_track("Bass").plays_device(1).midi_clip("Low", 0, kQuarter, {{0, kQuarter}});
       s.midi_track("Cues").instrument_id(77).sample_based_midi().midi_clip("Hit", 48000, 24000, {{0, 12000}});
     }},
    {"inserts",
     [](SessionBuilder& s) {
       s.plugin_name("ToneEqua", "Equaliser").plugin_name("WaveABCD", "Shell");
       Track& t = small_track(s).hardware_insert("Out 3-4");
       t.insert(Insert("ToneEqua").control_values({0.5, -3, 1000}).chunk("stat", "s", {1, 2, 3}).key(7).bypass());
       t.insert(Insert("ToneComp")
                    .control_values({1})
                    .chunk("stat", "s", std::vector<std::uint8_t>(40, 200))
                    .automate({"Gain", 3, 0.5, {{100, 0.25}, {48000, 0.75}}, "dB"}));
       t.insert(Insert("FabFFC2p", bytes_of("FFBS123456789012FFEx12345678")).deactivate().multi_mono(2));
       Track& keys = s.instrument("Keys");
       keys.insert(Insert("XmlsXmls", bytes_of("<?xml version=\"1.0\"?><a><b value=\"1\"/></a>")));
       keys.insert(Insert("IndeText", bytes_of("{\n\tindex = {\n\t\t\"a\\\"}\" }\n}")));
       keys.insert(Insert("Vc2Vc2Vc", bytes_of("VC2!\x05" + std::string(3, '\0') + "<a/>1")));
       const std::string tree =
           "XPst12<PresetChunkXMLTree><PluginSubComp>ABCD</PluginSubComp><PluginName>Q</PluginName>"
           "<ActiveSetup>SETUP_B</ActiveSetup></PresetChunkXMLTree>FFPr" +
           std::string(4, '\0') + "Big Room";
       keys.insert(
           Insert("WaveShel", bytes_of(std::string(3, '\0') + char(tree.size() + 20) + std::string(16, '\0') + tree)));
       s.master("Master 1").insert(Insert("NobyKnow", bytes_of("RIFF" + std::string(60, 'a'))));
     }},
    {"states",
     [](SessionBuilder& s) {
       Track& t = small_track(s);
       const auto word = [](unsigned value) { return char(value) + std::string(3, '\0'); };
       const std::string archive = "22 serialization::archive" + std::string(40, '\1'), half(60, 'h');
       t.insert(Insert("ArchArch", bytes_of(word(65) + archive + word(65) + archive)));
       t.insert(Insert("KontKont", bytes_of(word(76) + word(0) + word(1) + "hsin" + std::string(60, '\1'))));
       t.insert(Insert("ZlibZlib", bytes_of(word(7) + word(9) + word(16) + word(64) + "x\x9c" + "123456789012")));
       t.insert(Insert("ByteByte", bytes_of("\x8d\x98\x85" + std::string(5, '\0') + word(2) + "1234")));
       t.insert(Insert("HxmcHxmc", bytes_of("HXMC<a/>")));
       t.insert(Insert("MetaMeta", bytes_of("/*@Meta a */")));
       t.insert(
           Insert("TwicTwic", bytes_of(word(68) + std::string(20, '\0') + "FabF" + half + word(1) + "FabF" + half)));
       t.insert(Insert("TextText", bytes_of(word(130) + std::string(130, 't') + std::string(60, '\2'))));
       t.insert(Insert("BracBrac", bytes_of("\1\1\1{" + std::string(70, '\t') + "}")));
     }},
    {"rows_2024",
     [](SessionBuilder& s) {
       s.layout.row_entry = 72;
       small_track(s).deactivate().turn_voice_off().solo_safe().automation_mode(3).renamed_from("Old");
     }},
};

}  // namespace

int main(int argc, char** argv) {
  const std::filesystem::path corpus = argc > 1 ? argv[1] : "fuzz/corpus";
  for (const char* target : {"image_fuzz", "file_fuzz"}) std::filesystem::create_directories(corpus / target);
  for (const Seed& seed : kSeeds) {
    SessionBuilder s;
    seed.make(s);
    const std::vector<std::uint8_t> image = s.image();
    put(corpus / "image_fuzz" / seed.name, {image.begin() + 20, image.end()});
    put(corpus / "file_fuzz" / seed.name, encrypt(image));
  }
  std::vector<std::uint8_t> older = SessionBuilder().image();
  older[18] = 1;
  put(corpus / "file_fuzz" / "older_family", encrypt(older));
  put(corpus / "file_fuzz" / "nothing", {});
  std::printf("%zu sessions\n", std::size(kSeeds));
}
