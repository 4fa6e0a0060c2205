// REAPER's lists of plug-ins, what a user teaches the program, and the rules by which an insert finds its plug-in.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <cstdlib>

#include "base/base64.h"
#include "plugins/identity.h"
#include "plugins/learn.h"
#include "plugins/learned_list.h"
#include "plugins/load_plugins.h"
#include "plugins/match_inserts.h"
#include "plugins/plugin_names.h"
#include "support/console.h"
#include "support/temp_folder.h"

namespace frt::test {
namespace {

// ---- lines of a list ----

std::string hex_of(std::string bytes) {
  bytes.resize(16, '\0');
  std::string out;
  for (const char c : bytes) out += format_text("%02X", static_cast<unsigned>(static_cast<unsigned char>(c)));
  return out;
}

// The class id of a VST3 that takes the place of the VST2 with this code.
std::string compat_id(const std::string& code) { return hex_of("VST" + code + "name"); }

std::string vst2(const std::string& file, std::string_view code, const std::string& display) {
  return file + "=0," + std::to_string(*four_character_code(code)) + "," + display + "\n";
}
std::string vst3(const std::string& file, const std::string& class_id, const std::string& display) {
  return file + "=0,77" + (class_id.empty() ? "" : "{" + class_id) + "," + display + "\n";
}

std::string dump(const std::vector<ReaperPluginEntry>& entries) {
  std::string out;
  for (const ReaperPluginEntry& e : entries) {
    out += e.file + "|" + e.display + "|" + e.short_name + "|" + std::to_string(e.uid) + "|" + e.class_id + "|" +
           e.clap_id + (e.is_instrument ? " instrument" : "") + (e.is_vst3 ? " vst3" : "") +
           (e.is_clap ? " clap" : "") + "\n";
  }
  return out;
}

TEST(ScanLists, KeepAndDropVstLines) {
  const std::string id = "0123456789abcdefABCDEF0123456789";
  const std::string long_name(5000, 'n');
  const std::pair<std::string, std::string> rows[] = {
      {"a.dll=0,5,Name (Maker)", "a.dll|Name (Maker)|Name|5||\n"},
      {"a.dll=0,5,A, B (M) (2ch)\r\r\n", "a.dll|A, B (M) (2ch)|A, B (M)|5||\n"},
      {"a.dll=0,5,Name!!!VSTi", "a.dll|Name|Name|5|| instrument\n"},
      {"a.dll=0,5,!!!VSTi", "a.dll|!!!VSTi|!!!VSTi|5||\n"},
      // What REAPER marks as broken, and what is no entry.
      {"a.dll=0,0,Name", ""},
      {"a.dll=0,5,", ""},
      {"a.dll=0, 5,Name", ""},
      {"a.dll=0,+5,Name", ""},
      {"a.dll=0,Name", ""},
      {"a.dll=0", ""},
      {"a.dll,0,5,Name", ""},
      {"[vst=0,5,Name", ""},
      {";a=0,5,Name", ""},
      {"\r\n\r\n", ""},
      {"a.dll=0,5x6,Name", "a.dll|Name|Name|5||\n"},
      {"a.dll=0,4294967301,Name", "a.dll|Name|Name|5||\n"},
      {"=x=0,5,Name", "|Name|Name|5||\n"},
      // Class ids.
      {"A.VST3=0,5{" + id + ",Name", "A.VST3|Name|Name|5|" + id + "| vst3\n"},
      {"a.vst3=0,5{" + id + "}},Name", "a.vst3|Name|Name|5|" + id + "| vst3\n"},
      {"a.vst3=0,5{" + id.substr(1) + ",Name", "a.vst3|Name|Name|5|| vst3\n"},
      {"a.vst3=0,5{x" + id.substr(1) + ",Name", "a.vst3|Name|Name|5|| vst3\n"},
      {".vst3=0,5,Name", ".vst3|Name|Name|5||\n"},
      {"a.vst3<any>=0,5{" + id + ",Name", "a.vst3|Name|Name|5|any| vst3\n"},
      {"a.vst3<>=0,5{" + id + ",Name", "a.vst3|Name|Name|5|" + id + "| vst3\n"},
      {"a.vst3<b<c>=0,5,Name", "a.vst3|Name|Name|5|b<c| vst3\n"},
      // A shell's plug-ins.
      {"a.dll<123456=0,5,Name", "a.dll|Name|Name|5||\n"},
      {"a.dll<12a=0,5,Name", "a.dll<12a|Name|Name|5||\n"},
      {"a.dll<=0,5,Name", "a.dll<|Name|Name|5||\n"},
      // A line too long comes in pieces; the piece behind holds no entry here.
      {"a.dll=0,5," + long_name, "a.dll|" + long_name.substr(0, 4085) + "|" + long_name.substr(0, 4085) + "|5||\n"},
      {std::string(4095, 'x') + "a.dll=0,5,Name", "a.dll|Name|Name|5||\n"},
      {std::string("a.dll=0,5,Na\0me\nb.dll=0,6,Name", 30), "a.dll|Na|Na|5||\nb.dll|Name|Name|6||\n"},
  };
  for (const auto& [line, expected] : rows) EXPECT_EQ(dump(read_vst_list(line)), expected) << line;
}

TEST(ScanLists, KeepAndDropClapLines) {
  EXPECT_EQ(dump(read_clap_list("com.early=0|Early\n"
                                "[dir/a.clap] rest\n;x=0|X\n\n_=123|mark\n=0|X\nno line\ncom.bar=0 Bar\ncom.empty=1|\n"
                                "com.a=1|A (M)|b\ncom.b= 2|B\ncom.c=|C\ncom.d=-3x|D\n"
                                "[open\ncom.e=0|E\n")),
            "|Early|Early|0||com.early clap\n"
            "dir/a.clap|A (M)|b|A|0||com.a instrument clap\n"
            "dir/a.clap|B|B|0||com.b clap\n"
            "dir/a.clap|C|C|0||com.c clap\n"
            "dir/a.clap|D|D|0||com.d instrument clap\n"
            "|E|E|0||com.e clap\n");
}

TEST(ScanLists, IdentityStrings) {
  const std::string id = compat_id("abcd");
  const std::tuple<std::string, std::string, std::string> rows[] = {
      {"reaeq.dll=0,1919247729,ReaEQ (Cockos)", "VST: ReaEQ (Cockos)", "1919247729<56535472656571726561657100000000>"},
      {"a.dll=0,4294967295,Long Name Of It!!!VSTi", "VSTi: Long Name Of It",
       "4294967295<565354FFFFFFFF6C6F6E67206E616D65>"},
      {"a.dll<" + id + ">=0,7,Name", "VST3: Name", "7{" + id + "}"},
      {"a.vst3=0,1633837924,N!!!VSTi", "VST3i: N", "1633837924{565354616263646E0000000000000000}"},
  };
  for (const auto& [line, display, ident] : rows) {
    const auto entries = read_vst_list(line);
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].display_text(), display);
    EXPECT_EQ(entries[0].ident(), ident);
  }
  const auto clap = read_clap_list("com.a=1|A\n");
  EXPECT_EQ(clap[0].display_text() + " " + clap[0].ident(), "CLAPi: A com.a");
}

TEST(ScanLists, SearchedInOrder) {
  // Each place is better than those ahead of it; the folder in the last one, a pipe and lists without an entry are
  // passed over.
  const TempFolder folder;
  const std::string appdata = folder.at("appdata"), home = folder.at("home");
  ::setenv("APPDATA", appdata.c_str(), 1);
  ::setenv("HOME", home.c_str(), 1);
  const ScanListPlaces places{folder.at("given.ini"), folder.at("session"), folder.at("program")};
  const std::string entry = "a.dll=0,5,Name\n";
  std::vector<std::string> ladder;
  for (const std::string name : {"reaper-vstplugins.ini", "reaper-vstplugins64.ini", "reaper-vstplugins_aarch64.ini",
                                 "reaper-vstplugins_arm64.ini"}) {
    for (const char* root : {"home", "appdata"}) {
      for (const char* inside : {"/.config/REAPER/", "/Library/Application Support/REAPER/", "/REAPER/"})
        ladder.push_back(std::string(root) + inside + name);
    }
    ladder.push_back("program/" + name);
    ladder.push_back("session/" + name);
  }
  ladder.emplace_back("given.ini");
  EXPECT_TRUE(load_plugin_cache(places).empty());
  for (const std::string& place : ladder) {
    std::filesystem::create_directories(std::filesystem::path(folder.at(place)).parent_path());
    folder.put(place, entry);
    EXPECT_EQ(load_plugin_cache(places).path, folder.at(place));
  }
  folder.put("given.ini", "[reaper]\n;a.dll=0,5,Name\na.dll=0,0,Name\n");
  std::filesystem::remove(folder.at(ladder[ladder.size() - 2]));
  std::filesystem::create_directory(folder.at(ladder[ladder.size() - 2]));
  std::filesystem::remove(folder.at(ladder[ladder.size() - 3]));
  ASSERT_EQ(::mkfifo(folder.at(ladder[ladder.size() - 3]).c_str(), 0600), 0);
  EXPECT_EQ(load_plugin_cache(places).path, folder.at(ladder[ladder.size() - 4]));
  for (const char* name : {"APPDATA", "HOME"}) ::unsetenv(name);
}

TEST(ScanLists, ClapListsStandBesideTheVstList) {
  const TempFolder folder;
  const ScanListPlaces places{folder.at("list.ini"), "", ""};
  const std::vector<std::string> names = {"macos-aarch64", "linux-aarch64", "linux-x86_64", "macos-x86_64",
                                          "macos-arm64",   "win32",         "win64"};
  for (const std::string& name : names) folder.put("reaper-clap-" + name + ".ini", "com." + name + "=0|A\n");
  EXPECT_TRUE(load_plugin_cache(places).empty());
  folder.put("list.ini", "a.dll=0,5,Name\n");
  for (auto name = names.rbegin(); name != names.rend(); ++name) {
    const ReaperPluginCache cache = load_plugin_cache(places);
    ASSERT_EQ(cache.entries.size(), 2U);
    EXPECT_EQ(cache.clap_count, 1U);
    EXPECT_EQ(cache.entries[1].clap_id, "com." + *name);
    folder.put("reaper-clap-" + *name + ".ini", "[a]\n_=1|mark\n");
  }
  EXPECT_EQ(load_plugin_cache(places).clap_count, 0U);
}

TEST(PluginNames, AreComparedInTheirBareForms) {
  EXPECT_EQ(alnum_lower("Pro-Q 3 \xC3\x84!"), "proq3");
  EXPECT_EQ(bare_name("Kontakt (Native) (64 out)"), "Kontakt");
  EXPECT_EQ(bare_name("A (B) C"), "A (B) C");
  EXPECT_EQ(bare_name("A(B)"), "A(B)");
  EXPECT_EQ(maker_of("A (X) (Maker, Inc.)"), "makerinc");
  EXPECT_EQ(maker_of("A )x("), "");
  EXPECT_EQ(file_stem("dir\\sub/My_Plug.x64.dll"), "myplugx64");
  EXPECT_EQ(repaired_file("Pro_Q_3_.vst3", "Pro Q-3x"), "Pro Q-3_.vst3");
  EXPECT_EQ(repaired_file("A_B.dll",
                          "A\xE4"
                          "B"),
            "A\xE4"
            "B.dll");
  EXPECT_EQ(repaired_file("A_B.dll", "A Bc"), "A_B.dll");
  EXPECT_EQ(repaired_file("A_B", "A B"), "A_B");
}

// ---- the rules ----

ReaperPluginCache cache_of(const std::string& vsts, const std::string& claps = "") {
  ReaperPluginCache cache;
  cache.entries = read_vst_list(vsts);
  for (ReaperPluginEntry& clap : read_clap_list(claps)) cache.entries.push_back(std::move(clap));
  return cache;
}

TEST(Identity, RulesInOrderAndTheirFirstEntry) {
  const std::string bytes_id = hex_of("xxxxAbcdxxEfghxx"), end_id = hex_of("xxxxxxxxxxxxEfgh");
  const std::string two = vst2("Some_Plug.dll", "Efgh", "Two (M)"), two_again = vst2("x.dll", "Efgh", "Other (M)");
  const std::string three = vst3("c.vst3", compat_id("Efgh"), "Three (M)");
  const std::string twin = vst3("dir/some-plug.vst3<" + std::string(32, 'z') + ">", "", "Twin (M)");
  const std::string ends = vst3("e.vst3", end_id, "Ends (M)"), both = vst3("b.vst3", bytes_id, "Both (M)");
  const struct {
    std::string list, key, hint;
    bool prefer_vst3;
    std::string expected;
  } rows[] = {
      {both + ends + twin + two + two_again + three, "AbcdEfgh", "", true, "Three [VST3 compat id (--prefer-vst3)]"},
      {both + ends + twin + two + two_again + three, "AbcdEfgh", "", false, "Two [VST2 id]"},
      {both + ends + two + twin, "AbcdEfgh", "", true, "Twin [VST3 by filename stem (--prefer-vst3)]"},
      // The twin is sought by the first VST2's file only.
      {two_again + two + twin, "AbcdEfgh", "", true, "Other [VST2 id]"},
      {vst2("Some_Plug.vst3", "Efgh", "Bare") + two, "AbcdEfgh", "", true, "Bare [VST2 id]"},
      {both + ends + three, "AbcdEfgh", "", false, "Three [VST3 compat id]"},
      {both + ends, "AbcdEfgh", "", false, "Ends [VST3 class id ends in the AAX code]"},
      {both + ends, "AbcdEfghWave", "", true, "Ends [VST3 class id ends in the AAX code]"},
      {vst2("b.dll<" + bytes_id + ">", "aaaa", "No VST3") + both, "AbcdEfgh", "", true,
       "Both [VST3 class id holds both AAX codes]"},
      {both, "AbceEfgh", "", true, ""},
      // Names.
      {vst2("a.dll", "aaaa", "Super Plug II (M)") + vst2("a.dll", "bbbb", "Plug (x) (M)"), "AbcdEfgh", "PLUG!", true,
       "Plug (x) [name]"},
      {vst2("a.dll", "aaaa", "Super Plug II (M)") + vst2("a.dll", "bbbb", "Plug"), "AbcdEfgh", "SuperPlug", true,
       "Super Plug II [name (partial)]"},
      {vst2("a.dll", "aaaa", "Plu (M)") + vst2("a.dll", "bbbb", "Plug (M)"), "AbcdEfgh", "Super Plug", true,
       "Plug [name (partial)]"},
      {vst2("a.dll", "aaaa", "Plu (M)"), "AbcdEfgh", "Super Plug", true, ""},
      // iZotope's own rule comes first, whatever is preferred.
      {vst2("a.dll", "ZnAB", "Izo") + vst2("b.dll", "ZAB0", "Id"), "iZtpZAB0", "", true,
       "Izo [iZotope code rule (VST2)]"},
      {vst2("a.dll", "ZnAB", "Izo") + vst3("c.vst3", compat_id("ZnAB"), "Izo3"), "iZtpZAB0", "", false,
       "Izo3 [iZotope code rule]"},
      {vst2("a.dll", "ZnAB", "Izo"), "iZtpZAB1", "", true, ""},
      {vst2("a.dll", "ZnAB", "Izo"), "iZtpXAB0", "", true, ""},
  };
  for (const auto& row : rows) {
    const ReaperPluginCache cache = cache_of(row.list);
    const auto found = IdentityIndex(cache).match_identity(row.key, row.hint, row.prefer_vst3);
    EXPECT_EQ(found ? cache.entries[found->entry].short_name + " [" + std::string(found->rule) + "]" : "", row.expected)
        << row.list << row.key;
  }
}

InsertRecord insert_of(const std::string& signature, StateKind kind = StateKind::kNone, std::int32_t key_id = -1) {
  InsertRecord insert;
  insert.signature = signature;
  insert.kind = kind;
  insert.key_id = key_id;
  return insert;
}

std::string dump(const KnowledgeList& list) {
  std::string out;
  for (const KnowledgeRecord& r : list) {
    out += r.signature + "|" + r.name + "|" + r.display_text + "|" + r.file + "|" + r.ident + "|" +
           format_text("%u %u %u|", r.pins_in, r.pins_out, r.tail_word) + r.default_program + "\n";
  }
  return out;
}

// What a matching prints, with blanks in a row as one.
struct Matched {
  Plugins plugins;
  std::string console;
};

Matched match(const Inserts& inserts, ReaperPluginCache cache, bool prefer_vst3 = true,
              const KnowledgeTable& table = built_in_table()) {
  Matched result;
  result.plugins.table = &table;
  result.plugins.cache = std::move(cache);
  Console console;
  match_inserts(inserts, prefer_vst3, result.plugins);
  for (const char c : console.take()) {
    if (c != ' ' || !result.console.ends_with(' ')) result.console += c;
  }
  return result;
}

TEST(Matching, GivesEachKeyOneRow) {
  Inserts inserts;
  InsertRecord waves = insert_of("ksWVAbcd", StateKind::kWaves);
  waves.plugin_sub_comp = "SubC";
  InsertRecord short_waves = waves;
  short_waves.plugin_sub_comp = "Sub";
  inserts.records = {waves,
                     short_waves,
                     insert_of("AbcdMark"),
                     insert_of("AbcdEfgh"),
                     insert_of("AbcdEfgh"),
                     insert_of("AbcdEfgh", StateKind::kNone, 0),
                     insert_of("FabFPlug"),
                     insert_of("AbcdNone")};
  const Matched m =
      match(inserts,
            cache_of(vst3("a.vst3", compat_id("SubC"), "Shell Sub (W)") + vst2("b.dll", "Abcd", "By Id (W)") +
                     vst3("M.vst3", "", "None") + "M_k.vst3=0," + std::to_string(*four_character_code("Mark")) +
                     ",M k\n" + vst2("My_Plug.dll", "Efgh", "My Plug (M)!!!VSTi") + vst2("f.dll", "Plug", "Fab (F)")));
  EXPECT_EQ(m.console,
            " AbcdEfgh -> VSTi: My Plug (M) [VST2 id]\n"
            " AbcdMark -> VST3: M k [VST2 id, VST3 class id unknown - marker only]\n"
            " FabFPlug -> VST: Fab (F) [VST2 id]\n"
            " ksWVAbcd -> VST: By Id (W) [VST2 id]\n"
            " ksWVAbcdSubC -> VST3: Shell Sub (W) [Waves PluginSubComp]\n");
  EXPECT_EQ(dump(m.plugins.matched),
            "AbcdEfgh|My Plug|VSTi: My Plug (M)|My Plug.dll|1164339048<565354456667686D7920706C75670000>|4 2 65535|\n"
            "AbcdMark|M k|VST3: M k|M k.vst3|1298231915{5653544D61726B6D206B000000000000}|2 2 65535|\n"
            "FabFPlug|Fab|VST: Fab (F)|f.dll|1349285223<565354506C7567666162000000000000>|2 2 65535|Default Setting\n"
            "ksWVAbcd|By Id|VST: By Id (W)|b.dll|1096967012<56535441626364627920696400000000>|2 2 65535|\n"
            "ksWVAbcdSubC|Shell Sub|VST3: Shell Sub (W)|a.vst3|77{565354537562436E616D650000000000}|2 2 65535|\n");
  EXPECT_EQ(m.plugins.marker_only, (std::set<std::string, std::less<>>{"AbcdMark"}));
  EXPECT_FALSE(m.plugins.lookup("AbcdMark")->class_id_known);
  // A shorter key that is placed stands ahead of its longer ones.
  EXPECT_EQ(m.plugins.lookup("ksWVAbcdSubC")->name, "By Id");
}

TEST(Matching, TakesTheStoredNameOfOneMakerOnly) {
  const std::string two = vst2("a.dll", "aaaa", "Big-Verb (Maker)"),
                    three = vst3("b.vst3", "", "BigVerb (Maker) (6ch)");
  const std::string clap = "com.b=0|Big Verb (Maker)\n";
  const struct {
    std::string key, name, list, claps, expected;
  } rows[] = {
      {"AbcdEfgh", "Big Verb", two, clap, "VST: Big-Verb (Maker)"},
      {"AbcdEfgh", "Big Verb", "", clap, "CLAP: Big Verb (Maker)"},
      {"AbcdEfgh", "Big Verb", vst3("b.vst3", "", "Big Verb (Maker)") + two, clap, "VST3: Big Verb (Maker)"},
      {"AbcdEfgh", "Big Verb", two + vst3("b.vst3", "", "Big Verb (Maker)"), "", "VST3: Big Verb (Maker)"},
      {"AbcdEfgh", "Big Verb", two + three, "", ""},  // "6ch" is no maker
      {"AbcdEfgh", "Big Verb", two, "com.b=0|Big Verb (Other)\n", ""},
      {"AbcdEfgh", "Big Verb II", two, "", ""},
      {"AbcdEfgh", "B-V", vst2("a.dll", "aaaa", "BV"), "", ""},
      {"DigiEfgh", "Big Verb", two, "", ""},
      {"BFD Efgh", "Big Verb", two, "", ""},
      {"AbcdEfgi", "Big Verb", two, "", ""},
  };
  for (const auto& row : rows) {
    Inserts inserts;
    inserts.records = {insert_of(row.key)};
    if (row.key != "AbcdEfgi") inserts.plugin_names[row.key] = row.name;
    const Matched m = match(inserts, cache_of(vst2("z.dll", "zzzz", "Z") + row.list, row.claps));
    const KnowledgeRecord* record = m.plugins.lookup(row.key);
    EXPECT_EQ(record ? record->display_text : "", row.expected) << row.list << row.claps;
    EXPECT_EQ(record != nullptr, m.console.find("[the name Pro Tools stores") != std::string::npos) << row.list;
  }
}

TEST(Matching, ChoosesAmongKontakts) {
  const std::string seven_id = "5653544E694B376B6F6E74616B742037", maker = " (Native Instruments) (";
  const std::string two = vst2("Kontakt.dll", "Ni$D", "Kontakt 6 (Native Instruments GmbH) (64 out)!!!VSTi");
  const std::string old = vst2("Kontakt.dll", "Ni$D", "Kontakt 6 (x86) (Native Instruments GmbH)");
  const std::string seven = vst3("Kontakt_7.vst3", seven_id, "Kontakt 7" + maker + "16 out)!!!VSTi");
  const std::string eight = vst3("Kontakt_8.vst3", compat_id("NiK8"), "Kontakt 8" + maker + "0 out)!!!VSTi");
  const std::string ten = vst3("K10.vst3", compat_id("NiKX"), "Kontakt 10" + maker + "x)"),
                    ten_again = vst3("K.vst3", compat_id("NiKY"), "Kontakt 10" + maker + "9 out)");
  const std::string others = vst3("P.vst3", compat_id("NiKP"), "Kontakt 9 Player" + maker + "x)") +
                             vst3("O.vst3", compat_id("NiKO"), "Kontakt 11 (Another)") +
                             vst3("N.vst3", "", "Kontakt 12" + maker + "x)") +
                             vst3("K.vst3", compat_id("NiK6"), "Kontakt 7" + maker + "x)");
  const std::string measured = " [Kontakt 7 takes Kontakt 6's settings, measured]\n";
  const std::string predicted = " [predicted: written the way Kontakt 7 takes them]\n";
  const struct {
    std::string list;
    bool prefer_vst3;
    std::string console, file;
    std::uint32_t pins_out;
  } rows[] = {
      {two + eight + seven, true, "VST3i: Kontakt 7 (Native Instruments) (16 out)" + measured, "Kontakt 7.vst3", 16},
      {two + seven, false, "", "Kontakt.vst", 64},
      {two + eight, true, "", "Kontakt.vst", 64},
      {old + seven, false, "VST3i: Kontakt 7 (Native Instruments) (16 out)" + measured, "Kontakt 7.vst3", 16},
      {old + eight + others, true, "VST3i: Kontakt 8 (Native Instruments) (0 out)" + predicted, "Kontakt 8.vst3", 64},
      {eight + ten + ten_again, true, "VST3: Kontakt 10 (Native Instruments) (x)" + predicted, "K10.vst3", 64},
      {old + others, true, "", "Kontakt.vst", 64},
  };
  Inserts inserts;
  inserts.records = {insert_of("NiInNi$D"), insert_of("NiInNi$D", StateKind::kKontakt)};
  for (const auto& row : rows) {
    const Matched m = match(inserts, cache_of(row.list, "com.k=1|Kontakt 13 (Native Instruments)\n"), row.prefer_vst3);
    EXPECT_EQ(m.console, row.console.empty() ? "" : " NiInNi$D -> " + row.console);
    const KnowledgeRecord* record = m.plugins.lookup("NiInNi$D");
    EXPECT_EQ(record->file, row.file);
    EXPECT_EQ(record->pins_in, 0U);
    EXPECT_EQ(record->pins_out, row.pins_out);
    EXPECT_EQ(record->tail_word, row.console.empty() ? 0U : 65535U);
    EXPECT_EQ(m.plugins.kontakt_instances, row.console.empty() ? 0 : 2);
    EXPECT_EQ(m.plugins.kontakt_measured, row.console.ends_with(measured));
  }
}

TEST(Matching, MovesRowsToTheirVst2WhereSettingsAllow) {
  static constexpr std::uint8_t kHead[] = {1};
  KnowledgeRecord row{.signature = "AbcdEfgh",
                      .name = "Plug",
                      .display_text = "VST3: Plug",
                      .file = "Plug.vst3",
                      .ident = "7{" + compat_id("Efgh") + "}",
                      .pins_in = 4,
                      .tail_word = 65535,
                      .state_limit = 9,
                      .default_program = "Init"};
  const std::string two = vst2("P_g.dll", "Efgh", "P-g");
  const std::string to_vst2 = " AbcdEfgh -> VST: P-g [--prefer-vst2 over the table row]\n";
  const std::string kept = " AbcdEfgh -> VST3: Plug [kept on VST3: its VST2 build cannot take these settings]\n";
  const auto run = [&](const KnowledgeRecord& known, const std::string& list, StateKind second, bool prefer_vst3) {
    const KnowledgeTable table({&known, 1});
    Inserts inserts;
    inserts.records = {insert_of("AbcdEfgh", StateKind::kFabFilter), insert_of("AbcdEfgh", second)};
    return match(inserts, cache_of(list), prefer_vst3, table);
  };
  const Matched moved = run(row, two, StateKind::kIndexText, false);
  EXPECT_EQ(moved.console, to_vst2);
  EXPECT_EQ(dump(moved.plugins.overrides),
            "AbcdEfgh|Plug|VST: P-g|P-g.dll|1164339048<56535445666768702D67000000000000>|4 2 0|Init\n");
  EXPECT_EQ(moved.plugins.vst2_overrides.size(), 1U);
  const Matched stays = run(row, two, StateKind::kControls, false);
  EXPECT_EQ(stays.console, kept);
  EXPECT_EQ(stays.plugins.kept_on_vst3.at("AbcdEfgh"), (std::pair<std::string, int>("Plug", 2)));
  EXPECT_TRUE(stays.plugins.overrides.empty());

  EXPECT_EQ(run(row, two, StateKind::kFabFilter, true).console, "");
  EXPECT_EQ(run(row, vst2("a.dll", "Efgh", "P (x86)"), StateKind::kFabFilter, false).console, "");
  EXPECT_EQ(run(row, vst3("a.vst3", compat_id("Efgh"), "P"), StateKind::kFabFilter, false).console, "");
  EXPECT_EQ(run(row, vst2("a.dll", "zzzz", "The Plug"), StateKind::kFabFilter, false).console,
            " AbcdEfgh -> VST: The Plug [--prefer-vst2 over the table row]\n");
  row.state_template = kHead;
  EXPECT_EQ(run(row, two, StateKind::kFabFilter, false).console, "");
  row.state_template = {};
  row.ident = "7<" + compat_id("Efgh") + ">";
  EXPECT_EQ(run(row, two, StateKind::kFabFilter, false).console, "");
  row.ident.clear();  // known by name only: matched as if unknown, under its name
  EXPECT_EQ(run(row, two, StateKind::kControls, false).console, " AbcdEfgh -> VST: P-g [VST2 id]\n");
  EXPECT_EQ(dump(run(row, vst2("a.dll", "zzzz", "The Plug"), StateKind::kControls, false).plugins.matched),
            "AbcdEfgh|Plug|VST: The Plug|a.dll|2054847098<5653547A7A7A7A74686520706C756700>|2 2 65535|\n");
}

TEST(Matching, KeepsFabFiltersOnVst3ForTheirSettings) {
  const std::string two = vst2("a.dll", "Plug", "FabFilter Plug (FabFilter)");
  const std::string compat = vst3("a.vst3", compat_id("Plug"), "Plug (FabFilter)");
  const std::string named = vst3("a.vst3", compat_id("Plug"), "FabFilter Plug (FabFilter)");
  const auto run = [&](const std::string& list, StateKind kind) {
    Inserts inserts;
    inserts.records = {insert_of("FabFPlug", kind)};
    return match(inserts, cache_of(list), /*prefer_vst3=*/false);
  };
  const Matched kept = run(two + compat, StateKind::kControls);
  EXPECT_EQ(kept.console,
            " FabFPlug -> VST3: Plug (FabFilter) [kept on VST3: its VST2 build cannot take these settings]\n");
  EXPECT_EQ(kept.plugins.kept_on_vst3.at("FabFPlug"), (std::pair<std::string, int>("FabFilter Plug", 1)));
  EXPECT_EQ(run(two + named, StateKind::kNone).plugins.kept_on_vst3.at("FabFPlug").first, "FabFilter Plug");
  EXPECT_EQ(run(two + compat, StateKind::kFabFilter).console,
            " FabFPlug -> VST: FabFilter Plug (FabFilter) [VST2 id]\n");
  EXPECT_EQ(run(compat, StateKind::kControls).console,
            " FabFPlug -> VST3: Plug (FabFilter) [VST3 compat id (--prefer-vst3)]\n");
}

TEST(Matching, LooksUpInTheOrderOfTheLists) {
  const KnowledgeRecord rows[] = {{.signature = "AbcdName", .name = "name only"},
                                  {.signature = "AbcdIden", .name = "first", .ident = "1<>"},
                                  {.signature = "AbcdIden", .name = "second", .ident = "2<>"},
                                  {.signature = "AbcdLong1234", .name = "longer", .ident = "3<>"}};
  const KnowledgeTable table(rows);
  Plugins plugins;
  plugins.table = &table;
  const auto name_of = [&](std::string_view key) {
    const KnowledgeRecord* record = plugins.lookup(key);
    return record ? record->name : "none";
  };
  EXPECT_EQ(name_of("AbcdName") + name_of("AbcdIdenWave") + name_of("AbcdLong") + name_of("AbcdLong1234"),
            "name onlyfirstnonelonger");
  plugins.matched.add({.signature = "AbcdName", .name = "matched"});
  EXPECT_EQ(name_of("AbcdName"), "matched");
  EXPECT_EQ(plugins.lookup_unmatched("AbcdName")->name, "name only");
  for (const char* name : {"learned", "learned later"}) {
    plugins.learned.add({.signature = "AbcdName", .name = name});
    plugins.learned.add({.signature = "AbcdIden", .name = name});
  }
  EXPECT_EQ(name_of("AbcdName") + " " + name_of("AbcdIden"), "learned first");
  EXPECT_EQ(plugins.lookup_unmatched("AbcdName")->name, "learned");
  plugins.overrides.replace({.signature = "AbcdIden", .name = "moved"});
  plugins.overrides.replace({.signature = "AbcdIden", .name = "moved again"});
  EXPECT_EQ(name_of("AbcdIden"), "moved again");
}

TEST(Matching, GrowsWithKeysAndEntriesAlone) {
  // All ids hold both codes of every key, all names are one, and no rule but the last hits.
  std::string list;
  for (int i = 0; i < 5000; ++i) list += vst3("a.vst3", hex_of(format_text("AbcdXXXXXXX%05d", i)), "Same Name (M)");
  Inserts inserts;
  std::vector<std::string> signatures;
  for (int i = 0; i < 50000; ++i) signatures.push_back(format_text("Abcd%c%03d", 'a' + i / 1000, i % 1000));
  for (const std::string& signature : signatures) {
    inserts.records.push_back(insert_of(signature));
    inserts.plugin_names[signature] = "Same Name";
  }
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(match(inserts, cache_of(list)).plugins.matched.size(), 50000U);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

// ---- what a user teaches the program ----

TEST(LearnedList, LinesKeptAndDropped) {
  KnowledgeList rows;
  for (KnowledgeRecord& row : read_learned_list("# AbcdEfgh | a | b | c\n\n"
                                                "AbcdEfg | short | f | i\n"
                                                "AbcdEfgh | three | f\n"
                                                "AbcdEfgh | no ident | f | \n"
                                                "\tAbcdEfghijkl |\t VST: N |  | 5<x> \r\n"
                                                " # bcdefg | | f.dll | i | 0 | | x5\n"
                                                "FabFEfgh | d | f | i | 4x | 14 | 65535\n"
                                                "FabFEfgh | d | f | i | -1 | 64 | 0 | Mine | more\n"
                                                "Pinsfull | d | f | i | 4294967295 | 4294967298"))
    rows.add(std::move(row));
  EXPECT_EQ(dump(rows),
            "AbcdEfgh|VST: N|VST: N||5<x>|2 2 0|\n"
            "# bcdefg|# bcdefg||f.dll|i|0 2 0|\n"
            "FabFEfgh|d|d|f|i|4 14 65535|Default Setting\n"
            "FabFEfgh|d|d|f|i|0 64 0|Mine\n"
            "Pinsfull|d|d|f|i|4096 2 0|\n");
}

TEST(ParamNames, AreReadAndReducedToWhatBuildsAgreeOn) {
  const TempFolder folder;
  folder.put("ferrite-params.tsv",
             "plugin\tbuild\t1\tname\nA\tb1\t007\tGain\tmore\nA\tb1\t8\tFreq\nA\tb1\t9\tOld\nA\tb1\t9\tQ\r\n"
             "A\tb1\t1234567\tX\nA\tb1\t\tX\nA\tb1\t1a\tX\nA\tb1\t5\nB\t\t0\t\n");
  folder.put("ferrite-params-local.tsv", "A\tb2\t7\tGain\nA\tb2\t8\tFrequency\nC\tb\t999999\tZ\n");
  Console console;
  const std::string at = folder.path().string();
  const ParamNames names = load_param_names(at, {});
  EXPECT_EQ(names, (ParamNames{{"A", {{7, "Gain"}}}, {"B", {{0, ""}}}, {"C", {{999999, "Z"}}}}));
  EXPECT_EQ(console.take(), "  plug-in parameter names: 2 plug-in build(s) from " + at +
                                "/ferrite-params.tsv\n  plug-in parameter names: 1 plug-in build(s) from " + at +
                                "/ferrite-params-local.tsv\n");
  const std::string local = folder.at("ferrite-params-local.tsv");
  EXPECT_EQ(load_param_names(at, {local, at + "/none", local}).size(), 2U);
  EXPECT_EQ(console.take(), "  plug-in parameter names: 2 plug-in build(s) from " + local + "\n  --params " + at +
                                "/none: nothing read\n  plug-in parameter names: 0 plug-in build(s) from " + local +
                                "\n");
  EXPECT_TRUE(load_param_names(at + "/none", {}).empty());
  EXPECT_EQ(console.take(), "");
}

// A state's header as REAPER keeps it; masks are of no interest.
std::string header(std::uint32_t magic, std::uint32_t in, std::uint32_t out, std::size_t mask, std::uint32_t one = 1,
                   std::uint32_t size = 5) {
  const auto word = [](std::uint32_t n) { return std::string(reinterpret_cast<const char*>(&n), 4); };
  return word(7) + word(magic) + word(in) + std::string(in * mask, 'm') + word(out) + std::string(out * mask, 'm') +
         word(size) + word(one) + word(65535);
}
std::string encoded(const std::string& bytes) {
  return base64({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
}
// Its text in lines as REAPER breaks them.
std::string broken(const std::string& text) {
  std::string out;
  for (std::size_t at = 0; at < text.size(); at += 128) out += "    " + text.substr(at, 128) + "\n";
  return out;
}

TEST(Learning, ReadsPinsOfEveryHeader) {
  constexpr std::uint32_t kOne = 0xFEED5EEE, kOther = 0xFEED5EEF;
  const std::string vst = "<FXCHAIN\n  BYPASS 0 0 0\n\n  <VST \"VST: A b\" a.dll 0 \"my \" 5<x> \"\"\r\n";
  const struct {
    std::string body, row;
  } rows[] = {
      {broken(encoded(header(kOne, 2, 2, 8))) + ">\n", "2 | 2 | 65535"},
      {broken(encoded(header(kOther, 4, 2, 8, 0))) + ">\n", "4 | 2 | 65535"},
      {broken(encoded(header(kOne, 4, 2, 8, 0))) + ">\n", "2 | 2 | 0"},
      {broken(encoded(header(kOne, 3, 1, 4))), "3 | 1 | 65535"},
      {broken(encoded(header(kOne, 16, 64, 8))) + ">\n", "16 | 64 | 65535"},
      {broken(encoded(header(kOther, 40, 20, 4, 0))) + ">\n", "40 | 20 | 65535"},
      // Long, but in one line: no line behind it belongs to it.
      {encoded(header(kOne, 16, 16, 8)) + "\n>\n", "16 | 16 | 65535"},
      {encoded(header(kOne, 16, 16, 8)).substr(0, 132) + "\n" + encoded(header(kOne, 16, 16, 8)).substr(132) + "\n>\n",
       "2 | 2 | 0"},
      {broken(encoded(header(kOne, 16, 16, 8))).substr(0, 140) + ">\n", "2 | 2 | 0"},
      {encoded(header(kOne, 0, 2, 8)) + "\n", "2 | 2 | 0"},
      {encoded(header(kOne, 65, 2, 8)) + "\n", "2 | 2 | 0"},
      {encoded(header(kOne, 2, 65, 8)) + "\n", "2 | 2 | 0"},
      {encoded(header(kOne, 2, 2, 8, 1, 0x1000001)) + "\n", "2 | 2 | 0"},
      {encoded(header(kOne, 2, 2, 8, 1, 0x1000000)) + "\n", "2 | 2 | 65535"},
      // The state: FabFilter's container, in the header's line and behind it; "=" is no end.
      {encoded(header(kOne, 2, 2, 8) + "FabF") + "\n>\n", "2 | 2 | 65535 | Default Setting"},
      {encoded(header(kOne, 2, 2, 8)) + "\n<X\n" + encoded("FabF") + "\n>\n", "2 | 2 | 65535"},
      {encoded(header(kOne, 2, 2, 8)) + "\n\n=!=\n  " + encoded("FabF") + "\n>\n", "2 | 2 | 65535 | Default Setting"},
  };
  for (const auto& row : rows) {
    const TempFolder folder;
    const std::string chain = folder.put("a.RfxChain", vst + row.body);
    const std::string list = folder.put("ferrite-plugins.txt", "# mine\n");
    Console console;
    EXPECT_EQ(learn_plugin(chain, "AbcdEfgh", folder.at("ferrite")), 0);
    EXPECT_EQ(read_text(list), "# mine\nAbcdEfgh | VST: A b | a.dll | 5<x> | " + row.row + "\n");
    const std::string told = console.take();
    EXPECT_EQ(contains(told, "could not be read from this header variant (FEED5EEE,\n"), row.row == "2 | 2 | 0");
    EXPECT_EQ(contains(told, "SETTINGS will transfer too"), row.row.ends_with("Setting"));
  }
}

TEST(Learning, RefusesWhatIsNoChain) {
  const std::string good = encoded(header(0xFEED5EEE, 2, 2, 8)) + "\n>\n";
  const std::pair<std::string, std::string> rows[] = {
      {"", "does not look like an .RfxChain"},
      {"BYPASS 0 0 0\n<VSTX \"a\" b 0 \"\" c\n" + good, "does not look like an .RfxChain"},
      {"<VST \"\" b 0 \"\" 5<x>\n" + good, "could not read the <VST line"},
      {"<VST \"a\" b 0 5<x>\n" + good, "could not read the <VST line"},
      {"<VST \"a b 0 \"\" 5<x>\n" + good, "could not read the <VST line"},
      {"<VST \"a\" b 0 \"\" 5<x>\n", "header magic is 00000000"},
      {"<VST \"a\" b 0 \"\" 5<x>\n>\n", "header magic is 00000000"},
      {"<VST \"a\" b 0 \"\" 5<x>\nAAAAAGJhZCE=\n>\n", "header magic is 21646162"},
  };
  const TempFolder folder;
  Console console;
  for (const auto& [text, message] : rows) {
    EXPECT_EQ(learn_plugin(folder.put("a.RfxChain", text), "AbcdEfgh", folder.at("ferrite")), 1);
    EXPECT_NE(console.take().find(message), std::string::npos) << text;
  }
  EXPECT_EQ(learn_plugin(folder.at("none"), "AbcdEfgh", folder.at("ferrite")), 1);
  EXPECT_EQ(console.take(), "  cannot open " + folder.at("none") + "\n");
  EXPECT_EQ(folder.count(), 1U);
  std::filesystem::create_directory(folder.at("ferrite-plugins.txt"));
  const std::string chain = folder.put("a.RfxChain", "<VST a b 0 c 5<x>\n" + good);
  EXPECT_EQ(learn_plugin(chain, "AbcdEfgh", folder.at("ferrite")), 1);
  EXPECT_TRUE(console.take().ends_with("  cannot write " + folder.at("ferrite-plugins.txt") + "\n"));
}

TEST(LoadPlugins, TellsWhatItReadInOrder) {
  const TempFolder folder;
  ConversionOptions options;
  options.session_path = folder.at("Song.ptx");
  options.program_path = folder.at("ferrite");
  options.vstini_path = folder.at("none.ini");
  Inserts inserts;
  inserts.records = {insert_of("AbcdEfgh")};
  Console console;
  bool asked = false;
  const ClapStep clap_step = [&](Plugins& /*plugins*/) { asked = true; };
  load_plugins(options, inserts, clap_step);
  EXPECT_EQ(console.take(), "  could not read plug-in cache: " + options.vstini_path + "\n\n");

  options.prefer_clap = options.dump_cache = true;
  options.vstini_path.clear();
  load_plugins(options, inserts, clap_step);
  EXPECT_EQ(console.take(), "  --- plug-in cache dump ---\n  --- 0 entries ---\n\n");
  EXPECT_FALSE(asked);

  folder.put("ferrite-plugins.txt", "AbcdEfgh | VST: A | a | 5<x>\n");
  folder.put("ferrite-params.tsv", "VST: A\t1\t0\tGain\n");
  const std::string list = folder.put("reaper-vstplugins64.ini", "a.dll=0,5,A\n");
  load_plugins(options, inserts, clap_step);
  EXPECT_EQ(console.take(),
            "  1 plug-in(s) learned from ferrite-plugins.txt\n\n"
            "  plug-in parameter names: 1 plug-in build(s) from " +
                folder.at("ferrite-params.tsv") +
                "\n"
                "  plug-in cache: 1 entries from " +
                list +
                "\n    (nothing new matched)\n\n"
                "  --- plug-in cache dump ---\n"
                "    a.dll                                          VST: A\n"
                "      5<56535400000005610000000000000000>\n  --- 1 entries ---\n\n");
  EXPECT_TRUE(asked);
}

}  // namespace
}  // namespace frt::test
