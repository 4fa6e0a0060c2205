// The whole of what a run says after the project is written, group by group. Whoever tells something new adds a row to
// its subject in notes/ and a group here only where nothing of its subject prints yet. A heading without groups holds
// the place of rows whose counts no pass makes yet.
#include "report/note_order.h"

#include "report/notes/subjects.h"

namespace frt {
namespace {

using Group = NoteGroup (*)();

// Said as soon as it is known, ahead of the project's name.
constexpr Group kMixNotes[] = {
    notes::multi_mono_pairs,
};

constexpr Group kRunNotes[] = {
    // ---- Result of the run, totals ----
    notes::read_and_written,
    notes::blank_line,
    notes::totals,

    // ---- MIDI controllers and SysEx ----
    notes::midi_data,

    // ---- Strips and sends ----
    notes::strips,
    notes::sends,
    notes::midi_tracks,
    notes::outputs,
    // The click's player.
    notes::send_settings,

    // ---- Inserts and key inputs ----
    notes::insert_states,
    notes::key_inputs,
    notes::midi_triggers,
    notes::keys_left,

    // ---- Automation ----
    notes::send_automation,
    notes::master_fader,
    notes::automation_points,
    notes::midi_events,
    notes::dual_pan,
    notes::parameter_automation,
    notes::automated_tracks,

    // ---- Tempo ----
    notes::tempo,

    // ---- Clips ----
    notes::clips,
    notes::stand_ins_left_out,

    // ---- Options and colours ----
    notes::color_options,
    notes::plugin_builds,
    notes::track_colors,

    // ---- Meter and markers ----
    notes::meter,
    notes::markers,

    // ---- Colour schemes ----
    // Track and clip coding.
    notes::pan_law,
    notes::color_theme,

    // ---- Clip gain lines ----
    notes::gain_lines,

    // ---- Groups ----
    // Mix, VCA and edit groups.
    notes::further_masters,

    // ---- Track state ----
    notes::track_state,
    notes::midi_faders,
    notes::automation_modes,
    notes::patches,
    notes::orphan_playlists,
    notes::comments,

    // ---- Trim and polarity ----
    notes::trims,

    // ---- Wide tracks, solo ----
    notes::surround_folds,
    notes::soloed_and_muted,

    // ---- Folders ----
    notes::one_sided_trims,

    // ---- Clip Effects and Melodyne ----

    // ---- Stand-ins ----
    notes::stand_ins,

    // ---- Timebase ----
    notes::item_timebase,

    // ---- Real-Time Properties ----
    notes::real_time_properties,

    // ---- Recording format and timecode ----
    notes::recording_format,
    notes::timecode,

    // ---- CLAP builds ----
    notes::clap_builds,

    // ---- Surround buses and panners ----
    notes::surround_buses,
    notes::trims_without_effect,

    // ---- Locks and grid ----
    notes::clip_locks,
    notes::grid,
    notes::sample_based_midi,

    // ---- Video ----

    // ---- Group checks, hardware inserts ----
    notes::hardware_inserts,

    // ---- Timebase of tracks ----
    notes::track_timebase,
    notes::sync_points,

    // ---- Clip groups, stretched clips ----

    // ---- Folding ----
    notes::folded_tracks,
    notes::one_sided,
    notes::wide_strips,
    notes::fixed_lanes,

    // ---- Selection and order ----
    notes::selection,
    notes::freeze_records,
    notes::silenced_tracks,
    notes::track_names,

    // ---- Overlaps ----

    // ---- Fades, deleted placements, alternates ----
    notes::fades,
    notes::set_aside,
    // Renamed tracks.
    notes::blank_line,

    // ---- Plug-ins ----
    notes::plugins,
};

constexpr Group kMediaNotes[] = {
    notes::media_files,
};

constexpr Group kClosingNotes[] = {
    notes::long_clips,
    notes::recording_format_left,
    notes::media_folder,
    notes::privacy,
};

}  // namespace

NoteOrder mix_note_order() { return kMixNotes; }
NoteOrder run_note_order() { return kRunNotes; }
NoteOrder media_note_order() { return kMediaNotes; }
NoteOrder closing_note_order() { return kClosingNotes; }

}  // namespace frt
