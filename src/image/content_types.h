// The content types of blocks that the program knows: code, name and what such a block holds. Nothing else in the
// program writes a content type as a number.
#pragma once

#include <cstdint>
#include <string_view>

// X(name, code, what it holds)
#define FRT_CONTENT_TYPES(X)                                                         \
  X(kProduct, 0x0003, "the product that saved the session")                          \
  X(kAudioFileFacts, 0x1001, "length of an audio file")                              \
  X(kAudioFile, 0x1003, "one audio file")                                            \
  X(kAudioFiles, 0x1004, "root: the audio file list")                                \
  X(kOldMidiClip, 0x1007, "one MIDI clip, older form")                               \
  X(kOldClip, 0x1008, "one audio clip, older form")                                  \
  X(kOldClipList, 0x100b, "root: the audio clip list, older form")                   \
  X(kOldPlacement, 0x100e, "a clip on a track, older form")                          \
  X(kOldPlacementList, 0x100f, "placements of a track, older form")                  \
  X(kOldTrackPlacements, 0x1011, "one track's placements, older form")               \
  X(kOldPlacements, 0x1012, "root: placements of all tracks, older form")            \
  X(kTrackEntry, 0x1014, "a playlist's name, channels and id")                       \
  X(kTrackEntries, 0x1015, "root: the list of playlists with their channel numbers") \
  X(kPluginName, 0x1017, "a plug-in's name with its signature")                      \
  X(kIoPath, 0x1021, "one path of the I/O setup: input, output, bus or insert")      \
  X(kIoSetup, 0x1022, "root: the I/O setup")                                         \
  X(kSettings, 0x1028, "root: rate, recording format, pan depth")                    \
  X(kLevelRecord, 0x1029, "fader, pan and mute of a strip, or a send's level")       \
  X(kRowHead, 0x102d, "head of a strip row: solo and automation mode")               \
  X(kInsert, 0x1038, "a plug-in insert with its settings")                           \
  X(kNameList, 0x103a, "volumes, folders and files by name")                         \
  X(kPropertiesChild, 0x103d, "inside real-time properties")                         \
  X(kPlacement, 0x104f, "a clip on a track, inside its entry")                       \
  X(kPlacementList, 0x1050, "one entry of a playlist")                               \
  X(kPlaylist, 0x1052, "one playlist")                                               \
  X(kPlaylists, 0x1054, "root: the audio playlists")                                 \
  X(kMidiPlacementList, 0x1056, "one entry of a MIDI playlist")                      \
  X(kMidiPlaylist, 0x1057, "one MIDI playlist")                                      \
  X(kMidiPlaylists, 0x1058, "root: the MIDI playlists")                              \
  X(kMidiData, 0x2000, "root: the notes of all MIDI clips")                          \
  X(kOldMidiClipGroup, 0x2001, "MIDI clips, older form")                             \
  X(kOldMidiClipList, 0x2002, "root: the MIDI clip list, older form")                \
  X(kActivityMark, 0x200b, "behind the word that says whether a strip is active")    \
  X(kTrackData, 0x2015, "a track's visibility, height, position and comment")        \
  X(kTempoMap, 0x2028, "the tempo map")                                              \
  X(kMeterMap, 0x2029, "the meter map")                                              \
  X(kMidiDevices, 0x2004, "the MIDI device list")                                    \
  X(kMidiDevice, 0x2005, "one MIDI device")                                          \
  X(kMidiDeviceName, 0x2006, "a MIDI device's name")                                 \
  X(kMidiSetup, 0x2036, "fader, pan and program of a MIDI strip")                    \
  X(kTimecode, 0x204d, "timecode rate and session start")                            \
  X(kGrid, 0x2066, "grid and nudge")                                                 \
  X(kSessionFacts, 0x2067, "version, the session's own place on disc")               \
  X(kMemoryLocation, 0x2077, "one memory location")                                  \
  X(kPluginNode, 0x2097, "inside a MIDI device that is a plug-in")                   \
  X(kColorCoding, 0x20a2, "colour coding of tracks and clips")                       \
  X(kClipLoop, 0x242b, "a clip's loop, inside its entry")                            \
  X(kDisplayPosition, 0x2434, "inside track data, before the position")              \
  X(kRealTimeProperties, 0x2502, "MIDI real-time properties of a strip")             \
  X(kTrackTable, 0x2519, "root: the rows of the edit window")                        \
  X(kTrackTableEntry, 0x251a, "one row of the edit window")                          \
  X(kCompoundMark, 0x2523, "inside a clip group that holds audio")                   \
  X(kLane, 0x260a, "one automation lane")                                            \
  X(kControlPoints, 0x260b, "points of an automated plug-in control")                \
  X(kLaneGroup, 0x260c, "automation lanes of one channel")                           \
  X(kMixGroup, 0x260d, "level record and lanes of one mix")                          \
  X(kSlot, 0x260e, "an insert or key input slot")                                    \
  X(kControl, 0x260f, "one automated plug-in control")                               \
  X(kMidiMix, 0x2611, "setup and lanes of a MIDI strip")                             \
  X(kHardwareInsert, 0x2612, "a hardware insert")                                    \
  X(kBypassMark, 0x2614, "behind the byte that says whether an insert is bypassed")  \
  X(kStripName, 0x2619, "a strip row's own name")                                    \
  X(kAudioRow, 0x261b, "strip row of an audio or aux track")                         \
  X(kStripWrapper, 0x261c, "a strip row with the playlists of its track")            \
  X(kMasterRow, 0x261d, "strip row of a master fader")                               \
  X(kVcaRow, 0x261f, "strip row of a VCA master")                                    \
  X(kMidiRow, 0x2620, "strip row of a MIDI track")                                   \
  X(kInstrumentRow, 0x2621, "strip row of an instrument track")                      \
  X(kVideoRow, 0x2623, "strip row of a video track")                                 \
  X(kVisibility, 0x2627, "behind the byte that says whether a row is active")        \
  X(kClipHeader, 0x2628, "name and numbers of a clip or clip group")                 \
  X(kClip, 0x2629, "one audio clip")                                                 \
  X(kClipList, 0x262a, "root: the audio clip list")                                  \
  X(kClipGroup, 0x262b, "one clip group, or a compound MIDI clip")                   \
  X(kClipGroupList, 0x262c, "root: the clip groups")                                 \
  X(kFade, 0x262f, "one fade")                                                       \
  X(kFreezeTable, 0x2632, "the clips of freeze renders")                             \
  X(kMidiClipGroup, 0x2633, "MIDI clips")                                            \
  X(kMidiClipList, 0x2634, "root: the MIDI clip list")                               \
  X(kGainTable, 0x2637, "clip gain lines")

namespace frt::content {

#define FRT_CONSTANT(name, code, meaning) inline constexpr std::uint16_t name = code;
FRT_CONTENT_TYPES(FRT_CONSTANT)
#undef FRT_CONSTANT

struct Type {
  std::uint16_t code;
  std::string_view name;  // as above, with its "k"
  std::string_view meaning;
};

inline constexpr Type kTypes[] = {
#define FRT_ROW(name, code, meaning) {code, #name, meaning},
    FRT_CONTENT_TYPES(FRT_ROW)
#undef FRT_ROW
};

// Null for a code that the program doesn't know.
constexpr const Type* find(std::uint16_t code) {
  for (const Type& type : kTypes) {
    if (type.code == code) return &type;
  }
  return nullptr;
}

}  // namespace frt::content
