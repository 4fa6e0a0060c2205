// The session's tables as readable rows: a heading a table, a row an entry, nothing for what is at rest.
#include <string_view>

#include "base/path.h"
#include "base/text.h"
#include "image/content_types.h"
#include "session/dump_rows.h"
#include "session/session.h"

namespace frt {
namespace {

void dump_headers(Dump& out, const Session& session) {
  const TempoMap& tempo = session.clock.tempo;
  out.table("session");
  out.row("version " + std::to_string(session.version) + ", " + std::to_string(session.rate) + " Hz, saved by " +
          quoted(session.saved_by.product) + " " + quoted(session.saved_by.version));
  out.row("tempo " + number(tempo.session_tempo) + " BPM" +
          (tempo.has_song_start() ? ", song starts at " + number(tempo.song_start) + " s" : ""));
  table_of(out, "tempo events", tempo.events,
           [](const TempoEvent& e) { return " tick " + number(e.tick) + " " + number(e.bpm) + " BPM"; });
  table_of(out, "meters", session.headers.meters, [](const MeterEvent& m) {
    return " tick " + number(m.position) + " bar " + std::to_string(m.bar) + " " + std::to_string(m.numerator) + "/" +
           std::to_string(m.denominator);
  });
  table_of(out, "locations", session.headers.locations, [](const MemoryLocation& l) {
    static constexpr const char* kKinds[] = {" no-time", " marker", " selection"};
    return " " + quoted(l.name) + kKinds[static_cast<int>(l.kind)] + " " + number(l.start) + " to " + number(l.end) +
           (l.in_samples ? " samples" : " ticks") + Dump::field("palette", l.palette, -2) +
           Dump::field("marker_color", l.marker_color, -1) + Dump::field("rgb", l.stored_rgb, -1);
  });
  const SessionSettings& s = session.headers.settings;
  out.table("settings");
  out.row("timecode rate=" + std::to_string(s.timecode.rate_code) + " " + quoted(s.timecode.rate_label) +
          " start=" + std::to_string(s.timecode.start_frames) + " offset=" + number(s.timecode.project_offset) + " s");
  out.row("recording" + Dump::field("depth", s.recording.depth_byte) + Dump::flag("float", s.recording.is_float) +
          Dump::field("file_type", s.recording.file_type));
  if (s.pan_depth.was_read)
    out.row("pan depth " + std::to_string(s.pan_depth.value) + ", " + number(s.pan_depth.db) + " dB");
  const auto step = [](const MusicalStep& m) {
    return std::to_string(m.bars) + "|" + std::to_string(m.beats) + "|" + std::to_string(m.ticks);
  };
  if (s.grid.nudge_read) out.row("nudge " + step(s.grid.nudge));
  if (s.grid.grid_read) out.row("grid " + step(s.grid.grid));
  if (s.color_coding.tracks >= 0)
    out.row("color coding" + Dump::field("tracks", s.color_coding.tracks, -1) +
            Dump::field("clips", s.color_coding.clips, -1));
}

std::string clip_row(const ClipRecord& c) {
  return " #" + std::to_string(c.index) + " " + quoted(c.name) + " length=" + std::to_string(c.length) +
         Dump::field("offset", c.source_offset) + Dump::field("start", c.start) + Dump::field("file", c.file_name) +
         Dump::field("file_index", c.file_index) + Dump::field("channel", c.channel, -1) +
         Dump::field("of", c.file_channels) + Dump::field("chunk", c.midi_chunk, -1);
}

std::string placement_row(const Placement& p) {
  return " track " + std::to_string(p.track_index) + " (" + std::to_string(p.stored_track_index) + ") " +
         quoted(p.track_name) + " clip " + std::to_string(p.clip) + " start=" + std::to_string(p.start) +
         " position40=" + std::to_string(p.position40) + Dump::flag("muted", p.muted);
}

void dump_playlists(Dump& out, const std::vector<PlaylistRecord>& playlists) {
  if (playlists.empty()) return;
  out.table("playlists");
  for (std::size_t i = 0; i < playlists.size(); ++i) {
    const PlaylistRecord& p = playlists[i];
    out.row(indexed(i) + " " + quoted(p.name) + (p.ticks ? " ticks" : " samples") +
            " entries=" + std::to_string(p.entry_count) + (p.entries_read ? "" : " not read"));
    for (const PlaylistEntry& e : p.entries) {
      out.row("    " +
              std::string(e.fade       ? "fade"
                          : e.is_group ? "group"
                          : e.is_clip  ? "clip"
                                       : "other") +
              " " + std::to_string(e.clip_or_fade_index) + " at " + std::to_string(e.position) +
              Dump::field("kind", e.kind) + Dump::field("color", e.color, -2) + Dump::flag("locked", e.locked) +
              Dump::flag("group-muted", e.group_muted));
    }
  }
}

void dump_clips(Dump& out, const ClipSource& source) {
  table_of(out, "audio clips", source.clips, clip_row);
  table_of(out, "audio placements", source.placements, placement_row);
  dump_playlists(out, source.playlists);
  table_of(out, "track playlists", source.track_playlists,
           [](const TrackPlaylist& p) { return " at " + std::to_string(p.start) + Dump::flag("unnamed", p.unnamed); });
  table_of(out, "fades", source.fades, [](const FadeRecord& f) {
    static constexpr const char* kKinds[] = {" not-understood", " crossfade", " out", " in"};
    return kKinds[static_cast<int>(f.kind)] + (" length=" + number(f.length)) + " before=" + number(f.before) +
           Dump::field("shape", f.shape) + Dump::flag("s-curve", f.s_curve);
  });
  table_of(out, "clip gain", source.gain.entries, [](const ClipGainEntry& g) {
    std::string text = " " + number(g.db) + " dB";
    for (const GainPoint& p : g.points) text += " " + std::to_string(p.position) + "/" + number(p.db);
    return text;
  });
  // By clip, as the index itself has no order.
  if (!source.gain.index_of.empty()) {
    ByName<std::uint32_t> sorted;
    for (const auto& [name, index] : source.gain.index_of) sorted.emplace(name, index);
    out.table("clip gain by name");
    for (const auto& [name, index] : sorted) out.row(quoted(name) + " " + std::to_string(index));
  }
  table_of(out, "clip groups", source.groups, [](const ClipGroupRow& g) {
    return " " + quoted(g.name) + " source=" + std::to_string(g.source) + " length=" + std::to_string(g.length) +
           " start=" + std::to_string(g.start) + Dump::flag("trim", g.is_trim) + Dump::flag("trailer", g.trailer_flag) +
           Dump::field("trailer_byte", g.trailer_byte) + Dump::flag("not-valid", !g.valid);
  });
  bool any_sync = false;
  for (std::size_t i = 0; i < source.sync_samples.size(); ++i) {
    if (source.sync_samples[i] == 0) continue;
    if (!any_sync) out.table("sync points");
    any_sync = true;
    out.row("clip " + std::to_string(i) + " at " + std::to_string(source.sync_samples[i]));
  }
  if (source.sync_points_unmatched) out.table("sync points unmatched");
}

void dump_streams(Dump& out, const MidiSource& midi) {
  static constexpr const char* kKinds[] = {"other", "pitch-bend", "controller", "other", "aftertouch"};
  if (midi.streams.empty()) return;
  out.table("midi streams");
  for (std::size_t i = 0; i < midi.streams.size() && !out.full(); ++i) {
    const MidiChunk& chunk = midi.streams[i];
    out.row(indexed(i) + " notes=" + std::to_string(chunk.note_count) + " origin=" + std::to_string(chunk.origin));
    for (const MidiControllerStream& stream : chunk.streams) {
      std::string text =
          "    " + std::string(kKinds[stream.kind()]) + Dump::field("controller", stream.controller()) + ":";
      for (std::uint32_t k = 0; k < stream.size(); ++k)
        text += " " + std::to_string(stream[k].position) + "/" + std::to_string(stream[k].value);
      out.row(text);
    }
    for (const SysExEvent& event : chunk.sysex)
      out.row("    sysex " + std::to_string(event.position) + " " + quoted(event.bytes));
  }
}

void dump_midi(Dump& out, const MidiSource& midi) {
  table_of(out, "midi clips", midi.clips, clip_row);
  table_of(out, "midi placements", midi.placements, placement_row);
  if (!midi.playlists.info.empty()) out.table("midi playlists");
  for (const auto& [name, entries] : midi.playlists.info) {
    out.row(quoted(name));
    for (const MidiInfoEntry& e : entries)
      out.row("    clip " + std::to_string(e.clip) + " at " + std::to_string(e.position) + Dump::field("kind", e.kind) +
              Dump::field("color", e.color, -2) + Dump::flag("locked", e.locked));
  }
  if (!midi.playlists.positions.empty()) out.table("midi positions");
  for (const auto& [name, positions] : midi.playlists.positions) {
    std::string text = quoted(name);
    for (const MidiPosition& p : positions) text += " " + std::to_string(p.clip) + "/" + std::to_string(p.position);
    out.row(text);
  }
  dump_streams(out, midi);
  if (midi.chunks.empty()) return;
  out.table("midi chunks");
  for (std::size_t i = 0; i < midi.chunks.size() && !out.full(); ++i) {
    const NoteChunk& chunk = midi.chunks[i];
    out.row(indexed(i) + " zero=" + std::to_string(chunk.zero_ticks()) + " notes=" + std::to_string(chunk.size()));
    for (std::uint32_t k = 0; k < chunk.size() && !out.full(); ++k) {
      const MidiNote note = chunk[k];
      out.row("    " + std::to_string(note.position) + " length " + std::to_string(note.length) + " note " +
              std::to_string(note.note) + " velocity " + std::to_string(note.velocity));
    }
  }
}

void dump_lane(Dump& out, std::string_view name, const AutomationLane& lane) {
  if (!lane.moves() && lane.initial == 0) return;
  std::string text = "    " + std::string(name) + " " + number(lane.initial) + (lane.in_ticks ? " ticks" : "");
  for (const auto& [position, value] : lane.points) text += " " + number(position) + "/" + number(value);
  out.row(text);
}

void dump_strips(Dump& out, const std::vector<StripRecord>& strips) {
  if (strips.empty()) return;
  out.table("strips");
  for (std::size_t i = 0; i < strips.size(); ++i) {
    const StripRecord& s = strips[i];
    if (!s.has_mixer_data) {
      out.row(indexed(i) + " " + quoted(s.name) + " no mixer data");
      continue;
    }
    out.row(indexed(i) + " " + quoted(s.name) + " " + number(s.fader_db) + " dB pan=" + std::to_string(s.pan) +
            Dump::field("pan2", s.second_pan) + Dump::flag("muted", s.muted) + Dump::field("lanes", s.lane_count) +
            Dump::field("pan_groups", s.pan_groups ? std::int64_t{*s.pan_groups} : -1, -1) +
            Dump::flag("stereo", s.is_stereo) + Dump::field("dual_pan", s.dual_pan));
    for (const SendRecord& send : s.sends)
      out.row("    send " + quoted(send.bus) + " " + number(send.level_db) + " dB");
    dump_lane(out, "volume", s.volume_lane);
    dump_lane(out, "mute", s.mute_lane);
    dump_lane(out, "pan", s.pan_lane);
    dump_lane(out, "right pan", s.right_pan_lane);
    dump_lane(out, "trim", s.trim_lane);
    dump_lane(out, "dual left", s.dual_left_lane);
    if (s.has_panner_level) dump_lane(out, "panner level", s.panner_level_lane);
    for (const auto& side : s.panner_lanes) {
      for (const AutomationLane& lane : side) dump_lane(out, "panner", lane);
    }
  }
}

void dump_routing(Dump& out, const Mixer& mixer) {
  const auto ids = [](std::uint32_t id0, std::uint32_t id1) { return format_text(" ids=%x/%x", id0, id1); };
  table_of(out, "routes", mixer.routes, [&](const Route& r) {
    std::string text = " " + quoted(r.name) + " kind=" + std::to_string(r.kind) + ids(r.id0, r.id1);
    for (const std::uint16_t channel : r.channels) text += " " + std::to_string(channel);
    return text;
  });
  if (!mixer.routing.empty()) out.table("routing");
  for (std::size_t i = 0; i < mixer.routing.size(); ++i) {
    const TrackRouting& row = mixer.routing[i];
    out.row(indexed(i) + " " + quoted(row.name) +
            Dump::field("display", row.display_name == row.name ? "" : row.display_name) +
            Dump::field("output", row.output) + Dump::flag("no-output", row.no_output) +
            (row.input_kind < 0 ? ""
                                : " input=" + quoted(row.input_bus) + " kind=" + std::to_string(row.input_kind) +
                                      ids(row.input_id0, row.input_id1)));
    for (const SendRecord& send : row.sends) {
      out.row("    send " + quoted(send.bus) + " " + number(send.level_db) + " dB" +
              Dump::flag("post", send.post_fader) + Dump::field("pans", send.pan_count) +
              Dump::field("left", send.left_pan) + Dump::field("right", send.right_pan));
      dump_lane(out, "  volume", send.volume_lane);
      dump_lane(out, "  mute", send.mute_lane);
      dump_lane(out, "  pan", send.first_pan_lane);
      dump_lane(out, "  second pan", send.second_pan_lane);
    }
  }
  table_of(out, "leg routes", mixer.leg_routes, [](const LegRoute& r) {
    return " row " + std::to_string(r.source) + " to row " + std::to_string(r.target) + " channel " +
           std::to_string(r.first_channel);
  });
  if (!mixer.one_sided.empty()) out.table("one-sided outputs");
  for (const auto& [name, side] : mixer.one_sided) out.row(quoted(name) + (side < 0 ? " left" : " right"));
}

void dump_mixer(Dump& out, const Mixer& mixer) {
  out.table("mixer");
  out.row(std::string(mixer.names_aligned ? "names aligned" : "names not aligned") +
          Dump::field("name_scan_count", mixer.table.name_scan_count, -1) + Dump::field("masters", mixer.master.count) +
          Dump::field("master", mixer.master.name));
  if (!mixer.rows.empty()) out.table("strip rows");
  for (std::size_t k = 0; k < mixer.rows.size(); ++k) {
    static constexpr const char* kKinds[] = {" audio", " master", " vca", " midi", " instrument", " video"};
    const StripRow& row = mixer.rows[k];
    out.row(indexed(k) + kKinds[static_cast<int>(row.kind)] + " " + quoted(row.current_name) +
            Dump::field("original", row.original_name == row.current_name ? "" : row.original_name) +
            Dump::flag("inactive", !row.row_active) + Dump::flag("empty-name", row.name_block_empty) +
            Dump::flag("no-name-block", !row.has_name_block));
    const TrackRow& data = mixer.track_rows[k];
    out.row("    height=" + std::to_string(data.row_height) + " display=" + std::to_string(data.display_position) +
            Dump::flag("hidden", !data.visible) + Dump::field("solo", static_cast<int>(data.solo), -1) +
            Dump::field("solo_safe", static_cast<int>(data.solo_safe), -1) +
            Dump::field("mode", static_cast<int>(data.automation_mode), -1) + Dump::field("comment", data.comment));
    const MidiStripSetup& setup = mixer.midi_setups[k];
    if (setup.cc7 >= 0 || setup.program >= 0)
      out.row("    setup" + Dump::field("cc7", setup.cc7, -1) + Dump::field("cc10", setup.cc10, -1) +
              Dump::field("program", setup.program, -1));
    const RealTimeProperties& p = mixer.midi_properties[k];
    if (p.any_on())
      out.row("    properties" + Dump::flag("quantize", p.quantize_on) + Dump::flag("duration", p.duration_on) +
              Dump::flag("delay", p.delay_on) + Dump::field("delay_ticks", p.delay_ticks) +
              Dump::flag("velocity", p.velocity_on) + Dump::field("percent", p.velocity_percent, 100) +
              Dump::field("offset", p.velocity_offset) + Dump::flag("transpose", p.transpose_on) +
              Dump::field("octaves", p.octaves) + Dump::field("semitones", p.semitones));
  }
  table_of(out, "track table", mixer.table.names, [](std::string_view name) { return " " + quoted(name); });
  dump_strips(out, mixer.strips);
  table_of(out, "buses", mixer.bus_names, [](std::string_view name) { return " " + quoted(name); });
  table_of(out, "listed buses", mixer.listed_buses, [](std::string_view name) { return " " + quoted(name); });
  table_of(out, "unusual strips", mixer.unusual_strips,
           [](const UnusualStrip& s) { return " " + quoted(s.name) + " lanes=" + std::to_string(s.lane_count); });
  dump_routing(out, mixer);
  if (!mixer.midi_states.empty()) out.table("midi states");
  for (const auto& [name, state] : mixer.midi_states) {
    out.row(quoted(name) + Dump::flag("muted", state.muted) + Dump::flag("mute-lane", state.has_mute_lane) +
            Dump::flag("other-lanes", state.other_lanes));
    dump_lane(out, "mute", state.mute_lane);
  }
  table_of(out, "midi devices", mixer.midi_devices, [](const MidiDevice& device) {
    return " " + quoted(device.name) + Dump::flag("plug-in", device.is_plugin_node);
  });
  table_of(out, "midi played elsewhere", mixer.midi_elsewhere,
           [](const MidiElsewhere& one) { return " " + quoted(one.track) + " on " + quoted(one.instrument); });
  if (!mixer.key_buses.empty()) out.table("key buses");
  for (const auto& [id, name] : mixer.key_buses) out.row(std::to_string(id) + " " + quoted(name));
}

void dump_track_list(Dump& out, const TrackList& list) {
  const auto name_row = [](std::string_view name) { return " " + quoted(name); };
  table_of(out, "display rows", list.display_rows, [](const DisplayRow& row) {
    return " " + quoted(row.name) + " type=" + std::to_string(row.row_type) + Dump::field("width", row.width) +
           Dump::flag("track", row.has_track) +
           (row.display_id == 0 ? "" : format_text(" id=%llx", static_cast<unsigned long long>(row.display_id)));
  });
  table_of(out, "inactive by table", list.inactive_names, name_row);
  table_of(out, "voice off", list.voice_off_names, name_row);
  if (!list.playlist_owners.empty()) out.table("playlist owners");
  for (const auto& [name, strip] : list.playlist_owners) out.row(quoted(name) + " strip " + std::to_string(strip));
}

void dump_media(Dump& out, const Media& media) {
  if (!media.files.empty()) out.table("audio files");
  for (std::size_t i = 0; i < media.files.size(); ++i) {
    const std::string_view folder = i < media.folders.files.size() ? media.folders.files[i].folder : "";
    out.row(std::to_string(media.files[i].index) + ": " + quoted(media.files[i].name) +
            Dump::field("samples", i < media.lengths.size() ? media.lengths[i] : 0) +
            Dump::field("channels", i < media.facts.size() ? media.facts[i].channels : 0) +
            Dump::field("folder", folder) + Dump::field("chain", joined_path(media.folders.chain_of(i))));
  }
  if (!media.own_chain.empty()) {
    out.table("own folder");
    out.row(quoted(joined_path(media.own_chain)));
  }
  if (!media.folders.by_name.empty()) out.table("folders by name");
  for (const auto& [name, folder] : media.folders.by_name) out.row(quoted(name) + " in " + quoted(folder));
  table_of(out, "freeze files", media.freeze_files, [](const std::optional<std::uint16_t>& file) {
    return file ? " file " + std::to_string(*file) : std::string(" none");
  });
}

void dump_skipped(Dump& out, const Skips& skips) {
  if (skips.count() == 0) return;
  out.table("refused (" + std::to_string(skips.count()) + ")");
  for (const Skipped& one : skips.kept()) {
    const content::Type* type = content::find(one.content_type);
    out.row(std::string(type ? type->name.substr(1) : "?") + format_text(" %04x", one.content_type) + " at " +
            std::to_string(one.position) + ": " + one.why);
  }
}

}  // namespace

std::string dump(const Session& session) {
  Dump out;
  dump_headers(out, session);
  dump_clips(out, session.clips);
  dump_midi(out, session.midi);
  dump_mixer(out, session.mixer);
  dump_inserts(out, session.mixer.inserts);
  dump_track_list(out, session.track_list);
  dump_media(out, session.media);
  dump_skipped(out, session.skipped);
  return out.take();
}

}  // namespace frt
