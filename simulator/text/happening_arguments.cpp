#include "simulator/text/happening_arguments.h"

#include <algorithm>
#include <cstdio>
#include <limits>

#include "simulator/text/display.h"
#include "simulator/text/naming.h"
#include "simulator/text/reactions.h"
#include "simulator/world/element_text.h"
#include "simulator/world/keyboard_layouts.h"

namespace simulator {

namespace {

using Reading = HappeningReading;
using Writing = HappeningWriting;

constexpr const char* aKey =
    "one character, or return, enter, tab, space, delete, backspace, forwarddelete, escape, home, "
    "end, pageup, pagedown, left, right, up or down";
constexpr const char* aModifier = "cmd, shift, option or control";

Pid readPid(Words& words, const World& world, const char* owner) {
  const std::string name = words.name(owner, "an application's name or pid:N");
  return applicationNamed(words.spot(), world, name);
}

const ModifierKey* takeModifier(Words& words) {
  for (const ModifierKey& key : modifierKeys) {
    if (words.take(key.name)) return &key;
  }
  return nullptr;
}

/// With blanks between them.
std::string modifiersText(std::uint64_t flags) {
  std::string text = modifierNames(flags);
  std::replace(text.begin(), text.end(), '+', ' ');
  return text;
}

void readKey(const Reading& reading) {
  Words& words = reading.words;
  while (const ModifierKey* modifier = takeModifier(words)) {
    reading.happening.modifiers |= modifier->flag;
  }
  std::string key = words.name(reading.owner, aKey);
  if (!codeNamed(key) && characterCount(key) != 1) {
    words.fail("unknown key '" + key + "'; expected " + aKey);
  }
  reading.happening.text = std::move(key);
}

std::string keyText(const Writing& with) {
  const std::string modifiers = modifiersText(with.happening.modifiers);
  return modifiers + (modifiers.empty() ? "" : " ") + quotedWord(with.happening.text);
}

void readModifier(const Reading& reading) {
  const ModifierKey* modifier = takeModifier(reading.words);
  if (modifier == nullptr) reading.words.failNeeding(reading.owner, aModifier);
  reading.happening.modifiers = modifier->flag;
}

std::string pointText(Point point) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.15g,%.15g", point.x, point.y);
  return text.data();
}

void readPoint(const Reading& reading) {
  reading.happening.point = reading.words.finitePoint(reading.owner);
}

std::string ownPointText(const Writing& with) { return pointText(with.happening.point); }

void readButton(Words& words, Happening& happening) {
  if (words.take("right")) {
    happening.button = MouseButton::right;
  } else if (words.take("other")) {
    happening.button = MouseButton::other;
  }
}

std::string buttonText(const Happening& happening) {
  constexpr const char* buttons[] = {"", " right", " other"};
  return buttons[static_cast<int>(happening.button)];
}

void readClick(const Reading& reading) {
  readPoint(reading);
  readButton(reading.words, reading.happening);
}

std::string clickText(const Writing& with) {
  return pointText(with.happening.point) + buttonText(with.happening);
}

void readDrag(const Reading& reading) {
  readPoint(reading);
  reading.words.expect(reading.owner, "to");
  reading.happening.end = reading.words.finitePoint("to");
  readButton(reading.words, reading.happening);
}

std::string dragText(const Writing& with) {
  return pointText(with.happening.point) + " to " + pointText(with.happening.end) +
         buttonText(with.happening);
}

void readDisplayNumber(const Reading& reading) {
  reading.happening.number = static_cast<int>(reading.words.integer(
      reading.owner, "a number from 1 on", 1, std::numeric_limits<int>::max()));
}

std::string displayText(const Writing& with) {
  const Display& display = with.happening.display;
  const Rect& frame = display.frame;
  std::array<char, 160> text{};
  std::snprintf(text.data(), text.size(), "%u %.15gx%.15g at %.15g,%.15g scale %.15g", display.id,
                frame.width, frame.height, frame.x, frame.y, display.scale);
  return text.data() + std::string(display.modeReadable ? "" : " mode unreadable");
}

void readProcess(const Reading& reading) {
  reading.happening.pid = static_cast<Pid>(
      reading.words.integer(reading.owner, "a process id", 1, std::numeric_limits<Pid>::max()));
}

void readSharing(const Reading& reading) {
  reading.happening.pid = readPid(reading.words, reading.world, reading.owner);
  reading.happening.text =
      reading.words.atEnd() ? userStopped : reading.words.name(reading.owner, "the reason");
}

std::string numberText(const Writing& with) { return std::to_string(with.happening.number); }

std::string quotedText(const Writing& with) { return quotedWord(with.happening.text); }

constexpr std::array<Option<const Reading>, 2> postedOptions = {{
    {"tagged", [](Words&, const Reading& reading) { reading.happening.tagged = true; }},
    {"for",
     [](Words& words, const Reading& reading) {
       reading.happening.addressee = readPid(words, reading.world, "for");
     }},
}};

}  // namespace

void readPosted(const Reading& reading) { readOptions(reading.words, postedOptions, reading); }

std::string postedText(const Writing& with) {
  std::string text = with.happening.tagged ? " tagged" : "";
  if (with.happening.addressee != 0)
    text += " for " + writtenName(with.happening.addressee, with.world);
  return text;
}

namespace happening_arguments {

constinit const HappeningArguments nothing = {"", [](const Reading&) {},
                                              [](const Writing&) { return std::string(); }};

constinit const HappeningArguments application = {
    "APP",
    [](const Reading& reading) {
      reading.happening.pid = readPid(reading.words, reading.world, reading.owner);
    },
    [](const Writing& with) { return writtenName(with.happening.pid, with.world); }};

constinit const HappeningArguments reactions = {
    "APP REACTION; ...",
    [](const Reading& reading) {
      reading.happening.pid = readPid(reading.words, reading.world, reading.owner);
      reading.happening.reactions = readReactions(reading.words, reading.owner);
    },
    [](const Writing& with) {
      return writtenName(with.happening.pid, with.world) + " " +
             reactionsText(with.happening.reactions, with.world);
    }};

constinit const HappeningArguments process = {
    "PID", readProcess, [](const Writing& with) { return std::to_string(with.happening.pid); }};

constinit const HappeningArguments key = {"[cmd] [shift] [option] [control] KEY", readKey, keyText};

constinit const HappeningArguments modifier = {"MODIFIER", readModifier, [](const Writing& with) {
                                                 return modifiersText(with.happening.modifiers);
                                               }};

constinit const HappeningArguments click = {"X,Y [right|other]", readClick, clickText};
constinit const HappeningArguments point = {"X,Y", readPoint, ownPointText};
constinit const HappeningArguments lines = {"ACROSS,DOWN", readPoint, ownPointText};
constinit const HappeningArguments drag = {"X,Y to X,Y [right|other]", readDrag, dragText};

constinit const HappeningArguments copied = {"TEXT",
                                             [](const Reading& reading) {
                                               reading.happening.text =
                                                   reading.words.name(reading.owner, "a text");
                                             },
                                             quotedText};

constinit const HappeningArguments input = {"TEXT",
                                            [](const Reading& reading) {
                                              reading.happening.text = reading.words.name(
                                                  reading.owner, "what arrives on standard input");
                                            },
                                            quotedText};

constinit const HappeningArguments display = {
    "NUMBER WIDTHxHEIGHT [at X,Y] [scale N] [mode unreadable]",
    [](const Reading& reading) { reading.happening.display = readDisplay(reading.words); },
    displayText};

constinit const HappeningArguments displayNumber = {"NUMBER", readDisplayNumber, numberText};

constinit const HappeningArguments signal = {
    "NUMBER",
    [](const Reading& reading) {
      reading.happening.number =
          static_cast<int>(reading.words.integer(reading.owner, "a signal's number", 1, 31));
    },
    numberText};

constinit const HappeningArguments sharing = {"APP [REASON]", readSharing, [](const Writing& with) {
                                                return writtenName(with.happening.pid, with.world) +
                                                       " " + quotedWord(with.happening.text);
                                              }};

constinit const HappeningArguments timeout = {
    "[timeout]",
    [](const Reading& reading) {
      reading.happening.number = reading.words.take("timeout") ? 1 : 0;
    },
    [](const Writing& with) { return std::string(with.happening.number == 1 ? "timeout" : ""); }};

}  // namespace happening_arguments

}  // namespace simulator
