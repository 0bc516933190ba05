#include "simulator/companion/processes.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace companion {

namespace {

using Path = std::filesystem::path;

/// A file of the system's own; empty for that of a process that has gone.
std::string contentsOf(const Path& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<Path> threadsOf(pid_t process) {
  std::vector<Path> threads;
  std::error_code gone;
  const Path folder = "/proc/" + std::to_string(process) + "/task";
  for (auto each = std::filesystem::directory_iterator(folder, gone);
       !gone && each != std::filesystem::directory_iterator(); each.increment(gone)) {
    threads.push_back(each->path());
  }
  return threads;
}

std::vector<pid_t> childrenOf(pid_t process) {
  std::vector<pid_t> children;
  for (const Path& thread : threadsOf(process)) {
    std::ifstream file(thread / "children");
    for (pid_t child = 0; file >> child;) children.push_back(child);
  }
  return children;
}

/// By its state in "PID (name) STATE …", where the name may have blanks and parentheses.
bool isAtWork(const Path& thread) {
  const std::string text = contentsOf(thread / "stat");
  const std::size_t end = text.rfind(") ");
  return end != text.npos && end + 2 < text.size() &&
         (text[end + 2] == 'R' || text[end + 2] == 'D');
}

}  // namespace

bool isAnyBelowAtWork() {
  std::vector<pid_t> open = childrenOf(getpid());
  while (!open.empty()) {
    const pid_t process = open.back();
    open.pop_back();
    for (const Path& thread : threadsOf(process)) {
      if (isAtWork(thread)) return true;
    }
    for (const pid_t child : childrenOf(process)) open.push_back(child);
  }
  return false;
}

}  // namespace companion
