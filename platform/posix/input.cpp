#include "platform/posix/input.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace posix {

namespace {

constexpr std::size_t portionBytes = 16'384;

// A parent may have made the descriptor it shares with this process non-blocking.
void waitUntilReadable(int descriptor) {
  pollfd wanted = {descriptor, POLLIN, 0};
  poll(&wanted, 1, -1);
}

}  // namespace

std::string readSome(int descriptor) {
  char portion[portionBytes];
  for (;;) {
    const ssize_t count = read(descriptor, portion, sizeof portion);
    if (count >= 0) return {portion, static_cast<std::size_t>(count)};
    if (errno == EAGAIN || errno == EWOULDBLOCK) {
      waitUntilReadable(descriptor);
    } else if (errno != EINTR) {
      return {};
    }
  }
}

std::optional<std::string> Input::readLine() {
  std::size_t end = 0;
  while ((end = pending_.find('\n', searched_)) == std::string::npos) {
    searched_ = pending_.size();
    const std::string more = readSome(descriptor_);
    if (more.empty()) return takeRest();
    pending_ += more;
  }
  std::string line = pending_.substr(0, end);
  pending_.erase(0, end + 1);
  searched_ = 0;
  return line;
}

std::string Input::readAvailable() {
  if (pending_.empty()) return readSome(descriptor_);
  searched_ = 0;
  return std::exchange(pending_, {});
}

std::optional<std::string> Input::takeRest() {
  searched_ = 0;
  if (pending_.empty()) return std::nullopt;
  return std::exchange(pending_, {});
}

}  // namespace posix
