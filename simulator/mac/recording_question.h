#pragma once

#include "simulator/mac/mac.h"

/// The system's question to the user whether programs may go on recording the screen.
namespace simulator {

/// Whether a capture is let through: the permission is there and no answer is waited for. The first
/// capture that has to wait brings up the question, an application of the system's own that comes
/// to front. Pressing either of its buttons is an answer.
bool allowsCapture(Mac& mac);

/// Whether the question has come up and has no answer yet.
bool awaitsRecordingAnswer(const World& world);

}  // namespace simulator
