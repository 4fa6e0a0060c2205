#include "mix/track_page.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <unordered_set>

#include "base/decibel.h"

namespace frt {
namespace {

constexpr std::string_view kModeNames[] = {"Off", "Read", "Touch", "Latch", "Write", "Touch/Latch"};
constexpr int kCommentsAsItems = 0;

int round_up_to_even(int channels) { return channels + (channels & 1); }

class PageMaker {
 public:
  PageMaker(const Session& session, const Bound& bound, std::span<const OutputTrack> tracks, const Routing& routing,
            const MixTables& tables, TrimPolarity& polarity, const ConversionOptions& options)
      : clock_(session.clock),
        midi_states_(session.mixer.midi_states),
        one_sided_(session.mixer.one_sided),
        routing_(routing),
        tables_(tables),
        polarity_(polarity),
        options_(options),
        receives_(routing, bound, tracks, tables.surround_panners, session.clock) {
    for (const UnusualStrip& strip : session.mixer.unusual_strips) unusual_strips_.insert(strip.name);
  }

  TrackPage make(const OutputTrack& track, const BoundTrack& bound, TrackIndex index) {
    const MidiTrackState* midi = track.is_midi && !bound.strip ? find_by_key(midi_states_, track) : nullptr;
    const SurroundPanner* panner = find_by_key(tables_.surround_panners, track);
    TrackPage page;
    page.track = &track;
    page.color = color(track);
    page.timebase = timebase(track, bound);
    page.automation_mode = automation_mode(bound, panner);
    const int side = one_sided(track);
    decide_volume_and_pan(track, bound, panner, side, page);
    decide_mute(track, bound, midi, routing_.sends.prefader_source[index], page);
    if (index < tables_.folders.places.size()) page.folder = tables_.folders.places[index];
    decide_row(track, bound, page);
    page.pan_mode = pan_mode(track, bound, panner, side);
    page.channels = channels(track, index, bound, panner);
    page.main_send = !routing_.no_main_send.contains(track.key());
    page.bus_receives = receives_.bus_receives(track.key(), index, page.channels);
    const EnvelopeState state = envelope_state(bound, page);
    page.send_receives = receives_.send_receives(track.key(), index, state.active);
    // Pro Tools plays one playlist a track.
    page.silenced_take = track.alt_takes || track.orphan_playlist;
    if (track.orphan_playlist && !track.alt_takes) ++counts_.orphan_playlists;
    page.envelopes = envelopes(bound, midi, panner, state);
    decide_comment(bound, page);
    return page;
  }

  ReturnPage make_return(std::string_view name, const BoundTrack& bound, TrackIndex index) {
    OutputTrack track;  // bears the name for the look-ups
    track.name = name;
    ReturnPage page;
    page.name = name;
    page.color = color(track);
    if (const StripRecord* strip = bound.strip) {
      page.stereo = strip->is_stereo;
      page.volume = strip->volume_lane.moves() ? 1.0 : gain_of_db(strip->fader_db);
      page.pan = strip->pan_lane.moves() ? 0.0 : strip_pan(*strip);
      if (page.stereo) set_sides(*strip, page);
      page.mute = strip->muted;
      if (strip->volume_lane.moves() || strip->pan_lane.moves() || strip->mute_lane.moves()) {
        page.automation_mode = AutomationMode::kRead;
        ++counts_.automated_tracks;
      }
    }
    page.automation_mode = row_mode(bound, page.automation_mode);
    decide_row(track, bound, page);
    page.main_send = !routing_.no_main_send.contains(name) && !routing_.keys.key_only_returns.contains(name);
    const EnvelopeState state = envelope_state(bound, page);
    page.send_receives = receives_.send_receives(name, index, state.active);
    if (bound.strip)
      page.envelopes =
          return_envelopes(*bound.strip, unusual_strips_.contains(bound.strip->name), state, clock_, counts_.envelopes);
    decide_comment(bound, page);
    return page;
  }

  TrackCounts take_counts() {
    // A solo in REAPER silences the rest. Where the tracks soloed in Pro Tools were all muted as well, none of them is
    // written soloed, and an empty track does it for them.
    counts_.solo_keeper = counts_.soloed_and_muted > 0 && !solo_plays_;
    counts_.receives = receives_.counts;
    return std::move(counts_);
  }

 private:
  std::uint32_t color(const OutputTrack& track) {
    if (options_.no_track_colors) return kDefaultTrackColor;
    if (const auto* stored = find_by_names(tables_.colors.stored, track)) {
      ++counts_.colored_tracks;
      return palette_color(*stored).color;
    }
    if (const auto* coded = find_by_names(tables_.colors.coded, track)) {
      ++counts_.coded_color_tracks;
      return palette_color(*coded).color;
    }
    ++counts_.uncolored_tracks;
    return kDefaultTrackColor;
  }

  Timebase timebase(const OutputTrack& track, const BoundTrack& bound) {
    Timebase timebase = bound.timebase;
    if (track.is_midi)
      timebase = has_either_name(tables_.sample_based_midi, track) ? Timebase::kTime : Timebase::kBeats;
    if (timebase == Timebase::kTime) ++counts_.timebase_time;
    if (timebase == Timebase::kBeats) ++counts_.timebase_beats;
    if (timebase == Timebase::kBeatsPosition) ++counts_.timebase_beats_position;
    return timebase;
  }

  // Read where the track has automation: in Trim/Read the fader would apply on top of its own envelope. The session's
  // mode for the track comes first.
  AutomationMode automation_mode(const BoundTrack& bound, const SurroundPanner* panner) {
    AutomationMode mode = AutomationMode::kOff;
    if (const StripRecord* strip = bound.strip) {
      if (strip->volume_lane.moves() || strip->pan_lane.moves() || (strip->is_stereo && !panner) ||
          strip->mute_lane.moves() || strip->trim_lane.moves()) {
        mode = AutomationMode::kRead;
        ++counts_.automated_tracks;
      }
    }
    return row_mode(bound, mode);
  }

  static AutomationMode row_mode(const BoundTrack& bound, AutomationMode other) {
    return bound.row && bound.row->automation_mode != AutomationMode::kUntold ? bound.row->automation_mode : other;
  }

  static EnvelopeState envelope_state(const BoundTrack& bound, const StripPage& page) {
    EnvelopeState state{true, page.automation_mode == AutomationMode::kRead};
    if (bound.first_of_row) state.active = bound.row->automation_mode != AutomationMode::kOff;
    return state;
  }

  // A route goes by the Pro Tools name first.
  int one_sided(const OutputTrack& track) const {
    const int* side = find_by_pt_name_first(one_sided_, track);
    return side ? *side : 0;
  }

  void decide_volume_and_pan(const OutputTrack& track, const BoundTrack& bound, const SurroundPanner* panner,
                             int one_sided, TrackPage& page) {
    page.pan = track.forced_pan;
    if (const StripRecord* strip = bound.strip) {
      page.volume = gain_of_db(strip->fader_db);
      if (!track.is_leg()) page.pan = panner ? 0.0 : strip_pan(*strip);
      if (strip->volume_lane.moves()) {
        page.volume = 1.0;  // the envelope alone carries the level
        ++counts_.faders_at_unity;
      }
      if (strip->pan_lane.moves()) page.pan = 0.0;
      if (strip->is_stereo) {
        // In mode Off the envelopes are written inactive, and the resting pans hold.
        const bool envelopes_off = bound.first_of_row && bound.row->automation_mode == AutomationMode::kOff;
        if (!strip->dual_pan_moves() || panner || envelopes_off) set_sides(*strip, page);
      }
    }
    if (const auto* vca = find_by_names(tables_.groups.vca_master_db, track)) page.volume = gain_of_db(*vca);
    if (one_sided != 0) {
      page.pan = 0.0;
      page.left_pan = page.right_pan = one_sided;
    }
  }

  static double strip_pan(const StripRecord& strip) {
    const double left = strip.pan, right = strip.second_pan;
    return std::clamp((strip.is_stereo ? (left + right) / 2.0 : left) / 100.0, -1.0, 1.0);
  }
  static void set_sides(const StripRecord& strip, StripPage& page) {
    page.left_pan = strip.pan / 100.0;
    page.right_pan = strip.second_pan / 100.0;
  }

  void decide_mute(const OutputTrack& track, const BoundTrack& bound, const MidiTrackState* midi, bool prefader_source,
                   TrackPage& page) {
    if (bound.strip) {
      page.mute = bound.strip->muted;
    } else if (midi) {
      page.mute = midi->muted;
      if (midi->muted) ++counts_.midi_tracks_muted;
      if (midi->other_lanes) ++counts_.midi_other_lanes;
    }
    const bool silenced = track.inactive || track.voice_off;
    if (page.mute && !silenced && prefader_source) {
      // Pro Tools plays the pre-fader sends of a muted track, REAPER doesn't.
      if (bound.strip && (bound.strip->volume_lane.moves() || bound.strip->mute_lane.moves())) {
        counts_.prefader_kept_muted.push_back(track.name);
      } else {
        page.mute = false;
        page.volume = 0.0;
        counts_.prefader_faders_down.push_back(track.name);
      }
    }
    if (silenced) page.mute = true;
  }

  // A soloed track that is muted is silent in Pro Tools; REAPER would play it through its mute.
  bool solo(const BoundTrack& bound, bool mute) {
    if (!bound.row || bound.row->solo != Told01::kYes) return false;
    if (mute) {
      if (!bound.strip || !bound.strip->mute_lane.moves()) {
        ++counts_.soloed_and_muted;
        return false;
      }
      ++counts_.soloed_with_mute_points;
    }
    solo_plays_ = true;
    return true;
  }

  // All that goes by the row and the name, whatever kind of track it is. The mute is decided by then.
  void decide_row(const OutputTrack& track, const BoundTrack& bound, StripPage& page) {
    page.solo = solo(bound, page.mute);
    page.solo_safe = bound.row && bound.row->solo_safe == Told01::kYes;
    page.inverted = polarity_.inverted(track.key(), track.name);
    page.flipped_side = polarity_.one_side(track.key());
    if (bound.first_of_row) tell_row(bound, page);
    for (std::size_t k = 0; k < GroupLinks::kLinks; ++k) {
      if (const auto* mask = find_by_names(tables_.groups.masks[k], track)) page.groups.masks[k] = *mask;
    }
    page.height = bound.row ? std::max(bound.row->row_height, 0) : 0;
    if (page.height > 0) ++counts_.tracks_with_height;
  }

  // What a row says of its track is told once, however many tracks bear its name.
  void tell_row(const BoundTrack& bound, StripPage& page) {
    const TrackRow& row = *bound.row;
    const std::string name(bound.row_name);
    page.hidden = !row.visible;
    if (!row.visible) counts_.hidden_tracks.push_back(name);
    if (row.solo == Told01::kYes) counts_.soloed_tracks.push_back(name);
    if (row.solo_safe == Told01::kYes) counts_.solo_safe_tracks.push_back(name);
    if (!row.comment.empty()) counts_.commented_tracks.push_back(name);
    const AutomationMode mode = row.automation_mode;
    if (mode == AutomationMode::kOff) counts_.automation_off_tracks.push_back(name);
    if (mode != AutomationMode::kUntold && mode != AutomationMode::kRead) {
      ++counts_.tracks_not_in_read;
      counts_.other_mode_tracks.emplace_back(name, kModeNames[static_cast<int>(mode)]);
    }
  }

  void decide_comment(const BoundTrack& bound, StripPage& page) {
    if (options_.comments_mode != kCommentsAsItems || !bound.row || bound.row->comment.empty()) return;
    page.comment = bound.row->comment;
    ++counts_.comment_items;
  }

  PanMode pan_mode(const OutputTrack& track, const BoundTrack& bound, const SurroundPanner* panner,
                   int one_sided) const {
    const bool stereo = bound.strip && bound.strip->is_stereo;
    if ((stereo && !panner) || one_sided != 0 || has_either_name(tables_.folders.basic_folders, track))
      return PanMode::kDual;
    return bound.strip && !stereo && !panner && bound.width == 1 ? PanMode::kBalance : PanMode::kDefault;
  }

  int channels(const OutputTrack& track, TrackIndex index, const BoundTrack& bound, const SurroundPanner* panner) {
    int channels = 2;
    const StripKeys* keys = find_by_key(routing_.keys.strips, track);
    if (keys && keys->first_key != index) channels = 4 + 2 * static_cast<int>(keys->extra_keys.size());
    channels = std::max(channels, bound.surround_legs);
    if (const int* aux = find_by_key(routing_.aux_width, track)) {
      channels = std::max(channels, round_up_to_even(*aux));
      ++counts_.surround_aux_widths;
    }
    if (panner) channels = std::max(channels, round_up_to_even(panner->speakers));
    if (const int* legs = find_by_key(routing_.leg_channels, track)) channels = std::max(channels, *legs);
    return channels;
  }

  std::vector<Envelope> envelopes(const BoundTrack& bound, const MidiTrackState* midi, const SurroundPanner* panner,
                                  const EnvelopeState& state) {
    constexpr std::size_t kPannerLanes = 7;
    if (bound.strip) {
      const bool panner_lanes_left = panner && (panner->stereo_source || panner->lanes < kPannerLanes);
      const bool wide = unusual_strips_.contains(bound.strip->name);
      return strip_envelopes(*bound.strip, {wide, panner != nullptr, panner_lanes_left}, state, clock_,
                             counts_.envelopes);
    }
    std::vector<Envelope> envelopes;
    if (midi && midi->has_mute_lane && midi->mute_lane.moves()) {
      add_envelope(envelopes, EnvelopeTarget::kMute, midi->mute_lane, state, clock_);
      ++counts_.midi_mute_lanes;
    }
    return envelopes;
  }

  const Clock& clock_;
  const ByName<MidiTrackState>& midi_states_;
  const std::map<std::string_view, int>& one_sided_;
  const Routing& routing_;
  const MixTables& tables_;
  TrimPolarity& polarity_;
  const ConversionOptions& options_;
  ReceiveMaker receives_;
  TrackCounts counts_;
  bool solo_plays_ = false;
  std::unordered_set<std::string_view> unusual_strips_;
};

}  // namespace

TrackPages make_track_pages(const Session& session, const Bound& bound, std::span<const OutputTrack> tracks,
                            const Routing& routing, const MixTables& tables, TrimPolarity& polarity,
                            const ConversionOptions& options) {
  PageMaker maker(session, bound, tracks, routing, tables, polarity, options);
  TrackPages made;
  made.pages.reserve(tracks.size());
  for (std::size_t i = 0; i < tracks.size(); ++i)
    made.pages.push_back(maker.make(tracks[i], bound.tracks[i], static_cast<TrackIndex>(i)));
  made.returns.reserve(routing.return_index.size());
  for (std::size_t j = 0; const auto& [name, index] : routing.return_index)
    made.returns.push_back(maker.make_return(name, bound.returns[j++], index));
  made.counts = maker.take_counts();
  return made;
}

}  // namespace frt
