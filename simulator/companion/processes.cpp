#include "simulator/companion/processes.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/posix/descriptors.h"
#include "simulator/companion/descriptor.h"

namespace companion {

namespace {

/// A file of the system's own; empty for that of a thread that has gone.
std::string contentsOf(const std::string& path) {
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  return file.number() < 0 ? "" : posix::readToEnd(file.number());
}

std::string folderOf(pid_t process) { return "/proc/" + std::to_string(process) + "/task/"; }

std::vector<pid_t> threadsOf(pid_t process) {
  std::vector<pid_t> threads;
  std::error_code gone;
  for (auto each = std::filesystem::directory_iterator(folderOf(process), gone);
       !gone && each != std::filesystem::directory_iterator(); each.increment(gone)) {
    threads.push_back(std::stoi(each->path().filename()));
  }
  return threads;
}

std::vector<pid_t> childrenOf(pid_t process) {
  std::vector<pid_t> children;
  for (const pid_t thread : threadsOf(process)) {
    std::istringstream list(contentsOf(folderOf(process) + std::to_string(thread) + "/children"));
    for (pid_t child = 0; list >> child;) children.push_back(child);
  }
  return children;
}

/// What stands behind a name in lines of `NAME:	VALUE`.
std::string_view valueOf(std::string_view name, std::string_view lines) {
  const std::size_t begin = lines.find("\n" + std::string(name) + ":\t");
  if (begin == lines.npos) return "";
  lines.remove_prefix(begin + name.size() + 3);
  return lines.substr(0, lines.find('\n'));
}

std::uint64_t numberOf(std::string_view digits) {
  std::uint64_t number = 0;
  std::istringstream(std::string(digits)) >> number;
  return number;
}

}  // namespace

/// Its state alone does not say that a thread sleeps: one that is about to, or has just been woken,
/// and has lost its processor meanwhile, is told as asleep. What it waits for is said only of one
/// that does.
ProcessesBelow::Thread ProcessesBelow::seen(pid_t process, pid_t thread) {
  const std::string folder = folderOf(process) + std::to_string(thread);
  const std::string status = contentsOf(folder + "/status");
  const std::string_view state = valueOf("State", status);
  if (state.empty() || state[0] == 'R' || state[0] == 'D') return {};
  const std::string place = state[0] == 'S' ? contentsOf(folder + "/wchan") : "none";
  return {true, !place.empty() && place != "0",
          numberOf(valueOf("voluntary_ctxt_switches", status)) +
              numberOf(valueOf("nonvoluntary_ctxt_switches", status))};
}

/// Each before its children: who starts another one after it was looked at has run since.
ProcessesBelow::Threads ProcessesBelow::look() {
  Threads threads;
  std::vector<pid_t> open = childrenOf(getpid());
  while (!open.empty()) {
    const pid_t process = open.back();
    open.pop_back();
    for (const pid_t thread : threadsOf(process)) threads[thread] = seen(process, thread);
    for (const pid_t child : childrenOf(process)) open.push_back(child);
  }
  return threads;
}

/// All of them slept when the first look was over, if each slept at both and has not run between
/// them.
bool ProcessesBelow::areAtRest() {
  const Threads first = look();
  const auto all = [&](bool Thread::*is) {
    return std::all_of(first.begin(), first.end(),
                       [is](const auto& each) { return each.second.*is; });
  };
  if (!all(&Thread::isAsleep) || look() != first) {
    doubtfulLooks_ = 0;
    return false;
  }
  if (all(&Thread::isSure)) return true;
  // Some kernels never say what a thread waits for, and none says it of another user's. One that
  // could run would have done so by then.
  constexpr int patience = 200;  // looks
  doubtfulLooks_ = first == doubtful_ ? doubtfulLooks_ + 1 : 0;
  doubtful_ = first;
  return doubtfulLooks_ >= patience;
}

}  // namespace companion
