#include "simulator/companion/serving.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "platform/posix/descriptors.h"
#include "simulator/companion/failure.h"
#include "simulator/companion/files.h"
#include "simulator/companion/only_line.h"
#include "simulator/companion/options.h"
#include "simulator/companion/record.h"
#include "simulator/companion/server.h"
#include "simulator/companion/signals.h"
#include "simulator/companion/socket.h"
#include "simulator/companion/world_file.h"
#include "simulator/mac/datum_text.h"
#include "simulator/script.h"
#include "simulator/snapshot/snapshot.h"
#include "simulator/snapshot/world_text.h"

namespace companion {

namespace {

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

/// What makes processes sleep in virtual time: beside the executable where it was built, otherwise
/// where it is installed. Throws Failure.
std::string sleepLibrary() {
  const auto folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
  for (const auto& path : {folder / "libvirtual_sleep.so", folder / SLEEP_LIBRARY_FROM_BIN}) {
    if (std::filesystem::exists(path)) return path.lexically_normal().string();
  }
  throw Failure("libvirtual_sleep.so is not there, which --sleep needs");
}

/// Ahead of what is to be loaded anyway.
void loadIntoCommand(std::string library) {
  const char* others = getenv("LD_PRELOAD");
  if (others != nullptr && *others != '\0') library += std::string(":") + others;
  setenv("LD_PRELOAD", library.c_str(), 1);
}

/// What a command is started with.
struct Start {
  std::vector<std::string> command;
  bool sleeps = false;  // as in Options
  int output = STDOUT_FILENO;
};

/// The command ends with this process, however that ends.
pid_t start(const Start& how, const std::string& socketName, const Signals& signals) {
  const pid_t parent = getpid();
  const pid_t child = fork();
  if (child < 0) throw systemFailure("cannot start a process");
  if (child > 0) return child;
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) _exit(1);  // it had gone before the line above
  dup2(how.output, STDOUT_FILENO);
  signals.restore();
  setenv("SIMULATED_MAC", socketName.c_str(), 1);
  if (how.sleeps) loadIntoCommand(sleepLibrary());
  becomeCommand(how.command);
}

/// The program lies beside this one.
std::string viewProgram() {
  std::error_code error;
  const auto own = std::filesystem::read_symlink("/proc/self/exe", error);
  if (error) throw Failure("cannot find simulated-mac-view: " + error.message());
  return own.parent_path() / "simulated-mac-view";
}

/// Shows the Mac in a browser, by a process of its own that ends with this one: what it draws and
/// sends does not keep the Mac waiting. Gives the line that it prints. Throws Failure.
std::string startView(const std::string& port, const std::string& socketName,
                      const Signals& signals) {
  signal(SIGCHLD, SIG_IGN);  // nobody waits for it
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw systemFailure("cannot make a pipe");
  const Descriptor reading(ends[0]);
  Descriptor writing(ends[1]);
  start({{viewProgram(), port}, false, writing.number()}, socketName, signals);
  writing = Descriptor();
  std::string line = posix::readToEnd(reading.number());
  const auto told = nlohmann::json::parse(line, nullptr, false);
  if (!told.is_object()) throw Failure("the view has ended");
  if (told.contains("error")) throw Failure(told["error"].get<std::string>());
  return line.substr(0, line.find('\n'));
}

std::optional<int> statusOf(pid_t child) {
  int status = 0;
  if (waitpid(child, &status, WNOHANG) != child) return std::nullopt;
  return WIFSIGNALED(status) ? signalledBase + WTERMSIG(status) : WEXITSTATUS(status);
}

/// Whoever looks back on a run sees at once that its command has failed.
void tellHowItEnded(Server& server, const std::vector<std::string>& command, int status) {
  if (status == 0) return;
  std::string text = "the command ended with status " + std::to_string(status) + ":";
  for (const std::string& word : command) text += " " + simulator::shellWord(word);
  server.tellOfFailure(text);
}

/// What was sent to this process alone is meant for the command; what a terminal sends, the command
/// gets by itself.
void passOn(const signalfd_siginfo& signal, pid_t child) {
  if (signal.ssi_code <= 0) kill(child, static_cast<int>(signal.ssi_signo));
}

/// A Mac with all that belongs to it.
class ServedMac {
 public:
  ServedMac(const Options& options, const std::string& socketName, bool canBeStopped)
      : file_(readWorldFile(options.world)), snapshot_(options.snapshot) {
    simulator::World world = worldOf(file_);
    if (options.seed) simulator::reseed(world, *options.seed);
    socket_ = std::make_unique<ListeningSocket>(socketName);
    if (!options.record.folder.empty()) {
      recorder_ = std::make_unique<Recorder>(options.record, file_.wholeText(), options.time);
    }
    server_ = std::make_unique<Server>(
        std::move(world), ServerSettings{options.time, socket_->descriptor(), options.world,
                                         canBeStopped, recorder_.get(), options.sleeps});
  }
  ServedMac(const ServedMac&) = delete;
  ServedMac& operator=(const ServedMac&) = delete;

  /// What is kept of it is whole.
  void end() const {
    if (recorder_) recorder_->finish(server_->desktop());
    if (!snapshot_.empty()) writeSnapshot();
  }

  Server& server() const { return *server_; }
  const std::string& socketName() const { return socket_->name(); }

 private:
  /// What the command has said stays its last word: that there is no snapshot is told beside it.
  void writeSnapshot() const {
    try {
      writeFile(snapshot_, simulator::snapshotText(server_->desktop()));
    } catch (const simulator::UnwritableWorld& unwritable) {
      std::cerr << failureLine(unwritable.what()) << std::endl;
    } catch (const Failure& failure) {
      std::cerr << failureLine(failure.what()) << std::endl;
    }
  }

  WorldFile file_;
  std::string snapshot_;  // the file; empty: none
  std::unique_ptr<ListeningSocket> socket_;
  std::unique_ptr<Recorder> recorder_;
  std::unique_ptr<Server> server_;
};

}  // namespace

int serveCommand(const std::vector<std::string>& words) {
  const Options options = serveOptions(words);
  signal(SIGPIPE, SIG_IGN);  // whoever reads the socket's name may have gone
  const Signals signals({SIGTERM, SIGINT, SIGHUP});
  const ServedMac mac(options, options.socket.empty() ? privateSocketName() : options.socket, true);
  if (options.view) std::cerr << startView(*options.view, mac.socketName(), signals) << std::endl;
  printOnly(mac.socketName());

  std::vector<pollfd> own = {{signals.descriptor(), POLLIN, 0}};
  if (options.untilClosed) own.push_back({STDIN_FILENO, POLLIN, 0});
  bool ends = false;
  while (!ends) {
    mac.server().turn(own);
    ends = own[0].revents != 0 || mac.server().isStopped() ||
           (options.untilClosed && own[1].revents != 0 && inputClosed());
  }
  mac.end();
  return 0;
}

int viewCommand(const std::vector<std::string>& words) {
  becomeCommand({viewProgram(), words.size() > 1 ? words[1] : "0"});
}

int runCommand(const std::vector<std::string>& words) {
  const Options options = runOptions(words);
  signal(SIGCHLD, SIG_DFL);  // ignored, the child's status would be lost
  const Signals signals({SIGCHLD, SIGTERM, SIGINT, SIGHUP});
  const ServedMac mac(options, privateSocketName(), false);
  if (options.sleeps) {
    sleepLibrary();                    // that it is missing is told before anything runs
    prctl(PR_SET_CHILD_SUBREAPER, 1);  // what the command leaves behind stays below this process
  }
  const pid_t child = start({options.command, options.sleeps}, mac.socketName(), signals);

  std::vector<pollfd> own = {{signals.descriptor(), POLLIN, 0}};
  while (true) {
    mac.server().turn(own);
    while (const auto signal = signals.next()) {
      if (signal->ssi_signo != SIGCHLD) {
        passOn(*signal, child);
      } else if (const auto status = statusOf(child)) {
        tellHowItEnded(mac.server(), options.command, *status);
        mac.end();
        return *status;
      }
    }
  }
}

}  // namespace companion
