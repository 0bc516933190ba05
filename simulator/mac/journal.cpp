#include "simulator/mac/journal.h"

#include <array>
#include <cstdio>
#include <iterator>
#include <nlohmann/json.hpp>

namespace simulator {

namespace {

using Kind = JournalEntry::Kind;

/// The kinds, in their order, as a journal's line calls them.
constexpr const char* kindNames[] = {
    "event",      "focus", "key",   "input",  "action", "write", "capture",   "sharing",
    "pasteboard", "cover", "awake", "screen", "policy", "file",  "happening",
};
static_assert(std::size(kindNames) == static_cast<std::size_t>(Kind::happening) + 1);

const char* nameOf(Kind kind) { return kindNames[static_cast<std::size_t>(kind)]; }

std::string number(double value) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.15g", value);
  return text.data();
}

std::string pointText(Point point) { return number(point.x) + "," + number(point.y); }

std::string targetText(const JournalEntry& entry) {
  return std::to_string(entry.target) + "/" + std::to_string(entry.window);
}

}  // namespace

std::string milliseconds(Microseconds time) { return number(static_cast<double>(time) / 1000); }

std::string journalLine(const JournalEntry& entry) {
  nlohmann::json line{{"at", static_cast<double>(entry.at) / 1000}, {"kind", nameOf(entry.kind)}};
  if (entry.target != 0) line["target"] = entry.target;
  if (entry.window != 0) line["window"] = entry.window;
  if (!entry.what.empty()) line["what"] = entry.what;
  if (entry.point) line["point"] = {entry.point->x, entry.point->y};
  if (!entry.route.empty()) line["route"] = entry.route;
  if (entry.landed) line["landed"] = *entry.landed;
  if (!entry.outcome.empty()) line["outcome"] = entry.outcome;
  return line.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string effectLine(const JournalEntry& entry, Microseconds start) {
  // A capture changes nothing, and there are many.
  if (entry.kind == Kind::capture) return "";
  std::string line = milliseconds(entry.at - start) + " ms";
  line.insert(0, line.size() < 8 ? 8 - line.size() : 0, ' ');
  // What people read is what was done: an event is posted.
  line += "  ";
  line += entry.kind == Kind::event ? "post" : nameOf(entry.kind);
  if (entry.target != 0) line += " " + targetText(entry);
  if (!entry.what.empty()) line += " " + entry.what;
  if (entry.point) line += " " + pointText(*entry.point);
  if (!entry.route.empty()) line += " " + entry.route;
  if (entry.landed && !*entry.landed) line += " LOST: " + entry.outcome;
  if (entry.landed.value_or(false) && !entry.outcome.empty()) line += ": " + entry.outcome;
  return line;
}

}  // namespace simulator
