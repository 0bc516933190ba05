#include "guard/guard_end.h"

#include <string>
#include <utility>

#include "guard/screen_lock.h"
#include "main/globals.h"
#include "platform/loop.h"
#include "platform/process.h"

namespace driver {

namespace {

constexpr std::uint32_t readerPatience = 250'000;  // microseconds

}  // namespace

void emitGuardLine(const Reply& line) { emitWithin(line, readerPatience); }

void lockAndExit(std::string_view by) {
  if (!std::exchange(globals().guardExiting, true)) {
    const bool relocked = lockScreenNow();
    emitGuardLine({{"ok", true}, {"relocked", relocked}, {"by", std::string(by)}});
  }
  loop::sleepMicroseconds(lastMoments);
  process::exit(0);
}

void lockAtAnyExit() {
  process::onExit([] {
    if (!globals().guardExiting && !globals().guardRelocking) lockScreenNow();
  });
}

}  // namespace driver
