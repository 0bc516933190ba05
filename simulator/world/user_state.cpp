#include "simulator/world/user_state.h"

#include <algorithm>
#include <deque>
#include <vector>

namespace simulator {

namespace {

constexpr int linksMax = 32;  // as the platform follows them

/// The parts of a path, in order, in front of those that are still to be gone.
void prepend(std::deque<std::string>& ahead, std::string_view path) {
  std::vector<std::string> parts;
  while (!path.empty()) {
    const std::size_t slash = std::min(path.find('/'), path.size());
    if (slash > 0) parts.emplace_back(path.substr(0, slash));
    path.remove_prefix(std::min(slash + 1, path.size()));
  }
  ahead.insert(ahead.begin(), parts.begin(), parts.end());
}

}  // namespace

std::string resolved(const System& system, std::string_view directory, std::string_view path) {
  std::deque<std::string> ahead;
  prepend(ahead, path);
  if (path.substr(0, 1) != "/") prepend(ahead, directory);
  std::string gone;  // empty is the root
  int followed = 0;
  while (!ahead.empty()) {
    const std::string part = std::move(ahead.front());
    ahead.pop_front();
    if (part == ".") continue;
    if (part == "..") {
      gone.erase(std::min(gone.rfind('/'), gone.size()));
      continue;
    }
    const auto link = system.links.find(gone + "/" + part);
    if (link == system.links.end()) {
      gone += "/" + part;
      continue;
    }
    if (++followed > linksMax) return std::string(path);
    if (link->second.substr(0, 1) == "/") gone.clear();
    prepend(ahead, link->second);
  }
  return gone.empty() ? "/" : gone;
}

}  // namespace simulator
