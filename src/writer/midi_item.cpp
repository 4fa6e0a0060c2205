#include "writer/midi_item.h"

#include <charconv>
#include <string>
#include <string_view>

#include "base/base64.h"

namespace frt {
namespace {

constexpr int kTicksToAQuarter = 960;
constexpr unsigned kProgramChange = 0xc0;

// "        E 0 b0 07 64": events are the bulk of a session with MIDI, so none goes through a format.
void write_event(ProjectText& out, std::string_view mark, std::uint64_t delta, unsigned status, unsigned data1,
                 unsigned data2) {
  char line[48];
  char* end = line + mark.copy(line, mark.size());
  end = std::to_chars(end, end + 20, delta).ptr;
  for (const unsigned byte : {status, data1, data2}) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    *end++ = ' ';
    *end++ = kDigits[byte >> 4U & 15U];
    *end++ = kDigits[byte & 15U];
  }
  *end++ = '\n';
  out.text({line, static_cast<std::size_t>(end - line)});
}

constexpr std::string_view kLive = "        E ", kMuted = "        Em ";

void write_sysex(ProjectText& out, std::uint64_t delta, std::string_view payload) {
  std::string message;
  message.reserve(payload.size() + 2);
  ((message += '\xf0') += payload) += '\xf7';
  out.text("        <X ").integer(static_cast<long long>(delta)).text(" 0\n          ");
  out.text(base64({reinterpret_cast<const std::uint8_t*>(message.data()), message.size()})).text("\n        >\n");
}

void write_events(ProjectText& out, const MidiItemPage& page) {
  if (page.volume >= 0) write_event(out, kLive, 0, MidiEvent::kController, 7, static_cast<unsigned>(page.volume));
  if (page.pan >= 0) write_event(out, kLive, 0, MidiEvent::kController, 10, static_cast<unsigned>(page.pan));
  if (page.program >= 0) write_event(out, kLive, 0, kProgramChange, static_cast<unsigned>(page.program), 0);
  const WrittenMidiEvents events = page.events();
  for (std::size_t i = 0; i < events.size(); ++i) {
    const WrittenMidiEvent event = events[i];
    if (event.status == MidiEvent::kSysEx) {
      write_sysex(out, event.delta, event.sysex);
    } else {
      write_event(out, event.muted ? kMuted : kLive, event.delta, event.status, event.data1, event.data2);
    }
  }
  // All notes off closes the source.
  write_event(out, kLive, 1, MidiEvent::kController, 0x7b, 0);
}

void write_item(ProjectText& out, const MidiItemPage& page) {
  const MidiItem& item = page.item();
  out.text("    <ITEM\n      POSITION ").fixed(item.position, 10).text("\n      SNAPOFFS 0\n      LENGTH ");
  out.fixed(item.length, 10).text("\n");
  if (item.source_offset > 0.0) out.text("      SOFFS ").fixed(item.source_offset, 10).text("\n");
  out.text("      LOOP 0\n      ALLTAKES 0\n      FADEIN 1 0 0 1 0 0 0\n      FADEOUT 1 0 0 1 0 0 0\n");
  if (page.color != 0) out.text("      COLOR ").integer(page.color).text(" R\n");
  out.text(item.muted ? "      MUTE 1 0\n" : "      MUTE 0 0\n");
  if (item.locked) out.text("      LOCK 1\n");
  out.text("      NAME ").quoted(item.name).text("\n      <SOURCE MIDI\n        HASDATA 1 ");
  out.integer(kTicksToAQuarter).text(" QN\n");
  write_events(out, page);
  out.text("      >\n    >\n");
}

}  // namespace

void write_midi_items(ProjectText& out, std::span<const MidiItemPage> items) {
  for (const MidiItemPage& item : items) write_item(out, item);
}

}  // namespace frt
