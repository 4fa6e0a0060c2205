#include "writer/comments.h"

namespace frt {
namespace {

constexpr std::string_view kBlockEnd = ">";

}  // namespace

std::vector<std::string> comment_lines(std::string_view comment) {
  std::vector<std::string> lines;
  std::string line;
  const auto end_line = [&] {
    if (line == kBlockEnd) line.insert(0, 1, ' ');
    lines.push_back(std::move(line));
    line.clear();
  };
  for (const char c : comment) {
    if (c == '\n') {
      end_line();
    } else if (static_cast<unsigned char>(c) >= 32 || c == '\t') {
      line.push_back(c);
    }
  }
  end_line();
  while (!lines.empty() && lines.back().empty()) lines.pop_back();
  return lines;
}

void write_project_notes(ProjectText& project, const std::vector<TrackComment>& comments) {
  if (comments.empty()) return;
  project.text("  <NOTES 0 2\n");
  for (const auto& [name, comment] : comments) {
    bool first = true;
    for (const std::string& line : comment_lines(comment)) {
      project.text("    |");
      if (first) {
        project.text(name).text(": ");
      } else {
        project.text("    ");
      }
      project.text(line).text("\n");
      first = false;
    }
  }
  project.text("  >\n");
}

void write_comment_item(ProjectText& out, std::string_view comment, std::uint32_t track_seed) {
  out.text(
         "    <ITEM\n      POSITION 0\n      SNAPOFFS 0\n      LENGTH 2\n      LOOP 0\n      ALLTAKES 0\n"
         "      FADEIN 1 0 0 1 0 0 0\n      FADEOUT 1 0 0 1 0 0 0\n      MUTE 0 0\n      IGUID ")
      .text(make_guid(track_seed + guid_seed::kCommentItem))
      .text("\n      NAME \"Pro Tools comment\"\n      <NOTES\n");
  for (const std::string& line : comment_lines(comment)) out.text("        |").text(line).text("\n");
  out.text("      >\n    >\n");
}

}  // namespace frt
