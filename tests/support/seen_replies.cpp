#include "tests/support/seen_replies.h"

#include <cstdlib>
#include <fstream>
#include <set>
#include <sstream>

namespace testing_support {

namespace {

constexpr const char* commandCharacters = "abcdefghijklmnopqrstuvwxyz-";

}  // namespace

void keepReplies(const std::vector<std::string>& commandLine, const std::string& output) {
  const char* const path = std::getenv("DRIVER_TEST_REPLIES");
  if (path == nullptr || commandLine.size() < 2) return;
  const std::string& command = commandLine[1];
  if (command.find_first_not_of(commandCharacters) != std::string::npos) return;
  static std::set<std::string> kept;
  // The first of a process begins the file anew.
  std::ofstream file(path, kept.empty() ? std::ios::trunc : std::ios::app);
  std::istringstream lines(output);
  for (std::string line; std::getline(lines, line);) {
    std::string entry = command + "\t";
    entry += line + "\n";
    if (kept.insert(entry).second) file << entry;
  }
}

}  // namespace testing_support
