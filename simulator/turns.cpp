#include "simulator/turns.h"

#include <algorithm>
#include <vector>

namespace simulator {

using driver::Datum;
using platform::Call;
using platform::Function;

Turns::Turns(Desktop& desktop, Scheduler::Time time, Run run)
    : desktop_(desktop), scheduler_(time), run_(run) {}

Turns::Flow Turns::add(std::size_t client) {
  const Flow flow = scheduler_.join(Scheduler::Kind::process);
  State& state = states_[flow];
  state.client = client;
  state.index =
      static_cast<std::size_t>(std::count_if(states_.begin(), states_.end(), [&](const auto& each) {
        return each.second.client == client && each.first != flow;
      }));
  return flow;
}

Turns::Flow Turns::join(std::size_t client, Datum answer) {
  const Flow flow = add(client);
  wait(flow, std::move(answer), desktop_.mac().now);
  return flow;
}

Turns::Flow Turns::joinRunning(std::size_t client) {
  const Flow flow = add(client);
  scheduler_.run(flow);
  return flow;
}

bool Turns::arrive(std::size_t client, Flow flow) {
  const auto found = states_.find(flow);
  if (found == states_.end() || found->second.client != client || !found->second.announced) {
    return false;
  }
  found->second.announced = false;
  wait(flow, Datum(), desktop_.mac().now);
  return true;
}

Turns::Flow Turns::joinWatcher() { return scheduler_.join(Scheduler::Kind::watcher); }

void Turns::wait(Flow flow, Datum answer, Microseconds due) {
  states_[flow].answer = std::move(answer);
  scheduler_.wait(flow, due);
}

void Turns::await(Flow flow, Microseconds deadline, Ask ask) {
  states_[flow].ask = std::move(ask);
  scheduler_.block(flow, {deadline, std::nullopt});
}

/// The new flow counts as running until it arrives, so that time does not run away from it.
std::optional<Datum> Turns::startFlow(Flow parent, const Call& call) {
  const std::size_t client = states_.at(parent).client;
  desktop_.handle(client, call, states_.at(parent).index);
  const Flow flow = add(client);
  states_.at(flow).announced = true;
  scheduler_.run(flow);
  return driver::pack(flow);
}

std::optional<Datum> Turns::call(Flow flow, Call call) {
  if (call.function == Function::startFlow) return startFlow(flow, call);
  const State& state = states_.at(flow);
  const bool isOutside = call.function == Function::leaveDesktop;
  const bool returns = call.function == Function::returnToDesktop;
  const bool ends = call.function == Function::exit || call.function == Function::dieBySignal;
  Answer answer = desktop_.handle(state.client, call, state.index);
  if (ends) endFlows(state.client, flow);
  if (isOutside) scheduler_.goOutside(flow);
  // Who was outside comes back as a flow that has its turn like any other: it might run beside one
  // that was given a turn meanwhile.
  if (returns) {
    wait(flow, std::move(answer.value), desktop_.mac().now);
    return std::nullopt;
  }
  return settle(flow, std::move(call), std::move(answer));
}

void Turns::awaitAnswer(Flow flow, Call call, Answer answer, Microseconds since) {
  if (answer.pending) {
    State& state = states_.at(flow);
    state.call = std::move(call);
    state.since = since;
    scheduler_.block(flow, {answer.deadline, answer.roundDeadline});
    return;
  }
  wait(flow, std::move(answer.value), since + answer.delay);
}

/// Lets the flow wait for an answer that is not due yet.
std::optional<Datum> Turns::settle(Flow flow, Call call, Answer answer) {
  // What takes no time moves no clock, and nobody else gets a turn: calls are many.
  if (!answer.pending && answer.delay == 0) return std::move(answer.value);
  awaitAnswer(flow, std::move(call), std::move(answer), desktop_.mac().now);
  return std::nullopt;
}

/// Asks again for what blocked flows wait for.
void Turns::retryBlocked() {
  std::vector<Flow> flows;
  for (const auto& [flow, limits] : scheduler_.blocked()) flows.push_back(flow);
  for (const Flow flow : flows) {
    State& state = states_.at(flow);
    if (state.ask) {
      if (auto given = state.ask()) {
        state.ask = nullptr;
        wait(flow, std::move(*given), desktop_.mac().now);
      }
      continue;
    }
    if (!state.call) continue;
    Answer answer = desktop_.retry(state.client, *state.call, state.since, state.index);
    if (answer.pending) {
      scheduler_.block(flow, {answer.deadline, answer.roundDeadline});
      continue;
    }
    state.call.reset();
    wait(flow, std::move(answer.value), desktop_.mac().now + answer.delay);
  }
}

std::optional<Turns::Woken> Turns::wake(Microseconds now, std::optional<Flow> preferred) {
  const bool isReal = scheduler_.time() == Scheduler::Time::real;
  while (scheduler_.mayWake()) {
    // Whatever happened since may be what somebody waits for. Nobody keeps a list of who waits for
    // what: that would be forgotten in one place, and a forgotten one hangs.
    retryBlocked();
    const Microseconds present = isReal ? now : desktop_.mac().now;
    if (const auto flow = scheduler_.wake(present, preferred)) {
      return Woken{*flow, *std::exchange(states_.at(*flow).answer, std::nullopt)};
    }
    if (isReal) return std::nullopt;
    const auto next = nextInstant();
    if (!next || (latest_ && *next > *latest_)) return std::nullopt;
    if (mayMove_ && *next > desktop_.mac().now && !mayMove_()) return std::nullopt;
    desktop_.advanceTo(*next);
    if (isOver_()) return std::nullopt;
  }
  return std::nullopt;
}

/// A write or a paste that lands, which nobody is told of: it may be what a watcher waits for.
std::optional<Microseconds> Turns::awaitedLanding() const {
  const bool isAwaited = std::any_of(states_.begin(), states_.end(),
                                     [](const auto& each) { return each.second.ask != nullptr; });
  return isAwaited ? desktop_.nextLanding() : std::nullopt;
}

std::optional<Microseconds> Turns::nextInstant() const {
  const auto due = scheduler_.nextDue();
  const auto own = desktop_.nextOwn();
  const auto round = scheduler_.nextRound();
  const bool isReal = scheduler_.time() == Scheduler::Time::real;
  if (due || isReal) return earliest({due, own, round, awaitedLanding()});
  // An open run stands still for a script alone: its next client is still to come.
  if (run_ == Run::open) return std::nullopt;
  const auto ownInRun = desktop_.nextOwnInRun();
  if (ownInRun) return earliest({ownInRun, round});
  // When nothing happens any more, and somebody only makes rounds, the run ends soon.
  return round && *round <= desktop_.mac().lastNews + Desktop::quietMax ? round : std::nullopt;
}

void Turns::leave(Flow flow) {
  scheduler_.leave(flow);
  states_.erase(flow);
}

Turns::Flow Turns::joinLastAct(std::size_t client) {
  endFlows(client, std::nullopt);
  return joinRunning(client);
}

void Turns::leaveAll(std::size_t client) { endFlows(client, std::nullopt); }

/// A process that ends takes its flows with it.
void Turns::endFlows(std::size_t client, std::optional<Flow> except) {
  std::vector<Flow> ended;
  for (const auto& [flow, state] : states_) {
    if (flow != except && state.client == client) ended.push_back(flow);
  }
  for (const Flow flow : ended) leave(flow);
}

}  // namespace simulator
