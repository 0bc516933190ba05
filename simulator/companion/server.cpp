#include "simulator/companion/server.h"

#include <unistd.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "simulator/companion/about.h"
#include "simulator/companion/control.h"
#include "simulator/companion/failure.h"
#include "simulator/companion/messages.h"
#include "simulator/companion/socket.h"
#include "simulator/mac/json_text.h"

namespace companion {

using driver::Datum;
using driver::MalformedDatum;

namespace {

/// More than any test joins, and fewer than descriptors: who is turned away waits in the socket's
/// queue.
constexpr std::size_t clientsMax = 256;
constexpr Microseconds microsecondsInSecond = 1'000'000;
constexpr Microseconds lookInterval = 500;

}  // namespace

Server::Server(simulator::World world, const ServerSettings& settings)
    : desktop_(std::move(world)),
      turns_(desktop_, settings.time, Turns::Run::open),
      settings_(settings),
      polling_(settings.time),
      start_(std::chrono::steady_clock::now() - std::chrono::microseconds(desktop_.mac().now)) {
  if (settings_.recorder != nullptr) settings_.recorder->update(desktop_);
  if (settings_.heedsProcesses) {
    turns_.setMayMove([this] { return mayMove(); });
  }
}

/// Whoever has asked for something before all slept is heard first.
bool Server::mayMove() {
  looksAgain_ = !below_.areAtRest() || isAnythingWaiting();
  return !looksAgain_;
}

Microseconds Server::elapsed() const {
  const auto duration = std::chrono::steady_clock::now() - start_;
  return std::chrono::duration_cast<std::chrono::microseconds>(duration).count();
}

Microseconds Server::now() const {
  return turns_.scheduler().time() == Scheduler::Time::real ? elapsed() : desktop_.mac().now;
}

void Server::turn(std::vector<pollfd>& own) {
  wakeDue();
  waitForEvents(own);
  dropGone();
  if (settings_.recorder != nullptr) settings_.recorder->update(desktop_);
  tellNews();
}

/// How long virtual time has yet to stand where it is; none when it may not go on, or has nowhere
/// to go.
std::optional<Microseconds> Server::standing() {
  if (!turns_.scheduler().mayWake()) return std::nullopt;  // it is heard of whoever runs
  const auto next = turns_.nextInstant();
  if (next) return pace_.waitFor(desktop_.mac().now, *next, elapsed());
  pace_.rest();
  return std::nullopt;
}

/// Lets virtual time go as far as its pace allows now.
void Server::holdTime() {
  if (pace_.isFree()) {
    turns_.holdAt(std::nullopt);
    return;
  }
  const bool mayGo = standing() == Microseconds{0};
  turns_.holdAt(mayGo ? turns_.nextInstant() : desktop_.mac().now);
}

/// Ends every wait that may end, in order; in virtual time that is what moves the clock.
void Server::wakeDue() {
  desktop_.advanceTo(now());
  looksAgain_ = false;
  holdTime();
  while (const auto woken = turns_.wake(now())) {
    const auto client = std::find_if(clients_.begin(), clients_.end(),
                                     [&](const Client& each) { return each.flow == woken->flow; });
    client->waits = false;
    deliver(*client, woken->answer);
    takeMessages(*client);
    dropGone();
    holdTime();
  }
}

/// Until something is to be done that nobody asks for: none when that may be never.
std::optional<Microseconds> Server::timeToWait() {
  if (looksAgain_) return lookInterval;
  if (turns_.scheduler().time() == Scheduler::Time::virtualTime) {
    return pace_.isFree() ? std::nullopt : standing();
  }
  const auto next = turns_.nextInstant();
  return next ? std::optional(std::max<Microseconds>(*next - now(), 0)) : std::nullopt;
}

/// What may have something to do: the clients in their order, then who wants to become one.
std::vector<pollfd> Server::watched() const {
  std::vector<pollfd> all;
  for (const Client& client : clients_) {
    const bool listens = !client.waits && !client.connection.hasOutput() && !client.ended;
    const int events = (listens ? POLLIN : 0) | (client.connection.hasOutput() ? POLLOUT : 0);
    all.push_back({client.connection.descriptor(), static_cast<short>(events), 0});
  }
  if (clients_.size() < clientsMax) all.push_back({settings_.listeningDescriptor, POLLIN, 0});
  return all;
}

bool Server::isAnythingWaiting() const {
  std::vector<pollfd> all = watched();
  return poll(all.data(), all.size(), 0) > 0;
}

void Server::waitForEvents(std::vector<pollfd>& own) {
  std::vector<pollfd> all = own;
  for (const pollfd& each : watched()) all.push_back(each);

  const auto left = timeToWait();
  const timespec limit = {left.value_or(0) / microsecondsInSecond,
                          left.value_or(0) % microsecondsInSecond * 1000};
  if (ppoll(all.data(), all.size(), left ? &limit : nullptr, nullptr) <= 0) {
    for (pollfd& each : own) each.revents = 0;
    return;
  }
  std::copy_n(all.begin(), own.size(), own.begin());
  std::size_t next = own.size();
  for (Client& client : clients_) {
    const short events = all[next++].revents;
    if (events != 0) attend(client, events);
  }
  if (next < all.size() && all[next].revents != 0) acceptWaiting();
}

void Server::acceptWaiting() {
  while (clients_.size() < clientsMax) {
    Descriptor accepted = acceptFrom(settings_.listeningDescriptor);
    if (accepted.number() < 0) return;
    clients_.emplace_back(std::move(accepted));
  }
}

void Server::attend(Client& client, short events) {
  if ((events & POLLOUT) != 0 && !client.connection.flush()) client.gone = true;
  if ((events & POLLIN) != 0 && !client.connection.receive()) client.ended = true;
  // Whoever has hung up cannot be answered any more.
  if ((events & POLLIN) == 0 && (events & (POLLHUP | POLLERR | POLLNVAL)) != 0) client.gone = true;
  takeMessages(client);
}

/// A process has one call at a time: the next is taken when the last has been answered.
void Server::takeMessages(Client& client) {
  try {
    while (!client.gone && !client.waits && !client.connection.hasOutput()) {
      const auto message = client.connection.next();
      if (!message) {
        client.gone = client.ended;
        return;
      }
      handle(client, *message);
    }
  } catch (const MalformedDatum&) {
    client.gone = true;
  } catch (const std::out_of_range&) {
    client.gone = true;  // a call with too few arguments
  }
}

void Server::handle(Client& client, const Datum& message) {
  const auto parts = driver::unpack<Datum::List>(message);
  if (parts.empty()) throw MalformedDatum();
  desktop_.advanceTo(now());
  if (client.kind == Kind::process || client.kind == Kind::furtherFlow) {
    handleCall(client, parts);
    return;
  }
  const auto greeting = driver::unpack<std::string>(parts[0]);
  if (greeting == "control") {
    handleControl(client, parts);
  } else if (greeting == "driver" && client.kind == Kind::unknown) {
    join(client, parts);
  } else if (greeting == "flow" && client.kind == Kind::unknown) {
    joinFlow(client, parts);
  } else if (greeting == "last act" && client.kind == Kind::unknown) {
    joinLastAct(client, parts);
  } else {
    throw MalformedDatum();
  }
}

void Server::join(Client& client, const Datum::List& parts) {
  if (parts.size() != 3) throw MalformedDatum();
  auto arguments = driver::unpack<std::vector<std::string>>(parts[1]);
  auto environment = variables(driver::unpack<std::vector<std::string>>(parts[2]));
  polling_.count(arguments, desktop_.mac().now);
  client.kind = Kind::process;
  client.member = desktop_.join(std::move(arguments), std::move(environment));
  client.flow = turns_.join(client.member, driver::pack(desktop_.client(client.member).pid));
  client.waits = true;
}

Server::Client& Server::processNamed(const Datum& pid) {
  const auto number = driver::unpack<simulator::Pid>(pid);
  const auto process = std::find_if(clients_.begin(), clients_.end(), [&](const Client& each) {
    return each.kind == Kind::process && desktop_.client(each.member).pid == number;
  });
  if (process == clients_.end()) throw MalformedDatum();
  return *process;
}

/// A further flow of a process. Unless a signal has started it, the process has announced it.
void Server::joinFlow(Client& client, const Datum::List& parts) {
  if (parts.size() != 2 && parts.size() != 3) throw MalformedDatum();
  const std::size_t member = processNamed(parts[1]).member;
  const bool isAnnounced = parts.size() == 3;
  const auto flow =
      isAnnounced ? driver::unpack<Turns::Flow>(parts[2]) : turns_.join(member, Datum());
  if (isAnnounced && !turns_.arrive(member, flow)) throw MalformedDatum();
  client.kind = Kind::furtherFlow;
  client.member = member;
  client.flow = flow;
  client.waits = true;
}

/// A process has met a fault, in the middle of a call perhaps: this speaks for all its flows.
void Server::joinLastAct(Client& client, const Datum::List& parts) {
  if (parts.size() != 2) throw MalformedDatum();
  client.member = processNamed(parts[1]).member;
  client.flow = turns_.joinLastAct(client.member);
  for (Client& each : clients_) {
    if (&each == &client || each.member != client.member) continue;
    if (each.kind != Kind::process && each.kind != Kind::furtherFlow) continue;
    // It goes by itself: the process goes when its last act is over.
    each.kind = Kind::furtherFlow;
    each.flow.reset();
    each.gone = true;
  }
  client.kind = Kind::process;
  deliver(client, Datum());
}

void Server::handleCall(Client& client, const Datum::List& parts) {
  const auto value = turns_.call(*client.flow, callOf(parts));
  client.waits = !value;
  if (value) deliver(client, *value);
}

void Server::handleControl(Client& client, const Datum::List& parts) {
  client.kind = Kind::control;
  const auto words = texts(parts, 1);
  client.known = knownOf(words);
  if (client.known) {
    client.waits = true;
    tellNewsTo(client);
    return;
  }
  const ControlAnswer given = carryOut(words);
  if (given.wait) {
    polling_.startAgain();
    await(client, *given.wait);
    return;
  }
  polling_.count(words, desktop_.mac().now);
  Datum value = datumOf(given);
  if (given.delay == 0) {
    deliver(client, value);
    return;
  }
  if (!client.flow) client.flow = turns_.joinWatcher();
  pace_.allowUntil(now() + given.delay);
  turns_.wait(*client.flow, std::move(value), now() + given.delay);
  client.waits = true;
}

/// What is waited for is looked for whenever something may have happened, and never in between.
void Server::await(Client& client, const Wait& wait) {
  const Microseconds since = now();
  if (!client.flow) client.flow = turns_.joinWatcher();
  client.waits = true;
  turns_.await(*client.flow, since + wait.length, [this, wait, since]() -> std::optional<Datum> {
    const Microseconds present = desktop_.mac().now;
    const bool hasCome = wait.isMet && wait.isMet(desktop_.mac().world);
    if (!hasCome && present < since + wait.length) return std::nullopt;
    return datumOf(answerTo(desktop_, wait, hasCome, since));
  });
}

/// What is about the Mac as a whole is done here, the rest within it.
ControlAnswer Server::carryOut(const std::vector<std::string>& words) {
  if (words == std::vector<std::string>{"stop"}) {
    if (!settings_.canBeStopped) {
      return {false, {failureLine("this Mac ends with the command that it was started for")}, 0};
    }
    stopped_ = true;
    return {true, {simulator::jsonLine({{"ok", true}})}, 0};
  }
  if (words == std::vector<std::string>{"about"}) return about();
  if (!words.empty() && words[0] == "clock") return clock({words.begin() + 1, words.end()});
  return control(desktop_, turns_.scheduler().time(), words);
}

ControlAnswer Server::about() const {
  return {true,
          {simulator::jsonLine({{"now", static_cast<double>(now()) / 1000},
                                {"ok", true},
                                {"pid", getpid()},
                                {"time", timeName(turns_.scheduler().time())},
                                {"world", simulator::textJson(settings_.world)}})},
          0};
}

/// Tells virtual time how fast it may pass, or how fast it does.
ControlAnswer Server::clock(const std::vector<std::string>& words) {
  if (turns_.scheduler().time() == Scheduler::Time::real) {
    return {false, {failureLine(notVirtual)}, 0};
  }
  Microseconds delay = 0;
  try {
    if (words == std::vector<std::string>{"step"}) {
      pace_.stop();
      delay = turns_.nextInstant().value_or(now()) - now();
    } else if (!words.empty()) {
      pace_.tell(words);
    }
  } catch (const Failure& failure) {
    return {false, {failureLine(failure.what())}, 0};
  }
  const auto then = static_cast<double>(now() + delay) / 1000;
  return {
      true, {simulator::jsonLine({{"now", then}, {"ok", true}, {"pace", pace_.json()}})}, delay};
}

/// Whoever watches is told when there is more than he knows.
void Server::tellNews() {
  for (Client& client : clients_) {
    if (!client.known) continue;
    tellNewsTo(client);
    takeMessages(client);
  }
}

void Server::tellNewsTo(Client& client) {
  const Watched watched{desktop_, turns_.scheduler().time(), pace_.json()};
  const std::string stamp = stampOf(watched);
  if (stamp == client.known->stamp) return;
  const ControlAnswer news = newsOf(watched, *client.known);
  client.known.reset();
  client.waits = false;
  deliver(client, Datum(Datum::List{driver::pack(news.ok), driver::pack(news.lines)}));
}

/// What a process is told of is in the record before.
void Server::deliver(Client& client, const Datum& value) {
  if (settings_.recorder != nullptr) settings_.recorder->update(desktop_);
  if (!client.connection.send(value)) client.gone = true;
}

void Server::dropGone() {
  for (auto client = clients_.begin(); client != clients_.end();) {
    if (!client->gone) {
      ++client;
      continue;
    }
    if (client->kind == Kind::process) {
      desktop_.leave(client->member);
      turns_.leaveAll(client->member);
      desktop_.forget(client->member);
    }
    if (client->flow) turns_.leave(*client->flow);
    client = clients_.erase(client);
  }
}

}  // namespace companion
