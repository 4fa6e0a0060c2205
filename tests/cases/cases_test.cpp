// Runs the cases and holds what comes out against their folders.
#include "cases/cases.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>

#include "support/process.h"
#include "support/temp_folder.h"

namespace frt::test {
namespace {

namespace fs = std::filesystem;

using Texts = std::map<std::string, std::string>;  // by path from the folder on

const std::vector<std::string> kTablesArguments = {"--dump-tables", "Song.ptx"};

const std::vector<Case>& all_cases() {
  static const std::vector<Case> all = [] {
    std::vector<Case> cases;
    for (const auto& part : {run_cases(), mixer_cases(), plugin_cases(), clip_cases(), header_cases()}) {
      cases.insert(cases.end(), part.begin(), part.end());
    }
    return cases;
  }();
  return all;
}

Texts texts_in(const fs::path& folder) {
  Texts texts;
  if (!fs::exists(folder)) return texts;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file()) texts[fs::relative(entry.path(), folder).string()] = read_text(entry.path());
  }
  return texts;
}

void write(const fs::path& path, const std::string& text) {
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << text;
}

// Lays the scene out, runs the program in it, and gathers what came out.
Texts run(const Case& one) {
  const TempFolder folder;
  Scene scene;
  if (one.make) {
    one.make(scene);
    std::vector<std::uint8_t> image = scene.image();
    if (scene.damage) scene.damage(image);
    folder.put("Song.ptx", encrypt(std::move(image)));
  }
  for (const auto& [path, content] : scene.files) write(folder.path() / path, content);
  const Texts before = texts_in(folder.path());

  // No list of a REAPER that is installed here.
  ProcessSetup setup{
      {{"HOME", folder.path() / "home"}, {"APPDATA", folder.path() / "home"}}, folder.path().string(), ""};
  setup.environment.insert(setup.environment.end(), one.environment.begin(), one.environment.end());
  const ProcessResult result = run_process(FERRITE_PROGRAM, one.arguments, setup);
  Texts out = texts_in(folder.path());
  for (const auto& [path, content] : before) {
    EXPECT_TRUE(out.contains(path)) << path << " is gone";
    if (out[path] == content) out.erase(path);
  }
  out["console.txt"] = result.out;
  out["status"] = std::to_string(result.status) + "\n";
  if (!result.err.empty()) out["stderr.txt"] = result.err;
  if (one.tables) out["tables.txt"] = run_process(FERRITE_PROGRAM, kTablesArguments, setup).out;
  return out;
}

std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size() - 1) + 1;
    lines.push_back(text.substr(at, end - at));
    at = end;
  }
  return lines;
}

// The first line that differs, with the lines ahead of it.
std::string first_difference(const std::string& expected, const std::string& actual) {
  const std::vector<std::string> wanted = lines_of(expected), found = lines_of(actual);
  std::size_t at = 0;
  while (at < wanted.size() && at < found.size() && wanted[at] == found[at]) ++at;
  std::string text = "line " + std::to_string(at + 1) + "\n";
  for (std::size_t i = at < 6 ? 0 : at - 6; i < at; ++i) text += "  " + wanted[i];
  for (std::size_t i = at; i < std::min(at + 2, wanted.size()); ++i) text += "- " + wanted[i];
  for (std::size_t i = at; i < std::min(at + 2, found.size()); ++i) text += "+ " + found[i];
  return text + (at == wanted.size() ? "- (nothing)\n" : "") + (at == found.size() ? "+ (nothing)\n" : "");
}

class Cases : public testing::TestWithParam<Case> {};

TEST_P(Cases, ComeOutAsExpected) {
  const fs::path folder = fs::path(FERRITE_CASES) / GetParam().name;
  const Texts actual = run(GetParam());
  if (std::getenv("FERRITE_UPDATE_CASES")) {
    fs::remove_all(folder);
    for (const auto& [path, text] : actual) write(folder / path, text);
  }
  const Texts expected = texts_in(folder);
  for (const auto& [path, text] : expected) {
    const auto found = actual.find(path);
    if (found == actual.end()) {
      ADD_FAILURE() << path << " did not come out";
    } else if (found->second != text) {
      ADD_FAILURE() << path << " differs from " << (folder / path) << " in " << first_difference(text, found->second);
    }
  }
  for (const auto& [path, text] : actual) {
    EXPECT_TRUE(expected.contains(path)) << path << " was not expected: " << first_difference("", text);
  }
}

INSTANTIATE_TEST_SUITE_P(, Cases, testing::ValuesIn(all_cases()), [](const auto& row) { return row.param.name; });

TEST(CaseFolders, EachBelongsToACase) {
  for (const auto& entry : fs::directory_iterator(FERRITE_CASES)) {
    const std::string name = entry.path().filename().string();
    const auto named = [&](const Case& one) { return one.name == name; };
    EXPECT_TRUE(!entry.is_directory() || std::ranges::any_of(all_cases(), named)) << name << " has no case";
  }
}

}  // namespace
}  // namespace frt::test
