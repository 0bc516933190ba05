#include "simulator/companion/control.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <string_view>

#include "simulator/companion/failure.h"
#include "simulator/companion/trace_text.h"
#include "simulator/drawing/pictures.h"
#include "simulator/text/happenings.h"
#include "simulator/text/parse.h"

namespace companion {

namespace {

using nlohmann::json;
using Words = std::vector<std::string>;

/// A journal or a trace is given from its end, at most this much of it.
constexpr std::size_t entriesMax = 100'000;

/// Some thirty years: in nanoseconds it still fits.
constexpr Microseconds latestTime = 1'000'000'000'000'000;

/// Of what is on the pasteboard, a state shows no more than this.
constexpr std::size_t shownDataMax = 1'000;

struct Request {
  Desktop& desktop;
  Scheduler::Time time;
  const Words& words;
};

ControlAnswer line(const json& object) {
  return {true, {object.dump(-1, ' ', false, json::error_handler_t::replace)}, 0};
}

ControlAnswer screenshot(const Request& request) {
  simulator::Mac& mac = request.desktop.mac();
  const auto png = mac.drawn.png(simulator::screenPicture(mac.world));
  if (!png) throw Failure("no display can be seen, or they are larger than 16,384 pixels");
  return {true, {*png}, 0};
}

bool wantsText(const Words& words) {
  if (words.size() == 1) return false;
  if (words.size() == 2 && words[1] == "--text") return true;
  throw Failure("unknown option: " + words[1]);
}

/// The lines of the latest entries; empty ones are left out.
template <class Entries, class LineOf>
ControlAnswer listed(const Entries& entries, LineOf lineOf) {
  ControlAnswer answer;
  const std::size_t first = entries.size() - std::min(entries.size(), entriesMax);
  for (std::size_t i = first; i < entries.size(); ++i) {
    std::string text = lineOf(entries[i]);
    if (!text.empty()) answer.lines.push_back(std::move(text));
  }
  return answer;
}

ControlAnswer journal(const Request& request) {
  const auto& entries = request.desktop.mac().journal;
  if (!wantsText(request.words)) return listed(entries, simulator::journalLine);
  return listed(entries, [](const auto& entry) { return simulator::effectLine(entry, 0); });
}

ControlAnswer trace(const Request& request) {
  const auto& entries = request.desktop.trace();
  if (wantsText(request.words)) return listed(entries, simulator::traceLine);
  return listed(entries, [&](const simulator::TraceEntry& entry) {
    return traceJson(entry, simulator::Desktop::pidOf(entry.client));
  });
}

ControlAnswer violations(const Request& request) {
  return line({{"ok", true}, {"violations", request.desktop.violations()}});
}

/// The window and the element that the user's keys go to.
json keyboardOf(const simulator::Application& front) {
  const auto* window = simulator::findElement(front, front.focusedWindow);
  const auto* element = simulator::findElement(front, front.focusedElement);
  return {{"element", element == nullptr ? "" : simulator::labelOf(*element)},
          {"window", window == nullptr ? 0 : window->window}};
}

/// A type on the pasteboard: its text, or how much of anything longer there is; null for what was
/// promised and never came.
json entryOf(const simulator::Pasteboard::Entry& entry) {
  json data;
  if (entry.data && entry.data->size() > shownDataMax) {
    data = std::to_string(entry.data->size()) + " bytes";
  } else if (entry.data) {
    data = *entry.data;
  }
  return {{"data", data}, {"type", entry.type}};
}

json clipboardOf(const simulator::Pasteboard& pasteboard) {
  json items = json::array();
  for (const auto& item : pasteboard.items) {
    json types = json::array();
    for (const auto& entry : item) types.push_back(entryOf(entry));
    items.push_back(std::move(types));
  }
  return items;
}

/// What is the user's own: it looks the same however an agent works in the background.
ControlAnswer state(const Request& request) {
  const simulator::World& world = request.desktop.mac().world;
  const auto* front = simulator::findApplication(world, world.frontmost);
  json application;
  json keyboard;
  if (front != nullptr) {
    application = {{"name", front->name.value_or("")}, {"pid", front->pid}};
    keyboard = keyboardOf(*front);
  }
  return line({{"clipboard", clipboardOf(world.pasteboard)},
               {"front", application},
               {"keyboard", keyboard},
               {"locked", world.session.locked.value_or(false)},
               {"ok", true},
               {"onConsole", world.session.onConsole.value_or(true)},
               {"pointer", {{"x", world.pointer.x}, {"y", world.pointer.y}}}});
}

ControlAnswer fault(const Request& request) {
  std::string text;
  for (std::size_t i = 1; i < request.words.size(); ++i) {
    text += (i > 1 ? " " : "") + request.words[i];
  }
  const auto parsed = simulator::parseFault(text, request.desktop.mac().world);
  request.desktop.addFault(parsed);
  return line({{"fault", simulator::faultText(parsed)}, {"ok", true}});
}

ControlAnswer advance(const Request& request) {
  if (request.words.size() != 2) throw Failure("\"advance\" needs a time");
  if (request.time == Scheduler::Time::real) {
    throw Failure("this Mac runs in real time; only one started with --virtual can be advanced");
  }
  const Microseconds length = simulator::parseTime(request.words[1], "advance");
  const Microseconds end = request.desktop.mac().now + length;
  if (end > latestTime) throw Failure("a Mac does not run that long");
  ControlAnswer answer = line({{"now", static_cast<double>(end) / 1000}, {"ok", true}});
  answer.delay = length;
  return answer;
}

ControlAnswer happening(const Request& request) {
  std::string text;
  for (const std::string& word : request.words)
    text += (text.empty() ? "" : " ") + simulator::quotedWord(word);
  const auto parsed = simulator::parseHappening(text, request.desktop.mac().world);
  if (const char* why = parsed.kind->notTold) {
    throw Failure(std::string("only worlds have \"") + parsed.kind->phrase + "\": " + why);
  }
  request.desktop.happen(parsed);
  return line({{"ok", true}});
}

struct ControlCommand {
  std::string_view name;
  ControlAnswer (*handler)(const Request&);
};

/// Any other command is a happening.
constexpr std::array<ControlCommand, 7> controlCommands = {{
    {"screenshot", screenshot},
    {"state", state},
    {"journal", journal},
    {"trace", trace},
    {"violations", violations},
    {"fault", fault},
    {"advance", advance},
}};

ControlAnswer carriedOut(const Request& request) {
  if (request.words.empty()) throw Failure("no command");
  for (const ControlCommand& command : controlCommands) {
    if (command.name == request.words[0]) return command.handler(request);
  }
  return happening(request);
}

/// The cause alone: a command is only ever one line.
std::string causeOf(const simulator::WorldError& error) {
  constexpr std::string_view place = "line 1: ";
  std::string_view text = error.what();
  if (text.substr(0, place.size()) == place) text.remove_prefix(place.size());
  return std::string(text);
}

}  // namespace

ControlAnswer control(Desktop& desktop, Scheduler::Time time, const Words& words) {
  try {
    return carriedOut({desktop, time, words});
  } catch (const simulator::WorldError& error) {
    return {false, {failureLine(causeOf(error))}, 0};
  } catch (const Failure& failure) {
    return {false, {failureLine(failure.what())}, 0};
  }
}

}  // namespace companion
