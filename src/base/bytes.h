// Bounds-checked views of bytes that nobody vouches for.
//
// Every read of session bytes goes through ByteView: it gives a value or says no. No caller adds up
// "position + length" itself; `has` is written so that it cannot wrap.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>

namespace frt {

class ByteView {
 public:
  constexpr ByteView() = default;
  constexpr ByteView(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  constexpr const std::uint8_t* data() const { return data_; }
  constexpr std::size_t size() const { return size_; }

  // True if the n bytes from `at` on lie inside the view.
  constexpr bool has(std::uint64_t at, std::uint64_t n) const { return at <= size_ && n <= size_ - at; }

  // Little-endian numbers; nothing if a byte of them lies outside.
  std::optional<std::uint8_t> u8(std::uint64_t at) const { return number<std::uint8_t>(at); }
  std::optional<std::uint16_t> u16(std::uint64_t at) const { return number<std::uint16_t>(at); }
  std::optional<std::uint32_t> u32(std::uint64_t at) const { return number<std::uint32_t>(at); }
  std::optional<std::uint64_t> u64(std::uint64_t at) const { return number<std::uint64_t>(at); }
  std::optional<std::int8_t> i8(std::uint64_t at) const { return number<std::int8_t>(at); }
  std::optional<std::int16_t> i16(std::uint64_t at) const { return number<std::int16_t>(at); }
  std::optional<std::int32_t> i32(std::uint64_t at) const { return number<std::int32_t>(at); }
  std::optional<std::int64_t> i64(std::uint64_t at) const { return number<std::int64_t>(at); }
  std::optional<float> f32(std::uint64_t at) const { return number<float>(at); }
  std::optional<double> f64(std::uint64_t at) const { return number<double>(at); }

  // An unsigned little-endian number of 0 to 8 bytes; nothing for more or if it lies outside.
  std::optional<std::uint64_t> unsigned_of(std::uint64_t at, unsigned bytes) const {
    if (bytes > 8 || !has(at, bytes)) return std::nullopt;
    std::uint64_t value = 0;
    for (unsigned i = 0; i < bytes; ++i) value |= std::uint64_t{data_[at + i]} << (8 * i);
    return value;
  }
  // A 40-bit number, the form of most positions in a session.
  std::optional<std::uint64_t> u40(std::uint64_t at) const { return unsigned_of(at, 5); }

  // The same with a value for "outside".
  std::uint8_t u8_or(std::uint64_t at, std::uint8_t other) const { return u8(at).value_or(other); }
  std::uint16_t u16_or(std::uint64_t at, std::uint16_t other) const { return u16(at).value_or(other); }
  std::uint32_t u32_or(std::uint64_t at, std::uint32_t other) const { return u32(at).value_or(other); }

  // n bytes as text, as they stand; nothing if they don't lie inside.
  std::optional<std::string_view> text(std::uint64_t at, std::uint64_t n) const {
    if (!has(at, n)) return std::nullopt;
    return std::string_view(reinterpret_cast<const char*>(data_) + at, n);
  }

  // n bytes from `at` on as a view of their own, cut to what is there (empty if `at` is outside).
  ByteView clamped(std::uint64_t at, std::uint64_t n) const {
    if (at >= size_) return {};
    return {data_ + at, static_cast<std::size_t>(n < size_ - at ? n : size_ - at)};
  }

  // True if the bytes at `at` equal `what`.
  bool equals(std::uint64_t at, std::string_view what) const {
    const auto there = text(at, what.size());
    return there && *there == what;
  }

  // The first position from `from` on, below `limit`, that holds `byte`; `limit` (cut to the size) if none does.
  std::uint64_t find(std::uint8_t byte, std::uint64_t from, std::uint64_t limit) const {
    if (limit > size_) limit = size_;
    if (from >= limit) return limit;
    const void* hit = std::memchr(data_ + from, byte, limit - from);
    return hit ? static_cast<std::uint64_t>(static_cast<const std::uint8_t*>(hit) - data_) : limit;
  }

 private:
  template <typename T>
  std::optional<T> number(std::uint64_t at) const {
    if (!has(at, sizeof(T))) return std::nullopt;
    T value;  // sessions and the machines this runs on are little-endian
    std::memcpy(&value, data_ + at, sizeof(T));
    return value;
  }

  const std::uint8_t* data_ = nullptr;
  std::size_t size_ = 0;
};

}  // namespace frt
