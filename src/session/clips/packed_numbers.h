// The packed numbers of a clip, a clip group or a MIDI clip: up to three values, each as wide as it needs to be.
#pragma once

#include <cstdint>
#include <optional>

#include "base/bytes.h"

namespace frt {

// Head, from the end e of the name it follows; in each byte the high nibble is a width in bytes
//   e + 1  u8  width of the first value
//   e + 2  u8  width of the second; low nibble: width of the sync point, which stands before it
//   e + 3  u8  width of the third
//   e + 5      the values: first, sync point, second, third
class PackedNumbers {
 public:
  // Widths are 0 to 5 bytes; a byte above says that these are no packed numbers.
  static constexpr std::uint8_t kWidthLimit = 0x60;

  PackedNumbers(ByteView image, std::uint64_t e) : image_(image) {
    if (!image.has(e, kValues)) return;
    head_[0] = *image.u8(e + 1);
    head_[1] = *image.u8(e + 2);
    head_[2] = *image.u8(e + 3);
    place_[0] = e + kValues;
    place_[1] = place_[0] + (head_[0] >> 4u) + sync_width();
    place_[2] = place_[1] + (head_[1] >> 4u);
    readable_ = true;
  }

  // False where the image ends before the values.
  bool readable() const { return readable_; }
  std::uint8_t head(unsigned which) const { return head_[which]; }
  bool width_known(unsigned which) const { return readable_ && head_[which] < kWidthLimit; }
  unsigned sync_width() const { return head_[1] & 15u; }
  std::uint64_t sync_place() const { return place_[0] + (head_[0] >> 4u); }

  // A value, 0 for a width of 0; nothing if it leaves the image or is wider than 8 bytes.
  std::optional<std::uint64_t> value(unsigned which) const {
    if (!readable_) return std::nullopt;
    return image_.unsigned_of(place_[which], head_[which] >> 4u);
  }
  // The same with 0 for "no".
  std::uint64_t value_or_0(unsigned which) const { return width_known(which) ? value(which).value_or(0) : 0; }

 private:
  static constexpr std::uint64_t kValues = 5;
  ByteView image_;
  std::uint8_t head_[3] = {};
  std::uint64_t place_[3] = {};
  bool readable_ = false;
};

}  // namespace frt
