#include "platform/streams.h"

#include <unistd.h>

#include "platform/posix/descriptors.h"
#include "platform/posix/files.h"
#include "platform/simulated/channel.h"
#include "platform/simulated/process_state.h"

namespace streams {

using platform::Function;
using simulated::ask;
using simulated::askFor;
using simulated::state;

namespace {

using Limit = std::optional<std::uint32_t>;

/// True when standard input and output are the process's own descriptors.
bool hasDescriptors() { return !simulated::channel().keepsOutput(); }

// While a flow waits for a descriptor, the others of the Mac go on.
void goOutside() {
  if (state().hasFlows) ask(Function::leaveDesktop);
}
void comeBack() {
  if (state().hasFlows) ask(Function::returnToDesktop);
}
// The simulated Mac is told what was read, for its record.
void comeBackWith(const platform::Bytes& bytes) {
  if (state().hasFlows) ask(Function::returnToDesktop, bytes);
}

bool writeToDescriptor(std::string_view bytes, const Limit& limit) {
  // Only who has to wait for the reader gives up the turn: else time would pass within a line.
  bytes.remove_prefix(posix::writeReady(STDOUT_FILENO, bytes));
  if (bytes.empty()) return true;
  goOutside();
  const bool written = limit ? posix::writeWithin(STDOUT_FILENO, bytes, *limit)
                             : posix::writeAll(STDOUT_FILENO, bytes);
  comeBack();
  return written;
}

// The simulated Mac is told how the write went, for its record.
bool write(std::string_view bytes, const Limit& limit) {
  const bool written = !hasDescriptors() || writeToDescriptor(bytes, limit);
  return limit ? askFor<bool>(Function::writeOutput, bytes, written, *limit)
               : askFor<bool>(Function::writeOutput, bytes, written);
}

platform::Bytes readDescriptor() {
  goOutside();
  platform::Bytes bytes = posix::readSome(STDIN_FILENO);
  comeBackWith(bytes);
  return bytes;
}

posix::Input& input() {
  auto& input = state().input;
  if (!input) input.emplace(readDescriptor);
  return *input;
}

}  // namespace

bool writeOutput(std::string_view bytes) { return write(bytes, std::nullopt); }

bool writeOutputWithin(std::string_view bytes, std::uint32_t microseconds) {
  return write(bytes, microseconds);
}

void acquireOutput() { ask(Function::acquireOutput, Limit()); }

bool acquireOutputWithin(std::uint32_t microseconds) {
  return askFor<bool>(Function::acquireOutput, Limit(microseconds));
}

void releaseOutput() { ask(Function::releaseOutput); }

std::optional<platform::Bytes> readLine() {
  if (hasDescriptors()) return input().readLine();
  return askFor<std::optional<platform::Bytes>>(Function::readLine);
}

platform::Bytes readAvailable() {
  if (hasDescriptors()) return input().readAvailable();
  return askFor<platform::Bytes>(Function::readAvailable);
}

// The files that are written or locked are real ones: the simulated Mac only says whether that goes
// through.
bool lockFile(const std::string& path) {
  if (!askFor<bool>(Function::lockFile, path)) return false;
  const int descriptor = posix::lockFile(path);
  if (descriptor >= 0) state().lockDescriptor = descriptor;
  return descriptor >= 0;
}

bool replaceFile(const std::string& path, const platform::Bytes& contents) {
  if (!askFor<bool>(Function::replaceFile, path, contents.size())) return false;
  return posix::replaceFile(path, contents);
}

std::optional<std::vector<std::string>> listDirectory(const std::string& path) {
  return askFor<std::optional<std::vector<std::string>>>(Function::listDirectory, path);
}

bool fileExists(const std::string& path) { return askFor<bool>(Function::fileExists, path); }

std::string resolvedPath(const std::string& path) {
  return askFor<std::string>(Function::resolvedPath, path);
}

}  // namespace streams
