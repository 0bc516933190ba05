#include "wire.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <stdexcept>

namespace joined {

namespace {

template <class T>
std::string raw(T value) {
  std::string bytes(sizeof value, '\0');
  std::memcpy(bytes.data(), &value, sizeof value);
  return bytes;
}

constexpr int attemptsMax = 1'000'000;

struct Address {
  sockaddr_un address{};
  socklen_t length = 0;
};

Address addressOf(const std::string& socketName) {
  Address result;
  result.address.sun_family = AF_UNIX;
  std::memcpy(result.address.sun_path, socketName.data(), socketName.size());
  if (socketName.front() == '@') result.address.sun_path[0] = '\0';
  result.length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + socketName.size());
  return result;
}

int newSocket() { return socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0); }

}  // namespace

std::string nothing() { return std::string(1, '\0'); }
std::string boolean(bool value) { return std::string("\1") + (value ? '\1' : '\0'); }
std::string integer(std::int64_t value) { return "\2" + raw(value); }

std::string text(const std::string& value) {
  return "\4" + raw(static_cast<std::uint32_t>(value.size())) + value;
}

std::string list(const std::vector<std::string>& values) {
  std::string bytes = "\5" + raw(static_cast<std::uint32_t>(values.size()));
  for (const std::string& value : values) bytes += value;
  return bytes;
}

std::string frame(const std::string& value) {
  return raw(static_cast<std::uint32_t>(value.size())) + value;
}

std::string call(std::int64_t function, const std::vector<std::string>& arguments) {
  return list({integer(function), list(arguments)});
}

Wire::Wire(const std::string& socketName) : descriptor_(newSocket()) {
  const Address address = addressOf(socketName);
  const timeval patience = {30, 0};
  setsockopt(descriptor_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
  if (connect(descriptor_, reinterpret_cast<const sockaddr*>(&address.address), address.length)) {
    throw std::runtime_error("nobody listens at " + socketName);
  }
}

Wire::~Wire() { close(descriptor_); }

void Wire::send(const std::string& bytes) const {
  std::size_t sent = 0;
  while (sent < bytes.size()) {
    const ssize_t count =
        ::send(descriptor_, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
    if (count < 0) return;
    sent += static_cast<std::size_t>(count);
  }
}

bool Wire::receiveBytes(std::string& bytes) const {
  return recv(descriptor_, bytes.data(), bytes.size(), MSG_WAITALL) ==
         static_cast<ssize_t>(bytes.size());
}

std::string Wire::receive() const {
  std::string prefix(sizeof(std::uint32_t), '\0');
  errno = 0;
  if (!receiveBytes(prefix)) return errno == EAGAIN ? "silent" : "closed";
  std::uint32_t length = 0;
  std::memcpy(&length, prefix.data(), sizeof length);
  std::string value(length, '\0');
  return receiveBytes(value) ? value : "closed";
}

void Wire::join() const {
  send(frame(list({text("driver"), list({text("wire")}), list({text("NAME=value")})})));
}

std::string Wire::exchange(const std::string& value) const {
  send(frame(value));
  return receive();
}

void Wire::awaitProcess(std::int64_t pid) const {
  for (int attempt = 0; attempt < attemptsMax; ++attempt) {
    if (exchange(call(nullSignalFunction, {integer(pid)})) == boolean(true)) return;
  }
  throw std::runtime_error("no process " + std::to_string(pid) + " has joined");
}

WireMac::WireMac(const std::string& path) : descriptor_(newSocket()) {
  const Address address = addressOf(path);
  const auto* raw = reinterpret_cast<const sockaddr*>(&address.address);
  if (bind(descriptor_, raw, address.length) != 0 || listen(descriptor_, 1) != 0) {
    throw std::runtime_error("cannot listen at " + path);
  }
}

WireMac::~WireMac() { close(descriptor_); }

std::unique_ptr<Wire> WireMac::accept() const {
  return std::make_unique<Wire>(accept4(descriptor_, nullptr, nullptr, SOCK_CLOEXEC));
}

std::int64_t functionOf(const std::string& message) {
  constexpr std::size_t start = 1 + sizeof(std::uint32_t);
  constexpr char integerKind = 2;
  std::int64_t function = -1;
  if (message.size() < start + 1 + sizeof function || message[start] != integerKind) return -1;
  std::memcpy(&function, message.data() + start + 1, sizeof function);
  return function;
}

}  // namespace joined
