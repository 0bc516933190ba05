#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/types.h"

/// Standard input and output, and files.
namespace streams {

/// Writes all bytes to standard output, unbuffered, as one write where the platform takes it whole.
/// False when not all of it could be written.
bool writeOutput(std::string_view bytes);

/// The same, but gives up when the reader does not take the bytes in time.
bool writeOutputWithin(std::string_view bytes, std::uint32_t microseconds);

/// Takes the right to write a line, which one flow has at a time, and gives it back. With a time
/// limit: false when it could not be had by then.
void acquireOutput();
bool acquireOutputWithin(std::uint32_t microseconds);
void releaseOutput();

/// The next line of standard input without its line feed, or what is left after the last one; waits
/// for it. None at the end of input. Bytes as they came.
std::optional<platform::Bytes> readLine();

/// What has arrived on standard input, at least one byte; waits for it. Empty at the end of input.
platform::Bytes readAvailable();

/// Opens the file at `path` for reading and writing, creating it for its owner alone, and takes the
/// exclusive lock on it without waiting. The file stays open, and locked, as long as the process
/// lives; no child inherits it. False when it cannot be opened or somebody else has the lock.
bool lockFile(const std::string& path);

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

/// The path with its symbolic links resolved, as far as it exists; a relative one becomes absolute.
/// An empty one stays as it is.
std::string resolvedPath(const std::string& path);

}  // namespace streams
