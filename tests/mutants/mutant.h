#pragma once

#include <type_traits>

/// Small mistakes that are compiled into the sources beside what they were made of. scripts/mutants
/// writes such sources, includes this first, and says in the environment which mistake is made:
/// MUTANT=number. Without that, none is.
namespace mutant {

/// 0: none. Below 0: none, but those that a test reaches are noted.
extern int chosen;

/// Notes that the place of a mistake was reached. Gives false.
bool reach(int number);

/// Whether this mistake is made.
inline bool is(int number) { return number == chosen || (chosen < 0 && reach(number)); }

/// The same within functions that the compiler may evaluate: there none is made.
constexpr bool isAtRun(int number) { return !std::is_constant_evaluated() && is(number); }

}  // namespace mutant
