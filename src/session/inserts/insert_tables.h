// The session's plug-in inserts as plain records.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/bytes.h"

namespace frt {

// One automated control of an insert.
struct AutomatedControl {
  std::string_view name = {};
  std::string_view label = {};                         // a second text, possibly empty
  std::uint32_t param_number = 0;                      // as the plug-in gave it to Pro Tools
  bool tick_based = false;                             // times of points are session ticks, else samples
  double initial_value = 0;                            // 0 to 1
  std::vector<std::pair<double, double>> points = {};  // time, value; in file order, values 0 to 1
};

// What of an insert's block holds its settings.
enum class StateKind : std::uint8_t {
  kNone = 0,
  kFabFilter = 1,  // "FFBS"
  kVc2 = 2,        // "VC2!"
  kXml = 3,        // "<?xml"
  kHxmc = 4,       // "HXMC"
  kControls = 5,   // a list of control values
  kMeta = 6,       // "/*@Meta"
  kBytes7 = 7,     // 8d 98 85 00
  kZlib = 8,
  kWaves = 9,       // "XPst"
  kIndexText = 10,  // "{ index = "
  kArchive = 11,    // "22 serialization::archive"
  kKontakt = 12,    // "hsin"
  kChunk = 13,      // found by what it looks like
};

// A second state, behind a control list.
struct SecondState {
  std::uint64_t offset = 0;  // in the image
  std::uint64_t length = 0;  // 0 for none
  std::string_view label;    // how it was found
  int copies = 1;            // 2 where it stands twice in a row
  int count = 0;             // chunks that could be it
};

struct InsertRecord {
  std::string signature = "........";  // maker code, then AAX code; bytes that are not printable as "."
  std::string_view product_text;
  std::string_view preset_name;
  // Of a Waves state; empty for others.
  std::string_view plugin_sub_comp, plugin_name;
  std::string active_setup;
  std::uint64_t start = 0, end = 0;          // the block in the image; the end without the zeros that fill it up
  std::int32_t channels = 1;                 // above 1 for a multi-mono instance
  std::uint64_t row_start = 0, row_end = 0;  // of the strip row around it, 0 for none
  StateKind kind = StateKind::kNone;
  std::uint64_t doc_off = 0, doc_len = 0;     // where the document stands in the image
  std::array<std::uint32_t, 4> doc_header{};  // words ahead of a zlib document
  std::string_view doc_label;                 // how it was found
  int doc_copies = 1;
  SecondState alt;
  std::vector<float> controls;  // the values of a control list
  std::int32_t key_id = -1;     // what feeds the key input, in the session's key buses; negative for none
  bool bypassed = false;        // switched off but kept active
  bool inactive = false;        // made inactive in Pro Tools
  std::vector<AutomatedControl> automated;
};

// By the strip's name: indices of its inserts in the list of records, in the order of its chain. Iterated in name
// order.
using StripInserts = std::map<std::string_view, std::vector<std::uint32_t>>;

// An insert of more than one channel: Pro Tools stores settings for each.
struct MultiMonoInsert {
  std::uint32_t insert = 0;  // index of its record
  std::string_view strip;    // empty where no strip took it
};

// A hardware insert's slot.
struct HardwareInsert {
  std::string_view track;
  std::string_view slot;
};

struct Inserts {
  ByteView image;                     // that the records' positions count in
  std::vector<InsertRecord> records;  // by start
  StripInserts strips;
  std::map<std::string, std::string_view, std::less<>> plugin_names;  // as the session calls them, by 8-character key
  std::vector<MultiMonoInsert> multi_mono;
  std::vector<HardwareInsert> hardware;
};

}  // namespace frt
