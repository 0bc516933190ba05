#include <sched.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>
#include <utility>
#include <variant>

#include "main/dispatcher.h"
#include "platform/posix/process.h"
#include "platform/simulated/channel.h"
#include "platform/simulated/frames.h"
#include "tests/support/channels.h"

namespace testing_support {

namespace {

using driver::Datum;

/// The child's end: each call is a frame, each answer another.
class ForkedChannel : public platform::Channel {
 public:
  ForkedChannel(int descriptor, platform::Pid pid) : descriptor_(descriptor), pid_(pid) {}

  Datum call(platform::Call call) override {
    const Datum frame(Datum::List{driver::pack(call.function), Datum(std::move(call.arguments))});
    simulated::writeFrame(descriptor_, frame);
    auto answer = simulated::readFrame(descriptor_);
    if (!answer) std::_Exit(127);  // the test has gone
    return std::move(*answer);
  }

  platform::Pid ownPid() const override { return pid_; }

  // A process with several flows is tested in the other modes.
  void startFlow(std::function<void()> /*body*/) override { std::_Exit(127); }
  void watchSignals(const std::vector<int>& /*numbers*/) override {}
  void awaitEndingSignal(const std::vector<int>& /*numbers*/,
                         std::function<void(int)> /*handler*/) override {}

  bool keepsOutput() const override { return true; }

  void exit(int status) override {
    call({platform::Function::exit, {driver::pack(status)}});
    std::_Exit(status);
  }

  void dieBySignal(int signal) override {
    call({platform::Function::dieBySignal, {driver::pack(signal)}});
    posix::dieBySignal(signal);
  }

 private:
  int descriptor_;
  platform::Pid pid_;
};

int exitStatusOf(int status) {
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

struct Request {
  platform::Pid pid = 0;
  std::vector<std::string> commandLine;
};

Datum packed(const Request& request) {
  return driver::listOf(driver::pack(request.pid), driver::pack(request.commandLine));
}

Request requestOf(const Datum& datum) {
  const auto parts = driver::unpack<Datum::List>(datum);
  return {driver::unpack<platform::Pid>(parts.at(0)),
          driver::unpack<std::vector<std::string>>(parts.at(1))};
}

[[noreturn]] void runChild(int descriptor, const Request& request) {
  ForkedChannel channel(descriptor, request.pid);
  simulated::setChannel(&channel);
  channel.exit(driver::run(request.commandLine));
  std::abort();  // nothing comes back from there
}

/// Starts the requested runs one after the other, and says of each how it ended.
[[noreturn]] void startRuns(int descriptor) {
  while (auto frame = simulated::readFrame(descriptor)) {
    const pid_t child = fork();
    if (child == 0) runChild(descriptor, requestOf(*frame));
    int status = 0;
    waitpid(child, &status, 0);
    simulated::writeFrame(descriptor, driver::pack(exitStatusOf(status)));
  }
  std::_Exit(0);
}

/// A test and its run take turns, and one of them always waits. On one processor a turn is a switch
/// between the two; from one processor to another it takes several times as long.
void stayOnThisProcessor() {
  cpu_set_t processors;
  CPU_ZERO(&processors);
  CPU_SET(static_cast<std::size_t>(sched_getcpu()), &processors);
  sched_setaffinity(0, sizeof processors, &processors);
}

/// The process that starts the runs. It is forked before the first one: a fork takes as long as the
/// process is large, and this one grows with its tests.
class Starter {
 public:
  Starter() {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
      throw std::runtime_error("no socket pair");
    }
    descriptor_ = ends[0];
    stayOnThisProcessor();
    if (fork() == 0) {
      close(ends[0]);
      startRuns(ends[1]);
    }
    close(ends[1]);
  }
  Starter(const Starter&) = delete;
  Starter& operator=(const Starter&) = delete;
  ~Starter() { close(descriptor_); }

  /// Where requests go; then, until the run has ended, its calls and their answers; then its
  /// status.
  int descriptor() const { return descriptor_; }

 private:
  int descriptor_ = -1;
};

/// Answers the calls of a run until it has ended. Its exit status.
int serve(simulator::Desktop& desktop, std::size_t client, int descriptor) {
  while (auto frame = simulated::readFrame(descriptor)) {
    auto* const parts = std::get_if<Datum::List>(&frame->data);
    if (parts == nullptr) return driver::unpack<int>(*frame);
    platform::Call call{driver::unpack<platform::Function>(parts->at(0)),
                        driver::unpack<Datum::List>(std::move(parts->at(1)))};
    const simulator::Answer answer = desktop.handle(client, call);
    desktop.advanceTo(desktop.mac().now + answer.delay);
    simulated::writeFrame(descriptor, answer.value);
  }
  throw std::runtime_error("what starts the runs has gone");
}

}  // namespace

int runForked(simulator::Desktop& desktop, std::size_t client,
              const std::vector<std::string>& commandLine) {
  static const Starter starter;
  const Request request{desktop.client(client).pid, commandLine};
  simulated::writeFrame(starter.descriptor(), packed(request));
  return serve(desktop, client, starter.descriptor());
}

}  // namespace testing_support
