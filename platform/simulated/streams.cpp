#include "platform/streams.h"

#include <unistd.h>

#include "platform/posix/files.h"
#include "platform/posix/output.h"
#include "platform/simulated/channel.h"

namespace streams {

using platform::Function;
using simulated::askFor;

bool writeOutput(std::string_view bytes) {
  // The simulated Mac is told how the write went, for its record.
  const bool written = simulated::channel().keepsOutput() || posix::writeAll(STDOUT_FILENO, bytes);
  return askFor<bool>(Function::writeOutput, bytes, written);
}

// The file is a real one: the simulated Mac only says whether the write goes through.
bool replaceFile(const std::string& path, const platform::Bytes& contents) {
  if (!askFor<bool>(Function::replaceFile, path, contents.size())) return false;
  return posix::replaceFile(path, contents);
}

std::optional<std::vector<std::string>> listDirectory(const std::string& path) {
  return askFor<std::optional<std::vector<std::string>>>(Function::listDirectory, path);
}

bool fileExists(const std::string& path) { return askFor<bool>(Function::fileExists, path); }

}  // namespace streams
