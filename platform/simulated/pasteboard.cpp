#include "platform/pasteboard.h"

#include "platform/simulated/channel.h"

namespace pasteboard {

using platform::Function;
using simulated::askFor;

std::optional<std::vector<Item>> items() {
  return askFor<std::optional<std::vector<Item>>>(Function::pasteboardItems);
}

std::int64_t changeCount() { return askFor<std::int64_t>(Function::pasteboardChangeCount); }

std::int64_t clear() { return askFor<std::int64_t>(Function::clearPasteboard); }

bool write(const std::vector<Item>& items) {
  return askFor<bool>(Function::writePasteboard, items);
}

bool writeFiles(const std::vector<std::string>& paths) {
  return askFor<bool>(Function::writeFilesToPasteboard, paths);
}

}  // namespace pasteboard
