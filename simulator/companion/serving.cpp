#include "simulator/companion/serving.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <array>
#include <cstdlib>
#include <iostream>
#include <optional>

#include "simulator/companion/failure.h"
#include "simulator/companion/options.h"
#include "simulator/companion/server.h"
#include "simulator/companion/signals.h"
#include "simulator/companion/socket.h"

namespace companion {

namespace {

/// Nothing more is printed, so whoever reads the output to its end need not wait for the Mac's.
void printOnly(const std::string& line) {
  std::cout << line << std::endl;
  if (!std::cout) throw Failure("the socket's name could not be printed");
  const Descriptor nowhere(open("/dev/null", O_WRONLY | O_CLOEXEC));
  if (nowhere.number() >= 0) dup2(nowhere.number(), STDOUT_FILENO);
}

/// True once all writers of standard input have gone. What they write is of no interest.
bool inputClosed() {
  std::array<char, 4096> ignored;
  return read(STDIN_FILENO, ignored.data(), ignored.size()) <= 0;
}

// As shells say it.
constexpr int signalledBase = 128;
constexpr int commandNotFound = 127;
constexpr int commandNotRun = 126;

[[noreturn]] void becomeCommand(const std::vector<std::string>& command) {
  std::vector<char*> words;
  words.reserve(command.size() + 1);
  for (const std::string& word : command) words.push_back(const_cast<char*>(word.c_str()));
  words.push_back(nullptr);
  execvp(words[0], words.data());
  const int status = errno == ENOENT ? commandNotFound : commandNotRun;
  std::cout << failureLine(systemFailure("cannot run " + command[0]).what()) << std::endl;
  _exit(status);
}

/// The command ends with this process, however that ends.
pid_t start(const std::vector<std::string>& command, const std::string& socketName,
            const Signals& signals) {
  const pid_t parent = getpid();
  const pid_t child = fork();
  if (child < 0) throw systemFailure("cannot start a process");
  if (child > 0) return child;
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) _exit(1);  // it had gone before the line above
  signals.restore();
  setenv("SIMULATED_MAC", socketName.c_str(), 1);
  becomeCommand(command);
}

std::optional<int> statusOf(pid_t child) {
  int status = 0;
  if (waitpid(child, &status, WNOHANG) != child) return std::nullopt;
  return WIFSIGNALED(status) ? signalledBase + WTERMSIG(status) : WEXITSTATUS(status);
}

/// What was sent to this process alone is meant for the command; what a terminal sends, the command
/// gets by itself.
void passOn(const signalfd_siginfo& signal, pid_t child) {
  if (signal.ssi_code <= 0) kill(child, static_cast<int>(signal.ssi_signo));
}

}  // namespace

int serveCommand(const std::vector<std::string>& words) {
  const Options options = serveOptions(words);
  signal(SIGPIPE, SIG_IGN);  // whoever reads the socket's name may have gone
  const Signals signals({SIGTERM, SIGINT, SIGHUP});
  simulator::World world = readWorld(options);
  const ListeningSocket socket(options.socket.empty() ? privateSocketName() : options.socket);
  Server server(std::move(world), options.time, socket.descriptor());
  printOnly(socket.name());

  std::vector<pollfd> own = {{signals.descriptor(), POLLIN, 0}};
  if (options.untilClosed) own.push_back({STDIN_FILENO, POLLIN, 0});
  while (true) {
    server.turn(own);
    if (own[0].revents != 0) return 0;
    if (options.untilClosed && own[1].revents != 0 && inputClosed()) return 0;
  }
}

int runCommand(const std::vector<std::string>& words) {
  const Options options = runOptions(words);
  simulator::World world = readWorld(options);
  signal(SIGCHLD, SIG_DFL);  // ignored, the child's status would be lost
  const Signals signals({SIGCHLD, SIGTERM, SIGINT, SIGHUP});
  const ListeningSocket socket(privateSocketName());
  Server server(std::move(world), options.time, socket.descriptor());
  const pid_t child = start(options.command, socket.name(), signals);

  std::vector<pollfd> own = {{signals.descriptor(), POLLIN, 0}};
  while (true) {
    server.turn(own);
    while (const auto signal = signals.next()) {
      if (signal->ssi_signo != SIGCHLD) {
        passOn(*signal, child);
      } else if (const auto status = statusOf(child)) {
        return *status;
      }
    }
  }
}

}  // namespace companion
