#pragma once

#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "simulator/desktop.h"
#include "simulator/scheduler.h"

namespace simulator {

/// The flows of several processes on one desktop: takes their calls, and says who goes on with
/// which answer, and by that how far time moves.
class Turns {
 public:
  using Flow = Scheduler::Flow;

  /// What a run does when nobody waits for a time: an open one stands still until something comes
  /// from outside, a closed one goes to the next thing that is scripted.
  enum class Run { open, closed };

  struct Woken {
    Flow flow = 0;
    driver::Datum answer;
  };

  /// Says whether time may move now. Without it, it may whenever nobody is running.
  using MayMove = std::function<bool()>;
  void setMayMove(MayMove mayMove) { mayMove_ = std::move(mayMove); }

  /// The desktop outlives this object.
  Turns(Desktop& desktop, Scheduler::Time time, Run run);

  /// The first flow of a client of the desktop joins and waits for its turn, with `answer`.
  Flow join(std::size_t client, driver::Datum answer);

  /// The same for one that is running.
  Flow joinRunning(std::size_t client);

  /// A further flow of a client arrives, which one of its flows has announced by a call of
  /// `startFlow`; it waits for its turn. False when nobody has.
  bool arrive(std::size_t client, Flow flow);

  /// A flow joins that makes no calls: it waits until `wait` says.
  Flow joinWatcher();

  /// The flow waits for `answer` until `due`.
  void wait(Flow flow, driver::Datum answer, Microseconds due);

  /// Whether what a watcher waits for has come, or its time is over: its answer then.
  using Ask = std::function<std::optional<driver::Datum>()>;

  /// The watcher waits for an answer, for which it asks whenever something may have happened, and
  /// at the deadline.
  void await(Flow flow, Microseconds deadline, Ask ask);

  /// The flow waits for the answer of a call that the desktop has given by itself, at `since`.
  void awaitAnswer(Flow flow, platform::Call call, Answer answer, Microseconds since);

  /// A flow makes a call. Its answer, if the flow goes on at once; otherwise it waits.
  std::optional<driver::Datum> call(Flow flow, platform::Call call);

  /// Who goes on next. In virtual time that moves the clock; in real time `now` is the present.
  /// `preferred` goes before others that could go on as well. None when nobody can, as yet.
  std::optional<Woken> wake(Microseconds now, std::optional<Flow> preferred = std::nullopt);

  /// In virtual time nobody goes on any more, and no more time passes, once `isOver` says so.
  void stopWhen(std::function<bool()> isOver) { isOver_ = std::move(isOver); }

  /// A client meets a fault: its flows have gone, and a last one has joined, which is running.
  Flow joinLastAct(std::size_t client);

  /// The flow has gone. Idempotent.
  void leave(Flow flow);

  /// In virtual time the clock goes no further than this by itself; none: as far as it may.
  void holdAt(std::optional<Microseconds> latest) { latest_ = latest; }

  /// The client has gone, with all its flows and those that it has only announced. Idempotent.
  void leaveAll(std::size_t client);

  /// The next instant at which `wake` may have news, if nothing comes from outside.
  std::optional<Microseconds> nextInstant() const;

  const Scheduler& scheduler() const { return scheduler_; }

 private:
  static constexpr std::size_t none = static_cast<std::size_t>(-1);  // of a watcher

  struct State {
    std::size_t client = none;
    std::size_t index = 0;                // among the flows of its client
    std::optional<platform::Call> call;   // that waits for something to happen
    Ask ask;                              // of a watcher that waits for something to happen
    Microseconds since = 0;               // when that was made
    std::optional<driver::Datum> answer;  // that it waits for
    bool announced = false;               // it has not arrived yet
  };

  Flow add(std::size_t client);
  std::optional<driver::Datum> settle(Flow flow, platform::Call call, Answer answer);
  std::optional<driver::Datum> startFlow(Flow parent, const platform::Call& call);
  void retryBlocked();
  std::optional<Microseconds> awaitedLanding() const;
  void endFlows(std::size_t client, std::optional<Flow> except);

  Desktop& desktop_;
  Scheduler scheduler_;
  Run run_;
  std::optional<Microseconds> latest_;
  std::map<Flow, State> states_;
  MayMove mayMove_;
  std::function<bool()> isOver_ = [] { return false; };
};

}  // namespace simulator
