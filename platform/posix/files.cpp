#include "platform/posix/files.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>

#include "platform/posix/descriptors.h"

namespace posix {

namespace {

// Those that make a program run as somebody else are not handed on to new contents.
constexpr mode_t permissionBits = 0777;
constexpr mode_t newFilePermissions = 0666;  // less the user's mask
constexpr mode_t forOwnerAlone = 0600;

struct Target {
  bool replaceable = false;
  std::optional<mode_t> permissions;  // of the file that is there
};

Target examine(const std::string& path) {
  struct stat status = {};
  // Of the link itself, where it is one: what it leads to is nobody's to replace by this name.
  if (lstat(path.c_str(), &status) != 0) return {errno == ENOENT, std::nullopt};
  return {S_ISREG(status.st_mode), static_cast<mode_t>(status.st_mode & permissionBits)};
}

// A name of fixed length, so that it fits wherever the target's name does, and one that nobody can
// lie in wait for.
std::optional<std::string> nameBeside(const std::string& path) {
  std::uint64_t random = 0;
  if (getentropy(&random, sizeof random) != 0) return std::nullopt;
  char name[40] = {};
  std::snprintf(name, sizeof name, ".driver-%016llx", static_cast<unsigned long long>(random));
  return path.substr(0, path.rfind('/') + 1) + name;
}

bool fill(int descriptor, std::string_view contents, std::optional<mode_t> permissions) {
  if (permissions && fchmod(descriptor, *permissions) != 0) return false;
  return writeAll(descriptor, contents);
}

/// While it lives, a file beyond the process's size limit is an error and no signal.
class FileSizeSignalIgnored {
 public:
  FileSizeSignalIgnored() : previous_(signal(SIGXFSZ, SIG_IGN)) {}
  FileSizeSignalIgnored(const FileSizeSignalIgnored&) = delete;
  FileSizeSignalIgnored& operator=(const FileSizeSignalIgnored&) = delete;
  ~FileSizeSignalIgnored() { signal(SIGXFSZ, previous_); }

 private:
  void (*previous_)(int);
};

bool writeNewFile(const std::string& path, std::string_view contents,
                  std::optional<mode_t> permissions) {
  // Never a file that is there already, or a link that somebody has laid: whatever has the name
  // stays.
  const int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
  const FileSizeSignalIgnored ignored;
  const int descriptor = open(path.c_str(), flags, newFilePermissions);
  if (descriptor < 0) return false;
  const bool filled = fill(descriptor, contents, permissions);
  // A full disk may show only here.
  const bool closed = close(descriptor) == 0;
  if (filled && closed) return true;
  unlink(path.c_str());
  return false;
}

bool namesFile(const std::string& path) {
  return !path.empty() && path.back() != '/' && path.find('\0') == std::string::npos;
}

/// None when not all of it can be read: half a file must not be taken for one.
std::optional<std::string> contentsOf(int descriptor) {
  std::string contents;
  char portion[16 * 1024];
  for (;;) {
    const ssize_t count = read(descriptor, portion, sizeof portion);
    if (count == 0) return contents;
    if (count > 0) contents.append(portion, static_cast<std::size_t>(count));
    if (count < 0 && errno != EINTR) return std::nullopt;
  }
}

bool isSelfOrParent(std::string_view name) { return name == "." || name == ".."; }

}  // namespace

bool replaceFile(const std::string& path, std::string_view contents) {
  if (!namesFile(path)) return false;
  const Target target = examine(path);
  if (!target.replaceable) return false;
  const std::optional<std::string> beside = nameBeside(path);
  if (!beside || !writeNewFile(*beside, contents, target.permissions)) return false;
  // In one step, and so it must lie in the same folder: a rename across file systems fails.
  if (rename(beside->c_str(), path.c_str()) == 0) return true;
  unlink(beside->c_str());
  return false;
}

std::optional<std::vector<std::string>> listDirectory(const std::string& path) {
  const std::unique_ptr<DIR, int (*)(DIR*)> directory(opendir(path.c_str()), closedir);
  if (!directory) return std::nullopt;
  std::vector<std::string> names;
  for (;;) {
    // Only it tells the end from an error, and whatever is called in between may set it.
    errno = 0;
    const dirent* entry = readdir(directory.get());
    if (entry == nullptr && errno != 0) return std::nullopt;
    if (entry == nullptr) return names;
    if (!isSelfOrParent(entry->d_name)) names.emplace_back(entry->d_name);
  }
}

bool fileExists(const std::string& path) {
  struct stat status = {};
  return stat(path.c_str(), &status) == 0;
}

std::string resolvedPath(const std::string& path) {
  // Of a relative path of which nothing exists, and of an empty one, libraries of C++ make
  // different things, so that they get neither.
  if (path.empty()) return path;
  std::error_code error;
  const std::filesystem::path whole = std::filesystem::absolute(path, error);
  if (error) return path;
  const std::filesystem::path resolved = std::filesystem::weakly_canonical(whole, error);
  return error ? path : resolved.string();
}

std::optional<std::string> readFile(const std::string& path) {
  // Opening a FIFO would else wait for its writer.
  const int descriptor = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) return std::nullopt;
  std::optional<std::string> contents;
  struct stat status = {};
  if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) contents = contentsOf(descriptor);
  close(descriptor);
  return contents;
}

int lockFile(const std::string& path) {
  // Opening a FIFO would else wait for its other end.
  const int flags = O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK;
  const int opened = open(path.c_str(), flags, forOwnerAlone);
  if (opened < 0) return -1;
  // Where a standard descriptor is closed, the file has taken its place.
  const int descriptor = fcntl(opened, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  close(opened);
  if (descriptor < 0) return -1;
  if (flock(descriptor, LOCK_EX | LOCK_NB) == 0) return descriptor;
  close(descriptor);
  return -1;
}

}  // namespace posix
