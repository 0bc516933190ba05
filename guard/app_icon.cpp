#include "guard/app_icon.h"

#include "main/globals.h"
#include "platform/streams.h"

namespace driver {

namespace {

constexpr std::string_view extension = ".app";
constexpr int levelsBelowBundle = 3;  // X.app/Contents/MacOS/tool

std::string_view withoutSlashes(std::string_view path) {
  while (!path.empty() && path.back() == '/') path.remove_suffix(1);
  return path;
}

}  // namespace

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

std::optional<image::Image> appIcon() {
  const std::optional<std::string> bundle =
      enclosingBundle(streams::resolvedPath(globals().args.front()));
  return bundle ? image::fileIcon(*bundle) : std::nullopt;
}

}  // namespace driver
