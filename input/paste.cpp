#include "input/paste.h"

#include <cstddef>

#include "input/clipboard.h"
#include "input/keys.h"
#include "main/globals.h"
#include "main/replies.h"
#include "platform/pasteboard.h"
#include "platform/process.h"

namespace driver {

namespace {

constexpr std::size_t firstPath = 3;  // among the words of the command line

std::string absolutePath(const std::string& path) {
  if (path.starts_with('/')) return path;
  const std::string folder = process::currentDirectory();
  if (folder.empty()) fail("no current directory for " + path);
  return folder.ends_with('/') ? folder + path : folder + "/" + path;
}

}  // namespace

std::vector<std::string> filePaths(const Arguments& arguments) {
  std::vector<std::string> paths;
  for (std::size_t i = firstPath; i < arguments.size(); ++i) {
    // A file of the repaired name would be another one.
    if (globals().repairedArgs.contains(i)) fail("cannot paste " + arguments[i]);
    paths.push_back(absolutePath(arguments[i]));
  }
  return paths;
}

void pasteFiles(const std::vector<std::string>& paths, platform::Pid pid) {
  withClipboard([&] { return pasteboard::writeFiles(paths); }, [&] { key("cmd+v", pid); });
}

}  // namespace driver
