#include "tests/support/posted_events.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <map>
#include <vector>

namespace testing_support {

namespace {

using platform::EventField;
using platform::EventImage;
using platform::Function;

bool isPost(const simulator::TraceEntry& entry) {
  return entry.call.function == Function::publicPost ||
         entry.call.function == Function::privatePost;
}

std::string pointText(platform::Point point) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.15g,%.15g", point.x, point.y);
  return text.data();
}

/// Every write of every field: one that is written twice shows twice.
std::string fieldsText(std::vector<EventField> fields) {
  std::stable_sort(fields.begin(), fields.end(),
                   [](const EventField& a, const EventField& b) { return a.field < b.field; });
  std::string text;
  for (const EventField& field : fields) {
    text += " " + std::to_string(field.field) + "=" + std::to_string(field.value);
  }
  return text;
}

/// The buttons that events were created with, by the events' identities.
std::map<std::int64_t, std::int64_t> createdButtons(TestMac& mac) {
  std::map<std::int64_t, std::int64_t> buttons;
  for (const auto& entry : mac.desktop().trace()) {
    if (entry.call.function != Function::createMouseEvent || entry.answer.isNothing()) continue;
    buttons[driver::unpack<std::int64_t>(entry.answer)] =
        driver::unpack<std::int64_t>(entry.call.arguments.at(2));
  }
  return buttons;
}

std::string lineOf(const simulator::TraceEntry& entry,
                   const std::map<std::int64_t, std::int64_t>& buttons) {
  const auto event = driver::unpack<EventImage>(entry.call.arguments.at(1));
  std::string line = simulator::milliseconds(entry.at) + " ms ";
  line.insert(0, line.size() < 9 ? 9 - line.size() : 0, ' ');
  line += entry.call.function == Function::privatePost ? "private to " : "public to ";
  line += std::to_string(driver::unpack<platform::Pid>(entry.call.arguments.at(0)));
  line += ": type " + std::to_string(event.type) + " at " + pointText(event.location);
  if (event.windowLocation) line += ", in window " + pointText(*event.windowLocation);
  const auto button = buttons.find(event.identity);
  if (button != buttons.end()) line += ", button " + std::to_string(button->second);
  if (event.vertical != 0 || event.horizontal != 0) {
    line +=
        ", wheels " + std::to_string(event.vertical) + " and " + std::to_string(event.horizontal);
  }
  line += event.fromSource ? ", source" : ", no source";
  if (event.flags == 0) line += ", no flags";
  return line + "\n        " + fieldsText(event.privateFields) + " |" +
         fieldsText(event.publicFields) + "\n";
}

}  // namespace

std::string postedEvents(TestMac& mac) {
  const auto buttons = createdButtons(mac);
  std::string lines;
  for (const auto& entry : mac.desktop().trace()) {
    if (isPost(entry)) lines += lineOf(entry, buttons);
  }
  return lines;
}

std::string postingTimes(TestMac& mac) {
  std::string times;
  for (const auto& entry : mac.desktop().trace()) {
    if (!isPost(entry)) continue;
    times += (times.empty() ? "" : " ") + simulator::milliseconds(entry.at);
  }
  return times;
}

std::string waits(TestMac& mac) {
  std::string lengths;
  for (const auto& entry : mac.desktop().trace()) {
    if (entry.call.function != Function::sleep) continue;
    lengths += (lengths.empty() ? "" : " ") +
               std::to_string(driver::unpack<std::uint32_t>(entry.call.arguments.at(0)));
  }
  return lengths;
}

}  // namespace testing_support
