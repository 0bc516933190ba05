#include "simulator/text/reaction_arguments.h"

#include <array>
#include <cstdio>
#include <limits>
#include <memory>
#include <utility>

#include "simulator/text/call.h"

namespace simulator {

namespace {

constexpr const char* aText = "a quoted text";
constexpr const char* aLabel = "the label of an element";

void readText(Words& words, const char* owner, Reaction& reaction) {
  if (words.take("value")) {
    words.expect("value", "of");
    reaction.textOf = words.name("of", aLabel);
  } else {
    reaction.text = words.text(owner, aText);
  }
}

std::string textOf(const Reaction& reaction) {
  return reaction.textOf ? "value of " + quotedWord(*reaction.textOf) : inQuotes(reaction.text);
}

void readTarget(Words& words, const char* owner, Reaction& reaction) {
  reaction.target = words.name(owner, aLabel);
}

std::string targetOf(const Reaction& reaction) { return quotedWord(reaction.target.value_or("")); }

/// The list of reactions goes on, or something else of the line.
bool endsHere(const Words& words) {
  if (words.atEnd() || words.nextIs(Token::Kind::semicolon)) return true;
  return words.nextIs(Token::Kind::word) && words.peek()->text.ends_with(':');
}

void readPlace(Words& words, const char* owner, Reaction& reaction) {
  readTarget(words, owner, reaction);
  if (words.take("to")) {
    reaction.placement = Placement::at;
    reaction.point = words.finitePoint("to");
    return;
  }
  reaction.placement = words.take("above") ? Placement::above : Placement::below;
  if (reaction.placement == Placement::below && !words.take("below")) {
    words.failNeeding(owner, "above, below or to after the label");
  }
  reaction.other = words.name("above", aLabel);
}

void readCallOf(Words& words, const char* owner, Reaction& reaction) {
  Call call = readCall(words, owner);
  reaction.argumentsOf = call.held;
  reaction.addition = std::make_shared<const Addition>(Addition{std::move(call)});
}

void readAddition(Words& words, const char* owner, Reaction& reaction) {
  readCallOf(words, owner, reaction);
  if (words.take("to")) {
    reaction.placement = Placement::at;
  } else {
    reaction.placement = words.take("above") ? Placement::above : Placement::below;
    if (reaction.placement == Placement::below && !words.take("below")) {
      words.failNeeding(owner, "to, above or below behind it");
    }
  }
  readTarget(words, "to", reaction);
}

std::string argumentText(const Call& call, std::size_t place) {
  const auto held = call.held.find(place);
  if (held != call.held.end()) return "value of " + quotedWord(held->second);
  const Token& token = call.arguments[place];
  return token.kind == Token::Kind::text ? inQuotes(token.text) : token.text;
}

std::string callText(const Reaction& reaction) {
  const Call& call = reaction.addition->call;
  std::string text = call.name + "(";
  for (std::size_t i = 0; i < call.arguments.size(); ++i) {
    text += (i == 0 ? "" : ", ") + argumentText(call, i);
  }
  return text + ")";
}

std::string additionText(const Reaction& reaction) {
  constexpr const char* placements[] = {" above ", " below ", " to "};
  return callText(reaction) + placements[static_cast<int>(reaction.placement)] + targetOf(reaction);
}

std::string placeText(const Reaction& reaction) {
  const std::string other = quotedWord(reaction.other.value_or(""));
  switch (reaction.placement) {
    case Placement::above:
      return targetOf(reaction) + " above " + other;
    case Placement::below:
      return targetOf(reaction) + " below " + other;
    case Placement::at:
      break;
  }
  std::array<char, 64> point{};
  std::snprintf(point.data(), point.size(), "%.15g,%.15g", reaction.point.x, reaction.point.y);
  return targetOf(reaction) + " to " + point.data();
}

void readSteps(Words& words, const char* owner, Reaction& reaction) {
  readTarget(words, owner, reaction);
  const bool isUp = words.take("up");
  if (!isUp && !words.take("down")) words.failNeeding(owner, "up or down after the label");
  reaction.number = 1;
  if (words.take("by")) {
    reaction.number =
        words.integer("by", "a number from 1", 1, std::numeric_limits<std::int32_t>::max());
  }
  if (!isUp) reaction.number = -reaction.number;
}

std::string stepsText(const Reaction& reaction) {
  const std::int64_t size = reaction.number < 0 ? -reaction.number : reaction.number;
  std::string text = targetOf(reaction) + (reaction.number < 0 ? " down" : " up");
  return size == 1 ? text : text + " by " + std::to_string(size);
}

/// In the largest unit that tells it whole.
std::string timeText(Microseconds time) {
  if (time % microsecondsPerSecond == 0) return std::to_string(time / microsecondsPerSecond) + "s";
  if (time % 1000 == 0) return std::to_string(time / 1000) + "ms";
  return std::to_string(time) + "us";
}

}  // namespace

Condition readCondition(Words& words, const char* owner) {
  Condition condition;
  condition.label = words.name(owner, aLabel);
  words.expect(owner, "is");
  condition.negated = words.take("not");
  condition.text = words.name("is", "a value");
  return condition;
}

std::string spanText(const Span& span) {
  return span.least == span.most ? timeText(span.least)
                                 : timeText(span.least) + ".." + timeText(span.most);
}

namespace reaction_arguments {

constinit const ReactionArguments nothing = {"", [](Words&, const char*, Reaction&) {},
                                             [](const Reaction&) { return std::string(); }};

constinit const ReactionArguments text = {"TEXT", readText, textOf};

constinit const ReactionArguments textAndTarget = {
    "TEXT to Label",
    [](Words& words, const char* owner, Reaction& reaction) {
      readText(words, owner, reaction);
      words.expect(owner, "to");
      readTarget(words, "to", reaction);
    },
    [](const Reaction& reaction) { return textOf(reaction) + " to " + targetOf(reaction); }};

constinit const ReactionArguments targetAndText = {
    "Label TEXT",
    [](Words& words, const char* owner, Reaction& reaction) {
      readTarget(words, owner, reaction);
      readText(words, owner, reaction);
    },
    [](const Reaction& reaction) { return targetOf(reaction) + " " + textOf(reaction); }};

constinit const ReactionArguments target = {"Label", readTarget, targetOf};

constinit const ReactionArguments targetOrHeld = {
    "Label|value of Label",
    [](Words& words, const char* owner, Reaction& reaction) {
      if (words.nextIs("value")) {
        readText(words, owner, reaction);
      } else {
        readTarget(words, owner, reaction);
      }
    },
    [](const Reaction& reaction) {
      if (reaction.textOf) return textOf(reaction);
      return reaction.target == "value" ? inQuotes(*reaction.target) : targetOf(reaction);
    }};

constinit const ReactionArguments ownOrTarget = {
    "[Label]",
    [](Words& words, const char* owner, Reaction& reaction) {
      if (!endsHere(words)) readTarget(words, owner, reaction);
    },
    [](const Reaction& reaction) { return reaction.target ? inQuotes(*reaction.target) : ""; }};

constinit const ReactionArguments window = {
    "\"Title\"",
    [](Words& words, const char* owner, Reaction& reaction) {
      reaction.window = words.text(owner, aText);
    },
    [](const Reaction& reaction) { return inQuotes(reaction.window.value_or("")); }};

constinit const ReactionArguments ownOrWindow = {
    "[\"Title\"]",
    [](Words& words, const char*, Reaction& reaction) {
      if (words.nextIs(Token::Kind::text)) reaction.window = words.text("window", aText);
    },
    [](const Reaction& reaction) { return reaction.window ? inQuotes(*reaction.window) : ""; }};

constinit const ReactionArguments place = {"Label above|below Label|to X,Y", readPlace, placeText};

constinit const ReactionArguments addition = {"NAME(argument, ...) to|above|below Label",
                                              readAddition, additionText};

constinit const ReactionArguments call = {"NAME(argument, ...)", readCallOf, callText};

constinit const ReactionArguments steps = {"Label up|down [by N]", readSteps, stepsText};

}  // namespace reaction_arguments

}  // namespace simulator
