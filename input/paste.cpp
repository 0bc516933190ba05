#include "input/paste.h"

#include <cstddef>
#include <cstdint>
#include <optional>
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

/// What the user has on the clipboard.
struct Saved {
  std::vector<pasteboard::Item> items;  // each with something in it
  std::int64_t change = 0;              // the change count that belongs to them
};

InputFailure usedByOthers() {
  return InputFailure("somebody else has just copied something; nothing was pasted");
}

/// Throws when not everything is told that would have to come back. All of it is read before the
/// clearing: an owner may then drop what it has only promised.
Saved save() {
  const std::int64_t change = pasteboard::changeCount();
  std::optional<std::vector<pasteboard::Item>> items = pasteboard::items();
  const bool wasEmpty = items && items->empty();
  if (items) std::erase_if(*items, [](const pasteboard::Item& item) { return item.empty(); });
  if (!items || (items->empty() && !wasEmpty)) {
    throw InputFailure("the clipboard could not be read");
  }
  // Reading takes its time: what was read may be older by now than what is there.
  if (pasteboard::changeCount() != change) throw usedByOthers();
  return {std::move(*items), change};
}

/// Empties the clipboard, on which `seen` was the latest change. Returns the change that this is.
std::int64_t clear(std::int64_t seen) {
  const std::int64_t own = pasteboard::clear();
  // No look can come so late that nobody copies after it.
  if (own != seen + 1) globals().copyLost = true;
  return own;
}

void restore(const std::vector<pasteboard::Item>& items, std::int64_t ownChange) {
  loop::sleepMicroseconds(readingMicroseconds);
  // What somebody has copied since is newer than what was saved.
  if (pasteboard::changeCount() != ownChange) return;
  const std::int64_t cleared = clear(ownChange);
  if (items.empty() || pasteboard::write(items)) return;
  // The system also refuses when somebody has copied something since: that is to stay.
  if (pasteboard::changeCount() == cleared) globals().clipboardNotRestored = true;
}

/// Empties the clipboard and notes what must come back. Returns the change that the emptying is.
std::int64_t takeOver(Saved saved) {
  const Act act;  // until it is noted, nobody could put it back
  const std::int64_t ownChange = clear(saved.change);
  // By an undo, since no destructor may touch the platform.
  pushUndo([items = std::move(saved.items), ownChange] { restore(items, ownChange); });
  return ownChange;
}

bool writes(const std::function<bool()>& write) {
  const Act act;
  return write();
}

constexpr std::size_t firstPath = 3;  // among the words of the command line

std::string absolutePath(const std::string& path) {
  if (path.starts_with('/')) return path;
  const std::string folder = process::currentDirectory();
  if (folder.empty()) fail("no current directory for " + path);
  return folder.ends_with('/') ? folder + path : folder + "/" + path;
}

}  // namespace

void withClipboard(const std::function<bool()>& write,
                   const std::function<void(const std::function<void()>& requireOwn)>& use) {
  const std::int64_t ownChange = takeOver(save());
  // What somebody has copied meanwhile is not ours to paste.
  const auto requireOwn = [ownChange] {
    if (pasteboard::changeCount() != ownChange) throw usedByOthers();
  };
  try {
    const bool isWritten = writes(write);
    requireOwn();
    if (!isWritten) throw InputFailure("the clipboard could not be written");
    use(requireOwn);
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
  // The search through the menus may take longer than a user takes to copy something.
  withClipboard([&] { return pasteboard::writeFiles(paths); },
                [&](const auto& requireOwn) { key("cmd+v", input, requireOwn); });
}

}  // namespace driver
