#include "tests/soak/living.h"

#include <signal.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "tests/soak/command_lines.h"
#include "tests/soak/texts.h"

namespace soak {

namespace {

constexpr std::array<std::string_view, 2> sessionNames = {"one", "two"};

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

std::string opening(Random& random, const MacSketch& mac, const std::string& head) {
  const ApplicationSketch& application = random.pick(mac.applications);
  std::string line = head + ",\"app\":" + jsonText(address(random, application));
  if (random.oneIn(4)) line += ",\"window\":" + jsonText(title(random, mac.features));
  return line + "}";
}

std::string commanding(Random& random, const MacSketch& mac, const std::string& head) {
  const ApplicationSketch& application = random.pick(mac.applications);
  std::string list;
  for (const std::string& word : someSharedCommand(random, mac, application)) {
    list += (list.empty() ? "" : ",") + jsonText(word);
  }
  return head + ",\"args\":[" + list + "]}";
}

std::string request(Random& random, const MacSketch& mac) {
  if (random.oneIn(25)) return std::string(random.pick(otherLines));
  constexpr std::array<std::string_view, 7> kinds = {"open",    "open",    "command", "command",
                                                     "command", "refresh", "close"};
  const std::string kind(random.pick(kinds));
  const std::string session(random.pick(sessionNames));
  const std::string head = "{\"op\":\"" + kind + "\",\"session\":\"" + session + "\"";
  if (kind == "open") return opening(random, mac, head);
  if (kind == "command") return commanding(random, mac, head);
  return head + "}";
}

void addInput(Random& random, Microseconds duration, std::string text, Step& step) {
  step.deliveries.push_back(
      {Delivery::Kind::input, random.between(0, duration), std::move(text), 0});
}

Step captureService(Random& random, const MacSketch& mac, Microseconds duration) {
  Step step{{"capture-service", "FOLDER/lock"}};
  // A service depends on none.
  if (mac.features.service && random.oneIn(4)) step.environment["CU_CAPTURE_PID"] = "7";
  const ApplicationSketch& first = random.pick(mac.applications);
  step.deliveries.push_back(
      {Delivery::Kind::input, 0,
       "{\"op\":\"open\",\"session\":\"one\",\"app\":\"" + applicationText(first) + "\"}\n", 0});
  const std::size_t count = random.below(8);
  for (std::size_t i = 0; i < count; ++i) {
    addInput(random, duration, request(random, mac) + "\n", step);
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
    addInput(random, duration, std::string(random.pick(lines)), step);
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

constexpr std::array livingMakers = {captureService, captureService, captureService, guard,
                                     guard,          watcher,        displayHold};

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
  Step step = random.pick(livingMakers)(random, mac, duration);
  if (mac.features.scope && random.oneIn(3)) {
    step.environment["CU_WINDOW"] = title(random, mac.features);
  }
  addEnd(random, duration, step);
  step.beside = true;
  return step;
}

}  // namespace soak
