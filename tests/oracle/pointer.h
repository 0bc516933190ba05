#pragma once

#include <functional>
#include <optional>
#include <string>

#include "tests/oracle/stage.h"
#include "tests/oracle/windows.h"

/// Pointer input into a window in the background. What is posted gives an error's text, empty for
/// none.
namespace oracle {

struct Scroll {
  std::int32_t across = 0;
  std::int32_t down = 0;
};

std::string backgroundClick(Stage& stage, Pid pid, const TargetWindow& window, Point point,
                            std::int64_t count, bool isRight);

std::string backgroundMotion(Stage& stage, Pid pid, const TargetWindow& window, Point from,
                             const std::optional<Scroll>& scroll);

}  // namespace oracle
