#include "input/session.h"

#include "platform/window_server.h"

namespace driver {

namespace {

windowserver::Session currentSession() {
  return windowserver::session().value_or(windowserver::Session{});
}

}  // namespace

// The system leaves out the key of an unlocked screen, and a process outside any login session has
// no dictionary at all. What is not told is no reason to refuse.
bool sessionUsable() {
  const windowserver::Session session = currentSession();
  return !session.locked.value_or(false) && session.onConsole.value_or(true);
}

bool screenLocked() { return currentSession().locked.value_or(false); }

}  // namespace driver
