// The session's setup window as far as a project carries it: timecode, recording format, pan depth, grid and
// nudge.
#pragma once

#include <cstdint>
#include <string_view>

#include "image/blocks.h"

namespace frt {

struct TimecodeSettings {
  // As the block says; -1 without a block. 5 and 8 are the drop-frame rates of the base table.
  int rate_code = -1;
  std::string_view rate_label = "30";  // for the notes, such as "29.97 drop"
  std::string_view long_label;         // such as "29.97 fps drop frame"; empty for a rate the table doesn't hold
  std::string_view ruler_label;        // the rate without "drop" where REAPER has no such drop setting, else empty
  int timemode_rate = 30;              // frames a second as REAPER's TIMEMODE counts them
  int timemode_mode = 0;               // TIMEMODE's second value: 1 drop-frame, 2 pulled down
  std::uint32_t base_start = 0;        // session start in frames of the base rate
  std::uint32_t start_frames = 0;      // session start in frames of the rate that is written
  double project_offset = 0.0;         // session start in seconds
  bool drop_frame = false;

  // Plain 30 frames from zero is REAPER's own default and needs no line.
  bool differs_from_default() const { return timemode_mode != 0 || timemode_rate != 30 || base_start != 0; }
};

struct RecordingFormat {
  bool depth_read = false;
  int depth_byte = 0;     // bits as stored, whatever the value; 0 if not read
  int depth = 0;          // 16, 24 or 32; 0 for any other
  bool is_float = false;  // only with a depth of 32
  int file_type = 0;      // 3 WAV, 4 AIFF; 0 if not read

  bool is_aiff() const { return file_type == 4; }
};

struct PanDepth {
  bool was_read = false;    // a block holds the value
  int value = 0;            // as stored
  bool recognised = false;  // one of 1 to 4
  double db = -3.0;         // -3 dB, Pro Tools' default, where it isn't recognised
};

// Bars, beats and ticks (960 to the quarter note).
struct MusicalStep {
  long bars = 0;
  long beats = 0;
  long ticks = 0;
  bool any() const { return bars != 0 || beats != 0 || ticks != 0; }
};

struct GridSettings {
  bool nudge_read = false;
  bool grid_read = false;
  MusicalStep nudge;
  MusicalStep grid;
};

// By what Pro Tools colours tracks and clips that have no colour of their own; -1 if the session doesn't say.
struct ColorCoding {
  static constexpr int kMidiChannels = 1;  // "Tracks and MIDI Channels"

  int tracks = -1;  // 0 none, 1 tracks and MIDI channels, 2 tracks and MIDI devices, 3 groups, 4 track type
  int clips = -1;   // the same, then 5 track colour, 6 marker locations, 7 clip list colour
};

struct SessionSettings {
  TimecodeSettings timecode;
  RecordingFormat recording;
  PanDepth pan_depth;
  GridSettings grid;
  ColorCoding color_coding;
};

// Reads them from the timecode block, the settings root (recording format and pan depth), the grid block and the colour
// coding block.
// A block that is missing or too short leaves the defaults above.
SessionSettings read_session_settings(const SessionImage& image);

// A step in quarter notes, in the meter given (the session's first one). Infinite or not a number for a
// denominator of 0.
double quarters_of(const MusicalStep& step, std::uint32_t numerator, std::uint32_t denominator);

}  // namespace frt
