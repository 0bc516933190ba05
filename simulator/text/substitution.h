#pragma once

#include <map>
#include <string>

#include "simulator/text/scanner.h"

namespace simulator {

/// What parameters stand for, by name.
using Bindings = std::map<std::string, Token>;

/// Puts what the parameters stand for in the place of each `{name}` of a line, in texts and in bare
/// words. A bare word that is nothing else becomes what was given, a text too. `{{` becomes a
/// brace. Without parameters the line stays as it is. Throws WorldError for the name of no
/// parameter.
void substitute(Line& line, const Bindings& bindings);

}  // namespace simulator
