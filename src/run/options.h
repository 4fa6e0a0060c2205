// Everything the command line can set, and what an embedding caller gets back.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/text.h"

namespace frt {

inline constexpr char kVersion[] = "1.0.1";
inline constexpr char kBuild[] = "287";
// Where failure texts and notes ask people to send a session. A build constant.
inline constexpr char kSupportAddress[] = "support@kestrel.example";
// The page that the privacy paragraph of the report names. A build constant.
inline constexpr char kPrivacyPage[] = "https://kestrel.example/privacy";

// The folder beside a session that holds its audio, by its name and by its path.
inline constexpr char kAudioFolder[] = "Audio Files";
inline std::string default_audio_dir(std::string_view session_path) {
  return folder_of(session_path) + "/" + kAudioFolder;
}

// Filled once by the argument loop, then handed to a run read-only.
struct ConversionOptions {
  std::string session_path;
  std::string output_path;  // empty: derived from the session path
  std::string audio_dir = kAudioFolder;
  bool audio_dir_given = false;
  std::string program_path;  // argument 0 of the process
  std::string vstini_path;   // empty: REAPER's own folders are searched
  std::vector<std::string> param_files;
  std::string want_params_path;
  std::string corpus_dir;       // where --dump-corpus wants its files, empty unless given
  double tempo_override = 0.0;  // BPM; 0 reads the session's tempo
  bool keep_alt_takes = true;
  bool list_only = false;
  bool dump_tables = false;  // print the session's tables and end
  bool no_stretch = false;
  bool recover_deleted = false;
  bool check_only = false;
  bool keep_fade_clips = false;
  bool no_fades = false;
  bool no_click = false;
  bool write_report = false;
  bool dump_cache = false;
  bool dump_cc = false;
  bool no_sidechain = false;
  bool placeholders = true;
  bool overwrite = false;
  bool prefer_vst3 = true;
  bool keep_plugin_midi = false;
  bool aax_slots = true;
  bool skip_missing_fx = false;
  bool kontakt_state = true;
  bool prefer_clap = false;
  bool tempo_ramps = false;
  bool keep_frozen = false;
  bool keep_inaudible_midi = false;
  bool truncate_midi_to_clip = false;
  bool no_track_colors = false;
  bool no_clip_colors = false;
  bool no_stand_ins = false;
  bool no_ara = false;
  bool skip_hidden_tracks = false;
  bool skip_inactive_tracks = false;
  std::string usage_json_path;
  bool usage_shared = false;
  int fx_bypass_mode = 0;  // 0 keep bypassed plug-ins as they are, 1 write them offline, 2 leave them out
  int comments_mode = 1;   // 0 item, 1 project, 2 none
  int pt_theme = 0;        // 0 follow the session, 1 Classic, 2 Dark
};

// Optional record of texts for an embedding caller.
struct ConversionResult {
  std::string report_path;   // empty unless the report file was written
  std::string console_text;  // every byte that went to the text output during the run, also on failure
  std::string report_text;   // the full report, also when no file is written
};

}  // namespace frt
