// A plug-in's settings as its REAPER build takes them, from what Pro Tools stored of its AAX build.
#pragma once

#include <string_view>

#include "base/bytes.h"
#include "plugins/knowledge.h"
#include "session/inserts/insert_tables.h"
#include "state/containers.h"

namespace frt {

struct TransformOptions {
  bool track_has_midi = false;
  bool keep_plugin_midi = false;  // --keep-plugin-midi
  bool kontakt_state = true;      // --no-kontakt-state clears it
  bool vst2_override = false;     // the insert's key was moved to its VST2 build
};

struct TransformedState {
  StateBytes bytes;               // empty: nothing could be carried
  bool midi_trigger_off = false;  // a MIDI trigger was switched off in it
};

// `image` is the session's, which the insert's positions count in. Every path makes a form that is known or gives
// nothing: settings that a plug-in would take wrongly are worse than its defaults.
TransformedState transform_state(const InsertRecord& insert, const KnowledgeRecord& record, ByteView image,
                                 const TransformOptions& options);

// Switches the MIDI trigger off in a state that came whole from the session; true if it did. For plug-ins that have
// one, on tracks that carry MIDI.
bool switch_off_midi_trigger(std::string_view signature, StateBytes& state, const TransformOptions& options);

}  // namespace frt
