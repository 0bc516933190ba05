#pragma once

#include <optional>

#include "main/ending.h"
#include "platform/quartz.h"
#include "platform/types.h"

namespace driver {

/// The ways an event takes to a process. With both it arrives twice, by the private one first.
struct Routes {
  bool privateRoute = false;
  bool publicRoute = true;
};

/// Asked right before each act on a target: whether the session is usable, which
/// `droppedWhileLocked` records when it is not. Fails when the capture service has gone.
bool mayActNow();

/// Posts one event to one process, marked as the tool's own, and waits the 12 ms that receivers
/// need. Fails when the capture service has gone. When the session is not
/// usable the event is withheld, which `droppedWhileLocked` records, and nothing is waited for; nor
/// for an absent event. A missing private route is skipped. When another flow is ending the
/// process, the calling one is held back for good.
void postTarget(const std::optional<quartz::Event>& event, platform::Pid pid, Routes routes = {});

/// Posts an event that lets something go, on the public route, also in a process that is ending:
/// withheld when the capture service has gone or the session is not usable, which nobody is told.
void postRelease(const std::optional<quartz::Event>& event, platform::Pid pid);

/// What goes down and comes up again, the last one first: one act as long as the object lives, so
/// that nothing stays down in a process that is told to end.
class Press {
 public:
  explicit Press(platform::Pid pid) : pid_(pid) {}

  /// As `postTarget`, but once the process is ending nothing more goes down. True when the event
  /// was posted.
  bool down(const std::optional<quartz::Event>& event, Routes routes = {});

  /// As `postTarget`, in an ending process too, unless its `down` came to nothing there.
  void up(const std::optional<quartz::Event>& event, Routes routes = {});

 private:
  platform::Pid pid_;
  Act act_;
  int withheld_ = 0;  // the last so many did not go down
};

}  // namespace driver
