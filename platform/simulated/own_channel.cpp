#include "platform/simulated/own_channel.h"

#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "base/value.h"
#include "platform/json.h"
#include "platform/posix/descriptors.h"
#include "platform/posix/process.h"
#include "platform/simulated/frames.h"
#include "platform/simulated/process_state.h"
#include "platform/simulated/socket_address.h"

namespace simulated {

using driver::Datum;
using platform::Function;

namespace {

/// Writes a failure reply to the process's own standard output and exits with status 1.
[[noreturn]] void failWithoutMac(const std::string& message) {
  const std::string reply =
      json::write(driver::Value::Object{{"ok", false}, {"error", message}}) + "\n";
  posix::writeAll(STDOUT_FILENO, reply);
  std::_Exit(1);
}

[[noreturn]] void failForLackOfMac() {
  failWithoutMac(
      "no simulated Mac to join: set SIMULATED_MAC to the socket that \"simulated-mac serve "
      "WORLD\" prints, or run this command under \"simulated-mac run WORLD -- COMMAND\"");
}

// A usage message or an unknown command needs no Mac, and says what it says on a Mac.
class AbsentChannel : public platform::Channel {
 public:
  Datum call(platform::Call call) override {
    switch (call.function) {
      case Function::environment:
        return driver::pack(
            posix::environment(driver::unpack<std::string>(call.arguments.at(0)).c_str()));
      case Function::writeOutput:
        return call.arguments.at(1);
      case Function::fullUserName:
      case Function::loginName:
        return driver::pack(std::string());
      case Function::createSource:
      case Function::loadImage:
      case Function::givenName:
        return Datum();
      default:
        failForLackOfMac();
    }
  }

  platform::Pid ownPid() const override { failForLackOfMac(); }
  [[noreturn]] void startFlow(std::function<void()> /*body*/) override { failForLackOfMac(); }
  void watchSignals(const std::vector<int>& /*numbers*/) override {}
  void awaitEndingSignal(const std::vector<int>& /*numbers*/,
                         std::function<void(int)> /*handler*/) override {}
  bool keepsOutput() const override { return false; }
  [[noreturn]] void exit(int status) override { std::exit(status); }
  [[noreturn]] void dieBySignal(int signal) override { posix::dieBySignal(signal); }
};

constexpr const char* howToStart =
    "; \"simulated-mac serve WORLD\" starts one and prints its socket, and \"simulated-mac run "
    "WORLD -- COMMAND\" runs a command with one";

/// The status of a call that nobody answers.
constexpr std::int32_t callWithoutMac = -1;

/// The connection of the calling flow; each has its own.
thread_local int flowDescriptor = -1;

/// The calling flow is the last that the process has, and has met a fatal signal.
thread_local bool isLast = false;

/// The calling flow is the one that ends the process.
thread_local bool endsProcess = false;

class JoinedChannel : public platform::Channel {
 public:
  explicit JoinedChannel(std::string path) : path_(std::move(path)) {}

  Datum call(platform::Call call) override {
    if (isLast) return callInLastAct(std::move(call));
    const bool endsLine = lineOpen_ && call.function == Function::writeOutput;
    if (call.function == Function::writeOutput) noteOutput(call);
    if (auto answer = tryExchange(frameOfCall(std::move(call)))) return std::move(*answer);
    // A reply that has begun is the run's only one, even when the Mac goes before its line feed.
    if (endsLine) return driver::pack(true);
    failGone();
  }

  platform::Pid ownPid() const override { return pid_; }

  // The thread is there before the Mac hears of its flow, and time there stands still until it
  // comes.
  void startFlow(std::function<void()> body) override {
    std::promise<std::int64_t> number;
    std::thread([this, told = number.get_future(), body = std::move(body)]() mutable {
      const Datum flow(told.get());
      enter(Datum(Datum::List{Datum(std::string("flow")), driver::pack(pid_), flow}));
      body();
      call({Function::endFlow, {}});
      close(flowDescriptor);
    }).detach();
    number.set_value(driver::unpack<std::int64_t>(call({Function::startFlow, {}})));
  }

  // By a thread that waits for them, since a handler may make no call: it could meet one half made.
  void watchSignals(const std::vector<int>& numbers) override {
    sigset_t watched;
    sigemptyset(&watched);
    for (const int number : numbers) sigaddset(&watched, number);
    pthread_sigmask(SIG_BLOCK, &watched, nullptr);
    startFlow([this, watched] {
      // Signals come from outside of the Mac, whose time does not stand still for them.
      call({Function::leaveDesktop, {}});
      for (;;) {
        int number = 0;
        if (sigwait(&watched, &number) != 0) continue;
        call({Function::noteSignal, {driver::pack(number)}});
      }
    });
  }

  // By a connection of its own, which nobody has announced: the process's flow may be in the middle
  // of a call.
  void awaitEndingSignal(const std::vector<int>& numbers,
                         std::function<void(int)> handler) override {
    posix::onEndingSignal(numbers, [this, handler = std::move(handler)](int number) {
      enter(Datum(Datum::List{Datum(std::string("flow")), driver::pack(pid_)}));
      call({Function::noteSignal, {driver::pack(number)}});
      handler(number);
    });
  }

  bool keepsOutput() const override { return false; }

  void exit(int status) override {
    beginEnd();
    // The reply has been written: that the Mac has gone meanwhile is no news to the caller.
    tryExchange(frameOfCall({Function::exit, {driver::pack(status)}}));
    if (state().hasFlows) std::_Exit(status);  // nothing is destroyed under flows that still run
    std::exit(status);
  }

  // By a connection of its own: the flow may be in the middle of a call, and another of the process
  // may be the one whose turn it is.
  void beginLastAct() override {
    isLast = true;
    beginEnd();
    flowDescriptor = connectToSocket(path_);
    if (flowDescriptor < 0) return;
    tryExchange(Datum(Datum::List{Datum(std::string("last act")), driver::pack(pid_)}));
  }

  void dieBySignal(int signal) override {
    beginEnd();
    tryExchange(frameOfCall({Function::dieBySignal, {driver::pack(signal)}}));
    posix::dieBySignal(signal);
  }

  /// Connects the calling flow and waits for its turn; the Mac's answer.
  Datum enter(const Datum& greeting) {
    flowDescriptor = connectToSocket(path_);
    if (flowDescriptor < 0) waitForEnd();
    const bool isRefused = flowDescriptor < 0 && errno == EACCES;
    if (isRefused || (flowDescriptor >= 0 && isAnotherUsers(flowDescriptor))) {
      failWithoutMac("the simulated Mac at " + path_ + " is another user's");
    }
    if (flowDescriptor < 0) failWithoutMac("no simulated Mac at " + path_ + howToStart);
    auto answer = tryExchange(greeting);
    if (!answer) failGone();
    return std::move(*answer);
  }

  void join(const Datum& greeting) { pid_ = driver::unpack<platform::Pid>(enter(greeting)); }

 private:
  static Datum frameOfCall(platform::Call call) {
    Datum::List frame;
    frame.reserve(2);
    frame.push_back(driver::pack(call.function));
    frame.emplace_back(std::move(call.arguments));
    return Datum(std::move(frame));
  }

  static std::optional<Datum> tryExchange(const Datum& message) {
    if (!writeFrame(flowDescriptor, message)) return std::nullopt;
    return readFrame(flowDescriptor);
  }

  /// That nobody answers is no failure: the process dies in any case.
  static Datum callInLastAct(platform::Call call) {
    auto answer = tryExchange(frameOfCall(std::move(call)));
    return answer ? std::move(*answer) : driver::pack(callWithoutMac);
  }

  void noteOutput(const platform::Call& call) {
    const auto bytes = driver::unpack<std::string>(call.arguments.at(0));
    if (!bytes.empty()) lineOpen_ = bytes.back() != '\n';
  }

  /// From here on the Mac takes no more calls of the process's other flows.
  void beginEnd() {
    endsProcess = true;
    isEnding_ = true;
  }

  /// In a process that is ending, all flows but the one that ends it wait here for that end: that
  /// the Mac does not know them any more is no failure, and the last line has been written.
  void waitForEnd() const {
    while (isEnding_ && !endsProcess) pause();
  }

  [[noreturn]] void failGone() const {
    waitForEnd();
    failWithoutMac("the simulated Mac at " + path_ + " has gone");
  }

  std::string path_;
  platform::Pid pid_ = 0;
  std::atomic<bool> lineOpen_ = false;
  std::atomic<bool> isEnding_ = false;
};

std::vector<std::string> ownEnvironment() {
  std::vector<std::string> variables;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    variables.emplace_back(*variable);
  }
  return variables;
}

/// The command line, as the system keeps it.
std::vector<std::string> ownArguments() {
  std::ifstream file("/proc/self/cmdline", std::ios::binary);
  std::vector<std::string> arguments;
  for (std::string argument; std::getline(file, argument, '\0');) arguments.push_back(argument);
  return arguments;
}

platform::Channel* joinMac(const std::string& socketPath) {
  auto channel = std::make_unique<JoinedChannel>(socketPath);
  channel->join(Datum(Datum::List{Datum(std::string("driver")), driver::pack(ownArguments()),
                                  driver::pack(ownEnvironment())}));
  return channel.release();
}

}  // namespace

platform::Channel& ownChannel() {
  // Never destroyed: the end of the process needs it.
  static platform::Channel* const own = []() -> platform::Channel* {
    const char* socket = std::getenv("SIMULATED_MAC");
    if (socket == nullptr || *socket == '\0') return new AbsentChannel();
    return joinMac(socket);
  }();
  return *own;
}

}  // namespace simulated
