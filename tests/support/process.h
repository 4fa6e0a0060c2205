// Runs a program as people do: arguments in, status and both streams out.
#pragma once

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <utility>
#include <vector>

#include "support/temp_folder.h"

namespace frt::test {

struct ProcessResult {
  int status = -1;  // the exit status; -1 if the process was killed
  std::string out, err;
};

struct ProcessSetup {
  std::vector<std::pair<std::string, std::string>> environment;  // set on top of this process's own
  std::string folder;                                            // working directory, empty for this process's own
  std::string in;                                                // what standard input holds
};

inline ProcessResult run_process(const std::string& program, const std::vector<std::string>& arguments,
                                 const ProcessSetup& setup = {}) {
  const TempFolder streams;
  streams.put("in", setup.in);
  std::vector<char*> argv = {const_cast<char*>(program.c_str())};
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);

  const pid_t child = ::fork();
  if (child == 0) {
    const auto redirect = [](const std::string& path, int flags, int to) {
      ::dup2(::open(path.c_str(), flags, 0600), to);
    };
    redirect(streams.at("in"), O_RDONLY, 0);
    redirect(streams.at("out"), O_WRONLY | O_CREAT | O_TRUNC, 1);
    redirect(streams.at("err"), O_WRONLY | O_CREAT | O_TRUNC, 2);
    for (const auto& [name, value] : setup.environment) ::setenv(name.c_str(), value.c_str(), 1);
    if (!setup.folder.empty() && ::chdir(setup.folder.c_str()) != 0) ::_exit(126);
    ::execv(program.c_str(), argv.data());
    ::_exit(127);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, read_text(streams.at("out")), read_text(streams.at("err"))};
}

}  // namespace frt::test
