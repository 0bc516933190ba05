#pragma once

#include <string>

#include "tests/oracle/stage.h"

/// The private routes: focus without coming to front, and the posting of events.
namespace oracle {

/// Whether another process holds the focus of this one for a capture session.
bool isFocusHeld(const Stage& stage, Pid pid);

/// Gives focus to a window by an event record, or takes it back; false when the system does not.
bool focus(Stage& stage, Pid pid, WindowNumber window, bool give);

/// Makes the window the key one of its application; false when the system does not.
bool makeKey(Stage& stage, Pid pid, WindowNumber window);

/// Posts an event as every one is posted, marked and paced.
struct Routes {
  bool isPrivate = false;
  bool isPublic = false;
};
void postPaced(Stage& stage, Pid pid, platform::EventImage event, Routes routes);

/// Fails when the capture service that the run belongs to has gone.
void requireCaptureAlive(const Stage& stage);

}  // namespace oracle
