#include "tests/soak/process.h"

#include <utility>

#include "main/dispatcher.h"

namespace soak {

using driver::Datum;
using platform::Call;
using platform::Function;
using simulator::Turns;

Process::Process(simulator::Desktop& desktop, Turns& turns, std::size_t client)
    : desktop_(desktop),
      turns_(turns),
      client_(client),
      state_(std::make_unique<simulated::ProcessState>()) {}

void Process::begin(std::vector<std::string> commandLine) {
  const Flow flow = turns_.join(client_, Datum());
  startFiber(flow, [this, commandLine = std::move(commandLine)] {
    const int status = driver::run(commandLine);
    call({Function::exit, {driver::pack(status)}});
    end(status);
  });
}

/// The fiber begins when it is given the turn.
void Process::startFiber(Flow flow, std::function<void()> body) {
  flows_.try_emplace(flow, [this, flow, body = std::move(body)] {
    if (status_) return;
    try {
      body();
      if (!status_) turns_.leave(flow);
    } catch (const Ended&) {
    }
  });
}

bool Process::has(Flow flow) const {
  const auto found = flows_.find(flow);
  return found != flows_.end() && !found->second.isOver();
}

void Process::addFlows(std::vector<Flow>& flows) const {
  for (const auto& [flow, fiber] : flows_) {
    if (!fiber.isOver()) flows.push_back(flow);
  }
}

void Process::install() {
  driver::exchangeGlobals(std::move(globals_));
  simulated::exchangeState(std::move(state_));
  simulated::setChannel(this);
}

void Process::remove() {
  simulated::setChannel(nullptr);
  state_ = simulated::exchangeState(nullptr);
  globals_ = driver::exchangeGlobals(nullptr);
}

void Process::giveTurn(Flow flow, Datum answer) {
  install();
  present_ = flow;
  answer_ = std::move(answer);
  flows_.at(flow).resume();
  remove();
}

/// Gives back the turn, and waits for the next.
Datum Process::awaitTurn() {
  flows_.at(present_).suspend();
  if (status_) throw Ended{};
  return std::move(answer_);
}

bool Process::isToldToEnd() const {
  const simulator::Client& client = desktop_.client(client_);
  return client.told && !client.exited && !isEnding_ && !status_;
}

Process::Flow Process::startEnding() {
  isEnding_ = true;
  const Flow flow = turns_.join(client_, Datum());
  const int number = desktop_.client(client_).told->signal;
  startFiber(flow, [this, number] { endingHandler_(number); });
  return flow;
}

bool Process::isKilled() const {
  return !status_ && desktop_.client(client_).diedBySignal.has_value();
}

void Process::endWith(int status) {
  if (!status_) status_ = status;
  for (auto& [flow, fiber] : flows_) {
    if (!fiber.isOver()) giveTurn(flow, Datum());
  }
  turns_.leaveAll(client_);
  desktop_.leave(client_);
  globals_.reset();
  state_.reset();
}

void Process::end(int status) {
  if (!status_) status_ = status;
  throw Ended{};
}

Datum Process::call(Call call) {
  if (status_) throw Ended{};
  const bool isLast = call.function == Function::exit || call.function == Function::dieBySignal;
  const Flow self = present_;
  auto answer = turns_.call(self, std::move(call));
  if (isLast) return answer.value_or(Datum());
  // Who is killed, or told to end, does not go on with the answer.
  if (answer && (isKilled() || isToldToEnd() || isPutAside_())) {
    turns_.wait(self, *std::exchange(answer, std::nullopt), desktop_.mac().now);
  }
  return answer ? std::move(*answer) : awaitTurn();
}

platform::Pid Process::ownPid() const { return desktop_.client(client_).pid; }

void Process::startFlow(std::function<void()> body) {
  if (status_) throw Ended{};
  // A flow that is being started arrives before anybody else can go on.
  const auto flow = driver::unpack<Flow>(*turns_.call(present_, {Function::startFlow, {}}));
  turns_.arrive(client_, flow);
  startFiber(flow, std::move(body));
}

// Signals are happenings of the world.
void Process::watchSignals(const std::vector<int>& /*numbers*/) {}

void Process::awaitEndingSignal(const std::vector<int>& numbers, std::function<void(int)> handler) {
  desktop_.mac().clients[client_]->endingSignals = {numbers.begin(), numbers.end()};
  endingHandler_ = std::move(handler);
}

void Process::exit(int status) {
  call({Function::exit, {driver::pack(status)}});
  end(status);
}

void Process::dieBySignal(int signal) {
  call({Function::dieBySignal, {driver::pack(signal)}});
  end(128 + signal);
}

}  // namespace soak
