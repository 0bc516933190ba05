#include "platform/simulated/joined_channel.h"

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <vector>

#include "platform/simulated/absent_channel.h"
#include "platform/simulated/frames.h"
#include "platform/simulated/socket_address.h"

namespace simulated {

using driver::Datum;

namespace {

constexpr const char* howToStart =
    "; \"simulated-mac serve WORLD\" starts one and prints its socket, and \"simulated-mac run "
    "WORLD -- COMMAND\" runs a command with one";

class JoinedChannel : public platform::Channel {
 public:
  JoinedChannel(int descriptor, std::string path)
      : descriptor_(descriptor), path_(std::move(path)) {}

  Datum call(platform::Call call) override {
    const bool endsLine = lineOpen_ && call.function == platform::Function::writeOutput;
    if (call.function == platform::Function::writeOutput) noteOutput(call);
    if (auto answer = tryExchange(frameOfCall(std::move(call)))) return std::move(*answer);
    // A reply that has begun is the run's only one, even when the Mac goes before its line feed.
    if (endsLine) return driver::pack(true);
    failGone();
  }

  bool keepsOutput() const override { return false; }

  void exit(int status) override {
    // The reply has been written: that the Mac has gone meanwhile is no news to the caller.
    tryExchange(frameOfCall({platform::Function::exit, {driver::pack(status)}}));
    std::exit(status);
  }

  void introduce(const Datum& message) {
    if (!tryExchange(message)) failGone();
  }

 private:
  static Datum frameOfCall(platform::Call call) {
    return Datum(Datum::List{driver::pack(call.function), Datum(std::move(call.arguments))});
  }

  std::optional<Datum> tryExchange(const Datum& message) const {
    if (!writeFrame(descriptor_, message)) return std::nullopt;
    return readFrame(descriptor_);
  }

  void noteOutput(const platform::Call& call) {
    const auto bytes = driver::unpack<std::string>(call.arguments.at(0));
    if (!bytes.empty()) lineOpen_ = bytes.back() != '\n';
  }

  [[noreturn]] void failGone() const {
    failWithoutMac("the simulated Mac at " + path_ + " has gone");
  }

  int descriptor_;
  std::string path_;
  bool lineOpen_ = false;
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

}  // namespace

std::unique_ptr<platform::Channel> joinMac(const std::string& socketPath) {
  const int descriptor = connectToSocket(socketPath);
  if (descriptor < 0) failWithoutMac("no simulated Mac at " + socketPath + howToStart);
  auto channel = std::make_unique<JoinedChannel>(descriptor, socketPath);
  channel->introduce(Datum(Datum::List{Datum(std::string("driver")), driver::pack(ownArguments()),
                                       driver::pack(ownEnvironment())}));
  return channel;
}

}  // namespace simulated
