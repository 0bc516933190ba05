#include "tests/soak/processes.h"

#include <algorithm>
#include <deque>
#include <optional>
#include <utility>

#include "simulator/input/happenings.h"
#include "tests/soak/process.h"
#include "tests/support/channels.h"

namespace soak {

using simulator::Turns;

class Processes::Implementation {
 public:
  Implementation(simulator::Desktop& desktop, std::optional<std::uint64_t> seed)
      : desktop_(desktop),
        turns_(desktop, simulator::Scheduler::Time::virtualTime, Turns::Run::closed) {
    driver::exchangeGlobals(nullptr);
    if (seed) chance_.emplace(*seed);
  }

  // Who comes next needs a state again.
  ~Implementation() { simulated::renewState(); }

  void at(Microseconds time, std::function<void()> act) {
    const Turns::Flow flow = turns_.joinWatcher();
    turns_.wait(flow, driver::Datum(), std::max(time, desktop_.mac().now));
    acts_[flow] = std::move(act);
  }

  std::size_t start(const std::vector<std::string>& commandLine,
                    const std::map<std::string, std::string>& environment,
                    std::function<void()> ended) {
    const std::size_t client = desktop_.join(commandLine, environment);
    Entry& entry = entries_.emplace_back();
    entry.process = std::make_unique<Process>(desktop_, turns_, client);
    if (chance_) entry.process->putAsideWhen([this] { return chance_->oneIn(putAsideOneIn); });
    entry.ended = std::move(ended);
    entry.process->begin(commandLine);
    return client;
  }

  void signal(std::size_t client, int number) {
    simulator::Client& process = *desktop_.mac().clients[client];
    const bool isThere = !process.exited && !process.diedBySignal && running(client) != nullptr;
    if (isThere) simulator::signalProcess(desktop_.mac(), process, number);
  }

  void run() {
    for (;;) {
      endKilled();
      auto preferred = startEndings();
      if (!preferred) preferred = flowByChance();
      stopAtNextOwn();
      auto woken = turns_.wake(desktop_.mac().now, preferred);
      if (!woken) break;
      goOn(woken->flow, std::move(woken->answer));
    }
    for (Entry& entry : entries_) end(entry, testing_support::stillRunning);
  }

  int statusOf(std::size_t client) const {
    const auto found = std::find_if(entries_.begin(), entries_.end(), [&](const Entry& entry) {
      return entry.process->client() == client;
    });
    return found->process->status();
  }

 private:
  struct Entry {
    std::unique_ptr<Process> process;
    std::function<void()> ended;
    bool isOver = false;
  };

  Process* running(std::size_t client) {
    for (Entry& entry : entries_) {
      if (!entry.isOver && entry.process->client() == client) return entry.process.get();
    }
    return nullptr;
  }

  void goOn(Turns::Flow flow, driver::Datum answer) {
    if (const auto act = acts_.extract(flow)) {
      turns_.leave(flow);
      act.mapped()();
      return;
    }
    // By index: what a process's end lets begin is added.
    for (std::size_t i = 0; i < entries_.size(); ++i) {
      Process& process = *entries_[i].process;
      if (entries_[i].isOver || !process.has(flow)) continue;
      // The time that passed may have brought its end: that comes first.
      if (process.isToldToEnd() || process.isKilled()) {
        turns_.wait(flow, std::move(answer), desktop_.mac().now);
        return;
      }
      process.giveTurn(flow, std::move(answer));
      if (process.hasEnded()) end(entries_[i], process.status());
      return;
    }
  }

  void end(Entry& entry, int status) {
    if (entry.isOver) return;
    entry.isOver = true;
    entry.process->endWith(status);
    const auto ended = std::exchange(entry.ended, nullptr);
    if (ended) ended();
  }

  void endKilled() {
    for (std::size_t i = 0; i < entries_.size(); ++i) {
      Process& process = *entries_[i].process;
      if (entries_[i].isOver || !process.isKilled()) continue;
      end(entries_[i], 128 + *desktop_.client(process.client()).diedBySignal);
    }
  }

  /// Time does not pass over what happens by itself: it may be that a process is told to end.
  void stopAtNextOwn() {
    const auto own = desktop_.nextOwnInRun();
    if (!own || *own == nextStop_) return;
    nextStop_ = *own;
    at(*own, [] {});
  }

  /// One that goes first.
  std::optional<Turns::Flow> startEndings() {
    std::optional<Turns::Flow> first;
    for (Entry& entry : entries_) {
      if (!entry.isOver && entry.process->isToldToEnd()) first = entry.process->startEnding();
    }
    return first;
  }

  /// One that is to go on if it can, most often.
  std::optional<Turns::Flow> flowByChance() {
    if (!chance_ || chance_->oneIn(4)) return std::nullopt;
    std::vector<Turns::Flow> flows;
    for (const Entry& entry : entries_) {
      if (!entry.isOver) entry.process->addFlows(flows);
    }
    return flows.empty() ? std::nullopt : std::optional(chance_->pick(flows));
  }

  /// A flow is put aside at so many of its calls.
  static constexpr std::size_t putAsideOneIn = 8;

  simulator::Desktop& desktop_;
  Turns turns_;
  std::map<Turns::Flow, std::function<void()>> acts_;
  Microseconds nextStop_ = -1;  // the latest such instant
  std::optional<simulator::Random> chance_;
  std::deque<Entry> entries_;  // what one lets begin as it ends is added
};

Processes::Processes(simulator::Desktop& desktop, std::optional<std::uint64_t> seed)
    : implementation_(std::make_unique<Implementation>(desktop, seed)) {}

Processes::~Processes() = default;

void Processes::at(Microseconds time, std::function<void()> act) {
  implementation_->at(time, std::move(act));
}

std::size_t Processes::start(const std::vector<std::string>& commandLine,
                             const std::map<std::string, std::string>& environment,
                             std::function<void()> ended) {
  return implementation_->start(commandLine, environment, std::move(ended));
}

void Processes::signal(std::size_t client, int number) { implementation_->signal(client, number); }

void Processes::run() { implementation_->run(); }

int Processes::statusOf(std::size_t client) const { return implementation_->statusOf(client); }

}  // namespace soak
