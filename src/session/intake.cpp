#include "session/intake.h"

#include <algorithm>
#include <optional>

#include "base/file.h"
#include "base/text.h"
#include "ptf/decrypt.h"
#include "run/options.h"
#include "run/text_output.h"

namespace frt {
namespace {

constexpr std::int64_t kLowestRate = 44100, kHighestRate = 192000;

// ---- refusing ----

bool exists(const std::string& path, bool has_progress) {
  if (can_open(path)) return true;
  if (has_progress) {
    print_text(
        "\n  No such file:\n    %s\n\n  Not converted: the session file was not found. The file may have been moved, "
        "renamed or deleted, or its drive is not connected.\n",
        path.c_str());
  } else {
    print_text(
        "\n  No such file:\n    %s\n\n  If the name has spaces, put it in quotes:\n    ferrite \"My Song.ptx\"\n",
        path.c_str());
  }
  return false;
}

// Pro Tools 5 to 9, told by its name or, whatever it is called, by its encryption.
bool is_older_format(const std::string& path) {
  const std::string name = lower_ascii(path);
  if (name.size() > 4 && (name.ends_with(".ptf") || name.ends_with(".pts"))) return true;
  constexpr char kOlderFirst = 3, kOlderEncryption = 1;
  const std::string head = read_head(path, head_layout::kEncryption + 1);
  return head.size() == head_layout::kEncryption + 1 && head[head_layout::kFirst] == kOlderFirst &&
         head[head_layout::kEncryption] == kOlderEncryption;
}

void refuse_older_format(const std::string& path, bool has_progress) {
  print_text(
      "\n  Could not convert: %s\n"
      "  Reason: this is an OLDER Pro Tools session format (Pro Tools 5 - 9,\n"
      "          .pts or .ptf). This tool converts .ptx sessions (Pro Tools\n"
      "          10 and later) only. An older session is refused rather than\n"
      "          converted partly, because a partial mix would look finished.\n\n"
      "  To convert it: open the session in Pro Tools 10 or later, use\n"
      "  File > Save As to save it as a .ptx, and convert that file.\n",
      path.c_str());
  if (has_progress) {
    print_text(
        "\n  Not converted: this is an older Pro Tools session format (.pts or .ptf). Save the session as a .ptx from "
        "Pro Tools 10 or later, then convert that file.\n");
  }
}

void refuse_rate(const std::string& path, std::int64_t rate, bool has_progress) {
  const auto hz = static_cast<long long>(rate);
  print_text(
      "\n  Could not read: %s\n"
      "  Reason: this session is at %lld Hz, which is outside the range\n"
      "          this tool supports (44100 - 192000 Hz).\n\n"
      "  The file itself is fine -- it is the rate that is not handled.\n"
      "  Re-save the session from Pro Tools at a supported rate, or send\n"
      "  this text if you need %lld Hz supported.\n",
      path.c_str(), hz, hz);
  if (has_progress) {
    print_text("\n  Not converted: the session is at %lld Hz, outside the supported range (44100 - 192000 Hz).\n", hz);
  }
}

void refuse_empty(const std::string& path, bool has_progress) {
  print_text(
      "\n  Could not read: %s\n"
      "  Reason: the file is EMPTY (0 bytes). There is no session in it\n"
      "          to convert. If the session folder has a \"Session File\n"
      "          Backups\" folder, the newest .ptx in it may convert.\n",
      path.c_str());
  if (has_progress) {
    print_text("\n  Not converted: the session file is empty (0 bytes), so there is no session to convert.\n");
  }
}

// The header's own words, for whoever reads the report: from "ProTools" on, as far as it is readable.
std::string_view header_text(ByteView image) {
  constexpr std::string_view kWord = "ProTools";
  constexpr std::uint64_t kSearched = 4096, kLongest = 40;
  if (image.size() <= kWord.size()) return {};
  const std::uint64_t searched = std::min<std::uint64_t>(image.size(), kSearched);
  const std::size_t at = image.text(0, searched)->find(kWord);
  if (at == std::string_view::npos) return {};
  const std::string_view text = *image.text(at, std::min<std::uint64_t>(kLongest, image.size() - at));
  const auto* const end = std::find_if(text.begin(), text.end(), [](char c) { return c < 32 || c > 126; });
  return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

void diagnose(const std::string& path, int load_result, bool has_progress, Problem& problem) {
  const char* words = load_result_words(load_result);
  print_text("\n  Could not read: %s\n  Reason: that session %s.  (code %d)\n", path.c_str(), words, load_result);
  PTFFormat session;
  session.unxor(path);
  const ByteView image = session.image();
  if (image.size() == 0) {
    print_text("  Decryption: FAILED\n");
  } else {
    print_text("  Decryption: OK (%llu bytes)\n", static_cast<unsigned long long>(image.size()));
    print_text("  Version byte: %d\n", int{session.version()});
    if (const std::string_view text = header_text(image); !text.empty()) {
      print_text("  Header text: %.*s\n", static_cast<int>(text.size()), text.data());
    }
  }
  if (has_progress) {
    print_text("\n  kestrel will offer to send this as a problem report.\n");
  } else {
    print_text("\n  Please send this text and the .ptx file to %s.\n", kSupportAddress);
  }
  problem.set("unreadable", format_text("the session %s (code %d)", words, load_result));
}

}  // namespace

int load_session(PTFFormat& ptf, const std::string& path) {
  constexpr std::int64_t kUsualRate = 48000;
  int result = ptf.load(path, kUsualRate);
  if (result == ptf_result::kUnknownVersion) {
    PTFFormat::allow_unknown_version = true;
    result = ptf.load(path, kUsualRate);
  }
  const std::int64_t rate = ptf.session_rate();
  if (result == ptf_result::kLoaded && rate > 0 && rate != kUsualRate) result = ptf.load(path, rate);
  return result;
}

const char* load_result_words(int load_result) {
  switch (load_result) {
    case ptf_result::kNotDecrypted:
      return "could not be decrypted - is this really a Pro Tools session file?";
    case ptf_result::kNoVersion:
      return "has no readable version marker";
    case ptf_result::kUnknownVersion:
      return "is a Pro Tools version this tool does not understand";
    case ptf_result::kContentsUnread:
      return "was decrypted but the contents could not be parsed";
    default:
      return "could not be parsed";
  }
}

bool accept_session(const std::string& path, const PTFFormat& ptf, int load_result, bool has_progress,
                    Problem& problem) {
  if (!exists(path, has_progress)) return false;
  if (is_older_format(path)) {
    refuse_older_format(path, has_progress);
    return false;
  }
  if (load_result == ptf_result::kLoaded) return true;
  const std::int64_t rate = ptf.session_rate();
  if (rate > 0 && (rate < kLowestRate || rate > kHighestRate)) {
    refuse_rate(path, rate, has_progress);
  } else if (is_empty_file(path)) {
    refuse_empty(path, has_progress);
  } else {
    diagnose(path, load_result, has_progress, problem);
  }
  return false;
}

// ---- who saved it ----

namespace {

bool is_version(std::string_view text) {
  const auto digit = [](char c) { return c >= '0' && c <= '9'; };
  return !text.empty() && digit(text.front()) &&
         std::all_of(text.begin(), text.end(), [&](char c) { return c == '.' || digit(c); });
}

int number_before_dot(std::string_view version) {
  constexpr int kMost = 100000000;  // far above any year, far below where an int ends
  int value = 0;
  for (const char c : version.substr(0, version.find('.'))) value = std::min(kMost, value * 10 + (c - '0'));
  return value;
}

constexpr std::string_view kProduct = "Pro Tools";

// Sessions that name their maker in the header: two counted texts one behind the other, the product and its
// version. Anything may stand around them, so every position is tried as a count.
SavedBy scan_header(ByteView image) {
  constexpr std::uint64_t kSearched = 1024;
  constexpr std::uint32_t kLeast = 2, kMost = 64;
  const std::uint64_t limit = std::min<std::uint64_t>(image.size(), kSearched);
  SavedBy saved;
  for (std::uint64_t p = 0; p + 5 < limit;) {
    const std::string_view text = read_name(image, p, kLeast, kMost, limit);
    if (text.data() == nullptr) {
      ++p;
      continue;
    }
    if (!saved.product.empty()) {
      if (!is_version(text)) return {};
      saved.version = text;
      saved.version_major = number_before_dot(text);
      return saved;
    }
    if (text.size() > kProduct.size() && text.starts_with(kProduct)) {
      saved.product = text;
      p += 4 + text.size();
    } else {
      ++p;
    }
  }
  return saved;
}

// Block of content type 0x0003, in every session from Pro Tools 10.3 to 2024 that was seen; the header of none of
// them says who saved it
//   + 10  u32    n, then n bytes: the product
//   + 14 + n + 16  u32    m, then m bytes: the version
namespace product_layout {
constexpr std::uint16_t kType = 0x0003;
constexpr std::uint64_t kProductText = 10, kVersionText = 16;
constexpr std::uint32_t kLeast = 1, kMost = 64;
}  // namespace product_layout

SavedBy read_product_block(const SessionImage& image) {
  using namespace product_layout;
  for (const std::uint32_t index : image.of_type(kType)) {
    const FlatBlock& block = image.block(index);
    const std::uint64_t at = block.start + kProductText;
    SavedBy saved;
    saved.product = read_name(image.bytes(), at, kLeast, kMost, block.end());
    if (!saved.product.starts_with(kProduct)) continue;
    const std::uint64_t behind = at + 4 + saved.product.size();
    const std::string_view version = read_name(image.bytes(), behind + kVersionText, kLeast, kMost);
    if (is_version(version)) {
      saved.version = version;
      saved.version_major = number_before_dot(version);
    }
    return saved;
  }
  return {};
}

}  // namespace

SavedBy read_saved_by(const SessionImage& image) {
  const SavedBy saved = scan_header(image.bytes());
  return saved.product.empty() ? read_product_block(image) : saved;
}

// ---- damage ----

namespace {

bool marked(ByteView image, std::uint64_t p) {
  return image.u8_or(p, 0) == block_layout::kMark && image.u8_or(p + block_layout::kTypeHigh, 1) == 0;
}

// The end of the plausible block at p. Unlike the index's, it may stand in the image's last nine bytes.
std::optional<std::uint64_t> block_end(ByteView image, std::uint64_t p) {
  const std::uint32_t size = image.u32_or(p + block_layout::kSize, 0);
  if (!marked(image, p) || size == 0 || !image.has(p, std::uint64_t{7} + size)) return std::nullopt;
  return p + 7 + size;
}

}  // namespace

DamageResult measure_damage(const SessionImage& image) {
  DamageResult damage;
  const std::uint64_t size = image.size();
  if (size < 10) return damage;
  for (const FlatBlock& block : image.blocks()) damage.last_end = std::max(damage.last_end, block.end());
  if (damage.last_end != size) return damage;

  const ByteView bytes = image.bytes();
  std::uint64_t p = bytes.find(block_layout::kMark, 0, size - 9);
  while (p < size - 9 && !marked(bytes, p)) p = bytes.find(block_layout::kMark, p + 1, size - 9);
  while (const auto end = block_end(bytes, p)) p = *end;
  damage.walked = true;
  damage.break_pos = p;
  return damage;
}

void report_damage(const DamageResult& damage, std::uint64_t image_size, bool check_only) {
  const bool incomplete = damage.last_end != 0 && damage.last_end < image_size;
  const bool damaged = damage.walked && damage.break_pos < image_size;
  if (check_only) print_text("damage %s\n", incomplete ? "incomplete" : damaged ? "damaged" : "none");
  if (incomplete) {
    print_text(
        "  *** THIS SESSION FILE LOOKS INCOMPLETE ***\n"
        "      %llu byte(s) after the last complete block. The file was very\n"
        "      likely truncated in a copy or a sync. Tracks, clips and\n"
        "      automation may be MISSING from this conversion.\n"
        "      Re-copy the .ptx from the original and convert it again.\n",
        static_cast<unsigned long long>(image_size - damage.last_end));
  } else if (damaged) {
    print_text(
        "  *** THIS SESSION FILE IS DAMAGED ***\n"
        "      Its structure breaks at byte %llu, %.0f%% of the way in, as a bad\n"
        "      disk or a failed copy leaves it. Tracks, clips, mixer settings\n"
        "      and automation after that point may be MISSING or wrong in\n"
        "      this conversion. Convert a backup instead if you have one --\n"
        "      the newest .ptx in the session's \"Session File Backups\"\n"
        "      folder, or a copy from another drive.\n",
        static_cast<unsigned long long>(damage.break_pos),
        static_cast<double>(damage.break_pos) * 100.0 / static_cast<double>(image_size));
  }
}

}  // namespace frt
