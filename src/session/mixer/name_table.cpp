#include "session/mixer/name_table.h"

#include <algorithm>
#include <array>
#include <deque>
#include <string>

#include "base/byte_scan.h"
#include "base/text_index.h"
#include "image/counted_texts.h"

namespace frt {

std::vector<std::string_view> read_name_table(const SessionImage& image,
                                              const std::vector<std::string_view>& known_names) {
  constexpr std::uint64_t kScanned = 400000;  // bytes
  constexpr std::uint64_t kGap = 40;          // bytes between two names of the table
  const ByteView head = image.bytes().clamped(0, kScanned);
  TextIndex known, table;
  for (const std::string_view name : known_names) known.insert(name);
  if (known.empty()) return {};
  std::uint64_t end = 0;
  each_counted_text<2, 64>(head, 0, head.size(), [&](std::uint64_t p, std::string_view text) {
    if (!table.empty() && p < end) return true;
    if (looks_like_path(text)) return true;
    if (table.empty() && !known.contains(text)) return true;
    if (!table.empty() && p > end + kGap) return false;
    end = p + 4 + text.size();
    table.insert(text);
    return true;
  });
  return table.texts();
}

namespace {

constexpr std::uint8_t kLeastBusName = 3, kMostBusName = 40;
constexpr std::string_view kNumberedBus = "Bus ";

// Bytes that a bus name can hold: those of text_ok, without the dot that begins a side and without what makes a path.
constexpr std::array<bool, 256> kBusNameByte = [] {
  std::array<bool, 256> table{};
  for (std::size_t c = 0; c < 256; ++c) {
    const bool text = (c >= 32 && c <= 126) || (c >= 0x80 && c <= 0xBF) || (c >= 0xC2 && c <= 0xF4);
    table[c] = text && c != '.' && c != ':' && c != '\\' && c != '/';
  }
  return table;
}();

bool bus_name_byte(char c) { return kBusNameByte[static_cast<std::uint8_t>(c)]; }

// The two numbers of "Bus 1-2" as the bus names "Bus 1" and "Bus 2" have them; false for any other name.
bool numbered_pair(std::string_view name, std::string_view& first, std::string_view& second) {
  if (name.size() < 7 || !name.starts_with(kNumberedBus)) return false;
  const std::string_view numbers = name.substr(kNumberedBus.size());
  const std::size_t dash = numbers.find('-');
  if (dash == numbers.npos) return false;
  first = numbers.substr(0, dash);
  second = numbers.substr(dash + 1);
  const auto all_digits = [](std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == text.npos;
  };
  return all_digits(first) && all_digits(second);
}

// Where names and sides of names can stand: found in one pass, as the rest needs all of them at once. Positions are 32
// bits wide, and growing doesn't copy, because fresh memory costs more here than the search.
struct Candidates {
  std::deque<std::uint32_t> texts;  // positions of counted texts of a bus name's length
  std::deque<std::uint32_t> sides;  // positions of the dot of ".L" and ".R"
};

// The counted text at p if it could name a bus; else empty.
std::string_view bus_text_at(ByteView bytes, std::uint64_t p) {
  const std::string_view text = bytes.text(p + 4, bytes.u8_or(p, 0)).value_or("");
  return std::all_of(text.begin(), text.end(), bus_name_byte) ? text : std::string_view();
}

Candidates find_candidates(ByteView bytes) {
  const auto is_either = [](const ScanWindow<6>& w, std::size_t i) {
    const auto equal = [](std::uint8_t a, std::uint8_t b) { return static_cast<std::uint8_t>(a == b); };
    return static_cast<std::uint8_t>(begins_counted_text<kLeastBusName, kMostBusName>(w, i) |
                                     (equal(w[i], '.') & (equal(w[i + 1], 'L') | equal(w[i + 1], 'R'))));
  };
  Candidates found;
  each_position<6>(bytes, 0, bytes.size(), is_either, [&](std::uint64_t p) {
    // A count of 46 is a dot too, but no count of a bus name.
    if (bytes.u8(p) == std::uint8_t{'.'}) {
      found.sides.push_back(static_cast<std::uint32_t>(p));
    } else if (!bus_text_at(bytes, p).empty()) {
      found.texts.push_back(static_cast<std::uint32_t>(p));
    }
    return true;
  });
  return found;
}

// Calls take(hash, text, side) for each text of a bus name's length that ends right before one of the dots, shorter
// ones first; side is 1 for ".L" and 2 for ".R". No bus name holds a dot, so all walks together pass each byte once.
template <typename Take>
void each_text_before(ByteView bytes, const std::deque<std::uint32_t>& dots, Take take) {
  for (const std::uint32_t dot : dots) {
    const std::uint8_t side = bytes.u8(std::uint64_t{dot} + 1) == std::uint8_t{'L'} ? 1 : 2;
    const std::uint64_t reach = std::min<std::uint64_t>(dot, kMostBusName);
    const std::string_view before = bytes.text(dot - reach, reach).value_or("");
    TextHash hash;
    for (std::size_t length = 1; length <= before.size(); ++length) {
      const char c = before[before.size() - length];
      if (!bus_name_byte(c)) break;
      hash.add(c);
      if (length >= kLeastBusName) take(hash, before.substr(before.size() - length), side);
    }
  }
}

// Tells from a text's hash whether the text can stand before both sides. A session holds tens of thousands of names
// and few buses: this keeps nearly all names out of the table of names.
class BothSides {
 public:
  BothSides(ByteView bytes, const std::deque<std::uint32_t>& dots) {
    std::size_t places = 1 << 14;
    while (places < dots.size() * 32 && places < (1 << 22)) places *= 2;
    sides_.resize(places / kPlacesInByte);
    each_text_before(bytes, dots, [this](TextHash hash, std::string_view, std::uint8_t side) {
      const Place place = place_of(hash);
      sides_[place.byte] = static_cast<std::uint8_t>(sides_[place.byte] | side << place.shift);
    });
  }
  bool possible(TextHash hash) const {
    const Place place = place_of(hash);
    return (sides_[place.byte] >> place.shift & 3) == 3;
  }

 private:
  static constexpr std::size_t kPlacesInByte = 4;  // of two bits each
  struct Place {
    std::size_t byte;
    unsigned shift;
  };
  Place place_of(TextHash hash) const {
    const std::uint64_t mixed = hash.mixed();
    return {static_cast<std::size_t>(mixed >> 2) & (sides_.size() - 1), static_cast<unsigned>(mixed & 3) * 2};
  }

  std::vector<std::uint8_t> sides_;
};

}  // namespace

std::vector<std::string_view> read_bus_names(const SessionImage& image) {
  const ByteView bytes = image.bytes().clamped(0, UINT32_MAX);
  const Candidates candidates = find_candidates(bytes);
  const BothSides both_sides(bytes, candidates.sides);
  TextIndex names(TextIndex::Side::kLastByte);
  bool any_sided = false;
  for (const std::uint32_t p : candidates.texts) {
    const std::string_view text = bus_text_at(bytes, p);
    const bool numbered = text.starts_with(kNumberedBus);
    if ((numbered || both_sides.possible(names.hash_of(text))) && !looks_like_path(text)) {
      names.insert(text);
      any_sided = any_sided || !numbered;
    }
  }
  std::vector<std::uint8_t> sides(names.size(), 0);
  if (any_sided) {
    each_text_before(bytes, candidates.sides, [&](TextHash hash, std::string_view text, std::uint8_t side) {
      if (const auto name = names.find(text, hash)) sides[*name] |= side;
    });
  }
  std::vector<std::string_view> buses;
  const auto bus_named = [&names](std::string_view number) {
    return names.contains(std::string(kNumberedBus).append(number));
  };
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::string_view name = names.texts()[i];
    std::string_view first, second;
    const bool is_bus = name.starts_with(kNumberedBus)
                            ? numbered_pair(name, first, second) && bus_named(first) && bus_named(second)
                            : sides[i] == 3;
    if (is_bus) buses.push_back(name);
  }
  std::sort(buses.begin(), buses.end());
  return buses;
}

}  // namespace frt
