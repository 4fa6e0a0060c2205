// A plug-in's settings as its REAPER build takes them, from what Pro Tools stored of its AAX build.
#pragma once

#include <cstdint>
#include <vector>

#include "base/bytes.h"
#include "plugins/knowledge.h"
#include "session/inserts/insert_tables.h"

namespace frt {

struct TransformOptions {
  bool track_has_midi = false;
  bool keep_plugin_midi = false;  // --keep-plugin-midi
  bool kontakt_state = true;      // --no-kontakt-state clears it
  bool vst2_override = false;     // the insert's key was moved to its VST2 build
};

struct TransformedState {
  std::vector<std::uint8_t> bytes;  // empty: nothing could be carried
  bool midi_trigger_off = false;    // a MIDI trigger was switched off in it
};

// `image` is the session's, which the insert's positions count in.
TransformedState transform_state(const InsertRecord& insert, const KnowledgeRecord& record, ByteView image,
                                 const TransformOptions& options);

}  // namespace frt
