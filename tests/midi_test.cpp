// MIDI clips as items: what sounds at a clip's edges, which of two clips gives way, and the names of their tracks.
#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/text.h"
#include "model/midi/midi_events.h"
#include "model/midi/midi_tracks.h"
#include "support/block_writer.h"
#include "support/convert.h"

namespace frt {
namespace {

using test::BlockWriter;

struct Note {
  std::int64_t at, length;
};

// At this tempo a tick lasts a microsecond: seconds print as ticks / 1e6.
struct Scene {
  MidiSource midi;
  Clock clock;
  ConversionOptions options;
  std::vector<OutputTrack> audio;
  std::vector<std::string_view> strips;
  MidiTracks made;
  std::deque<std::vector<std::uint8_t>> bytes;
  static constexpr std::uint64_t kZero = 5000;  // of every chunk

  Scene() { clock.tempo.session_tempo = 62.5; }
  ByteView view(BlockWriter& w) {
    bytes.push_back(w.take());
    return {bytes.back().data(), bytes.back().size()};
  }
  Scene& clip(std::int64_t offset, std::int64_t length, const std::vector<Note>& notes) {
    BlockWriter w;
    for (const Note& note : notes) {
      w.u40(kZero + static_cast<std::uint64_t>(note.at)).zeros(3).u8(60).u40(static_cast<std::uint64_t>(note.length));
      w.zeros(3).u8(100).zeros(17);
    }
    const auto count = static_cast<std::uint32_t>(notes.size());
    midi.chunks.emplace_back(view(w), kZero, count);
    midi.streams.push_back({.origin = kZero, .note_count = count, .streams = {}, .sysex = {}});
    ClipRecord& clip = midi.clips.emplace_back();
    clip.index = static_cast<std::uint16_t>(midi.clips.size() - 1);
    clip.midi_chunk = clip.index;
    clip.source_offset = offset;
    clip.length = length;
    return *this;
  }
  Scene& stream(std::uint8_t kind, const std::vector<std::pair<std::int64_t, std::int32_t>>& events) {
    BlockWriter w;
    for (const auto& [at, value] : events)
      w.u40(kZero + static_cast<std::uint64_t>(at)).zeros(3).u32(static_cast<std::uint32_t>(value));
    midi.streams.back().streams.emplace_back(view(w), static_cast<std::uint32_t>(events.size()), kind, 0x81);
    return *this;
  }
  Placement& place(std::uint32_t clip, std::int64_t start, std::string_view track = "T", std::uint16_t number = 0) {
    Placement& placement = midi.placements.emplace_back();
    placement.track_name = track;
    placement.track_index = number;
    placement.clip = clip;
    placement.start = start;
    return placement;
  }
  Scene& entry(std::uint32_t clip, std::uint64_t at, std::uint8_t kind, std::int16_t color = -2, bool locked = false) {
    midi.playlists.info["T"].push_back({clip, color, kind, locked, at});
    return *this;
  }
  // Ticks of position, length and source offset of each item.
  std::string items() {
    made = make_midi_tracks(midi, clock, audio, strips, options);
    std::string text;
    for (const OutputTrack& track : made.tracks) {
      for (const MidiItem& item : track.midi_items) {
        text += format_text("%s%.0f+%.0f", text.empty() ? "" : ", ", item.position * 1e6, item.length * 1e6);
        if (item.source_offset != 0) text += format_text("@%.0f", item.source_offset * 1e6);
      }
    }
    return text;
  }
  std::string names() {
    items();
    std::string text;
    for (const OutputTrack& track : made.tracks) {
      text += (text.empty() ? "" : ", ") + track.name;
      if (track.pt_name != track.name) text += "(" + track.pt_name + ")";
    }
    return text;
  }
  // The events of the first item: tick, status, data; muted ones in brackets.
  std::string events() const {
    std::string text;
    for (const MidiEvent& event : events_of(made.tracks.at(0).midi_items.at(0).content).events) {
      std::string one = format_text("%llu %x", static_cast<unsigned long long>(event.tick), event.status);
      if (event.size > 0) one += format_text(" %x", event.data1);
      if (event.size > 1) one += format_text(" %x", event.data2);
      text += (text.empty() ? "" : ", ") + (event.muted ? "(" + one + ")" : one);
    }
    return text;
  }
};

TEST(MidiNotes, SoundByTheirStartAndRingPastTheClipsEnd) {
  const struct {
    std::int64_t offset, length;
    std::vector<Note> notes;
    const char* item;
    const char* events;
    int past;
  } rows[] = {
      {0,
       4000,
       {{3999, 2001}, {4000, 1000}, {500, 0}},
       "0+6000",
       "4 90 3c 64, (4 90 3c 64), (5 80 3c 0), 6 80 3c 0",
       1},
      // Too short: muted, though inside, and its end moves on.
      {0,
       4000,
       {{1000, 1}, {1500, 1000}, {2500, 1000}},
       "0+4000",
       "(1 90 3c 64), (2 80 3c 0), 2 90 3c 64, 3 80 3c 0, 3 90 3c 64, 4 80 3c 0",
       0},
      {0, 4000, {{3999, 400}}, "0+4000", "(4 90 3c 64), (5 80 3c 0)", 0},
      // Without an end all is inside and nothing rings past it.
      {2000, 0, {{0, 1000}, {90000, 1000}}, "0+0", "2 90 3c 64, 3 80 3c 0, 92 90 3c 64, 93 80 3c 0", 0},
      // The clip starts inside its source: ticks count from the source's start.
      {-3000, 4000, {{2999, 2000}, {3000, 5000}}, "0+5000@3000", "(3 90 3c 64), 3 90 3c 64, (5 80 3c 0), 8 80 3c 0", 1},
      // A note before the first of its chunk has no tick below 0.
      {0, 4000, {{-2000, 1000}}, "0+4000", "(0 90 3c 64), (1 80 3c 0)", 0},
  };
  for (const auto& row : rows) {
    Scene scene;
    scene.clip(row.offset, row.length, row.notes).place(0, 0);
    EXPECT_EQ(scene.items(), row.item);
    EXPECT_EQ(scene.events(), row.events);
    EXPECT_EQ(scene.made.counts.notes_past_edges, row.past);
  }
}

TEST(MidiNotes, OptionsSoundWhatLiesOutsideAndCutWhatRings) {
  Scene scene;
  scene.clip(-2000, 3000, {{0, 3000}, {0, 10}, {4000, 2000}, {5000, 1000}}).place(0, 7000);
  scene.stream(MidiControllerStream::kController, {{1000, 5}, {2000, 6}});
  scene.midi.streams[0].sysex = {{Scene::kZero, "x"}, {Scene::kZero + 2000, "y"}};
  EXPECT_EQ(scene.items(), "7000+4000@2000");
  const MidiItem& item = scene.made.tracks[0].midi_items[0];
  EXPECT_DOUBLE_EQ(item.natural_length, 0.003);
  EXPECT_EQ(item.note_count, 4);
  EXPECT_EQ(scene.made.counts.kept_unmuted, 0);
  const std::string silent =
      "(0 90 3c 64), (0 90 3c 64), (0 f0), (1 80 3c 0), (1 b0 1 5), 2 b0 1 6, 2 f0, (3 80 3c 0), 4 90 3c 64, "
      "(5 90 3c 64), 6 80 3c 0, (6 80 3c 0)";
  EXPECT_EQ(scene.events(), silent);

  scene.options.keep_inaudible_midi = scene.options.truncate_midi_to_clip = true;
  EXPECT_EQ(scene.items(), "7000+3000@2000");
  EXPECT_EQ(scene.events(),
            "0 90 3c 64, (0 90 3c 64), 0 f0, (1 80 3c 0), 1 b0 1 5, 2 b0 1 6, 2 f0, 3 80 3c 0, 4 90 3c 64, "
            "5 90 3c 64, 6 80 3c 0, 6 80 3c 0");
  const MidiCounts& counts = scene.made.counts;
  EXPECT_EQ(counts.kept_unmuted, 6);
  EXPECT_EQ(counts.notes_past_edges, 1);
  EXPECT_EQ(counts.controllers, 1);
  EXPECT_EQ(counts.sysex, 2);
  EXPECT_EQ(counts.sysex_outside, 1);
}

TEST(MidiControllers, KeepToTheirBitsAndStandBehindNotesOfTheirTick) {
  Scene scene;
  scene.clip(1000, 4000, {{0, 1000}}).place(0, 0);
  scene.stream(MidiControllerStream::kAftertouch, {{499, 0x80 + 7}, {3000, 1}});
  scene.stream(MidiControllerStream::kPitchBend, {{0, 8192}, {-3000, -8192}, {1000, -9000}, {1000, 0}, {1000, -1}});
  scene.stream(MidiControllerStream::kController, {{0, 0x185}});
  scene.items();
  EXPECT_EQ(
      scene.events(),
      "(0 e0 0 0), 1 90 3c 64, 1 d0 7, 1 e0 7f 7f, 1 b0 1 5, 2 80 3c 0, 2 e0 0 0, 2 e0 0 40, 2 e0 7f 3f, (4 d0 1)");
  EXPECT_EQ(scene.made.counts.controllers, 6);

  // Those of other notes are left out and counted, once a placement, also where there are none; a run of notes without
  // any controllers' data behind it tells nothing.
  scene.midi.streams[0].note_count = 2;
  scene.place(0, 9000);
  scene.clip(0, 100, {}).place(1, 0);
  scene.midi.streams[1].origin = 0;
  scene.clip(0, 100, {{0, 10}}).place(2, 0);
  scene.midi.streams.pop_back();
  scene.items();
  EXPECT_EQ(scene.events(), "1 90 3c 64, 2 80 3c 0");
  EXPECT_EQ(scene.made.counts.unmatched_regions, 3);
}

TEST(MidiOverlaps, TheClipOnTopPlays) {
  const struct {
    std::int64_t length;
    std::uint8_t kind;
    std::uint64_t entry_at;
    std::int64_t b_length;
    bool b_muted;
    const char* items;
  } rows[] = {
      {5960, 2, 10000, 9000, false, "10000+5960, 15000+9000"},  // 960 ticks are no overlap
      {5961, 2, 10000, 9000, false, "10000+5000, 15000+9000"},
      {7000, 3, 10960, 9000, false, "10000+5000, 15000+9000"},
      {7000, 3, 9040, 9000, false, "10000+5000, 15000+9000"},
      {7000, 3, 10961, 9000, false, "10000+7000, 15000+9000"},
      {7000, 2, 10000, 9000, true, "10000+7000, 15000+9000"},
      {7000, 1, 10000, 9000, true, "10000+7000, 17000+7000@2000"},
      {7000, 1, 10000, 2000, false, "10000+7000, 15000+2000"},  // covered to its end
      {7000, 4, 10000, 9000, false, "10000+7000, 15000+9000"},
  };
  for (const auto& row : rows) {
    Scene scene;
    scene.clip(0, row.length, {{0, 10}}).clip(0, row.b_length, {{0, 10}}).entry(0, row.entry_at, row.kind);
    scene.place(0, 10000);
    scene.place(1, 15000).muted = row.b_muted;
    EXPECT_EQ(scene.items(), row.items);
  }
}

TEST(MidiOverlaps, GoByNeighboursWithNotesAndTheNearestEntry) {
  Scene scene;
  for (const std::int64_t length : {5000, 9000, 9000}) scene.clip(0, length, {{0, 10}});
  scene.clip(0, 9000, {});
  // The first of two entries equally near counts, wherever they stand.
  scene.entry(0, 500, 1).entry(0, 900, 2).entry(0, 100, 2);
  scene.midi.playlists.info["T"].insert(scene.midi.playlists.info["T"].begin(), {{0, -2, 2, false, 5000}});
  scene.entry(1, 3100, 3).entry(1, 2900, 1);
  scene.place(2, 6000);
  scene.place(1, 3000);
  scene.place(3, 1000);  // no notes
  scene.place(0, 500);
  scene.place(0, 700, "T", 1);
  // The second is cut and trimmed: the cut counts from its stored start, the trim against what is left.
  EXPECT_EQ(scene.items(), "6000+9000, 5500+500@2500, 1000+9000, 500+5000, 700+5000");
  EXPECT_EQ(scene.made.counts.cut_clips, 1);
  EXPECT_EQ(scene.made.counts.later_clips, 1);
  EXPECT_EQ(scene.made.tracks.size(), 2U);
  // A cut shorter than the trim leaves no room for it.
  scene.midi.placements[0].start = 5400;
  EXPECT_EQ(scene.items(), "5400+9000, 3000+2400, 1000+9000, 500+5000, 700+5000");
  EXPECT_EQ(scene.made.counts.later_clips, 0);
}

TEST(MidiOverlaps, AreThoseOfTheSessionsPlaylists) {
  test::SessionBuilder s;
  test::Track& keys = s.midi_track("Keys");
  keys.midi_clip("below", test::kQuarter, 4 * test::kQuarter, {{0, 960}});
  keys.midi_clip("above", 2 * test::kQuarter, 9, {{0, 960}});
  EXPECT_TRUE(contains(test::convert(s).console, "  1 MIDI clip(s) cut where"));
}

TEST(MidiItems, TakeTheirLastColorAndLock) {
  Scene scene;
  scene.clip(0, 10, {}).entry(0, 0, 0, 3, true).entry(0, 0, 0, 4, true).entry(0, 0, 0).place(0, 0);
  scene.items();
  EXPECT_EQ(scene.made.tracks[0].midi_items[0].color, 4);
  EXPECT_FALSE(scene.made.tracks[0].midi_items[0].locked);
}

TEST(MidiItems, AreEmptyFromWhereTheirEventsMultiplyTheSession) {
  // A message never read here, of 400 MB: two placements of it are what a project may hold.
  Scene scene;
  scene.clip(0, 960000, {{0, 1000}});
  static const char kByte = 'x';
  scene.midi.streams.back().note_count = 1;
  scene.midi.streams.back().sysex.push_back({Scene::kZero, {&kByte, std::size_t{400} << 20}});
  for (int i = 0; i < 3; ++i) scene.place(0, i * 960000);
  scene.items();
  EXPECT_EQ(scene.made.counts.sysex, 2);
  EXPECT_EQ(scene.made.counts.emptied_clips, 1);
  EXPECT_EQ(scene.made.tracks.at(0).midi_items.at(2).content.notes, nullptr);
}

TEST(SampleBasedMidi, CountsInSamplesEntryByEntry) {
  Scene scene;
  scene.clip(-24, 48, {{24, 12}, {72, 48}}).clip(0, 9600, {{0, 48}}).entry(1, 1000, 2);
  // At this rate and tempo a sample is an item tick.
  scene.clock.rate = 1000;
  const std::uint64_t day = 86400 * 1000;
  scene.midi.playlists.positions["T"] = {{0, 1000}, {1, 7000}, {0, day - 1}, {0, day}, {0, kTickOrigin}};
  for (const std::uint32_t clip : {1U, 0U, 1U, 0U, 0U, 0U, 0U}) scene.place(clip, 50);
  scene.midi.placements[0].start = 1000;
  scene.midi.placements[1].start = 2000;
  scene.place(0, 50, "U");
  scene.place(1, 50, "U");
  // The second clip is found behind the first, then from the start; the walk goes on from the farthest.
  EXPECT_EQ(scene.items(),
            "7000000+9600000, 86399999000+48000@24000, 7000000+9600000, 50+48@24, 50+48@24, 1000000+48000@24000, "
            "1000000+48000@24000, 50+48@24, 50+9600");
  EXPECT_EQ(scene.made.counts.sample_based_clips, 5);
  EXPECT_EQ(scene.made.counts.sample_based_covered, 1);
  EXPECT_EQ(scene.made.counts.cut_clips, 0);
  EXPECT_EQ(scene.made.sample_based.size(), 1U);
  scene.midi.placements.erase(scene.midi.placements.begin());
  scene.items();
  EXPECT_EQ(scene.events(), "24 90 3c 64, 36 80 3c 0, (72 90 3c 64), (120 80 3c 0)");
}

TEST(MidiPositions, FollowTheTempoMapAndASongStart) {
  Scene scene;
  scene.clip(-500, 2000, {{2499, 1001}}).place(0, -500);
  scene.clock.tempo.song_start = 0.0004;
  // Before the timeline's start nothing can stand; what rings past the end does so at the session's tempo.
  EXPECT_EQ(scene.items(), "0+2900@500");
  scene.clock.tempo.events = {{0, 62.5}, {1000, 31.25}};
  scene.midi.placements[0].start = 500;
  EXPECT_EQ(scene.items(), "900+4500@500");
}

TEST(MidiNames, GoByEqualNamesThenHeadsThenPlaces) {
  const struct {
    std::vector<std::string_view> tracks, audio, strips;
    const char* names;
  } rows[] = {
      {{"Keys", "Bass"}, {}, {"Bass", "Keys"}, "Keys, Bass"},
      // The extension and the number of the list's name go; a head is at least three bytes.
      {{"Keys.1"}, {}, {"My Keys", "KEYS_02"}, "KEYS_02()"},
      {{"V1 Synth"}, {}, {"v2 synth", "V1 lead"}, "V1 lead()"},
      // A used entry, an audio track's and an empty one are none.
      {{"Key", "Key2"}, {}, {"Keys", "Key"}, "Key, Keys()"},
      {{"Key1"}, {"Keys"}, {"Keys", "Keyboard"}, "Keyboard()"},
      {{"Pad"}, {"Lead"}, {"Lead"}, "Pad"},
      {{"Pad"}, {}, {""}, "Pad"},
      // By place, where it is free.
      {{"Pad", "Bell", "Gong"}, {}, {"Bell", "Strings"}, "Pad, Bell, Gong"},
      {{"Pad", "Bell", "Gong"}, {}, {"Flute", "Bell", "Oboe"}, "Flute(), Bell, Oboe()"},
      {{"Pad", "Gong 1"}, {}, {"Gongs", "Oboe"}, "Gongs(), Oboe()"},
  };
  for (const auto& row : rows) {
    Scene scene;
    scene.clip(0, 10, {});
    for (std::size_t i = 0; i < row.tracks.size(); ++i) scene.place(0, 0, row.tracks[i], static_cast<std::uint16_t>(i));
    for (const std::string_view name : row.audio) scene.audio.emplace_back().pt_name = name;
    scene.strips = row.strips;
    EXPECT_EQ(scene.names(), row.names);
  }
}

}  // namespace
}  // namespace frt
