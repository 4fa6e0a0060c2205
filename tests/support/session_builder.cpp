#include "support/session_builder.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <stdexcept>

namespace frt::test {

namespace {

// The names of a path.
std::vector<std::string> split(const std::string& path) {
  std::vector<std::string> names(1);
  for (const char c : path) {
    if (c == '/') {
      names.emplace_back();
    } else {
      names.back() += c;
    }
  }
  return names;
}

constexpr std::uint16_t kAudioRow = 0x261b, kAudioWrapper = 0x261c, kMasterRow = 0x261d, kAuxWrapper = 0x261e,
                        kVcaRow = 0x261f, kMidiRow = 0x2620, kInstrumentRow = 0x2621, kVideoRow = 0x2623;
constexpr std::uint32_t kIdMark = 42;  // stands before every 8-byte id

enum IdKind : std::uint64_t { kTrackId = 1, kPlaylistId, kClipId, kOutputId, kPathId };
std::uint64_t id_of(IdKind kind, std::size_t number) { return 0xE1D2C3B400000000 | (kind << 24) | number; }

BlockWriter& marked_id(BlockWriter& w, IdKind kind, std::size_t number) {
  return w.u32(kIdMark).u64(id_of(kind, number));
}

std::string leg_suffix(unsigned leg, unsigned channels) {
  static constexpr const char* kSurround[] = {"L", "C", "R", "Ls", "Rs", "LFE", "Lsr", "Rsr"};
  if (channels < 2) return {};
  if (channels == 2) return leg == 0 ? ".L" : ".R";
  return std::string(".") + kSurround[leg % 8];
}

std::int32_t tenths(double db) { return static_cast<std::int32_t>(std::lround(db * 10)); }

// The kinds of a fade record.
constexpr std::uint8_t kCrossfade = 1, kFadeOut = 2, kFadeIn = 3;

struct FadeKey {
  std::uint8_t kind;
  Fade fade;
  auto operator<=>(const FadeKey&) const = default;
};

// What a lane counts: volume and trim in tenths of a dB, mute and pan as they are.
enum class Unit { kTenths = 10, kWhole = 1 };

// A lane at rest at `initial`, or moving.
void write_lane(BlockWriter& w, int initial, const Automation& points = {}, Unit unit = Unit::kWhole,
                bool in_ticks = false) {
  const auto count = static_cast<std::uint32_t>(points.size());
  w.u8(1).open(0x260a).bytes({1, 0x46, 1, 0}).u32(20 + 6 * count).bytes({0, 0, 1, 0, 0, 0, 2, 0});
  w.u16(count).u8(in_ticks && count > 0).zeros(4).zeros(3).i16(initial);
  for (const auto& [position, value] : points) {
    w.u32(position).i16(static_cast<int>(std::lround(value * static_cast<int>(unit))));
  }
  w.zeros(2).close();
}

void write_control(BlockWriter& w, const PluginControl& control) {
  const auto stored = [](double value) { return static_cast<std::int32_t>(std::lround((value - 0.5) * 0x1p31)); };
  const auto count = static_cast<std::uint32_t>(control.points.size());
  w.open(0x260f).u8(1).open(0x260b).bytes({1, 0x46, 1, 0}).u32(22 + 8 * count).bytes({0, 0, 1, 0, 0, 0, 4, 0});
  w.u16(count).zeros(5).zeros(3).i32(stored(control.initial));
  for (const auto& [time, value] : control.points) w.u32(time).i32(stored(value));
  w.zeros(2).close().text(control.name).u32(control.number).zeros(8).text(control.label).close();
}

void write_insert(BlockWriter& w, const Insert& insert, unsigned slot) {
  w.open(0x2616).open(0x2615).open(0x2626).close().zeros(2).open(0x2613, 8).u16(slot);
  w.open(0x1038, 2).u8(insert.channels).zeros(3).u32(static_cast<std::uint32_t>(insert.chunks.size()));
  w.bytes(insert.chunks).close().u8(!insert.is_inactive).u8(0).fill(2, 0xff);
  w.open(0x260e, 7).u16(insert.key_id).u8(1).u8(1).zeros(34);
  if (!insert.key_bus.empty()) w.text(insert.key_bus);
  w.fill(8, 0xff).zeros(5).close();
  for (const PluginControl& control : insert.controls) write_control(w, control);
  w.close().close().u8(insert.is_bypassed).open(0x2614).u32(0).close().close();
}

void write_hardware_insert(BlockWriter& w, const std::string& slot) {
  w.open(0x2612, 3).zeros(4).open(0x260e, 7).u16(0xffff).zeros(34).text(slot).zeros(8).close().zeros(2).close();
}

}  // namespace

// ---- what the session is made of ----

Insert& Insert::chunk(std::string_view id, std::string_view name, const std::vector<std::uint8_t>& data) {
  BlockWriter w;
  const auto length = static_cast<std::uint32_t>(56 + data.size());
  for (unsigned shift = 32; shift > 0; shift -= 8) w.u8(length >> (shift - 8) & 255);
  w.fill(4, 0xff).raw(signature).raw(signature.substr(4)).raw(id).raw(name).zeros(32 - name.size()).bytes(data);
  const std::vector<std::uint8_t> bytes = w.take();
  chunks.insert(chunks.end(), bytes.begin(), bytes.end());
  return *this;
}

Insert& Insert::control_values(const std::vector<double>& values) {
  BlockWriter w;
  w.fill(4, 1);
  for (const double value : values) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    w.raw("d_").zeros(2);
    for (unsigned shift = 64; shift > 0; shift -= 8) w.u8(bits >> (shift - 8) & 255);
  }
  return chunk("elck", "Complete Controls State", w.take());
}

Clip& Playlist::clip(const AudioFile& file) {
  Clip& made = clips.emplace_back();
  made.clip_name = file.stem;
  made.file = file;
  made.clip_length = file.samples;
  return made;
}

Playlist& Playlist::crossfade(std::uint64_t cut, std::uint64_t length, std::uint64_t before, FadeShape shape) {
  crossfades.push_back({cut, {length, before, shape}});
  return *this;
}

Track& Track::crossfade(std::uint64_t cut, std::uint64_t length, std::uint64_t before, FadeShape shape) {
  playlists.front().crossfade(cut, length, before, shape);
  return *this;
}

Playlist& Track::playlist(std::string playlist_name) {
  Playlist& made = playlists.emplace_back();
  made.name = std::move(playlist_name);
  return made;
}

MidiClip& Track::midi_clip(std::string clip_name, std::uint64_t start, std::uint64_t length, std::vector<Note> notes) {
  MidiClip& clip = midi_clips.emplace_back();
  clip.name = std::move(clip_name);
  clip.start = start;
  clip.length = length;
  clip.notes = std::move(notes);
  return clip;
}

Track& SessionBuilder::add(TrackKind kind, std::string name, unsigned channels) {
  Track& made = tracks_.emplace_back();
  made.kind = kind;
  made.channels = channels;
  made.row_name = name;
  if (kind == TrackKind::kAudio) made.playlist(name);
  made.name = std::move(name);
  return made;
}

SessionBuilder& SessionBuilder::tempo(double bpm) { return tempo_.front().bpm = bpm, *this; }
SessionBuilder& SessionBuilder::tempo_event(std::uint64_t tick, double bpm) {
  return tempo_.push_back({tick, bpm}), *this;
}
SessionBuilder& SessionBuilder::meter(std::uint64_t tick, std::uint32_t bar, std::uint32_t numerator,
                                      std::uint32_t denominator) {
  return meters_.push_back({tick, bar, numerator, denominator}), *this;
}
SessionBuilder& SessionBuilder::saved_by(std::string product, std::string version) {
  product_ = std::move(product);
  product_version_ = std::move(version);
  return *this;
}
SessionBuilder& SessionBuilder::timecode(std::uint8_t code, std::uint32_t start_frames) {
  timecode_ = code;
  start_frames_ = start_frames;
  return *this;
}
SessionBuilder& SessionBuilder::extended_timecode(std::uint32_t code, std::uint32_t start_frames) {
  return extended_timecode_ = {code, start_frames}, *this;
}
SessionBuilder& SessionBuilder::recording(std::uint8_t bits, bool is_float, std::uint8_t file_type,
                                          std::uint8_t pan_depth) {
  bits_ = bits;
  is_float_ = is_float;
  file_type_ = file_type;
  pan_depth_ = pan_depth;
  return *this;
}
SessionBuilder& SessionBuilder::grid(unsigned bars, unsigned beats, unsigned ticks) {
  has_grid_ = true;
  grid_ = {bars, beats, ticks};
  return *this;
}
SessionBuilder& SessionBuilder::payload(std::uint16_t content_type, std::vector<std::uint8_t> bytes) {
  return payloads_.emplace_back(content_type, std::move(bytes)), *this;
}

AudioFile SessionBuilder::audio_file(const std::string& name, std::uint64_t samples, std::string folder,
                                     unsigned channels) {
  const auto number = static_cast<std::uint32_t>(files_.size());
  files_.push_back({name, std::move(folder), samples, channels});
  return {name.substr(0, name.rfind('.')), number, number, samples};
}

AudioFile SessionBuilder::stereo_file(const std::string& stem, std::uint64_t samples, std::string folder) {
  const AudioFile left = audio_file(stem + ".L.wav", samples, folder);
  const AudioFile right = audio_file(stem + ".R.wav", samples, std::move(folder));
  return {stem, left.first, right.first, samples};
}

Location& SessionBuilder::marker(std::string name, std::uint64_t at) {
  return locations_.emplace_back(Location{std::move(name), at, at});
}
Location& SessionBuilder::region(std::string name, std::uint64_t start, std::uint64_t end) {
  return locations_.emplace_back(Location{std::move(name), start, end, 2});
}

void SessionBuilder::save(const std::string& path) const {
  const std::vector<std::uint8_t> bytes = file_bytes();
  std::ofstream file(path, std::ios::binary);
  file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  if (!file.flush()) throw std::runtime_error("cannot write " + path);
}

// ---- numbers: what the session refers to by index ----

struct SessionBuilder::Tables {
  struct Leg {  // one entry of the clip list: one channel of a clip
    const Clip* clip;
    unsigned leg, channels;
    std::uint32_t gain;  // entry of the gain table, all ones for none
  };
  struct List {  // one playlist
    std::size_t track;
    const Playlist* playlist;
    std::size_t first_leg, first_channel;
  };
  std::vector<Leg> legs;
  std::vector<const Clip*> gains;
  std::vector<FadeKey> fades;
  std::map<FadeKey, std::uint32_t> fade_numbers;  // equal fades share a record
  std::vector<List> lists;
  std::vector<std::size_t> first_list;  // by track
  std::size_t channels = 0;

  void add_fade(std::uint8_t kind, const Fade& fade) {
    if (fade.length == 0) return;
    const FadeKey key{kind, fade};
    if (fade_numbers.emplace(key, static_cast<std::uint32_t>(fades.size())).second) fades.push_back(key);
  }
};

SessionBuilder::Tables SessionBuilder::number() const {
  Tables tables;
  for (std::size_t t = 0; t < tracks_.size(); ++t) {
    const Track& track = tracks_[t];
    tables.first_list.push_back(tables.lists.size());
    for (const Playlist& playlist : track.playlists) {
      tables.lists.push_back({t, &playlist, tables.legs.size(), tables.channels});
      tables.channels += track.channels;
      for (const Clip& clip : playlist.clips) {
        std::uint32_t gain = UINT32_MAX;
        if (!clip.gain.empty()) {
          gain = static_cast<std::uint32_t>(tables.gains.size());
          tables.gains.push_back(&clip);
        }
        for (unsigned leg = 0; leg < track.channels; ++leg) tables.legs.push_back({&clip, leg, track.channels, gain});
        tables.add_fade(kFadeIn, clip.fade_in_);
        tables.add_fade(kFadeOut, clip.fade_out_);
      }
      for (const auto& [cut, fade] : playlist.crossfades) tables.add_fade(kCrossfade, fade);
    }
  }
  tables.first_list.push_back(tables.lists.size());
  return tables;
}

std::uint64_t SessionBuilder::end_of(const Clip& clip, bool in_ticks) const {
  if (!in_ticks) return clip.start + clip.clip_length;
  const double seconds = static_cast<double>(clip.clip_length) / rate_;
  return clip.start + static_cast<std::uint64_t>(std::llround(seconds * tempo_.front().bpm / 60 * double{kQuarter}));
}

// ---- the file from top to bottom, in the order real sessions keep ----

std::vector<std::uint8_t> SessionBuilder::image() const {
  const Tables tables = number();
  BlockWriter w;
  std::size_t payload = 0;
  for (const auto& [type, bytes] : payloads_) payload += bytes.size() + 16;
  payload += tracks_.size() * 2048;
  for (const Track& track : tracks_) {
    for (const Insert& insert : track.inserts) payload += insert.chunks.size() + 512;
  }
  w.reserve(payload + tables.legs.size() * 320 + 8192);

  session_head(w, 5, key_);
  w.open(0x0000).zeros(2).close();
  write_head(w);
  write_track_table(w);
  write_settings(w);
  write_io_setup(w);
  write_files(w);
  write_timecode(w);
  write_gain(w, tables);
  write_clips(w, tables);
  write_fades(w, tables);
  write_placements(w, tables);
  write_track_list(w, tables);
  write_midi(w);
  write_tempo_and_meter(w);
  write_midi_devices(w);
  write_plugin_names(w);
  write_rows(w, tables);
  write_real_time_properties(w);
  if (color_coding_) {
    w.open(0x20a2, 8).open(0x2011, 2).zeros(19).close().u8(color_coding_->first).u8(0).u8(color_coding_->second);
    w.zeros(8).close();
  }
  for (const auto& [type, bytes] : payloads_) w.leaf(type, bytes);
  write_grid(w);
  write_locations(w);
  write_saved_by(w);
  return w.take();
}

// The file's version, and in some sessions who saved it.
void SessionBuilder::write_head(BlockWriter& w) const {
  w.open(0x2067, 11).u32(0);
  marked_id(w, kOutputId, 1).u16(0x100).u32(static_cast<std::uint32_t>(version_ - 2));
  if (!layout.saved_by_at_end) w.text(product_).u32(0).text(product_version_);
  if (own_folder_.empty()) {
    w.zeros(16);
  } else {
    for (int label = 0; label < version_ - 1; ++label) w.text("");
    w.u32(static_cast<std::uint32_t>(own_folder_.size()));
    for (const std::string& name : own_folder_) w.text(name);
    w.text("Song.ptx");
  }
  w.close();
}

// Every track by name, in a plain run and as blocks; the blocks stand twice.
void SessionBuilder::write_track_table(BlockWriter& w) const {
  // By TrackKind.
  static constexpr std::uint16_t kTypes[] = {0, 2, 5, 6, 1, 7, 8, 11};
  const auto count = static_cast<std::uint32_t>(tracks_.size());
  w.open(0x2519, 7).u32(1).zeros(6).u32(1).u16(3).u32(count);
  for (std::size_t t = 0; t < tracks_.size(); ++t) {
    w.u16(kTypes[static_cast<int>(tracks_[t].kind)]).text(tracks_[t].name).u8(tracks_[t].channels - 1).zeros(5);
    marked_id(w, kTrackId, t).u8(static_cast<unsigned>(t + 1) & 255).zeros(2);
  }
  for (int twice = 0; twice < 2; ++twice) {
    for (std::size_t t = 0; t < tracks_.size(); ++t) {
      const Track& track = tracks_[t];
      const unsigned width = track.channels - 1;
      BlockWriter rest;
      rest.u8(width).zeros(5);
      marked_id(rest, kTrackId, t).u8(static_cast<unsigned>(t + 1) & 255).zeros(9);
      marked_id(rest, kTrackId, t).u8(width).u8(0);
      rest.open(0x4420).zeros(2).close();
      rest.u8(0).zeros(8).u16(layout.row_entry_end);
      std::vector<std::uint8_t> tail = rest.take();
      tail.resize(layout.row_entry - 8);
      w.open(0x251a, 7).u16(kTypes[static_cast<int>(track.kind)]).text(track.name).bytes(tail).close();
    }
  }
  w.close();
}

void SessionBuilder::write_settings(BlockWriter& w) const {
  w.open(0x1028, 10).u8(file_type_).u8(24).u32(rate_).zeros(5).u8(1);
  if (layout.settings_paths) {
    w.u32(2).text("Disk").text("Last Used.pio").zeros(6);
  } else {
    w.u32(UINT32_MAX).zeros(93);
  }
  w.u8(pan_depth_).u8(is_float_).u8(1).u8(bits_).zeros(4).u8(1).close();
}

void SessionBuilder::write_files(BlockWriter& w) const {
  const std::size_t first_end = std::min(files_.size(), first_of_second_list_);
  w.open(0x1004, 2).u32(static_cast<std::uint32_t>(files_.size()));
  write_file_list(w, 0, first_end, layout.file_kinds);
  if (first_end < files_.size()) write_file_list(w, first_end, files_.size(), false);
  std::uint32_t file_number = 0;
  for (const FileEntry& file : files_) {
    w.open(0x1003, 7).u32(++file_number);
    w.open(0x1001, 2).u32(rate_).u8(file.channels).u8(bits_).u64(file.samples).zeros(10).close().zeros(8).close();
  }
  w.close();
}

void SessionBuilder::write_file_list(BlockWriter& w, std::size_t first, std::size_t end, bool kinds) const {
  // The tree of volumes and folders, each once and behind the one it lies in; a volume stands at the end.
  struct Node {
    std::string name;
    std::uint32_t parent;
    unsigned kind;
  };
  std::vector<Node> nodes;
  const auto add = [&nodes](const std::string& name, std::uint32_t parent, unsigned kind) {
    nodes.push_back({name, parent, kind});
    return static_cast<std::uint32_t>(nodes.size() - 1);
  };
  const auto child = [&](const std::string& name, std::uint32_t parent, unsigned kind) {
    for (std::uint32_t k = 0; k < nodes.size(); ++k) {
      if (nodes[k].name == name && nodes[k].parent == parent && nodes[k].kind == kind) return k;
    }
    return add(name, parent, kind);
  };
  for (std::size_t i = first; i < end; ++i) {
    std::vector<std::string> chain = own_folder_.empty() ? std::vector<std::string>{"Disk"} : own_folder_;
    if (const auto folders = split(files_[i].folder); folders.size() > 1) {
      chain = folders;
    } else {
      chain.push_back(files_[i].folder);
    }
    std::uint32_t parent = UINT32_MAX;
    for (std::size_t k = 0; k < chain.size(); ++k) parent = child(chain[k], parent, k == 0 ? 0 : 1);
    add(files_[i].name, parent, 2);
  }
  const auto kind_byte = [&](unsigned kind) { return kinds ? kind : 0x40U; };
  w.open(0x103a).u32(static_cast<std::uint32_t>(nodes.size()));
  for (const Node& node : nodes) {
    w.u8(kind_byte(node.kind)).u32(node.parent).text(node.name);
    if (node.kind == 2) {
      w.raw(node.name.ends_with(".aif") ? "FFIA" : "EVAW");
    } else {
      w.u32(0);
    }
  }
  w.close();
}

void SessionBuilder::write_timecode(BlockWriter& w) const {
  w.open(0x204d, 5).u8(timecode_).zeros(8).u32(start_frames_).zeros(4).u32(1).u32(1);
  if (layout.extended_timecode) {
    const bool given = !extended_timecode_.empty();
    w.text("00:00:00:00").u32(given ? extended_timecode_[0] : timecode_);
    w.u32(given ? extended_timecode_[1] : start_frames_);
  }
  w.close();
}

void SessionBuilder::write_gain(BlockWriter& w, const Tables& tables) const {
  w.open(0x2637).u32(static_cast<std::uint32_t>(tables.gains.size()));
  for (const Clip* clip : tables.gains) {
    const auto points = static_cast<std::uint32_t>(clip->gain.size());
    w.bytes({1, 0x46, 1, 0}).u32(14 + 8 * points).u16(0).u32(points).u32(4).u32(0);
    for (const auto& [position, db] : clip->gain) w.u32(position).f32(static_cast<float>(db));
  }
  w.close();
}

// The clip list: a clip of a stereo track stands as two entries, one a channel.
void SessionBuilder::write_clips(BlockWriter& w, const Tables& tables) const {
  const bool old = layout.old_clip_list;
  const bool frozen = std::any_of(tables.lists.begin(), tables.lists.end(),
                                  [](const Tables::List& list) { return list.playlist->name == "?"; });
  const auto write_list = [&](std::uint16_t type, bool filled) {
    w.open(type, 1).u32(static_cast<std::uint32_t>(filled ? tables.legs.size() : 0));
    for (std::size_t i = 0; filled && i < tables.legs.size(); ++i) {
      const auto& [clip, leg, channels, gain] = tables.legs[i];
      w.open(old ? 0x1008 : 0x2629, 5).open(old ? 0x1007 : 0x2628, 2);
      w.text(clip->clip_name + leg_suffix(leg, channels));
      w.three_point(clip->source_offset, clip->clip_length, layout.old_placements ? clip->start + clip->sync_point : 0,
                    clip->sync_point);
      w.bytes({0xfe, 0xff, 0, 0, 0, 0, 0xff, 0xff, 4, 0, 4, 0}).zeros(9);
      marked_id(w, kClipId, i).u32(gain).close();
      const bool one_file = clip->file.first == clip->file.second;
      w.u32(leg == 0 ? clip->file.first : clip->file.second).u32(clip->channel_ + (one_file ? leg : 0));
      w.f32(1).zeros(12).close();
    }
    w.close();
  };
  write_list(0x2632, frozen);
  write_list(old ? 0x100b : 0x262a, true);
}

void SessionBuilder::write_fades(BlockWriter& w, const Tables& tables) const {
  w.open(0x2630).u32(static_cast<std::uint32_t>(tables.fades.size()));
  for (const auto& [kind, fade] : tables.fades) {
    const unsigned a = std::min(BlockWriter::width_of(fade.before), 4U),
                   b = std::min(BlockWriter::width_of(fade.length), 4U);
    const unsigned s_curve = fade.shape == FadeShape::kSCurve;
    w.open(0x262f, 2).zeros(5).u8((b << 4) | a).zeros(2).number(fade.before, a).number(fade.length, b);
    w.u8(kind).u8(fade.shape == FadeShape::kEqualPower).zeros(4).u8(s_curve).zeros(2).u8(s_curve).zeros(4).close();
  }
  w.close();
  w.leaf(0x262e, {0, 0, 0, 0});
}

void SessionBuilder::write_placements(BlockWriter& w, const Tables& tables) const {
  struct Entry {
    std::uint64_t position;
    std::uint32_t index;
    const Clip* clip;  // null for a fade
  };
  const bool old = layout.old_placements;
  w.open(old ? 0x1012 : 0x1054).u32(static_cast<std::uint32_t>(tables.channels));
  std::vector<Entry> entries;
  for (const Tables::List& list : tables.lists) {
    const Track& track = tracks_[list.track];
    const std::uint64_t bias = track.in_ticks ? kTickOrigin : 0;
    for (unsigned leg = 0; leg < track.channels; ++leg) {
      if (old) {
        w.open(0x1011).open(0x100f);
        for (std::size_t i = 0; i < list.playlist->clips.size(); ++i) {
          w.open(0x100e).u16(0).u16(static_cast<unsigned>(list.first_leg + i * track.channels + leg)).u32(0).close();
        }
        w.close().zeros(2).close();  // never flush with its last entry
        continue;
      }
      entries.clear();
      const auto fade = [&](std::uint64_t at, std::uint8_t kind, const Fade& value) {
        if (value.length > 0) entries.push_back({at, tables.fade_numbers.at({kind, value}), nullptr});
      };
      std::size_t number = list.first_leg + leg;
      for (const Clip& clip : list.playlist->clips) {
        fade(clip.start, kFadeIn, clip.fade_in_);
        entries.push_back({clip.start + clip.sync_point, static_cast<std::uint32_t>(number), &clip});
        for (const std::uint64_t start : clip.further_starts) {
          entries.push_back({start + clip.sync_point, static_cast<std::uint32_t>(number), &clip});
        }
        fade(end_of(clip, track.in_ticks), kFadeOut, clip.fade_out_);
        number += track.channels;
      }
      for (const auto& [cut, value] : list.playlist->crossfades) fade(cut, kCrossfade, value);
      std::stable_sort(entries.begin(), entries.end(),
                       [](const Entry& a, const Entry& b) { return a.position < b.position; });

      w.open(0x1052, 3).text(layout.playlist_names ? list.playlist->name : "");
      w.u32(static_cast<std::uint32_t>(entries.size()));
      for (const Entry& entry : entries) {
        const Clip* clip = entry.clip;
        w.open(0x1050, 2).open(0x104f, 10);
        w.u8(clip != nullptr && clip->is_muted).u8(clip != nullptr && clip->time_lock).u32(entry.index).u8(0);
        w.u40(entry.position + bias).zeros(3).u8(clip != nullptr ? clip->entry_kind : layout.fade_kind ? 1 : 3);
        w.i16(clip != nullptr ? clip->palette_color : -2).u8(clip != nullptr && clip->is_group).zeros(3).fill(8, 0xff);
        w.u8(clip != nullptr && clip->edit_lock).zeros(4).close();
        w.u8(clip == nullptr || clip->is_deleted).u8(1).close();  // 0: a clip that plays
      }
      w.u8(track.in_ticks ? 2 : 1).u8(0).close();
    }
  }
  w.close();
}

void SessionBuilder::write_track_list(BlockWriter& w, const Tables& tables) const {
  w.open(0x1015).u32(static_cast<std::uint32_t>(tables.lists.size()));
  for (std::size_t i = 0; i < tables.lists.size(); ++i) {
    const unsigned channels = tracks_[tables.lists[i].track].channels;
    w.open(0x1014, 6).text(tables.lists[i].playlist->name).u8(channels - 1).u32(channels);
    for (unsigned leg = 0; leg < channels; ++leg) w.u16(static_cast<unsigned>(tables.lists[i].first_channel + leg));
    w.zeros(4);
    marked_id(w, kPlaylistId, i).zeros(7).close();
  }
  w.close();
}

void SessionBuilder::write_midi(BlockWriter& w) const {
  std::vector<const MidiClip*> clips;
  for (const Track& track : tracks_) {
    for (const MidiClip& clip : track.midi_clips) clips.push_back(&clip);
  }
  const auto count = static_cast<std::uint32_t>(clips.size());
  w.open(0x2000).u32(count);
  for (const MidiClip* clip : clips) {
    w.raw("MdNLB").u16(3).u32(static_cast<std::uint32_t>(clip->notes.size() * 35 + 4));
    w.u32(static_cast<std::uint32_t>(clip->notes.size()));
    for (const Note& note : clip->notes) {
      w.u40(note.position).zeros(3).u8(note.note).u40(note.length).zeros(3).u8(note.velocity).u8(64).zeros(16);
    }
    for (const MidiStream& stream : clip->streams) {
      w.raw("MdCDS").u16(3).u32(0).raw("Mdss").u16(2).u32(2).u8(stream.kind).u8(stream.controller);
      w.raw("MdCDB").u16(3).zeros(3).u32(static_cast<std::uint32_t>(stream.events.size()));
      for (const auto& [at, value] : stream.events) w.u40(at).zeros(3).i32(value);
    }
    if (!clip->sysex_events.empty()) {
      std::uint32_t size = 4;
      for (const auto& event : clip->sysex_events) size += 19 + static_cast<std::uint32_t>(event.second.size());
      w.raw("MdESL").u16(3).zeros(3).raw("MdTEL").u16(1).u32(size);
      w.u32(static_cast<std::uint32_t>(clip->sysex_events.size()));
      for (const auto& [at, bytes] : clip->sysex_events) {
        const auto payload = static_cast<std::uint32_t>(bytes.size());
        w.u40(at).zeros(3).u8(1).u8(0).u32(payload + 5).u8(0).text(bytes);
      }
    }
    w.zeros(35);  // the end of the notes is looked for that far ahead
  }
  w.close();
  w.open(0x2634).u32(count);
  for (std::uint32_t i = 0; i < count; ++i) {
    w.open(0x2633).open(0x2628, 2).text(clips[i]->name).three_point(0, clips[i]->length, 0).zeros(38).u32(UINT32_MAX);
    w.close().u32(i).close();
  }
  w.close();
  w.open(0x1058).u32(0);
  std::uint32_t number = 0;
  for (const Track& track : tracks_) {
    if (track.kind != TrackKind::kMidi && track.kind != TrackKind::kInstrument) continue;
    w.open(0x1057, 3).text(track.name).u32(static_cast<std::uint32_t>(track.midi_clips.size()));
    for (const MidiClip& clip : track.midi_clips) {
      w.open(0x1056).open(0x104f, 10).u8(clip.is_muted).u8(0).u32(number++).u8(0);
      w.u40(clip.start + (track.midi_in_samples ? 0 : kTickOrigin)).zeros(3).u8(3).i16(clip.palette).zeros(4);
      w.fill(8, 0xff).u8(clip.is_locked).zeros(4).close().close();
    }
    w.u8(2).u8(0).close();
  }
  w.close();
}

// Devices nest the blocks of their name, their port and their plug-in in each other.
void SessionBuilder::write_midi_devices(BlockWriter& w) const {
  if (midi_devices_.empty()) return;
  w.open(0x2004).u32(static_cast<std::uint32_t>(midi_devices_.size()));
  for (const auto& [name, is_plugin] : midi_devices_) {
    w.open(0x2005).zeros(8).open(0x2006, 3).fill(2, 0xff).text(name).u8(0).open(0x2086, 2).u8(0).text(name).u32(0);
    w.open(0x208c).zeros(2).text(name).u8(1);
    if (is_plugin) w.open(0x2097, 4).zeros(29).close();
    w.close().close().close().close();
  }
  w.close();
}

// Both codes of a signature with their last character first.
void SessionBuilder::write_plugin_names(BlockWriter& w) const {
  if (plugin_names_.empty()) return;
  w.open(0x1018, 2).u32(static_cast<std::uint32_t>(plugin_names_.size()));
  for (const auto& [signature, name] : plugin_names_) {
    std::string code = signature;
    std::reverse(code.begin(), code.begin() + 4);
    std::reverse(code.begin() + 4, code.end());
    w.open(0x1017, 2).u8(0).text(name).raw(code).zeros(8).close();
  }
  w.close();
}

// A block for each MIDI strip, by row, and the session's own behind them.
void SessionBuilder::write_real_time_properties(BlockWriter& w) const {
  std::vector<RealTime> strips;
  bool any = false;
  for (const Track& track : tracks_) {
    if (track.kind != TrackKind::kMidi && track.kind != TrackKind::kInstrument) continue;
    any |= track.real_time.has_value();
    strips.push_back(track.real_time.value_or(RealTime{}));
  }
  if (!any) return;
  strips.emplace_back();
  for (const RealTime& p : strips) {
    const int delay = p.delay_ticks.value_or(0);
    w.open(0x2502).zeros(2).u8(p.quantize).zeros(77).u8(p.duration).zeros(43);
    w.u8(p.delay_ticks.has_value())
        .u8(delay < 0)
        .u8(0)
        .u32(static_cast<std::uint32_t>(std::abs(delay) * 1000))
        .zeros(8);
    w.u8(p.velocity_percent || p.velocity_offset).u8(static_cast<unsigned>(p.velocity_percent.value_or(100))).u8(0);
    w.number(static_cast<std::uint64_t>(p.velocity_offset.value_or(0)), 1).zeros(4);
    w.u8(p.octaves || p.semitones).u8(0).number(static_cast<std::uint64_t>(p.octaves.value_or(0)), 1);
    w.number(static_cast<std::uint64_t>(p.semitones.value_or(0)), 1).close();
  }
}

void SessionBuilder::write_tempo_and_meter(BlockWriter& w) const {
  const auto events = static_cast<std::uint32_t>(tempo_.size());
  w.open(0x2028, 3).raw("Tempo").u16(2).u32(4 + 61 * events).u32(events).u32(0);
  double seconds = static_cast<double>(song_start_) / rate_;
  for (std::size_t i = 0; i < tempo_.size(); ++i) {
    if (i > 0) {
      const auto ticks = static_cast<double>(tempo_[i].tick - tempo_[i - 1].tick);
      seconds += ticks * 60 / (tempo_[i - 1].bpm * double{kQuarter});
    }
    w.raw("Const").u16(1).u32(46).raw("TMS").u16(1).u32(20).u8(i > 0 || !layout.tempo_signature).u8(1);
    w.u64(static_cast<std::uint64_t>(std::llround(seconds * rate_))).u64(tempo_[i].tick + kTickOrigin);
    w.u8(0).u8(1).f64(tempo_[i].bpm).u64(kQuarter).u8(1).zeros(4);
  }
  w.zeros(5).f64(rate_).close();

  const auto meters = static_cast<std::uint32_t>(meters_.size());
  w.open(0x2029).raw("Meter").u16(2).u32(4 + 36 * meters).u32(meters);
  for (const Meter& meter : meters_) {
    w.u64(meter.tick + kTickOrigin).u32(meter.bar).u32(meter.numerator).u32(meter.denominator).zeros(16);
  }
  w.zeros(8).close();
}

void SessionBuilder::write_rows(BlockWriter& w, const Tables& tables) const {
  w.open(0x2624).u32(static_cast<std::uint32_t>(tracks_.size()));
  for (std::size_t t = 0; t < tracks_.size(); ++t) {
    if (tracks_[t].kind != TrackKind::kBasicFolder) write_row(w, tables, t);
  }
  w.close();
}

std::pair<int, int> SessionBuilder::pans_of(const Track& track, const Send* send) {
  if (!send) return {track.left_pan, track.right_pan};
  if (send->panned) return {send->left_pan, send->right_pan};
  return track.channels < 2 ? std::pair(0, 0) : std::pair(-100, 100);
}

// The lanes of a strip, or of one of its sends: volume, mute, a group a channel, trim.
void SessionBuilder::write_lanes(BlockWriter& w, const Track& track, const Send* send) const {
  const bool ticks = track.in_ticks, panners = track.channels > 2 || layout.lanes == LaneLayout::kPanners;
  const Automation none;
  const auto pan = [&](unsigned side) {
    const auto [left, right] = pans_of(track, send);
    const Automation& moves = side == 0 ? (send ? send->pans : track.pans) : send ? send->right_pans : track.right_pans;
    write_lane(w, side == 0 ? left : right, moves, Unit::kWhole, ticks);
  };
  const auto trim = [&] { write_lane(w, 0, send ? none : track.trim, Unit::kTenths, ticks); };
  write_lane(w, tenths(send ? send->db : track.fader), send ? send->level : track.volume, Unit::kTenths, ticks);
  write_lane(w, send ? send->is_off : track.is_muted, send ? send->mutes : track.mutes, Unit::kWhole, ticks);
  if (layout.lanes == LaneLayout::kPlain) {
    for (unsigned side = 0; side < std::min(track.channels, 2U); ++side) pan(side);
  } else {
    for (unsigned side = 0; side < 2; ++side) {
      w.open(0x260c, 2);
      if (panners || side < track.channels) pan(side);
      // The rest of a panner; its second lane lies hard on its own side.
      for (unsigned i = 1; panners && i < 7; ++i) write_lane(w, i > 1 ? 0 : side == 0 ? -100 : 100);
      w.zeros(13).close();
    }
  }
  if (layout.lanes == LaneLayout::kPanners) write_lane(w, 0);
  if (!send && layout.lanes != LaneLayout::kPanGroupsNoTrim) trim();
}

void SessionBuilder::write_io_setup(BlockWriter& w) const {
  if (paths_.empty()) return;
  w.open(0x1022, 2).u32(static_cast<std::uint32_t>(paths_.size()));
  for (std::size_t i = 0; i < paths_.size(); ++i) {
    const IoPath& path = paths_[i];
    const auto count = static_cast<std::uint32_t>(path.channels.size());
    w.open(0x1021, 12).u8(static_cast<unsigned>(path.kind)).u8(count - 1).text(path.name).u32(count);
    for (const unsigned channel : path.channels) w.u16(channel);
    w.u16(0xffff).u8(1).zeros(4);
    marked_id(w, kPathId, i).zeros(3).u16(0xffff).u8(0).text(path.name).zeros(10).close();
  }
  w.close();
}

std::size_t SessionBuilder::path_number(const std::string& name) const {
  for (std::size_t i = 0; i < paths_.size(); ++i) {
    if (paths_[i].name == name) return i;
  }
  throw std::invalid_argument("no path " + name);
}

// One strip: its name with solo and automation behind it, its inserts, its level record with the lanes, and what the
// edit window knows of it.
void SessionBuilder::write_row(BlockWriter& w, const Tables& tables, std::size_t index) const {
  const Track& track = tracks_[index];

  const auto name_block = [&] {
    w.open(0x2619, 9).text(layout.row_names ? track.row_name : "").zeros(7);
    marked_id(w, kTrackId, index).zeros(4).close();
  };
  const auto strip = [&](bool has_levels) {
    w.open(0x102d, 2);
    name_block();
    w.u8(track.is_soloed).u8(static_cast<unsigned>(track.automation)).zeros(3).u8(1).close();
    w.u8(std::min(track.channels - 1, 2U)).fill(2, 0xff).u8(!track.is_inactive);
    w.open(0x2627).u16(static_cast<unsigned>(track.inserts.size() + track.hardware_inserts.size()));
    for (unsigned slot = 0; slot < track.inserts.size(); ++slot) write_insert(w, track.inserts[slot], slot);
    for (const std::string& slot : track.hardware_inserts) write_hardware_insert(w, slot);
    w.close();
    if (!has_levels) return;
    const auto level = [&](double db, bool post, bool muted, const Send* send, const std::string* output) {
      const auto [pan, right_pan] = pans_of(track, send);
      w.open(0x260d, 5).open(0x1029, 13).u8(post).i32(tenths(db)).u32(muted).u32(0);
      w.i32(pan).zeros(24).i32(right_pan).zeros(234).close().u16(1);
      if (!output) return;
      w.open(0x260e, 4).u16(1).u8(1).u8(1).zeros(4);
      marked_id(w, kOutputId, 2).zeros(16).text(*output).u8(1).u8(1).fill(8, 0xff).close();
    };
    level(track.fader, true, track.is_muted, nullptr, track.has_output ? &track.output_path : nullptr);
    write_lanes(w, track, nullptr);
    w.close();
    for (const Send& send : track.sends) {
      level(send.db, send.post, false, &send, &send.bus);
      w.text(send.bus + ".L").text(send.bus + ".R");
      write_lanes(w, track, &send);
      w.close();
    }
    if (!track.leg_path.empty()) marked_id(w, kPathId, path_number(track.leg_path));
    if (!track.input_path.empty()) {
      const std::size_t number = path_number(track.input_path);
      w.text(track.input_path).u32(0);
      marked_id(w, kPathId, number).u8(0).u8(static_cast<unsigned>(paths_[number].kind)).zeros(5);
    }
  };
  // Who belongs to it, in the edit window: visibility, height, comment, place.
  const auto track_data = [&](std::uint16_t holder) {
    w.open(holder, 9).open(0x200a, 10).open(0x2015, 18);
    w.open(0x2038).open(0x2037).close().u8(0).close();
    w.u8(0).u8(!track.is_hidden).zeros(4).u16(static_cast<unsigned>(track.row_height)).text(track.comment_text);
    w.f64(0.5).u8(1).open(0x2104).open(0x2103).close().zeros(12).close().zeros(12);
    w.open(0x2434).u32(4).zeros(5).close().u32(static_cast<std::uint32_t>(index + 1)).zeros(8).close();
    w.u8(track.is_solo_safe).zeros(32).close().zeros(32).close();
  };

  switch (track.kind) {
    case TrackKind::kAudio: {
      w.open(kAudioWrapper, 3).open(kAudioRow, 8);
      strip(true);
      w.close();
      // Which playlists are this strip's. The renders of a frozen track are nobody's.
      std::vector<std::size_t> own;
      for (std::size_t i = tables.first_list[index]; i < tables.first_list[index + 1]; ++i) {
        if (tables.lists[i].playlist->name != "?") own.push_back(i);
      }
      if (layout.playlist_ordinals) {
        w.u32(static_cast<std::uint32_t>(own.front())).u16(static_cast<unsigned>(own.size()));
        for (const std::size_t i : own) w.u32(static_cast<std::uint32_t>(i));
      } else {
        w.u32(0).u16(0xffff);
        for (const std::size_t i : own) marked_id(w, kPlaylistId, i);
      }
      w.u16(track.voice_off ? 0 : 0xffff);
      track_data(0x200b);
      w.close();
      break;
    }
    case TrackKind::kAux:
      w.open(kAuxWrapper, 3).open(kAudioRow, 11);
      strip(true);
      w.close();
      track_data(0x200d);
      w.close();
      break;
    case TrackKind::kMaster:
      w.open(kMasterRow).open(kAudioRow, 9);
      strip(true);
      w.close();
      track_data(0x200c);
      w.close();
      break;
    case TrackKind::kVca:
      w.open(kVcaRow);
      strip(false);
      track_data(0x200d);
      w.close();
      break;
    case TrackKind::kMidi:
    case TrackKind::kInstrument:
      w.open(track.kind == TrackKind::kMidi ? kMidiRow : kInstrumentRow, 9);
      strip(track.kind == TrackKind::kInstrument);
      track_data(0x2010);
      w.open(0x2611).open(0x2036, 4).u32(track.midi_fader).u32(track.is_muted).u32(track.midi_pan);
      w.u32(track.midi_device).u8(track.midi_program < 0 ? 0x80U : static_cast<unsigned>(track.midi_program)).zeros(17);
      if (track.midi_instrument != 0) w.u32(1).zeros(17).u32(42).u64(track.midi_instrument);
      w.close();
      write_lane(w, track.is_muted, track.mutes, Unit::kWhole, track.in_ticks);
      w.close();
      if (track.kind == TrackKind::kMidi && !track.volume.empty()) {
        w.open(0x2611);
        write_lane(w, 100, track.volume, Unit::kWhole, track.in_ticks);
        w.close();
      }
      w.close();
      break;
    case TrackKind::kVideo:
      w.open(kVideoRow);
      name_block();
      track_data(0x200e);
      w.close();
      break;
    case TrackKind::kBasicFolder:
      break;
  }
}

void SessionBuilder::write_grid(BlockWriter& w) const {
  if (!has_grid_) return;
  char text[40];
  std::snprintf(text, sizeof text, "%4u|%2u| %03u", grid_[0], grid_[1], grid_[2]);
  w.open(0x2066, 2).u32(2).u32(5).text("   0| 1| 000").text("  0:00.500").u32(5).text(text).text("  0:01.000").u32(2);
  w.close();
}

void SessionBuilder::write_locations(BlockWriter& w) const {
  w.open(0x2030, 5).u32(static_cast<std::uint32_t>(locations_.size()));
  unsigned number = 0;
  for (const Location& location : locations_) {
    const std::uint64_t bias = location.in_samples ? 0 : kTickOrigin;
    w.open(0x2077, 15).u16(++number).u8(location.in_samples ? 3 : 1).u8(location.kind).u16(0).text(location.name);
    w.u64(location.start + bias).u64(location.end + bias).zeros(110).i16(location.palette).zeros(4).close();
  }
  w.close();
}

void SessionBuilder::write_saved_by(BlockWriter& w) const {
  if (!layout.saved_by_at_end || product_.empty()) return;
  w.open(0x0003, 4).u8(0).text(product_).u32(3).u32(0).u32(6).u32(0).text(product_version_);
  w.u8(1).text("Release").text("Pro Tools Session File").zeros(8).close();
}

}  // namespace frt::test
