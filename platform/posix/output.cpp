#include "platform/posix/output.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>

namespace posix {

namespace {

// A parent may have made the descriptor it shares with this process non-blocking.
void waitUntilWritable(int descriptor) {
  pollfd wanted = {descriptor, POLLOUT, 0};
  poll(&wanted, 1, -1);
}

}  // namespace

bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
      waitUntilWritable(descriptor);
    } else if (errno != EINTR) {
      return false;
    }
  }
  return true;
}

}  // namespace posix
