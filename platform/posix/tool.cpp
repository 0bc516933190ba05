#include "platform/posix/tool.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "platform/posix/descriptors.h"

#ifdef __APPLE__
extern char** environ;  // which no header there declares
#endif

namespace posix {

namespace {

// Elsewhere than on a Mac, every descriptor that shall not be inherited says so itself.
#ifdef POSIX_SPAWN_CLOEXEC_DEFAULT
constexpr int inheritNothing = POSIX_SPAWN_CLOEXEC_DEFAULT;
#else
constexpr int inheritNothing = 0;
#endif

constexpr const char* nowhere = "/dev/null";

struct Pipe {
  Pipe() { isOpen = pipe(ends.data()) == 0; }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;
  ~Pipe() {
    for (const int end : ends) {
      if (end >= 0) close(end);
    }
  }
  void closeWriter() {
    close(ends[1]);
    ends[1] = -1;
  }
  bool isOpen = false;
  std::array<int, 2> ends = {-1, -1};
};

/// Where the standard descriptors of the tool lead.
struct Actions {
  explicit Actions(int output) {
    posix_spawn_file_actions_init(&native);
    posix_spawn_file_actions_addopen(&native, STDIN_FILENO, nowhere, O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&native, output, STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&native, STDERR_FILENO, nowhere, O_WRONLY, 0);
  }
  Actions(const Actions&) = delete;
  Actions& operator=(const Actions&) = delete;
  ~Actions() { posix_spawn_file_actions_destroy(&native); }
  posix_spawn_file_actions_t native;
};

/// What else the tool does not inherit.
struct Attributes {
  Attributes() {
    sigset_t none;
    sigemptyset(&none);
    sigset_t defaults;
    sigemptyset(&defaults);
    // Those that a service handles or ignores. A tool that ignored them could not be ended.
    for (const int signal : {SIGHUP, SIGINT, SIGPIPE, SIGTERM}) sigaddset(&defaults, signal);
    posix_spawnattr_init(&native);
    posix_spawnattr_setsigmask(&native, &none);
    posix_spawnattr_setsigdefault(&native, &defaults);
    posix_spawnattr_setflags(&native, static_cast<short>(POSIX_SPAWN_SETSIGMASK |
                                                         POSIX_SPAWN_SETSIGDEF | inheritNothing));
  }
  Attributes(const Attributes&) = delete;
  Attributes& operator=(const Attributes&) = delete;
  ~Attributes() { posix_spawnattr_destroy(&native); }
  posix_spawnattr_t native;
};

std::optional<pid_t> start(const std::string& path, const std::vector<std::string>& arguments,
                           int output) {
  // The function takes pointers to characters that may be changed, and only reads them.
  std::vector<char*> words = {const_cast<char*>(path.c_str())};
  for (const std::string& argument : arguments) {
    words.push_back(const_cast<char*>(argument.c_str()));
  }
  words.push_back(nullptr);
  const Actions actions(output);
  const Attributes attributes;
  pid_t child = 0;
  const int error =
      posix_spawn(&child, path.c_str(), &actions.native, &attributes.native, words.data(), environ);
  if (error != 0) return std::nullopt;
  return child;
}

void waitFor(pid_t child) {
  while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
  }
}

}  // namespace

std::optional<std::string> toolOutput(const std::string& path,
                                      const std::vector<std::string>& arguments) {
  Pipe pipe;
  if (!pipe.isOpen) return std::nullopt;
  for (const int end : pipe.ends) fcntl(end, F_SETFD, FD_CLOEXEC);
  const std::optional<pid_t> child = start(path, arguments, pipe.ends[1]);
  if (!child) return std::nullopt;
  // Else the end of the tool's output would never be seen.
  pipe.closeWriter();
  // Before its end is waited for: a tool that fills the pipe waits for us.
  std::string output = readToEnd(pipe.ends[0]);
  waitFor(*child);
  return output;
}

}  // namespace posix
