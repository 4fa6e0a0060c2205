#include "writer/envelope.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/fixed_point.h"

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
    case EnvelopeTarget::kSendVolume:
      return "AUXVOLENV";
    case EnvelopeTarget::kSendMute:
      return "AUXMUTEENV";
  }
  return "";
}

// The printed values of an envelope's points, by what is stored. A lane stores few different values, whole tenths of dB
// or whole percents: raising ten to each and printing it took as long as all the rest of the point.
class PointValues {
 public:
  explicit PointValues(const Envelope& envelope) : envelope_(envelope), texts_(envelope.size() < kFew ? 0 : kPlaces) {}

  void put(ProjectText& out, double stored) {
    if (texts_.empty()) return put_new(out, stored);
    Text& text = texts_[static_cast<std::size_t>(static_cast<std::int64_t>(stored)) % kPlaces];
    if (text.length == 0 || text.stored != stored) {
      const double value = envelope_.value_of(stored);
      if (!(value < kLongest)) return put_new(out, stored);
      text.stored = stored;
      text.length = static_cast<std::size_t>(put_fixed(text.bytes, value, kDigits) - text.bytes);
    }
    out.text({text.bytes, text.length});
  }

 private:
  static constexpr std::size_t kFew = 64, kPlaces = 512;
  static constexpr int kDigits = 9;
  static constexpr double kLongest = 1e9;

  void put_new(ProjectText& out, double stored) { out.fixed(envelope_.value_of(stored), kDigits); }

  struct Text {
    double stored = 0;
    std::size_t length = 0;
    char bytes[24];
  };

  const Envelope& envelope_;
  std::vector<Text> texts_;
};

// Writes the block from behind its name on.
void write_envelope_body(ProjectText& out, const Envelope& envelope, std::string_view indent) {
  const std::string_view shape = envelope.is_switch() ? "1" : "0";  // 1 holds a value up to the next point
  out.text("\n");
  out.text(indent).text("  ACT ").text(envelope.active ? "1" : "0").text(" -1\n");
  out.text(indent).text("  VIS 1 1 1\n");
  out.text(indent).text("  LANEHEIGHT 0 0\n");
  out.text(indent).text("  ARM ").text(envelope.armed ? "1" : "0").text("\n");
  out.text(indent).text("  DEFSHAPE ").text(shape).text(" -1 -1\n");
  PointValues values(envelope);
  const std::string before = std::string(indent) + "  PT ", behind = " " + std::string(shape) + "\n";
  const auto point = [&](double seconds, double stored) {
    out.text(before).fixed(seconds, 10).text(" ");
    values.put(out, stored);
    out.text(behind);
  };
  point(0.0, envelope.stored_initial());
  for (std::size_t i = 0; i < envelope.size(); ++i) point(envelope.seconds(i), envelope.stored(i));
  out.text(indent).text(">\n");
}

}  // namespace

void write_envelopes(ProjectText& out, std::span<const Envelope> envelopes, std::string_view indent) {
  for (const Envelope& envelope : envelopes) {
    out.text(indent).text("<").text(block_name(envelope.target()));
    write_envelope_body(out, envelope, indent);
  }
}

void write_send_envelopes(ProjectText& out, std::span<const Envelope> envelopes, std::uint32_t source) {
  constexpr std::string_view kIndent = "    ";
  for (const Envelope& envelope : envelopes) {
    out.text(kIndent).text("<").text(block_name(envelope.target())).text(" ").integer(source);
    write_envelope_body(out, envelope, kIndent);
  }
}

}  // namespace frt
