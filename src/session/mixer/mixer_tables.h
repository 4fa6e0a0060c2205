// The session's mixer and track list as plain records.
//
// Texts are views into the session image, which outlives every table. Positions of automation are as stored: samples,
// or ticks (1/960000 of a quarter note).
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "session/strip_kind.h"

namespace frt {

struct StripRow {
  std::uint64_t start = 0, end = 0;  // the block's place in the image
  StripKind kind = StripKind::kAudio;
  std::string_view original_name;
  std::string_view current_name;  // the track table's name where the names line up
  bool row_active = true;
  // The row's name block holds a text of length 0 (its current name is then its name).
  bool name_block_empty = false;
  bool has_name_block = false;

  // The current name, or the original one if that is empty.
  std::string_view label() const { return current_name.empty() ? original_name : current_name; }
};

// Points of one automation lane in Pro Tools' units.
struct AutomationLane {
  std::vector<std::pair<double, double>> points;  // position, value
  double initial = 0;
  bool in_ticks = false;

  bool moves() const { return !points.empty(); }
};

struct SendRecord {
  std::string_view bus;  // what it feeds, as the session names it
  double level_db = 0;
  bool active = true;
  // Filled where the strip's row is read for its routes.
  bool post_fader = false;
  AutomationLane volume_lane, mute_lane, first_pan_lane, second_pan_lane;
  std::int32_t left_pan = 0, right_pan = 0;  // the pan knobs, -100 to 100, 0 where there is none
  int pan_count = 0;                         // pan knobs read: 0, 1 or 2
};

// One path of the I/O setup, as routes name it.
struct Route {
  static constexpr std::uint8_t kBus = 2;
  static constexpr std::uint8_t kLegs = 6;  // carries an extra output pair of a source track
  static constexpr std::size_t kMostChannels = 16;

  std::uint32_t id0 = 0, id1 = 0;
  std::uint8_t kind = 0;
  std::string_view name;
  std::vector<std::uint16_t> channels;  // at most kMostChannels

  bool operator==(const Route&) const = default;
};

// What the row of an audio or instrument strip tells of its way through the mixer.
struct TrackRouting {
  std::string_view name;
  // The name of the strip whose level record lies in the row, or `name`. Every pass speaks of the row by it.
  std::string_view display_name;
  std::uint64_t row_start = 0, row_end = 0;
  std::vector<SendRecord> sends;
  std::string_view output;  // the main output's path
  bool no_output = false;   // the row names no main output at all
  std::string_view input_bus;
  std::uint32_t input_id0 = 0, input_id1 = 0;
  std::int32_t input_kind = -1;  // -1 without an input path
  std::uint64_t input_position = 0;
};

// A route of kind kLegs whose two ends are known.
struct LegRoute {
  std::size_t source = 0, target = 0;  // rows of Mixer::routing
  std::uint16_t first_channel = 0;     // at least 1: channels 1 and 2 leave the source's second pair, 3 and 4 its third
};

// One strip of the session's track table, by index.
struct StripRecord {
  std::string_view name;
  double fader_db = 0;
  std::int32_t pan = 0;         // -100 to 100
  std::int32_t second_pan = 0;  // the right pan of a stereo strip
  bool muted = false;
  bool has_mixer_data = false;
  std::vector<SendRecord> sends;
  std::uint64_t record_position = 0;  // of the level record's value, 0 if none
  // Filled from the strip's automation lanes. Volume and trim count tenths of a dB, mute 1 for muted, pan -100 to 100.
  std::uint32_t lane_count = 0;
  // How many groups hold a pan lane, where these tell the strip's width; else lane_count tells it.
  std::optional<std::uint32_t> pan_groups;
  bool is_stereo = false;
  std::int32_t dual_pan = 0;  // 0: a stereo strip's sides rest hard left and right; else they are panned apart
  AutomationLane volume_lane, mute_lane, pan_lane, trim_lane, right_pan_lane, dual_left_lane;
  bool has_panner_level = false;
  AutomationLane panner_level_lane;  // a surround panner's level
  // A surround panner's lanes, one list a side: 7 lanes or none.
  std::vector<AutomationLane> panner_lanes[2];

  bool dual_pan_moves() const { return dual_pan != 0 && (dual_left_lane.moves() || right_pan_lane.moves()); }
};

// A strip that is neither mono nor stereo: read as mono, and no single pan of its means what a mono strip's does.
struct UnusualStrip {
  std::string_view name;
  std::uint32_t lane_count = 0;
};

enum class AutomationMode : std::int8_t { kUntold = -1, kOff, kRead, kTouch, kLatch, kWrite, kTouchLatch };

// A yes or no that a session may not tell.
enum class Told01 : std::int8_t { kUntold = -1, kNo, kYes };

struct TrackRow {
  bool visible = true;
  int row_height = 0;  // pixels
  int display_position = 0;
  Told01 solo = Told01::kUntold;
  Told01 solo_safe = Told01::kUntold;
  AutomationMode automation_mode = AutomationMode::kUntold;
  std::string_view comment;
};

// One row of the edit window.
struct DisplayRow {
  static constexpr std::uint16_t kBasicFolder = 11;  // a row type

  std::string_view name;
  std::uint16_t row_type = 0;
  std::uint8_t width = 0;
  bool has_track = false;
  std::uint64_t display_id = 0;
};

// What a MIDI row tells beside its notes.
struct MidiTrackState {
  bool muted = false;
  bool has_mute_lane = false;
  bool other_lanes = false;
  AutomationLane mute_lane;
};

struct MidiStripSetup {
  int cc7 = -1;   // fader value, -1 for none
  int cc10 = -1;  // pan value
  int program = -1;
};

// What a MIDI track can play to, by number from 1.
struct MidiDevice {
  std::string_view name;
  bool is_plugin_node = false;  // a plug-in of this session
};

// A MIDI track that plays an instrument on another track.
struct MidiElsewhere {
  std::string_view track;
  std::string_view instrument;
};

// MIDI Real-Time Properties of Pro Tools.
struct RealTimeProperties {
  bool quantize_on = false, duration_on = false, delay_on = false, velocity_on = false, transpose_on = false;
  int delay_ticks = 0;  // 960 to the quarter note
  int velocity_percent = 100;
  int velocity_offset = 0;
  int octaves = 0;
  int semitones = 0;

  bool any_on() const { return quantize_on || duration_on || delay_on || velocity_on || transpose_on; }
};

}  // namespace frt
