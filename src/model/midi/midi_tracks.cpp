#include "model/midi/midi_tracks.h"

#include <cstddef>
#include <cstdint>
#include <optional>

#include "model/midi/midi_events.h"
#include "model/midi/midi_names.h"
#include "model/midi/midi_overlaps.h"
#include "model/midi/playlist_index.h"

namespace frt {
namespace {

constexpr double kItemTicks = 960.0;  // to the quarter note

// A clip's events are written again for each of its placements. No project comes near this many; in a session made to
// multiply long clips by thousands of placements, further ones are left empty, and told.
constexpr std::uint64_t kMostEvents = std::uint64_t{1} << 26;
constexpr std::uint64_t kSysExBytesAnEvent = 16;  // that print about as much text as an event does

class ItemMaker {
 public:
  ItemMaker(const MidiSource& midi, const Clock& clock, const ConversionOptions& options, MidiCounts& counts)
      : midi_(midi), clock_(clock), options_(options), counts_(counts) {}

  MidiItem make(const Placement& placement, const MidiClipEdges& edges, std::optional<std::uint64_t> samples) {
    const ClipRecord& clip = midi_.clips[placement.clip];
    MidiItem item;
    item.name = clip.name;
    item.muted = placement.muted;
    MidiContent& content = item.content;
    content.keep_inaudible = options_.keep_inaudible_midi;
    content.offset = clip.source_offset;
    content.length = clip.length;
    const double seconds_a_unit =
        samples ? place_by_samples(item, edges, *samples) : place_by_ticks(item, edges, placement.start);
    add_data(content, clip);

    item.natural_length = item.length;
    if (content.offset < 0) item.source_offset = -static_cast<double>(content.offset) * seconds_a_unit;
    const MidiContentCounts found = count_content(content);
    item.note_count = found.notes;
    item.muted_notes = found.muted_notes;
    item.muted_controllers = found.muted_controllers;
    item.notes_in_range = found.notes_in_range;
    if (!options_.truncate_midi_to_clip) item.length += static_cast<double>(found.overrun) * seconds_a_unit;
    counts_.notes_past_edges += found.notes_past_end;
    counts_.kept_unmuted += found.kept_unmuted;
    counts_.controllers += found.controllers;
    counts_.sysex += found.sysex;
    counts_.sysex_outside += found.sysex_outside;
    return item;
  }

 private:
  // Read as ticks, a position in samples would land days into the project. What overlaps there stays as it is.
  double place_by_samples(MidiItem& item, const MidiClipEdges& edges, std::uint64_t samples) {
    ++counts_.sample_based_clips;
    if (edges.covered()) ++counts_.sample_based_covered;
    item.position = clock_.of_samples(static_cast<double>(samples));
    item.length = clock_.of_samples(static_cast<double>(item.content.length));
    item.content.unit = clock_.tempo.session_tempo * kItemTicks / (clock_.rate * 60.0);
    return 1.0 / clock_.rate;
  }

  double place_by_ticks(MidiItem& item, const MidiClipEdges& edges, std::int64_t start) {
    MidiContent& content = item.content;
    if (edges.cut >= 0 && (edges.cut < content.length || content.length == 0)) {
      content.length = edges.cut;
      ++counts_.cut_clips;
    }
    if (edges.head_trim >= 1 && content.length >= 1 && content.length > edges.head_trim) {
      start += edges.head_trim;
      content.offset -= edges.head_trim;
      content.length -= edges.head_trim;
      ++counts_.later_clips;
    }
    item.position = clock_.of_ticks(static_cast<double>(start));
    item.length = clock_.of_ticks(static_cast<double>(start + content.length)) - item.position;
    content.unit = kItemTicks / kTicksPerQuarter;
    return 60.0 / (clock_.tempo.session_tempo * kTicksPerQuarter);
  }

  void add_data(MidiContent& content, const ClipRecord& clip) {
    if (clip.midi_chunk < 0) return;
    const auto number = static_cast<std::size_t>(clip.midi_chunk);
    content.notes = &midi_.chunks[number];
    if (number >= midi_.streams.size()) return limit_events(content);
    const MidiChunk& chunk = midi_.streams[number];
    if (chunk.note_count == content.notes->size() && (chunk.note_count != 0 || chunk.origin != 0)) {
      content.controllers = &chunk;
    } else {
      ++counts_.unmatched_regions;
    }
    limit_events(content);
  }

  void limit_events(MidiContent& content) {
    std::uint64_t events = 2 * std::uint64_t{content.notes->size()};
    if (content.controllers) {
      for (const MidiControllerStream& stream : content.controllers->streams) events += stream.size();
      for (const SysExEvent& event : content.controllers->sysex) events += 1 + event.bytes.size() / kSysExBytesAnEvent;
    }
    if (events <= events_left_) {
      events_left_ -= events;
    } else {
      content.notes = nullptr;
      content.controllers = nullptr;
      ++counts_.emptied_clips;
    }
  }

  const MidiSource& midi_;
  const Clock& clock_;
  const ConversionOptions& options_;
  MidiCounts& counts_;
  std::uint64_t events_left_ = kMostEvents;
};

}  // namespace

MidiTracks make_midi_tracks(const MidiSource& midi, const Clock& clock, std::span<const OutputTrack> audio,
                            std::span<const std::string_view> strip_table, const ConversionOptions& options) {
  MidiTracks made;
  const PlacedMidiTracks placed = number_midi_tracks(midi.placements);
  const MidiPlaylistIndex playlists(midi.playlists.info, placed);
  const std::vector<MidiClipEdges> edges = find_midi_overlaps(midi, placed, playlists);
  const auto sample_positions = find_sample_positions(midi, placed, clock.rate);
  made.tracks.resize(placed.tracks.size());
  std::vector<bool> sample_based(placed.names.size());
  ItemMaker maker(midi, clock, options, made.counts);
  for (std::size_t i = 0; i < midi.placements.size(); ++i) {
    const Placement& placement = midi.placements[i];
    MidiItem item = maker.make(placement, edges[i], sample_positions[i]);
    const MidiPlaylistIndex::Look look = playlists.look(placed.name_of(i), midi.clips[placement.clip].index);
    item.color = look.color;
    item.locked = look.locked;
    made.tracks[placed.track_of[i]].midi_items.push_back(item);
    if (sample_positions[i]) sample_based[placed.name_of(i)] = true;
  }
  for (std::size_t t = 0; t < made.tracks.size(); ++t) {
    OutputTrack& track = made.tracks[t];
    track.name = track.pt_name = placed.tracks[t].name;
    track.is_midi = true;
  }
  for (std::size_t name = 0; name < sample_based.size(); ++name)
    if (sample_based[name]) made.sample_based.emplace(placed.names[name]);
  bring_midi_names_up_to_date(made.tracks, audio, strip_table);
  return made;
}

}  // namespace frt
