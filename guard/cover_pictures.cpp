#include "guard/cover_pictures.h"

#include <string>

#include "base/utf8.h"
#include "main/globals.h"
#include "platform/process.h"
#include "platform/streams.h"

namespace driver {

namespace {

constexpr std::string_view extension = ".app";
constexpr int levelsBelowBundle = 3;  // X.app/Contents/MacOS/tool

std::string_view withoutSlashes(std::string_view path) {
  while (!path.empty() && path.back() == '/') path.remove_suffix(1);
  return path;
}

// What is shorter is what the tool says of a record without a photo.
constexpr std::size_t shortestPhotoDigits = 101;

/// The value of a hexadecimal digit; none for any other byte.
std::optional<unsigned> digitValue(char c) {
  if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
  if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a') + 10;
  if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A') + 10;
  return std::nullopt;
}

/// The icon of the application bundle that this tool belongs to, if any. A tool that is
/// started by way of a link still belongs to its bundle.
std::optional<image::Image> appIcon() {
  const std::optional<std::string> bundle =
      enclosingBundle(streams::resolvedPath(globals().args.front()));
  return bundle ? image::fileIcon(*bundle) : std::nullopt;
}

}  // namespace

void lookUpCoverPictures() {
  if (globals().guardOruFace) return;
  globals().guardUserPicture = userPicture();
  globals().guardAppIcon = appIcon();
}

std::optional<std::string> enclosingBundle(std::string_view toolPath) {
  std::string_view path = withoutSlashes(toolPath);
  for (int level = 0; level < levelsBelowBundle; ++level) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos) return std::nullopt;
    path = withoutSlashes(path.substr(0, slash));
  }
  const std::string_view name = path.substr(path.rfind('/') + 1);
  if (name.size() <= extension.size() || !name.ends_with(extension)) return std::nullopt;
  return std::string(path);
}

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
