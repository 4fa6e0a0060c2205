#include "big_session.h"

#include <algorithm>
#include <string>

namespace frt::bench {

using namespace test;

namespace {

constexpr std::size_t kMiB = std::size_t{1} << 20;
constexpr unsigned kPlaylists = 10, kClipsOnTop = 50, kClipsBelow = 3;
constexpr std::uint64_t kClipLength = 96000, kNotesPerClip = 230;

class Random {
 public:
  std::uint32_t next() {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 17;
    return state_ ^= state_ << 5;
  }
  std::uint32_t below(std::uint32_t limit) { return next() % limit; }

 private:
  std::uint32_t state_ = 0x2545F491;
};

// As opaque bytes are in real sessions: half are zero, in runs of about four; the rest is anything.
std::vector<std::uint8_t> opaque(Random& random, std::size_t size) {
  std::vector<std::uint8_t> bytes(size);
  for (std::size_t at = 0; at < size;) {
    for (std::size_t left = 1 + random.below(6); left > 0 && at < size; --left) {
      bytes[at++] = static_cast<std::uint8_t>(random.next() >> 8);
    }
    at += 1 + random.below(7);
  }
  return bytes;
}

void fill_playlist(Playlist& playlist, const AudioFile& file, unsigned count, unsigned number, Random& random) {
  for (unsigned i = 0; i < count; ++i) {
    const std::uint64_t at = (number * 7 + i) * kClipLength + (i % 3 == 2 ? 4800 : 0);
    Clip& clip = playlist.clip(file).name(playlist.name + "-" + std::to_string(i + 1));
    const std::uint32_t offset = random.below(4'000'000);
    clip.at(at).length(kClipLength).offset(offset);
    if (i % 3 == 0) clip.fade_in(240 + random.below(40) * 48);
    if (i % 3 == 2) clip.fade_out(480 + random.below(40) * 48, FadeShape::kEqualPower);
    if (i % 3 == 1) playlist.crossfade(at, 960, 480);
    if (i % 4 == 0) clip.gain_db(-0.5 * random.below(24));
    if (i % 16 == 5) clip.gain_line({{offset, 0}, {offset + 24000, -3.5}, {offset + 48000, 1}});
    if (i % 9 == 4) clip.color(25 + static_cast<int>(random.below(22)));
    if (i % 25 == 11) clip.locked();
    if (i % 25 == 17) clip.deleted();
  }
}

}  // namespace

SessionBuilder big_session(std::size_t bytes) {
  Random random;
  SessionBuilder s;
  s.rate(48000).tempo(120).meter(0, 1, 4, 4).recording(24, false, 3, 2).grid(0, 1, 0);
  const auto scaled = [&](std::size_t per_16_mib) {
    return std::max<std::size_t>(4, per_16_mib * bytes / (16 * kMiB));
  };
  for (std::size_t i = 1; i < scaled(40); ++i) s.tempo_event(i * 16 * kQuarter, 90 + random.below(60));
  for (std::size_t i = 0; i < scaled(64); ++i) s.marker("Cue " + std::to_string(i + 1), i * 480000);

  const std::size_t strips = scaled(64);
  const std::size_t opaque_bytes = bytes / 100 * 60 / strips;
  for (std::size_t n = 0; n < strips; ++n) {
    const std::string number = std::to_string(n + 1);
    const bool stereo = n % 4 == 3;
    const AudioFile file =
        stereo ? s.stereo_file("Take " + number, 40'000'000) : s.audio_file("Take " + number + ".wav", 40'000'000);
    Track& track = stereo ? s.stereo_track("Track " + number) : s.track("Track " + number);
    track.fader_db(-0.1 * random.below(300)).height(30 + static_cast<int>(random.below(90)));
    if (!stereo) track.pan(static_cast<int>(random.below(200)) - 100);
    if (n % 10 == 6) track.mute();
    if (n % 16 == 2) track.comment("Microphone " + number + ", second day, keep the room");
    for (unsigned p = 1; p < kPlaylists; ++p) track.playlist(track.name + "." + std::to_string(p));
    for (unsigned p = 0; p < kPlaylists; ++p) {
      fill_playlist(track.playlists[p], file, p == 0 ? kClipsOnTop : kClipsBelow, p, random);
    }
    const std::size_t state = opaque_bytes / 2 + random.below(static_cast<std::uint32_t>(opaque_bytes));
    track.insert(Insert("OpaqOpaq", opaque(random, state)));
  }
  Track* keys = nullptr;
  for (std::size_t n = 0; n < scaled(400); ++n) {
    const std::uint64_t place = n % 100;
    if (place == 0) keys = &s.midi_track("Keys " + std::to_string(n / 100 + 1));
    std::vector<Note> notes;
    for (std::uint64_t i = 0; i < kNotesPerClip; ++i) {
      notes.push_back({i * kQuarter / 4, kQuarter / 5, static_cast<std::uint8_t>(36 + random.below(48)), 90});
    }
    keys->midi_clip(keys->name + "-" + std::to_string(place + 1), place * 64 * kQuarter, 60 * kQuarter,
                    std::move(notes));
  }
  s.master("Master 1").fader_db(-1.5);

  // What is missing to the size stands in blocks that nothing reads, of a megabyte at most.
  for (std::size_t size = s.image().size(); size + 64 < bytes;) {
    const std::size_t block = std::min(kMiB, bytes - size - 16);
    s.payload(0x2587, opaque(random, block));
    size += block + 9;
  }
  return s;
}

SessionBuilder automation_session(std::size_t points) {
  constexpr std::size_t kLanePoints = 1000;
  Random random;
  SessionBuilder s;
  s.rate(48000).tempo(120);
  for (std::size_t bar = 1; bar < 64; ++bar) s.tempo_event(bar * 16 * kQuarter, 90 + random.below(60));
  const auto points_of = [&](auto value) {
    Automation lane;
    std::uint32_t at = 0;
    for (std::size_t i = 0; i < kLanePoints; ++i) lane.emplace_back(at += 4800 + random.below(9600), value());
    return lane;
  };
  for (std::size_t made = 0; made < points; made += 3 * kLanePoints) {
    Track& track = s.track("Track " + std::to_string(made / (3 * kLanePoints) + 1));
    track.volume_points(points_of([&] { return -0.1 * random.below(300); }));
    track.pan_points(points_of([&] { return static_cast<int>(random.below(201)) - 100; }));
    track.mute_points(points_of([&] { return random.below(2); }));
  }
  return s;
}

SessionBuilder midi_session(std::size_t events) {
  constexpr std::size_t kClipNotes = 500, kTrackClips = 20;
  Random random;
  SessionBuilder s;
  s.rate(48000).tempo(120);
  Track* keys = nullptr;
  for (std::size_t n = 0; n < events / 2 / kClipNotes; ++n) {
    const std::uint64_t place = n % kTrackClips;
    if (place == 0) keys = &s.midi_track("Keys " + std::to_string(n / kTrackClips + 1));
    std::vector<Note> notes;
    for (std::uint64_t i = 0; i < kClipNotes; ++i) {
      notes.push_back({i * kQuarter / 4, kQuarter / 5 + random.below(kQuarter),
                       static_cast<std::uint8_t>(36 + random.below(48)),
                       static_cast<std::uint8_t>(1 + random.below(126))});
    }
    keys->midi_clip(keys->name + "-" + std::to_string(place + 1), place * 128 * kQuarter, 126 * kQuarter,
                    std::move(notes));
  }
  return s;
}

SessionBuilder sends_session(std::size_t sends) {
  constexpr std::size_t kTrackSends = 8, kBuses = 64;
  Random random;
  SessionBuilder s;
  s.rate(48000).tempo(120);
  for (std::size_t made = 0; made < sends; made += kTrackSends) {
    Track& track = s.track("Track " + std::to_string(made / kTrackSends + 1));
    for (std::size_t i = 0; i < kTrackSends; ++i) {
      track.send("Bus " + std::to_string((made + i * 7) % kBuses + 1), -0.1 * random.below(300));
    }
  }
  return s;
}

namespace {

// Four letters for each number.
std::string plugin_code(std::size_t number) {
  std::string code(4, 'a');
  for (char& c : code) {
    c = static_cast<char>('a' + number % 26);
    number /= 26;
  }
  return code;
}

}  // namespace

SessionBuilder inserts_session(std::size_t inserts, std::size_t state_bytes) {
  constexpr std::size_t kTrackInserts = 8;
  Random random;
  SessionBuilder s;
  s.rate(48000).tempo(120);
  for (std::size_t made = 0; made < inserts; made += kTrackInserts) {
    Track& track = s.track("Track " + std::to_string(made / kTrackInserts + 1));
    for (std::size_t i = made; i < made + kTrackInserts; ++i) {
      // Without the mark of a block: of so many bytes some would look like one and hide the rows around them.
      std::vector<std::uint8_t> settings = opaque(random, state_bytes);
      std::replace(settings.begin(), settings.end(), std::uint8_t{'Z'}, std::uint8_t{'z'});
      track.insert(
          Insert("Acme" + plugin_code(2 * i), settings).automate({"Control", 4, 0.5, {{0, 0.5}, {48000, 1}}, "3"}));
    }
  }
  return s;
}

std::string plugin_list(std::size_t plugins) {
  std::string list = "[vstcache]\n";
  for (std::size_t i = 0; i < plugins; ++i) {
    std::size_t uid = 0;
    for (const char c : plugin_code(4 * i)) uid = uid << 8 | static_cast<unsigned char>(c);
    const std::string number = std::to_string(i);
    list += "plug_in_" + number + ".dll=00,";
    list += std::to_string(uid) + ",Plug-in " + number + " (Acme)\n";
  }
  return list;
}

}  // namespace frt::bench
