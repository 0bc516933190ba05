#include "simulator/desktop.h"

#include <algorithm>
#include <utility>

#include "simulator/calls/calls.h"
#include "simulator/chance.h"
#include "simulator/departure.h"
#include "simulator/input/posted_pointer.h"
#include "simulator/input/taps.h"
#include "simulator/mac/datum_text.h"
#include "simulator/mac/sharing_streams.h"
#include "simulator/rules/left_behind.h"
#include "simulator/script.h"
#include "simulator/text/happenings.h"
#include "simulator/text/parse.h"
#include "simulator/text/reactions.h"
#include "simulator/world/reactions.h"

namespace simulator {

using platform::Call;

namespace {

/// Above the largest process id a host can have, so that nobody can signal a stranger.
constexpr Pid firstClientPid = 5'000'000;

/// A Mac that serves for days forgets its oldest calls.
constexpr std::size_t traceEntriesMax = 200'000;

/// The variables that a run of the driver asks for begin so.
bool isHeeded(const std::string& name) {
  return name.starts_with("CU_") || name.starts_with("ZENTROVE_");
}

/// What happens while this lives is done by a process.
class Acting {
 public:
  Acting(World& world, Pid pid) : world_(world), before_(world.actor) { world.actor = pid; }
  ~Acting() { world_.actor = before_; }
  Acting(const Acting&) = delete;
  Acting& operator=(const Acting&) = delete;

 private:
  World& world_;
  Pid before_;
};

/// What happens while this lives does so again and again, for ever: that is no news.
class Recurring {
 public:
  Recurring(Mac& mac, bool recurs) : mac_(mac), recurs_(recurs), lastNews_(mac.lastNews) {
    mac.world.recurring = recurs;
  }
  ~Recurring() {
    mac_.world.recurring = false;
    if (recurs_) mac_.lastNews = lastNews_;
  }
  Recurring(const Recurring&) = delete;
  Recurring& operator=(const Recurring&) = delete;

 private:
  Mac& mac_;
  bool recurs_;
  Microseconds lastNews_;
};

/// What follows when something has been done to the Mac.
void goOn(Mac& mac) {
  letWaitingInputGoOn(mac);
  noticeClosedWindows(mac);
}

/// The world in which a waiting fault is read again: its application may have quit since, and the
/// elements it names may have gone.
World worldOfFaults(World world) {
  world.resumption.emplace();
  for (Application& each : world.applications) each.running = true;
  return world;
}

std::string endOf(const Client& client) {
  if (client.diedBySignal) return "signal " + std::to_string(*client.diedBySignal);
  return client.exited ? "status " + std::to_string(client.status) : "gone, without a word";
}

}  // namespace

Desktop::Desktop(World world, const std::vector<Fault>& faults)
    : mac_{std::move(world), 0, {}, 0, {}} {
  for (const Fault& fault : faults) addFault(fault);
  if (mac_.world.resumption) {
    resume();
    return;
  }
  if (mac_.world.seed) chance_.emplace(*mac_.world.seed);
  settleTimes(mac_.world);
  advanceTo(0);  // what the script says of time 0 has happened when the first process joins
}

/// Goes on where another Mac was when its world was written. What is due by now happens when the
/// clock is asked to go on: it had not happened then.
void Desktop::resume() {
  Resumption with = *std::exchange(mac_.world.resumption, std::nullopt);
  mac_.now = mac_.world.present;
  mac_.numbers = with.numbers;
  mac_.tapLine.lastSerial = with.lastSerial;
  mac_.lastNews = with.lastNews;
  mac_.comingLock = with.comingLock;
  mac_.screensChanged = with.screensChanged;
  mac_.killed = std::move(with.killed);
  mac_.clients.resize(with.processes);  // all of them forgotten
  rules_.resize(with.processes);
  chance_ = with.chance;
  if (with.faults.empty()) return;
  const World world = worldOfFaults(mac_.world);
  for (const WaitingFault& each : with.faults) {
    faults_.push_back({parseFault(each.text, world), each.counted});
  }
}

std::size_t Desktop::join(std::vector<std::string> arguments,
                          std::map<std::string, std::string> environment) {
  const std::size_t index = mac_.clients.size();
  auto client = std::make_unique<Client>();
  client->pid = pidOf(index);
  client->arguments = std::move(arguments);
  client->environment = std::move(environment);
  mac_.world.processes.insert(client->pid);
  rules_.push_back(std::make_unique<Rules>(mac_, *client));
  tellOfJoining(*client);
  mac_.clients.push_back(std::move(client));
  return index;
}

void Desktop::leave(std::size_t index) {
  Client& client = *mac_.clients[index];
  const Acting acting(mac_.world, client.pid);
  endWithProcess(mac_, client);
  if (!std::exchange(client.left, true)) tellOfEnd(client);
  // Who may post nothing more leaves what is down, also when it dies of a reader that has gone.
  const bool isKilled = !client.exited && !rules_[index]->inputWasEnded();
  if (isKilled && holdsAnything(mac_, client.pid)) mac_.killed.insert(client.pid);
  rules_[index]->finish(violations_);
  tellOfViolations(client.pid);
}

void Desktop::forget(std::size_t client) {
  rules_[client].reset();
  mac_.clients[client].reset();
}

Pid Desktop::pidOf(std::size_t client) { return firstClientPid + static_cast<Pid>(client); }

const Fault* Desktop::strike(platform::Function function) {
  const Fault* struck = nullptr;
  for (ArmedFault& armed : faults_) {
    const Fault& fault = armed.fault;
    if (fault.function && *fault.function != function) continue;
    ++armed.counted;
    const bool strikes =
        fault.onwards ? armed.counted >= fault.occurrence : armed.counted == fault.occurrence;
    if (strikes) struck = &fault;
  }
  return struck;
}

Answer Desktop::handle(std::size_t clientIndex, const Call& call, std::size_t flow) {
  Client& client = *mac_.clients[clientIndex];
  const Acting acting(mac_.world, client.pid);
  const Fault* fault = strike(call.function);
  const Outcome* outcome = fault == nullptr ? nullptr : &fault->outcome;
  if (fault != nullptr) tellOfStrike(*fault, call.function);
  // Before the rules look at the world: it is not the call that did it.
  if (outcome != nullptr && outcome->kind == Outcome::Kind::happening) {
    happen(outcome->happening);
  }
  rules_[clientIndex]->before(call, flow, violations_);
  tellOfViolations(client.pid);
  std::optional<Answer> given;
  if (outcome != nullptr) given = faultyAnswer(call, *outcome);
  Answer result = given ? std::move(*given) : answer(mac_, client, call, mac_.now);
  if (outcome != nullptr) result.delay += delayOf(*outcome);
  if (chance_) result.delay += chanceDelay(*chance_, call.function);
  // The platform waits no longer, whatever the application has done by then.
  auto none = result.delay >= messagingTimeout ? answerOfHanging(call) : std::nullopt;
  if (none) result = std::move(*none);
  if (result.pending) return result;
  return conclude(clientIndex, call, std::move(result), outcome != nullptr, flow);
}

Answer Desktop::retry(std::size_t clientIndex, const Call& call, Microseconds since,
                      std::size_t flow) {
  const Acting acting(mac_.world, mac_.clients[clientIndex]->pid);
  rules_[clientIndex]->look();
  Answer result = answer(mac_, *mac_.clients[clientIndex], call, since);
  if (result.pending) return result;
  return conclude(clientIndex, call, std::move(result), false, flow);
}

/// What follows the answer of a call, whenever it comes.
Answer Desktop::conclude(std::size_t clientIndex, const Call& call, Answer result, bool faulty,
                         std::size_t flow) {
  goOn(mac_);
  rules_[clientIndex]->after(call, result, faulty, flow, violations_);
  tellOfViolations(mac_.clients[clientIndex]->pid);
  if (keepsTrace_) {
    // Half at a time: to drop them one by one would move all others each time.
    if (trace_.size() == traceEntriesMax) trace_.forget(traceEntriesMax / 2);
    trace_.add(mac_.now, clientIndex, call, result.value, faulty);
  }
  if (mac_.clients[clientIndex]->exited) leave(clientIndex);
  return result;
}

void Desktop::advanceTo(Microseconds time) {
  for (auto own = nextOwn(); own && *own <= time; own = nextOwn()) {
    passTo(*own);
    // A tap that has been too slow is disabled first, the login window shows, and what follows from
    // before takes place: what the script says of the same time meets a Mac that has gone on.
    if (nextTapDeadline(mac_) == own) {
      expireTaps(mac_);
    } else if (nextLock() == own) {
      showLock();
    } else if (nextReaction() == own) {
      letReactionTakePlace();
    } else {
      happenByScript();
    }
  }
  passTo(time);
}

/// The clock moves on, with what happens by itself in applications.
void Desktop::passTo(Microseconds time) {
  if (time > mac_.now) {
    for (std::size_t i = 0; i < rules_.size(); ++i) {
      if (!rules_[i]) continue;
      rules_[i]->beforeTimePasses(violations_);
      tellOfViolations(pidOf(i));
    }
  }
  passTimeTo(mac_, std::max(mac_.now, time));
}

void Desktop::happenByScript() {
  const Scripted now = mac_.world.script[scripted_];
  const bool ends = !now.every || now.times == 1;
  if (ends) {
    ++scripted_;
  } else {
    putAgain(mac_.world, scripted_);
  }
  const Recurring recurring(mac_, now.every && !now.times);
  happen(now.happening);
}

/// A reaction that was to follow later takes place. What it does is its cause's doing.
void Desktop::letReactionTakePlace() {
  const DueReaction& first = mac_.world.due.front();
  const Acting acting(mac_.world, first.actor);
  const Recurring recurring(mac_, first.recurring);
  SettledReaction settled = settleReaction(mac_.world);
  goOn(mac_);
  enter(mac_, {.kind = JournalEntry::Kind::landing,
               .target = settled.due.pid,
               .window = settled.element ? settled.element->window : 0,
               .what = reactionText(settled.due.reaction, &mac_.world),
               .landed = settled.landed,
               .outcome = std::move(settled.outcome),
               .element = std::move(settled.element)});
}

void Desktop::showLock() {
  const Pid caller = mac_.comingLock->caller;
  mac_.comingLock.reset();
  mac_.world.session.locked = true;
  const Acting acting(mac_.world, caller);
  enter(mac_, {.kind = JournalEntry::Kind::screen, .target = caller, .what = "locked"});
}

void Desktop::happen(const Happening& happening) {
  const Acting nobody(mac_.world, 0);
  mac_.arrived.clear();
  simulator::happen(mac_, happening);
  goOn(mac_);
  std::string outcome;
  for (const std::string& each : mac_.arrived) outcome += (outcome.empty() ? "" : "; ") + each;
  enter(mac_, {.kind = JournalEntry::Kind::happening,
               .target = happening.pid,
               .what = happeningText(happening, &mac_.world),
               .outcome = std::move(outcome)});
}

void Desktop::tellOfJoining(const Client& client) {
  JournalEntry entry{.kind = JournalEntry::Kind::process, .pid = client.pid, .what = "joined"};
  entry.arguments = shownArguments(client);
  for (const auto& [name, value] : client.environment) {
    if (isHeeded(name)) entry.variables.push_back(name + "=" + value);
  }
  enter(mac_, std::move(entry));
}

void Desktop::tellOfEnd(const Client& client) {
  enter(mac_, {.kind = JournalEntry::Kind::process,
               .pid = client.pid,
               .what = "ended",
               .outcome = endOf(client)});
}

void Desktop::tellOfStrike(const Fault& fault, platform::Function function) {
  enter(mac_, {.kind = JournalEntry::Kind::fault,
               .what = std::string(platform::nameOf(function)),
               .outcome = faultText(fault)});
}

/// Says of each rule that was broken since that it was broken now.
void Desktop::tellOfViolations(Pid pid) {
  for (; violationsTold_ < violations_.size(); ++violationsTold_) {
    enter(
        mac_,
        {.kind = JournalEntry::Kind::violation, .pid = pid, .what = violations_[violationsTold_]});
  }
}

void Desktop::addFault(const Fault& fault) { faults_.push_back({fault, 0}); }

std::optional<Microseconds> Desktop::nextOwn() const {
  return earliest({nextScripted(), nextReaction(), nextTapDeadline(mac_), nextLock()});
}

std::optional<Microseconds> Desktop::nextOwnInRun() const {
  const auto own = nextOwn();
  const bool ends = own && hasOnlyRecurring() && *own > mac_.lastNews + quietMax;
  return ends ? std::nullopt : own;
}

bool Desktop::hasOnlyRecurring() const {
  if (nextTapDeadline(mac_) || nextLock()) return false;
  const auto& script = mac_.world.script;
  const auto& due = mac_.world.due;
  return std::all_of(script.begin() + static_cast<std::ptrdiff_t>(scripted_), script.end(),
                     [](const Scripted& each) { return each.every && !each.times; }) &&
         std::all_of(due.begin(), due.end(),
                     [](const DueReaction& each) { return each.recurring; });
}

std::optional<Microseconds> Desktop::nextReaction() const {
  if (mac_.world.due.empty()) return std::nullopt;
  return mac_.world.due.front().due;
}

std::optional<Microseconds> Desktop::nextLanding() const {
  if (mac_.world.pending.empty()) return std::nullopt;
  return mac_.world.pending.front().due;
}

std::optional<Microseconds> Desktop::nextLock() const {
  if (!mac_.comingLock) return std::nullopt;
  return mac_.comingLock->due;
}

std::optional<Microseconds> Desktop::nextScripted() const {
  if (scripted_ >= mac_.world.script.size()) return std::nullopt;
  return mac_.world.script[scripted_].at;
}

std::string traceLine(const TraceEntry& entry) {
  std::string line =
      milliseconds(entry.at) + " ms " + std::to_string(Desktop::pidOf(entry.client)) + " ";
  line += platform::nameOf(entry.call.function);
  for (const auto& argument : entry.call.arguments) line += " " + datumText(argument);
  line += " -> " + datumText(entry.answer);
  return entry.faulty ? line + " (fault)" : line;
}

}  // namespace simulator
