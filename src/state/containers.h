// The layouts in which REAPER keeps a plug-in's settings, as the bytes under a project's Base64: a VST's header and
// program record, and the wrappings that the settings themselves may have.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/bytes.h"
#include "plugins/knowledge.h"

namespace frt {

using StateBytes = std::vector<std::uint8_t>;

inline ByteView view_of(const StateBytes& bytes) { return {bytes.data(), bytes.size()}; }
inline ByteView view_of(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}
inline std::string_view text_of(ByteView bytes) { return {reinterpret_cast<const char*>(bytes.data()), bytes.size()}; }

// Bytes under construction. Numbers are little-endian unless the name says otherwise.
class StateWriter {
 public:
  StateWriter() = default;
  // With room for that many bytes.
  explicit StateWriter(std::size_t room) { bytes_.reserve(room); }

  StateWriter& u32(std::uint64_t value) {
    for (unsigned i = 0; i < 4; ++i) bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    return *this;
  }
  StateWriter& u32_big_endian(std::uint64_t value) {
    for (unsigned i = 0; i < 4; ++i) bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * (3 - i))));
    return *this;
  }
  StateWriter& f32(float value);
  StateWriter& text(std::string_view value) { return raw(view_of(value)); }
  StateWriter& raw(ByteView value) {
    bytes_.insert(bytes_.end(), value.data(), value.data() + value.size());
    return *this;
  }
  StateWriter& zeros(std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) bytes_.push_back(0);
    return *this;
  }

  std::size_t size() const { return bytes_.size(); }
  StateBytes take() { return std::move(bytes_); }

 private:
  StateBytes bytes_;
};

// The number that a project's identifier begins with, 0 for none; beyond 32 bits what is left of it there.
std::uint32_t uid_of(std::string_view ident);

// The text between the braces of an identifier; empty for one without.
std::string_view class_id_of(std::string_view ident);

// What of a strip the header's pins ask.
struct StripPins {
  int channels = 2;
  int key_pair = 0;  // the channel pair that brings the key input: 0 for 3/4, 1 for 5/6, ...
};

// What stands ahead of a VST's settings of that many bytes: who takes them, and which of the track's channels feed its
// pins.
StateBytes state_header(const KnowledgeRecord& record, std::uint64_t state_size, const StripPins& strip);

// The program that a project names beside these settings; empty for most.
std::string_view program_name(ByteView state);
// What stands behind a VST's settings.
StateBytes program_record(std::string_view name);

// A VST3's settings: of its processor, then of its controller.
StateBytes pack_component_pair(ByteView component, ByteView controller = {});
// The document of a JUCE plug-in as a VST3's settings.
StateBytes pack_juce_tail(ByteView document);
// The document of a JUCE plug-in, end mark included, as its VST3 build keeps the settings of its VST2 build. `code` and
// `tag` have 4 characters.
StateBytes pack_vstw(std::string_view code, std::uint32_t version, std::string_view tag, ByteView document);
// Which plug-in, and which version of it, those settings are of.
std::string plugin_code(const KnowledgeRecord& record, std::string_view signature);
std::uint32_t plugin_version(ByteView document);

}  // namespace frt
