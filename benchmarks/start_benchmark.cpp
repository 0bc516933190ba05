#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

extern char** environ;

/// What starting the driver costs beside an empty process, with a simulated Mac that answers in
/// real time.
namespace {

/// Starts a program with standard output going to `output`.
pid_t spawn(std::vector<std::string> words, int output) {
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  pid_t child = 0;
  posix_spawn(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  return child;
}

void await(pid_t child) {
  int status = 0;
  waitpid(child, &status, 0);
}

/// A simulated Mac of an empty world, which SIMULATED_MAC names while this lives.
class ServedMac {
 public:
  ServedMac() {
    const std::string world = "/tmp/driver-benchmark-" + std::to_string(getpid()) + ".world";
    std::ofstream(world) << "display 1 1440x900 scale 2\n";
    std::array<int, 2> pipe{};
    if (pipe2(pipe.data(), O_CLOEXEC) != 0) std::abort();
    child_ = spawn({SIMULATED_MAC_EXECUTABLE, "serve", world}, pipe[1]);
    close(pipe[1]);
    std::string socket;
    for (char c = 0; read(pipe[0], &c, 1) == 1 && c != '\n';) socket += c;
    close(pipe[0]);
    setenv("SIMULATED_MAC", socket.c_str(), 1);
    unlink(world.c_str());
  }
  ServedMac(const ServedMac&) = delete;
  ServedMac& operator=(const ServedMac&) = delete;
  ~ServedMac() {
    kill(child_, SIGTERM);
    await(child_);
    unsetenv("SIMULATED_MAC");
  }

 private:
  pid_t child_ = 0;
};

void runEach(benchmark::State& state, const std::vector<std::string>& words) {
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  for (auto step : state) await(spawn(words, nowhere));
  close(nowhere);
}

void startEmptyProcess(benchmark::State& state) { runEach(state, {EMPTY_EXECUTABLE}); }

void startSession(benchmark::State& state) {
  const ServedMac mac;
  runEach(state, {DRIVER_EXECUTABLE, "session"});
}

BENCHMARK(startEmptyProcess)->UseRealTime()->Unit(benchmark::kMicrosecond)->Iterations(2000);
BENCHMARK(startSession)->UseRealTime()->Unit(benchmark::kMicrosecond)->Iterations(2000);

}  // namespace
