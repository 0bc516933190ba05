#include <algorithm>

#include "simulator/calls/calls.h"

/// How the Mac answers what is about the flows of a process: time, waiting, the main flow's work,
/// standard input and output.
namespace simulator::calls {

using driver::Datum;
using driver::pack;

namespace {

/// When virtual time begins: the first of January 2026, UTC, in seconds since 1970.
constexpr double epochSeconds = 1'767'225'600;

Answer pendingAnswer(std::optional<Microseconds> deadline = std::nullopt,
                     std::optional<Microseconds> roundDeadline = std::nullopt) {
  return {Datum(), 0, true, deadline, roundDeadline};
}

/// The work of a timer that is due, if any, of those that go on for ever or of the others.
std::optional<std::int64_t> takeDueTimer(Client& client, Microseconds now, bool forEver) {
  auto& timers = client.timers;
  auto timer = timers.end();
  for (auto each = timers.begin(); each != timers.end(); ++each) {
    if ((each->left == Timer::forEver) != forEver || each->due > now) continue;
    if (timer == timers.end() || each->due < timer->due) timer = each;
  }
  if (timer == timers.end()) return std::nullopt;
  const std::int64_t work = timer->work;
  timer->due += timer->interval;
  // Rounds that were missed are not made up for.
  while (forEver && timer->due <= now) timer->due += timer->interval;
  if (!forEver && --timer->left == 0) timers.erase(timer);
  return work;
}

/// When the next timer is due, of those that go on for ever or of the others.
std::optional<Microseconds> nextTimer(const Client& client, bool forEver) {
  std::optional<Microseconds> next;
  for (const Timer& timer : client.timers) {
    if ((timer.left == Timer::forEver) == forEver) next = earliest({next, timer.due});
  }
  return next;
}

/// What waits for its reader, who takes nothing: until the deadline, if there is one.
std::optional<Answer> stalledAnswer(const Mac& mac, const Client& client,
                                    const std::optional<std::uint32_t>& limit, Microseconds since) {
  if (!client.readerStalls || client.outputClosed) return std::nullopt;
  if (!limit) return pendingAnswer();
  const Microseconds deadline = since + *limit;
  if (mac.now >= deadline) return Answer{pack(false), 0};
  return pendingAnswer(deadline);
}

/// The journal has what a process writes line by line.
void noteOutput(Mac& mac, Client& client, const std::string& bytes) {
  client.output += bytes;
  client.line += bytes;
  for (auto end = client.line.find('\n'); end != client.line.npos; end = client.line.find('\n')) {
    enter(mac, {.kind = JournalEntry::Kind::reply, .text = client.line.substr(0, end)});
    client.line.erase(0, end + 1);
  }
}

}  // namespace

Answer uptime(Mac& mac, Client& /*client*/, const Arguments& /*arguments*/) {
  return {pack(mac.now * 1000), 0};
}

Answer calendar(Mac& mac, Client& /*client*/, const Arguments& /*arguments*/) {
  return {pack(epochSeconds + static_cast<double>(mac.now) / microsecondsPerSecond), 0};
}

Answer sleep(Mac& /*mac*/, Client& /*client*/, const Arguments& arguments) {
  return {Datum(), arguments.get<std::uint32_t>(0)};
}

// Whoever drives the flows answers these.
Answer startFlow(Mac& /*mac*/, Client& /*client*/, const Arguments& /*arguments*/) { return {}; }

Answer endFlow(Mac& /*mac*/, Client& /*client*/, const Arguments& /*arguments*/) { return {}; }

Answer leaveDesktop(Mac& /*mac*/, Client& /*client*/, const Arguments& /*arguments*/) { return {}; }

Answer returnToDesktop(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  if (arguments.count() > 0 && !arguments.text(0).empty()) {
    enter(mac, {.kind = JournalEntry::Kind::request, .text = arguments.text(0)});
  }
  return {};
}

Answer suspend(Mac& /*mac*/, Client& /*client*/, const Arguments& /*arguments*/) {
  return pendingAnswer();
}

Answer postToMain(Mac& /*mac*/, Client& client, const Arguments& arguments) {
  client.items.push_back(
      {platform::ItemKind::work, arguments.get<std::int64_t>(0), 0, tap::Event{}});
  return {};
}

Answer scheduleOnMain(Mac& mac, Client& client, const Arguments& arguments) {
  const auto interval = arguments.get<std::uint32_t>(1);
  const auto count = arguments.get<std::int64_t>(2);
  if (count < 1) return {};
  client.timers.push_back({arguments.get<std::int64_t>(0), mac.now + interval, interval, count});
  return {};
}

Answer goRounds(Mac& mac, Client& client, const Arguments& arguments) {
  const auto interval = arguments.get<std::uint32_t>(1);
  client.timers.push_back(
      {arguments.get<std::int64_t>(0), mac.now + interval, interval, Timer::forEver});
  return {};
}

Answer awaitRound(Mac& mac, Client& client, const Arguments& arguments) {
  if (client.roundsDone > 0) {
    --client.roundsDone;
    return {pack(true), 0};
  }
  const Microseconds deadline = arguments.since() + arguments.get<std::uint32_t>(0);
  if (mac.now >= deadline) return {pack(false), 0};
  return pendingAnswer(std::nullopt, deadline);
}

Answer signalSemaphore(Mac& /*mac*/, Client& client, const Arguments& arguments) {
  ++client.semaphores[arguments.get<std::int64_t>(0)];
  return {};
}

Answer waitForSemaphore(Mac& mac, Client& client, const Arguments& arguments) {
  const auto limit = arguments.get<std::optional<std::uint32_t>>(1);
  std::int64_t& count = client.semaphores[arguments.get<std::int64_t>(0)];
  if (count > 0) {
    --count;
    return {pack(true), 0};
  }
  if (!limit) return pendingAnswer();
  const Microseconds deadline = arguments.since() + *limit;
  if (mac.now >= deadline) return {pack(false), 0};
  return pendingAnswer(deadline);
}

Answer nextItem(Mac& mac, Client& client, const Arguments& /*arguments*/) {
  // Whoever asks for the next item is back from the last.
  if (std::exchange(client.inRound, false)) ++client.roundsDone;
  const auto itemOf = [](std::int64_t work) {
    return Answer{pack(platform::WireItem{platform::ItemKind::work, work, 0, {}}), 0};
  };
  if (const auto work = takeDueTimer(client, mac.now, false)) return itemOf(*work);
  if (client.items.empty()) {
    const auto round = takeDueTimer(client, mac.now, true);
    if (!round) return pendingAnswer(nextTimer(client, false), nextTimer(client, true));
    client.inRound = true;
    return itemOf(*round);
  }
  const platform::WireItem item = client.items.front();
  client.items.pop_front();
  return {pack(item), 0};
}

Answer writeOutput(Mac& mac, Client& client, const Arguments& arguments) {
  const auto written = arguments.get<bool>(1) && !client.outputClosed;
  std::optional<std::uint32_t> limit;
  if (arguments.count() > 2) limit = arguments.get<std::uint32_t>(2);
  if (auto stalled = stalledAnswer(mac, client, limit, arguments.since())) {
    return *stalled;
  }
  if (written) noteOutput(mac, client, arguments.text(0));
  return {pack(written), 0};
}

Answer acquireOutput(Mac& mac, Client& client, const Arguments& arguments) {
  const auto limit = arguments.get<std::optional<std::uint32_t>>(0);
  if (!client.outputTaken) {
    client.outputTaken = true;
    return {pack(true), 0};
  }
  if (!limit) return pendingAnswer();
  const Microseconds deadline = arguments.since() + *limit;
  if (mac.now >= deadline) return {pack(false), 0};
  return pendingAnswer(deadline);
}

Answer releaseOutput(Mac& /*mac*/, Client& client, const Arguments& /*arguments*/) {
  client.outputTaken = false;
  return {};
}

Answer readLine(Mac& /*mac*/, Client& client, const Arguments& /*arguments*/) {
  const std::size_t end = client.input.find('\n');
  if (end == std::string::npos && !client.inputClosed) return pendingAnswer();
  std::optional<std::string> line;
  if (end != std::string::npos) {
    line = client.input.substr(0, end);
    client.input.erase(0, end + 1);
  } else if (!client.input.empty()) {
    line = std::exchange(client.input, "");
  }
  return {pack(line), 0};
}

Answer readAvailable(Mac& /*mac*/, Client& client, const Arguments& /*arguments*/) {
  if (client.input.empty() && !client.inputClosed) return pendingAnswer();
  return {pack(std::exchange(client.input, "")), 0};
}

}  // namespace simulator::calls
