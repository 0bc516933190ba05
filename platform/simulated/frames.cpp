#include "platform/simulated/frames.h"

#include <sys/socket.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>

namespace simulated {

using driver::Datum;

namespace {

// Pictures of large screens pass; four bytes of something else that connects are refused.
constexpr std::uint32_t frameLengthMax = 256U << 20U;

bool sendAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t sent = send(descriptor, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent < 0 && errno == EINTR) continue;
    if (sent < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

bool readAll(int descriptor, char* bytes, std::size_t length) {
  while (length > 0) {
    const ssize_t count = read(descriptor, bytes, length);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    bytes += count;
    length -= static_cast<std::size_t>(count);
  }
  return true;
}

Datum decodeWhole(std::string_view bytes) {
  Datum datum = driver::decode(bytes);
  if (!bytes.empty()) throw driver::MalformedDatum();
  return datum;
}

}  // namespace

std::string frameOf(const Datum& datum) {
  std::string bytes(sizeof(std::uint32_t), '\0');
  driver::encode(datum, bytes);
  const auto length = static_cast<std::uint32_t>(bytes.size() - sizeof(std::uint32_t));
  std::memcpy(bytes.data(), &length, sizeof length);
  return bytes;
}

bool writeFrame(int descriptor, const Datum& datum) { return sendAll(descriptor, frameOf(datum)); }

std::optional<Datum> readFrame(int descriptor) {
  std::uint32_t length = 0;
  if (!readAll(descriptor, reinterpret_cast<char*>(&length), sizeof length)) return std::nullopt;
  if (length > frameLengthMax) return std::nullopt;
  std::string bytes(length, '\0');
  if (!readAll(descriptor, bytes.data(), length)) return std::nullopt;
  try {
    return decodeWhole(bytes);
  } catch (const driver::MalformedDatum&) {
    return std::nullopt;
  }
}

std::optional<Datum> takeFrame(std::string& bytes) {
  std::uint32_t length = 0;
  if (bytes.size() < sizeof length) return std::nullopt;
  std::memcpy(&length, bytes.data(), sizeof length);
  if (length > frameLengthMax) throw driver::MalformedDatum();
  if (bytes.size() < sizeof length + length) return std::nullopt;
  Datum datum = decodeWhole(std::string_view(bytes).substr(sizeof length, length));
  bytes.erase(0, sizeof length + length);
  return datum;
}

}  // namespace simulated
