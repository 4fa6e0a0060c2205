// Where the rows of the notes find their values and conditions: every source is a function of what a run tells, named
// or a lambda; in<&TrackCounts::colored_tracks> is the function that reads one member.
#pragma once

#include <concepts>
#include <functional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <variant>

#include "report/name_list.h"
#include "report/told.h"

namespace frt {

// The structs whose members `in` reads, and where they stand in what a run tells. No type may stand here twice.
inline auto parts_of(const Told& told) {
  const Session& session = told.session;
  const SessionSettings& settings = session.headers.settings;
  const ClipCounts& clips = told.clips;
  const MixCounts& mix = told.mix;
  return std::tie(told, told.options, told.plugins,                                                                 //
                  session.saved_by, session.clock.tempo, session.mixer, session.mixer.table, session.mixer.master,  //
                  settings.recording, settings.timecode, settings.pan_depth,                                        //
                  clips, clips.pairing, clips.deleted, clips.fades, clips.gain, clips.long_clips,                   //
                  told.folding, told.midi, told.order,                                                              //
                  mix, mix.header, mix.header.tempo, mix.header.markers,                                            //
                  mix.routing, mix.routing.sends, mix.routing.keys,                                                 //
                  mix.tracks, mix.tracks.envelopes, mix.tracks.receives, mix.items,                                 //
                  mix.midi, mix.midi.colors, mix.fx, mix.fx.parameters, mix.fx.stand_ins, mix.fx.stand_ins.eq3,
                  mix.trims,  //
                  told.media);
}

// in<&Part::member>: the function that reads that member, of Told also one of its functions. Lists of names are not
// copied.
template <auto Member>
struct MemberReader;
template <typename T, typename Part, T Part::*Member>
struct MemberReader<Member> {
  using Given = std::remove_cvref_t<std::invoke_result_t<decltype(Member), const Part&>>;
  using Result = std::conditional_t<std::is_same_v<Given, NameVector>, const Given&, Given>;
  static Result read(const Told& told) { return std::invoke(Member, std::get<const Part&>(parts_of(told))); }
};
template <auto Member>
inline constexpr auto in = &MemberReader<Member>::read;

// One value of a text; what its source gives says for which conversions it may stand.
class Value {
 public:
  template <typename T>
  using From = T (*)(const Told&);

  constexpr Value() = default;
  // A source, or a text that is always the same.
  template <typename Source>
  requires(!std::same_as<Source, Value>) constexpr Value(Source source) : source_(+source) {}

  // `type` as TextPart says it.
  constexpr bool fits(std::string_view type) const {
    return std::visit([&](auto source) { return fits(source, type); }, source_);
  }
  // The value by a conversion that it fits.
  std::string formatted(const std::string& conversion, const Told& told) const;

 private:
  static constexpr bool fits(From<int>, std::string_view type) { return type == "d"; }
  static constexpr bool fits(From<unsigned>, std::string_view type) { return type == "u"; }
  static constexpr bool fits(From<long>, std::string_view type) { return type == "ld"; }
  static constexpr bool fits(From<long long>, std::string_view type) { return type == "lld"; }
  static constexpr bool fits(From<double>, std::string_view type) { return type == "f" || type == "g"; }
  static constexpr bool fits(From<std::string>, std::string_view type) { return type == "s"; }
  static constexpr bool fits(From<std::string_view>, std::string_view type) { return type == "s"; }
  static constexpr bool fits(From<const char*>, std::string_view type) { return type == "s"; }
  static constexpr bool fits(const char*, std::string_view type) { return type == "s"; }

  std::variant<const char*, From<int>, From<unsigned>, From<long>, From<long long>, From<double>, From<std::string>,
               From<std::string_view>, From<const char*>>
      source_;
};

// What has to hold for a row to print.
class Condition {
 public:
  using Test = bool (*)(const Told&);

  constexpr Condition() = default;  // holds always
  template <std::convertible_to<Test> Source>
  constexpr Condition(Source test, bool wanted = true) : test_(test), wanted_(wanted) {}

  bool holds(const Told& told) const { return !test_ || test_(told) == wanted_; }

 private:
  Test test_ = nullptr;
  bool wanted_ = true;
};

inline constexpr Condition always;
constexpr Condition unless(Condition::Test test) { return Condition(test, false); }

}  // namespace frt
