#include "plugins/param_names.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "plugins/side_text.h"
#include "run/text_output.h"

namespace frt {
namespace {

// plug-in, build, index, name; tabs between them
struct ParamLine {
  std::string_view plugin, build, name;
  int index = 0;
};

constexpr std::size_t kLineLimit = 1024;

std::optional<ParamLine> read_param_line(std::string_view line) {
  std::string_view fields[3];
  for (std::string_view& field : fields) {
    const std::size_t tab = line.find('\t');
    if (tab == line.npos) return std::nullopt;
    field = line.substr(0, tab);
    line.remove_prefix(tab + 1);
  }
  const auto [plugin, build, index] = fields;
  constexpr std::size_t kMostDigits = 6;
  const bool digits = std::all_of(index.begin(), index.end(), [](char c) { return c >= '0' && c <= '9'; });
  if (plugin == "plugin" || index.empty() || index.size() > kMostDigits || !digits) return std::nullopt;
  return ParamLine{plugin, build, line.substr(0, line.find('\t')), static_cast<int>(leading_number(index))};
}

using ParamBuilds = ByName<ByName<std::map<int, std::string>>>;  // by plug-in and build

// The lines of a file that count.
int read_param_file(const std::string& path, ParamNames& names, ParamBuilds& builds) {
  const auto file = read_side_file(path);
  if (!file) return 0;
  int counted = 0;
  LineReader lines(text_of(*file), kLineLimit);
  while (const auto text = lines.next()) {
    const auto line = read_param_line(*text);
    if (!line) continue;
    const std::string plugin(line->plugin);
    names[plugin][line->index] = line->name;
    builds[plugin][std::string(line->build)][line->index] = line->name;
    ++counted;
  }
  return counted;
}

void keep_what_agrees(const ParamBuilds& builds, ParamNames& names) {
  for (const auto& [plugin, its_builds] : builds) {
    if (its_builds.size() < 2) continue;
    std::map<int, std::string> kept = its_builds.begin()->second;
    for (const auto& [build, params] : its_builds) {
      std::erase_if(kept, [&params = params](const auto& param) {
        const auto there = params.find(param.first);
        return there == params.end() || there->second != param.second;
      });
    }
    names[plugin] = std::move(kept);
  }
}

}  // namespace

ParamNames load_param_names(const std::string& program_folder, const std::vector<std::string>& param_files) {
  std::vector<std::string> paths = param_files;
  if (paths.empty()) paths = {program_folder + "/ferrite-params.tsv", program_folder + "/ferrite-params-local.tsv"};
  ParamNames names;
  ParamBuilds builds;
  for (const std::string& path : paths) {
    const std::size_t known = names.size();
    if (read_param_file(path, names, builds) > 0) {
      print_text("  plug-in parameter names: %d plug-in build(s) from %s\n", static_cast<int>(names.size() - known),
                 path.c_str());
    } else if (!param_files.empty()) {
      print_text("  --params %s: nothing read\n", path.c_str());
    }
  }
  keep_what_agrees(builds, names);
  return names;
}

}  // namespace frt
