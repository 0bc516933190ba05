#include "simulator/faults.h"

#include <array>
#include <limits>

#include "simulator/fault_shapes.h"
#include "simulator/mac/arguments.h"
#include "simulator/text/happenings.h"
#include "simulator/text/parse.h"

namespace simulator {

using driver::Datum;
using driver::pack;
using platform::Function;
using Kind = Outcome::Kind;

namespace {

constexpr Microseconds lateDelay = 1'000'000;

void addErrors(std::vector<Outcome>& outcomes, std::initializer_list<std::int32_t> codes) {
  for (const std::int32_t code : codes) outcomes.push_back({Kind::error, code, {}});
}

std::vector<Outcome> ownOutcomes(Shape shape) {
  std::vector<Outcome> outcomes;
  const auto add = [&](Kind kind) { outcomes.push_back({kind, 0, {}}); };
  switch (shape) {
    case Shape::fixed:
      break;
    case Shape::post:
    case Shape::boolean:
      add(Kind::refused);
      break;
    case Shape::optional:
      add(Kind::absent);
      break;
    case Shape::list:
    case Shape::text:
      add(Kind::empty);
      break;
    case Shape::number:
      add(Kind::wrong);
      break;
    case Shape::optionalList:
      add(Kind::absent);
      add(Kind::empty);
      add(Kind::wrong);
      break;
    case Shape::status:
    case Shape::serial:
      addErrors(outcomes, {-600});
      break;
    case Shape::window:
      addErrors(outcomes, {-25201, -25204});
      add(Kind::hang);
      break;
    case Shape::readings:
      add(Kind::wrong);
      [[fallthrough]];
    case Shape::actionNames:
    case Shape::hit:
    case Shape::outcome:
      addErrors(outcomes, {-25200, -25202, -25204, -25205, -25211, -25212});
      add(Kind::hang);
      add(Kind::late);
      break;
    case Shape::content:
      add(Kind::empty);
      add(Kind::wrong);
      [[fallthrough]];
    case Shape::thrown:
      add(Kind::thrown);
      add(Kind::late);
      break;
  }
  return outcomes;
}

/// Values that no reader expects: an opaque one and geometry that is not a number, in turn.
Datum wrongValue(std::size_t index) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const auto tagged = [](platform::ValueKind kind, Datum payload) {
    return Datum(Datum::List{pack(kind), std::move(payload)});
  };
  switch (index % 3) {
    case 0:
      return tagged(platform::ValueKind::point, pack(Point{nan, nan}));
    case 1:
      return tagged(platform::ValueKind::size, pack(Size{nan, -nan}));
    default:
      return tagged(platform::ValueKind::opaque, pack(std::int64_t{7}));
  }
}

Datum wrongReadings(const platform::Call& call) {
  platform::WireReadings readings;
  std::size_t count = 1;
  if (call.function == Function::axAttributes) {
    count = Arguments(call).get<std::vector<Datum>>(1).size();
  }
  for (std::size_t i = 0; i < count; ++i) readings.slots.push_back({wrongValue(i), {}});
  return pack(readings);
}

Datum wrongContent() {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  platform::WireContent content;
  content.windows.push_back({1, {nan, nan, nan, nan}, std::nullopt, 0, std::nullopt});
  content.displays.push_back({1, {nan, 0, 100, nan}});
  return pack(platform::Thrown{std::nullopt, pack(content)});
}

Datum wrongList() {
  return pack(std::optional(std::vector<windowserver::Window>{windowserver::Window{}}));
}

Answer failedMessage(Shape shape, ax::Outcome outcome) {
  const Microseconds delay = outcome.timedOut ? messagingTimeout : 0;
  switch (shape) {
    case Shape::readings:
      return {pack(platform::WireReadings{{}, outcome}), delay};
    case Shape::actionNames:
      return {pack(platform::WireActionNames{{}, outcome}), delay};
    case Shape::hit:
      return {pack(platform::WireHit{std::nullopt, outcome}), delay};
    case Shape::outcome:
      return {pack(outcome), delay};
    default:
      return {pack(std::vector<std::int64_t>{static_cast<std::int64_t>(outcome.error), 0, 0}),
              delay};
  }
}

Answer failed(Shape shape, std::int32_t code) {
  if (shape == Shape::status) return {pack(code), 0};
  if (shape == Shape::serial) return {pack(std::vector<std::int64_t>{code, 0, 0}), 0};
  return failedMessage(shape, {static_cast<ax::Error>(code), false});
}

Answer emptyAnswer(Shape shape) {
  switch (shape) {
    case Shape::list:
      return {Datum(Datum::List{}), 0};
    case Shape::text:
      return {pack(""), 0};
    case Shape::optionalList:
      return {pack(std::optional(std::vector<windowserver::Window>{})), 0};
    default:
      return {pack(platform::Thrown{std::nullopt, pack(platform::WireContent{})}), 0};
  }
}

Answer wrongAnswer(Shape shape, const platform::Call& call) {
  switch (shape) {
    case Shape::readings:
      return {wrongReadings(call), 0};
    case Shape::optionalList:
      return {wrongList(), 0};
    case Shape::number:
      return {pack(std::numeric_limits<double>::infinity()), 0};
    default:
      return {wrongContent(), 0};
  }
}

/// Somebody may copy something at any time. It matters where the pasteboard is used, and while that
/// is waited for.
bool isOfPasteboard(Function function) {
  switch (function) {
    case Function::sleep:
    case Function::pasteboardItems:
    case Function::pasteboardChangeCount:
    case Function::clearPasteboard:
    case Function::writePasteboard:
    case Function::writeFilesToPasteboard:
      return true;
    default:
      return false;
  }
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

constexpr std::array<std::string_view, 9> kindNames = {
    "absent", "refused", "empty", "wrong", "error", "thrown", "hang", "late", "before"};

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

bool admits(const std::vector<Outcome>& outcomes, const Outcome& wanted) {
  if (wanted.kind == Kind::happening) return true;
  for (const Outcome& outcome : outcomes) {
    if (outcome.kind == wanted.kind) return true;
  }
  return false;
}

Outcome parseOutcome(std::string_view text, const World& world) {
  const auto kind = indexOf(kindNames, takeWord(text));
  if (!kind) {
    throw WorldError(1,
                     "expected absent, refused, empty, wrong, error, thrown, hang, late or "
                     "before");
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
  std::vector<Outcome> outcomes = ownOutcomes(shapeOf(function));
  for (const Happening& happening : happeningsFor(world, function, target)) {
    outcomes.push_back({Kind::happening, 0, happening});
  }
  return outcomes;
}

std::optional<Answer> faultyAnswer(const platform::Call& call, const Outcome& outcome) {
  const Shape shape = shapeOf(call.function);
  switch (outcome.kind) {
    case Kind::absent:
      return Answer{};
    case Kind::refused:
      return shape == Shape::post ? Answer{} : Answer{pack(false), 0};
    case Kind::empty:
      return emptyAnswer(shape);
    case Kind::wrong:
      return wrongAnswer(shape, call);
    case Kind::error:
      return failed(shape, outcome.code);
    case Kind::thrown:
      return Answer{pack(platform::Thrown{"Error Domain=Simulated Code=1 \"a fault\"", Datum()}),
                    0};
    case Kind::hang:
      return failedMessage(shape, {ax::Error::cannotComplete, true});
    case Kind::late:
    case Kind::happening:
      return std::nullopt;
  }
  return std::nullopt;
}

std::string faultText(const Fault& fault) {
  std::string text =
      fault.function
          ? std::string(platform::functionNames[static_cast<std::size_t>(*fault.function)])
          : "any";
  text += " " + std::to_string(fault.occurrence) + (fault.onwards ? "+ " : " ");
  text += kindNames[static_cast<std::size_t>(fault.outcome.kind)];
  if (fault.outcome.kind == Kind::error) text += " " + std::to_string(fault.outcome.code);
  if (fault.outcome.kind == Kind::happening) text += " " + happeningText(fault.outcome.happening);
  return text;
}

Fault parseFault(std::string_view text, const World& world) {
  Fault fault;
  const std::string_view name = takeWord(text);
  if (name != "any") {
    const auto function = indexOf(platform::functionNames, name);
    if (!function) throw WorldError(1, "unknown function '" + std::string(name) + "'");
    fault.function = static_cast<Function>(*function);
  }
  std::string_view count = takeWord(text);
  fault.onwards = !count.empty() && count.back() == '+';
  if (fault.onwards) count.remove_suffix(1);
  const int occurrence = std::atoi(std::string(count).c_str());
  if (occurrence < 1) throw WorldError(1, "expected which call, from 1");
  fault.occurrence = static_cast<std::size_t>(occurrence);
  fault.outcome = parseOutcome(text, world);
  const auto outcomes =
      fault.function ? ownOutcomes(shapeOf(*fault.function)) : std::vector<Outcome>{};
  if (!admits(outcomes, fault.outcome)) {
    throw WorldError(1, std::string(name) + " does not admit that outcome");
  }
  return fault;
}

Microseconds delayOf(const Outcome& outcome) { return outcome.kind == Kind::late ? lateDelay : 0; }

}  // namespace simulator
