#include "input/clipboard.h"

#include <cstdint>
#include <utility>
#include <vector>

#include "main/replies.h"
#include "main/undo.h"
#include "platform/loop.h"
#include "platform/pasteboard.h"

namespace driver {

namespace {

// The receiving application reads the clipboard when it comes to it. One that finds the user's own
// contents there would paste those.
constexpr std::uint32_t readingMicroseconds = 300'000;

void restore(const std::vector<pasteboard::Item>& items, std::int64_t ownChange) {
  loop::sleepMicroseconds(readingMicroseconds);
  if (pasteboard::changeCount() != ownChange) return;
  pasteboard::clear();
  if (!items.empty()) pasteboard::write(items);
}

}  // namespace

void withClipboard(const std::function<bool()>& write, const std::function<void()>& use) {
  std::vector<pasteboard::Item> saved = pasteboard::items();
  pasteboard::clear();
  const bool isWritten = write();
  const std::int64_t ownChange = pasteboard::changeCount();
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

}  // namespace driver
