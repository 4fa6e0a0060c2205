// Inserts of every kind, with a list of REAPER's beside the session that knows some of their plug-ins.
#include "cases/cases.h"

namespace frt::test {
namespace {

// A VST2 that shares its AAX code, a VST3 whose class id holds one, a VST3 by name, a CLAP.
constexpr char kList[] =
    "[vstcache]\n"
    "Gate_One.dll=0012,1835623524,Gate One (Acme)\n"  // 'midd'
    "Pro-C 2.vst3=0012,1178808944{5653544643327066616266696C746572},FabFilter Pro-C 2 (FabFilter)\n"
    "FabFilter_Pro-C_2.dll=0012,1178808944,FabFilter Pro-C 2 (FabFilter)\n"  // 'FC2p'
    "Roomy.vst3=0012,77{000102030405060708090A0B0C0D0E0F},Roomy (Acme) (4 out)\n"
    "Pro-Q 3.vst3=0012,1179726704{5653544651337066616266696C746572},FabFilter Pro-Q 3 (FabFilter)\n"
    "FabFilter_Pro-Q_3.dll=0012,1179726704,FabFilter Pro-Q 3 (FabFilter)\n"  // 'FQ3p'
    "broken.dll=0012,0,Broken\n";
constexpr char kClaps[] =
    "[/lib/one.clap]\n_=AB\ncom.acme.gate=0|Gate One (Acme)\ncom.fab.c2=0|FabFilter Pro-C 2 (FabFilter)\n";

std::vector<std::uint8_t> bytes_of(std::string_view text) { return {text.begin(), text.end()}; }

// A whole FabFilter document with that many controls, all at 0 but the first.
std::vector<std::uint8_t> fabfilter_document(unsigned controls) {
  std::vector<std::uint8_t> bytes = bytes_of("FFBS");
  const auto word = [&](std::uint32_t value) {
    for (unsigned shift = 0; shift < 32; shift += 8) bytes.push_back(static_cast<std::uint8_t>(value >> shift));
  };
  word(1), word(controls), word(0x3f000000);  // 0.5
  for (unsigned i = 1; i < controls; ++i) word(0);
  for (const char c : std::string_view("FC2p")) bytes.push_back(static_cast<std::uint8_t>(c));
  word(3), word(4);
  for (const char c : std::string_view("MineFFEx")) bytes.push_back(static_cast<std::uint8_t>(c));
  word(0), word(0);
  return bytes;
}

Insert stateless(std::string signature) { return Insert(std::move(signature), std::vector<std::uint8_t>(12)); }

// Plug-ins with settings of several kinds, bypassed, inactive, one that REAPER lacks, without settings; Avid's, an
// unknown one, one known by the session's name; on audio, MIDI, an aux and the master; hardware.
void plug_ins(Scene& s) {
  s.file("list/reaper-vstplugins64.ini", kList).file("list/reaper-clap-linux-x86_64.ini", kClaps);
  s.plugin_name("AcmeRoom", "Roomy").plugin_name("DigiClub", "Club\"bed").plugin_name("OthrWhat", "What");
  const auto gate = Insert("Acmemidd", bytes_of("{\n\tindex = 1,\n\ttext = {}\n}"));
  const auto compressor = Insert("FabFFC2p", fabfilter_document(60));
  s.track("Lead").insert(gate).insert(Insert(gate).bypass()).insert(Insert("OthrWhat", bytes_of("{\n\tindex = 2,\n}")));
  s.stereo_track("Pads").insert(Insert(compressor).multi_mono(2)).insert(stateless("AcmeRoom").deactivate());
  s.track("Room", 6).insert(stateless("DigiClub")).hardware_insert("HW 1-2");
  s.instrument("Notes").insert(compressor).midi_clip("riff", 0, kQuarter, {{0, kQuarter / 2}});
  s.instrument("Sampler").insert(stateless("NiInNi$D")).insert(Insert("FabFFQ3p").control_values({0.5, 0, 1}));
  s.aux("Verb").insert(Insert(gate).deactivate().bypass()).insert(stateless("AVIDnone"));
  s.master("Master").insert(gate).insert(stateless("Digiclik"));
}

// One keyed by a bus that an aux takes and by a free one; a pair of unlinked channels; a key from nowhere.
void key_inputs(Scene& s) {
  s.file("list/reaper-vstplugins64.ini", kList);
  s.bus("Kick key", {1, 2}).bus("Free key", {3, 4}).bus("Pair", {5, 6}).bus("Pair.L", {5}).bus("Pair.R", {6});
  const auto keyed = [](unsigned id, const char* bus) {
    return Insert("Acmemidd", bytes_of("{\n\tindex = 1,\n}")).key(id, bus);
  };
  s.track("Kick").send("Kick key", 0);
  s.track("Snare").send("Free key", -3);
  s.aux("Key aux").input_bus("Kick key");
  s.stereo_track("Bass").insert(keyed(21, "Kick key")).insert(keyed(22, "Free key")).insert(keyed(21, "Kick key"));
  s.stereo_track("Pad").insert(keyed(23, "Pair.L")).insert(keyed(24, "Pair.R"));
  s.track("Lost").insert(keyed(25, "Nowhere"));
}

// Controls placed by number, by name, by the maker's rule, by nothing; on a plug-in without settings.
void plug_in_automation(Scene& s) {
  s.file("list/reaper-vstplugins64.ini", kList).plugin_name("AcmeRoom", "Roomy");
  s.file("names.tsv",
         "plugin\tbuild\tindex\tname\nVST: Gate One (Acme)\t1\t7\tMain: Depth\nVST: Gate One (Acme)\t1\t8\tRange\n");
  s.track("Lead").insert(Insert("Acmemidd", bytes_of("{\n\tindex = 1,\n}"))
                             .automate({"Attack", 5, 0.25, {{0, 0.5}, {48000, 0.75}}, "4"})
                             .automate({"Depth", 30, 0.5, {{24000, 1}}})
                             .automate({"Mystery", 12, 0.5, {{24000, 0}}})
                             .automate({"Master Bypass", 0, 0, {{24000, 1}}})
                             .automate({"Still", 9, 0, {}}));
  s.track("Voice").insert(Insert("FabFFC2p", fabfilter_document(4)).automate({"Ratio", 6, 0.1, {{96000, 0.9}}}));
  s.track("Bare").insert(stateless("AcmeRoom").automate({"Size", 2, 0, {{0, 1}}}));
}

// Avid's Trim: what each channel stores.
struct TrimChannel {
  std::uint32_t gain;
  bool inverted = false;
};
Insert trim(const std::vector<TrimChannel>& channels) {
  Insert insert("DigiTrim");
  for (const TrimChannel& channel : channels) {
    std::vector<std::uint8_t> bytes;
    for (const std::uint32_t word : {channel.gain, channel.inverted ? 0x7fffffffU : 0x80000000U}) {
      for (unsigned shift = 32; shift > 0; shift -= 8) bytes.push_back(static_cast<std::uint8_t>(word >> (shift - 8)));
    }
    insert.chunk("elck", "Trim", bytes);
  }
  return insert;
}

// Gains up, down and past the measured range; polarity of a track, of one side, twice, switched off, on the master; a
// strip wider than stereo.
void trims(Scene& s) {
  constexpr std::uint32_t kUnity = 1093684240, kDown6 = 463923640, kFarDown = 0xe0000000;
  s.track("Lead").insert(trim({{kDown6, true}}).automate({"Gain", 1, 0.5, {{24000, 1}}}));
  s.track("Twice")
      .insert(trim({{kUnity, true}}))
      .insert(trim({{kFarDown, true}}).bypass())
      .insert(trim({{kUnity, true}}));
  s.stereo_track("Left").insert(trim({{kUnity, true}, {kDown6}}).multi_mono(2)).insert(stateless("DigiClub"));
  s.stereo_track("Both").insert(trim({{kUnity, true}, {kUnity, true}}));
  s.track("Wide", 6).insert(trim({{kUnity, true}, {kUnity, true}, {kUnity}, {kUnity}, {kUnity}, {kUnity}}));
  s.master("Master").insert(trim({{kUnity, true}}));
}

// Dyn3 keyed and not, bypassed, automated, with a list of another build.
void stand_ins(Scene& s) {
  s.bus("Kick key", {1, 2});
  s.track("Kick").send("Kick key", 0);
  const std::vector<double> compressor = {10, 4, 0.01, 0.1, 6, -20, 1, 100, 1, 1, 5000, 1, 0, 1};
  const std::vector<double> gate = {-40, 100, 0.001, 0.2, 0.05, -30, 0, 1, 100, 1, 0, 5000, 1, 0, 1};
  s.stereo_track("Bass").insert(Insert("Digidn3c").control_values(compressor).key(21, "Kick key"));
  s.stereo_track("Pad")
      .insert(Insert("Digidn3c").control_values(compressor).bypass())
      .insert(Insert("Digidn3e").control_values(gate).automate({"Ratio", 6, 0.1, {{96000, 0.9}}}));
  s.track("Tilt").insert(Insert("Digi1be3").control_values({0, 6, 100, 1, 0, 0, -2, 1}));
  s.track("Other").insert(Insert("Digidn3e").control_values({0, 0, 1})).insert(Insert("Digidn3e").control_values(gate));
}

const char* const kVstini = "--vstini";
const char* const kIni = "list/reaper-vstplugins64.ini";

}  // namespace

std::vector<Case> plugin_cases() {
  return {
      {"plug_ins", {"Song.ptx", "--report", kVstini, kIni}, plug_ins},
      {"plug_ins_without_a_list", {"Song.ptx", "--offline-bypassed-fx", kVstini, "nowhere.ini"}, plug_ins},
      {"plug_ins_left_out",
       {"Song.ptx", "--report", "--skip-bypassed-fx", "--skip-missing-fx", "--no-placeholders", "--no-aax-slots",
        "--keep-plugin-midi", "--dump-cache", kVstini, kIni},
       plug_ins},
      {"plug_ins_as_clap", {"Song.ptx", "--prefer-clap", kVstini, kIni}, plug_ins},
      {"plug_ins_as_vst2", {"Song.ptx", "--report", "--prefer-vst2", kVstini, kIni}, plug_ins},
      {"plug_in_automation",
       {"Song.ptx", "--report", kVstini, kIni, "--params", "names.tsv", "--want-params", "wanted.txt"},
       plug_in_automation},
      {"trims", {"Song.ptx", "--report"}, trims},
      {"stand_ins", {"Song.ptx", "--report"}, stand_ins},
      {"stand_ins_left_out", {"Song.ptx", "--report", "--no-stand-ins"}, stand_ins},
      {"trims_left_out", {"Song.ptx", "--report", "--no-stand-ins"}, trims},
      {"key_inputs", {"Song.ptx", "--report", kVstini, kIni}, key_inputs},
  };
}

}  // namespace frt::test
