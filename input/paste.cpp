#include "input/paste.h"

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "input/keys.h"
#include "main/ending.h"
#include "main/globals.h"
#include "main/replies.h"
#include "platform/loop.h"
#include "platform/pasteboard.h"
#include "platform/process.h"

namespace driver {

namespace {

// The receiving application reads the clipboard when it comes to it. One that finds the user's own
// contents there would paste those.
constexpr std::uint32_t readingMicroseconds = 300'000;

void restore(const std::vector<pasteboard::Item>& items, std::int64_t ownChange) {
  loop::sleepMicroseconds(readingMicroseconds);
  // What somebody has copied since is newer than what was saved.
  if (pasteboard::changeCount() != ownChange) return;
  pasteboard::clear();
  if (!items.empty()) pasteboard::write(items);
}

constexpr std::size_t firstPath = 3;  // among the words of the command line

std::string absolutePath(const std::string& path) {
  if (path.starts_with('/')) return path;
  const std::string folder = process::currentDirectory();
  if (folder.empty()) fail("no current directory for " + path);
  return folder.ends_with('/') ? folder + path : folder + "/" + path;
}

}  // namespace

void withClipboard(const std::function<bool()>& write, const std::function<void()>& use) {
  // All of it is read before the clearing: an owner may then drop what it has only promised.
  std::vector<pasteboard::Item> saved = pasteboard::items();
  pasteboard::clear();
  const bool isWritten = write();
  const std::int64_t ownChange = pasteboard::changeCount();
  // By an undo, since no destructor may touch the platform.
  pushUndo([saved = std::move(saved), ownChange] { restore(saved, ownChange); });
  try {
    if (!isWritten) throw InputFailure("the clipboard could not be written");
    use();
  } catch (const InputFailure&) {
    runNewestUndo();
    throw;
  }
  runNewestUndo();
}

std::vector<std::string> filePaths(const Arguments& arguments) {
  std::vector<std::string> paths;
  for (std::size_t i = firstPath; i < arguments.size(); ++i) {
    // A file of the repaired name would be another one.
    if (globals().repairedArgs.contains(i)) fail("cannot paste " + arguments[i]);
    paths.push_back(absolutePath(arguments[i]));
  }
  return paths;
}

void pasteFiles(const std::vector<std::string>& paths, const KeyboardInput& input) {
  withClipboard([&] { return pasteboard::writeFiles(paths); }, [&] { key("cmd+v", input); });
}

}  // namespace driver
