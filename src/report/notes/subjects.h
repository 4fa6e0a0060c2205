// Every group of note rows, by the file of its subject. A row stands in the group of its subject, in its printing
// order there; note_order.cpp says in which order the groups print.
#pragma once

#include "report/note_row.h"

namespace frt::notes {

// automation.cpp
NoteGroup automation_points();
NoteGroup dual_pan();
NoteGroup automated_tracks();
NoteGroup automation_modes();

// clips.cpp
NoteGroup clips();
NoteGroup gain_lines();
NoteGroup clip_locks();
NoteGroup sync_points();
NoteGroup fades();

// colours.cpp
NoteGroup color_options();
NoteGroup track_colors();
NoteGroup color_theme();

// folding.cpp
NoteGroup orphan_playlists();
NoteGroup folded_tracks();
NoteGroup fixed_lanes();
NoteGroup set_aside();

// freeze.cpp
NoteGroup freeze_records();

// markers.cpp
NoteGroup markers();

// media.cpp
NoteGroup media_files();
NoteGroup long_clips();
NoteGroup media_folder();

// midi.cpp
NoteGroup midi_data();
NoteGroup midi_tracks();
NoteGroup midi_events();
NoteGroup midi_faders();
NoteGroup patches();
NoteGroup real_time_properties();
NoteGroup sample_based_midi();

// mixer.cpp
NoteGroup strips();
NoteGroup master_fader();
NoteGroup further_masters();

// plugins.cpp
NoteGroup insert_states();
NoteGroup midi_triggers();
NoteGroup parameter_automation();
NoteGroup plugin_builds();
NoteGroup clap_builds();
NoteGroup hardware_inserts();
NoteGroup plugins();

// privacy.cpp
NoteGroup privacy();

// result.cpp
NoteGroup read_and_written();
NoteGroup blank_line();
NoteGroup totals();

// routing.cpp
NoteGroup multi_mono_pairs();
NoteGroup sends();
NoteGroup outputs();
NoteGroup send_settings();
NoteGroup key_inputs();
NoteGroup keys_left();
NoteGroup send_automation();
NoteGroup one_sided();

// settings.cpp
NoteGroup pan_law();
NoteGroup recording_format();
NoteGroup timecode();
NoteGroup grid();
NoteGroup recording_format_left();

// stand_ins.cpp
NoteGroup stand_ins_left_out();
NoteGroup trims();
NoteGroup one_sided_trims();
NoteGroup trims_without_effect();
NoteGroup stand_ins();

// surround.cpp
NoteGroup surround_folds();
NoteGroup surround_buses();
NoteGroup wide_strips();

// tempo.cpp
NoteGroup tempo();
NoteGroup meter();

// timebase.cpp
NoteGroup item_timebase();
NoteGroup track_timebase();

// tracks.cpp
NoteGroup track_state();
NoteGroup comments();
NoteGroup soloed_and_muted();
NoteGroup selection();
NoteGroup silenced_tracks();
NoteGroup track_names();

}  // namespace frt::notes
