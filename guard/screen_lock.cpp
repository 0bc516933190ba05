#include "guard/screen_lock.h"

#include <cstdint>

#include "main/ending.h"
#include "main/globals.h"
#include "main/replies.h"
#include "platform/loader.h"
#include "platform/loop.h"
#include "platform/types.h"

namespace driver {

namespace {

constexpr const char* loginPath =
    "/System/Library/PrivateFrameworks/login.framework/Versions/Current/login";

// Not among the globals, which may be what is broken.
ScreenLock lockOfLastAct = nullptr;

ScreenLock foundLock() {
  void* const library = loader::openLibrary(loginPath);
  if (library == nullptr) return nullptr;
  return reinterpret_cast<ScreenLock>(loader::findSymbol(library, "SACLockScreenImmediate"));
}

}  // namespace

// Apart from the locking: loading a library takes its time and memory, and the guard locks where it
// has neither, in its tap's callback and as it dies of a signal.
void prepareScreenLock() { globals().screenLock = lockOfLastAct = foundLock(); }

bool lockScreenNow() {
  const ScreenLock lock = globals().screenLock;
  return lock != nullptr && lock() == platform::statusSuccess;
}

void lockScreenInLastAct() {
  if (lockOfLastAct != nullptr) lockOfLastAct();
}

void standByToLock() {
  globals().lockAsked = loop::makeSemaphore();
  globals().lockAnswered = loop::makeSemaphore();
  loop::startTask([] {
    for (;;) {
      loop::wait(*globals().lockAsked);
      globals().lockAccepted = lockScreenNow();
      loop::signal(*globals().lockAnswered);
    }
  });
}

void beginLocking() {
  if (globals().lockAsked) {
    loop::signal(*globals().lockAsked);
  } else {
    globals().lockAccepted = lockScreenNow();
  }
}

std::optional<bool> lockAcceptedWithin(std::uint32_t microseconds) {
  if (globals().lockAnswered && !loop::waitWithin(*globals().lockAnswered, microseconds)) {
    return std::nullopt;
  }
  return globals().lockAccepted.load();
}

void lockNowCommand(const Arguments& /*arguments*/) {
  prepareScreenLock();
  holdBackIfEnding();
  emit({{"ok", lockScreenNow()}});
}

// The names stay, so that who still calls them learns what there is instead.
void removedLockCommand(const Arguments& /*arguments*/) {
  fail(
      "locked-use unlock was removed: SecurityAgent-plugin unlock is blocked by macOS Library "
      "Validation. Use lock-guard / keep-awake instead.");
}

}  // namespace driver
