#include "simulator/companion/control.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>

#include "simulator/companion/failure.h"
#include "simulator/companion/state.h"
#include "simulator/companion/trace_text.h"
#include "simulator/companion/tree.h"
#include "simulator/drawing/drawn_pictures.h"
#include "simulator/drawing/pictures.h"
#include "simulator/mac/json_text.h"
#include "simulator/rules/left_behind.h"
#include "simulator/snapshot/snapshot.h"
#include "simulator/snapshot/world_text.h"
#include "simulator/text/happenings.h"
#include "simulator/text/nearest.h"
#include "simulator/text/parse.h"

namespace companion {

namespace {

using nlohmann::json;
using simulator::JournalEntry;
using Words = std::vector<std::string>;

/// A journal or a trace is given from its end, at most this much of it.
constexpr std::size_t entriesMax = 100'000;

/// Some thirty years: in nanoseconds it still fits.
constexpr Microseconds latestTime = 1'000'000'000'000'000;

struct Request {
  Desktop& desktop;
  Scheduler::Time time;
  const Words& words;
};

ControlAnswer line(const json& object) { return {true, {simulator::jsonLine(object)}, 0}; }

ControlAnswer screenshot(const Request& request) {
  const simulator::World& world = request.desktop.mac().world;
  const auto png = simulator::drawnPictures().png(simulator::screenPicture(world));
  if (!png) throw Failure("no display can be seen, or they are larger than 16,384 pixels");
  return {true, {*png}, 0};
}

ControlAnswer snapshot(const Request& request) {
  if (request.words.size() != 1) throw Failure("\"snapshot\" takes nothing from its caller");
  return {true, {simulator::snapshotText(request.desktop)}, 0};
}

[[noreturn]] void failUnknownOption(const std::string& word, const std::string& option) {
  throw Failure("unknown option: " + word +
                simulator::suggestion(simulator::nearest(word, {option})));
}

/// Whether the one option that a command has is given.
bool hasOption(const Words& words, const std::string& option) {
  if (words.size() == 1) return false;
  if (words.size() == 2 && words[1] == option) return true;
  failUnknownOption(words[1], option);
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
  return listed(entries, hasOption(request.words, "--text") ? simulator::journalText
                                                            : simulator::journalLine);
}

ControlAnswer trace(const Request& request) {
  const auto& entries = request.desktop.trace();
  if (hasOption(request.words, "--text")) return listed(entries, simulator::traceLine);
  return listed(entries, [&](const simulator::TraceEntry& entry) {
    return traceJson(entry, simulator::Desktop::pidOf(entry.client));
  });
}

ControlAnswer violations(const Request& request) {
  auto broken = request.desktop.violations();
  for (std::string& left : simulator::leftBehind(request.desktop.mac())) {
    broken.push_back(std::move(left));
  }
  return line({{"ok", true}, {"violations", std::move(broken)}});
}

ControlAnswer state(const Request& request) {
  const bool isUsers = hasOption(request.words, "--user");
  return line(isUsers ? userState(request.desktop.mac()) : wholeState(request.desktop));
}

/// Of one application, or of all.
ControlAnswer tree(const Request& request) {
  Words words(request.words.begin() + 1, request.words.end());
  const bool isText = !words.empty() && words.back() == "--text";
  if (isText) words.pop_back();
  if (words.size() > 1) failUnknownOption(words[1], "--text");
  const simulator::World& world = request.desktop.mac().world;
  ControlAnswer answer;
  const auto add = [&](const simulator::Application& application) {
    auto lines = isText ? treeText(world, application) : treeLines(world, application);
    std::move(lines.begin(), lines.end(), std::back_inserter(answer.lines));
  };
  if (!words.empty()) {
    add(applicationCalled(world, words[0]));
    return answer;
  }
  for (const simulator::Application& application : world.applications) add(application);
  return answer;
}

ControlAnswer value(const Request& request) {
  const auto& application = applicationCalled(request.desktop.mac().world, request.words[1]);
  return {true, {valueLine(application, request.words[2])}, 0};
}

ControlAnswer fault(const Request& request) {
  std::string text;
  for (std::size_t i = 1; i < request.words.size(); ++i) {
    text += (i > 1 ? " " : "") + request.words[i];
  }
  const auto parsed = simulator::parseFault(text, request.desktop.mac().world);
  request.desktop.addFault(parsed);
  simulator::enter(request.desktop.mac(), {.kind = JournalEntry::Kind::fault,
                                           .what = "armed",
                                           .outcome = simulator::faultText(parsed)});
  return line({{"fault", simulator::faultText(parsed)}, {"ok", true}});
}

ControlAnswer failed(const Request& request) {
  if (request.words.size() != 2) throw Failure("\"failed\" needs a text");
  tellOfFailure(request.desktop, request.words[1]);
  return line({{"ok", true}});
}

ControlAnswer advance(const Request& request) {
  if (request.words.size() != 2) throw Failure("\"advance\" needs a time");
  if (request.time == Scheduler::Time::real) {
    throw Failure(notVirtual);
  }
  const Microseconds length = simulator::parseTime(request.words[1], "advance");
  const Microseconds end = request.desktop.mac().now + length;
  if (end > latestTime) throw Failure("a Mac does not run that long");
  ControlAnswer answer = line({{"now", static_cast<double>(end) / 1000}, {"ok", true}});
  answer.delay = length;
  return answer;
}

ControlAnswer wait(const Request& request) {
  const Words words(request.words.begin() + 1, request.words.end());
  ControlAnswer answer;
  answer.wait = readWait(words, request.desktop.mac().world);
  if (request.desktop.mac().now + answer.wait->length > latestTime) {
    throw Failure("a Mac does not run that long");
  }
  return answer;
}

ControlAnswer happening(const Request& request) {
  // Reactions have quotation marks of their own: behind `in APP` words stand as in a world.
  const bool reacts = request.words[0] == "in";
  std::string text;
  for (std::size_t i = 0; i < request.words.size(); ++i) {
    const std::string& word = request.words[i];
    text += (i == 0 ? "" : " ") + (reacts && i > 1 ? word : simulator::quotedWord(word));
  }
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
constexpr std::array<ControlCommand, 12> controlCommands = {{
    {"screenshot", screenshot},
    {"snapshot", snapshot},
    {"state", state},
    {"tree", tree},
    {"value", value},
    {"journal", journal},
    {"trace", trace},
    {"violations", violations},
    {"fault", fault},
    {"failed", failed},
    {"advance", advance},
    {"wait", wait},
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

ControlAnswer answerTo(Desktop& desktop, const Wait& wait, bool hasCome, Microseconds since) {
  constexpr double millisecond = 1000;
  const Microseconds now = desktop.mac().now;
  const double waited = static_cast<double>(now - since) / millisecond;
  if (hasCome || !wait.isMet) {
    return line(
        {{"now", static_cast<double>(now) / millisecond}, {"ok", true}, {"waited", waited}});
  }
  const std::string inVain = "waited " + json(waited).dump() + " ms in vain";
  const std::string instead = "; at last " + wait.instead(desktop.mac().world);
  simulator::enter(desktop.mac(), {.kind = JournalEntry::Kind::wait,
                                   .what = "until " + wait.what,
                                   .outcome = inVain + instead});
  return {false, {failureLine(inVain + ": " + wait.what + instead)}, 0};
}

void tellOfFailure(Desktop& desktop, std::string text) {
  simulator::enter(desktop.mac(), {.kind = JournalEntry::Kind::failure, .text = std::move(text)});
}

ControlAnswer control(Desktop& desktop, Scheduler::Time time, const Words& words) {
  try {
    return carriedOut({desktop, time, words});
  } catch (const simulator::WorldError& error) {
    return {false, {failureLine(causeOf(error))}, 0};
  } catch (const simulator::UnwritableWorld& unwritable) {
    return {false, {failureLine(unwritable.what())}, 0};
  } catch (const Failure& failure) {
    return {false, {failureLine(failure.what())}, 0};
  }
}

}  // namespace companion
