#include "simulator/mac/journal.h"

#include <array>
#include <charconv>
#include <iterator>
#include <nlohmann/json.hpp>

#include "simulator/mac/datum_text.h"
#include "simulator/mac/json_text.h"

namespace simulator {

namespace {

using Kind = JournalEntry::Kind;

/// The kinds, in their order, as a journal's line calls them.
constexpr const char* kindNames[] = {
    "event",   "focus",      "key",   "input", "action",    "write",  "landing", "capture",
    "sharing", "pasteboard", "cover", "awake", "screen",    "policy", "file",    "happening",
    "process", "request",    "reply", "fault", "violation", "wait",   "failure",
};
static_assert(std::size(kindNames) == static_cast<std::size_t>(Kind::failure) + 1);

const char* nameOf(Kind kind) { return kindNames[static_cast<std::size_t>(kind)]; }

std::string number(double value) {
  std::array<char, 32> text{};
  char* const start = text.data();
  const auto end = std::to_chars(start, start + text.size(), value, std::chars_format::general, 15);
  return {start, end.ptr};
}

/// Of a text a line for people shows no more than this.
constexpr std::size_t shownBytesMax = 120;

std::string pointText(Point point) { return number(point.x) + "," + number(point.y); }

std::string targetText(const JournalEntry& entry) {
  return std::to_string(entry.target) + "/" + std::to_string(entry.window);
}

/// What was written or came, as it stands in a line: a text in quotes.
std::string textIn(const JournalEntry& entry) {
  if (entry.isValue) return entry.text;
  if (!isReadable(entry.text)) return "<" + hexOf(entry.text) + ">";
  return "\"" + beginningOf(entry.text, shownBytesMax) + "\"";
}

std::string objectOf(const JournalEntry& entry) {
  std::string text;
  if (entry.element && entry.kind == Kind::write) {
    text += " of " + entry.element->role + " \"" + entry.element->label + "\"";
  }
  switch (entry.kind) {
    case Kind::write:
    case Kind::landing:
    case Kind::pasteboard:
    case Kind::request:
    case Kind::reply:
    case Kind::failure:
      return entry.text.empty() ? text : text + " " + textIn(entry);
    default:
      return text;
  }
}

std::string commandLineOf(const JournalEntry& entry) {
  std::string text;
  for (const auto* words : {&entry.variables, &entry.arguments}) {
    for (const std::string& word : *words) text += " " + shellWord(word);
  }
  return text;
}

/// What was done and what came of it.
std::string deedOf(const JournalEntry& entry) {
  // What people read is what was done: an event is posted.
  std::string line = entry.kind == Kind::event ? "post" : nameOf(entry.kind);
  if (entry.target != 0) line += " " + targetText(entry);
  if (!entry.what.empty()) line += " " + entry.what;
  if (entry.point) line += " " + pointText(*entry.point);
  if (!entry.route.empty()) line += " " + entry.route;
  line += objectOf(entry) + commandLineOf(entry);
  if (entry.landed && !*entry.landed) return line + " LOST: " + entry.outcome;
  const bool tells = entry.landed.value_or(false) || entry.kind == Kind::happening ||
                     entry.kind == Kind::process || entry.kind == Kind::fault ||
                     entry.kind == Kind::wait;
  return tells && !entry.outcome.empty() ? line + ": " + entry.outcome : line;
}

std::string timeOf(Microseconds time) {
  std::string text = milliseconds(time) + " ms";
  text.insert(0, text.size() < 8 ? 8 - text.size() : 0, ' ');
  return text + "  ";
}

nlohmann::json elementJson(const ElementName& element) {
  nlohmann::json named{{"label", textJson(element.label)}, {"role", element.role}};
  if (element.window != 0) named["window"] = element.window;
  return named;
}

}  // namespace

std::string milliseconds(Microseconds time) { return number(static_cast<double>(time) / 1000); }

std::string journalLine(const JournalEntry& entry) {
  nlohmann::json line{{"at", static_cast<double>(entry.at) / 1000},
                      {"kind", nameOf(entry.kind)},
                      {"number", entry.number}};
  if (entry.pid != 0) line["pid"] = entry.pid;
  if (entry.target != 0) line["target"] = entry.target;
  if (entry.window != 0) line["window"] = entry.window;
  if (!entry.what.empty()) line["what"] = entry.what;
  if (entry.point) line["point"] = {entry.point->x, entry.point->y};
  if (!entry.route.empty()) line["route"] = entry.route;
  if (entry.element) line["element"] = elementJson(*entry.element);
  if (!entry.text.empty()) line["text"] = textJson(entry.text);
  if (!entry.record.empty()) line["record"] = hexOf(entry.record);
  if (entry.landed) line["landed"] = *entry.landed;
  if (!entry.outcome.empty()) line["outcome"] = entry.outcome;
  if (!entry.arguments.empty()) {
    line["arguments"] = entry.arguments;
    line["variables"] = entry.variables;
  }
  return jsonLine(line);
}

std::string journalText(const JournalEntry& entry) {
  std::string process = entry.pid == 0 ? "-" : std::to_string(entry.pid);
  process.insert(0, process.size() < 7 ? 7 - process.size() : 0, ' ');
  return printable(timeOf(entry.at) + process + "  " + deedOf(entry));
}

std::string effectLine(const JournalEntry& entry, Microseconds start) {
  switch (entry.kind) {
    case Kind::capture:  // there are many
    case Kind::process:
    case Kind::request:
    case Kind::reply:
    case Kind::fault:
    case Kind::violation:
    case Kind::wait:
    case Kind::failure:
      return "";
    default:
      return printable(timeOf(entry.at - start) + deedOf(entry));
  }
}

}  // namespace simulator
