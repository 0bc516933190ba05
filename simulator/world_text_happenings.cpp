#include "simulator/world_text_happenings.h"

#include <algorithm>
#include <iterator>
#include <limits>

#include "base/numbers.h"
#include "simulator/element_text.h"

namespace simulator {

namespace {

using Kind = Happening::Kind;

struct Reading {
  const World& world;
  Happening happening;
};

constexpr std::string_view pidPrefix = "pid:";
constexpr const char* keyNames[] = {"return", "enter", "tab",   "space", "delete", "backspace",
                                    "escape", "left",  "right", "up",    "down"};
constexpr const char* aKey =
    "one character, or return, enter, tab, space, delete, backspace, escape, left, right, up or "
    "down";

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

std::string readKey(Words& words) {
  std::string key = words.name("key", aKey);
  const bool isNamed =
      std::find(std::begin(keyNames), std::end(keyNames), key) != std::end(keyNames);
  if (!isNamed && characterCount(key) != 1)
    words.fail("unknown key '" + key + "'; expected " + aKey);
  return key;
}

constexpr std::array<Option<Reading>, 3> userOptions = {{
    {"key",
     [](Words& words, Reading& reading) {
       reading.happening.kind = Kind::userKey;
       reading.happening.text = readKey(words);
     }},
    {"click",
     [](Words& words, Reading& reading) {
       reading.happening.kind = Kind::userClick;
       reading.happening.point = words.finitePoint("click");
     }},
    {"move",
     [](Words& words, Reading& reading) {
       reading.happening.kind = Kind::userMove;
       reading.happening.point = words.finitePoint("move");
     }},
}};

constexpr std::array<Option<Reading>, 11> kinds = {{
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
    {"user",
     [](Words& words, Reading& reading) {
       if (words.atEnd()) words.failNeeding("user", "key, click or move");
       userOptions[takeOption(words, userOptions)].read(words, reading);
     }},
    {"remove",
     [](Words& words, Reading& reading) {
       reading.happening.kind = Kind::removeDisplays;
       words.expect("remove", "displays");
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
