#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/types.h"

/// Standard output, and files.
namespace streams {

/// Writes all bytes to standard output, unbuffered, as one write where the platform takes it whole.
/// False when not all of it could be written.
bool writeOutput(std::string_view bytes);

/// Puts `contents` in place of the file at `path` in one step: a reader sees the old file or the
/// new one, whole. The new file is written beside the target and renamed. Only a regular file, or
/// nothing, is replaced: a directory, a link, a FIFO or a device is refused. False when it was
/// refused or failed; then the target is as before and nothing is left beside it.
bool replaceFile(const std::string& path, const platform::Bytes& contents);

/// The names in a directory, without "." and "..", in the platform's order; none when it cannot be
/// listed.
std::optional<std::vector<std::string>> listDirectory(const std::string& path);

/// True when something exists at `path`, links followed.
bool fileExists(const std::string& path);

}  // namespace streams
