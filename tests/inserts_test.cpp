// Inserts: where each sits, what marks around it say, which of its controls are automated, and what holds its settings.
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "session/inserts/braces.h"
#include "session/inserts/insert_records.h"
#include "support/tables.h"

namespace frt::test {
namespace {

using std::string;

string zeros(std::size_t n) { return string(n, '\0'); }
string le(std::uint32_t value) {
  return {static_cast<char>(value), static_cast<char>(value >> 8), static_cast<char>(value >> 16),
          static_cast<char>(value >> 24)};
}
string be(std::uint32_t value) {
  const string bytes = le(value);
  return {bytes.rbegin(), bytes.rend()};
}

TEST(Inserts, AStripsChainWithItsMarksAndAutomation) {
  SessionBuilder s;
  s.plugin_name("ToneEqua", "Equaliser").plugin_name("ToneEqua", "Other");
  Track& vox = s.track("Vox").insert(Insert("ToneEqua").chunk("plug", "a", {1, 2, 3}).key(7).bypass());
  vox.insert(Insert("ToneComp", {4, 5})
                 .deactivate()
                 .multi_mono(2)
                 .automate({"Gain", 3, 0.5, {{100, 0.25}, {200, 0.75}}, "dB"})
                 .automate({"Mix", 4, 1}));
  vox.hardware_insert("Out 3-4");
  s.instrument("Keys").insert(Insert("Synt\001One", {}));
  const Tables tables = tables_of(s);
  EXPECT_EQ(tables.rows("inserts"),
            "0: \"ToneEqua\" size=76 key=7 bypassed text=\"Equapluga\"\n"
            "1: \"ToneComp\" size=75 channels=2 inactive text=\"Compplugsettings\""
            " | automated \"Gain\" #3 label=\"dB\" 0.5 100/0.25 200/0.75 | automated \"Mix\" #4 1\n"
            "2: \"Synt.One\" size=73");
  EXPECT_EQ(tables.rows("inserts of strips"), "\"Keys\" 2\n\"Vox\" 0 1");
  EXPECT_EQ(tables.rows("plug-in names"), "\"ToneEqua\" \"Equaliser\"");
  EXPECT_EQ(tables.rows("multi-mono inserts"), "0: insert 1 on=\"Vox\"");
  EXPECT_EQ(tables.rows("hardware inserts"), "0: \"Vox\" to \"Out 3-4\"");
}

// An insert's block up to its body, which begins at + 33.
BlockWriter& open_insert(BlockWriter& w, std::uint32_t inner = 0) {
  return w.open(0x1038).u8(1).zeros(3).u32(inner).zeros(8).raw("ToneEqua");
}

TEST(Inserts, TheSmallestRowAroundItCountsAndAnAudioRowBeforeAnInstruments) {
  const auto rows_of = [](const std::vector<std::pair<unsigned, unsigned>>& around) {  // content type, bytes behind
    BlockWriter w;
    for (const auto& row : around) w.open(static_cast<std::uint16_t>(row.first));
    open_insert(w).zeros(8).close();
    for (auto row = around.rbegin(); row != around.rend(); ++row) w.zeros(row->second).close();
    const Image image(w);
    const InsertRecord insert = read_inserts(image.session).at(0);
    return insert.row_end == 0 ? -1 : static_cast<int>((insert.row_start - 20) / 9);
  };
  EXPECT_EQ(rows_of({{0x261b, 1}, {0x261b, 1}, {0x2621, 1}}), 1);
  EXPECT_EQ(rows_of({{0x2621, 1}, {0x2621, 1}}), 1);
  EXPECT_EQ(rows_of({{0x261d, 1}, {0x2620, 1}}), -1);
}

TEST(Inserts, MarksAreSoughtBehindItsTrimmedEnd) {
  // The zeros behind the inner length would hide the slot that stands in them, were they not cut.
  const auto row_of = [](std::uint32_t inner, unsigned last, unsigned behind) {
    BlockWriter w;
    open_insert(w, inner).zeros(24).u8(last).close().u8(behind);
    w.open(0x260e).u16(0xffff).zeros(8).close().open(0x260e).u16(9).zeros(8).close();
    return tables_of(w).rows("inserts");
  };
  EXPECT_EQ(row_of(16, 0, 1), "0: \"ToneEqua\" size=33");
  EXPECT_EQ(row_of(15, 0, 1), "0: \"ToneEqua\" size=58");  // would end ahead of its body
  EXPECT_EQ(row_of(42, 0, 0), "0: \"ToneEqua\" size=58 inactive");
  EXPECT_EQ(row_of(40, 7, 1), "0: \"ToneEqua\" size=58");
  BlockWriter w;  // the slot lies inside the block, behind its trimmed end but for the mark's byte
  open_insert(w, 16).zeros(8).close().u8(1).u8(2).open(0x2614).u32(0).close().u8(1).open(0x2614).u32(0).close();
  EXPECT_EQ(tables_of(w).rows("inserts"), "0: \"ToneEqua\" size=33");
}

TEST(Inserts, ControlsThatAreNotWholeAreLeftOut) {
  struct Control {
    unsigned count, held;
    string name, rest;
  };
  const auto rows_of = [](const Control& control, bool ahead = false) {
    BlockWriter w;
    if (!ahead) open_insert(w).zeros(8).close().u8(1);
    w.open(0x260f).open(0x260b).zeros(16).u16(control.count).u8(0).u8(1).zeros(6).i32(0);
    for (unsigned i = 0; i < control.held; ++i) w.u32(i).i32(1 << 30);
    w.zeros(2).close().text(control.name).raw(control.rest).close();
    if (ahead) open_insert(w).zeros(8).close();
    const string row = tables_of(w).rows("inserts");
    const std::size_t at = row.find("automated");
    return at == row.npos ? "" : row.substr(at + 10);
  };
  const string numbers = le(5) + zeros(8);
  EXPECT_EQ(rows_of({1, 1, "a", numbers + le(1) + "b"}), "\"a\" #5 label=\"b\" ticks 0.5 0/1");
  EXPECT_EQ(rows_of({0, 0, "a", numbers + le(3) + "b\nc"}), "\"a\" #5 ticks 0.5");
  EXPECT_EQ(rows_of({0, 0, "a", numbers + le(128) + string(128, 'b')}), "\"a\" #5 ticks 0.5");
  EXPECT_EQ(rows_of({2, 1, "a", numbers}), "");
  EXPECT_EQ(rows_of({0, 0, "", numbers}), "");
  EXPECT_EQ(rows_of({0, 0, "a\n", numbers}), "");
  EXPECT_EQ(rows_of({0, 0, string(129, 'a'), numbers}), "");
  EXPECT_EQ(rows_of({0, 0, "a", numbers}, true), "");
}

TEST(Inserts, NamesInBothForms) {
  const auto names_of = [](unsigned ahead, const string& name, const string& code) {
    BlockWriter w;
    w.open(0x1017).zeros(ahead).text(name).raw(code).close().zeros(1);
    return tables_of(w).rows("plug-in names");
  };
  EXPECT_EQ(names_of(1, "Lo-Fi", "enoTauqE"), "\"ToneEqua\" \"Lo-Fi\"");
  EXPECT_EQ(names_of(2, "Lo-Fi", "enoTauqE"), "\"ToneEqua\" \"Lo-Fi\"");
  EXPECT_EQ(names_of(3, "Lo-Fi", "enoTauqE"), "");
  EXPECT_EQ(names_of(1, string(61, 'a'), "enoTauqE"), "");
  EXPECT_EQ(names_of(1, "Lo-Fi", "enoTauq\n"), "");
  EXPECT_EQ(names_of(1, "Lo-Fi", "enoTauq"), "");
}

TEST(Inserts, HardwareInsertsWithoutTextOrTrack) {
  BlockWriter w;
  w.open(0x2612).open(0x260e).zeros(36).text("A\n").close().zeros(1).close();
  w.open(0x2612).zeros(20).close();
  const string unnamed = "\"<unknown track>\" to \"<unnamed>\"";
  EXPECT_EQ(tables_of(w).rows("hardware inserts"), "0: " + unnamed + "\n1: " + unnamed);
}

// ---- settings ----

// What the dump says of the settings of an insert with that body.
string state_row(BlockWriter& w) {
  const string row = tables_of(w).rows("inserts");
  const std::size_t at = row.find(" kind="), text = row.find(" text=\"");
  if (at == row.npos) return "";
  return text == row.npos ? row.substr(at + 6)
                          : row.substr(at + 6, text - at - 6) + row.substr(row.find('"', text + 7) + 1);
}
string state_of(const string& body) {
  BlockWriter w;
  open_insert(w).raw(body).close();
  return state_row(w);
}

TEST(InsertState, TheFirstMarkThatHoldsTellsTheKind) {
  const string archive = "22 serialization::archive" + string(40, '\1');
  const auto waves = [](const string& inside, std::uint32_t less = 0) {
    const string tree = "XPst\1\1<PresetChunkXMLTree>" + inside;
    return be(static_cast<std::uint32_t>(tree.size()) + 20 - less) + zeros(16) + tree;
  };
  const string sub = "<PluginSubComp>ABCD</PluginSubComp>", later = "\1HXMC\1";
  const struct {
    const char* what;
    string body, state;
  } rows[] = {
      {"to the block's end", "\1FFBS" + zeros(20), "1 doc=34+24"},
      {"to its end mark", "\1FFBSFFEx12345678FFEx12345678more", "1 doc=34+28"},
      {"the last end mark too near the end", "\1FFBSFFEx12345678FFEx1234567", "1 doc=34+27"},
      {"its own length", "\1VC2!" + le(3) + "12345", "2 doc=34+12"},
      {"its length cut", "\1VC2!" + le(300) + "12345", "2 doc=34+13"},
      {"without a length", "\1VC2!123", "2 doc=34+7"},
      {"a preset as text", "\1/*@Meta", "6 doc=34+7"},
      {"braces", "\1{\n\tindex = {}\"}\\\"}\" \\} }..", "10 doc=34+24"},
      {"braces that don't close", "\1{\n\tindex = { }" + later, "4 doc=53+1"},
      {"four bytes", "\1\x8d\x98\x85" + zeros(5) + le(2) + "1234", "7 doc=34+14"},
      {"four bytes, too long", "\1\x8d\x98\x85" + zeros(5) + le(5) + "1234", ""},
      {"packed", "\1" + le(7) + le(9) + le(16) + le(64) + "x\x9c" + "123456789012", "8 doc=50+12 header=7,9,16,64,"},
      {"packed, too small", "\1" + le(7) + le(9) + le(16) + le(63) + "x\x9c" + "12345678" + later, ""},
      {"packed, too long", "\1" + le(7) + le(9) + le(19) + le(64) + "x\x9c" + "123456789012", ""},
      {"sampler", le(76) + le(0) + le(1) + "hsin" + string(60, '\1'), "12 doc=45+64"},
      {"sampler, second word", le(76) + le(2) + le(1) + "hsin" + string(60, '\1') + later, "4 doc=114+1"},
      {"sampler, too small", le(75) + le(0) + le(1) + "hsin" + string(60, '\1') + later, "4 doc=114+1"},
      {"archive twice", le(65) + archive + le(65) + archive, "11 doc=37+65"},
      {"archive once", le(65) + archive + le(65) + later, "4 doc=111+1"},
      {"text", "\1<?xml>" + zeros(3), "3 doc=34+7"},
      {"shell", waves(sub + "<PluginName>Q</PluginName><ActiveSetup>SETUP_B</ActiveSetup>"),
       "9 doc=59+115 sub=\"ABCD\" name=\"Q\" setup=\"setB\""},
      {"shell, setup by number", waves(sub + "<ActiveSetup>SETUP_1</ActiveSetup>"),
       "9 doc=59+89 sub=\"ABCD\" setup=\"setA\""},
      {"shell, document outside", waves("", 2) + later, "4 doc=84+1"},
  };
  for (const auto& row : rows) EXPECT_EQ(state_of(row.body), row.state) << row.what;
  // Without its component it is looked at as others are.
  EXPECT_EQ(state_of(waves("<PluginSubComp>ABC</PluginSubComp>" + zeros(40))).substr(0, 40),
            "13 doc=53+100 label=\"XPst\" sub=\"ABC\" set");
}

TEST(InsertState, ControlListsInEveryStride) {
  const auto item = [](const string& tag, std::size_t stride, double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    const string number = tag == "l_"
                              ? be(static_cast<std::uint32_t>(static_cast<std::int32_t>(value)))
                              : be(static_cast<std::uint32_t>(bits >> 32)) + be(static_cast<std::uint32_t>(bits));
    return tag + zeros(stride - 2) + number;
  };
  for (const std::size_t stride : {4U, 8U, 12U, 16U}) {
    EXPECT_EQ(state_of(zeros(4) + item("l_", stride, -2) + item("d_", stride, 0.5) + item("l_", stride, 3)),
              "5 doc=37+0 | controls -2 0.5 3")
        << stride;
  }
  for (const double lost : {1e30, -1e30, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(state_of(zeros(4) + item("l_", 12, 1) + item("d_", 12, lost)), "5 doc=37+0 | controls 0") << lost;
  }
  EXPECT_EQ(state_of(zeros(4) + item("d_", 4, 1e29)), "5 doc=37+0 | controls 1.0000000150474662e+29");
  EXPECT_EQ(state_of(zeros(4) + "l_" + zeros(5)), "");  // its value doesn't fit
  EXPECT_EQ(state_of(string(48, '\1') + item("l_", 4, 7)), "5 doc=81+0 | controls 7");
  EXPECT_EQ(state_of(string(49, '\1') + item("l_", 4, 7)), "");
}

using Bytes = std::vector<std::uint8_t>;

string state_of(const Insert& insert, std::size_t behind = 0, std::size_t without = 0) {
  BlockWriter w;
  w.open(0x1038).u8(1).zeros(7).bytes(Bytes(insert.chunks.begin(), insert.chunks.end() - static_cast<long>(without)));
  w.fill(behind, 1).close();
  return state_row(w);
}

TEST(InsertState, AChunkBehindAControlListIsASecondState) {
  const Bytes state(32, 200), small(31, 200), text(40, 'a'), nothing(40, 0);
  const auto list = [](double value = 0.5) { return Insert("ToneEqua").control_values({value}); };
  const string heard = " | controls 0.5", controls = "5 doc=77+0" + heard;
  const string first_of_two = "5 doc=77+0 alt=145+32 alt_label=\"AAX chunk after elck\"", second = first_of_two + heard;
  EXPECT_EQ(state_of(list().chunk("stat", "s", state)), second);
  EXPECT_EQ(state_of(list().chunk("stat", "s", state).chunk("stat", "s", state)), first_of_two + " alts=2" + heard);
  EXPECT_EQ(state_of(list().chunk("stat", "s", state), 8), second);
  EXPECT_EQ(state_of(list().chunk("stat", "s", state), 9), controls);
  EXPECT_EQ(state_of(list().chunk("stat", "s", state), 0, 1), controls);
  for (const Bytes& none : {small, text, nothing}) {
    EXPECT_EQ(state_of(list().chunk("stat", "s", none)), controls) << none.size();
  }
  EXPECT_EQ(state_of(list().chunk("elck", "s", state)), controls);
  // The maker code stands at + 8 of each chunk, or at + 4.
  for (const std::size_t maker : {4U, 8U, 12U}) {
    Insert moved = list().chunk("stat", "s", state);
    const std::size_t chunk = 72;
    for (std::size_t i = 4; i < 20; ++i) moved.chunks[chunk + i] = 0;
    std::copy_n("Tone", 4, moved.chunks.begin() + static_cast<long>(chunk + maker));
    EXPECT_EQ(state_of(moved), maker == 12 ? controls : second) << maker;
  }
  // A list that can't be read leaves the chunk as the state.
  EXPECT_EQ(state_of(Insert("ToneEqua").chunk("elck", "s", {1, 1, 1, 1}).chunk("stat", "s", state)),
            "13 doc=133+32 label=\"AAX chunk after elck\"");
}

TEST(InsertState, WhatNobodyKnowsByItsMarkIsTheBestGuess) {
  string text = "\n";  // that doesn't repeat
  for (int i = 1; i < 120; ++i) text += static_cast<char>(33 + (i * i / 7 + i) % 90);
  const string half(60, 'h'), dots(20, '.');
  const struct {
    const char* what;
    string body, state;
  } rows[] = {
      {"nothing", string(80, '\1'), ""},
      {"text", "\1\1\1\1" + string(300, '\n') + zeros(8), "13 doc=33+312 label=\"text (no tag)\""},
      {"too little text", "\1\1\1\1" + string(300, '\n') + zeros(9), ""},
      {"braces", "\1\1\1{" + string(62, '\t') + "}" + zeros(20), "13 doc=36+64 label=\"braces balance\""},
      {"braces too near", "\1\1\1{" + string(61, '\t') + "}" + zeros(20), ""},
      {"closes", "\1\1\1\1" + le(64) + string(64, '\2'), "13 doc=41+64 label=\"length closes\""},
      {"closes with a surplus", "\1\1\1\1" + le(80) + zeros(4) + string(64, '\2'),
       "13 doc=41+68 label=\"length closes\""},
      {"closes, too short", "\1\1\1\1" + le(63) + string(63, '\2'), ""},
      {"closes at a distance", "\1\1\1\1" + le(76) + string(76, '\2'), "13 doc=41+76 label=\"length closes\""},
      {"tag", "\1\1\1\1RIFF" + string(40, '\2'), "13 doc=37+44 label=\"RIFF\""},
      {"tag with a length", "\1\1\1" + le(44) + "RIFF" + string(40, '\2') + string(90, '\3'),
       "13 doc=40+44 label=\"RIFF\""},
      {"tag, surplus and copy", "\1" + le(68) + zeros(20) + "RIFF" + half + "\1\1\1\1RIFF" + half + string(90, '\3'),
       "13 doc=58+64 label=\"RIFF\" copies=2"},
      {"copies differ", "\1" + le(64) + "RIFF" + half + "RIFF!" + string(59, 'h') + string(90, '\3'),
       "13 doc=38+64 label=\"RIFF\""},
      {"the better of two", "\1RIFF" + dots + le(44) + "FabF" + string(40, '\2'), "13 doc=62+44 label=\"FabF\""},
      {"of equal ones the lower", "\1RIFF" + dots + "FabF" + string(40, '\2'), "13 doc=34+68 label=\"RIFF\""},
      {"text by its length", "\1\1\1\1" + le(120) + text + string(60, '\2'), "13 doc=41+120 label=\"text\""},
      {"text of another length", "\1\1\1\1" + le(50) + text + string(60, '\2'), ""},
      {"text one too short", "\1\1\1\1" + le(119) + text.substr(0, 119) + string(60, '\2'), ""},
  };
  for (const auto& row : rows) EXPECT_EQ(state_of(row.body), row.state) << row.what;
  EXPECT_EQ(state_of(Insert("ToneEqua", Bytes(31, 1))), "");
  EXPECT_EQ(state_of(Insert("ToneEqua", Bytes(32, 1))).substr(0, 34), "13 doc=73+32 label=\"AAX chunk data");
  EXPECT_EQ(state_of(Insert("ToneEqua").chunk("plug", string("a\0b", 3), Bytes(32, 1))), "");
}

TEST(InsertState, ThePresetsNameStandsBehindZeros) {
  const auto preset_of = [](const string& body) {
    BlockWriter w;
    open_insert(w).raw("\1" + body).close();
    const string row = tables_of(w).rows("inserts");
    const std::size_t at = row.find(" preset=");
    return at == row.npos ? "" : row.substr(at + 8);
  };
  EXPECT_EQ(preset_of("FFPr\1" + zeros(1) + "\1" + zeros(3) + "Big Room\1" + "more"), "\"Big Room\"");
  EXPECT_EQ(preset_of("ikdt" + zeros(2) + string(70, 'a')), "\"" + string(60, 'a') + "\"");
  EXPECT_EQ(preset_of("FFPr" + zeros(9) + "A\1\1"), "");
  EXPECT_EQ(preset_of("FFPr" + zeros(9) + "AB"), "");  // too near the end
  EXPECT_EQ(preset_of("FFPr\1\1\1\1\1\1\1\1\1\1\1\1ikdt" + zeros(9) + "Second"), "\"Second\"");
}

TEST(InsertState, BracesByTheOneThatOpens) {
  const auto close_of = [](const string& text) {
    const ByteView bytes(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
    string out;
    BraceIndex(bytes, 0, text.size()).each([&](std::uint64_t open, std::optional<std::uint64_t> close) {
      out += std::to_string(open) + (close ? "-" + std::to_string(*close) : "") + " ";
      return true;
    });
    return out;
  };
  EXPECT_EQ(close_of("{{}}{"), "0-3 1-2 4 ");
  EXPECT_EQ(close_of("{\"}\"}"), "0-4 ");
  EXPECT_EQ(close_of("{\\}\\\\}"), "0-5 ");
  EXPECT_EQ(close_of("\"{\"}}"), "1 ");             // counted from inside the quotes on
  EXPECT_EQ(close_of("{\"{\\\"}\"}"), "0-7 2-5 ");  // the protected quote doesn't end the text
}

}  // namespace
}  // namespace frt::test
