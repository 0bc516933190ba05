#include "simulator/snapshot/state_lines.h"

#include <algorithm>

#include "simulator/text/gathering.h"
#include "simulator/text/happenings.h"
#include "simulator/text/reaction_arguments.h"
#include "simulator/text/value_text.h"
#include "simulator/text/words.h"

namespace simulator {

namespace {

template <class Value>
std::string textOf(const Value& value) {
  std::string text;
  writeValue(text, value);
  return text;
}

/// An option of a line, where it is so.
std::string when(bool isSo, const char* words) { return isSo ? words : ""; }

std::string userLine(const User& user) {
  return "user" + textOf(user.fullName) + " login " + quotedWord(user.loginName) +
         when(!user.nameParses, " unparsable");
}

std::string displayLine(const Display& display) {
  const Rect& frame = display.frame;
  std::string text =
      "display " + std::to_string(display.id) + textOf(Size{frame.width, frame.height});
  if (frame.x != 0 || frame.y != 0) text += " at" + textOf(Point{frame.x, frame.y});
  if (display.scale != 1) text += " scale" + textOf(display.scale);
  return text + when(!display.modeReadable, " mode unreadable");
}

std::string denials(const World& world) {
  return when(!world.accessibilityAllowed, " accessibility") +
         when(!world.displayHoldAllowed, " display-hold") +
         when(!world.keysInTapsAllowed, " keys-in-taps") +
         when(!world.screenRecordingAllowed, " screen-recording");
}

std::string sessionWords(const Session& session) {
  std::string text = when(session.locked.value_or(false), " locked") +
                     when(session.onConsole == false, " off-console") +
                     when(!session.onConsole, " without-console-key") +
                     when(!session.readable, " unreadable");
  if (session.lockDelay != Session().lockDelay) {
    text += " locks after " + spanText({session.lockDelay, session.lockDelay});
  }
  return text;
}

void addPasteboard(const Pasteboard& pasteboard, std::vector<std::string>& lines) {
  for (const Pasteboard::Item& item : pasteboard.items) {
    if (item.empty()) return;  // no line says so
    std::string line = "pasteboard item";
    for (const Pasteboard::Entry& entry : item) {
      line +=
          entry.data ? textOf(entry.type) + textOf(*entry.data) : " promises" + textOf(entry.type);
    }
    lines.push_back(std::move(line));
  }
}

/// Empty where the line has no words for it.
std::string languagesLine(const System& system) {
  std::string list;
  for (const std::string& each : system.languages) {
    if (quotedWord(each) != each || each.find(',') != each.npos) return "";
    list += (list.empty() ? "languages " : ",") + each;
  }
  return list;
}

void addSystem(const System& system, std::vector<std::string>& lines) {
  const auto& version = system.version;
  lines.push_back("macos " + std::to_string(version.major) + "." + std::to_string(version.minor));
  const std::string languages = languagesLine(system);
  if (!languages.empty()) lines.push_back(languages);
  if (system.directory) lines.push_back("directory" + textOf(*system.directory));
  for (const auto& [path, output] : system.tools) {
    lines.push_back("tool" + textOf(path) + " output" + textOf(output));
  }
  for (const auto& [path, target] : system.links) {
    lines.push_back("link" + textOf(path) + " to" + textOf(target));
  }
}

std::string tokenText(const Token& token) {
  return token.kind == Token::Kind::text ? inQuotes(token.text) : token.text;
}

std::string lineText(const Line& line) {
  std::string text;
  for (const Token& token : line.tokens) text += (text.empty() ? "" : " ") + tokenText(token);
  return text;
}

}  // namespace

std::vector<std::string> stateLines(const World& world) {
  std::vector<std::string> lines;
  addSystem(world.system, lines);
  if (world.seed) lines.push_back("seed" + textOf(*world.seed));
  lines.push_back(userLine(world.user));
  lines.push_back("keyboard" + textOf(world.keyboard.layout));
  lines.push_back("pointer" + textOf(world.pointer));
  for (const Display& each : world.displays) lines.push_back(displayLine(each));
  const std::string denied = denials(world);
  if (!denied.empty()) lines.push_back("deny" + denied);
  const std::string session = sessionWords(world.session);
  if (!session.empty()) lines.push_back("session" + session);
  for (const std::string& each : world.missing) lines.push_back("missing " + quotedWord(each));
  for (const Pid each : world.processes) lines.push_back("process" + textOf(each));
  for (const std::string& each : world.files) lines.push_back("file" + textOf(each));
  for (const std::string& each : world.images) lines.push_back("image" + textOf(each));
  if (!world.activity.before) lines.emplace_back("idle never");
  addPasteboard(world.pasteboard, lines);
  return lines;
}

std::vector<std::string> scriptLines(const World& world) {
  std::vector<const Scripted*> script;
  for (const Scripted& each : world.script) script.push_back(&each);
  std::stable_sort(script.begin(), script.end(),
                   [](const Scripted* a, const Scripted* b) { return a->place < b->place; });
  std::vector<std::string> lines;
  for (const Scripted* each : script) {
    std::string line = "at " + spanText({each->at, each->at});
    if (each->chance) line += " drawn" + textOf(*each->chance);
    if (each->every) line += " every " + spanText(*each->every);
    if (each->every && each->times) line += textOf(*each->times) + " times";
    lines.push_back(line + " " + happeningText(each->happening));
  }
  return lines;
}

std::vector<std::string> definitionLines(const World& world) {
  std::vector<std::string> lines;
  if (world.definitions == nullptr) return lines;
  for (const auto& [name, definition] : world.definitions->byName) {
    std::string head = "define " + name;
    for (std::size_t i = 0; i < definition.parameters.size(); ++i) {
      head += (i == 0 ? "(" : ", ") + definition.parameters[i];
    }
    lines.push_back(definition.parameters.empty() ? head : head + ")");
    const std::size_t least = definition.body.front().indentation;
    constexpr std::size_t step = 4;
    for (const Line& each : definition.body) {
      lines.push_back(std::string(step + each.indentation - least, ' ') + lineText(each));
    }
  }
  return lines;
}

}  // namespace simulator
