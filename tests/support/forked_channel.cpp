#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

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

[[noreturn]] void runChild(int descriptor, platform::Pid pid,
                           const std::vector<std::string>& commandLine) {
  ForkedChannel channel(descriptor, pid);
  simulated::setChannel(&channel);
  channel.exit(driver::run(commandLine));
  std::abort();  // nothing comes back from there
}

void serve(simulator::Desktop& desktop, std::size_t client, int descriptor) {
  while (auto frame = simulated::readFrame(descriptor)) {
    auto parts = driver::unpack<std::vector<Datum>>(*frame);
    platform::Call call{driver::unpack<platform::Function>(parts.at(0)),
                        driver::unpack<Datum::List>(parts.at(1))};
    const simulator::Answer answer = desktop.handle(client, call);
    desktop.advanceTo(desktop.mac().now + answer.delay);
    simulated::writeFrame(descriptor, answer.value);
  }
}

}  // namespace

int runForked(simulator::Desktop& desktop, std::size_t client,
              const std::vector<std::string>& commandLine) {
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
    throw std::runtime_error("no socket pair");
  }
  const pid_t child = fork();
  if (child == 0) {
    close(ends[0]);
    runChild(ends[1], desktop.client(client).pid, commandLine);
  }
  close(ends[1]);
  serve(desktop, client, ends[0]);
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace testing_support
