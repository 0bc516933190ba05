#include "simulator/companion/connection.h"

#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>

#include "platform/simulated/frames.h"

namespace companion {

namespace {

constexpr std::size_t receivedAtOnce = 64U << 10U;

bool wouldWait() { return errno == EAGAIN || errno == EWOULDBLOCK; }

}  // namespace

bool Connection::receive() {
  std::array<char, receivedAtOnce> bytes;
  const ssize_t count = recv(descriptor(), bytes.data(), bytes.size(), 0);
  if (count < 0) return errno == EINTR || wouldWait();
  input_.append(bytes.data(), static_cast<std::size_t>(count));
  return count > 0;
}

std::optional<driver::Datum> Connection::next() {
  std::uint32_t length = 0;
  if (input_.size() < sizeof length) return std::nullopt;
  std::memcpy(&length, input_.data(), sizeof length);
  if (length > longest_) throw driver::MalformedDatum();
  return simulated::takeFrame(input_);
}

bool Connection::send(const driver::Datum& message) {
  output_ += simulated::frameOf(message);
  return flush();
}

bool Connection::flush() {
  std::size_t sent = 0;
  while (sent < output_.size()) {
    const ssize_t count =
        ::send(descriptor(), output_.data() + sent, output_.size() - sent, MSG_NOSIGNAL);
    if (count >= 0) {
      sent += static_cast<std::size_t>(count);
    } else if (wouldWait()) {
      break;
    } else if (errno != EINTR) {
      return false;
    }
  }
  output_.erase(0, sent);
  return true;
}

}  // namespace companion
