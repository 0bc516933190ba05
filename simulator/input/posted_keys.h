#pragma once

#include <string>

#include "platform/call.h"
#include "simulator/input/posted_event.h"
#include "simulator/world/world.h"

/// Key events that are posted to an application.
namespace simulator {

/// For the journal: `key-down 9 with cmd`, `key-down 0 "hello"`.
std::string nameOfKeyEvent(const platform::EventImage& event);

/// Lets an application take a key event, when it has the keyboard: in front it always does; in the
/// background while it holds focus by record, and its key window has been made key by records or
/// has something in it that has the keyboard.
Landing takeKeyEvent(World& world, Application& application, const platform::EventImage& event,
                     Route route);

}  // namespace simulator
