#include "stages/midi_statistics.h"

#include <cstddef>
#include <map>
#include <string>

#include "base/text.h"
#include "run/text_output.h"

namespace frt {
namespace {

std::string name_of_stream(unsigned kind, unsigned controller) {
  if (kind == MidiControllerStream::kPitchBend) return "pitch bend";
  if (kind == MidiControllerStream::kAftertouch) return "aftertouch";
  return format_text("CC %03u", controller);
}

}  // namespace

void print_midi_statistics(std::span<const MidiChunk> chunks) {
  std::size_t streams = 0;
  std::uint64_t events = 0;
  for (std::size_t i = 0; i < chunks.size(); ++i) {
    print_text("chunk %-3d notes %-5u origin %llu\n", static_cast<int>(i), chunks[i].note_count,
               static_cast<unsigned long long>(chunks[i].origin));
    // Several streams of one controller are told as one.
    std::map<unsigned, std::uint64_t> events_of;
    for (const MidiControllerStream& stream : chunks[i].streams) {
      if (stream.size() == 0) continue;
      const unsigned controller = stream.kind() == MidiControllerStream::kController ? stream.controller() : 0U;
      events_of[unsigned{stream.kind()} << 8U | controller] += stream.size();
    }
    for (const auto& [key, count] : events_of) {
      print_text("    %-16s count %d\n", name_of_stream(key >> 8U, key & 0xFFU).c_str(), static_cast<int>(count));
      events += count;
    }
    streams += events_of.size();
  }
  print_text("%d chunks, %d streams with data, %d events\n", static_cast<int>(chunks.size()), static_cast<int>(streams),
             static_cast<int>(events));
}

}  // namespace frt
