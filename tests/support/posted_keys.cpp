#include "tests/support/posted_keys.h"

#include <array>
#include <cstdio>
#include <vector>

#include "simulator/input/posted_keys.h"
#include "simulator/world/utf16_text.h"

namespace testing_support {

namespace {

using platform::EventImage;
using platform::Function;
using simulator::TraceEntry;

std::vector<TraceEntry> keyPosts(const TestMac& mac) {
  std::vector<TraceEntry> posts;
  for (const TraceEntry& entry : mac.desktop().trace()) {
    const Function function = entry.call.function;
    if (function != Function::publicPost && function != Function::privatePost) continue;
    const auto event = driver::unpack<EventImage>(entry.call.arguments.at(1));
    if (simulator::isKeyEvent(event)) posts.push_back(entry);
  }
  return posts;
}

std::string stepOf(const EventImage& event) {
  const bool up = event.type == static_cast<std::uint32_t>(quartz::EventType::keyUp);
  return (up ? "up " : "down ") + std::to_string(event.keyCode);
}

std::string flagsOf(const EventImage& event) {
  if (!event.flags) return "the user's flags";
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "flags 0x%llx",
                static_cast<unsigned long long>(*event.flags));
  return text.data();
}

std::string lineOf(const TraceEntry& entry) {
  const auto event = driver::unpack<EventImage>(entry.call.arguments.at(1));
  std::string line = simulator::milliseconds(entry.at) + " ms ";
  line.insert(0, line.size() < 9 ? 9 - line.size() : 0, ' ');
  line += entry.call.function == Function::privatePost ? "private to " : "public to ";
  line += std::to_string(driver::unpack<platform::Pid>(entry.call.arguments.at(0))) + ": ";
  line += stepOf(event);
  if (!event.text.empty()) line += " \"" + simulator::utf8Of(simulator::unitsOf(event.text)) + "\"";
  line += " " + flagsOf(event);
  if (event.fromSource) line += " source";
  for (const auto& [field, value] : event.privateFields) {
    line += " [" + std::to_string(field) + "=" + std::to_string(value) + "]";
  }
  for (const auto& [field, value] : event.publicFields) {
    line += " " + std::to_string(field) + "=" + std::to_string(value);
  }
  return line + "\n";
}

}  // namespace

std::string postedKeys(TestMac& mac) {
  std::string lines;
  for (const TraceEntry& entry : keyPosts(mac)) lines += lineOf(entry);
  return lines;
}

std::string keySteps(TestMac& mac) {
  std::string steps;
  for (const TraceEntry& entry : keyPosts(mac)) {
    steps += steps.empty() ? "" : ", ";
    steps += stepOf(driver::unpack<EventImage>(entry.call.arguments.at(1)));
  }
  return steps;
}

}  // namespace testing_support
