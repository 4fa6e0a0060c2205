// Makes the demo session: "Demo Session/Demo Session.ptx" with its audio, in the folder given (here by default).
// Four bars: two at 120 BPM, two at 100. Change what you like, run it, convert the result.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <string>
#include <vector>

#include "support/session_builder.h"

namespace {

using namespace frt::test;

constexpr std::uint32_t kRate = 48000;
using Sound = std::vector<double>;  // -1 to 1

// A plucked string: a burst of noise goes round in a loop that dulls it a little each time.
void pluck(Sound& sound, std::size_t at, double hertz, double level, std::uint32_t seed) {
  Sound string(static_cast<std::size_t>(kRate / hertz));
  for (double& value : string) {
    seed = seed * 1664525 + 1013904223;
    value = static_cast<double>(seed >> 16) / 32768.0 - 1.0;
  }
  for (std::size_t i = 0; at + i < sound.size(); ++i) {
    double& now = string[i % string.size()];
    const double next = string[(i + 1) % string.size()];
    sound[at + i] += level * now;
    now = 0.498 * (now + next);
  }
}

Sound plucks(double seconds, double each, const std::vector<double>& notes, double level, std::uint32_t seed) {
  Sound sound(static_cast<std::size_t>(seconds * kRate));
  double at = 0;
  for (const double hertz : notes) {
    pluck(sound, static_cast<std::size_t>(at * kRate), hertz, level, seed++);
    at += each;
  }
  return sound;
}

// A sine that falls from `high` to `low` hertz and dies away.
Sound drum(double seconds, double high, double low) {
  Sound sound(static_cast<std::size_t>(seconds * kRate));
  double phase = 0;
  for (std::size_t i = 0; i < sound.size(); ++i) {
    const double left = 1 - static_cast<double>(i) / static_cast<double>(sound.size());
    phase += 2 * std::numbers::pi * (low + (high - low) * left * left * left) / kRate;
    sound[i] = 0.8 * left * left * std::sin(phase);
  }
  return sound;
}

// WAV, 16 bit, mono.
void write_wav(const std::filesystem::path& path, const Sound& sound) {
  const auto bytes = static_cast<std::uint32_t>(sound.size() * 2);
  BlockWriter w;
  w.raw("RIFF").u32(36 + bytes).raw("WAVEfmt ").u32(16).u16(1).u16(1).u32(kRate).u32(kRate * 2).u16(2).u16(16);
  w.raw("data").u32(bytes);
  for (const double value : sound) w.i16(static_cast<int>(std::lround(std::clamp(value, -1.0, 1.0) * 32767)));
  const std::vector<std::uint8_t> file = w.take();
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(file.data()), static_cast<std::streamsize>(file.size()));
}

// The sample at which a quarter note begins.
std::uint64_t beat(unsigned number) { return number < 8 ? number * 24000U : 8 * 24000U + (number - 8) * 28800U; }

}  // namespace

int main(int argc, char** argv) {
  const std::filesystem::path folder = std::filesystem::path(argc > 1 ? argv[1] : ".") / "Demo Session";
  const std::filesystem::path audio = folder / "Audio Files";
  std::filesystem::create_directories(audio);

  SessionBuilder s;
  s.rate(kRate).saved_by("Pro Tools", "12.5.0").recording(16, false, 3, 2).timecode(2, 0).grid(0, 1, 0);
  s.tempo(120).tempo_event(8 * kQuarter, 100).meter(0, 1, 4, 4);

  const auto mono = [&](const std::string& name, const Sound& sound) {
    write_wav(audio / name, sound);
    return s.audio_file(name, sound.size());
  };
  const AudioFile kick = mono("Kick.wav", drum(0.4, 160, 45));
  const AudioFile bass = mono("Bass.wav", plucks(4, 1, {55, 65.41, 49, 73.42}, 0.7, 11));
  const AudioFile lead =
      mono("Lead.wav", plucks(3, 0.25, {440, 523.25, 587.33, 659.25, 587.33, 523.25, 440, 392}, 0.5, 23));
  const AudioFile guide = mono("Guide.wav", drum(0.1, 1500, 900));
  const std::vector<double> chords = {220, 261.63, 196, 246.94};
  const Sound left = plucks(4, 1, chords, 0.45, 31), right = plucks(4, 1, {330, 392, 293.66, 369.99}, 0.45, 47);
  write_wav(audio / "Guitar.L.wav", left);
  write_wav(audio / "Guitar.R.wav", right);
  const AudioFile guitar = s.stereo_file("Guitar", left.size());

  Track& kicks = s.track("Kick").fader_db(-2).height(60);
  for (unsigned i = 0; i < 16; ++i) kicks.clip(kick).at(beat(i));

  Track& bass_line = s.track("Bass").fader_db(-4.5).pan(-10).comment("DI only, reamp later");
  for (unsigned i = 0; i < 8; ++i) {
    bass_line.clip(bass).name("Bass-0" + std::to_string(i + 1)).at(beat(2 * i)).offset(i % 4 * 48000).length(43200);
    bass_line.playlists.front().clips.back().fade_out(4800, FadeShape::kEqualPower);
  }

  Track& guitars = s.stereo_track("Guitar").fader_db(-3).height(120);
  guitars.clip(guitar).name("Guitar-01").at(0).length(96000);
  guitars.clip(guitar).name("Guitar-02").at(96000).length(96000).offset(96000).gain_db(-1.5).color(51);
  guitars.crossfade(96000, 4800, 2400, FadeShape::kEqualPower);
  guitars.clip(guitar).name("Guitar-03").at(beat(8)).length(144000).fade_in(9600).fade_out(24000, FadeShape::kSCurve);

  Track& leads = s.track("Lead").pan(25).fader_db(-6);
  leads.clip(lead).name("Lead-01").at(beat(4)).gain_line({{0, -6}, {48000, 0}, {144000, -12}});
  leads.clip(lead).name("Lead-02").at(beat(12)).offset(48000).length(72000).fade_in(240).fade_out(12000).locked();
  leads.playlist("Lead.01").clip(lead).name("Lead-03").at(beat(8)).length(96000);

  Track& guides = s.track("Guide").mute().height(32);
  for (unsigned i = 0; i < 16; i += 4) guides.clip(guide).at(beat(i));

  s.aux("Verb").fader_db(-12);
  s.master("Master 1").fader_db(-1);
  s.marker("Start", 0);
  s.marker("Slower", 8 * kQuarter).ticks().color(51);
  s.region("Guitar fades in", beat(8), beat(12));

  s.save((folder / "Demo Session.ptx").string());
  std::printf("%s\n", (folder / "Demo Session.ptx").string().c_str());
}
