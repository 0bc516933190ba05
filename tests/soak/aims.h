#pragma once

#include <array>
#include <string_view>

#include "tests/soak/features.h"

/// What a case may be about: one command, and what it is for.
namespace soak {

struct Aim {
  std::string_view command;
  std::string_view roles;                         // of elements, with blanks between; empty: any
  std::array<bool Features::*, 3> features = {};  // that it needs; null: none
  /// What goes wrong befalls calls whose names begin so; empty: any.
  std::string_view calls = {};
};

const Aim& someAim(Random& random);

/// Switches on what it needs.
void addFeatures(const Aim& aim, Features& features);

/// Whether the aim is about such runs; not about any when it is null.
bool isAbout(const Aim* aim, std::string_view command);

/// One of the aim's roles, when it has any.
std::string_view aimedRole(Random& random, const Aim& aim);

}  // namespace soak
