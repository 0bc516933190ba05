#pragma once

#include <sys/socket.h>
#include <sys/un.h>

#include <optional>
#include <string>

/// Where a simulated Mac listens.
namespace simulated {

/// An address as the system takes it.
struct SocketAddress {
  sockaddr_un address{};
  socklen_t length = 0;
};

/// The address of a socket as SIMULATED_MAC names it: a path, or "@" and a name that is in no file
/// system (Linux only). None when it is empty or too long for the system.
std::optional<SocketAddress> socketAddress(const std::string& name);

/// Connects to that socket. The descriptor is the caller's and is not inherited by other programs.
/// -1, with the reason in `errno`, when nobody listens there.
int connectToSocket(const std::string& name);

/// Whether the process at the other end of a connected socket is another user's, who takes no more
/// of this one. Nobody is another user to root.
bool isAnotherUsers(int descriptor);

}  // namespace simulated
