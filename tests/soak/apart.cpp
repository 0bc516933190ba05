#include "tests/soak/apart.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>

#include "platform/posix/descriptors.h"

namespace soak {

namespace {

/// In the child.
[[noreturn]] void tellVerdict(const Case& one, const std::string& folder, int descriptor) {
  alarm(caseSecondsMax);
  auto complaint = verdict(one, folder);
  if (!complaint) complaint = repetition(one, folder);
  if (!complaint) complaint = resumption(one, folder);
  if (complaint) posix::writeAll(descriptor, complaint->judge + "\n" + complaint->text);
  _exit(0);
}

}  // namespace

std::optional<Complaint> complaintOfEnd(int status) {
  if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return std::nullopt;
  if (WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM) {
    return Complaint{"hang", "it takes more than a minute"};
  }
  return Complaint{"crash", WIFSIGNALED(status) ? "a signal ends it" : "it exits"};
}

std::optional<Complaint> verdictApart(const Case& one, const std::string& folder) {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) return Complaint{"crash", "there is no pipe"};
  const pid_t child = fork();
  if (child == 0) tellVerdict(one, folder, ends[1]);
  close(ends[1]);
  std::string told;
  for (std::string part = posix::readSome(ends[0]); !part.empty();) {
    told += part;
    part = posix::readSome(ends[0]);
  }
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  if (auto complaint = complaintOfEnd(status)) return complaint;
  if (told.empty()) return std::nullopt;
  const std::size_t end = told.find('\n');
  return Complaint{told.substr(0, end), told.substr(end + 1)};
}

}  // namespace soak
