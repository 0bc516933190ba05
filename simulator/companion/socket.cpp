#include "simulator/companion/socket.h"

#include <sys/random.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "platform/simulated/socket_address.h"
#include "simulator/companion/failure.h"
#include "simulator/mac/datum_text.h"

namespace companion {

namespace {

constexpr int waitingMax = 128;  // processes that have not been accepted yet
constexpr std::size_t randomBytes = 16;

bool inFileSystem(const std::string& name) { return name.front() != '@'; }

bool isSocket(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0 && S_ISSOCK(status.st_mode);
}

/// A process that was killed could not remove its socket.
void removeAbandoned(const std::string& path) {
  if (!isSocket(path)) return;
  const Descriptor probe(simulated::connectToSocket(path));
  if (probe.number() < 0 && errno == ECONNREFUSED) unlink(path.c_str());
}

int bindTo(int descriptor, const simulated::SocketAddress& address) {
  const mode_t mask = umask(S_IRWXG | S_IRWXO);
  const int result =
      bind(descriptor, reinterpret_cast<const sockaddr*>(&address.address), address.length);
  umask(mask);
  return result;
}

/// A socket that nothing is sent to: its name tells of another one's. A path that is too long for
/// that goes untold.
Descriptor beaconFor(const std::string& path) {
  char* whole = realpath(path.c_str(), nullptr);
  const std::string target = whole == nullptr ? path : whole;
  std::free(whole);
  const auto address = simulated::socketAddress(std::string(macBeaconPrefix) + target);
  Descriptor beacon(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (!address || bindTo(beacon.number(), *address) != 0) return Descriptor();
  return beacon;
}

bool ofSameUser(int descriptor) {
  ucred peer{};
  socklen_t length = sizeof peer;
  if (getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &length) != 0) return false;
  return peer.uid == geteuid() || peer.uid == 0;
}

}  // namespace

std::string randomDigits() {
  std::string bytes(randomBytes, '\0');
  if (getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
    throw systemFailure("no random bytes");
  }
  return simulator::hexOf(bytes);
}

std::string privateSocketName() { return std::string(macSocketPrefix) + randomDigits(); }

ListeningSocket::ListeningSocket(std::string name) : name_(std::move(name)) {
  const auto address = simulated::socketAddress(name_);
  if (!address) throw Failure("no socket can have the name \"" + name_ + "\"");
  if (inFileSystem(name_)) removeAbandoned(name_);
  Descriptor opened(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (bindTo(opened.number(), *address) != 0) throw systemFailure("cannot listen at " + name_);
  descriptor_ = std::move(opened);
  if (listen(descriptor(), waitingMax) != 0) throw systemFailure("cannot listen at " + name_);
  if (inFileSystem(name_)) beacon_ = beaconFor(name_);
}

ListeningSocket::~ListeningSocket() {
  if (inFileSystem(name_)) unlink(name_.c_str());
}

Descriptor acceptFrom(int listeningDescriptor) {
  Descriptor accepted(accept4(listeningDescriptor, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
  if (accepted.number() >= 0 && !ofSameUser(accepted.number())) return Descriptor();
  return accepted;
}

}  // namespace companion
