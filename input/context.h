#pragma once

#include <string>

#include "main/arguments.h"
#include "platform/types.h"

namespace driver {

/// Whether a command acts on the input of the application it names.
enum class ActsOnInput {
  no,
  yes,           // it operates elements
  inBackground,  // it posts events and gives focus, which needs to know who is in front
};

/// The precondition of commands that act on another application's input: fails when the session is
/// not usable, when the foreground is unknown to a command in the background, and when the user's
/// keyboard is in a window of the target outside the window scope. Other commands pass. `arguments`
/// has a command.
void checkInputContext(ActsOnInput command, const Arguments& arguments);

/// A fingerprint of an application's keyboard focus: focused window, focused element, its selection
/// and value. Two that differ tell that something changed in between.
std::string focusSignature(platform::Pid pid);

}  // namespace driver
