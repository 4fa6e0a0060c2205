// Audio files: where they lie, which are missing, and how long they are.
#include "report/notes/subjects.h"
#include "run/text_output.h"

namespace frt::notes {
namespace {

constexpr std::size_t kMostNames = 6, kLongestName = 64;  // of a list of files

void print_sibling_folders(const Told& told) {
  const MediaCounts& media = told.media;
  if (media.sibling_hits <= 0) return;
  print_text(
      "  %d audio file(s) the session lists are in its own sibling folder(s)\n"
      "      rather than the media folder:",
      media.sibling_hits);
  for (const auto& [folder, files] : media.sibling_folders) {
    print_text(" %s (%d)", folder.c_str(), files);
  }
  if (const int clips = told.mix.items.clips_in_sibling_folders; clips > 0) {
    print_text("\n      %d clip(s) use them; their FILE lines point there.\n", clips);
  } else {
    print_text(
        "\n      No clip uses them (freeze renders are not needed: the frozen\n"
        "      track converts from its source with the plug-in live).\n");
  }
}

void print_missing_files(const Told& told) {
  const NameVector& files = told.media.missing_files;
  if (files.empty()) return;
  print_text("  WARNING: %d referenced audio file(s) are not in \"Audio Files\" or beside it:\n", count_of(files));
  print_first_names(files, kMostNames, kLongestName);
  if (const int outside = told.media.missing_outside; outside > 0) {
    print_text(
        "      %d of them lie outside the session's folder; their FILE lines name\n"
        "      the place that the session gives.\n",
        outside);
  }
  print_text(
      "      REAPER will search for these on load and may look frozen while\n"
      "      it does. Answering \"ignore missing files\" opens the rest fine.\n");
}

void print_differing_files(const Told& told) {
  const NameVector& files = told.media.differing_files;
  if (files.empty()) return;
  print_text(
      "  WARNING: %d audio file(s) differ in length from what the session says,\n"
      "      so another file of the same name may have taken its place:\n",
      count_of(files));
  print_first_names(files, kMostNames, kLongestName);
}

const char* which_file_lines(const Told& told) {
  return told.mix.items.clips_elsewhere > 0 ? "every other " : "every ";
}

constexpr Note kMediaFiles[] = {
    {print_sibling_folders},
    {in<&MediaCounts::found_outside>,
     "  %d audio file(s) lie outside the session's folder and were found where\n"
     "      the session says; %d clip(s) use them.\n",
     in<&MediaCounts::clips_outside>},
    {print_missing_files},
    {print_differing_files},
};

constexpr Note kLongClips[] = {
    {in<&LongClips::count>,
     "  note: %d clip(s) over 10 minutes (longest %.1f min, from a %.1f min\n"
     "        source). REAPER builds peaks for the whole file on first open --\n"
     "        it can sit on \"loading file\" for a while. That is not a hang.\n",
     in<&LongClips::longest_minutes>, in<&Told::longest_file_minutes>},
};

constexpr Note kMediaFolder[] = {
    {always,
     "  Media folder written into %sFILE line:\n"
     "      %s\n",
     which_file_lines, in<&Told::media_folder>},
    {always,
     "  If REAPER shows OFFLINE, that path is wrong - re-run with\n"
     "      --audio-dir \"<the folder your .wav files are really in>\"\n"},
};

}  // namespace

NoteGroup media_files() { return kMediaFiles; }
NoteGroup long_clips() { return kLongClips; }
NoteGroup media_folder() { return kMediaFolder; }

}  // namespace frt::notes
