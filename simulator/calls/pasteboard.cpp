#include "simulator/world/pasteboard.h"

#include "simulator/calls/calls.h"

/// How the Mac answers what is about the general pasteboard.

namespace simulator::calls {

using driver::pack;

namespace {

/// What a field of text would take of the items.
std::string textIn(const std::vector<pasteboard::Item>& items) {
  Pasteboard written;
  writeItems(written, written.owner, items);
  return pastedText(written).value_or("");
}

Answer written(Mac& mac, const Client& client, std::string what,
               const std::vector<pasteboard::Item>& items) {
  const bool taken = writeItems(mac.world.pasteboard, client.pid, items);
  enter(mac, {.kind = JournalEntry::Kind::pasteboard,
              .what = std::move(what),
              .landed = taken,
              .outcome = taken ? "" : "somebody else has cleared it since",
              .text = textIn(items)});
  return {pack(taken), 0};
}

}  // namespace

Answer pasteboardItems(Mac& mac, Client& client, const Arguments& /*arguments*/) {
  const Pasteboard& pasteboard = mac.world.pasteboard;
  auto items = readableItems(pasteboard);
  if (pasteboard.owner == client.pid) return {pack(std::optional(items)), 0};
  switch (mac.world.system.pasteboardReads) {
    case PasteboardReads::free:
      break;
    case PasteboardReads::refused:
      for (pasteboard::Item& item : items) item.clear();
      break;
    case PasteboardReads::hanging:
      return {driver::Datum(), 0, true};
  }
  return {pack(std::optional(items)), 0};
}

Answer pasteboardChangeCount(Mac& mac, Client& /*client*/, const Arguments& /*arguments*/) {
  return {pack(mac.world.pasteboard.changeCount), 0};
}

Answer clearPasteboard(Mac& mac, Client& client, const Arguments& /*arguments*/) {
  simulator::clearPasteboard(mac.world.pasteboard, client.pid);
  enter(mac, {.kind = JournalEntry::Kind::pasteboard, .what = "clear"});
  return {pack(mac.world.pasteboard.changeCount), 0};
}

Answer writePasteboard(Mac& mac, Client& client, const Arguments& arguments) {
  return written(mac, client, "write", arguments.get<std::vector<pasteboard::Item>>(0));
}

Answer writeFilesToPasteboard(Mac& mac, Client& client, const Arguments& arguments) {
  std::vector<pasteboard::Item> items;
  for (const auto& path : arguments.get<std::vector<std::string>>(0)) {
    items.push_back({{std::string(fileUrlType), fileUrl(path)}});
  }
  return written(mac, client, "write-files", items);
}

}  // namespace simulator::calls
