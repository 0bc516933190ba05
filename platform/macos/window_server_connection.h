#pragma once

namespace macos {

/// Connects this process to the window server, once. A command-line process has to before it
/// creates events, reads windows or uses ScreenCaptureKit, which aborts otherwise.
void connectToWindowServer();

}  // namespace macos
