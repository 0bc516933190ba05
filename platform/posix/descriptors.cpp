#include "platform/posix/descriptors.h"

#include <limits.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <utility>

namespace posix {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t inputPortionBytes = 16'384;

// A pipe that polls as writable takes so much without blocking.
constexpr std::size_t outputPortionBytes = PIPE_BUF;

// A parent may have made the descriptor it shares with this process non-blocking.
void waitUntilReady(int descriptor, short events) {
  pollfd wanted = {descriptor, events, 0};
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

bool wouldBlock() { return errno == EAGAIN || errno == EWOULDBLOCK; }

bool mayTryAgain() { return wouldBlock() || errno == EINTR; }

}  // namespace

bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (wouldBlock()) {
      waitUntilReady(descriptor, POLLOUT);
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
    // The descriptor stays blocking, for it is shared with whoever has started this process.
    if (poll(&wanted, 1, 0) != 1) break;
    const std::string_view portion = bytes.substr(taken, outputPortionBytes);
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
    const ssize_t written =
        write(descriptor, bytes.data(), std::min(bytes.size(), outputPortionBytes));
    if (written >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (!mayTryAgain()) {
      return false;
    }
  }
  return true;
}

std::string readSome(int descriptor) {
  char portion[inputPortionBytes];
  for (;;) {
    const ssize_t count = read(descriptor, portion, sizeof portion);
    if (count >= 0) return {portion, static_cast<std::size_t>(count)};
    if (wouldBlock()) {
      waitUntilReady(descriptor, POLLIN);
    } else if (errno != EINTR) {
      return {};
    }
  }
}

std::string readToEnd(int descriptor) {
  std::string all;
  for (std::string portion; !(portion = readSome(descriptor)).empty();) all += portion;
  return all;
}

Input::Input(int descriptor) : readSome_([descriptor] { return readSome(descriptor); }) {}

Input::Input(std::function<std::string()> readSome) : readSome_(std::move(readSome)) {}

std::optional<std::string> Input::readLine() {
  std::size_t end = 0;
  while ((end = pending_.find('\n', searched_)) == std::string::npos) {
    searched_ = pending_.size();
    const std::string more = readSome_();
    if (more.empty()) return takeRest();
    pending_ += more;
  }
  std::string line = pending_.substr(0, end);
  pending_.erase(0, end + 1);
  searched_ = 0;
  return line;
}

std::string Input::readAvailable() {
  if (pending_.empty()) return readSome_();
  searched_ = 0;
  return std::exchange(pending_, {});
}

std::optional<std::string> Input::takeRest() {
  searched_ = 0;
  if (pending_.empty()) return std::nullopt;
  return std::exchange(pending_, {});
}

}  // namespace posix
