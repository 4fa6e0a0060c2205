#include "plugins/identity.h"

#include <algorithm>

#include "base/text.h"
#include "plugins/plugin_names.h"

namespace frt {
namespace {

constexpr std::size_t kClassIdDigits = 32;

int hex_value(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

std::uint32_t code_at(const ClassIdBytes& id, std::size_t at) {
  return std::uint32_t{id[at]} << 24 | std::uint32_t{id[at + 1]} << 16 | std::uint32_t{id[at + 2]} << 8 | id[at + 3];
}

// Of a class id in the form of VST2 plug-ins that became VST3: "VST", the VST2's code, part of the name.
constexpr std::size_t kCodeInId = 3;
constexpr std::size_t kCodeAtEnd = 12;

bool has_class_id(const ReaperPluginEntry& entry) { return entry.class_id.size() == kClassIdDigits; }

template <typename Map, typename Key>
std::optional<std::size_t> entry_of(const Map& map, const Key& key) {
  const auto there = map.find(key);
  return there == map.end() ? std::nullopt : std::optional(there->second);
}

}  // namespace

std::optional<ClassIdBytes> decoded(std::string_view class_id) {
  if (class_id.size() != kClassIdDigits) return std::nullopt;
  ClassIdBytes bytes{};
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const int high = hex_value(class_id[2 * i]), low = hex_value(class_id[2 * i + 1]);
    if (high < 0 || low < 0) return std::nullopt;
    bytes[i] = static_cast<std::uint8_t>(high * 16 + low);
  }
  return bytes;
}

std::optional<std::uint32_t> four_character_code(std::string_view code) {
  if (code.size() != 4) return std::nullopt;
  std::uint32_t number = 0;
  for (const char c : code) number = number << 8 | static_cast<std::uint8_t>(c);
  return number;
}

IdentityIndex::IdentityIndex(const ReaperPluginCache& cache) : cache_(cache) {
  bare_names_.reserve(cache.entries.size());
  for (std::size_t i = 0; i < cache.entries.size(); ++i) add(i);
}

void IdentityIndex::add(std::size_t index) {
  const ReaperPluginEntry& entry = cache_.entries[index];
  const std::string name = alnum_lower(bare_name(entry.display));
  names_.try_emplace(alnum_lower(entry.short_name), index);
  names_.try_emplace(name, index);
  add_stored_name(index, name);
  bare_names_.push_back(name);

  if (!entry.is_clap && entry.class_id.empty()) vst2_ids_.try_emplace(entry.uid, index);
  if (entry.is_vst3 && has_class_id(entry)) stems_.try_emplace(file_stem(entry.file), index);
  const auto id = decoded(entry.class_id);
  if (!id) return;
  if (std::equal(id->begin(), id->begin() + kCodeInId, "VST")) compatible_.try_emplace(code_at(*id, kCodeInId), index);
  if (!entry.is_vst3) return;
  id_ends_.try_emplace(code_at(*id, kCodeAtEnd), index);
  for (std::size_t at = 0; at <= kCodeAtEnd; ++at) {
    std::vector<std::size_t>& entries = inside_[code_at(*id, at)];
    if (entries.empty() || entries.back() != index) entries.push_back(index);
  }
}

void IdentityIndex::add_stored_name(std::size_t index, const std::string& name) {
  const ReaperPluginEntry& entry = cache_.entries[index];
  const auto [there, is_new] = stored_names_.try_emplace(name);
  StoredName& stored = there->second;
  if (is_new) {
    stored = {index, maker_of(entry.display), false};
    return;
  }
  const ReaperPluginEntry& best = cache_.entries[stored.best];
  stored.several_makers = stored.several_makers || maker_of(entry.display) != stored.maker;
  if (!entry.is_clap && (best.is_clap || (!best.is_vst3 && entry.is_vst3))) stored.best = index;
}

std::optional<std::size_t> IdentityIndex::compatible(std::string_view code) const {
  const auto number = four_character_code(code);
  return number ? entry_of(compatible_, *number) : std::nullopt;
}

std::optional<std::size_t> IdentityIndex::of_stored_name(std::string_view name) const {
  const std::string wanted = alnum_lower(name);
  if (wanted.size() < 3) return std::nullopt;
  const auto there = stored_names_.find(wanted);
  if (there == stored_names_.end() || there->second.several_makers) return std::nullopt;
  return there->second.best;
}

std::optional<std::size_t> IdentityIndex::holding_both(std::uint32_t maker, std::uint32_t code) const {
  const auto with_maker = inside_.find(maker), with_code = inside_.find(code);
  if (with_maker == inside_.end() || with_code == inside_.end()) return std::nullopt;
  // A walk over the shorter list: a list is long only if its four bytes are in many ids, and few are.
  const bool maker_is_shorter = with_maker->second.size() <= with_code->second.size();
  const auto& shorter = maker_is_shorter ? with_maker->second : with_code->second;
  const auto& longer = maker_is_shorter ? with_code->second : with_maker->second;
  for (const std::size_t entry : shorter) {
    if (std::binary_search(longer.begin(), longer.end(), entry)) return entry;
  }
  return std::nullopt;
}

std::optional<IdentityIndex::Match> IdentityIndex::match_name(std::string_view hint_name) const {
  if (hint_name.empty()) return std::nullopt;
  const std::string name = alnum_lower(hint_name);
  if (const auto entry = entry_of(names_, name)) return Match{*entry, "name"};
  constexpr std::size_t kShortest = 4;
  for (std::size_t i = 0; i < bare_names_.size(); ++i) {
    const std::string& other = bare_names_[i];
    if (other.size() >= kShortest && (contains(name, other) || contains(other, name)))
      return Match{i, "name (partial)"};
  }
  return std::nullopt;
}

std::optional<IdentityIndex::Match> IdentityIndex::match_identity(std::string_view key, std::string_view hint_name,
                                                                  bool prefer_vst3) const {
  const std::string_view code_text = key.size() > 4 ? key.substr(4, 4) : std::string_view();
  const auto maker = four_character_code(key.substr(0, 4)), code = four_character_code(code_text);

  if (key.size() >= 8 && key.starts_with("iZtp") && key[4] == 'Z' && key[7] == '0') {
    const std::string izotope_code = "Zn" + std::string(key.substr(5, 2));
    if (const auto entry = compatible(izotope_code)) return Match{*entry, "iZotope code rule"};
    if (const auto entry = entry_of(vst2_ids_, *four_character_code(izotope_code)))
      return Match{*entry, "iZotope code rule (VST2)"};
  }
  if (code) {
    const auto compatible_vst3 = compatible(code_text), vst2 = entry_of(vst2_ids_, *code);
    if (prefer_vst3) {
      if (compatible_vst3) return Match{*compatible_vst3, "VST3 compat id (--prefer-vst3)"};
      const std::string stem = vst2 ? file_stem(cache_.entries[*vst2].file) : "";
      const auto twin = stem.empty() ? std::nullopt : entry_of(stems_, stem);
      if (twin) return Match{*twin, "VST3 by filename stem (--prefer-vst3)"};
    }
    if (vst2) return Match{*vst2, "VST2 id"};
    if (compatible_vst3) return Match{*compatible_vst3, "VST3 compat id"};
    if (const auto entry = entry_of(id_ends_, *code)) return Match{*entry, "VST3 class id ends in the AAX code"};
    if (const auto entry = maker ? holding_both(*maker, *code) : std::nullopt)
      return Match{*entry, "VST3 class id holds both AAX codes"};
  }
  return match_name(hint_name);
}

}  // namespace frt
