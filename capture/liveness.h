#pragma once

namespace driver {

/// False when the capture service that the caller named in `CU_CAPTURE_PID` has gone. True without
/// such a service, or with a malformed id. The environment is read afresh.
bool isCaptureAlive();

/// Fails unless the capture service is alive, since its mark then no longer shows the user which
/// window is operated.
void requireCaptureAlive();

}  // namespace driver
