#pragma once

#include "main/arguments.h"

namespace driver {

/// "bg-key": presses a combination of keys in an application that stays in the background.
void bgKeyCommand(const Arguments& arguments);

/// "bg-type": types a text into it.
void bgTypeCommand(const Arguments& arguments);

/// "bg-paste-files": pastes files into it.
void bgPasteFilesCommand(const Arguments& arguments);

}  // namespace driver
