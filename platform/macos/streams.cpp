#include "platform/streams.h"

#include <unistd.h>

#include "platform/posix/files.h"
#include "platform/posix/output.h"

namespace streams {

bool writeOutput(std::string_view bytes) { return posix::writeAll(STDOUT_FILENO, bytes); }

bool replaceFile(const std::string& path, const platform::Bytes& contents) {
  return posix::replaceFile(path, contents);
}

std::optional<std::vector<std::string>> listDirectory(const std::string& path) {
  return posix::listDirectory(path);
}

bool fileExists(const std::string& path) { return posix::fileExists(path); }

}  // namespace streams
