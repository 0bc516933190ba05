#include "platform/posix/output.h"

#include <limits.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>

namespace posix {

namespace {

using Clock = std::chrono::steady_clock;

// A pipe that polls as writable takes so much without blocking.
constexpr std::size_t portionBytes = PIPE_BUF;

// A parent may have made the descriptor it shares with this process non-blocking.
void waitUntilWritable(int descriptor) {
  pollfd wanted = {descriptor, POLLOUT, 0};
  poll(&wanted, 1, -1);
}

// Whatever the system says of the descriptor, the write that follows says why.
bool waitUntilWritable(int descriptor, Clock::time_point deadline) {
  for (;;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    if (left.count() <= 0) return false;
    pollfd wanted = {descriptor, POLLOUT, 0};
    const int ready = poll(&wanted, 1, static_cast<int>(left.count()));
    if (ready > 0) return true;
    if (ready < 0 && errno != EINTR) return false;
  }
}

bool mayTryAgain() { return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR; }

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

std::size_t writeReady(int descriptor, std::string_view bytes) {
  std::size_t taken = 0;
  while (taken < bytes.size()) {
    pollfd wanted = {descriptor, POLLOUT, 0};
    if (poll(&wanted, 1, 0) != 1) break;
    const std::string_view portion = bytes.substr(taken, portionBytes);
    const ssize_t written = write(descriptor, portion.data(), portion.size());
    if (written < 0) break;
    taken += static_cast<std::size_t>(written);
  }
  return taken;
}

bool writeWithin(int descriptor, std::string_view bytes, std::uint32_t microseconds) {
  const Clock::time_point deadline = Clock::now() + std::chrono::microseconds(microseconds);
  while (!bytes.empty()) {
    if (!waitUntilWritable(descriptor, deadline)) return false;
    const ssize_t written = write(descriptor, bytes.data(), std::min(bytes.size(), portionBytes));
    if (written >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (!mayTryAgain()) {
      return false;
    }
  }
  return true;
}

}  // namespace posix
