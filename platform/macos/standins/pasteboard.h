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

/// Puts an item on the pasteboard as another application does.
void putOnPasteboard(const std::vector<PasteboardEntry>& entries);

/// What does not work.
enum class PasteboardFault { none, refusesToBeRead, refusesToBeWritten };
void setPasteboardFault(PasteboardFault fault);

/// What is on it, an item a line: "type=data;" for each of its ways.
std::vector<std::string> pasteboardContents();

}  // namespace standins
