#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "input/keyboard_input.h"

namespace driver {

/// The lines of a text, between line feeds, each of which may follow a carriage return. A carriage
/// return by itself divides nothing. There is one line at least.
std::vector<std::string_view> linesOf(std::string_view text);

/// A line in pieces that one key event can carry: of 20 UTF-16 units at most, as long as possible,
/// none empty. No character, as the user perceives it, is divided; one that is longer is a piece of
/// its own.
std::vector<std::u16string> typedPieces(std::string_view line);

/// Types a text, and counts what has been posted of it. Line breaks are soft ones: shift and
/// return. Input is withheld while the session is not usable, which `droppedWhileLocked` records; a
/// piece of which an event could not be created is left out. Throws KeyboardTaken when the user has
/// gone to another window of the target. Fails when the capture service has gone.
void backgroundText(const std::string& text, KeyboardInput& input);

}  // namespace driver
