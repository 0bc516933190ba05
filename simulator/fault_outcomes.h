#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "platform/call.h"
#include "simulator/mac/mac.h"
#include "simulator/world/world.h"

/// What can become of a call in place of what the world gives, each outcome in one row. All that is
/// said of an outcome elsewhere follows from its row: which calls admit it, how its fault reads,
/// and what the call then gives.

// clang-format would join the rows.
// clang-format off

/// The outcomes.
///   kind      the enumerator of simulator::Outcome::Kind
///   name      in the text of a fault
///   argument  what follows the name there, if anything
///   effect    what the call gives, for readers
///   ways      the forms of answers that admit the outcome, each with what makes the answer of
///             that form (a function of fault_outcomes.cpp, or worlds: the world's own answer)
///             and, for errors, the codes that the sweeps try
#define FAULT_OUTCOMES(row)                                                               \
  row(absent, "absent", "", "nothing, where something may be missing",                    \
          {Shape::optional, nothing}, {Shape::optionalList, nothing},                     \
          {Shape::items, nothing})                                                        \
  row(refused, "refused", "", "false, or a post that vanishes",                           \
          {Shape::boolean, no}, {Shape::query, no}, {Shape::post, nothing})               \
  row(empty, "empty", "", "a list or a text without contents",                            \
          {Shape::list, emptyList}, {Shape::text, emptyText},                             \
          {Shape::optionalList, emptyWindows}, {Shape::items, noItems},                   \
          {Shape::content, emptyContent})                                                 \
  row(wrong, "wrong", "", "values of other types than expected, or that are not numbers", \
          {Shape::number, wrongNumber}, {Shape::optionalList, wrongWindows},              \
          {Shape::items, unreadableItem}, {Shape::readings, wrongReadings},               \
          {Shape::content, wrongContent})                                                 \
  row(error, "error", "CODE", "an error with this code",                                  \
          {Shape::status, failedStatus, processErrors},                                   \
          {Shape::lock, failedStatus, processErrors},                                     \
          {Shape::serial, failedSerial, processErrors},                                   \
          {Shape::window, failed<windowMessage>, windowErrors},                           \
          {Shape::readings, failed<readingsMessage>, messageErrors},                      \
          {Shape::actionNames, failed<actionNamesMessage>, messageErrors},                \
          {Shape::hit, failed<hitMessage>, messageErrors},                                \
          {Shape::outcome, failed<plainMessage>, messageErrors})                          \
  row(thrown, "thrown", "", "a platform error",                                           \
          {Shape::content, platformError}, {Shape::thrown, platformError})                \
  row(hang, "hang", "", "no answer within the messaging time-out, or for an hour",        \
          {Shape::query, unanswered}, {Shape::lock, lockUnanswered},                      \
          {Shape::window, hung<windowMessage>}, {Shape::readings, hung<readingsMessage>}, \
          {Shape::actionNames, hung<actionNamesMessage>}, {Shape::hit, hung<hitMessage>}, \
          {Shape::outcome, hung<plainMessage>})                                           \
  row(late, "late", "", "the world's answer, a second later",                             \
          {Shape::query, worlds}, {Shape::lock, worlds},                                  \
          {Shape::readings, worlds}, {Shape::actionNames, worlds}, {Shape::hit, worlds},  \
          {Shape::outcome, worlds}, {Shape::content, worlds}, {Shape::thrown, worlds})    \
  row(happening, "before", "HAPPENING", "the world's answer, after the happening",        \
          everyShape())

// clang-format on

namespace simulator {

/// One admissible outcome of a call other than what the world gives.
struct Outcome {
  enum class Kind : std::uint8_t {
#define ENUMERATOR(kind, ...) kind,
    FAULT_OUTCOMES(ENUMERATOR)
#undef ENUMERATOR
  };
  Kind kind = Kind::absent;
  std::int32_t code = 0;  // of an error
  Happening happening;    // of a happening
};

/// How calls whose answers have one form come to an outcome.
struct Way {
  platform::Shape shape{};
  Answer (*answer)(const platform::Call& call, std::int32_t code) = nullptr;  // none: the world's
  std::span<const std::int32_t> codes = {};
};

/// What is known of an outcome: its row.
struct OutcomeRow {
  Outcome::Kind kind{};
  std::string_view name;
  std::string_view argument;
  std::string_view effect;
  std::vector<Way> ways;

  /// The way for calls of this form; null when they do not admit the outcome.
  const Way* wayFor(platform::Shape shape) const;
};

/// The rows, by Outcome::Kind.
const std::vector<OutcomeRow>& outcomeRows();

/// The row of an outcome.
const OutcomeRow& rowOf(const Outcome& outcome);

/// The names of the outcomes that calls of this form admit, in order. What calls of any form admit
/// is what "fixed" ones do.
std::vector<std::string_view> outcomeNames(platform::Shape shape);

/// The answer a fault gives in place of the world's; none when the world answers. The call must
/// admit the outcome.
std::optional<Answer> faultyAnswer(const platform::Call& call, const Outcome& outcome);

/// What the outcome adds to the time the world takes.
Microseconds delayOf(const Outcome& outcome);

/// The answer of a message to an application, when none came before the messaging time-out; none
/// for other calls.
std::optional<Answer> answerOfHanging(const platform::Call& call);

}  // namespace simulator
