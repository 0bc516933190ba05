#include <map>
#include <memory>
#include <optional>

#include "main/dispatcher.h"
#include "platform/simulated/channel.h"
#include "platform/simulated/process_state.h"
#include "simulator/turns.h"
#include "tests/support/channels.h"
#include "tests/support/fiber.h"

namespace testing_support {

using driver::Datum;
using platform::Call;
using platform::Function;
using simulator::Turns;

namespace {

/// Thrown in every flow of a process that ends. Nothing between there and the flow's root catches
/// it.
struct Exited {};

/// A process inside this one. Its main flow is who made it, the others are fibers: each goes on
/// only when it is its turn on the simulated Mac.
class DirectChannel : public platform::Channel {
 public:
  DirectChannel(simulator::Desktop& desktop, std::size_t client, const Schedule& schedule)
      : desktop_(desktop), client_(client), schedule_(schedule) {}

  Datum call(Call call) override {
    if (turns_) return callInTurn(std::move(call));
    const simulator::Microseconds since = desktop_.mac().now;
    simulator::Answer answer = desktop_.handle(client_, call);
    if (killed() && call.function != Function::dieBySignal) endWith(statusOfDeath());
    if (isToldToEnd()) return goOnBesideTheEnd(std::move(call), std::move(answer), since);
    if (answer.pending) return waitAlone(call, answer);
    passTime(since + answer.delay);
    if (isToldToEnd()) return goOnBesideTheEnd(std::move(call), std::move(answer), since);
    return std::move(answer.value);
  }

  platform::Pid ownPid() const override { return desktop_.client(client_).pid; }

  std::uintptr_t ownFlow() const override { return turn_ - mainFlow_; }

  void startFlow(std::function<void()> body) override {
    if (!turns_) beginTurns();
    const auto flow = driver::unpack<Turns::Flow>(call({Function::startFlow, {}}));
    turns_->arrive(client_, flow);
    flows_.try_emplace(flow, [this, flow, body = std::move(body)] { runFlow(flow, body); });
  }

  // Signals are happenings of the world.
  void watchSignals(const std::vector<int>& /*numbers*/) override {}

  void awaitEndingSignal(const std::vector<int>& numbers,
                         std::function<void(int)> handler) override {
    desktop_.mac().clients[client_]->endingSignals = {numbers.begin(), numbers.end()};
    endingHandler_ = std::move(handler);
  }

  bool keepsOutput() const override { return true; }

  void exit(int status) override {
    call({Function::exit, {driver::pack(status)}});
    endWith(status);
  }

  void dieBySignal(int signal) override {
    call({Function::dieBySignal, {driver::pack(signal)}});
    endWith(statusOfDeath());
  }

  /// The main flow has ended: the others end with it.
  void endOthers() {
    finish(0);
    for (auto& [flow, fiber] : flows_) {
      if (!fiber.isOver()) fiber.resume();
    }
  }

  int status() const { return *status_; }

 private:
  /// From now on there may be several flows.
  void beginTurns() {
    turns_ = std::make_unique<Turns>(desktop_, simulator::Scheduler::Time::virtualTime,
                                     Turns::Run::closed);
    turns_->stopWhen([this] { return killed(); });
    turn_ = mainFlow_ = turns_->joinRunning(client_);
  }

  bool killed() const { return desktop_.client(client_).diedBySignal.has_value(); }
  int statusOfDeath() const { return 128 + *desktop_.client(client_).diedBySignal; }

  [[noreturn]] void endWith(int status) {
    finish(status);
    throw Exited{};
  }

  /// The process has ended, unless it had ended before. Each flow learns so when it goes on.
  void finish(int status) {
    if (!status_) status_ = status;
  }

  bool isToldToEnd() const {
    const simulator::Client& client = desktop_.client(client_);
    return client.told && !client.exited;
  }

  /// Lets time pass, up to the instant at which the process is told to end.
  void passTime(simulator::Microseconds until) {
    for (auto own = desktop_.nextOwn(); own && *own <= until; own = desktop_.nextOwn()) {
      desktop_.advanceTo(*own);
      if (killed()) endWith(statusOfDeath());
      if (isToldToEnd()) return;
    }
    desktop_.advanceTo(until);
    if (killed()) endWith(statusOfDeath());
  }

  /// The process has been told to end in the middle of this call. A further flow sees to it, which
  /// goes first; the caller goes on when its answer is due.
  Datum goOnBesideTheEnd(Call call, simulator::Answer answer, simulator::Microseconds since) {
    beginTurns();
    turns_->awaitAnswer(mainFlow_, std::move(call), std::move(answer), since);
    const Turns::Flow flow = turns_->join(client_, Datum());
    const int number = desktop_.client(client_).told->signal;
    flows_.try_emplace(flow,
                       [this, flow, number] { runFlow(flow, [&] { endingHandler_(number); }); });
    passTurn(flow);
    return awaitTurn(mainFlow_);
  }

  /// Waits for something to happen that the call wants, while nothing else of the process is there.
  Datum waitAlone(const Call& call, simulator::Answer answer) {
    const simulator::Microseconds since = desktop_.mac().now;
    while (answer.pending) {
      const auto own = answer.deadline ? desktop_.nextOwn() : desktop_.nextOwnInRun();
      if (!own && !answer.deadline) endWith(stillRunning);
      desktop_.advanceTo(own && answer.deadline ? std::min(*own, *answer.deadline)
                                                : own.value_or(answer.deadline.value_or(0)));
      if (killed()) endWith(statusOfDeath());
      if (isToldToEnd()) return goOnBesideTheEnd(call, std::move(answer), since);
      answer = desktop_.retry(client_, call, since);
    }
    desktop_.advanceTo(desktop_.mac().now + answer.delay);
    return std::move(answer.value);
  }

  Datum callInTurn(Call call) {
    if (status_) throw Exited{};
    const bool isLast = call.function == Function::exit || call.function == Function::dieBySignal;
    const Turns::Flow self = turn_;
    // A flow that is being started arrives before anybody else can go on.
    const bool isStart = call.function == Function::startFlow;
    const auto preferred =
        isLast || isStart ? std::nullopt : schedule_.nextSwitch(self - mainFlow_);
    auto answer = turns_->call(self, std::move(call));
    if (killed() && !isLast) endWith(statusOfDeath());
    if (answer && preferred && *preferred != self - mainFlow_) {
      // The flow is pre-empted: it goes on when it is next.
      turns_->wait(self, *std::exchange(answer, std::nullopt), desktop_.mac().now);
      passTurn(mainFlow_ + *preferred);
    } else if (!answer) {
      passTurn(std::nullopt);
    }
    if (answer) return std::move(*answer);
    return awaitTurn(self);
  }

  /// Until it is its turn, the main flow lets the others go on, and they go back to it.
  Datum awaitTurn(Turns::Flow self) {
    if (self == mainFlow_) {
      while (turn_ != self && !status_) flows_.at(turn_).resume();
    } else if (turn_ != self) {
      flows_.at(self).suspend();
    }
    if (status_) throw Exited{};
    return std::move(answer_);
  }

  void passTurn(std::optional<Turns::Flow> preferred) {
    auto woken = turns_->wake(desktop_.mac().now, preferred);
    if (killed()) return finish(statusOfDeath());
    if (!woken) return finish(stillRunning);
    turn_ = woken->flow;
    answer_ = std::move(woken->answer);
  }

  /// What a fiber does. It is resumed when it is its turn, or the process has ended.
  void runFlow(Turns::Flow flow, const std::function<void()>& body) {
    if (status_) return;
    try {
      body();
      if (status_) return;
      turns_->leave(flow);
      passTurn(std::nullopt);
    } catch (const Exited&) {
    }
  }

  simulator::Desktop& desktop_;
  std::size_t client_;
  Schedule schedule_;
  std::function<void(int)> endingHandler_;

  std::unique_ptr<Turns> turns_;        // once there are several flows
  std::map<Turns::Flow, Fiber> flows_;  // all but the main one
  Turns::Flow mainFlow_ = 0;
  Turns::Flow turn_ = 0;  // whose it is
  Datum answer_;          // for that flow
  std::optional<int> status_;
};

/// The status `body` returns, or ends the process with.
int statusOf(DirectChannel& channel, const std::function<int()>& body) {
  simulated::renewState();
  simulated::setChannel(&channel);
  int status = 0;
  try {
    status = body();
    channel.endOthers();
  } catch (const Exited&) {
    channel.endOthers();
    status = channel.status();
  }
  simulated::renewState();
  simulated::setChannel(nullptr);
  return status;
}

}  // namespace

std::optional<std::size_t> Schedule::nextSwitch(std::size_t caller) {
  const std::size_t call = calls_++;
  if (callers != nullptr) callers->push_back(caller);
  const auto found = switches.find(call);
  if (found == switches.end()) return std::nullopt;
  return found->second;
}

int runDirect(simulator::Desktop& desktop, std::size_t client,
              const std::vector<std::string>& commandLine, const Schedule& schedule) {
  DirectChannel channel(desktop, client, schedule);
  return statusOf(channel, [&] {
    const int status = driver::run(commandLine);
    channel.call({Function::exit, {driver::pack(status)}});
    return status;
  });
}

int runBodyDirect(simulator::Desktop& desktop, std::size_t client,
                  const std::function<void()>& body) {
  DirectChannel channel(desktop, client, {});
  return statusOf(channel, [&] {
    body();
    return 0;
  });
}

}  // namespace testing_support
