#include "simulator/companion/waiting.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <set>
#include <string_view>
#include <utility>

#include "simulator/companion/failure.h"
#include "simulator/companion/tree.h"
#include "simulator/text/parse.h"
#include "simulator/text/words.h"
#include "simulator/world/element_text.h"
#include "simulator/world/elements.h"

namespace companion {

namespace {

using simulator::Application;
using simulator::AttributeValue;
using simulator::Element;
using simulator::World;
using Words = std::vector<std::string>;

constexpr simulator::Microseconds lengthWithout = 10'000'000;  // "within"

/// Whether an element that can be seen fits.
template <class Fits>
bool anyShown(const World& world, const Application& application, Fits fits) {
  std::vector<simulator::ElementId> open = application.windows;
  for (const Element& each : application.elements) {
    if (each.parent == 0 && each.window == 0 && !each.removed) open.push_back(each.id);
  }
  std::set<simulator::ElementId> seen;  // trees may have circles
  while (!open.empty()) {
    const Element* element = simulator::findElement(application, open.back());
    open.pop_back();
    if (element == nullptr || !seen.insert(element->id).second) continue;
    if (fits(*element)) return true;
    const auto children = simulator::childrenOf(world, application, *element);
    open.insert(open.end(), children.begin(), children.end());
  }
  return false;
}

bool contains(const Element& element, const char* attribute, const std::string& text) {
  const std::string* value = simulator::textAttribute(element, attribute);
  return value != nullptr && value->find(text) != value->npos;
}

bool shows(const World& world, const Application& application, const Words& words) {
  return anyShown(world, application, [&](const Element& element) {
    return contains(element, "AXValue", words[0]) || contains(element, "AXTitle", words[0]) ||
           contains(element, "AXDescription", words[0]);
  });
}

bool hasWindow(const World& world, const Application& application, const Words& words) {
  return std::any_of(world.windows.begin(), world.windows.end(), [&](const auto& window) {
    return window.owner == application.pid && window.onScreen && window.title == words[0];
  });
}

bool hasElement(const World& world, const Application& application, const Words& words) {
  return anyShown(world, application,
                  [&](const Element& element) { return simulator::labelOf(element) == words[0]; });
}

/// As it is written on a command line.
std::string textOf(const AttributeValue& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  if (const auto* flag = std::get_if<bool>(&value)) return *flag ? "true" : "false";
  if (const auto* integer = std::get_if<std::int64_t>(&value)) return std::to_string(*integer);
  const auto* number = std::get_if<double>(&value);
  if (number == nullptr) return "";
  std::array<char, 32> digits{};
  return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), *number).ptr};
}

bool hasValue(const World& world, const Application& application, const Words& words) {
  return anyShown(world, application, [&](const Element& element) {
    const auto value = element.attributes.find("AXValue");
    return simulator::labelOf(element) == words[0] && value != element.attributes.end() &&
           textOf(value->second) == words[1];
  });
}

struct ConditionKind {
  std::string_view word;
  std::size_t count;  // of the words that follow
  bool (*isMet)(const World& world, const Application& application, const Words& words);
};

constexpr std::array<ConditionKind, 4> conditions = {{
    {"shows", 1, shows},
    {"window", 1, hasWindow},
    {"element", 1, hasElement},
    {"value", 2, hasValue},
}};

constexpr const char* form =
    "\"wait\" needs a time, or until APP and one of: shows TEXT, window TITLE, element LABEL, "
    "value LABEL TEXT, each with gone behind it or not; gone alone: it has quit";

/// Takes the limit off the end.
simulator::Microseconds takeLimit(Words& words) {
  if (words.size() < 2 || words[words.size() - 2] != "within") return lengthWithout;
  const auto limit = simulator::parseTime(words.back(), "within");
  words.resize(words.size() - 2);
  return limit;
}

std::string described(const Words& words) {
  std::string text;
  for (const std::string& word : words)
    text += (text.empty() ? "" : " ") + simulator::quotedWord(word);
  return text;
}

}  // namespace

Wait readWait(const Words& words, const World& world) {
  if (words.size() == 1) return {simulator::parseTime(words[0], "wait")};
  Words rest(words.begin() + std::min<std::ptrdiff_t>(1, std::ssize(words)), words.end());
  if (words.empty() || words[0] != "until") throw Failure(form);
  Wait wait;
  wait.length = takeLimit(rest);
  wait.what = described(rest);
  if (rest.size() < 2) throw Failure(form);
  const simulator::Pid pid = applicationCalled(world, rest[0]).pid;
  const bool gone = rest.back() == "gone";
  if (gone) rest.pop_back();
  const auto find = [pid](const World& present) {
    return simulator::findApplication(present, pid);
  };
  if (gone && rest.size() == 1) {
    wait.isMet = [=](const World& present) { return find(present) == nullptr; };
    return wait;
  }
  const auto kind =
      std::find_if(conditions.begin(), conditions.end(), [&](const ConditionKind& each) {
        return each.word == rest[1] && each.count + 2 == rest.size();
      });
  if (kind == conditions.end()) throw Failure(form);
  const Words arguments(rest.begin() + 2, rest.end());
  wait.isMet = [=, isMet = kind->isMet](const World& present) {
    const Application* application = find(present);
    return (application != nullptr && isMet(present, *application, arguments)) != gone;
  };
  return wait;
}

}  // namespace companion
