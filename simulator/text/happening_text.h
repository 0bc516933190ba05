#pragma once

#include <string>
#include <string_view>

#include "simulator/world/world.h"

namespace simulator {

/// The happening as a line of what may happen, see parseHappening.
std::string happeningText(const Happening& happening);

/// A word as a world's text has it: in quotation marks where it would not stand for itself.
std::string quotedWord(std::string_view word);

}  // namespace simulator
