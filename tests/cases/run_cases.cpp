#include <algorithm>

#include "cases/cases.h"

namespace frt::test {
namespace {

// For what a run does, whatever the session holds.
void one_clip(Scene& s) {
  s.track("Vox").clip(s.audio_file("Vox.wav", 48000)).at(48000);
  s.file("Audio Files/Vox.wav");
}

// Where the first block of that content type stands.
std::size_t block_at(const std::vector<std::uint8_t>& image, std::uint16_t type) {
  for (std::size_t p = 20; p + 9 < image.size(); ++p) {
    if (image[p] == 'Z' && image[p + 2] == 0 && image[p + 7] == (type & 255) && image[p + 8] == type >> 8) return p;
  }
  return image.size();
}

// One clip whose strip, marker and settings stand behind its placement.
void damaged(Scene& s, const std::function<void(std::vector<std::uint8_t>&)>& damage) {
  one_clip(s);
  s.marker("Chorus", 48000);
  s.damage = damage;
}

// Something for every part of a report.
void for_a_report(Scene& s) {
  s.saved_by("Pro Tools", "2023.6.0").timecode(5, 1800).recording(32, true, 3, 2).tempo_event(8 * kQuarter, 100);
  s.track("Amb", 6).clip(s.audio_file("Amb.wav", 96000));
  s.track("Vox").solo().mute().playlist("Vox.01").clip(s.audio_file("Vox.wav", 96000));
  s.aux("Verb, the long one, from the hall upstairs");
  s.master("Master 1");
}

}  // namespace

std::vector<Case> run_cases() {
  return {
      {"help", {"--help"}},
      {"version", {"nowhere.ptx", "--pause", "--version", "--bogus"}},
      {"learn", {"--learn", "chain.RfxChain", "AbcdEfgh", "--pause"}},
      {"unknown_option", {"Song.ptx", "--pause", "--bogus"}, one_clip},
      {"no_session", {"--check", "", "--pause"}},
      {"check",
       {"Song.ptx", "--check", "--report", "--usage-json", "usage.json"},
       [](Scene& s) {
         one_clip(s);
         s.file("Song-kestrel-report.txt/a folder where the report belongs");
       }},
      {"report",
       {"Song.ptx", "--report", "--progress", "--usage-json", "usage.json", "--usage-shared", "--no-track-colors",
        "--no-clip-colors", "--no-stand-ins", "--no-sidechain", "--keep-inaudible-midi", "--truncate-midi-to-clip"},
       for_a_report},
      {"self_test", {"Song.ptx"}, one_clip, false, {{"FRT_API_SELFTEST", "1"}}},

      // Where the project goes.
      {"numbered_name",
       {"Song.ptx"},
       [](Scene& s) {
         one_clip(s);
         s.file("Song.rpp", "mine").file("Song (1).rpp", "mine too");
       }},
      {"overwrite",
       {"Song.ptx", "--overwrite", "-o", "Mix.rpp"},
       [](Scene& s) {
         one_clip(s);
         s.file("Mix.rpp", "an older one");
       }},
      {"convert_twice", {"Song.ptx", "--convert-twice", "-o", "out.rpp"}, [](Scene& s) { s.track("Vox"); }},
      {"convert_twice_without_name", {"Song.ptx", "--convert-twice"}, [](Scene& s) { s.track("Vox"); }},
      {"onto_itself", {"Song.ptx", "-o", "./Song.ptx", "--overwrite"}, one_clip},
      {"full_disc", {"Song.ptx", "-o", "/dev/full", "--overwrite", "--usage-json", "usage.json"}, one_clip},

      // Sessions that are refused, or told to be damaged.
      {"missing_session", {"--usage-json", "usage.json", "My", "Song.ptx"}},
      {"missing_session_in_the_app", {"--progress", "no", "such", "song.ptx"}},
      {"older_format", {"--progress", "Song.ptx"}, [](Scene& s) { s.damage = [](auto& image) { image[18] = 1; }; }},
      {"older_name", {"--convert-twice", "-o", "out.rpp", "Song.pts"}, [](Scene& s) { s.file("Song.pts"); }},
      {"empty_file",
       {"Song.ptx", "--progress", "--usage-json", "nowhere/usage.json"},
       [](Scene& s) { s.damage = [](auto& image) { image.clear(); }; }},
      {"rate_out_of_range", {"--progress", "Song.ptx"}, [](Scene& s) { s.rate(32000); }},
      {"no_session_inside", {"--progress", "notes.txt"}, [](Scene& s) { s.file("notes.txt", "buy strings"); }},
      {"no_settings_inside",
       {"Song.ptx"},
       [](Scene& s) { damaged(s, [](auto& image) { image[block_at(image, 0x1028)] = 0; }); }},
      {"truncated",
       {"Song.ptx", "--report", "--progress"},
       [](Scene& s) { damaged(s, [](auto& image) { image.resize(block_at(image, 0x2624) + 90); }); }},
      {"broken_block",
       {"Song.ptx", "--check"},
       [](Scene& s) { damaged(s, [](auto& image) { image[block_at(image, 0x1054)] = 0; }); }},
  };
}

}  // namespace frt::test
