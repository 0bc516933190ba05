#include <array>
#include <cstdio>

#include "simulator/world_text.h"

namespace simulator {

namespace {

std::string pointText(Point point) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.15g,%.15g", point.x, point.y);
  return text.data();
}

}  // namespace

std::string quotedWord(std::string_view word) {
  if (!word.empty() && word.find_first_of(" \t\r\n;\"#") == std::string_view::npos) {
    return std::string(word);
  }
  std::string quoted = "\"";
  for (const char c : word) {
    if (c == '\n') {
      quoted += "\\n";
      continue;
    }
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

std::string happeningText(const Happening& happening) {
  const std::string application = "pid:" + std::to_string(happening.pid);
  switch (happening.kind) {
    case Happening::Kind::lock:
      return "lock";
    case Happening::Kind::unlock:
      return "unlock";
    case Happening::Kind::leaveConsole:
      return "leave console";
    case Happening::Kind::returnToConsole:
      return "return to console";
    case Happening::Kind::quit:
      return "quit " + application;
    case Happening::Kind::endProcess:
      return "end process " + std::to_string(happening.pid);
    case Happening::Kind::bringToFront:
      return "front " + application;
    case Happening::Kind::hang:
      return "hang " + application;
    case Happening::Kind::recover:
      return "recover " + application;
    case Happening::Kind::userKey:
      return "user key " + quotedWord(happening.text);
    case Happening::Kind::userClick:
      return "user click " + pointText(happening.point);
    case Happening::Kind::userMove:
      return "user move " + pointText(happening.point);
    case Happening::Kind::removeDisplays:
      return "remove displays";
  }
  return "";
}

}  // namespace simulator
