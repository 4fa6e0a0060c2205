#include "mix/parameter_lanes.h"

#include <algorithm>
#include <utility>

namespace frt {
namespace {

// By how much a plug-in's numbers in Pro Tools lie above REAPER's, by the beginning of its signature.
struct OffsetRule {
  std::string_view signature;
  std::int64_t offset;
};
constexpr OffsetRule kOffsets[] = {
    {"FabF", 2},     {"oDinvee3", 2}, {"ikm_Atx3", 2}, {"NiInNi$D", 2}, {"UHfXDiVa", 2},
    {"VstPXfTT", 1}, {"sftbTTCC", 1}, {"JptrATLv", 1}, {"iZtp", 1},
};

std::optional<std::int64_t> offset_of(std::string_view signature) {
  for (const OffsetRule& rule : kOffsets) {
    if (signature.starts_with(rule.signature)) return rule.offset;
  }
  return std::nullopt;
}

// A number of 1 to 6 digits, without a zero ahead of others.
std::optional<std::int64_t> label_number(std::string_view label) {
  constexpr std::size_t kMostDigits = 6;
  if (label.empty() || label.size() > kMostDigits || (label.size() > 1 && label.front() == '0')) return std::nullopt;
  std::int64_t value = 0;
  for (const char c : label) {
    if (c < '0' || c > '9') return std::nullopt;
    value = value * 10 + (c - '0');
  }
  return value;
}

// REAPER counts in signed numbers.
std::int64_t number_of(const AutomatedControl& control) { return static_cast<std::int32_t>(control.param_number); }

// Plug-ins number their controls from 1 behind the bypass, or from 2: what a control's index in REAPER is then.
constexpr std::int64_t kNear[] = {1, 2};

// "Band 1: Gain" is "Gain".
std::string_view without_group(std::string_view name) {
  const std::size_t group = name.rfind(": ");
  return group == name.npos ? name : name.substr(group + 2);
}

std::string_view text_of_record(const KnowledgeRecord* record) {
  return record ? std::string_view(record->display_text) : std::string_view();
}

std::string counted_as(const InsertRecord& insert, const KnowledgeRecord* record) {
  const std::string_view text = text_of_record(record);
  return text.empty() ? insert.signature : std::string(text);
}

std::uint32_t guid_seed_of(const InsertRecord& insert, const AutomatedControl& control) {
  return static_cast<std::uint32_t>(insert.start << 4) ^ control.param_number * 0x9E3779B1U;
}

}  // namespace

std::optional<double> ParameterLane::initial() const {
  const bool starts_behind = !control->points.empty() && control->points.front().first > 0;
  return starts_behind ? std::optional(control->initial_value) : std::nullopt;
}

double ParameterLane::seconds(std::size_t i) const {
  return std::max(clock->of(control->points[i].first, control->tick_based), 0.0);
}

double ParameterLane::value(std::size_t i) const { return std::clamp(control->points[i].second, 0.0, 1.0); }

std::vector<ParameterLane> ParameterLaneMaker::place(const InsertRecord& insert, const KnowledgeRecord* record) {
  const std::string_view plugin = text_of_record(record);
  const auto offset = offset_of(insert.signature);
  std::vector<ParameterLane> lanes;
  for (const AutomatedControl& control : insert.automated) {
    if (counts_elsewhere(control)) continue;
    const std::int64_t number = number_of(control);
    std::int64_t index = 0;
    bool live = true;
    const auto label = label_number(control.label);
    if (label && (*label == number - kNear[0] || *label == number - kNear[1])) {
      index = *label;
      ++counts.by_number;
    } else if (const auto named = index_by_name(plugin, control); named && *named >= 0) {
      index = *named;
      ++counts.by_name;
    } else {
      if (!plugin.empty()) counts.wanted_params.emplace(plugin);
      live = offset.has_value();
      index = number - offset.value_or(kNear[0]);
      if (!live) ++counts.switched_off[counted_as(insert, record)];
      if (index < 0) continue;
    }
    if (live) counts.points += static_cast<int>(control.points.size());
    std::string title = live ? "" : "ASSIGN: ";
    title += control.name;
    if (!plugin.empty()) (title += " / ") += plugin;
    lanes.push_back(
        {static_cast<std::int32_t>(index), live, std::move(title), guid_seed_of(insert, control), &control, &clock_});
  }
  return lanes;
}

void ParameterLaneMaker::count_without_settings(const InsertRecord& insert, const KnowledgeRecord* record) {
  for (const AutomatedControl& control : insert.automated) {
    if (!counts_elsewhere(control)) ++counts.no_settings[counted_as(insert, record)];
  }
}

void ParameterLaneMaker::count_on_stand_in(const InsertRecord& insert, std::string_view family) {
  for (const AutomatedControl& control : insert.automated) {
    if (!counts_elsewhere(control)) ++counts.on_stand_ins[std::string(family)];
  }
}

// True for a control that has no lane: it never moves, or switches the whole plug-in, which REAPER does elsewhere.
bool ParameterLaneMaker::counts_elsewhere(const AutomatedControl& control) {
  if (control.points.empty()) return true;
  const bool bypass = control.name == "Global Bypass" || control.name == "Master Bypass";
  if (bypass) ++counts.bypass_lanes;
  return bypass;
}

// The parameter of the control's name: the one of two likely places that bears it, or the only one of all that does.
// Names are compared as they stand, then without the group in front.
std::optional<std::int32_t> ParameterLaneMaker::index_by_name(std::string_view plugin,
                                                              const AutomatedControl& control) {
  if (plugin.empty() || control.name.empty()) return std::nullopt;
  const auto list = names_.find(plugin);
  if (list == names_.end()) return std::nullopt;
  const NamedParameters& named = parameters_of(list);
  for (const bool bare : {false, true}) {
    const std::string_view name = bare ? without_group(control.name) : control.name;
    int hits = 0;
    std::int32_t index = 0;
    for (const std::int64_t below : kNear) {
      const auto near = list->second.find(static_cast<int>(number_of(control) - below));
      if (near == list->second.end()) continue;
      if ((bare ? without_group(near->second) : std::string_view(near->second)) != name) continue;
      if (hits++ == 0) index = near->first;
    }
    if (hits == 1) return index;
    if (hits > 1) return std::nullopt;
    const auto& all = bare ? named.bare : named.whole;
    if (const auto found = all.find(name); found != all.end() && found->second.only) return found->second.index;
  }
  return std::nullopt;
}

// A plug-in may have thousands of parameters and as many lanes: a walk over the list for each lane would grow with
// both.
const ParameterLaneMaker::NamedParameters& ParameterLaneMaker::parameters_of(ParamNames::const_iterator plugin) {
  const auto [entry, is_new] = named_.try_emplace(plugin->first);
  if (is_new) {
    const auto add = [](auto& map, std::string_view name, std::int32_t index) {
      const auto [place, first] = map.try_emplace(name, Place{index});
      if (!first) place->second.only = false;
    };
    for (const auto& [index, name] : plugin->second) {
      add(entry->second.whole, name, index);
      add(entry->second.bare, without_group(name), index);
    }
  }
  return entry->second;
}

}  // namespace frt
