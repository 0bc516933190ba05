#pragma once

#include <functional>
#include <string>

#include "main/globals.h"
#include "main/replies.h"
#include "platform/types.h"

namespace driver {

/// Delivers one keyboard input to the process that receives it. May throw InputFailure.
using KeyboardAction = std::function<void(platform::Pid pid)>;

/// The frame of all background keyboard input: finds the application and the one window of it that
/// takes the keyboard, makes it the key window without raising it, runs `action` and gives focus
/// back, also should the run fail meanwhile. An application in front is typed into only where the
/// user types. Returns the reply: what made it impossible, or where the input went. The message of
/// an InputFailure of the action becomes a refusal.
Reply withTargetKeyboard(const std::string& app, const KeyboardAction& action);

/// "bg-key": presses a combination of keys in an application that stays in the background.
void bgKeyCommand(const Arguments& arguments);

/// "bg-type": types a text into it.
void bgTypeCommand(const Arguments& arguments);

/// "bg-paste-files": pastes files into it.
void bgPasteFilesCommand(const Arguments& arguments);

}  // namespace driver
