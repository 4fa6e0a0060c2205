// What happened on the way: counters and name lists of one run. The pass that does the work counts; the notes
// and the report only print. Later passes add their own groups here.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace frt {

struct RunCounters {
  // Reading.
  int name_scan_count = -1;  // names the scan found, where strip rows replaced its list
  int strip_table_size = 0;
  int strips_with_mixer_data = 0;
  bool names_aligned = false;
  std::vector<std::string> wide_strips;  // "name (5 control slots)": neither mono nor stereo

  // Clips.
  int tick_based_tracks = 0, sample_based_tracks = 0;
  int timebase_read_that_way = 0;  // unpaired, every record of the session says the same
  int timebase_judged = 0;         // unpaired, judged by the size of positions
  bool timebase_records_exist = false;
  bool timebase_all_samples = false;  // records exist and none says ticks
  bool sync_points_unmatched = false;
  int fade_clips_dropped = 0;
  int deleted_placements = 0;
  int fades_not_understood = 0, fades_unbound = 0, s_curve_fades = 0;
  int fade_ins = 0, fade_outs = 0, crossfades = 0;
  int clips_with_gain = 0;
  int group_gain_clips = 0;                   // inside a clip group with a fixed gain of its own
  std::vector<std::string> group_gain_lines;  // inside a clip group whose gain is a drawn line: "item" names
  int gain_count_disagrees = 0;
  int colored_placements = 0;  // placements of the session that carry a colour

  // Overlaps, clip groups, warp: built later, 0 at rest.
  int stretched_clips = 0, stretched_from_session = 0;

  // MIDI: built later, 0 at rest.
  int muted_midi_events = 0;      // kept but muted
  int unmuted_midi_events = 0;    // outside a clip's boundary, unmuted under --keep-inaudible-midi
  int notes_past_clip_edges = 0;  // cut under --truncate-midi-to-clip, else their items were lengthened

  // Folding.
  int owner_matches = 0;  // alternate playlists matched to their parent track
  int stereo_merges = 0;
  int surround_folds = 0;
  int alternate_playlists = 0;  // all that the session holds
  int alternates_kept_elsewhere = 0;
  int lanes = 0;

  // Order.
  int empty_tracks = 0;           // strips without clips
  int homeless_lanes_folded = 0;  // lanes folded into a parent that has no clips of its own
  int freeze_records = 0;
  int frozen_tracks_delivered = 0;  // under --keep-frozen; built later
  int unmatched_tracks = 0;
  int inactive_tracks = 0, voice_off_tracks = 0;
  std::vector<std::string> video_tracks;
  int click_left_out = 0;
  std::vector<std::string> click_left_out_names, click_kept;

  // Header.
  int tempo_changes = 0;  // 0 unless the map has at least two events
  int ramps_written = 0, ramps_left = 0;
  double ramp_point_error = 0, ramp_inner_error = 0;  // seconds
  int meter_changes_written = 0;
  int markers = 0, regions = 0, colored_markers = 0, markers_without_time = 0;
  std::vector<std::string> unmapped_marker_colors;
  int master_faders = 0;
  std::string master_name;  // empty: the session has no master fader
  bool recording_format_written = false;
  bool timecode_written = false;
  double project_offset = 0;  // seconds
  bool grid_written = false;
  double grid_quarters = 0;

  // Tracks.
  int tracks_written = 0;
  int return_tracks = 0;
  int sends_written = 0;
  int clips_written = 0;
  int midi_notes = 0;
  int colored_tracks = 0, uncolored_tracks = 0;
  int coded_color_tracks = 0;  // coloured by the session's colour coding
  int automated_tracks = 0;    // set to Read
  int faders_at_unity = 0;
  int automation_points = 0, tracks_with_points = 0;
  int surround_pan_points = 0;  // pan points of wide strips, not written
  int surround_pan_strips = 0;  // wide strips that have such points
  int timebase_time = 0, timebase_beats = 0, timebase_beats_position = 0;
  int tracks_with_height = 0;
  int surround_aux_widths = 0;         // auxes as wide as the surround bus they take
  int surround_panner_lanes_left = 0;  // panner lanes not written
  // Muted tracks that feed a pre-fader send: faders down instead of muted, and those that stay muted.
  std::vector<std::string> prefader_faders_down, prefader_kept_muted;
  int midi_tracks_muted = 0, midi_mute_lanes = 0, midi_other_lanes = 0;
  std::vector<std::string> hidden_tracks, soloed_tracks, solo_safe_tracks, commented_tracks, automation_off_tracks;
  std::vector<std::string> other_mode_tracks;  // " name=Mode", modes other than Read, Off included
  int tracks_not_in_read = 0;
  int soloed_and_muted = 0, soloed_with_mute_points = 0;
  bool solo_keeper = false;
  int orphan_playlists = 0;  // "[alt playlist]" tracks, written muted
  int comment_items = 0;

  // Items.
  int sync_point_clips = 0;
  int locked_clips = 0;
  int gain_envelopes = 0;
  int clips_in_sibling_folders = 0;
  int uncolored_by_option = 0;  // clips that would have carried a colour under --no-clip-colors
  int sibling_hits = 0;
  std::map<std::string, int> sibling_folders;  // folder -> files found there

  // Stand-ins under --no-stand-ins: built later, 0 at rest.
  int stand_ins_left_out = 0;    // Avid plug-ins left in their slot under their Pro Tools name
  int one_sided_trims_lost = 0;  // tracks whose one-sided Trim polarity was left out

  // Media.
  std::vector<std::string> missing_files;

  // Report.
  int needs_look = 0;
};

}  // namespace frt
