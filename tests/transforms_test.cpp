// Settings of plug-ins on their way from a session to REAPER: REAPER's layouts, and each maker's form.
#include <gtest/gtest.h>

#include <string>

#include "base/file.h"
#include "state/clap_overrides.h"
#include "state/containers.h"
#include "state/corpus.h"
#include "state/makers/antares_parameters.h"
#include "state/transform.h"
#include "support/block_writer.h"
#include "support/console.h"
#include "support/temp_folder.h"

namespace frt {
namespace {

using test::BlockWriter;
using namespace std::string_literals;
using W = BlockWriter;

std::string str(BlockWriter& w) {
  const StateBytes bytes = w.take();
  return {bytes.begin(), bytes.end()};
}
std::string str(const StateBytes& bytes) { return {bytes.begin(), bytes.end()}; }
// A number as it stands in a state.
std::string le(std::uint32_t value) { return str(W().u32(value)); }
std::string be(std::uint32_t value) { return le(__builtin_bswap32(value)); }
std::string f32(float value) { return str(W().f32(value)); }
std::string zeros(std::size_t count) { return std::string(count, '\0'); }
std::string pair_of(const std::string& component, const std::string& controller) {
  const auto size = [](const std::string& s) { return le(static_cast<std::uint32_t>(s.size())); };
  return size(component) + le(1) + component + size(controller) + le(0) + controller;
}

const std::string kVst3 = "77{0123456789ABCDEF0123456789ABCDEF}";
const std::string kVst2 = "77<5653544142434478>";
const std::string kJuceTail = "JUCEPrivateData\0\1\1Bypass\0\1\1\3\0\x1d\0\0\0\0\0\0\0JUCEPrivateData"s;

// An insert whose block is `block`, some way into an image that goes on behind it.
struct Plugin {
  InsertRecord insert;
  KnowledgeRecord record;
  std::string block;
  TransformOptions options = {};

  Plugin(StateKind kind, std::string signature, std::string ident, std::string bytes, std::uint64_t at = 0,
         std::uint64_t length = ~0U)
      : block(std::move(bytes)) {
    insert.kind = kind;
    insert.signature = std::move(signature);
    insert.start = 5;
    insert.end = 5 + block.size();
    insert.doc_off = insert.start + at;
    insert.doc_len = length == ~0U ? block.size() - at : length;
    record.ident = std::move(ident);
    record.display_text = record.is_vst3() ? "VST3: Plug (Maker)" : "VST: Plug (Maker)";
  }
  Plugin& clap() {
    record.ident = "com.maker.plug";
    record.display_text = "CLAP: Plug (Maker)";
    return *this;
  }
  TransformedState transformed() const {
    const std::string image = "head." + block + "what follows the block, long enough to be read by mistake";
    return transform_state(insert, record, view_of(image), options);
  }
  std::string state() const { return str(transformed().bytes); }
};

TEST(Containers, HeaderTellsPinsAndChannels) {
  const auto pins = [](std::uint32_t in, std::uint32_t out, StripPins strip, const char* signature = "AAAABBBB") {
    KnowledgeRecord record;
    record.ident = "16909060{00}";
    record.signature = signature;
    record.pins_in = in;
    record.pins_out = out;
    record.tail_word = 65535;
    return str(state_header(record, 300, strip));
  };
  const std::string head = "\4\3\2\1\xee\x5e\xed\xfe"s, end = "\x2c\1\0\0\1\0\0\0\xff\xff\0\0"s;
  const auto masks = [](std::initializer_list<std::uint64_t> values) {
    W w;
    w.u32(static_cast<std::uint32_t>(values.size()));
    for (const std::uint64_t value : values) w.u64(value);
    return str(w);
  };
  EXPECT_EQ(pins(0, 2, {}), head + masks({}) + masks({1, 2}) + end);
  EXPECT_EQ(pins(1, 1, {1, 3}), head + masks({1}) + masks({1}) + end);
  // A key input comes on channels 3/4, or on the pair that the track has it on.
  EXPECT_EQ(pins(4, 2, {2, 0}), head + masks({1, 2, 4, 8}) + masks({1, 2}) + end);
  EXPECT_EQ(pins(5, 2, {2, 2}), head + masks({1, 2, 64, 128, 16}) + masks({1, 2}) + end);
  EXPECT_EQ(pins(3, 0, {2, 2}), head + masks({1, 2, 4}) + masks({}) + end) << "too few inputs for a key";
  EXPECT_EQ(pins(4, 0, {2, 31}), head + masks({1, 2, 0, 0}) + masks({}) + end) << "beyond channel 64";
  EXPECT_EQ(pins(2, 0, {1, 0}, "Lin6Helx"), head + masks({1, 0}) + masks({}) + end);
  EXPECT_EQ(pins(2, 0, {2, 0}, "Lin66SAX"), head + masks({1, 2}) + masks({}) + end);
  const std::string wide = pins(0, 64, {});
  EXPECT_EQ(wide.size(), 4U + 4 + 4 + 4 + 512 + 12);
  EXPECT_EQ(wide.substr(16 + 504, 8), "\0\0\0\0\0\0\0\x80"s);
  EXPECT_EQ(pins(0, 65, {}).substr(16 + 512, 8), zeros(8));
  EXPECT_LT(pins(4000000000U, 4000000000U, {}).size(), 100000U) << "a claim of pins makes no room";
}

TEST(Containers, IdentifiersGiveUidCodeAndProgram) {
  EXPECT_EQ(uid_of("4294967297{00}"), 1U);
  EXPECT_EQ(uid_of("com.maker"), 0U);
  const auto code = [](const std::string& ident, const char* signature) {
    KnowledgeRecord record;
    record.ident = ident;
    return plugin_code(record, signature);
  };
  EXPECT_EQ(code("1{5653546162436478706C756700000000", "ABCDEFGH"), "abCd");
  EXPECT_EQ(code("1{5653546162436478706C75670000000", "ABCDEFGH"), "EFGH") << "31 digits";
  EXPECT_EQ(code("1<5653546162436478706C756700000000>", "ABCDEFGH"), "EFGH");
  EXPECT_EQ(code("1{5653546162436478706C756700000000}", "JptrATLv"), "ATxL");
  EXPECT_EQ(code("1", "ABC"), "????");
  const auto version = [](const std::string& text) { return plugin_version(view_of(text)); };
  EXPECT_EQ(version("<P ChunkVersion=\"2.258.7\"/>"), 0x20207U) << "the middle number loses what passes its byte";
  EXPECT_EQ(version("<P ChunkVersion=\"2.5\"/>    "), 0U);
  EXPECT_EQ(version("ChunkVersion=\"1"), 0U) << "too short";
  EXPECT_EQ(version(std::string(498, ' ') + "ChunkVersion=\"1.2.3\""), 0x10203U);
  EXPECT_EQ(version(std::string(499, ' ') + "ChunkVersion=\"1.2.3\""), 0U);

  EXPECT_EQ(str(program_record("")), zeros(6));
  EXPECT_EQ(str(program_record("Program 0")), "\0Program 0\0\0\0\0\0"s);
  const std::string bank = "<?xml version=\"1.0\"?><Root><Bank></Bank></Root>";
  EXPECT_EQ(program_name(view_of(bank)), "Program 0");
  EXPECT_EQ(program_name(view_of(bank.substr(0, 44))), "") << "too short";
  EXPECT_EQ(program_name(view_of(" " + bank)), "");
}

TEST(Containers, WrappingsCountWhatTheyHold) {
  EXPECT_EQ(str(pack_component_pair(view_of("ab"), view_of("cde"))), pair_of("ab", "cde"));
  EXPECT_EQ(kJuceTail.size(), 52U);
  EXPECT_EQ(str(pack_juce_tail(view_of("abc"))), le(55) + le(1) + "abc" + kJuceTail + zeros(8));
  EXPECT_EQ(str(pack_vstw("Code", 0x10203, "VC2!", view_of("xy\0"s))),
            le(218) + le(1) + "VstW" + be(8) + be(1) + le(0) + "CcnK" + be(194) + "FBCh" + be(2) + "Code" +
                be(0x10203) + le(0) + zeros(128) + be(42) + "VC2!" + le(2) + "xy\0"s + zeros(16) + "JUCEPrivateData" +
                zeros(8));
}

TEST(Transforms, DocumentsGoIntoTheWrappingOfTheirFormat) {
  const std::string default_end = le(7) + "Default", words = le(1) + le(2) + le(3) + le(4);
  const std::string meta = "#pgm=From Pro Tools\nDOC";  // 23 bytes
  const std::string waves =
      be(31) + be(3) + be(1) + "SUBCsetB" + be(3) + "XPstDOC<Bypass Version=\"1\" Bypass=\"0\" />\n";
  const std::string kontakt = le(15) + le(0) + le(1) + "DOC";
  struct Row {
    StateKind kind;
    std::string vst3, other;
  };
  const std::vector<Row> rows = {
      {StateKind::kFabFilter, "", "DOC"},
      {StateKind::kXml, "DOC", "DOC"},
      {StateKind::kHxmc, "DOC", "DOC"},
      {StateKind::kMeta, le(27) + le(1) + le(23) + meta + le(27) + le(0) + le(23) + meta, meta},
      {StateKind::kBytes7, le(3) + "DOC" + default_end, le(3) + "DOC" + default_end},
      {StateKind::kZlib, le(19) + le(1) + words + "DOC" + le(19) + le(0) + words + "DOC",
       le(19) + words + "DOC" + default_end},
      {StateKind::kWaves, le(65) + le(1) + waves + zeros(8), le(65) + le(1) + waves + zeros(8)},
      {StateKind::kIndexText, pair_of("DOC", ""), "DOC"},
      {StateKind::kArchive, pair_of("DOC", "DOC"), pair_of("DOC", "DOC")},
      {StateKind::kKontakt, pair_of(kontakt, ""), kontakt},
      {StateKind::kChunk, pair_of("DOC", ""), "DOC"},
  };
  for (const Row& row : rows) {
    for (const bool vst3 : {true, false}) {
      SCOPED_TRACE(static_cast<int>(row.kind) * 10 + (vst3 ? 3 : 2));
      Plugin p(row.kind, "ABCDEFGH", vst3 ? kVst3 : kVst2, "ZDOC..", 1, 3);
      p.insert.doc_header = {1, 2, 3, 4};
      p.insert.plugin_sub_comp = "SUBC";
      p.insert.active_setup = "setB";
      EXPECT_EQ(p.state(), vst3 ? row.vst3 : row.other);
      Plugin past = p;
      past.insert.doc_len = 6;
      EXPECT_EQ(past.state(), "") << "runs past the block";
      p.insert.doc_len = 0;
      EXPECT_EQ(p.state(), "");
      // Moved to its VST2 build, a plug-in keeps only what all builds share; CLAP builds take what was measured.
      p.insert.doc_len = 3;
      p.options.vst2_override = true;
      const bool shared = row.kind == StateKind::kFabFilter || row.kind == StateKind::kIndexText;
      EXPECT_EQ(p.state(), !shared ? "" : vst3 ? row.vst3 : row.other);
      p.options.vst2_override = false;
      const bool clap = row.kind == StateKind::kFabFilter || row.kind == StateKind::kChunk;
      EXPECT_EQ(p.clap().state(), clap ? "DOC" : "");
    }
  }
  Plugin waves_plain(StateKind::kWaves, "ABCDEFGH", kVst2, "DOC");
  waves_plain.insert.plugin_sub_comp = "SUBC";
  EXPECT_EQ(waves_plain.state().substr(24, 4), "setA");
  waves_plain.insert.plugin_sub_comp = "SUB";
  EXPECT_EQ(waves_plain.state(), "");
  Plugin no_kontakt(StateKind::kKontakt, "ABCDEFGH", kVst3, "DOC");
  no_kontakt.options.kontakt_state = false;
  EXPECT_EQ(no_kontakt.state(), "");
}

TEST(Transforms, PlainDocumentsMeetLimitsAndBanks) {
  Plugin p(StateKind::kXml, "ABCDEFGH", kVst2, "<?xml version=\"1.0\"?><A><Program x/></Program></Program>tail");
  std::string programs;
  for (int i = 0; i < 99; ++i) programs += "<Program />";
  EXPECT_EQ(p.state(), "<?xml version=\"1.0\"?><A><Bank><Program x/></Program></Program>" + programs + "</Bank>\0"s);
  p.record.state_limit = 45;
  EXPECT_EQ(p.state(), p.block.substr(0, 45)) << "cut before it is looked at";
  p.record.state_limit = static_cast<std::uint32_t>(p.block.size() + 1);
  EXPECT_EQ(p.state(), "");
  for (const char* as_it_stands :
       {"<?xml version=\"1.0\"?><Bank><Program x/></Program></Bank>",
        "<?xml version=\"1.0\"?><A></Program><Program x/>          ", "<?xml ?><Program x></Program>",
        "<xml version=\"1.0\"?><A><Program x/></Program>"}) {
    EXPECT_EQ(Plugin(StateKind::kXml, "ABCDEFGH", kVst2, as_it_stands).state(), as_it_stands);
  }
}

TEST(Transforms, ChunksOfVst3BuildsByWhatStandsAround) {
  const std::string juce_id = "9{abcdef019182FAEB4142434445464768}",
                    head = "juce" + zeros(20) + "\xdb\xd6\x10\x06" + le(0);
  const auto chunk = [](const std::string& ident, const std::string& ahead, const std::string& signature = "ABCDEFGh") {
    return Plugin(StateKind::kChunk, signature, ident, ahead + "DOC.", ahead.size(), 3);
  };
  EXPECT_EQ(chunk(juce_id, head + le(3)).state(), le(55) + le(1) + "DOC" + kJuceTail + zeros(8));
  const std::string with_head = "\xdb\xd6\x10\x06"s + le(0) + le(3) + "DOC";
  EXPECT_EQ(chunk(juce_id, head + le(3), "ABCDEFGH").state(), pair_of(with_head, with_head)) << "another's codes";
  EXPECT_EQ(chunk(juce_id, with_head.substr(0, 12)).state(), pair_of(with_head, with_head)) << "no room for \"juce\"";
  EXPECT_EQ(chunk(juce_id, head + le(4)).state(), le(55) + le(1) + "DOC" + kJuceTail + zeros(8));
  EXPECT_EQ(chunk(kVst3, head + le(4)).state(), pair_of("DOC", "")) << "the length doesn't fit";
  Plugin labelled = chunk(kVst3, head + le(3));
  labelled.insert.doc_label = "AAX chunk after elck";
  EXPECT_EQ(labelled.state(), "");
  Plugin twice = chunk(kVst3, "");
  twice.insert.doc_copies = 2;
  EXPECT_EQ(twice.state(), pair_of("DOC", "DOC"));
  twice.insert.doc_copies = 0;
  EXPECT_EQ(twice.state(), "");
  const std::string side = le(3) + "DOC" + le(0);
  EXPECT_EQ(chunk("1{F2AEE70D00DE4F4E0000000000000000}", "").state(), pair_of(side, side));
}

TEST(Transforms, FabFilterDocumentsAndControls) {
  const auto ffbs = [](std::uint32_t count, const std::string& behind) {
    return Plugin(StateKind::kFabFilter, "FabFFC2p", kVst3, "FFBS" + le(1) + le(count) + f32(0.5) + behind);
  };
  const std::string head = "FFBS" + le(1) + le(1) + f32(0.5), component = head + "FFpr" + le(1) + le(0);
  const std::string end = "FFed" + le(0) + le(0);
  EXPECT_EQ(ffbs(1, "aFFExbFFExc").state(), pair_of(component, "aFFExb" + end));
  EXPECT_EQ(ffbs(1, "").state(), pair_of(component, end));
  EXPECT_EQ(ffbs(2, "abc").state(), "") << "a value is missing";
  EXPECT_EQ(ffbs(0xFFFFFFFF, "abc").state(), "");
  Plugin bare(StateKind::kFabFilter, "FabFFC2p", kVst3, "FFBS1234.......", 0, 11);
  EXPECT_EQ(bare.state(), "");

  Plugin p(StateKind::kControls, "FabFFC2p", kVst3, "Zl_", 1, 0);
  p.record.default_program = "Def";
  p.insert.controls.assign(43, 0.25F);
  p.insert.controls[42] = 0;
  std::string values;
  for (int i = 0; i < 42; ++i) values += f32(0.25);
  const std::string list = "FabF" + le(2) + le(3) + "Def" + le(0) + le(43);  // 23 bytes, and 172 of values
  const std::string close = le(1) + le(1) + le(12) + le(0) + "FFed" + le(0) + "\0\0\x80\x3f"s;
  EXPECT_EQ(p.state(), le(203) + le(1) + list + values + f32(0) + close);
  p.options.track_has_midi = true;
  EXPECT_EQ(p.state(), le(203) + le(1) + list + values + f32(1) + close);
  EXPECT_TRUE(p.transformed().midi_trigger_off);
  p.record.ident = kVst2;
  EXPECT_EQ(p.state(), list + values + f32(1) + close);
  p.insert.signature = "FabFFS2a";
  EXPECT_EQ(p.state(), list + values + f32(0) + close) << "its trigger is another control";
  p.insert.signature = "FabFFC2p";
  EXPECT_EQ(p.clap().state(), "FFBS" + le(1) + le(43) + values + f32(1) + "FC2p" + le(3) + le(3) + "Def" +
                                  le(0xFFFFFFFF) + le(1) + le(0) + le(0) + "CuSV" + le(1) + le(0));
  p.options.keep_plugin_midi = true;
  EXPECT_FALSE(p.transformed().midi_trigger_off);
  p.options.keep_plugin_midi = false;
  p.insert.controls[42] = 0.5F;
  EXPECT_FALSE(p.transformed().midi_trigger_off);
}

TEST(Transforms, MidiTriggerOfWholeStates) {
  const auto whole = [](std::size_t floats, std::uint32_t claimed, const std::string& signature, bool midi = true) {
    const std::string text = "..FFBS" + le(1) + le(claimed) + zeros(4 * floats) + "end";
    StateBytes state(text.begin(), text.end());
    TransformOptions options;
    options.track_has_midi = midi;
    const bool switched = switch_off_midi_trigger(signature, state, options);
    std::string expected = text;
    if (switched) expected.replace(2 + 12 + 4 * (signature == "FabFFC2p" ? 42 : 699), 4, f32(1));
    EXPECT_EQ(str(state), expected);
    return switched;
  };
  EXPECT_TRUE(whole(43, 43, "FabFFC2p"));
  EXPECT_TRUE(whole(700, 700, "FabFFS2a"));
  EXPECT_FALSE(whole(43, 42, "FabFFC2p"));
  EXPECT_FALSE(whole(42, 43, "FabFFC2p")) << "cut short";
  EXPECT_FALSE(whole(43, 43, "FabFFC2p", false));
  EXPECT_FALSE(whole(43, 43, "FabFFXXX"));
}

// A chunk of an insert's block, 56 bytes ahead of its data.
std::string chunk(const std::string& id, const std::string& data) {
  return be(static_cast<std::uint32_t>(data.size() + 56)) + zeros(4) + "MAKEplug" + zeros(4) + id + zeros(32) + data;
}
std::string item(double value) {
  return "d_.."s + be(static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(value) >> 32)) + be(0);
}
std::string named(const std::string& word, const std::string& name) {
  return word + be(static_cast<std::uint32_t>(name.size())) + name + "rest of it";
}

TEST(Transforms, ControlListsGoTheWayThatTheirPluginKnows) {
  const std::string list = chunk("elck", "...." + item(0.5)), name = "\0A\0b"s;
  const std::string one = named("same", name), two = named("same", name);
  const std::string chunks = list + chunk("aaaa", one) + chunk("bbbb", two) + chunk("mdfy", "x");
  const auto plugin = [](const std::string& ident, const std::string& behind, std::vector<float> controls, int count) {
    Plugin p(StateKind::kControls, "MAKEplug", ident, zeros(17) + behind, 17, 0);
    p.insert.controls = std::move(controls);
    if (count > 0) p.insert.alt = {5 + 17 + 4, 3, "found", 1, count};
    return p;
  };
  const std::string listed = le(62 - 4) + zeros(12) + le(1) + f32(0.5) + le(22) + one + le(22) + two;  // 76 in all
  const auto sized = [&](std::uint32_t size) { return le(size) + listed.substr(4); };
  EXPECT_EQ(listed.size(), 76U);
  EXPECT_EQ(plugin(kVst2, chunks, {1}, 2).state(), sized(60));
  EXPECT_EQ(plugin(kVst3, chunks, {}, 2).state(), le(76) + le(1) + sized(60) + zeros(8));
  // Everything that isn't exactly this list carries nothing.
  const std::string other_name = "\0A\0c"s;
  for (const std::string& wrong :
       {list + chunk("aaaa", one), list + chunk("aaaa", one) + chunk("bbbb", named("same", other_name)),
        list + chunk("aaaa", one) + chunk("bbbb", named("diff", name)),
        list + chunk("aaaa", named("same", "\1A")) + chunk("bbbb", named("same", "\1A")),
        list + chunk("aaaa", named("same", "\0A\0"s)) + chunk("bbbb", named("same", "\0A\0"s)),
        chunk("xlck", "...." + item(0.5)) + chunk("aaaa", one) + chunk("bbbb", two),
        chunk("elck", "...." + item(0.5) + ".") + chunk("aaaa", one) + chunk("bbbb", two),
        chunk("elck", "...." + item(0.5) + "l_..........") + chunk("aaaa", one) + chunk("bbbb", two),
        chunks + zeros(9)}) {
    EXPECT_EQ(plugin(kVst2, wrong, {1}, 2).state(), "");
  }
  EXPECT_NE(plugin(kVst2, chunks + zeros(8), {1}, 2).state(), "");
  const std::string far = chunk("elck", "...." + item(1e300)) + chunk("aaaa", one) + chunk("bbbb", two);
  EXPECT_EQ(plugin(kVst2, far, {1}, 2).state().substr(20, 4), "\0\0\x80\x7f"s);

  // One second state, or none.
  const std::string second = "....DOC";
  EXPECT_EQ(plugin(kVst2, second, {1}, 1).state(), "DOC");
  EXPECT_EQ(plugin(kVst3, second, {}, 1).state(), pair_of("DOC", ""));
  EXPECT_EQ(plugin(kVst3, second, {1}, 0).state(), "");
  EXPECT_EQ(plugin(kVst3, second, {1}, 1).clap().state(), "DOC");
  EXPECT_EQ(plugin(kVst3, chunks, {1}, 2).clap().state(), "");
  Plugin with_program = plugin(kVst2, second, {1}, 1);
  with_program.record.default_program = "Def";
  EXPECT_EQ(with_program.state().substr(0, 4), "FabF");
  EXPECT_EQ(with_program.clap().state(), "") << "no FabFilter";
  with_program.insert.controls.clear();
  EXPECT_EQ(with_program.state(), "DOC");
  Plugin juce = plugin(kVst3, second, {1}, 1);
  juce.insert.signature = "xlnAxaAK";
  juce.insert.alt.label = "AAX chunk after elck";
  EXPECT_EQ(juce.state(), le(55) + le(1) + "DOC" + kJuceTail + zeros(8));
  juce.insert.alt.length = 4;
  EXPECT_EQ(juce.state(), "") << "runs past the block";
  juce.insert.alt = {5 + 17 + 4, 3, "found", 1, 2};
  EXPECT_EQ(juce.state(), "") << "two chunks could be it";

  Plugin floats = plugin(kVst3, second, {0.5, 0.25}, 1);
  floats.record.floats_only = true;
  floats.record.float_count = 3;
  floats.record.float_lead = 1;
  EXPECT_EQ(floats.state(), le(13) + le(1) + zeros(1) + f32(0.5) + f32(0.25) + f32(0) + zeros(8));
  floats.record.float_count = floats.record.float_lead = 0;
  EXPECT_EQ(floats.state(), le(80) + le(1) + f32(0.5) + f32(0.25) + zeros(72 + 8));
  floats.record.default_program = "Def";
  floats.insert.signature = "FabFFC2p";
  EXPECT_EQ(floats.clap().state(), "");
}

TEST(Transforms, Vc2DocumentsByClassAndPlugin) {
  const auto vc2 = [](const std::string& signature, const std::string& ident, const std::string& text) {
    return Plugin(StateKind::kVc2, signature, ident,
                  "Z.VC2!" + le(static_cast<std::uint32_t>(text.size())) + text + "\0"s, 2);
  };
  const std::string juce_id = "1{ABCDEF019182FAEB0000000000000000}";
  const std::string document = "VC2!" + le(3) + "txt\0"s;  // 12 bytes
  EXPECT_EQ(vc2("ABCDEFGH", juce_id, "txt").state(), le(64) + le(1) + document + kJuceTail + zeros(8));
  EXPECT_EQ(vc2("ABCDEFGH", "1{565354564d723241564F58205448524F}", "txt").state().substr(8, 12), document);
  EXPECT_EQ(vc2("AntrSlce", juce_id, "txt").state(), le(72) + le(1) + document + zeros(8) + kJuceTail + zeros(8));
  const auto wrapped = [](const char* code, const std::string& text) {
    return str(pack_vstw(code, 0, "VC2!", view_of(text + "\0"s)));
  };
  EXPECT_EQ(vc2("JptrATLv", juce_id, "txt").state(), wrapped("ATxL", "txt"));
  EXPECT_EQ(vc2("ABCDEFGH", kVst3, "txt").state(), wrapped("EFGH", "txt"));
  EXPECT_EQ(vc2("ABCDEFGH", kVst2, "txt").state(), document);
  EXPECT_EQ(vc2("ABCDEFGH", kVst2, "txt").clap().state(), document);
  Plugin broken = vc2("ABCDEFGH", juce_id, "txt");
  for (const std::uint32_t length : {0xFFFFFFFFU, 0xFFFFFFFEU, 4U}) {
    broken.block.replace(6, 4, le(length));
    EXPECT_EQ(broken.state(), "") << length;
  }

  // Parameters of other names: by table, with what the text has of them, up to the end mark.
  const std::string given =
      "<a><Parameters><Set n=\"1\"><PARAM id=\"sld1\" value=\"3\"/><PARAM id=\"sld1\" value=\"4\"/>"
      "<PARAM id=\"rest\"/><PARAM id=\"sld2\" value=\"5\"/><PARAM id=\"sld3\" value=\"9";
  EXPECT_EQ(
      vc2("AntrVMax", kVst3, given + "</Parameters>z</Parameters>").state(),
      wrapped("VMax",
              "<a><Parameters><Set n=\"1\"><PARAM id=\"bypa\" value=\"0.0\"/><PARAM id=\"ceil\" value=\"-3.0\"/>"
              "<PARAM id=\"gain\" value=\"4\"/><PARAM id=\"rele\" value=\"0.0\"/></Set></Parameters>z</Parameters>"));
  for (const char* kept : {"</Parameters><Parameters><S>", "<Parameters></Parameters><S>", "<Parameters><S>"}) {
    EXPECT_EQ(vc2("AntrVMax", kVst3, kept).state(), wrapped("VMax", kept));
  }
  std::size_t rows = 0;
  for (const char* product : {"Warm", "VMax", "VChr", "VDbl", "Mutr", "VMrp", "Aspr", "Arti", "MicX", "HE41"}) {
    rows += antares_parameters("Antr" + std::string(product)).size();
  }
  EXPECT_EQ(rows, 207U);
  const std::string named = "<PARAM id=\"butC\" value=\"1\"/><PARAM id=\"sld1\"/><PARAM id=\"sld1\"/>";
  const std::string renamed =
      "<PARAM id=\"CSharpKey_ID\" value=\"1\"/><PARAM id=\"RetuneSpeed_ID\"/><PARAM id=\"sld1\"/>";
  EXPECT_EQ(vc2("AntrAPan", juce_id, named).state(), wrapped("APan", renamed));
  Plugin vst2 = vc2("AntrAPan", kVst2, named);
  vst2.block += "behind";
  vst2.insert.end += 6;
  vst2.insert.doc_len += 6;
  EXPECT_EQ(vst2.state(), "VC2!" + le(static_cast<std::uint32_t>(renamed.size())) + renamed + "\0behind"s);
}

TEST(Transforms, TemplateTakesThePlaceOfTheHead) {
  const auto entry = [](const std::string& tag, const std::string& data) {
    return tag + zeros(4) + le(static_cast<std::uint32_t>(data.size())) + zeros(4) + data;
  };
  std::vector<std::uint8_t> head(192, 'T'), trailer(8, 'E');
  const auto plugin = [&](const std::string& entries) {
    Plugin p(StateKind::kHxmc, "ABCDEFGH", kVst3, "Z" + std::string(32, 'h') + entries, 1);
    p.record.state_template = head;
    p.record.trailer = trailer;
    p.record.template_mode = true;
    return p;
  };
  const std::string chain = entry("RHCP", "ab") + entry("VGCP", "12345") + entry("DPCP", "end");  // 58 bytes
  std::string changed = chain;
  changed[18 + 16 + 1] = 0;
  EXPECT_EQ(plugin(chain).state(), le(66) + le(1) + "CMXH" + le(58) + changed + zeros(8));
  const std::string short_view = entry("RHCP", "") + entry("VGCP", "123") + entry("DPCP", "");
  EXPECT_EQ(plugin(short_view).state().substr(16), short_view + zeros(8));
  EXPECT_EQ(plugin(entry("RHCP", "ab") + entry("VGCP", "12345")).state(), "");
  EXPECT_EQ(plugin(entry("RHCQ", "ab") + entry("DPCP", "end")).state(), "");
  std::string long_chain;
  for (int i = 0; i < 15; ++i) long_chain += entry("RHCP", "");
  EXPECT_NE(plugin(long_chain + entry("DPCP", "")).state(), "");
  EXPECT_EQ(plugin(long_chain + entry("RHCP", "") + entry("DPCP", "")).state(), "") << "the 17th entry";

  const std::string at_116 = entry("RHCP", std::string(68, 'r')) + entry("DPCP", std::string(76, 'd') + "KEPT");
  std::string templated = le(188) + "TTTTTTTT" + le(188) + std::string(176, 'T') + "KEPT" + "EEEEEEEE";
  EXPECT_EQ(plugin(at_116).state(), templated);
  EXPECT_EQ(plugin(at_116.substr(0, at_116.size() - 4)).state(), "") << "nothing left of the document";
  Plugin off = plugin(at_116);
  off.record.template_mode = false;
  EXPECT_EQ(off.state(), off.block.substr(1));
  off.record.template_mode = true;
  off.insert.kind = StateKind::kXml;
  EXPECT_EQ(off.state(), "");
}

TEST(Transforms, Line6SectionsAreWalked) {
  const auto section = [](const std::string& name, const std::string& data, std::uint32_t claimed = ~0U) {
    return name + le(claimed == ~0U ? static_cast<std::uint32_t>(data.size()) : claimed) + zeros(16) + data;
  };
  const auto state = [](const std::string& sections) {
    return Plugin(StateKind::kNone, "Lin66SAX", kVst3, "Z..6SMC" + zeros(32) + sections, 0, 0).state();
  };
  const std::string dhsh = section("DHSH", ""), apsh = section("APSH", "");
  EXPECT_EQ(state(dhsh + section("LGSH", "\7ab") + apsh + zeros(30)),
            le(83) + le(1) + "CMS6" + le(75) + dhsh + section("LGSH", "\0ab"s) + apsh + zeros(8));
  EXPECT_EQ(state(dhsh + section("LGSH", "\7") + section("LGSH", "") + section("LGSH", "\7") + apsh).substr(16),
            dhsh + section("LGSH", "\7") + section("LGSH", "") + section("LGSH", "\0"s) + apsh + zeros(8));
  for (const std::string& wrong :
       {dhsh + section("LGSH", "") + apsh, dhsh + section("LGSH", "a"), apsh + section("LGSH", "a"),
        dhsh + section("LGSH", "a") + apsh + section("XXXX", "", 1),
        dhsh + section("lgsh", "a") + section("LGSH", "a") + apsh}) {
    EXPECT_EQ(state(wrong), "");
  }
  std::string many = dhsh + section("LGSH", "a");
  for (int i = 0; i < 29; ++i) many += section("XXXX", "");
  EXPECT_NE(state(many + apsh), "");
  EXPECT_EQ(state(many + section("XXXX", "") + apsh), "") << "the 33rd section";
}

TEST(ClapBuilds, ArePreferredWhereTheyTakeTheSettings) {
  Plugins plugins;
  const auto entry = [&](const char* file, const char* display) {
    ReaperPluginEntry e;
    e.file = file;
    e.display = display;
    e.clap_id = "id." + std::string(file);
    e.is_clap = true;
    plugins.cache.entries.push_back(e);
  };
  entry("a.clap", "Comp 2 (Maker)");
  entry("b.clap", "COMP-2 (maker)");
  entry("verb.clap", "Verb X");
  entry("two.clap", "First");
  entry("two.clap", "Second");
  Inserts inserts;
  const std::string image = "DOC";
  inserts.image = view_of(image);
  const auto plugin = [&](const char* signature, const char* display, const char* file, StateKind kind) {
    InsertRecord insert;
    insert.signature = signature;
    insert.end = 3;
    insert.doc_len = 3;
    insert.kind = kind;
    inserts.records.push_back(insert);
    KnowledgeRecord record;
    record.signature = signature;
    record.name = display;
    record.display_text = display;
    record.file = file;
    record.ident = kVst3;
    plugins.matched.add(record);
  };
  plugin("MAKEcomp", "VST3: Comp 2 (Maker)", "x.vst3", StateKind::kChunk);
  plugin("MAKEverb", "VST3: Verb", "/p/Ve rb.vst3", StateKind::kMeta);
  plugin("MAKEeq__", "VST3: Equal", "/p/VERB.vst3", StateKind::kChunk);
  plugin("MAKEtwo_", "VST3: Third", "two.vst3", StateKind::kChunk);
  plugin("MAKEnone", "Nothing", "", StateKind::kChunk);
  std::string console;
  {
    const TextCapture capture(console);
    prefer_clap_builds(plugins, inserts, {});
  }
  EXPECT_EQ(console,
            "    MAKEcomp -> CLAP: Comp 2 (Maker)                           [--prefer-clap]\n"
            "    MAKEeq__ -> CLAP: Verb X                                   [--prefer-clap]\n"
            "    MAKEverb stays on VST3: Verb: its settings cannot be carried to the CLAP build yet\n");
  EXPECT_EQ(plugins.clap_overrides, 2);
  EXPECT_EQ(plugins.clap_refusals, std::vector<std::string>{"VST3: Verb"});
  EXPECT_EQ(plugins.lookup("MAKEcomp")->ident, "id.a.clap");
  EXPECT_EQ(plugins.lookup("MAKEtwo_")->ident, kVst3);
}

TEST(Corpus, KeepsEachBlockOnce) {
  const test::TempFolder folder;
  const std::string path = folder.path().string(), image = "..block..";
  InsertRecord insert;
  insert.signature = "../A\\BCD";
  insert.start = 2;
  insert.end = 7;
  insert.kind = StateKind::kChunk;
  insert.doc_off = 3;
  insert.doc_len = 4;
  KnowledgeRecord record;
  record.name = "Plug";
  record.ident = "1{2}";
  for (int run = 0; run < 2; ++run) dump_corpus(path, "s/Song.ptx", insert, record, view_of("state"), view_of(image));
  dump_corpus(path, "s/Song.ptx", insert, record, {}, view_of(image));
  // FNV-1a of "block", and of "blockstate".
  EXPECT_EQ(read_head(path + "/...A.BCD.14e5faab9ce0e362.block", 100), "block");
  EXPECT_EQ(read_head(path + "/...A.BCD.76918aea633b0f07.chunk", 100), "state");
  EXPECT_EQ(read_head(path + "/index.tsv", 1000),
            "name\tsig\tproduct\tident\tkind\tblocklen\tdocoff\tdoclen\tchunklen\tsession\n"
            "/...A.BCD.76918aea633b0f07.\t../A\\BCD\tPlug\t1{2}\t13\t5\t1\t4\t5\ts/Song.ptx\n");
}

}  // namespace
}  // namespace frt
