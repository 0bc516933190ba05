#pragma once

#include <optional>

#include "tests/oracle/stage.h"

namespace oracle {

/// The focused element of an application, in the scope.
std::optional<Element> focusedIn(Stage& stage, Pid pid);

}  // namespace oracle
