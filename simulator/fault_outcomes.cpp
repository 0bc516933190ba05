#include "simulator/fault_outcomes.h"

#include <array>
#include <limits>
#include <stdexcept>
#include <utility>

#include "simulator/mac/arguments.h"

namespace simulator {

using driver::Datum;
using driver::pack;
using platform::Call;
using platform::Shape;

namespace {

using Code = std::int32_t;

constexpr Microseconds lateDelay = 1'000'000;
constexpr Microseconds unansweredDelay = 3'600'000'000;  // longer than anybody waits

constexpr std::array<Code, 1> processErrors = {-600};
constexpr std::array<Code, 2> windowErrors = {-25201, -25204};
constexpr std::array<Code, 6> messageErrors = {-25200, -25202, -25204, -25205, -25211, -25212};

constexpr auto worlds = nullptr;

Answer nothing(const Call& /*call*/, Code /*code*/) { return {}; }
Answer no(const Call& /*call*/, Code /*code*/) { return {pack(false)}; }
Answer emptyList(const Call& /*call*/, Code /*code*/) { return {Datum(Datum::List{})}; }
Answer emptyText(const Call& /*call*/, Code /*code*/) { return {pack("")}; }

Answer emptyWindows(const Call& /*call*/, Code /*code*/) {
  return {pack(std::optional(std::vector<windowserver::Window>{}))};
}

Answer noItems(const Call& /*call*/, Code /*code*/) {
  return {pack(std::optional(std::vector<pasteboard::Item>{}))};
}

Answer emptyContent(const Call& /*call*/, Code /*code*/) {
  return {pack(platform::Thrown{std::nullopt, pack(platform::WireContent{})})};
}

Answer wrongNumber(const Call& /*call*/, Code /*code*/) {
  return {pack(std::numeric_limits<double>::infinity())};
}

Answer wrongWindows(const Call& /*call*/, Code /*code*/) {
  return {pack(std::optional(std::vector<windowserver::Window>{windowserver::Window{}}))};
}

/// One item, of which no type can be read.
Answer unreadableItem(const Call& /*call*/, Code /*code*/) {
  return {pack(std::optional(std::vector<pasteboard::Item>{pasteboard::Item{}}))};
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

Answer wrongReadings(const Call& call, Code /*code*/) {
  platform::WireReadings readings;
  std::size_t count = 1;
  if (call.function == platform::Function::axAttributes) {
    count = Arguments(call).get<std::vector<Datum>>(1).size();
  }
  for (std::size_t i = 0; i < count; ++i) readings.slots.push_back({wrongValue(i), {}});
  return {pack(readings)};
}

Answer wrongContent(const Call& /*call*/, Code /*code*/) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  platform::WireContent content;
  content.windows.push_back({1, {nan, nan, nan, nan}, std::nullopt, 0, std::nullopt});
  content.displays.push_back({1, {nan, 0, 100, nan}});
  return {pack(platform::Thrown{std::nullopt, pack(content)})};
}

Answer platformError(const Call& /*call*/, Code /*code*/) {
  return {pack(platform::Thrown{"Error Domain=Simulated Code=1 \"a fault\"", Datum()})};
}

Answer failedStatus(const Call& /*call*/, Code code) { return {pack(code)}; }

Answer unanswered(const Call& /*call*/, Code /*code*/) { return {pack(false), unansweredDelay}; }

Answer lockUnanswered(const Call& /*call*/, Code /*code*/) {
  return {pack(processErrors[0]), unansweredDelay};
}

Datum serialWithStatus(std::int64_t status) {
  return pack(std::vector<std::int64_t>{status, 0, 0});
}

Answer failedSerial(const Call& /*call*/, Code code) { return {serialWithStatus(code)}; }

// The answers to messages that failed.
Datum windowMessage(ax::Outcome outcome) {
  return serialWithStatus(static_cast<std::int64_t>(outcome.error));
}
Datum readingsMessage(ax::Outcome outcome) { return pack(platform::WireReadings{{}, outcome}); }
Datum actionNamesMessage(ax::Outcome outcome) {
  return pack(platform::WireActionNames{{}, outcome});
}
Datum hitMessage(ax::Outcome outcome) { return pack(platform::WireHit{std::nullopt, outcome}); }
Datum plainMessage(ax::Outcome outcome) { return pack(outcome); }

using Message = Datum(ax::Outcome outcome);

template <Message* message>
Answer failed(const Call& /*call*/, Code code) {
  return {message({static_cast<ax::Error>(code), false})};
}

template <Message* message>
Answer hung(const Call& /*call*/, Code /*code*/) {
  return {message({ax::Error::cannotComplete, true}), messagingTimeout};
}

/// The world can answer every call.
std::vector<Way> everyShape() {
  std::vector<Way> ways;
  for (std::size_t i = 0; i < platform::shapeTexts.size(); ++i) {
    ways.push_back({static_cast<Shape>(i), worlds});
  }
  return ways;
}

}  // namespace

const std::vector<OutcomeRow>& outcomeRows() {
  static const std::vector<OutcomeRow> rows = {
#define ROW(kind, name, argument, effect, ...) \
  {Outcome::Kind::kind, name, argument, effect, {__VA_ARGS__}},
      FAULT_OUTCOMES(ROW)
#undef ROW
  };
  return rows;
}

const OutcomeRow& rowOf(const Outcome& outcome) {
  return outcomeRows()[static_cast<std::size_t>(outcome.kind)];
}

const Way* OutcomeRow::wayFor(Shape shape) const {
  for (const Way& way : ways) {
    if (way.shape == shape) return &way;
  }
  return nullptr;
}

std::vector<std::string_view> outcomeNames(Shape shape) {
  std::vector<std::string_view> names;
  for (const OutcomeRow& row : outcomeRows()) {
    if (row.wayFor(shape) != nullptr) names.push_back(row.name);
  }
  return names;
}

std::optional<Answer> faultyAnswer(const Call& call, const Outcome& outcome) {
  const Way* way = rowOf(outcome).wayFor(platform::shapeOf(call.function));
  if (way == nullptr) throw std::logic_error("a fault that the call does not admit");
  if (way->answer == worlds) return std::nullopt;
  return way->answer(call, outcome.code);
}

Microseconds delayOf(const Outcome& outcome) {
  return outcome.kind == Outcome::Kind::late ? lateDelay : 0;
}

std::optional<Answer> answerOfHanging(const Call& call) {
  Outcome hang;
  hang.kind = Outcome::Kind::hang;
  switch (platform::shapeOf(call.function)) {
    case Shape::window:
    case Shape::readings:
    case Shape::actionNames:
    case Shape::hit:
    case Shape::outcome:
      return faultyAnswer(call, hang);
    default:
      return std::nullopt;
  }
}

}  // namespace simulator
