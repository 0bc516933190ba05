#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "input/keyboard_input.h"

namespace driver {

/// One key with the modifiers that are held while it is pressed.
struct KeyCombination {
  std::uint16_t code = 0;
  std::uint64_t flags = 0;  // quartz::Modifier
  friend bool operator==(const KeyCombination&, const KeyCombination&) = default;
};

/// The combination that a text names: modifier words and key names between "+", in any case. Of
/// several keys the last one counts. Throws InputFailure for a word that is neither, and for a text
/// without a key.
KeyCombination keyCombination(const std::string& combination);

/// Presses and releases a combination. With the command key the application's menu item of that
/// shortcut is pressed in place of the keys, if it has an enabled one. True when it was pressed:
/// input is withheld while the session is not usable, which `droppedWhileLocked` records, and when
/// one of its events could not be created. Throws KeyboardTaken when the user has gone to another
/// window of the target; what was down is up by then. Throws InputFailure for a text that is no
/// combination, for a menu item that refuses, and when another window of the target has become key
/// while its menus were searched; fails when the capture service has gone.
/// `require` is called right before the item, the first key and the key that follows modifiers; an
/// InputFailure of its withholds what is left, as a user who has gone does.
bool key(
    const std::string& combination, const KeyboardInput& input,
    const std::function<void()>& require = [] {});

}  // namespace driver
