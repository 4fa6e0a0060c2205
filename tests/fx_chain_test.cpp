// What inserts become, how the chain prints them, and where their automation goes.
#include "mix/fx_chain.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "base/text.h"
#include "mix/fx_names.h"
#include "support/project_text.h"
#include "writer/fx_chain.h"

namespace frt {
namespace {

using test::Lines;
using test::lines_of;

// Inserts on one strip, "S"; their settings stand one behind the other in the image.
struct Scene {
  std::string bytes = std::string(256, '.');
  Session session;
  Plugins plugins;
  KeyInputs keys;
  ConversionOptions options;
  FxStrip strip{.name = "S"};
  FxCounts counts;

  // Known by its signature as a VST2, which takes settings of kind 10 as they are.
  KnowledgeRecord& know(const char* signature, const char* display_text, const char* ident) {
    known.push_back({.signature = signature, .name = signature, .display_text = display_text, .file = "f.dll"});
    known.back().ident = ident;
    return known.back();
  }
  InsertRecord& insert(const char* signature, std::string_view settings = {}) {
    Inserts& inserts = session.mixer.inserts;
    inserts.strips["S"].push_back(static_cast<std::uint32_t>(inserts.records.size()));
    InsertRecord& insert = inserts.records.emplace_back();
    insert.signature = signature;
    insert.start = 16 * inserts.records.size();
    if (!settings.empty()) {
      insert.kind = StateKind::kIndexText;
      insert.doc_off = bytes.size(), insert.doc_len = settings.size();
      bytes += settings;
      insert.end = bytes.size();
    }
    return insert;
  }
  // With its gain at the top.
  InsertRecord& trim() {
    InsertRecord& insert = this->insert("DigiTrim");
    insert.start = bytes.size();
    bytes += "DigiTrim" + std::string(40, '.') + "\x7f\xff\xff\xff";
    insert.end = bytes.size();
    return insert;
  }
  std::string written() {
    for (KnowledgeRecord& record : known) plugins.learned.add(record);
    known.clear();
    session.mixer.inserts.image = ByteView(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    const Trims trims = measure_trims(session.mixer.inserts);
    FxChainMaker maker(session, plugins, keys, trims, options);
    const FxChain chain = maker.make(strip);
    counts = maker.take_counts();
    return test::written_by([&](ProjectText& out) { write_fx_chain(out, chain); });
  }

 private:
  std::vector<KnowledgeRecord> known;
};

constexpr const char* kKnown = "AbcdKnwn";
constexpr const char* kVst2 = "17<56535400000000>";

// One insert: its outcome, what the report says of it, and the slot's lines.
TEST(FxChain, EachInsertBecomesOneThing) {
  struct Row {
    const char* what;
    std::function<void(Scene&)> make;
    const char* text;
  };
  const auto list_without_it = [](Scene& s) {
    ReaperPluginEntry& entry = s.plugins.cache.entries.emplace_back();
    entry.uid = 18, entry.class_id = std::string(32, 'A');
  };
  const Row rows[] = {
      {"settings", [](Scene& s) { s.insert(kKnown, "{ index = 1 }"); }, "0 vst2 | 0 0 0"},
      {"bypassed", [](Scene& s) { s.insert(kKnown, "{}").bypassed = true; }, "0 vst2 | 1 0 0"},
      {"bypassed, to go offline",
       [](Scene& s) { s.options.fx_bypass_mode = 1, s.insert(kKnown, "{}").bypassed = true; }, "0 vst2 | 1 1 0"},
      {"inactive", [](Scene& s) { s.insert(kKnown, "{}").inactive = true; }, "0 vst2 inactive | 1 1 0"},
      {"both, to be left out",
       [](Scene& s) {
         s.options.fx_bypass_mode = 2;
         InsertRecord& insert = s.insert(kKnown, "{}");
         insert.bypassed = insert.inactive = true;
       },
       "4 vst2 inactive (was inactive in Pro Tools)"},
      {"bypassed, to be left out, by nobody known",
       [](Scene& s) { s.options.fx_bypass_mode = 2, s.insert("AbcdOthr").bypassed = true; },
       "4 none (was bypassed in Pro Tools)"},
      {"no settings", [](Scene& s) { s.insert(kKnown); },
       "1 vst2 (Pro Tools stored no transferable setting) | 1 1 0 \"** Pro Tools settings not transferred **\""},
      {"a list of controls", [](Scene& s) { s.insert(kKnown).kind = StateKind::kControls; },
       "1 vst2 (tried: Pro Tools stored only its control) | 1 1 0 \"** Pro Tools settings not transferred **\""},
      {"a second state that fits nothing", [](Scene& s) { s.insert(kKnown).alt.length = 5; },
       "1 vst2 (tried: its settings ARE in the session, ) | 1 1 0 "
       "\"** Pro Tools settings not transferred **\""},
      {"no settings, no placeholders", [](Scene& s) { s.options.placeholders = false, s.insert(kKnown); },
       "5 vst2 (Pro Tools stored no transferable setting)"},
      {"a CLAP that can't take them",
       [](Scene& s) { s.know("AbcdClap", "CLAP: C (Maker)", "com.c"), s.insert("AbcdClap", "{ index = 1 }"); },
       "1 clap Maker (tried: its settings ARE in the session, ) | 1 1 0 "
       "\"** Pro Tools settings not transferred **\""},
      {"not installed", [=](Scene& s) { list_without_it(s), s.insert(kKnown, "{}"); }, "0 vst2 missing | 0 0 0"},
      {"not installed, to be left out",
       [=](Scene& s) { list_without_it(s), s.options.skip_missing_fx = true, s.insert(kKnown, "{}"); },
       "6 vst2 (not installed for REAPER here - left out)"},
      {"installed by its number",
       [=](Scene& s) { list_without_it(s), s.plugins.cache.entries[0].uid = 17, s.insert(kKnown, "{}"); },
       "0 vst2 | 0 0 0"},
      {"installed by its class, in capitals as listed",
       [=](Scene& s) {
         list_without_it(s);
         s.know("AbcdVst3", "VST3: V (M) (2 out)", "9{AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA}"), s.insert("AbcdVst3", "{}");
       },
       "0 vst3 M | 0 0 0"},
      {"not installed by its class in other letters",
       [=](Scene& s) {
         list_without_it(s);
         s.know("AbcdVst4", "VST3: W", "9{aAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA}"), s.insert("AbcdVst4", "{}");
       },
       "0 vst3 missing | 0 0 0"},
      {"a CLAP's number is no VST's",
       [](Scene& s) {
         ReaperPluginEntry& entry = s.plugins.cache.entries.emplace_back();
         entry.uid = 17, entry.is_clap = true, entry.clap_id = "com.c";
         s.insert(kKnown, "{}");
       },
       "0 vst2 missing | 0 0 0"},
      {"Avid's", [](Scene& s) { s.insert("DigiAbcd"); },
       "2 none Avid (AAX only - no VST/VST3 version exists) | 1 0 0 "
       "\"** Pro Tools only - no VST exists - replace me here\""},
      {"Avid's, without a slot", [](Scene& s) { s.options.aax_slots = false, s.insert("DigiAbcd"); },
       "2 none Avid (AAX only - no VST/VST3 version exists)"},
      {"a Trim", [](Scene& s) { s.trim().bypassed = true; },
       "0 reaper Avid (gain carried as REAPER's Volume Adjustme) | 1 0 0 \"Avid Trim +6.00 dB\""},
      {"a Trim on a wide strip", [](Scene& s) { s.strip.channels = 3, s.trim(); },
       "2 none Avid (AAX only - no VST/VST3 version exists) | 1 0 0 "
       "\"** Pro Tools only - no VST exists - replace me here\""},
      {"a Trim's side, without a slot of its own",
       [](Scene& s) {
         s.options.aax_slots = false, s.strip.flipped = TrimPolarity::Side::kRight, s.insert("DigiTrim");
       },
       "2 none Avid (AAX only - no VST/VST3 version exists) | 0 0 0"},
      {"the same, left out",
       [](Scene& s) {
         s.options.aax_slots = false, s.options.no_stand_ins = true;
         s.strip.flipped = TrimPolarity::Side::kRight, s.trim();
       },
       "2 none Avid (AAX only - no VST/VST3 version exists)"},
      {"nobody's", [](Scene& s) { s.insert("AbcdOthr", "{}"); }, "3 none (not recognized - we have not matched thi)"},
      {"a Waves shell's", [](Scene& s) { s.insert("ksWVAbcd", "{}").kind = StateKind::kWaves; },
       "3 none (REAPER has not scanned this Waves plug-i)"},
      {"known by name alone",
       [](Scene& s) { s.know("AbcdName", "JS: thing (Someone)", ""), s.insert("AbcdName", "{}"); },
       "3 reaper Someone (not recognized - we have not matched thi)"},
  };
  const char* const formats[] = {"none", "vst3", "clap", "vst2", "reaper"};
  for (const Row& row : rows) {
    Scene scene;
    scene.know(kKnown, "VST: Known", kVst2);
    row.make(scene);
    const std::string project = scene.written();
    const FxReportRow& told = scene.counts.rows.at(0);
    std::string text = format_text("%d %s", static_cast<int>(told.outcome), formats[static_cast<int>(told.format)]);
    if (!told.maker.empty()) text += " " + told.maker;
    if (told.inactive) text += " inactive";
    if (told.not_installed) text += " missing";
    if (!told.reason.empty()) text += " (" + told.reason.substr(0, 40) + ")";
    for (const std::string& bypass : lines_of(project, "BYPASS")) text += " | " + bypass;
    for (const std::string& name : lines_of(project, "PRESETNAME")) text += " " + name;
    EXPECT_EQ(text, row.text) << row.what;
    EXPECT_EQ(project.empty(), text.find('|') == text.npos) << row.what;
  }
}

TEST(FxChain, IsPrintedSlotBySlot) {
  Scene scene;
  KnowledgeRecord& wide = scene.know("AbcdKeyd", "VST: Comp (M)", "17<56535400000000>");
  wide.pins_in = 4, wide.tail_word = 65535;
  scene.know("AbcdBank", "VST: Bank", "17<56535400000000>");
  scene.insert("AbcdKeyd", "{ index = 1 }");
  InsertRecord& bank = scene.insert("AbcdBank", "<?xml " + std::string(90, 'x') + "<Bank>");
  bank.kind = StateKind::kXml;
  scene.insert("DigiClck");
  const std::vector<InsertRecord>& records = scene.session.mixer.inserts.records;
  scene.session.mixer.inserts.plugin_names["DigiClck"] = "Click II";
  scene.keys.insert_key_slot = {{&records[0], 1}};  // listens to channels 5/6
  scene.strip.channels = 1;
  scene.strip.keyed_passthrough = true;
  std::string thirty;  // times "xxx"
  for (int i = 0; i < 30; ++i) thirty += "eHh4";
  EXPECT_EQ(
      scene.written(),
      "    <FXCHAIN\n      WNDRECT 0 0 0 0\n      SHOW 0\n      LASTSEL 0\n      DOCKED 0\n"
      "      BYPASS 0 0 0\n"
      "      <VST \"VST: Comp (M)\" \"f.dll\" 0 \"\" 17<56535400000000> \"\"\n"
      "        EQAAAO5e7f4EAAAAAQAAAAAAAAACAAAAAAAAABAAAAAAAAAAIAAAAAAAAAACAAAAAQAAAAAAAAACAAAAAAAAAA0AAAABAAAA//8AAA=="
      "\n        eyBpbmRleCA9IDEgfQ==\n        AAAAAAAA\n      >\n"
      "      FLOATPOS 0 0 0 0\n"
      "      FXID {81AF14C9-F04C-436F-192F-83739D9FB31D}\n      WAK 0 0\n"
      "      BYPASS 0 0 0\n"
      "      <VST \"VST: Bank\" \"f.dll\" 0 \"\" 17<56535400000000> \"\"\n"
      "        EQAAAO5e7f4CAAAAAQAAAAAAAAACAAAAAAAAAAIAAAABAAAAAAAAAAIAAAAAAAAAZgAAAAEAAAAAAAAA\n"
      "        PD94bWwg" +
          thirty +
          "\n        PEJhbms+\n"
          "        AFByb2dyYW0gMAAAAAAA\n      >\n"
          "      FLOATPOS 0 0 0 0\n      PRESETNAME \"Program 0\"\n"
          "      FXID {6526AFD9-B4EF-F7DF-8EB5-A223892AE56D}\n      PINFLAGS 1\n      WAK 0 0\n"
          "      BYPASS 1 0 0\n"
          "      <VST \"VST3: DigiClck\" \"\" 0 \"\" 3668424687{44696769436C636B2EB167A23F31A9F1} \"\"\n"
          "        77en2u5e7f4BAAAAAQAAAAAAAAABAAAAAQAAAAAAAAAAAAAAAQAAAAAAAAA=\n        AAAAAAAA\n      >\n"
          "      PRESETNAME \"** Pro Tools only - no VST exists - replace me here\"\n"
          "      FLOATPOS 0 0 0 0\n"
          "      FXID {489E4AE9-7993-AC4F-043B-C0D374B617BD}\n      WAK 0 0\n"
          "    >\n");
  EXPECT_EQ(scene.counts.aax_only.at("DigiClck").display_name, "Click II");
}

TEST(FxChain, TellsWhatItCounted) {
  Scene scene;
  scene.know(kKnown, "VST: Known", kVst2);
  scene.insert(kKnown, "{}").bypassed = true;
  InsertRecord& off = scene.insert(kKnown, "{}");
  off.bypassed = off.inactive = true;
  scene.insert(kKnown).bypassed = true;  // without settings it isn't told among the bypassed
  scene.insert("DigiAbcd");
  scene.insert("TrLnAbcd");
  scene.insert("ksWVAbcd").plugin_name = "Thing\n>";
  InsertRecord& shell = scene.insert("ksWVAbcd");
  shell.kind = StateKind::kWaves, shell.plugin_sub_comp = "SUBC";
  scene.session.mixer.inserts.records[0].channels = 2;
  scene.session.mixer.inserts.multi_mono = {{0, "S"}, {5, ""}};
  scene.strip.of_master = true;
  EXPECT_TRUE(scene.written().starts_with("    <MASTERFXLIST\n"));
  const FxCounts& counts = scene.counts;
  EXPECT_EQ(std::make_tuple(counts.bypassed, counts.inactive, counts.offline_written), std::make_tuple(2, 1, 1));
  EXPECT_EQ(std::make_tuple(counts.master_slots, counts.aax_slots, counts.instances()), std::make_tuple(5, 2, 7));
  using Counted = std::map<std::string, int>;
  EXPECT_EQ(counts.all,
            (Counted{{kKnown, 3}, {"DigiAbcd", 1}, {"TrLnAbcd", 1}, {"Waves Thing >", 1}, {"ksWVAbcd", 1}}));
  EXPECT_EQ(counts.unrecognized, (Counted{{"ksWVAbcd", 1}, {"ksWVAbcdSUBC", 1}}));
  EXPECT_EQ(counts.offline, (Counted{{kKnown, 1}}));
  EXPECT_EQ(counts.aax_only.at("TrLnAbcd").display_name, "an Avid stock processor");
  EXPECT_EQ(counts.aax_only.at("TrLnAbcd").processing, 1);
  EXPECT_EQ(counts.multi_mono, (Lines{"AbcdKnwn on S (2 channels)", "ksWVAbcd on (unmatched strip) (1 channels)"}));
}

// Dyn3's compressor with a gain ahead of it: two slots in the place of one. With a list one value short, or left out
// as asked, it keeps the named slot that it had.
TEST(FxChain, WhatStandsInForAnAvidPlugIn) {
  Scene scene;
  InsertRecord& insert = scene.insert("Digidn3c");
  insert.kind = StateKind::kControls;
  insert.controls.assign(14, 0.0F);
  insert.controls[6] = 1;   // polarity
  insert.controls[13] = 1;  // External Key
  insert.automated = {{.name = "Ratio", .points = {{0, 1}}}, {.name = "Global Bypass", .points = {{0, 1}}}};
  scene.strip.keyed_passthrough = true;
  const auto slots_and_counts = [&] {
    const std::string project = scene.written();
    const FxReportRow& row = scene.counts.rows.at(0);
    std::string text = format_text("%d %s", static_cast<int>(row.outcome), row.reason.c_str());
    text += format_text(" | %zu slots", lines_of(project, "WAK").size());
    if (const std::size_t flags = project.find("PINFLAGS 1"); flags != std::string::npos)
      text += flags > project.find("ReaComp") ? ", flags on the last" : ", flags";
    const FxCounts& counts = scene.counts;
    return text + format_text(" | %d in, %d out, %d lanes, %d bypass, %d notes", counts.stand_ins.all(),
                              counts.stand_ins.left_out, static_cast<int>(counts.parameters.on_stand_ins.size()),
                              counts.parameters.bypass_lanes, static_cast<int>(counts.stand_ins.notes.size()));
  };
  EXPECT_EQ(slots_and_counts(),
            "0 stand-in: REAPER's own plug-ins with the same settings | 2 slots, flags on the last | 1 in, 0 out, 1 "
            "lanes, 1 bypass, 1 notes");
  scene.keys.keyed_inserts = {&insert};
  EXPECT_EQ(slots_and_counts(),
            "0 stand-in: REAPER's own plug-ins with the same settings, keyed from the key input | 2 slots, flags on "
            "the last | 1 in, 0 out, 1 lanes, 1 bypass, 0 notes");
  scene.options.no_stand_ins = true;
  EXPECT_EQ(slots_and_counts(),
            "2 AAX only - no VST/VST3 version exists | 1 slots | 0 in, 1 out, 0 lanes, 0 bypass, 0 notes");
  insert.controls.pop_back();
  EXPECT_EQ(slots_and_counts(),
            "2 AAX only - no VST/VST3 version exists | 1 slots | 0 in, 0 out, 0 lanes, 0 bypass, 0 notes");
}

TEST(FxChain, TracksOfOneNameCannotMultiplyIt) {
  Scene scene;
  InsertRecord& insert = scene.insert("DigiAbcd");
  insert.end = insert.start + (std::uint64_t{40} << 20);
  const Trims trims;
  FxChainMaker maker(scene.session, scene.plugins, scene.keys, trims, scene.options);
  std::string slots;
  for (int i = 0; i < 4; ++i) slots += std::to_string(maker.make(scene.strip).slots.size());
  EXPECT_EQ(slots, "1100");
}

TEST(FxNames, Maker) {
  const std::pair<const char*, const char*> rows[] = {
      {"VST3: Pro-C 2 (FabFilter)", "FabFilter"},
      {"VSTi: Kontakt 5 (Native Instruments GmbH) (64 out)", "Native Instruments GmbH"},
      {"VST: Wide (A) (8ch) (2 out)", "A"},
      {"VST: Two (A) (2->6ch)", "2->6ch"},
      {"VST: Odd ()", ""},
      {"VST: Odd (64 out)", ""},
      {"VST: Open (A", ""},
      {"VST: Tight(A)", ""},
      {"VST: None", ""},
  };
  for (const auto& [display, maker] : rows) EXPECT_EQ(maker_in(display), maker) << display;
}

// ---- automation ----

struct Control {
  const char* signature;
  const char* name;
  const char* label;
  std::uint32_t number;
};

AutomatedControl moving(const Control& control) {
  AutomatedControl moving;
  moving.name = control.name, moving.label = control.label, moving.param_number = control.number;
  moving.points = {{0, 0.25}, {48000, 1.5}};
  return moving;
}

// "index live|off title" of each lane written, and what was counted beside it.
std::string placed(const Control& control, const KnowledgeRecord* record, const ParamNames& names) {
  const Clock clock;
  ParameterLaneMaker maker(names, clock);
  InsertRecord insert;
  insert.signature = control.signature;
  insert.automated = {moving(control)};
  std::string text;
  for (const ParameterLane& lane : maker.place(insert, record))
    text += format_text("%d %s %s", lane.index, lane.live ? "live" : "off", lane.title.c_str());
  if (maker.counts.points > 0) text += format_text(" points=%d", maker.counts.points);
  if (maker.counts.by_number > 0) text += " number";
  if (maker.counts.by_name > 0) text += " name";
  if (maker.counts.bypass_lanes > 0) text += " bypass";
  for (const auto& [name, count] : maker.counts.switched_off) text += " off:" + name;
  for (const std::string& name : maker.counts.wanted_params) text += " want:" + name;
  return text;
}

TEST(ParameterLanes, EachIsPlacedByTheFirstRuleThatKnows) {
  const ParamNames names = {{"VST: P",
                             {{3, "Gain"},
                              {4, "Freq"},
                              {5, "Freq"},
                              {6, "A: Mix"},
                              {20, "Drive"},
                              {21, "Twice"},
                              {22, "Twice"},
                              {30, "Band 1: Level"},
                              {31, "Band 2: Level"},
                              {40, "Solo: Width"}}}};
  const KnowledgeRecord known{.signature = "AbcdPlug", .name = "P", .display_text = "VST: P"};
  const KnowledgeRecord unnamed{.signature = "AbcdPlug", .name = "P"};
  const struct {
    Control control;
    const KnowledgeRecord* record;
    const char* text;
  } rows[] = {
      {{"AbcdPlug", "Gain", "10", 12}, &known, "10 live Gain / VST: P points=2 number"},
      {{"AbcdPlug", "Gain", "0", 1}, &known, "0 live Gain / VST: P points=2 number"},
      {{"AbcdPlug", "X", "0", 0}, nullptr, " off:AbcdPlug"},
      {{"AbcdPlug", "X", "010", 12}, nullptr, "11 off ASSIGN: X off:AbcdPlug"},
      {{"AbcdPlug", "X", "1000000", 1000001}, nullptr, "1000000 off ASSIGN: X off:AbcdPlug"},
      {{"AbcdPlug", "X", "999999", 1000001}, nullptr, "999999 live X points=2 number"},
      {{"AbcdPlug", "X", "12a", 13}, &unnamed, "12 off ASSIGN: X off:AbcdPlug"},
      // By name: near, anywhere, without the group.
      {{"AbcdPlug", "Gain", "10", 5}, &known, "3 live Gain / VST: P points=2 name"},
      {{"AbcdPlug", "Freq", "", 6}, &known, "5 off ASSIGN: Freq / VST: P off:VST: P want:VST: P"},
      {{"AbcdPlug", "Freq", "", 7}, &known, "5 live Freq / VST: P points=2 name"},
      {{"AbcdPlug", "Drive", "", 90}, &known, "20 live Drive / VST: P points=2 name"},
      {{"AbcdPlug", "Twice", "", 90}, &known, "89 off ASSIGN: Twice / VST: P off:VST: P want:VST: P"},
      {{"AbcdPlug", "B: Mix", "", 8}, &known, "6 live B: Mix / VST: P points=2 name"},
      {{"AbcdPlug", "Width", "", 90}, &known, "40 live Width / VST: P points=2 name"},
      {{"AbcdPlug", "Level", "", 90}, &known, "89 off ASSIGN: Level / VST: P off:VST: P want:VST: P"},
      {{"AbcdPlug", "Level", "", 32}, &known, "31 off ASSIGN: Level / VST: P off:VST: P want:VST: P"},
      {{"AbcdPlug", "Level", "", 33}, &known, "31 live Level / VST: P points=2 name"},
      {{"AbcdPlug", "", "", 4}, &known, "3 off ASSIGN:  / VST: P off:VST: P want:VST: P"},
      // By what is known of the plug-in.
      {{"FabFPlug", "X", "", 9}, &known, "7 live X / VST: P points=2 want:VST: P"},
      {{"FabFPlug", "X", "", 1}, &known, " want:VST: P"},
      {{"iZtpPlug", "X", "", 9}, nullptr, "8 live X points=2"},
      {{"UHfXDiVb", "X", "", 9}, nullptr, "8 off ASSIGN: X off:UHfXDiVb"},
      {{"AbcdPlug", "X", "", 0x80000000U}, nullptr, " off:AbcdPlug"},
      {{"AbcdPlug", "Master Bypass", "3", 4}, &known, " bypass"},
  };
  for (const auto& row : rows) EXPECT_EQ(placed(row.control, row.record, names), row.text) << row.control.name;
}

TEST(ParameterLanes, AreWrittenBehindTheirPlugIn) {
  Scene scene;
  scene.know(kKnown, "VST: \"K\"", kVst2);
  InsertRecord& insert = scene.insert(kKnown, "{}");
  insert.automated = {moving({"", "Gain", "3", 4}), moving({"", "Rate", "", 4}), moving({"", "Still", "1", 2})};
  insert.automated[0].initial_value = 1.25;
  insert.automated[1].points = {{24000, -0.5}, {960000, 0.5}};
  insert.automated[1].initial_value = 1.25;
  insert.automated[1].tick_based = true;
  insert.automated[2].points.clear();
  const std::string project = scene.written();
  const std::string head =
      "  ACT %d -1\n        VIS 1 1 1\n        LANEHEIGHT 0 0\n        ARM 0\n        DEFSHAPE 0 -1 -1\n";
  EXPECT_TRUE(
      project.ends_with("      WAK 0 0\n"
                        "      <PARMENV 3:3 0 1 0.5 'Gain / VST: \"K\"'\n"
                        "        EGUID {D54C5C3D-C446-025B-F38E-69AFA0150C21}\n      " +
                        format_text(head.c_str(), 1) +
                        "        PT 0.0000000000 0.250000000 0\n        PT 1.0000000000 1.000000000 0\n"
                        "      >\n"
                        "      <PARMENV 3:3 0 1 0.5 'ASSIGN: Rate / VST: \"K\"'\n"
                        "        EGUID {D54C5C3D-C446-025B-F38E-69AFA0150C21}\n      " +
                        format_text(head.c_str(), 0) +
                        "        PT 0 1.250000000 0\n"
                        "        PT 0.0125000000 0.000000000 0\n        PT 0.5000000000 0.500000000 0\n"
                        "      >\n"
                        "    >\n"))
      << project;
  EXPECT_EQ(scene.counts.rows.at(0).automation_points, 2);
}

TEST(ParameterLanes, OfAPlugInWithoutSettingsAreCounted) {
  Scene scene;
  scene.know(kKnown, "VST: K", kVst2);
  InsertRecord& insert = scene.insert(kKnown);
  insert.automated = {moving({"", "Gain", "3", 4}), moving({"", "Global Bypass", "", 4}),
                      moving({"", "Still", "1", 2})};
  insert.automated[2].points.clear();
  EXPECT_FALSE(contains(scene.written(), "PARMENV"));
  EXPECT_EQ(scene.counts.parameters.no_settings, (std::map<std::string, int>{{"VST: K", 1}}));
  EXPECT_EQ(scene.counts.parameters.bypass_lanes, 1);
}

}  // namespace
}  // namespace frt
