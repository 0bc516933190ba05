#include "input/keyboard_commands.h"

#include <string>

#include "input/background_text.h"
#include "input/keys.h"
#include "input/paste.h"
#include "input/target_keyboard.h"
#include "main/replies.h"

namespace driver {

void bgKeyCommand(const Arguments& arguments) {
  emit(withTargetKeyboard(arguments[2], [&](platform::Pid pid) { key(arguments[3], pid); }));
}

void bgTypeCommand(const Arguments& arguments) {
  emit(withTargetKeyboard(arguments[2],
                          [&](platform::Pid pid) { backgroundText(arguments[3], pid); }));
}

void bgPasteFilesCommand(const Arguments& arguments) {
  const std::vector<std::string> paths = filePaths(arguments);
  emit(withTargetKeyboard(arguments[2], [&](platform::Pid pid) { pasteFiles(paths, pid); }));
}

}  // namespace driver
