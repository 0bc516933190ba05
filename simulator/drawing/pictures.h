#pragma once

#include <memory>
#include <optional>
#include <string>

#include "simulator/drawing/picture.h"
#include "simulator/world/world.h"

/// Pictures of the simulated Mac.
namespace simulator {

class Canvas;

/// The window as it looks now. `frontmost` decides whether it is drawn as key.
WindowPicture pictureOf(const World& world, const Window& window);

/// The whole of every display, as the user sees it, pointer included; the global bounding box of
/// all displays at the scale of the main one.
Picture screenPicture(const World& world);

/// Draws the picture. Null when it is empty or larger than 16,384 pixels in either direction.
std::unique_ptr<Canvas> draw(const Picture& picture);

/// The same, encoded as PNG.
std::optional<std::string> drawPng(const Picture& picture);

}  // namespace simulator
