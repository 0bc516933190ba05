#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/fault_outcomes.h"

/// Faults: which call goes wrong, and how.
namespace simulator {

/// A fault: the calls it strikes and what they give.
struct Fault {
  std::optional<platform::Function> function;  // absent: calls of any function are counted
  std::size_t occurrence = 1;                  // the first call struck, counted from 1
  bool onwards = false;                        // and every later one
  Outcome outcome;
};

/// The outcomes that each call of `function` may have besides the world's. The happenings are those
/// that matter to `world`, with `target` as the application a command is about.
std::vector<Outcome> admissibleOutcomes(platform::Function function, const World& world,
                                        Pid target);

/// The fault as one line, "quartz.post 3+ before lock", and back. The "+" says "and onwards"; "any"
/// in place of the function counts all calls. Throws WorldError for a line that cannot be read or
/// an outcome that the function does not admit.
std::string faultText(const Fault& fault);
Fault parseFault(std::string_view text, const World& world);

}  // namespace simulator
