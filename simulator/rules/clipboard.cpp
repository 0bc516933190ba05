#include "simulator/rules/clipboard.h"

#include <algorithm>

namespace simulator {

using platform::Function;

namespace {

constexpr std::uint32_t waitForReader = 300'000;

bool isOfPasteboard(Function function) {
  switch (function) {
    case Function::pasteboardItems:
    case Function::pasteboardChangeCount:
    case Function::clearPasteboard:
    case Function::writePasteboard:
    case Function::writeFilesToPasteboard:
      return true;
    default:
      return false;
  }
}

/// What can be told of the items: one without any type is as good as none.
std::vector<pasteboard::Item> filled(std::vector<pasteboard::Item> items) {
  items.erase(std::remove_if(items.begin(), items.end(),
                             [](const pasteboard::Item& item) { return item.empty(); }),
              items.end());
  return items;
}

}  // namespace

void ClipboardRules::before(const ObservedCall& seen, Violations& violations) {
  if (seen.call.function == Function::clearPasteboard) checkClear(violations);
}

void ClipboardRules::checkClear(Violations& violations) {
  if (!saved_) violations.push_back("I9: the clipboard was cleared and not saved before");
  if (cleared_ && knowsOfCopy_) violations.push_back("I9: a newer copy was overwritten");
  if (cleared_ && run_.lastSleep != waitForReader) {
    violations.push_back("I5: the clipboard is restored without the wait before it");
  }
  const bool changed = run_.mac.world.pasteboard.changeCount != lastCount_;
  copiedBetween_ = copiedBetween_ || changed;
}

void ClipboardRules::after(const ObservedCall& seen, const Answer& answer,
                           Violations& /*violations*/) {
  if (!isOfPasteboard(seen.call.function)) return;
  const Pasteboard& pasteboard = run_.mac.world.pasteboard;
  lastCount_ = pasteboard.changeCount;
  switch (seen.call.function) {
    case Function::pasteboardItems:
      if (!cleared_) saved_ = driver::unpack<std::vector<pasteboard::Item>>(answer.value);
      break;
    case Function::clearPasteboard:
      cleared_ = true;
      ++clears_;
      break;
    case Function::pasteboardChangeCount:
      noteCount(driver::unpack<std::int64_t>(answer.value));
      break;
    case Function::writePasteboard:
      restoringRefused_ = clears_ > 1 && !driver::unpack<bool>(answer.value);
      break;
    default:
      break;
  }
}

/// The first count after the clearing is the client's own, whatever happened before it was read.
void ClipboardRules::noteCount(std::int64_t count) {
  if (!cleared_) return;
  if (!ownCount_) {
    ownCount_ = count;
    copiedBetween_ = copiedBetween_ || run_.mac.world.pasteboard.owner != run_.client.pid;
  }
  knowsOfCopy_ = count != *ownCount_;
}

/// Who is killed can restore nothing.
void ClipboardRules::atEnd(Violations& violations) {
  if (!run_.client.exited || run_.client.diedBySignal) return;
  const Pasteboard& pasteboard = run_.mac.world.pasteboard;
  if (!cleared_ || !saved_ || pasteboard.owner != run_.client.pid) return;
  if (copiedBetween_ || restoringRefused_) return;
  if (filled(readableItems(pasteboard)) != filled(*saved_)) {
    violations.push_back("I9: the clipboard is not what it was");
  }
}

}  // namespace simulator
