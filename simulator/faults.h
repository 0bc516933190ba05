#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/call.h"
#include "simulator/mac/mac.h"
#include "simulator/world/world.h"

/// What can go wrong with a call.
namespace simulator {

/// One admissible outcome of a call other than what the world gives.
struct Outcome {
  enum class Kind {
    absent,     // nothing where something may be missing
    refused,    // false, or a post that vanishes
    empty,      // a list without entries
    wrong,      // values of other types than expected, or that are no numbers
    error,      // `code`
    thrown,     // a platform error
    hang,       // no answer within the messaging time-out
    late,       // the world's answer, a second later
    happening,  // the world's answer, after `happening`
  };
  Kind kind = Kind::absent;
  std::int32_t code = 0;
  Happening happening;
};

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

/// The answer a fault gives in place of the world's; none when the world answers (late, happening).
/// A fault must be admissible.
std::optional<Answer> faultyAnswer(const platform::Call& call, const Outcome& outcome);

/// What the outcome adds to the time the world takes.
Microseconds delayOf(const Outcome& outcome);

/// The fault as one line, "quartz.post 3+ before lock", and back. The "+" says "and onwards"; "any"
/// in place of the function counts all calls. Throws WorldError for a line that cannot be read or
/// an outcome that the function does not admit.
std::string faultText(const Fault& fault);
Fault parseFault(std::string_view text, const World& world);

}  // namespace simulator
