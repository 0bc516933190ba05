#pragma once

#include <cstdint>

#include "platform/event_tap.h"

/// What a process that listens for the user is to make of an event of its tap.
namespace simulator {

/// The system tells that it has disabled the tap.
bool isNotice(const tap::Event& event);

bool isMovement(const tap::Event& event);

/// What is neither the tool's own input nor the trembling of a hand.
bool isUsers(const tap::Event& event);

}  // namespace simulator
