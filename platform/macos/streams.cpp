#include "platform/streams.h"

#include <unistd.h>

#include <chrono>
#include <mutex>

#include "platform/posix/descriptors.h"
#include "platform/posix/files.h"

namespace streams {

namespace {

// Neither is ever destroyed: other threads go on while one ends the process.
std::timed_mutex& outputTurn() {
  static auto& turn = *new std::timed_mutex;
  return turn;
}

posix::Input& input() {
  static auto& input = *new posix::Input(STDIN_FILENO);
  return input;
}

}  // namespace

bool writeOutput(std::string_view bytes) { return posix::writeAll(STDOUT_FILENO, bytes); }

bool writeOutputWithin(std::string_view bytes, std::uint32_t microseconds) {
  return posix::writeWithin(STDOUT_FILENO, bytes, microseconds);
}

void acquireOutput() { outputTurn().lock(); }

bool acquireOutputWithin(std::uint32_t microseconds) {
  return outputTurn().try_lock_for(std::chrono::microseconds(microseconds));
}

void releaseOutput() { outputTurn().unlock(); }

std::optional<platform::Bytes> readLine() { return input().readLine(); }

platform::Bytes readAvailable() { return input().readAvailable(); }

// The open file is nobody's, so that it stays locked until the process ends.
bool lockFile(const std::string& path) { return posix::lockFile(path) >= 0; }

bool replaceFile(const std::string& path, const platform::Bytes& contents) {
  return posix::replaceFile(path, contents);
}

std::optional<std::vector<std::string>> listDirectory(const std::string& path) {
  return posix::listDirectory(path);
}

bool fileExists(const std::string& path) { return posix::fileExists(path); }

std::string resolvedPath(const std::string& path) { return posix::resolvedPath(path); }

}  // namespace streams
