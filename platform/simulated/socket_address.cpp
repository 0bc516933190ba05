#include "platform/simulated/socket_address.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>

namespace simulated {

std::optional<SocketAddress> socketAddress(const std::string& name) {
  SocketAddress result;
  if (name.empty() || name.size() >= sizeof result.address.sun_path) return std::nullopt;
  result.address.sun_family = AF_UNIX;
  std::memcpy(result.address.sun_path, name.c_str(), name.size());
  result.length = static_cast<socklen_t>(sizeof result.address);
  if (name.front() == '@') {
    // Every byte of such a name counts, so the length ends with the name.
    result.address.sun_path[0] = '\0';
    result.length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size());
  }
  return result;
}

namespace {

/// The descriptor under another number when it took that of a standard stream that was closed: what
/// is written to standard output must not go to it.
int aboveStandardStreams(int descriptor) {
  if (descriptor < 0 || descriptor > STDERR_FILENO) return descriptor;
  const int above = fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  close(descriptor);
  return above;
}

}  // namespace

int connectToSocket(const std::string& name) {
  const auto address = socketAddress(name);
  if (!address) return -1;
  const int descriptor = aboveStandardStreams(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  if (descriptor < 0) return -1;
  const auto* raw = reinterpret_cast<const sockaddr*>(&address->address);
  if (connect(descriptor, raw, address->length) != 0) {
    close(descriptor);
    return -1;
  }
  return descriptor;
}

bool isAnotherUsers(int descriptor) {
  ucred peer{};
  socklen_t length = sizeof peer;
  if (getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &length) != 0) return false;
  return peer.uid != geteuid() && geteuid() != 0;
}

}  // namespace simulated
