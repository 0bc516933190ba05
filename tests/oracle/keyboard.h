#pragma once

#include <functional>
#include <string>

#include "tests/oracle/json_line.h"
#include "tests/oracle/stage.h"

namespace oracle {

/// The common frame of the keyboard commands: finds the window of the application that is to take
/// keys, makes it the key one in the background, acts on the receiving process, and gives all back.
Json withTargetKeyboard(Stage& stage, const std::string& app,
                        const std::function<void(Pid receiver)>& act);

}  // namespace oracle
