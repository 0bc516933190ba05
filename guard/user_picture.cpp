#include "guard/user_picture.h"

#include <string>

#include "base/utf8.h"
#include "platform/process.h"

namespace driver {

namespace {

constexpr std::size_t shortestPhotoDigits = 101;

/// The value of a hexadecimal digit; none for any other byte.
std::optional<unsigned> digitValue(char c) {
  if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
  if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a') + 10;
  if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A') + 10;
  return std::nullopt;
}

}  // namespace

std::optional<platform::Bytes> photoBytes(std::string_view record) {
  const std::size_t colon = record.find(':');
  if (colon == std::string_view::npos) return std::nullopt;
  platform::Bytes bytes;
  std::size_t digits = 0;
  unsigned high = 0;
  for (const char c : record.substr(colon + 1)) {
    const std::optional<unsigned> digit = digitValue(c);
    if (!digit) continue;
    // A digit without a second one behind it is no byte.
    if (++digits % 2 == 1) {
      high = *digit;
    } else {
      bytes += static_cast<char>(high << 4U | *digit);
    }
  }
  if (digits < shortestPhotoDigits) return std::nullopt;
  return bytes;
}

std::optional<image::Image> userPicture() {
  const std::optional<platform::Bytes> record = process::toolOutput(
      "/usr/bin/dscl", {".", "-read", "/Users/" + process::loginName(), "JPEGPhoto"});
  if (!record || !isUtf8(*record)) return std::nullopt;
  const std::optional<platform::Bytes> bytes = photoBytes(*record);
  if (!bytes) return std::nullopt;
  return image::decode(*bytes);
}

}  // namespace driver
