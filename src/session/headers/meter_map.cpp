#include "session/headers/meter_map.h"

#include <string_view>

#include "image/content_types.h"
#include "session/clock.h"

namespace frt {
namespace {

constexpr std::uint64_t kLeastImage = 32;

// Meter block
//   p + 9        "Meter"
//   p + 20  u32  number of events
//   p + 24       events
namespace map_layout {
constexpr std::uint64_t kTag = 9, kCount = 20, kEvents = 24;
constexpr std::string_view kTagText = "Meter";
constexpr std::uint32_t kMostEvents = 4096;
}  // namespace map_layout

// Event
//   + 0   u40  tick, biased
//   + 8   u32  bar
//   + 12  u32  numerator
//   + 16  u32  denominator
namespace event_layout {
constexpr std::uint64_t kTick = 0, kBar = 8, kNumerator = 12, kDenominator = 16, kEvent = 36;
constexpr std::uint32_t kMostNumerator = 99, kMostDenominator = 64;
}  // namespace event_layout

bool is_meter(std::uint32_t numerator, std::uint32_t denominator) {
  return numerator >= 1 && numerator <= event_layout::kMostNumerator && denominator >= 1 &&
         denominator <= event_layout::kMostDenominator;
}

bool same_meter(const MeterEvent& a, const MeterEvent& b) {
  return a.numerator == b.numerator && a.denominator == b.denominator;
}

}  // namespace

std::vector<MeterEvent> read_meter_map(const SessionImage& image, Skips& skips) {
  std::vector<MeterEvent> events;
  const ByteView bytes = image.bytes();
  if (bytes.size() < kLeastImage) return events;
  for (const std::uint32_t index : image.of_type(content::kMeterMap)) {
    const FlatBlock& block = image.block(index);
    if (!bytes.equals(block.start + map_layout::kTag, map_layout::kTagText)) continue;

    const auto count = bytes.u32(block.start + map_layout::kCount);
    if (!count || *count > map_layout::kMostEvents) return events;
    const std::uint64_t needed = map_layout::kEvents + *count * event_layout::kEvent;
    if (needed > block.end() - block.start) {
      skips.add(content::kMeterMap, block.start, "count");
      return events;
    }

    for (std::uint64_t i = 0; i < *count; ++i) {
      const std::uint64_t at = block.start + map_layout::kEvents + i * event_layout::kEvent;
      const std::uint64_t position = bytes.u40(at + event_layout::kTick).value_or(0);
      MeterEvent event;
      event.position = position < kTickOrigin ? 0.0 : static_cast<double>(position - kTickOrigin);
      event.bar = bytes.u32_or(at + event_layout::kBar, 0);
      event.numerator = bytes.u32_or(at + event_layout::kNumerator, 0);
      event.denominator = bytes.u32_or(at + event_layout::kDenominator, 0);
      if (!is_meter(event.numerator, event.denominator)) {
        skips.add(content::kMeterMap, at, "numerator or denominator");
        break;
      }
      events.push_back(event);
    }
    return events;
  }
  return events;
}

MeterEvent first_meter(const std::vector<MeterEvent>& events) { return events.empty() ? MeterEvent{} : events.front(); }

MeterChanges sort_meter_events(const std::vector<MeterEvent>& events) {
  MeterChanges sorted;
  MeterEvent in_force = first_meter(events);
  for (std::size_t k = 1; k < events.size(); ++k) {
    if (same_meter(events[k], in_force)) {
      sorted.repeats.push_back(events[k]);
    } else {
      sorted.changes.push_back(events[k]);
      in_force = events[k];
    }
  }
  return sorted;
}

}  // namespace frt
