#include "simulator/faults.h"

#include <algorithm>
#include <cstdlib>

#include "simulator/text/happenings.h"
#include "simulator/text/nearest.h"
#include "simulator/text/parse.h"

namespace simulator {

using platform::Function;
using platform::Shape;
using Kind = Outcome::Kind;

namespace {

/// Somebody may copy something at any time. It matters where the pasteboard is used, and while that
/// is waited for.
bool isOfPasteboard(Function function) {
  return function == Function::sleep || platform::nameOf(function).starts_with("pasteboard.");
}

Happening happeningOf(std::string_view phrase, Pid pid = 0) {
  Happening happening = happeningCalled(phrase);
  happening.pid = pid;
  return happening;
}

std::vector<Happening> happeningsFor(const World& world, Function function, Pid target) {
  std::vector<Happening> happenings = {happeningOf("lock"), happeningOf("leave console")};
  if (target != 0) {
    happenings.push_back(happeningOf("quit", target));
    happenings.push_back(happeningOf("front", target));
    happenings.push_back(happeningOf("hang", target));
  }
  if (!world.processes.empty()) {
    happenings.push_back(happeningOf("end process", *world.processes.begin()));
  }
  if (!world.pasteboard.items.empty() && isOfPasteboard(function)) {
    happenings.push_back(happeningOf("user copy"));
    happenings.back().text = "newer";
  }
  return happenings;
}

std::string_view takeWord(std::string_view& text) {
  const std::size_t start = std::min(text.find_first_not_of(' '), text.size());
  text.remove_prefix(start);
  const std::string_view word = text.substr(0, text.find(' '));
  text.remove_prefix(word.size());
  return word;
}

std::optional<std::size_t> indexOf(const auto& names, std::string_view name) {
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (names[i] == name) return i;
  }
  return std::nullopt;
}

/// "a, b or c".
std::string alternatives(const std::vector<std::string_view>& names) {
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) text += i + 1 < names.size() ? ", " : " or ";
    text += names[i];
  }
  return text;
}

/// A line is only ever about one fault.
[[noreturn]] void failUnknown(const std::string& cause, std::string_view written,
                              const std::vector<std::string_view>& known) {
  const Spot spot{1, nullptr};
  throw WorldError({spot, cause, nearest(written, {known.begin(), known.end()})});
}

Function parseFunction(std::string_view name) {
  const auto function = indexOf(platform::functionNames, name);
  if (function) return static_cast<Function>(*function);
  std::vector<std::string_view> known = {"any"};
  known.insert(known.end(), platform::functionNames.begin(), platform::functionNames.end());
  failUnknown("unknown call '" + std::string(name) + "'; \"simulated-mac help calls\" lists them",
              name, known);
}

Outcome parseOutcome(std::string_view text, const World& world) {
  std::vector<std::string_view> names;
  for (const OutcomeRow& row : outcomeRows()) names.push_back(row.name);
  const std::string_view name = takeWord(text);
  const auto kind = indexOf(names, name);
  if (!kind) {
    failUnknown("expected " + alternatives(names) + ", not '" + std::string(name) + "'", name,
                names);
  }
  Outcome outcome{static_cast<Kind>(*kind), 0, {}};
  if (outcome.kind == Kind::error) {
    outcome.code = std::atoi(std::string(takeWord(text)).c_str());
    if (outcome.code == 0) throw WorldError(1, "expected an error code");
  } else if (outcome.kind == Kind::happening) {
    outcome.happening = parseHappening(text, world);
    return outcome;
  }
  if (!takeWord(text).empty()) throw WorldError(1, "more than one outcome");
  return outcome;
}

}  // namespace

std::vector<Outcome> admissibleOutcomes(Function function, const World& world, Pid target) {
  std::vector<Outcome> outcomes;
  for (const OutcomeRow& row : outcomeRows()) {
    const Way* way = row.wayFor(platform::shapeOf(function));
    if (way == nullptr) continue;
    if (row.kind == Kind::error) {
      for (const std::int32_t code : way->codes) outcomes.push_back({row.kind, code, {}});
    } else if (row.kind == Kind::happening) {
      for (const Happening& happening : happeningsFor(world, function, target)) {
        outcomes.push_back({row.kind, 0, happening});
      }
    } else {
      outcomes.push_back({row.kind, 0, {}});
    }
  }
  return outcomes;
}

std::string faultText(const Fault& fault) {
  std::string text(fault.function ? platform::nameOf(*fault.function) : "any");
  text += " " + std::to_string(fault.occurrence) + (fault.onwards ? "+ " : " ");
  text += rowOf(fault.outcome).name;
  if (fault.outcome.kind == Kind::error) text += " " + std::to_string(fault.outcome.code);
  if (fault.outcome.kind == Kind::happening) text += " " + happeningText(fault.outcome.happening);
  return text;
}

Fault parseFault(std::string_view text, const World& world) {
  Fault fault;
  const std::string_view name = takeWord(text);
  if (name != "any") fault.function = parseFunction(name);
  std::string_view count = takeWord(text);
  fault.onwards = !count.empty() && count.back() == '+';
  if (fault.onwards) count.remove_suffix(1);
  const int occurrence = std::atoi(std::string(count).c_str());
  if (occurrence < 1) throw WorldError(1, "expected which call, from 1");
  fault.occurrence = static_cast<std::size_t>(occurrence);
  fault.outcome = parseOutcome(text, world);
  // A call of any function is one that may have a "fixed" answer.
  const Shape shape = fault.function ? platform::shapeOf(*fault.function) : Shape::fixed;
  if (rowOf(fault.outcome).wayFor(shape) == nullptr) {
    throw WorldError(1, std::string(name) + " does not admit that outcome; it admits " +
                            alternatives(outcomeNames(shape)));
  }
  return fault;
}

}  // namespace simulator
