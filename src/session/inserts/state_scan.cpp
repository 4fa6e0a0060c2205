#include "session/inserts/state_scan.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/byte_order.h"
#include "base/byte_scan.h"
#include "session/inserts/aax_chunks.h"
#include "session/inserts/braces.h"
#include "session/inserts/state_guess.h"

namespace frt {
namespace {

constexpr std::uint8_t both(bool first, bool second) {
  return static_cast<std::uint8_t>(static_cast<std::uint8_t>(first) & static_cast<std::uint8_t>(second));
}

// ---- marks ----

constexpr std::string_view kIndexText = "{\n\tindex = ";
constexpr std::string_view kMeta = "/*@Meta";
constexpr std::string_view kBytes7("\x8d\x98\x85\x00", 4);
constexpr std::string_view kArchive = "22 serialization::archive";
constexpr std::string_view kWavesTree = "<PresetChunkXMLTree";

// The first two bytes of each mark.
std::uint8_t begins_mark(const ScanWindow<1>& w, std::size_t i) {
  const std::uint8_t a = w[i], b = w[i + 1];
  const auto is = [a, b](std::uint8_t first, std::uint8_t second) { return both(a == first, b == second); };
  return static_cast<std::uint8_t>(is('F', 'F') | is('V', 'C') | is('/', '*') | is('{', '\n') | is(0x8d, 0x98) |
                                   is('x', 0x01) | is('x', 0x5e) | is('x', 0x9c) | is('x', 0xda) | is('h', 's') |
                                   is('2', '2') | is('H', 'X') | is('<', '?') | is('X', 'P'));
}

class MarkScan {
 public:
  // `bytes` end where the insert does.
  MarkScan(ByteView bytes, InsertRecord& insert) : bytes_(bytes), start_(insert.start), insert_(insert) {}

  void run() {
    constexpr std::uint64_t kShortest = 4;
    if (end() < start_ + kShortest) return;
    each_position<1>(bytes_, start_, end() - kShortest + 1, begins_mark,
                     [this](std::uint64_t p) { return !ends_at(p); });
  }

 private:
  std::uint64_t end() const { return bytes_.size(); }
  std::uint64_t word(std::uint64_t at) const { return bytes_.u32_or(at, 0); }
  std::string_view from(std::uint64_t at) const { return bytes_.text(at, end() - at).value_or(""); }

  bool found(StateKind kind, std::uint64_t offset, std::uint64_t length) {
    insert_.kind = kind;
    insert_.doc_off = offset;
    insert_.doc_len = length;
    return true;
  }

  // True where the search is over, with a kind or without.
  bool ends_at(std::uint64_t p) {
    if (bytes_.equals(p, "FFBS")) return fabfilter(p);
    if (bytes_.equals(p, "VC2!")) {
      const std::uint64_t length = bytes_.has(p, 8) ? word(p + 4) + 9 : 9;
      return found(StateKind::kVc2, p, std::min(length, end() - p));
    }
    if (bytes_.equals(p, kMeta)) return found(StateKind::kMeta, p, end() - p);
    if (bytes_.equals(p, kIndexText)) return index_text(p);
    if (bytes_.equals(p, kBytes7)) {
      if (bytes_.has(p, 12) && bytes_.has(p, word(p + 8) + 12)) found(StateKind::kBytes7, p, word(p + 8) + 12);
      return true;
    }
    if (*bytes_.u8(p) == 'x') return p >= start_ + 7 && zlib(p);
    if (bytes_.equals(p, "hsin")) return kontakt(p);
    if (bytes_.equals(p, kArchive)) return archive(p);
    if (bytes_.equals(p, "HXMC")) return found(StateKind::kHxmc, p + 4, end() - p - 4);
    if (bytes_.equals(p, "<?xml")) {
      const std::size_t used = from(p).find_last_not_of('\0') + 1;
      return found(StateKind::kXml, p, std::min(used + 1, from(p).size()));  // with the zero that closes it
    }
    return bytes_.equals(p, "XPst") && waves(p);
  }

  // Behind the last end mark stand 8 bytes.
  bool fabfilter(std::uint64_t p) {
    constexpr std::uint64_t kEndMark = 4, kBehind = 8;
    std::uint64_t length = end() - p;
    const std::size_t last = from(p).rfind("FFEx");
    if (last != std::string_view::npos && length - last >= kEndMark + kBehind) length = last + kEndMark + kBehind;
    return found(StateKind::kFabFilter, p, length);
  }

  bool index_text(std::uint64_t p) {
    if (!braces_) braces_.emplace(bytes_, p, end());
    const auto close = braces_->closing(p);
    return close && found(StateKind::kIndexText, p, *close + 1 - p);
  }

  // Two lengths stand ahead: of the data as it was, and, 4 bytes before that, of these words and the data as it is.
  bool zlib(std::uint64_t p) {
    if (p < 16) return true;
    const std::uint64_t length = word(p - 8);
    if (word(p - 4) < 64 || length < 12 || !bytes_.has(p - 4, length)) return true;
    for (std::size_t i = 0; i < insert_.doc_header.size(); ++i) {
      insert_.doc_header[i] = static_cast<std::uint32_t>(word(p - 16 + 4 * i));
    }
    return found(StateKind::kZlib, p, length - 4);
  }

  bool kontakt(std::uint64_t p) {
    if (p < start_ + 12) return false;
    const std::uint64_t length = word(p - 12);
    if (length < 76 || !bytes_.has(p - 12, length) || word(p - 8) != 0 || word(p - 4) != 1) return false;
    return found(StateKind::kKontakt, p, length - 12);
  }

  // It stands twice, each with its length ahead.
  bool archive(std::uint64_t p) {
    if (p < start_ + 4) return false;
    const std::uint64_t length = word(p - 4);
    if (length < 64 || !bytes_.equals(p + length + 4, kArchive)) return false;
    return found(StateKind::kArchive, p, length);
  }

  bool waves(std::uint64_t p) {
    constexpr std::uint64_t kBefore = 20, kLeast = 24, kMark = 4, kLeastBehind = 23;
    if (p < start_ + kBefore) return false;
    const auto chunk = u32_big(bytes_, p - kBefore);
    if (!chunk || *chunk < kLeast || !bytes_.has(p - kBefore, *chunk)) return false;
    const std::uint64_t chunk_end = p - kBefore + *chunk;
    if (chunk_end < p + kMark + kLeastBehind) return false;
    // Marks come by position, so each tree is looked for from the last one on.
    if (tree_ < p + kMark) tree_ = p + kMark + std::min(from(p + kMark).find(kWavesTree), from(p + kMark).size());
    if (tree_ + kWavesTree.size() > chunk_end) return false;
    const std::string_view document = from(tree_).substr(0, chunk_end - tree_);
    insert_.plugin_sub_comp = element(document, "PluginSubComp");
    insert_.plugin_name = element(document, "PluginName");
    const std::string_view setup = element(document, "ActiveSetup");
    const bool named = setup.size() >= 7 && setup.starts_with("SETUP_") && setup[6] >= 'A' && setup[6] <= 'Z';
    insert_.active_setup = std::string("set") + (named ? setup[6] : 'A');
    // Without its component nothing tells which of the shell's plug-ins it is.
    if (insert_.plugin_sub_comp.size() == 4) found(StateKind::kWaves, tree_, document.size());
    return true;
  }

  static std::string_view element(std::string_view document, const std::string& name) {
    const std::string open = "<" + name + ">";
    const std::size_t begin = document.find(open);
    if (begin == document.npos) return {};
    const std::string_view text = document.substr(begin + open.size());
    const std::size_t length = text.find("</" + name + ">");
    return length == text.npos ? std::string_view() : text.substr(0, length);
  }

  ByteView bytes_;
  std::uint64_t start_;
  InsertRecord& insert_;
  std::optional<BraceIndex> braces_;  // of the block from its first "{ index = " on
  std::uint64_t tree_ = 0;            // of the first Waves document behind the last mark, or the end
};

// ---- control lists ----

// "l_" or "d_" at q, then at q + stride the value: i32 or double, big-endian; the next item follows the value.
constexpr std::uint64_t kLastListStart = 81;  // from the insert's mark
constexpr double kTooLarge = 1e30;

bool begins_item(ByteView bytes, std::uint64_t q) { return bytes.equals(q, "l_") || bytes.equals(q, "d_"); }

std::vector<float> read_list(ByteView bytes, std::uint64_t q, std::uint64_t stride) {
  std::vector<float> list;
  while (begins_item(bytes, q)) {
    if (*bytes.u8(q) == 'l') {
      const auto value = u32_big(bytes, q + stride);
      if (!value) break;
      list.push_back(static_cast<float>(static_cast<std::int32_t>(*value)));
      q += stride + 4;
    } else {
      const auto value = f64_big(bytes, q + stride);
      if (!value) break;
      if (!(std::fabs(*value) < kTooLarge)) return {};
      list.push_back(static_cast<float>(*value));
      q += stride + 8;
    }
  }
  return list;
}

void scan_controls(ByteView bytes, InsertRecord& insert) {
  std::uint64_t first = insert.start;
  while (first <= insert.start + kLastListStart && !begins_item(bytes, first)) ++first;
  if (first > insert.start + kLastListStart) return;
  std::vector<float> longest;
  for (const std::uint64_t stride : {4U, 8U, 12U, 16U}) {
    std::vector<float> list = read_list(bytes, first, stride);
    if (list.size() > longest.size()) longest = std::move(list);
  }
  if (longest.empty()) return;
  insert.kind = StateKind::kControls;
  insert.doc_off = first;
  insert.controls = std::move(longest);
  if (const auto second = state_behind_controls(bytes, insert.start)) {
    insert.alt = {second->chunk.data(), second->chunk.data_length(), kChunkBehindControls, 1, second->count};
  }
}

// ---- the preset's name ----

std::string_view preset_name(ByteView bytes, std::uint64_t start) {
  constexpr std::uint64_t kLeastLeft = 16;
  constexpr std::size_t kMostName = 60;
  const auto begins = [](const ScanWindow<1>& w, std::size_t i) {
    return static_cast<std::uint8_t>(both(w[i] == 'F', w[i + 1] == 'F') | both(w[i] == 'i', w[i + 1] == 'k'));
  };
  std::optional<std::uint64_t> marker;
  each_position<1>(bytes, start, bytes.size(), begins, [&](std::uint64_t p) {
    if (bytes.has(p, kLeastLeft) && (bytes.equals(p, "FFPr") || bytes.equals(p, "ikdt"))) marker = p;
    return !marker;
  });
  if (!marker) return {};
  const std::string_view rest = bytes.text(*marker, bytes.size() - *marker).value_or("");
  const std::size_t zeros = rest.find(std::string_view("\0\0", 2));
  const std::size_t begin = rest.find_first_not_of('\0', zeros);
  if (zeros == rest.npos || begin == rest.npos) return {};
  const std::string_view name = rest.substr(begin, kMostName);
  const auto name_end = std::find_if(name.begin(), name.end(), [](char c) { return c < 32 || c > 126; });
  const auto length = static_cast<std::size_t>(name_end - name.begin());
  return length < 2 ? std::string_view() : name.substr(0, length);
}

}  // namespace

void scan_state(ByteView image, InsertRecord& insert) {
  const ByteView bytes = image.clamped(0, insert.end);
  MarkScan(bytes, insert).run();
  if (insert.kind == StateKind::kNone) scan_controls(bytes, insert);
  if (insert.kind == StateKind::kNone) {
    if (const auto guess = guess_state(bytes, insert.start)) {
      insert.kind = StateKind::kChunk;
      insert.doc_off = guess->offset;
      insert.doc_len = guess->length;
      insert.doc_label = guess->label;
      insert.doc_copies = guess->copies;
    }
  }
  insert.preset_name = preset_name(bytes, insert.start);
}

}  // namespace frt
