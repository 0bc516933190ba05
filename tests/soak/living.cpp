#include "tests/soak/living.h"

#include <signal.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "tests/soak/command_lines.h"
#include "tests/soak/texts.h"

namespace soak {

namespace {

/// Requests that are none.
constexpr std::array<std::string_view, 12> otherLines = {
    "",
    "{}",
    "[]",
    "null",
    "{\"op\":\"open\"}",
    "{\"op\":\"open\",\"session\":\"one\",\"app\":7}",
    "{\"op\":\"command\",\"session\":\"one\",\"args\":[]}",
    "{\"op\":\"command\",\"session\":\"one\",\"args\":[\"capture-probe\"]}",
    "{\"op\":\"shout\",\"session\":\"one\"}",
    "{\"op\":\"close\",\"session\":\"three\"}",
    "{\"session\":\"one\",\"op\":\"refresh\"} ",
    "\xFF"};

/// As JSON has it, but for bytes that are no text.
std::string jsonText(std::string_view text) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string result = "\"";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20) {
      result += "\\u00";
      result += digits[byte / 16];
      result += digits[byte % 16];
      continue;
    }
    if (c == '"' || c == '\\') result += '\\';
    result += c;
  }
  return result + '"';
}

/// A session of the service, and the application that it is most often about.
struct Session {
  std::string_view name;
  const ApplicationSketch* application;
  std::string address;  // as the client writes it
};

Session someSession(Random& random, const MacSketch& mac, std::string_view name) {
  const ApplicationSketch& application = random.pick(mac.applications);
  return {name, &application, address(random, application)};
}

std::string opening(Random& random, const MacSketch& mac, const Session& session) {
  std::string rest = ",\"app\":" + jsonText(session.address);
  if (random.oneIn(4)) rest += ",\"window\":" + jsonText(title(random, mac.features));
  return rest;
}

std::string commanding(Random& random, const MacSketch& mac, const Session& session) {
  CommandLine words = someSharedCommand(random, mac, *session.application);
  // Of another application it is refused.
  if (!random.oneIn(12)) words[1] = session.address;
  std::string list;
  for (const std::string& word : words) list += (list.empty() ? "" : ",") + jsonText(word);
  return ",\"args\":[" + list + "]";
}

std::string lineOf(const Session& session, const std::string& kind, const std::string& rest) {
  return "{\"op\":\"" + kind + "\",\"session\":\"" + std::string(session.name) + "\"" + rest +
         "}\n";
}

std::string request(Random& random, const MacSketch& mac, const Session& session) {
  if (random.oneIn(25)) return std::string(random.pick(otherLines)) + "\n";
  constexpr std::array<std::string_view, 10> kinds = {"command", "command", "command", "command",
                                                      "refresh", "refresh", "refresh", "close",
                                                      "close",   "open"};
  const std::string kind(random.pick(kinds));
  std::string rest;
  if (kind == "open") rest = opening(random, mac, session);
  if (kind == "command") rest = commanding(random, mac, session);
  return lineOf(session, kind, rest);
}

void addInput(Microseconds at, std::string text, Step& step) {
  step.deliveries.push_back({Delivery::Kind::input, at, std::move(text), 0});
}

/// The session is opened, most often shares a window, and at times holds focus.
void addBeginning(Random& random, const MacSketch& mac, const Session& session, Step& step) {
  addInput(0, lineOf(session, "open", opening(random, mac, session)), step);
  if (random.oneIn(4)) return;
  addInput(0, lineOf(session, "refresh", ""), step);
  const std::string words = "\"bg-focus-hold\"," + jsonText(session.address);
  const std::size_t holds = random.below(3);
  for (std::size_t i = 0; i < holds; ++i) {
    addInput(0, lineOf(session, "command", ",\"args\":[" + words + "]"), step);
  }
}

Step captureService(Random& random, const MacSketch& mac, Microseconds duration) {
  Step step{{"capture-service", "FOLDER/lock"}};
  // A service depends on none.
  if (mac.features.service && random.oneIn(4)) step.environment["CU_CAPTURE_PID"] = "7";
  std::vector<Session> sessions = {someSession(random, mac, "one")};
  if (random.oneIn(2)) sessions.push_back(someSession(random, mac, "two"));
  for (const Session& session : sessions) addBeginning(random, mac, session, step);
  const std::size_t count = random.below(8);
  for (std::size_t i = 0; i < count; ++i) {
    std::string line = request(random, mac, random.pick(sessions));
    addInput(random.between(0, duration), std::move(line), step);
  }
  return step;
}

Step guard(Random& random, const MacSketch& mac, Microseconds duration) {
  Step step{{"lock-guard"}};
  auto& environment = step.environment;
  constexpr std::array<std::string_view, 5> graces = {"3", "0.5", "nan", "60", "-1"};
  if (random.oneIn(3)) environment["ZENTROVE_COVER_GRACE"] = random.pick(graces);
  if (random.oneIn(4)) environment["ZENTROVE_COVER_OPERATING"] = "1";
  if (random.oneIn(4)) environment["ZENTROVE_DESK_LANG"] = "zh";
  if (random.oneIn(4)) environment["ZENTROVE_COVER_FACE"] = "/face.png";
  if (random.oneIn(4)) {
    environment["ZENTROVE_COVER_NAME"] = label(random, mac.features);
  }
  constexpr std::array<std::string_view, 7> lines = {"operating\n",
                                                     "minding\n",
                                                     "  minding \n",
                                                     "operat",
                                                     "what?\n",
                                                     "operating\r\n",
                                                     "minding\noperating\nminding\noperating\n"};
  const std::size_t count = random.below(4);
  for (std::size_t i = 0; i < count; ++i) {
    std::string line(random.pick(lines));
    addInput(random.between(0, duration), std::move(line), step);
  }
  return step;
}

Step watcher(Random& random, const MacSketch& mac, Microseconds /*duration*/) {
  Step step{{"watch-input"}};
  if (random.oneIn(2)) step.words.push_back(address(random, random.pick(mac.applications)));
  return step;
}

Step displayHold(Random& /*random*/, const MacSketch& /*mac*/, Microseconds /*duration*/) {
  return {{"keep-awake"}};
}

struct LivingMaker {
  std::string_view command;
  Step (*make)(Random& random, const MacSketch& mac, Microseconds duration);
};

constexpr std::array livingMakers = {LivingMaker{"capture-service", captureService},
                                     LivingMaker{"capture-service", captureService},
                                     LivingMaker{"capture-service", captureService},
                                     LivingMaker{"lock-guard", guard},
                                     LivingMaker{"lock-guard", guard},
                                     LivingMaker{"watch-input", watcher},
                                     LivingMaker{"keep-awake", displayHold}};

/// Of what the case is about, most often.
const LivingMaker& someMaker(Random& random, const Aim* aim) {
  const bool isAimed = !random.oneIn(4);
  for (const LivingMaker& maker : livingMakers) {
    if (isAimed && isAbout(aim, maker.command)) return maker;
  }
  return random.pick(livingMakers);
}

/// How somebody ends it: its input, a signal, at times SIGKILL.
void addEnd(Random& random, Microseconds duration, Step& step) {
  constexpr std::array endings = {SIGTERM, SIGTERM, SIGINT, SIGHUP, SIGKILL};
  const bool livesForEver = step.words.front() == "keep-awake";
  Delivery end;
  end.at = random.between(duration / 2, duration);
  if (random.oneIn(6)) end.at = random.between(0, duration / 200);
  if (livesForEver || random.oneIn(3)) {
    end.kind = Delivery::Kind::signal;
    end.signal = random.pick(endings);
  } else {
    end.kind = Delivery::Kind::endOfInput;
  }
  step.deliveries.push_back(end);
  std::stable_sort(step.deliveries.begin(), step.deliveries.end(),
                   [](const Delivery& a, const Delivery& b) { return a.at < b.at; });
}

}  // namespace

Step someLivingRun(Random& random, const MacSketch& mac, Microseconds duration) {
  Step step = someMaker(random, mac.aim).make(random, mac, duration);
  if (mac.features.scope && random.oneIn(3)) {
    step.environment["CU_WINDOW"] = title(random, mac.features);
  }
  addEnd(random, duration, step);
  step.beside = true;
  return step;
}

}  // namespace soak
