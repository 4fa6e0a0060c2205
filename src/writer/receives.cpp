#include "writer/receives.h"

#include "writer/envelope.h"

namespace frt {
namespace {

constexpr const char* kTail = " 31:U 4177951 -1 ''\n";  // no MIDI, no automation of its own

int mode(Tap tap) {
  switch (tap) {
    case Tap::kPostFader:
      return 0;
    case Tap::kPreFx:
      return 1;
    case Tap::kPreFader:
      return 3;
  }
  return 0;
}

// Where the source is taken: its first channel, and above it how many pairs; none stands for a plain pair.
int source_field(const BusReceive& receive) {
  constexpr int kPairsFrom = 10;  // bits
  return receive.source_channel | (receive.source_width / 2) << kPairsFrom;
}

}  // namespace

void write_bus_receives(ProjectText& out, std::span<const BusReceive> receives) {
  for (const BusReceive& receive : receives) {
    out.text("    AUXRECV ").integer(receive.source).text(" ").integer(mode(receive.tap)).text(" 1 0 0 0 0 ");
    out.integer(source_field(receive)).text(" ").integer(receive.channel).text(kTail);
  }
}

void write_send_receives(ProjectText& out, std::span<const SendReceive> receives) {
  for (const SendReceive& receive : receives) {
    out.text("    AUXRECV ").integer(receive.source).text(" ").integer(mode(receive.tap)).text(" ");
    out.fixed(receive.gain, 10).text(" ").general(receive.pan).text(receive.mute ? " 1" : " 0").text(" 0 0 0 0");
    out.text(kTail);
    write_send_envelopes(out, receive.envelopes, receive.source);
  }
}

}  // namespace frt
