#include "platform/macos/window_server_connection.h"

#include <CoreGraphics/CoreGraphics.h>

namespace macos {

void connectToWindowServer() {
  static const CGDirectDisplayID once = CGMainDisplayID();
  static_cast<void>(once);
}

}  // namespace macos
