#include "session/headers/tempo_map.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "image/content_types.h"

namespace frt {
namespace {

constexpr double kDefaultTempo = 120.0;

// What stands before the tempo of a session that never set a second one: a record's head, its moment in
// samples (0), its tick (0, biased) and a 1.
namespace signature {
constexpr std::string_view kBytes(
    "\x14\x00\x00\x00\x00\x01\x00\x00\x00\x00\x00\x00\x00\x00\x00\x10\xa5\xd4\xe8\x00\x00\x00\x00\x01", 24);
// Sessions are full of zeros and ones; this byte is rare in them, and the signature holds it once.
constexpr std::uint64_t kRareAt = 16;
constexpr std::uint8_t kRare = 0xA5;
constexpr double kAbove = 20.0, kBelow = 400.0;
}  // namespace signature

// Tempo map block, from its mark: a run of records of 61 bytes
//   p + 9        "Tempo"
//   p + 50  i64  first record: its moment in samples
//   p + 58  u40  first record: its tick, biased
//   p + 68  f64  first record: BPM
namespace map_layout {
constexpr std::uint64_t kTag = 9, kFirstSamples = 50, kFirst = 58;
constexpr std::string_view kTagText = "Tempo";
// From a record's first value:
constexpr std::uint64_t kTick = 0, kBpm = 10, kValuesEnd = 18, kRecord = 61;
constexpr double kBpmAbove = 5.0, kBpmBelow = 500.0;
}  // namespace map_layout

std::optional<TempoEvent> read_record(ByteView image, std::uint64_t at) {
  const auto position = image.u40(at + map_layout::kTick);
  const auto bpm = image.f64(at + map_layout::kBpm);
  if (!position || !bpm || *position < kTickOrigin) return std::nullopt;
  if (!(*bpm > map_layout::kBpmAbove && *bpm < map_layout::kBpmBelow)) return std::nullopt;
  return TempoEvent{static_cast<double>(*position - kTickOrigin), *bpm};
}

// Where the run of records that begins at `at` ends, whatever block holds it.
std::uint64_t end_of_run(ByteView image, std::uint64_t at) {
  double tick = 0.0;
  for (;; at += map_layout::kRecord) {
    const auto record = read_record(image, at);
    if (!record || record->tick < tick) return at;
    tick = record->tick;
  }
}

struct Run {
  std::uint64_t block_start = 0;
  std::uint64_t count = 0;
};

// The first of the longest runs.
Run longest_run(const SessionImage& image) {
  Run best;
  // Runs of different blocks can share records. Two runs a whole number of records apart end at the same
  // record (unless their block ends before), so no record is read twice for one alignment.
  std::array<std::uint64_t, map_layout::kRecord> known_end{};
  for (const std::uint32_t index : image.of_type(content::kTempoMap)) {
    const FlatBlock& block = image.block(index);
    if (!image.bytes().equals(block.start + map_layout::kTag, map_layout::kTagText)) continue;
    const std::uint64_t first = block.start + map_layout::kFirst;
    if (block.end() < first + map_layout::kValuesEnd) continue;
    const std::uint64_t room = (block.end() - first - map_layout::kValuesEnd) / map_layout::kRecord + 1;
    std::uint64_t& end = known_end[first % map_layout::kRecord];
    if (end <= first) end = end_of_run(image.bytes(), first);
    const std::uint64_t count = std::min(room, (end - first) / map_layout::kRecord);
    if (count > best.count) best = {block.start, count};
  }
  return best;
}

}  // namespace

double find_tempo(ByteView image, double fallback) {
  using namespace signature;
  for (std::uint64_t hit = image.find(kRare, kRareAt, image.size()); hit < image.size();
       hit = image.find(kRare, hit + 1, image.size())) {
    const std::uint64_t start = hit - kRareAt;
    if (!image.equals(start, kBytes)) continue;
    const auto tempo = image.f64(start + kBytes.size());
    if (tempo && *tempo > kAbove && *tempo < kBelow) return *tempo;
  }
  return fallback;
}

TempoMap read_tempo(const SessionImage& image, double sample_rate, double tempo_override) {
  TempoMap map;
  const ByteView bytes = image.bytes();
  const Run run = longest_run(image);
  const std::uint64_t first = run.block_start + map_layout::kFirst;

  double stored_tempo = kDefaultTempo;
  if (run.count > 0) {
    const TempoEvent first_event = *read_record(bytes, first);
    // Sessions whose tempo was set before the first bar, or changed since, don't hold the signature; the first
    // record has their tempo.
    stored_tempo = first_event.bpm;
    // The song starts somewhere behind the session's start: the first record says where, in samples.
    const std::int64_t samples = bytes.i64(run.block_start + map_layout::kFirstSamples).value_or(0);
    if (samples > 0 && samples < std::int64_t{1} << 40) {
      map.song_start = static_cast<double>(samples) / (sample_rate);
      map.song_start_tick = first_event.tick;
    }
  }
  map.session_tempo = tempo_override > 0.0 ? tempo_override : find_tempo(bytes, stored_tempo);

  if (run.count > 1) {  // one tempo is no map
    map.events.reserve(run.count);
    for (std::uint64_t i = 0; i < run.count; ++i) {
      map.events.push_back(*read_record(bytes, first + i * map_layout::kRecord));
    }
    map.index_events();
  }
  return map;
}

}  // namespace frt
