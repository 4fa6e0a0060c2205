// Measures whole runs of the program, side by side with sha256sum of the same file in the same minutes: what counts
// is the ratio, since machines differ more than programs do.
//
//   ferrite_bench [--rounds N] [--program PATH] [--mib N]... [--state-kib N] [--make MIB PATH]
//
// Sizes should double from one to the next; 16, 32, 64 and 128 MiB by default. Behind them come sessions of one kind of
// data each, at half size and whole. Where the project's text is the larger of the two, the other side of the ratio is
// a copy of that text. Plug-ins have settings of 16 KiB there, or of as many as --state-kib says; those of real ones
// reach from some bytes to some MiB.
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "big_session.h"

extern char** environ;

namespace {

#ifndef FERRITE_PROGRAM
#define FERRITE_PROGRAM "ferrite"
#endif

struct Measured {
  double seconds = 0;
  double peak_bytes = 0;
};

// Runs a command with its output thrown away. Ends the bench if it fails.
Measured run(const std::vector<std::string>& command) {
  std::vector<char*> argv;
  for (const std::string& word : command) argv.push_back(const_cast<char*>(word.c_str()));
  argv.push_back(nullptr);
  posix_spawn_file_actions_t quiet;
  posix_spawn_file_actions_init(&quiet);
  posix_spawn_file_actions_addopen(&quiet, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);

  const auto start = std::chrono::steady_clock::now();
  pid_t child = 0;
  int status = posix_spawnp(&child, argv[0], &quiet, nullptr, argv.data(), environ);
  rusage usage{};
  if (status == 0) ::wait4(child, &status, 0, &usage);
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
  posix_spawn_file_actions_destroy(&quiet);
  if (status != 0) {
    std::fprintf(stderr, "%s failed\n", command[0].c_str());
    std::exit(1);
  }
  return {took.count(), static_cast<double>(usage.ru_maxrss) * 1024};
}

double median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
  return values[values.size() / 2];
}

struct Pair {
  double first = 0, second = 0;  // medians, seconds
  double peak_bytes = 0;         // of the first
};

// Two commands in turn, so that what else the machine does falls on both.
Pair side_by_side(const std::vector<std::string>& first, const std::vector<std::string>& second, int rounds) {
  Pair pair;
  std::vector<double> a, b;
  run(first);
  run(second);
  for (int i = 0; i < rounds; ++i) {
    const Measured measured = run(first);
    a.push_back(measured.seconds);
    pair.peak_bytes = std::max(pair.peak_bytes, measured.peak_bytes);
    b.push_back(run(second).seconds);
  }
  pair.first = median(a);
  pair.second = median(b);
  return pair;
}

// In a process of its own: the bench stays small, since a child's peak memory counts from its parent's.
template <typename Make>
void save_session(Make make, const std::string& path) {
  const pid_t child = ::fork();
  if (child == 0) {
    make().save(path);
    ::_exit(0);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  if (status != 0) std::exit(1);
}

void make_session(double mib, const std::string& path) {
  save_session([&] { return frt::bench::big_session(static_cast<std::size_t>(mib * 1024 * 1024)); }, path);
}

struct Kind {
  const char* name;
  frt::test::SessionBuilder (*make)(std::size_t count);
  std::size_t count;
  std::string (*list)(std::size_t count) = nullptr;  // REAPER's list of plug-ins, none for the others
};

std::size_t state_kib = 16;

frt::test::SessionBuilder inserts_session(std::size_t inserts) {
  return frt::bench::inserts_session(inserts, state_kib * 1024);
}

constexpr Kind kKinds[] = {
    {"automation points", frt::bench::automation_session, 1'000'000},
    {"MIDI events", frt::bench::midi_session, 500'000},
    {"sends", frt::bench::sends_session, 16'000},
    {"plug-ins", inserts_session, 5'000, frt::bench::plugin_list},
};

// Each kind of data by itself.
void measure_kinds(const std::vector<std::string>& convert, const std::string& session, const std::string& project,
                   int rounds) {
  std::printf("\n     count  of                   MiB in  MiB out  ferrite s  other s  ratio  peak/larger  growth\n");
  for (const Kind& kind : kKinds) {
    double before = 0;
    for (const std::size_t count : {kind.count / 2, kind.count}) {
      save_session([&] { return kind.make(count); }, session);
      const auto list = std::filesystem::path(session).parent_path() / "reaper-vstplugins64.ini";
      std::ofstream(list) << (kind.list ? kind.list(count) : "");
      run(convert);
      const auto in = static_cast<double>(std::filesystem::file_size(session));
      const auto out = static_cast<double>(std::filesystem::file_size(project));
      // dd reads and writes through a buffer; cat and cp may let the kernel share the blocks.
      const std::vector<std::string> hash = {"sha256sum", session};
      const std::vector<std::string> plain_copy = {"dd", "if=" + project, "of=" + project + ".copy", "bs=64K",
                                                   "status=none"};
      const Pair pair = side_by_side(convert, out > in ? plain_copy : hash, rounds);
      std::printf("%10zu  %-18s  %7.2f  %7.2f  %9.4f  %7.4f  %5.2f  %11.2f", count, kind.name, in / 1048576,
                  out / 1048576, pair.first, pair.second, pair.first / pair.second,
                  pair.peak_bytes / std::max(in, out));
      if (before > 0) std::printf("  %6.2f", pair.first / before);
      std::printf("\n");
      std::fflush(stdout);
      before = pair.first;
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  int rounds = 9;
  std::string program = FERRITE_PROGRAM;
  std::vector<double> sizes;
  for (int i = 1; i + 1 < argc; ++i) {
    const std::string option = argv[i];
    if (option == "--rounds") rounds = std::max(1, std::atoi(argv[++i]));
    if (option == "--program") program = argv[++i];
    if (option == "--state-kib") state_kib = static_cast<std::size_t>(std::max(1, std::atoi(argv[++i])));
    if (option == "--mib") sizes.push_back(std::atof(argv[++i]));
    if (option == "--make" && i + 2 < argc) {
      make_session(std::atof(argv[i + 1]), argv[i + 2]);
      return 0;
    }
  }
  if (sizes.empty()) sizes = {16, 32, 64, 128};

  std::string pattern = (std::filesystem::temp_directory_path() / "ferrite-bench-XXXXXX").string();
  const std::filesystem::path folder = ::mkdtemp(pattern.data());
  const std::string session = (folder / "Big.ptx").string(), project = (folder / "Big.rpp").string();
  const std::vector<std::string> convert = {program, session, "-o", project, "--overwrite"};

  std::printf("      MiB  ferrite s  sha256sum s  ratio  peak/file  growth\n");
  double before = 0;
  for (const double mib : sizes) {
    make_session(mib, session);
    const auto bytes = static_cast<double>(std::filesystem::file_size(session));
    const Pair pair = side_by_side(convert, {"sha256sum", session}, rounds);
    std::printf("%9.2f  %9.4f  %11.4f  %5.2f  %9.2f", bytes / 1048576, pair.first, pair.second,
                pair.first / pair.second, pair.peak_bytes / bytes);
    if (before > 0) std::printf("  %6.2f", pair.first / before);
    std::printf("\n");
    std::fflush(stdout);
    before = pair.first;
  }

  measure_kinds(convert, session, project, rounds);

  make_session(0.5, session);
  const Pair small = side_by_side(convert, {"true"}, rounds * 5);
  std::printf("\nhalf a MiB: %.2f ms, a process that does nothing %.2f ms, ratio %.1f\n", small.first * 1e3,
              small.second * 1e3, small.first / small.second);
  std::filesystem::remove_all(folder);
}
