#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace posix {

/// Puts `contents` in place of the file at `path` in one step: a reader sees the old file or the
/// new one, whole. The new file is written beside the target and renamed. It keeps the permission
/// bits of the file it replaces; where there was none, it gets those of any new file. Only a
/// regular file, or nothing, is replaced: a directory, a link, a FIFO or a device is refused. False
/// when it was refused or failed; then the target is as before and nothing is left beside it.
bool replaceFile(const std::string& path, std::string_view contents);

/// The names in a directory, without "." and "..", in the order the system gives them; none when
/// it cannot be listed.
std::optional<std::vector<std::string>> listDirectory(const std::string& path);

/// Opens the file at `path` for reading and writing, creating it for its owner alone, and takes the
/// exclusive advisory lock on it without waiting. The descriptor is the caller's and is not
/// inherited by other programs. -1 when it cannot be opened or somebody else has the lock.
int lockFile(const std::string& path);

/// True when something exists at `path`, links followed.
bool fileExists(const std::string& path);

/// The path with its symbolic links resolved, as far as it exists; a relative one becomes absolute.
/// The path itself when it is empty, or when that fails.
std::string resolvedPath(const std::string& path);

/// What is in the regular file at `path`, links followed. None when it cannot be read, or is no
/// regular file: a FIFO or a device might never end.
std::optional<std::string> readFile(const std::string& path);

}  // namespace posix
