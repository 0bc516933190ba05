#pragma once

#include <CoreGraphics/CoreGraphics.h>

#include <optional>
#include <string>
#include <vector>

/// The applications that run, and icons of files.
namespace standins {

struct RunningApplication {
  int pid;
  std::optional<std::string> bundleIdentifier;
  std::optional<std::string> name;
  std::optional<std::string> path;
  bool active = false;
  bool hidden = false;
  bool terminated = false;
  long policy = 0;
};
void setApplications(std::vector<RunningApplication> applications);

/// The picture of every file's icon, kept until the books are closed; null for none.
void setIcon(CGImageRef image);

}  // namespace standins
