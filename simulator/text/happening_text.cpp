#include <array>
#include <cstdio>

#include "simulator/text/happening_text.h"
#include "simulator/world/keyboard_layouts.h"

namespace simulator {

namespace {

std::string pointText(Point point) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.15g,%.15g", point.x, point.y);
  return text.data();
}

std::string displayText(const Display& display) {
  std::array<char, 160> text{};
  const Rect& frame = display.frame;
  std::snprintf(text.data(), text.size(), "%u %.15gx%.15g at %.15g,%.15g scale %.15g", display.id,
                frame.width, frame.height, frame.x, frame.y, display.scale);
  return text.data() + std::string(display.modeReadable ? "" : " mode unreadable");
}

std::string modifiersText(std::uint64_t flags) {
  std::string text;
  for (const ModifierKey& key : modifierKeys) {
    if ((flags & key.flag) != 0) text += std::string(key.name) + " ";
  }
  return text;
}

/// What the user does, without what is peculiar to posted input.
std::string deedText(const Happening& happening) {
  constexpr const char* buttons[] = {"", " right", " other"};
  const std::string button = buttons[static_cast<int>(happening.button)];
  const std::string modifiers = modifiersText(happening.modifiers);
  const std::string point = pointText(happening.point);
  switch (happening.kind) {
    case Happening::Kind::userKey:
      return "key " + modifiers + quotedWord(happening.text);
    case Happening::Kind::userClick:
      return "click " + point + button;
    case Happening::Kind::userPress:
      return "press " + modifiers.substr(0, modifiers.size() - 1);
    case Happening::Kind::userRelease:
      return "release " + modifiers.substr(0, modifiers.size() - 1);
    case Happening::Kind::userScroll:
      return "scroll " + point;
    case Happening::Kind::userDrag:
      return "drag " + point + " to " + pointText(happening.end) + button;
    default:
      return "move " + point;
  }
}

std::string inputText(const Happening& happening) {
  std::string text = deedText(happening);
  if (happening.tagged) text += " tagged";
  if (happening.addressee != 0) text += " for pid:" + std::to_string(happening.addressee);
  return text;
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
    case Happening::Kind::userClick:
    case Happening::Kind::userMove:
    case Happening::Kind::userPress:
    case Happening::Kind::userRelease:
    case Happening::Kind::userScroll:
    case Happening::Kind::userDrag:
      return "user " + inputText(happening);
    case Happening::Kind::userCopy:
      return "user copy " + quotedWord(happening.text);
    case Happening::Kind::disableTaps:
      return happening.number == 1 ? "disable taps timeout" : "disable taps";
    case Happening::Kind::removeDisplays:
      return "remove displays";
    case Happening::Kind::connectDisplay:
      return "connect display " + displayText(happening.display);
    case Happening::Kind::disconnectDisplay:
      return "disconnect display " + std::to_string(happening.number);
    case Happening::Kind::signalProcesses:
      return "signal " + std::to_string(happening.number);
    case Happening::Kind::input:
      return "input " + quotedWord(happening.text);
    case Happening::Kind::closeInput:
      return "close input";
    case Happening::Kind::closeOutput:
      return "close output";
    case Happening::Kind::stallOutput:
      return "stall output";
    case Happening::Kind::resumeOutput:
      return "resume output";
    case Happening::Kind::requestTermination:
      return "request termination";
    case Happening::Kind::endApplicationLoop:
      return "end-loop";
    case Happening::Kind::stopSharing:
      return "stop sharing " + application + " " + quotedWord(happening.text);
    case Happening::Kind::withdrawRecording:
      return "withdraw recording";
  }
  return "";
}

}  // namespace simulator
