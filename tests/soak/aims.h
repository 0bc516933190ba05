#pragma once

#include <string_view>

#include "tests/soak/features.h"

/// What a case may be about: one command, and what it is for.
namespace soak {

struct Aim {
  std::string_view command;  // of those that `someRun` makes
  std::string_view roles;    // of elements, with blanks between them; empty: any
  bool Features::*feature = nullptr;
};

const Aim& someAim(Random& random);

/// One of the aim's roles, when it has any.
std::string_view aimedRole(Random& random, const Aim& aim);

}  // namespace soak
