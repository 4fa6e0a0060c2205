// Every plug-in of the session and what plays it in REAPER: the result of matching, as the passes behind it ask for it.
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "plugins/knowledge.h"
#include "plugins/knowledge_list.h"
#include "plugins/param_names.h"
#include "plugins/scan_list.h"
#include "session/inserts/insert_tables.h"

namespace frt {

// The signature; of a Waves insert the signature and its sub-component's 4 characters.
std::string insert_key(const InsertRecord& insert);

// Avid's own maker codes, and those of instruments that come with Pro Tools.
bool is_stock_family(std::string_view signature);

struct Plugins {
  const KnowledgeTable* table = &built_in_table();
  ReaperPluginCache cache;  // empty if no list of REAPER's was found
  KnowledgeList overrides, learned, matched;
  std::set<std::string, std::less<>> vst2_overrides;                // keys under --prefer-vst2
  std::set<std::string, std::less<>> marker_only;                   // keys named from a .vst3 entry without class id
  std::map<std::string, std::pair<std::string, int>> kept_on_vst3;  // by key: name, number of inserts
  int kontakt_instances = 0;
  std::string kontakt_display;
  bool kontakt_measured = false;  // the version found takes the settings in a form that was measured, else predicted
  int clap_overrides = 0;
  std::vector<std::string> clap_refusals;  // names whose settings can't be carried to the CLAP build
  ParamNames param_names;

  // The first hit of: overrides, built-in rows with an identifier, learned rows, matched rows, any built-in row. Null
  // for a key that nothing knows.
  const KnowledgeRecord* lookup(std::string_view key) const;
  // The same before anything was matched: built-in and learned rows alone.
  const KnowledgeRecord* lookup_unmatched(std::string_view key) const;
};

}  // namespace frt
