#pragma once

#include <string>

#include "simulator/drawing/picture.h"
#include "simulator/world/world.h"

/// How the screens look to whoever watches a Mac.
namespace companion {

/// The screens with a pixel for a point: what is watched is to be small.
simulator::Picture plainScreens(const simulator::World& world);

/// A name for how a picture looks: sixteen hexadecimal digits. What looks the same has the same.
std::string lookOf(const simulator::Picture& picture);

}  // namespace companion
