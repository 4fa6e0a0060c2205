#include "base/text_index.h"

namespace frt {

TextHash TextIndex::hash_of(std::string_view text) const {
  TextHash hash;
  if (side_ == Side::kFirstByte) {
    for (const char c : text) hash.add(c);
  } else {
    for (std::size_t i = text.size(); i-- > 0;) hash.add(text[i]);
  }
  return hash;
}

// The low half of the hash chooses the slot, the high half is kept as its check.
std::size_t TextIndex::slot_of(std::string_view text, std::uint64_t mixed) const {
  const auto check = static_cast<std::uint32_t>(mixed >> 32);
  const std::size_t last = slots_.size() - 1;
  std::size_t slot = mixed & last;
  while (slots_[slot].number != 0 && (slots_[slot].check != check || texts_[slots_[slot].number - 1] != text)) {
    slot = (slot + 1) & last;
  }
  return slot;
}

void TextIndex::grow() {
  std::vector<Slot> old(slots_.empty() ? 64 : slots_.size() * 2);
  old.swap(slots_);
  const std::size_t last = slots_.size() - 1;
  for (const Slot& taken : old) {
    if (taken.number == 0) continue;
    std::size_t slot = hash_of(texts_[taken.number - 1]).mixed() & last;
    while (slots_[slot].number != 0) slot = (slot + 1) & last;
    slots_[slot] = taken;
  }
}

std::pair<std::uint32_t, bool> TextIndex::insert(std::string_view text) {
  if (texts_.size() * 2 >= slots_.size()) grow();
  const std::uint64_t mixed = hash_of(text).mixed();
  Slot& slot = slots_[slot_of(text, mixed)];
  if (slot.number != 0) return {slot.number - 1, false};
  texts_.push_back(text);
  slot = {static_cast<std::uint32_t>(texts_.size()), static_cast<std::uint32_t>(mixed >> 32)};
  return {slot.number - 1, true};
}

std::optional<std::uint32_t> TextIndex::find(std::string_view text, TextHash hash) const {
  if (texts_.empty()) return std::nullopt;
  const Slot& slot = slots_[slot_of(text, hash.mixed())];
  return slot.number == 0 ? std::nullopt : std::optional(slot.number - 1);
}

}  // namespace frt
