#pragma once

#include <string>

#include "main/globals.h"
#include "platform/types.h"

namespace driver {

/// The precondition of commands that act on another application's input: fails when the session is
/// not usable, when the foreground is unknown to a "bg-" command, and when the user's keyboard is
/// in a window of the target outside the window scope. Other commands pass. `arguments` has a
/// command.
void checkInputContext(const Arguments& arguments);

/// A fingerprint of an application's keyboard focus: focused window, focused element, its selection
/// and value. Two that differ tell that something changed in between.
std::string focusSignature(platform::Pid pid);

}  // namespace driver
