#include "platform/simulated/channel.h"
#include "platform/simulated/process_state.h"

namespace simulated {

using platform::Function;
using platform::ItemKind;
using platform::WireItem;

namespace {

std::function<void()> takeWork(std::int64_t number) {
  const std::lock_guard lock(state().mutex);
  const auto work = state().works.find(number);
  if (work == state().works.end()) return nullptr;
  std::function<void()> body = work->second.body;
  if (--work->second.left == 0) state().works.erase(work);
  return body;
}

tap::Handler tapHandler(std::int64_t number) {
  const std::lock_guard lock(state().mutex);
  const auto handler = state().tapHandlers.find(number);
  return handler == state().tapHandlers.end() ? nullptr : handler->second;
}

void serveTap(const WireItem& item) {
  const tap::Handler handler = tapHandler(item.number);
  if (!handler) return;
  const tap::Verdict verdict = handler(item.event);
  // A notice is no event: nothing waits for what is made of it.
  if (item.serial == 0) return;
  ask(Function::tapVerdict, item.number, item.serial, verdict == tap::Verdict::pass);
}

void serve(const WireItem& item) {
  switch (item.kind) {
    case ItemKind::work:
      if (const auto work = takeWork(item.number)) work();
      break;
    case ItemKind::signal:
      if (state().signalHandler) state().signalHandler(static_cast<process::Signal>(item.number));
      break;
    case ItemKind::tapEvent:
      serveTap(item);
      break;
    case ItemKind::terminationRequest:
      if (state().terminationHandler) state().terminationHandler();
      break;
    case ItemKind::screenChange:
      if (state().screenChangeHandler) state().screenChangeHandler();
      break;
    case ItemKind::loopEnd:
      break;
  }
}

}  // namespace

void serveMainFlow() {
  for (;;) {
    const auto item = askFor<WireItem>(Function::nextItem);
    if (item.kind == ItemKind::loopEnd) return;
    serve(item);
  }
}

}  // namespace simulated
