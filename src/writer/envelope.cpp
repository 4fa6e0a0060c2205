#include "writer/envelope.h"

#include <cstddef>

namespace frt {
namespace {

std::string_view block_name(EnvelopeTarget target) {
  switch (target) {
    case EnvelopeTarget::kVolume:
      return "VOLENV2";
    case EnvelopeTarget::kMute:
      return "MUTEENV";
    case EnvelopeTarget::kPan:
      return "PANENV2";
    case EnvelopeTarget::kTrim:
      return "VOLENV3";
    case EnvelopeTarget::kLeftPan:
      return "DUALPANENVL";
    case EnvelopeTarget::kRightPan:
      return "DUALPANENV";
    case EnvelopeTarget::kMasterVolume:
      return "MASTERVOLENV2";
    case EnvelopeTarget::kMasterMute:
      return "MASTERMUTEENV";
  }
  return "";
}

void write_envelope(ProjectText& out, const Envelope& envelope, std::string_view indent) {
  const std::string_view shape = envelope.is_switch() ? "1" : "0";  // 1 holds a value up to the next point
  out.text(indent).text("<").text(block_name(envelope.target())).text("\n");
  out.text(indent).text("  ACT ").text(envelope.active ? "1" : "0").text(" -1\n");
  out.text(indent).text("  VIS 1 1 1\n");
  out.text(indent).text("  LANEHEIGHT 0 0\n");
  out.text(indent).text("  ARM ").text(envelope.armed ? "1" : "0").text("\n");
  out.text(indent).text("  DEFSHAPE ").text(shape).text(" -1 -1\n");
  const auto point = [&](double seconds, double value) {
    out.text(indent).text("  PT ").fixed(seconds, 10).text(" ").fixed(value, 9).text(" ").text(shape).text("\n");
  };
  point(0.0, envelope.initial());
  for (std::size_t i = 0; i < envelope.size(); ++i) {
    const Envelope::Point p = envelope[i];
    point(p.seconds, p.value);
  }
  out.text(indent).text(">\n");
}

}  // namespace

void write_envelopes(ProjectText& out, std::span<const Envelope> envelopes, std::string_view indent) {
  for (const Envelope& envelope : envelopes) write_envelope(out, envelope, indent);
}

}  // namespace frt
