#pragma once

#include <optional>
#include <string>
#include <vector>

/// The general pasteboard.
namespace standins {

/// One way in which an item is there. Without data it is a promise that nobody keeps.
struct PasteboardEntry {
  std::string type;
  std::optional<std::string> data;
};

/// Another application copies these items.
void copyToPasteboard(const std::vector<std::vector<PasteboardEntry>>& items);

/// What does not work.
enum class PasteboardFault { none, refusesToBeRead, refusesToBeWritten };
void setPasteboardFault(PasteboardFault fault);

}  // namespace standins
