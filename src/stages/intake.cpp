#include "stages/intake.h"

#include <algorithm>

#include "base/file.h"
#include "base/text.h"
#include "image/damage.h"
#include "ptf/decrypt.h"
#include "run/options.h"
#include "run/text_output.h"

namespace frt {
namespace {

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
  if (rate > 0 && (!is_session_rate(rate))) {
    refuse_rate(path, rate, has_progress);
  } else if (is_empty_file(path)) {
    refuse_empty(path, has_progress);
  } else {
    diagnose(path, load_result, has_progress, problem);
  }
  return false;
}

void report_damage(const Damage& damage, bool check_only) {
  if (check_only) print_text("damage %s\n", damage.incomplete() ? "incomplete" : damage.broken() ? "damaged" : "none");
  if (damage.incomplete()) {
    print_text(
        "  *** THIS SESSION FILE LOOKS INCOMPLETE ***\n"
        "      %llu byte(s) after the last complete block. The file was very\n"
        "      likely truncated in a copy or a sync. Tracks, clips and\n"
        "      automation may be MISSING from this conversion.\n"
        "      Re-copy the .ptx from the original and convert it again.\n",
        static_cast<unsigned long long>(damage.image_size - damage.last_end));
  } else if (damage.broken()) {
    print_text(
        "  *** THIS SESSION FILE IS DAMAGED ***\n"
        "      Its structure breaks at byte %llu, %.0f%% of the way in, as a bad\n"
        "      disk or a failed copy leaves it. Tracks, clips, mixer settings\n"
        "      and automation after that point may be MISSING or wrong in\n"
        "      this conversion. Convert a backup instead if you have one --\n"
        "      the newest .ptx in the session's \"Session File Backups\"\n"
        "      folder, or a copy from another drive.\n",
        static_cast<unsigned long long>(damage.break_pos),
        static_cast<double>(damage.break_pos) * 100.0 / static_cast<double>(damage.image_size));
  }
}

}  // namespace frt
