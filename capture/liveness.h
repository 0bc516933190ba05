#pragma once

namespace driver {

/// Fails when the capture service that the caller named in `CU_CAPTURE_PID` has gone, since its
/// mark then no longer shows the user which window is operated. Without such a service, or with a
/// malformed id, it passes. The environment is read afresh.
void requireCaptureAlive();

}  // namespace driver
