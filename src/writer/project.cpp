#include "writer/project.h"

#include "writer/project_header.h"
#include "writer/rpp_text.h"
#include "writer/track_block.h"

namespace frt {

void write_project(TextTarget& target, const Mix& mix, frtgui::Progress* progress) {
  ProjectText project(target);
  write_project_header(project, mix.header);
  write_tracks(project, mix.tracks, progress);
  // Video tracks come here.
  write_return_tracks(project, mix.returns);
  if (mix.solo_keeper) write_solo_keeper(project);
  project.text(">\n");
  project.flush();
}

}  // namespace frt
