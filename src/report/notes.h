// The console notes: what a run tells in plain words about what was carried, approximated and lost.
//
// The rows stand in note_table.cpp, in printing order. Passes count; nothing here computes a conversion result.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "model/tempo.h"
#include "run/counters.h"
#include "run/options.h"
#include "session/intake.h"
#include "session/session_settings.h"
#include "session/tables.h"

namespace frt {

// Clips that keep REAPER busy with their peaks on first open.
struct LongClips {
  int count = 0;            // clips over ten minutes
  double longest_clip = 0;  // minutes, over all clips
  double longest_file = 0;  // minutes, over all audio files
};

// `clips` is the session's audio clip list, `file_lengths` the lengths of its audio files; lengths in samples.
// A rate below 1 counts as 48000 Hz.
LongClips find_long_clips(std::span<const ClipRecord> clips, std::span<const std::int64_t> file_lengths,
                          std::int64_t rate);

// What the notes read.
struct NotesInput {
  const ConversionOptions& options;
  const RunCounters& counters;
  const SavedBy& saved_by;
  bool dark_theme_default = false;  // the session is new enough for Pro Tools' Dark theme, or doesn't say
  std::int64_t session_rate = 0;    // Hz, as read
  const TempoMap& tempo;
  std::span<const MeterEvent> meters;
  std::span<const StripRecord> strips;
  const SessionSettings& settings;
  const std::string& output_path;   // the project as written
  const std::string& media_folder;  // without a separator at its end
  LongClips long_clips;
};

// From "Read:" to the plug-ins: after the project is closed, before the media step is reported.
void print_notes(const NotesInput& in);
// What the media check found: after the media step is reported.
void print_media_notes(const NotesInput& in);
// After the report stage: long clips, recording format, media folder, privacy.
void print_closing_notes(const NotesInput& in);

// A frame count as "hh:mm:ss:ff", with ";" before the frames if `drop` is set. `rate` is frames per second; from
// 101 on the frames take three digits. A rate of 0 gives an empty text.
std::string timecode_text(std::uint32_t frames, std::uint32_t rate, bool drop);

}  // namespace frt
