#include "main/dispatcher.h"
#include "platform/simulated/channel.h"
#include "tests/support/channels.h"

namespace testing_support {

namespace {

/// Thrown where a process would end. Nothing between there and `runDirect` catches it.
struct Exited {
  int status;
};

class DirectChannel : public platform::Channel {
 public:
  DirectChannel(simulator::Desktop& desktop, std::size_t client)
      : desktop_(desktop), client_(client) {}

  driver::Datum call(platform::Call call) override {
    simulator::Answer answer = desktop_.handle(client_, std::move(call));
    desktop_.advanceTo(desktop_.mac().now + answer.delay);
    return std::move(answer.value);
  }

  bool keepsOutput() const override { return true; }

  void exit(int status) override {
    call({platform::Function::exit, {driver::pack(status)}});
    throw Exited{status};
  }

 private:
  simulator::Desktop& desktop_;
  std::size_t client_;
};

/// The status `body` returns, or ends the process with.
int statusOf(DirectChannel& channel, const std::function<int()>& body) {
  simulated::setChannel(&channel);
  int status = 0;
  try {
    status = body();
  } catch (const Exited& exited) {
    status = exited.status;
  }
  simulated::setChannel(nullptr);
  return status;
}

}  // namespace

int runDirect(simulator::Desktop& desktop, std::size_t client,
              const std::vector<std::string>& commandLine) {
  DirectChannel channel(desktop, client);
  return statusOf(channel, [&] {
    const int status = driver::run(commandLine);
    channel.call({platform::Function::exit, {driver::pack(status)}});
    return status;
  });
}

int runBodyDirect(simulator::Desktop& desktop, std::size_t client,
                  const std::function<void()>& body) {
  DirectChannel channel(desktop, client);
  return statusOf(channel, [&] {
    body();
    return 0;
  });
}

}  // namespace testing_support
