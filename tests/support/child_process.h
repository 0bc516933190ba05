#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <string>
#include <utility>

/// For tests of what ends a process.
namespace posix {

/// What became of a process that does some work.
struct Ending {
  int exitStatus = -1;  // when it exited
  int signal = 0;       // when a signal ended it
  std::string output;   // what it wrote to the descriptor it was given
  friend bool operator==(const Ending&, const Ending&) = default;
};

/// Has a child process do `work`, which is given a descriptor to write to; one that comes back from
/// it exits with status 99.
template <class Work>
Ending endingOf(Work work) {
  // Else the child writes once more what is still buffered.
  std::fflush(stdout);
  std::array<int, 2> ends = {};
  if (pipe(ends.data()) != 0) return {};
  const pid_t child = fork();
  if (child == 0) {
    work(ends[1]);
    _exit(99);
  }
  close(ends[1]);
  Ending ending;
  std::array<char, 256> portion = {};
  for (ssize_t count = 0; (count = read(ends[0], portion.data(), portion.size())) > 0;) {
    ending.output.append(portion.data(), static_cast<std::size_t>(count));
  }
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  if (WIFEXITED(status)) ending.exitStatus = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) ending.signal = WTERMSIG(status);
  return ending;
}

}  // namespace posix
