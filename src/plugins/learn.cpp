#include "plugins/learn.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "base/base64.h"
#include "base/bytes.h"
#include "base/file.h"
#include "base/text.h"
#include "plugins/learned_list.h"
#include "plugins/side_text.h"
#include "run/text_output.h"

namespace frt {
namespace {

constexpr std::size_t kLineLimit = 8192;
constexpr std::string_view kVst = "<VST ";

// The next line that isn't blank, without the blanks ahead of it.
std::optional<std::string_view> next_line(LineReader& lines) {
  while (const auto line = lines.next()) {
    const std::size_t first = line->find_first_not_of(" \t");
    if (first != line->npos) return line->substr(first);
  }
  return std::nullopt;
}

// Words between blanks, or between double quotes.
std::string_view take_token(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  const bool quoted = text.starts_with('"');
  if (quoted) text.remove_prefix(1);
  const std::size_t end = std::min(text.find(quoted ? '"' : ' '), text.size());
  const std::string_view token = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return token;
}

// ---- the plug-in's block in a chain: its line, then Base64 to the ">" ----

struct ChainBlock {
  std::string_view display_text, file, ident;
  std::vector<std::string_view> body;
};

ChainBlock read_block(std::string_view vst_line, LineReader& lines) {
  ChainBlock block;
  std::string_view rest = vst_line.substr(kVst.size());
  block.display_text = take_token(rest);
  block.file = take_token(rest);
  take_token(rest);  // a flag
  take_token(rest);  // the name that the user gave
  block.ident = take_token(rest);
  while (const auto line = next_line(lines)) {
    if (!block.body.empty() && (line->front() == '>' || line->front() == '<')) break;
    block.body.push_back(*line);
  }
  return block;
}

// ---- the state's header: the first line, or with many pins several ----

constexpr std::uint64_t kMagic = 4;   // u32
constexpr std::uint64_t kInputs = 8;  // u32, then a mask for each input; u32 outputs, then their masks; behind these:
constexpr std::uint64_t kChunkSize = 0, kOne = 4, kTailWord = 8, kChunk = 12;  // u32 each
constexpr std::uint32_t kMagicWord = 0xFEED5EEE, kOtherMagicWord = 0xFEED5EEF;
constexpr std::uint32_t kMostPins = 64, kLargestChunk = 0x1000000;

struct Pins {
  std::uint32_t in = 2, out = 2, tail_word = 0, chunk_size = 0;
  std::optional<std::uint64_t> chunk;  // where the state begins; nothing if the header could not be read
};

// What is read of the header with masks of that size. `needed` grows to the bytes that the layout asks for so far.
std::optional<Pins> read_pins(ByteView header, std::uint64_t mask_size, std::uint64_t& needed) {
  const auto is_count = [](std::optional<std::uint32_t> n) { return n && *n >= 1 && *n <= kMostPins; };
  const auto word = [&](std::uint64_t at) {
    needed = at + 4;
    return header.u32(at);
  };
  const auto in = word(kInputs);
  if (!is_count(in)) return std::nullopt;
  const auto out = word(kInputs + 4 + *in * mask_size);
  if (!is_count(out)) return std::nullopt;
  const std::uint64_t tail = kInputs + 8 + (*in + *out) * mask_size;
  const auto chunk_size = word(tail + kChunkSize);
  if (chunk_size && *chunk_size > kLargestChunk) return std::nullopt;
  const auto one = word(tail + kOne);
  const bool may_be_zero = header.u32(kMagic) == kOtherMagicWord;
  if (one && *one != 1 && !(may_be_zero && *one == 0)) return std::nullopt;
  const auto tail_word = word(tail + kTailWord);
  if (!tail_word) return std::nullopt;
  return Pins{*in, *out, *tail_word, *chunk_size, tail + kChunk};
}

struct Header {
  std::size_t size = 0;
  std::optional<std::uint32_t> magic;
  Pins pins;

  bool good() const { return magic == kMagicWord || magic == kOtherMagicWord; }
};

Header read_header(const std::vector<std::string_view>& body) {
  constexpr std::size_t kFullLine = 128;  // where REAPER breaks the Base64 of a long header
  Header header;
  if (body.empty()) return header;
  Base64Decoder decoder;
  decoder.add(body.front());
  header.magic = decoder.view().u32(kMagic);
  std::size_t lines = body.front().size() == kFullLine ? 1 : body.size();
  for (const std::uint64_t mask_size : {8U, 4U}) {
    std::uint64_t needed = 0;
    std::optional<Pins> pins;
    do {
      while (lines < body.size() && decoder.bytes().size() < needed) decoder.add(body[lines++]);
      pins = read_pins(decoder.view(), mask_size, needed);
    } while (!pins && decoder.bytes().size() < needed && lines < body.size());
    if (!pins) continue;
    header.pins = *pins;
    break;
  }
  header.size = decoder.bytes().size();
  return header;
}

// ---- what is told and written ----

void print_learned(const std::string& chain_path, const ChainBlock& block, const Header& header) {
  print_text("\n  learned from %s\n", chain_path.c_str());
  print_text("    display  %s\n    file     %s\n    ident    %s\n", std::string(block.display_text).c_str(),
             std::string(block.file).c_str(), std::string(block.ident).c_str());
  const Pins& pins = header.pins;
  if (pins.chunk) {
    print_text("    pins     %u in, %u out    tail word %u    chunk %u bytes\n", pins.in, pins.out, pins.tail_word,
               pins.chunk_size);
  } else {
    print_text(
        "    pins     could not be read from this header variant (%08X,\n"
        "             %u bytes) - written as stereo 2 in / 2 out. If this\n"
        "             plug-in then loads with wrong routing, send this\n"
        "             .RfxChain file.\n",
        *header.magic, static_cast<unsigned>(header.size));
  }
}

// True for a state in FabFilter's own container.
bool is_known_container(const ChainBlock& block, const Header& header) {
  if (!header.pins.chunk) return false;
  Base64Decoder state;
  for (const std::string_view line : block.body) state.add(line);
  return state.view().equals(*header.pins.chunk, "FabF");
}

int refuse(const char* format, const std::string& path) {
  print_text(format, path.c_str());
  return 1;
}

}  // namespace

int learn_plugin(const std::string& chain_path, const std::string& signature, const std::string& program_path) {
  const auto file = read_side_file(chain_path);
  if (!file) return refuse("  cannot open %s\n", chain_path);
  LineReader lines(text_of(*file), kLineLimit);
  auto line = next_line(lines);
  while (line && !line->starts_with(kVst)) line = next_line(lines);
  if (!line) return refuse("  %s does not look like an .RfxChain\n", chain_path);

  const ChainBlock block = read_block(*line, lines);
  if (block.display_text.empty() || block.ident.empty()) {
    print_text("  could not read the <VST line\n");
    return 1;
  }
  const Header header = read_header(block.body);
  if (!header.good()) {
    print_text("  header magic is %08X, expected FEED5EEE/FEED5EEF - is this one plug-in?\n", header.magic.value_or(0));
    return 1;
  }
  const bool known = is_known_container(block, header);
  print_learned(chain_path, block, header);

  const std::string list = learned_list_path(program_path);
  const std::string row =
      format_text("%s | %s | %s | %s | %u | %u | %u%s\n", signature.c_str(), std::string(block.display_text).c_str(),
                  std::string(block.file).c_str(), std::string(block.ident).c_str(), header.pins.in, header.pins.out,
                  header.pins.tail_word, known ? " | Default Setting" : "");
  if (!append_to_file(list, row)) return refuse("  cannot write %s\n", list);
  print_text("\n  appended to %s\n", list.c_str());
  print_text(
      "  The IDENTITY is now known: this plug-in will be inserted in the\n"
      "  right slot, in the right order, with its bypass state.\n");
  print_text(known ? "  Its REAPER state uses a container this build can write, so its\n"
                     "  Pro Tools SETTINGS will transfer too, not just the identity.\n"
                   : "  Its REAPER state does NOT use a container this build can synthesise,\n"
                     "  so SETTINGS will not transfer: it goes in offline and labeled\n"
                     "  rather than loading with values that would silently be wrong.\n");
  return 0;
}

}  // namespace frt
