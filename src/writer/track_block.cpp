#include "writer/track_block.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "model/palette.h"
#include "writer/comments.h"
#include "writer/envelopes.h"

namespace frt {
namespace {

constexpr int kWritingStep = 3, kSteps = 6;

// Pro Tools' automation modes, and what each is as AUTOMODE. REAPER has no Touch/Latch.
constexpr int kModeOff = 0, kModeRead = 1;
constexpr std::string_view kModeNames[] = {"Off", "Read", "Touch", "Latch", "Write", "Touch/Latch"};
constexpr int kReaperModes[] = {0, 1, 2, 4, 3, 4};
constexpr int kReaperRead = 1;
constexpr int kModeCount = static_cast<int>(std::size(kReaperModes));

constexpr int kBeatTime = 0, kBeatBeats = 1, kBeatPosition = 2;
constexpr int kNoTimebase = -1;  // REAPER's project default

constexpr int kSoloInPlace = 2;

// A track's place in the look-ups: the Pro Tools name, or the written one if that is empty.
std::string_view track_key(const OutputTrack& track) {
  return track.pt_name.empty() ? std::string_view(track.name) : std::string_view(track.pt_name);
}

// The value of a track by its written name, else by its Pro Tools name; null if neither has one.
template <typename Map>
auto find_by_names(const Map& map, const OutputTrack& track) -> const typename Map::value_type* {
  auto found = map.find(track.name);
  if (found == map.end() && !track.pt_name.empty()) found = map.find(track.pt_name);
  return found == map.end() ? nullptr : &*found;
}

template <typename Map>
auto find_by_key(const Map& map, const OutputTrack& track) -> const typename Map::value_type* {
  const auto found = map.find(track_key(track));
  return found == map.end() ? nullptr : &*found;
}

int round_up_to_even(int channels) { return channels + (channels & 1); }

// Everything that is decided of a track before its first line.
struct TrackValues {
  const StripRecord* strip = nullptr;  // with mixer data
  const std::pair<const std::string, TrackRow>* row = nullptr;
  bool first_of_row = false;  // no track of that row's name was written before
  const SurroundPanner* panner = nullptr;
  bool wide_strip = false;

  std::uint32_t color = kDefaultTrackColor;
  int beat = kNoTimebase;
  int mode = 0;
  double volume = 1, pan = 0, left_pan = -1, right_pan = 1;
  bool mute = false;
  int solo = 0;
  int one_sided = 0;

  bool stereo_strip() const { return strip && strip->is_stereo && !panner; }
  bool has_row_mode() const {
    return row && row->second.automation_mode >= 0 && row->second.automation_mode < kModeCount;
  }
};

bool has_points(const AutomationLane& lane) { return !lane.points.empty(); }

class TrackWriter {
 public:
  TrackWriter(ProjectText& out, const WriterTables& tables, AudioItems& items, RunCounters& counters)
      : out_(out), tables_(tables), items_(items), counters_(counters) {}

  void write(const OutputTrack& track, std::size_t index) {
    const TrackValues values = decide(track);
    const auto i = static_cast<std::uint32_t>(index);

    out_.text("  <TRACK ").text(make_guid(guid_seed::kTrack + i)).text("\n    NAME ").quoted(track.name);
    out_.print("\n    PEAKCOL %lu\n    BEAT %d\n    AUTOMODE %d\n", static_cast<unsigned long>(values.color),
               values.beat, values.mode);
    out_.print("    VOLPAN %.6f %g -1 %.6f %.6f\n", values.volume, values.pan, values.left_pan, values.right_pan);
    out_.print("    MUTESOLO %d %d %d\n    IPHASE %d\n    ISBUS %s\n", values.mute ? 1 : 0, values.solo,
               values.row && values.row->second.solo_safe == 1 ? 1 : 0, is_inverted(track) ? 1 : 0, bus_text(index));
    EnvelopeState envelopes{true, values.mode == kReaperRead};
    if (values.first_of_row) process_row(values.row->first, values.row->second, envelopes);
    write_group_flags(track);
    write_pan_mode(track, values);

    const int height = values.row ? std::max(values.row->second.row_height, 0) : 0;
    if (height > 0) ++counters_.tracks_with_height;
    out_.print("    FREEMODE %d\n    TRACKHEIGHT %d 0 0 0 0 0 0\n    INQ 0 0 0 0.5 100 0 0 100\n",
               track.lanes.empty() ? 0 : 2, height);
    out_.print("    NCHAN %d\n    FX 1\n    TRACKID %s\n    MAINSEND %d 0\n", channels(track, values),
               make_guid(guid_seed::kTrackId + i).c_str(),
               tables_.routes.no_main_send.contains(track_key(track)) ? 0 : 1);

    // Receives of keys and buses, the plug-in chain and the track's other receives come here, in this order.
    if (contains(track.name, "[alt takes]") || contains(track.name, "[alt playlist]")) {
      out_.text("    MUTESOLO 1 0 0\n");  // the later line holds: Pro Tools plays one playlist a track
      if (contains(track.name, "[alt playlist]")) ++counters_.orphan_playlists;
    }
    write_lane_names(track);
    write_envelopes(track, values, envelopes);
    write_audio_items(out_, track, items_, counters_);
    // MIDI items come here, then, for a track delivered frozen, its render.
    write_comment(values, guid_seed::kTrack + i);
    out_.text("  >\n");
    ++counters_.tracks_written;
  }

  // A solo in REAPER silences the rest. Where the tracks soloed in Pro Tools were all muted as well, none of them
  // is written soloed, and an empty track does it for them.
  void write_solo_keeper() {
    if (counters_.soloed_and_muted == 0 || solo_plays_) return;
    out_.print(
        "  <TRACK %s\n    NAME \"Pro Tools solo (the soloed tracks were muted)\"\n    VOLPAN 1 0 -1 -1 1\n"
        "    MUTESOLO 0 2 0\n    IPHASE 0\n    ISBUS 0 0\n    NCHAN 2\n    MAINSEND 1 0\n  >\n",
        make_guid(guid_seed::kSoloKeeper).c_str());
    counters_.solo_keeper = true;
  }

 private:
  // ---- values ----

  TrackValues decide(const OutputTrack& track) {
    TrackValues values;
    if (const auto* strip = find_by_names(tables_.strips, track)) values.strip = strip->second;
    values.row = find_by_names(tables_.track_rows, track);
    values.first_of_row = values.row && !rows_written_.contains(values.row->first);
    if (const auto* panner = find_by_key(tables_.surround_panners, track)) values.panner = &panner->second;
    values.wide_strip = values.strip && tables_.wide_strips.contains(values.strip->name);
    values.one_sided = one_sided(track);
    values.color = color(track);
    values.beat = beat(track);
    values.mode = automation_mode(values);
    decide_volume_and_pan(track, values);
    decide_mute(track, values);
    values.solo = solo(values);
    return values;
  }

  std::uint32_t color(const OutputTrack& track) {
    if (tables_.options.no_track_colors) return kDefaultTrackColor;
    if (const auto* stored = find_by_names(tables_.colors.stored, track)) {
      ++counters_.colored_tracks;
      return palette_color(stored->second).color;
    }
    if (const auto* coded = find_by_names(tables_.colors.coded, track)) {
      ++counters_.coded_color_tracks;
      return palette_color(coded->second).color;
    }
    ++counters_.uncolored_tracks;
    return kDefaultTrackColor;
  }

  int beat(const OutputTrack& track) {
    int beat = kNoTimebase;
    if (track.is_midi) {
      const bool samples =
          tables_.sample_based_midi.contains(track.name) || tables_.sample_based_midi.contains(track.pt_name);
      beat = samples ? kBeatTime : kBeatBeats;
    } else if (const auto* timebase = find_by_names(tables_.maps.timebase, track)) {
      beat = timebase->second;
    }
    if (beat == kBeatTime) ++counters_.timebase_time;
    if (beat == kBeatBeats) ++counters_.timebase_beats;
    if (beat == kBeatPosition) ++counters_.timebase_beats_position;
    return beat;
  }

  // Read where the track has automation: in Trim/Read the fader would apply on top of its own envelope. The session's
  // mode for the track comes first.
  int automation_mode(const TrackValues& values) {
    int mode = 0;
    if (const StripRecord* strip = values.strip) {
      if (has_points(strip->volume_lane) || has_points(strip->pan_lane) || values.stereo_strip() ||
          has_points(strip->mute_lane) || has_points(strip->trim_lane)) {
        mode = kReaperRead;
        ++counters_.automated_tracks;
      }
    }
    return values.has_row_mode() ? kReaperModes[values.row->second.automation_mode] : mode;
  }

  int one_sided(const OutputTrack& track) const {
    const auto& sides = tables_.routes.one_sided;
    auto found = track.pt_name.empty() ? sides.end() : sides.find(track.pt_name);
    if (found == sides.end()) found = sides.find(track.name);
    return found == sides.end() ? 0 : found->second;
  }

  void decide_volume_and_pan(const OutputTrack& track, TrackValues& values) {
    values.pan = track.forced_pan;
    if (const StripRecord* strip = values.strip) {
      values.volume = gain_of_db(strip->fader_db);
      const double left = strip->pan, right = strip->second_pan;
      if (!contains(track.name, " [L]") && !contains(track.name, " [R]")) {
        const double pan = strip->is_stereo ? (left + right) / 2.0 : left;
        values.pan = values.panner ? 0.0 : std::clamp(pan / 100.0, -1.0, 1.0);
      }
      if (has_points(strip->volume_lane)) {
        values.volume = 1.0;  // the envelope alone carries the level
        ++counters_.faders_at_unity;
      }
      if (has_points(strip->pan_lane)) values.pan = 0.0;
      if (strip->is_stereo) {
        const bool dual_pan_moves =
            strip->dual_pan != 0 && (has_points(strip->dual_left_lane) || has_points(strip->right_pan_lane));
        // In mode Off the envelopes are written inactive, and the resting pans hold.
        const bool envelopes_off = values.first_of_row && values.row->second.automation_mode == kModeOff;
        if (!dual_pan_moves || values.panner || envelopes_off) {
          values.left_pan = left / 100.0;
          values.right_pan = right / 100.0;
        }
      }
    }
    if (const auto* vca = find_by_names(tables_.groups.vca_master_db, track)) values.volume = gain_of_db(vca->second);
    if (values.one_sided != 0) {
      values.pan = 0.0;
      values.left_pan = values.right_pan = values.one_sided;
    }
  }

  void decide_mute(const OutputTrack& track, TrackValues& values) {
    if (values.strip) {
      values.mute = values.strip->muted;
    } else if (const MidiTrackState* midi = midi_state(track)) {
      values.mute = midi->muted;
      if (midi->muted) ++counters_.midi_tracks_muted;
      if (midi->other_lanes) ++counters_.midi_other_lanes;
    }
    const bool silenced = track.inactive || track.voice_off;
    if (values.mute && !silenced && tables_.routes.prefader_sources.contains(track_key(track))) {
      // Pro Tools plays the pre-fader sends of a muted track, REAPER doesn't.
      if (values.strip && (has_points(values.strip->volume_lane) || has_points(values.strip->mute_lane))) {
        counters_.prefader_kept_muted.push_back(track.name);
      } else {
        values.mute = false;
        values.volume = 0.0;
        counters_.prefader_faders_down.push_back(track.name);
      }
    }
    if (silenced) values.mute = true;
  }

  const MidiTrackState* midi_state(const OutputTrack& track) const {
    if (!track.is_midi) return nullptr;
    const auto* state = find_by_key(tables_.midi_states, track);
    return state ? &state->second : nullptr;
  }

  // A soloed track that is muted is silent in Pro Tools; REAPER would play it through its mute.
  int solo(const TrackValues& values) {
    if (!values.row || values.row->second.solo != 1) return 0;
    if (values.mute) {
      if (!values.strip || !has_points(values.strip->mute_lane)) {
        ++counters_.soloed_and_muted;
        return 0;
      }
      ++counters_.soloed_with_mute_points;
    }
    solo_plays_ = true;
    return kSoloInPlace;
  }

  bool is_inverted(const OutputTrack& track) const {
    return tables_.routes.inverted.contains(track.name) || tables_.routes.inverted.contains(track.pt_name);
  }

  const char* bus_text(std::size_t index) const {
    const auto& texts = tables_.folders.bus_texts;
    return index < texts.size() && !texts[index].empty() ? texts[index].c_str() : "0 0";
  }

  int channels(const OutputTrack& track, const TrackValues& values) {
    int channels = 2;
    if (const auto* extra = find_by_key(tables_.routes.extra_key_sources, track)) channels = 4 + 2 * extra->second;
    if (const auto* legs = find_by_names(tables_.maps.surround_legs, track))
      channels = std::max(channels, legs->second);
    if (const auto* aux = find_by_key(tables_.routes.surround_aux_channels, track)) {
      channels = std::max(channels, round_up_to_even(aux->second));
      ++counters_.surround_aux_widths;
    }
    if (values.panner) channels = std::max(channels, round_up_to_even(values.panner->speakers));
    if (const auto* legs = find_by_key(tables_.routes.bus_leg_channels, track))
      channels = std::max(channels, legs->second);
    return channels;
  }

  // ---- lines ----

  // What a row says of its track is told once, however many tracks bear its name.
  void process_row(const std::string& name, const TrackRow& row, EnvelopeState& envelopes) {
    rows_written_.insert(name);
    if (row.row_visible == 0) {
      out_.text("    SHOWINMIX 0 0.6667 0.5 0 0.5 0 0 0 0\n");
      counters_.hidden_tracks.push_back(name);
    }
    if (row.solo == 1) counters_.soloed_tracks.push_back(name);
    if (row.solo_safe == 1) counters_.solo_safe_tracks.push_back(name);
    if (!row.comment.empty()) counters_.commented_tracks.push_back(name);
    const int mode = row.automation_mode;
    if (mode == kModeOff) counters_.automation_off_tracks.push_back(name);
    if (mode >= 0 && mode < kModeCount && mode != kModeRead) {
      ++counters_.tracks_not_in_read;
      counters_.other_mode_tracks.push_back(" " + name + "=" + std::string(kModeNames[mode]));
    }
    envelopes.active = mode != kModeOff;
  }

  void write_group_flags(const OutputTrack& track) {
    // Where each mask stands in REAPER's row of fields: as leader and as follower, VCA links apart.
    struct Fields {
      TrackGroups::Mask mask;
      std::size_t first, last;
    };
    static constexpr Fields kFields[] = {
        {TrackGroups::kVolume, 0, 1},           {TrackGroups::kMute, 4, 5},        {TrackGroups::kSolo, 6, 7},
        {TrackGroups::kAutomationMode, 12, 13}, {TrackGroups::kVcaMaster, 20, 20}, {TrackGroups::kVcaMember, 21, 21},
    };
    std::uint32_t flags[22] = {};
    std::size_t count = 0;
    for (const Fields& fields : kFields) {
      const auto* mask = find_by_names(tables_.groups.masks[fields.mask], track);
      if (!mask || mask->second == 0) continue;
      flags[fields.first] = flags[fields.last] = mask->second;
      count = fields.last + 1;
    }
    if (count == 0) return;
    out_.text("    GROUP_FLAGS");
    for (std::size_t k = 0; k < count; ++k) out_.text(" ").integer(flags[k]);
    out_.text("\n");
  }

  void write_pan_mode(const OutputTrack& track, const TrackValues& values) {
    const Names& basic = tables_.folders.basic_folders;
    if (values.stereo_strip() || values.one_sided != 0 || basic.contains(track.name) || basic.contains(track.pt_name)) {
      out_.text("    PANMODE 6\n");
      return;
    }
    if (!values.strip || values.strip->is_stereo || values.panner) return;
    const auto* width = find_by_names(tables_.maps.width, track);
    if (width && width->second == 1) out_.text("    PANMODE 3\n");
  }

  void write_lane_names(const OutputTrack& track) {
    if (track.lanes.empty()) return;
    out_.text("    FIXEDLANES 9 0 0 0 0\n    LANESOLO 1 0 0 0 0 0 0 0\n    ITEMLANES ")
        .integer(static_cast<long long>(track.lanes.size()) + 1)
        .text("\n    LANENAME ")
        .quoted(track_key(track));
    for (const Lane& lane : track.lanes) out_.text(" ").quoted(lane.name);
    out_.text("\n");
  }

  void write_envelopes(const OutputTrack& track, const TrackValues& values, const EnvelopeState& state) {
    const LaneTimes times{tables_.tempo, tables_.sample_rate};
    if (values.strip) {
      constexpr std::size_t kPannerLanes = 7;
      const bool panner_lanes_left =
          values.panner && (values.panner->stereo_source || values.panner->lanes < kPannerLanes);
      write_strip_envelopes(out_, *values.strip, {values.wide_strip, values.panner != nullptr, panner_lanes_left},
                            state, times, counters_);
    } else if (const MidiTrackState* midi = midi_state(track); midi && midi->has_mute_lane) {
      write_envelope(out_, "MUTEENV", midi->mute_lane, EnvelopeKind::kMute, "    ", false, state, times);
      ++counters_.midi_mute_lanes;
    }
  }

  void write_comment(const TrackValues& values, std::uint32_t track_seed) {
    constexpr int kCommentsAsItems = 0;
    if (tables_.options.comments_mode != kCommentsAsItems || !values.row || values.row->second.comment.empty()) return;
    write_comment_item(out_, values.row->second.comment, track_seed);
    ++counters_.comment_items;
  }

  ProjectText& out_;
  const WriterTables& tables_;
  AudioItems& items_;
  RunCounters& counters_;
  std::unordered_set<std::string_view> rows_written_;  // views into the tables' names
  bool solo_plays_ = false;
};

}  // namespace

StripIndex index_strips(const std::vector<StripRecord>& strips) {
  StripIndex index;
  index.reserve(strips.size());
  for (const StripRecord& strip : strips) {
    if (strip.has_mixer_data) index.try_emplace(strip.name, &strip);
  }
  return index;
}

void write_tracks(ProjectText& out, const std::vector<OutputTrack>& tracks, const WriterTables& tables,
                  AudioItems& items, RunCounters& counters, frtgui::Progress* progress) {
  TrackWriter writer(out, tables, items, counters);
  for (std::size_t i = 0; i < tracks.size(); ++i) {
    if (progress) {
      const std::string stage = format_text("%.24s %lu/%lu", "writing", static_cast<unsigned long>(i),
                                            static_cast<unsigned long>(tracks.size()));
      progress->report(kWritingStep, kSteps, stage.c_str());
    }
    writer.write(tracks[i], i);
  }
  // Video tracks come here, then a block for each send target that is no written track.
  writer.write_solo_keeper();
}

}  // namespace frt
