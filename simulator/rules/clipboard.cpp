#include "simulator/rules/clipboard.h"

#include <algorithm>

#include "simulator/input/posted_event.h"
#include "simulator/mac/arguments.h"
#include "simulator/world/keyboard_layouts.h"

namespace simulator {

using platform::Call;
using platform::Function;

namespace {

constexpr std::uint32_t waitForReader = 300'000;

/// During these a user may copy something, a search through menus being many of them.
bool takesTime(Function function) {
  return function == Function::sleep || function == Function::axAttribute ||
         function == Function::axAttributes;
}

bool isEmpty(const pasteboard::Item& item) { return item.empty(); }

/// What can be told of the items: one without any type is as good as none.
std::vector<pasteboard::Item> filled(std::vector<pasteboard::Item> items) {
  std::erase_if(items, isEmpty);
  return items;
}

}  // namespace

bool ClipboardRules::isOwner() const { return run_.mac.world.pasteboard.owner == run_.client.pid; }

void ClipboardRules::before(const ObservedCall& seen, Violations& violations) {
  const Function function = seen.call.function;
  if (function == Function::sleep) {
    lastSleep_[seen.flow] = Arguments(seen.call).get<std::uint32_t>(0);
  }
  if (function == Function::clearPasteboard) checkClear(seen.flow, violations);
  if (pastes(seen.call)) checkPaste(violations);
}

/// Modifiers by themselves paste nothing, and what comes up has been pasted.
bool ClipboardRules::pastes(const Call& call) const {
  if (call.function == Function::axPerform) return true;
  if (!isPost(call.function) || typeOf(run_.latestEvent) != quartz::EventType::keyDown)
    return false;
  return modifierWithCode(run_.latestEvent.keyCode) == nullptr;
}

void ClipboardRules::checkClear(std::size_t flow, Violations& violations) {
  if (!saved_) {
    violations.push_back("I9: the clipboard was cleared and not saved before");
  } else if (!saved_->empty() && std::all_of(saved_->begin(), saved_->end(), isEmpty)) {
    violations.push_back("I9: a clipboard was cleared of which nothing could be read");
  }
  if (clears_ > 0 && lastSleep_[flow] != waitForReader) {
    violations.push_back("I5: the clipboard is restored without the wait before it");
  }
  if (saved_ && !isOwner()) checkOverwriting(flow, violations);
}

/// Somebody else's contents may go when they were saved. Others may go unseen, when they came after
/// a look than which none can be later.
void ClipboardRules::checkOverwriting(std::size_t flow, Violations& violations) {
  const std::int64_t expected = clears_ > 0 ? ownChange_ : savedChange_;
  if (run_.mac.world.pasteboard.changeCount == expected) return;
  if (lookedJustNow_.contains(flow) && toldChange_ == expected) {
    copyLost_ = true;
  } else {
    violations.push_back("I9: a newer copy was overwritten");
  }
}

void ClipboardRules::checkPaste(Violations& violations) const {
  if (clears_ != 1) return;
  if (filesRefused_) {
    violations.push_back("I9: pasted although the clipboard had refused the files");
  } else if (!knowsOwner_) {
    violations.push_back("I9: pasted without knowing whose the clipboard is");
  } else if (toldChange_ != ownChange_) {
    violations.push_back("I9: pasted what somebody else has copied");
  }
}

void ClipboardRules::after(const ObservedCall& seen, const Answer& answer,
                           Violations& /*violations*/) {
  const Function function = seen.call.function;
  if (function == Function::pasteboardChangeCount) {
    lookedJustNow_.insert(seen.flow);
  } else {
    lookedJustNow_.erase(seen.flow);
  }
  if (seen.flow == 0 && takesTime(function)) knowsOwner_ = false;
  switch (function) {
    case Function::pasteboardItems:
      if (clears_ > 0) break;
      saved_ = driver::unpack<std::optional<Items>>(answer.value);
      savedChange_ = run_.mac.world.pasteboard.changeCount;
      break;
    case Function::clearPasteboard:
      ++clears_;
      ownChange_ = toldChange_ = driver::unpack<std::int64_t>(answer.value);
      break;
    case Function::pasteboardChangeCount:
      toldChange_ = driver::unpack<std::int64_t>(answer.value);
      knowsOwner_ = true;
      break;
    case Function::writePasteboard:
    case Function::writeFilesToPasteboard:
      knowsOwner_ = false;
      filesRefused_ = clears_ == 1 && !driver::unpack<bool>(answer.value);
      restoringRefused_ = clears_ > 1 && isOwner() && !driver::unpack<bool>(answer.value);
      break;
    default:
      break;
  }
}

/// Who is killed can restore nothing.
void ClipboardRules::atEnd(Violations& violations) {
  if (!run_.client.exited) return;
  if (run_.reply) checkReply(*run_.reply, violations);
  if (clears_ == 0 || !saved_ || !isOwner() || restoringRefused_) return;
  if (filled(readableItems(run_.mac.world.pasteboard)) != filled(*saved_)) {
    violations.push_back("I9: the clipboard is not what it was");
  }
}

void ClipboardRules::checkReply(const ReplyFacts& reply, Violations& violations) const {
  if (reply.copyLost != copyLost_) {
    violations.push_back(copyLost_ ? "I9: a copy was lost, and the reply does not say so"
                                   : "I9: the reply tells of a lost copy, and none was");
  }
  if (reply.clipboardNotRestored && !restoringRefused_) {
    violations.push_back("I9: the reply says that the clipboard was not restored, and it was");
  }
  // A copy that has come since is as good.
  if (!reply.clipboardNotRestored && restoringRefused_ && isOwner()) {
    violations.push_back("I9: the clipboard was not restored, and the reply does not say so");
  }
}

}  // namespace simulator
