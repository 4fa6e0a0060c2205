#include "mix/fx_chain.h"

#include <algorithm>
#include <set>
#include <utility>

#include "base/text.h"
#include "mix/fx_names.h"
#include "mix/stand_ins.h"

namespace frt {
namespace {

constexpr int kLeaveOutBypassed = 2, kBypassedOffline = 1;  // ConversionOptions::fx_bypass_mode

// Tracks of one name have one strip, and each gets its chain. No project comes near this many bytes of inserts in the
// repeats; of a session that gives one long chain to thousands of tracks the further ones go without.
constexpr std::uint64_t kMostRepeated = std::uint64_t{64} << 20;
constexpr std::uint64_t kRowBytes = 1024;  // what an insert, or a control of it, costs beside its block
constexpr std::uint64_t kPointBytes = 40;  // of an automated control

constexpr std::string_view kNothingStored = "Pro Tools stored no transferable settings for it";

// Why the settings of a known plug-in could not be carried.
std::string_view why_without_settings(const InsertRecord& insert, const KnowledgeRecord& record) {
  if (record.is_clap() && insert.kind != StateKind::kNone) {
    return "tried: its settings ARE in the session, but how the CLAP build of this plug-in stores them is not measured "
           "yet. In REAPER, put the plug-in on a track, right-click the FX chain, Save chain as .RfxChain, and send "
           "that file with this report: one export is all it takes";
  }
  if (insert.alt.length != 0 || insert.doc_label == "AAX chunk after elck") {
    return "tried: its settings ARE in the session, but how this build of the plug-in takes them is not known yet, and "
           "a wrong guess loads wrong settings silently - so nothing was guessed. Worth telling us about";
  }
  if (insert.kind == StateKind::kControls) {
    return "tried: Pro Tools stored only its control values, in a layout not yet known for this plug-in's REAPER build";
  }
  return kNothingStored;
}

std::string_view why_unrecognized(const InsertRecord& insert) {
  if (insert.kind == StateKind::kWaves)
    return "REAPER has not scanned this Waves plug-in - rescan plug-ins in REAPER and convert again";
  if (insert.signature.starts_with("Digi") || insert.signature.starts_with("Avid")) {
    return "not recognized. The maker code says Avid, and Avid's stock plug-ins ship as AAX only - if this is one, no "
           "converter can move it";
  }
  return "not recognized - we have not matched this one to a REAPER plug-in yet";
}

// An identity for a slot whose plug-in REAPER can't have: made of the name, so that it is the same in every run and no
// other plug-in's.
std::string made_up_ident(std::string_view name) {
  constexpr std::size_t kNameBytes = 8, kDigits = 32;
  std::uint32_t hash = 2166136261U;
  for (const char c : name) hash = (hash ^ static_cast<std::uint8_t>(c)) * 16777619U;
  std::string digits;
  for (const char c : name.substr(0, kNameBytes)) digits += format_text("%02X", static_cast<std::uint8_t>(c));
  for (std::uint32_t x = hash; digits.size() < kDigits;) {
    x = x * 1103515245U + 12345U;
    digits += "0123456789ABCDEF"[x >> 28];
  }
  return format_text("%u{%s}", hash | 1U, digits.c_str());
}

}  // namespace

StateBytes FxSlot::carried_state() const {
  return has_state ? transform_state(*insert, *record, image, transform).bytes : StateBytes();
}

StateBytes FxSlot::state() const {
  StateBytes bytes = carried_state();
  switch_off_midi_trigger(insert->signature, bytes, transform);
  return bytes;
}

FxChainMaker::FxChainMaker(const Session& session, const Plugins& plugins, const KeyInputs& keys, const Trims& trims,
                           const ConversionOptions& options)
    : inserts_(session.mixer.inserts),
      plugins_(plugins),
      keys_(keys),
      trims_(trims),
      options_(options),
      repeat_left_(kMostRepeated),
      sample_rate_(session.clock.rate),
      fitter_(session.clock.rate),
      lanes_(plugins.param_names, session.clock) {
  for (const ReaperPluginEntry& entry : plugins.cache.entries) {
    if (entry.is_clap) {
      installed_.clap_ids.insert(entry.clap_id);
    } else {
      installed_.uids.insert(entry.uid);
      installed_.class_ids.insert(entry.class_id);
    }
  }
  for (const AaxOnlyRow& row : aax_only_rows()) aax_only_.try_emplace(row.signature, &row);
  tell_multi_mono();
}

// ---- first, what each insert becomes ----

FxChain FxChainMaker::make(const FxStrip& strip) {
  FxChain chain;
  chain.of_master = strip.of_master;
  if (!strip.of_master && strip.flipped != TrimPolarity::Side::kNone && !options_.no_stand_ins)
    chain.polarity = trim_polarity_slot(strip.name, strip.flipped);
  const auto found = inserts_.strips.find(strip.name);
  if (found == inserts_.strips.end()) return chain;
  if (!made_.insert(found->first).second && !may_repeat(found->second)) return chain;
  int position = 0;
  for (const std::uint32_t index : found->second) take(inserts_.records[index], strip, ++position, chain);
  if (strip.keyed_passthrough) {
    const auto last = std::find_if(chain.slots.rbegin(), chain.slots.rend(),
                                   [](const FxSlot& slot) { return slot.kind != FxSlot::Kind::kAaxOnly; });
    if (last != chain.slots.rend()) last->first_pair_only = true;
  }
  if (strip.of_master) counts_.master_slots += static_cast<int>(chain.slots.size());
  return chain;
}

bool FxChainMaker::may_repeat(const std::vector<std::uint32_t>& inserts) {
  std::uint64_t bytes = 0;
  for (const std::uint32_t i : inserts) {
    const InsertRecord& insert = inserts_.records[i];
    bytes += insert.end - insert.start + kRowBytes;
    for (const AutomatedControl& control : insert.automated) bytes += kRowBytes + kPointBytes * control.points.size();
    if (bytes > repeat_left_) return false;
  }
  repeat_left_ -= bytes;
  return true;
}

FxCounts FxChainMaker::take_counts() {
  counts_.parameters = std::move(lanes_.counts);
  return std::move(counts_);
}

void FxChainMaker::take(const InsertRecord& insert, const FxStrip& strip, int position, FxChain& chain) {
  const std::string key = insert_key(insert);
  const KnowledgeRecord* record = plugins_.lookup(key);
  FxReportRow row;
  row.strip = strip.name;
  row.slot = position;
  row.name = shown_name(insert, record);
  row.maker = shown_maker(insert, record);
  if (record) row.format = format_of(record->display_text);
  row.inactive = insert.inactive;
  ++counts_.all[row.name];

  if (options_.fx_bypass_mode == kLeaveOutBypassed && (insert.bypassed || insert.inactive)) {
    ++counts_.bypassed_left_out;
    row.outcome = FxOutcome::kBypassed;
    row.reason = insert.inactive ? "was inactive in Pro Tools" : "was bypassed in Pro Tools";
  } else if (is_missing(record) && options_.skip_missing_fx) {
    counts_.left_out[row.name] = record->display_text;
    row.outcome = FxOutcome::kNotInstalled;
    row.reason = "not installed for REAPER here - left out";
  } else if (record && !record->ident.empty()) {
    row.not_installed = is_missing(record);
    if (row.not_installed) counts_.not_installed[row.name] = record->display_text;
    write_plugin(insert, *record, key, strip, row, chain);
  } else if (write_trim_gain(insert, strip, row, chain) || stand_in(insert, strip, row, chain)) {
    row.outcome = FxOutcome::kSettings;
    row.format = FxFormat::kReaper;
  } else if (const auto known = aax_only_.find(insert.signature);
             known != aax_only_.end() || is_stock_family(insert.signature)) {
    leave_avid(insert, strip, row, chain);
  } else {
    ++counts_.unrecognized[key];
    row.outcome = FxOutcome::kUnrecognized;
    row.reason = why_unrecognized(insert);
  }
  counts_.rows.push_back(std::move(row));
}

// Without a list of REAPER's nothing is known to be missing.
bool FxChainMaker::is_missing(const KnowledgeRecord* record) const {
  if (!record || record->ident.empty() || plugins_.cache.empty()) return false;
  const std::uint32_t uid = uid_of(record->ident);
  const std::string_view class_id = class_id_of(record->ident);
  return !(uid != 0 && installed_.uids.contains(uid)) &&
         !(!class_id.empty() && installed_.class_ids.contains(class_id)) &&
         !installed_.clap_ids.contains(record->ident);
}

// ---- the kinds of slots ----

void FxChainMaker::write_plugin(const InsertRecord& insert, const KnowledgeRecord& record, std::string_view key,
                                const FxStrip& strip, FxReportRow& row, FxChain& chain) {
  FxSlot slot;
  slot.insert = &insert;
  slot.record = &record;
  slot.image = inserts_.image;
  slot.transform = {.track_has_midi = strip.has_midi,
                    .keep_plugin_midi = options_.keep_plugin_midi,
                    .kontakt_state = options_.kontakt_state,
                    .vst2_override = plugins_.vst2_overrides.contains(key)};
  slot.pins = pins_of(insert, strip);
  if (insert.kind != StateKind::kNone) {
    TransformedState state = transform_state(insert, record, inserts_.image, slot.transform);
    slot.has_state = !state.bytes.empty();
    const bool off_behind = switch_off_midi_trigger(insert.signature, state.bytes, slot.transform);
    if (slot.has_state && (state.midi_trigger_off || off_behind)) {
      counts_.midi_triggers_off.push_back(std::string(strip.name) + " / " + record.name);
    }
  }
  if (!slot.has_state) {
    row.reason = why_without_settings(insert, record);
    row.outcome = options_.placeholders ? FxOutcome::kDefaults : FxOutcome::kNoPlaceholder;
    ++(options_.placeholders ? counts_.offline : counts_.stateless)[row.name];
    if (!options_.placeholders) return;
    slot.bypassed = slot.offline = true;
    lanes_.count_without_settings(insert, &record);
  } else {
    row.outcome = FxOutcome::kSettings;
    slot.bypassed = insert.bypassed || insert.inactive;
    slot.offline = insert.inactive || (insert.bypassed && options_.fx_bypass_mode == kBypassedOffline);
    counts_.bypassed += insert.bypassed ? 1 : 0;
    counts_.inactive += insert.inactive ? 1 : 0;
    counts_.offline_written += slot.offline ? 1 : 0;
    const int points_before = lanes_.counts.points;
    slot.lanes = lanes_.place(insert, &record);
    row.automation_points = lanes_.counts.points - points_before;
  }
  chain.slots.push_back(std::move(slot));
}

bool FxChainMaker::write_trim_gain(const InsertRecord& insert, const FxStrip& strip, FxReportRow& row, FxChain& chain) {
  const auto gain = trims_.gain_db.find(&insert);
  if (gain == trims_.gain_db.end()) return false;
  if (options_.no_stand_ins) {
    ++counts_.stand_ins.left_out;
    return false;
  }
  if (strip.channels > 2) {
    ++counts_.stand_ins.wide_trims;
    return false;
  }
  ++counts_.stand_ins.trim_gains;
  row.reason = "gain carried as REAPER's Volume Adjustment (JS), in the same slot";
  lanes_.count_on_stand_in(insert, "Trim");
  FxSlot slot;
  slot.kind = FxSlot::Kind::kStandIn;
  slot.insert = &insert;
  slot.stand_in.push_back(trim_gain_slot(insert, gain->second));
  chain.slots.push_back(std::move(slot));
  return true;
}

bool FxChainMaker::stand_in(const InsertRecord& insert, const FxStrip& strip, FxReportRow& row, FxChain& chain) {
  const StandInRow* known = stand_in_row(insert, inserts_.image);
  if (!known) return false;
  if (options_.no_stand_ins) {
    ++counts_.stand_ins.left_out;
    return false;
  }
  const bool keyed = keys_.keyed_inserts.contains(&insert);
  StandIn made = known->make({.insert = insert,
                              .image = inserts_.image,
                              .strip = pins_of(insert, strip),
                              .keyed = keyed,
                              .sample_rate = sample_rate_,
                              .fitter = fitter_,
                              .eq3 = counts_.stand_ins.eq3});
  ++counts_.stand_ins.written[std::string(known->family)];
  for (const std::string_view note : std::set<std::string_view>(made.notes.begin(), made.notes.end()))
    ++counts_.stand_ins.notes[std::string(note)];
  row.reason = "stand-in: REAPER's own plug-ins with the same settings";
  if (keyed) row.reason += ", keyed from the key input";
  lanes_.count_on_stand_in(insert, known->family);
  FxSlot slot;
  slot.kind = FxSlot::Kind::kStandIn;
  slot.insert = &insert;
  slot.stand_in = std::move(made.slots);
  chain.slots.push_back(std::move(slot));
  return true;
}

StripPins FxChainMaker::pins_of(const InsertRecord& insert, const FxStrip& strip) const {
  const auto key = keys_.insert_key_slot.find(&insert);
  return {.channels = strip.channels, .key_pair = key == keys_.insert_key_slot.end() ? 0 : key->second};
}

void FxChainMaker::leave_avid(const InsertRecord& insert, const FxStrip& strip, FxReportRow& row, FxChain& chain) {
  const auto known = aax_only_.find(insert.signature);
  AaxOnlyPlugin& plugin = counts_.aax_only[insert.signature];
  if (plugin.instances++ == 0) {
    const auto session_name = inserts_.plugin_names.find(insert.signature);
    if (session_name != inserts_.plugin_names.end()) {
      plugin.display_name = session_name->second;
    } else {
      plugin.display_name = known != aax_only_.end() ? known->second->name : "an Avid stock processor";
    }
  }
  // Of one that the table doesn't know nobody can say that it left the sound alone.
  if (known == aax_only_.end() || known->second->processes_audio) ++plugin.processing;
  row.outcome = FxOutcome::kAaxOnly;
  row.reason = "AAX only - no VST/VST3 version exists";
  if (!options_.aax_slots) return;
  ++counts_.aax_slots;
  FxSlot slot;
  slot.kind = FxSlot::Kind::kAaxOnly;
  slot.insert = &insert;
  slot.empty_name = row.name;
  slot.empty_ident = made_up_ident(row.name);
  slot.pins = {.channels = std::max(strip.channels, 1)};
  chain.slots.push_back(std::move(slot));
}

// Told whether the strip is written or not.
void FxChainMaker::tell_multi_mono() {
  constexpr std::size_t kLongest = 191;
  for (const MultiMonoInsert& multi : inserts_.multi_mono) {
    const InsertRecord& insert = inserts_.records[multi.insert];
    // By what is known of the plug-in itself; what is installed here has no say.
    const KnowledgeRecord* record = plugins_.lookup_unmatched(insert_key(insert));
    std::string text = record ? record->name : insert.signature;
    text += " on ";
    text += multi.strip.empty() ? "(unmatched strip)" : multi.strip;
    text += format_text(" (%d channels)", insert.channels);
    text.resize(std::min(text.size(), kLongest));
    counts_.multi_mono.push_back(std::move(text));
  }
}

}  // namespace frt
