#pragma once

#include <string>
#include <vector>

#include "simulator/world/tap_line.h"
#include "simulator/world/world.h"

/// What the user does, as events, and what these do.
namespace simulator {

/// The events that the user's input consists of, in order. The devices follow at once: the pointer,
/// the modifier keys that are down, and when the user was last active.
std::vector<InputEvent> keyInput(World& world, const Happening& happening);
std::vector<InputEvent> clickInput(World& world, const Happening& happening);
std::vector<InputEvent> dragInput(World& world, const Happening& happening);
std::vector<InputEvent> moveInput(World& world, const Happening& happening);
std::vector<InputEvent> scrollInput(World& world, const Happening& happening);
std::vector<InputEvent> pressInput(World& world, const Happening& happening);
std::vector<InputEvent> releaseInput(World& world, const Happening& happening);

/// While the login window is in front, what the user does reaches no application, and no tap.
bool reachesApplications(const World& world);

/// Whether taps are told of no keys, because a secure field has the keyboard.
bool hasSecureInput(const World& world);

/// Lets an event have its effect: keys in the front application, the pointer's on what is under it.
/// Gives a sentence for the journal, `Notes: typed "a" into AXTextArea "Body"`; empty for what
/// comes to nothing by itself, as a movement.
std::string takeInput(World& world, const InputEvent& input);

/// For the journal: "key-down 36", "left-up", "moved" …
std::string nameOfInput(const InputEvent& input);

}  // namespace simulator
