#include "simulator/text/happenings.h"

#include <algorithm>
#include <iterator>
#include <limits>

#include "base/numbers.h"
#include "simulator/input/user_input.h"
#include "simulator/text/display.h"
#include "simulator/world/element_text.h"
#include "simulator/world/keyboard_layouts.h"

namespace simulator {

namespace {

using Kind = Happening::Kind;

struct Reading {
  const World& world;
  Happening happening;
};

constexpr std::string_view pidPrefix = "pid:";
constexpr const char* aKey =
    "one character, or return, enter, tab, space, delete, backspace, forwarddelete, escape, home, "
    "end, pageup, pagedown, left, right, up or down";
constexpr const char* aModifier = "cmd, shift, option or control";

Pid applicationByPid(Words& words, const World& world, const std::string& name) {
  const auto pid = driver::parseInt32(std::string_view(name).substr(pidPrefix.size()));
  if (!pid || findApplication(world, *pid) == nullptr) {
    words.fail("no application '" + name + "' is running");
  }
  return *pid;
}

Pid readApplication(Words& words, const World& world, const char* owner) {
  const std::string name = words.name(owner, "an application's name or pid:N");
  if (std::string_view(name).substr(0, pidPrefix.size()) == pidPrefix) {
    return applicationByPid(words, world, name);
  }
  const auto isNamed = [&](const Application& each) { return each.running && each.name == name; };
  const auto& all = world.applications;
  const auto found = std::find_if(all.begin(), all.end(), isNamed);
  if (found == all.end()) words.fail("no application '" + name + "' is running");
  if (std::find_if(std::next(found), all.end(), isNamed) != all.end()) {
    words.fail("several applications are called '" + name + "'; name one as pid:N");
  }
  return found->pid;
}

const ModifierKey* takeModifier(Words& words) {
  for (const ModifierKey& key : modifierKeys) {
    if (words.take(key.name)) return &key;
  }
  return nullptr;
}

void readKey(Words& words, Reading& reading) {
  reading.happening.kind = Kind::userKey;
  while (const ModifierKey* modifier = takeModifier(words)) {
    reading.happening.modifiers |= modifier->flag;
  }
  std::string key = words.name("key", aKey);
  if (!codeNamed(key) && characterCount(key) != 1) {
    words.fail("unknown key '" + key + "'; expected " + aKey);
  }
  reading.happening.text = std::move(key);
}

void readModifier(Words& words, Reading& reading, const char* owner, Kind kind) {
  const ModifierKey* modifier = takeModifier(words);
  if (modifier == nullptr) words.failNeeding(owner, aModifier);
  reading.happening.kind = kind;
  reading.happening.modifiers = modifier->flag;
}

void readButton(Words& words, Happening& happening) {
  if (words.take("right")) {
    happening.button = MouseButton::right;
  } else if (words.take("other")) {
    happening.button = MouseButton::other;
  }
}

constexpr std::array<Option<Reading>, 8> userOptions = {{
    {"key", readKey},
    {"click",
     [](Words& words, Reading& reading) {
       reading.happening.kind = Kind::userClick;
       reading.happening.point = words.finitePoint("click");
       readButton(words, reading.happening);
     }},
    {"move",
     [](Words& words, Reading& reading) {
       reading.happening.kind = Kind::userMove;
       reading.happening.point = words.finitePoint("move");
     }},
    {"scroll",
     [](Words& words, Reading& reading) {
       reading.happening.kind = Kind::userScroll;
       reading.happening.point = words.finitePoint("scroll");
     }},
    {"drag",
     [](Words& words, Reading& reading) {
       reading.happening.kind = Kind::userDrag;
       reading.happening.point = words.finitePoint("drag");
       words.expect("drag", "to");
       reading.happening.end = words.finitePoint("to");
       readButton(words, reading.happening);
     }},
    {"press", [](Words& words,
                 Reading& reading) { readModifier(words, reading, "press", Kind::userPress); }},
    {"release",
     [](Words& words, Reading& reading) {
       readModifier(words, reading, "release", Kind::userRelease);
     }},
    {"copy",
     [](Words& words, Reading& reading) {
       reading.happening.kind = Kind::userCopy;
       reading.happening.text = words.name("copy", "a text");
     }},
}};

/// What is posted into the session, and not by the user's devices.
constexpr std::array<Option<Reading>, 2> postedOptions = {{
    {"tagged", [](Words&, Reading& reading) { reading.happening.tagged = true; }},
    {"for",
     [](Words& words, Reading& reading) {
       reading.happening.addressee = readApplication(words, reading.world, "for");
     }},
}};

void readUser(Words& words, Reading& reading) {
  if (words.atEnd()) words.failNeeding("user", ("one of " + wordsOf(userOptions)).c_str());
  userOptions[takeOption(words, userOptions)].read(words, reading);
  if (isInput(reading.happening.kind)) readOptions(words, postedOptions, reading);
}

void readStopSharing(Words& words, Reading& reading) {
  reading.happening.kind = Kind::stopSharing;
  words.expect("stop", "sharing");
  reading.happening.pid = readApplication(words, reading.world, "sharing");
  reading.happening.text = words.atEnd() ? userStopped : words.name("sharing", "the reason");
}

constexpr std::array<Option<Reading>, 2> closeOptions = {{
    {"input", [](Words&, Reading& reading) { reading.happening.kind = Kind::closeInput; }},
    {"output", [](Words&, Reading& reading) { reading.happening.kind = Kind::closeOutput; }},
}};

constexpr std::array<Option<Reading>, 23> kinds = {{
    {"lock", [](Words&, Reading& reading) { reading.happening.kind = Kind::lock; }},
    {"unlock", [](Words&, Reading& reading) { reading.happening.kind = Kind::unlock; }},
    {"leave",
     [](Words& words, Reading& reading) {
       reading.happening.kind = Kind::leaveConsole;
       words.expect("leave", "console");
     }},
    {"return",
     [](Words& words, Reading& reading) {
       reading.happening.kind = Kind::returnToConsole;
       words.expect("return", "to");
       words.expect("to", "console");
     }},
    {"quit",
     [](Words& words, Reading& reading) {
       reading.happening.kind = Kind::quit;
       reading.happening.pid = readApplication(words, reading.world, "quit");
     }},
    {"end",
     [](Words& words, Reading& reading) {
       reading.happening.kind = Kind::endProcess;
       words.expect("end", "process");
       reading.happening.pid = static_cast<Pid>(
           words.integer("process", "a process id", 1, std::numeric_limits<Pid>::max()));
     }},
    {"front",
     [](Words& words, Reading& reading) {
       reading.happening.kind = Kind::bringToFront;
       reading.happening.pid = readApplication(words, reading.world, "front");
     }},
    {"hang",
     [](Words& words, Reading& reading) {
       reading.happening.kind = Kind::hang;
       reading.happening.pid = readApplication(words, reading.world, "hang");
     }},
    {"recover",
     [](Words& words, Reading& reading) {
       reading.happening.kind = Kind::recover;
       reading.happening.pid = readApplication(words, reading.world, "recover");
     }},
    {"user", readUser},
    {"remove",
     [](Words& words, Reading& reading) {
       reading.happening.kind = Kind::removeDisplays;
       words.expect("remove", "displays");
     }},
    {"connect",
     [](Words& words, Reading& reading) {
       reading.happening.kind = Kind::connectDisplay;
       words.expect("connect", "display");
       reading.happening.display = readDisplay(words);
     }},
    {"disconnect",
     [](Words& words, Reading& reading) {
       reading.happening.kind = Kind::disconnectDisplay;
       words.expect("disconnect", "display");
       reading.happening.number = static_cast<int>(
           words.integer("display", "a number from 1 on", 1, std::numeric_limits<int>::max()));
     }},
    {"signal",
     [](Words& words, Reading& reading) {
       reading.happening.kind = Kind::signalProcesses;
       reading.happening.number =
           static_cast<int>(words.integer("signal", "a signal's number", 1, 31));
     }},
    {"input",
     [](Words& words, Reading& reading) {
       reading.happening.kind = Kind::input;
       reading.happening.text = words.name("input", "what arrives on standard input");
     }},
    {"close",
     [](Words& words, Reading& reading) {
       if (words.atEnd()) words.failNeeding("close", "input or output");
       closeOptions[takeOption(words, closeOptions)].read(words, reading);
     }},
    {"stall",
     [](Words& words, Reading& reading) {
       reading.happening.kind = Kind::stallOutput;
       words.expect("stall", "output");
     }},
    {"resume",
     [](Words& words, Reading& reading) {
       reading.happening.kind = Kind::resumeOutput;
       words.expect("resume", "output");
     }},
    {"request",
     [](Words& words, Reading& reading) {
       reading.happening.kind = Kind::requestTermination;
       words.expect("request", "termination");
     }},
    {"end-loop",
     [](Words&, Reading& reading) { reading.happening.kind = Kind::endApplicationLoop; }},
    {"stop", readStopSharing},
    {"withdraw",
     [](Words& words, Reading& reading) {
       reading.happening.kind = Kind::withdrawRecording;
       words.expect("withdraw", "recording");
     }},
    {"disable",
     [](Words& words, Reading& reading) {
       reading.happening.kind = Kind::disableTaps;
       words.expect("disable", "taps");
       reading.happening.number = words.take("timeout") ? 1 : 0;
     }},
}};

}  // namespace

Happening readHappening(Words& words, const World& world) {
  if (words.atEnd()) words.fail("something must happen: " + wordsOf(kinds));
  Reading reading{world, {}};
  kinds[takeOption(words, kinds)].read(words, reading);
  words.expectEnd();
  return reading.happening;
}

}  // namespace simulator
