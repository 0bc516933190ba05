#include "simulator/companion/waiting.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <deque>
#include <set>
#include <string_view>
#include <utility>

#include "simulator/companion/failure.h"
#include "simulator/companion/tree.h"
#include "simulator/mac/datum_text.h"
#include "simulator/text/nearest.h"
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

/// Whether an element that can be seen fits. They are asked in the order of the tree.
template <class Fits>
bool anyShown(const World& world, const Application& application, Fits fits) {
  std::deque<simulator::ElementId> open(application.windows.begin(), application.windows.end());
  for (const Element& each : application.elements) {
    if (each.parent == 0 && each.window == 0 && !each.removed) open.push_back(each.id);
  }
  std::set<simulator::ElementId> seen;  // trees may have circles
  while (!open.empty()) {
    const Element* element = simulator::findElement(application, open.front());
    open.pop_front();
    if (element == nullptr || !seen.insert(element->id).second) continue;
    if (fits(*element)) return true;
    const auto children = simulator::childrenOf(world, application, *element);
    open.insert(open.begin(), children.begin(), children.end());
  }
  return false;
}

constexpr std::size_t shownListBytesMax = 300;
constexpr std::size_t shownTextBytesMax = 100;

/// As much of a list as anybody reads.
std::string beginningOfList(const Words& items, const char* between) {
  std::string list;
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (list.size() > shownListBytesMax) {
      return list + " and " + std::to_string(items.size() - i) + " more";
    }
    if (i > 0) list += between;
    list += items[i];
  }
  return list;
}

/// As much of a text as anybody reads, as it is written on a command line.
std::string beginningInQuotes(const std::string& text) {
  return simulator::inQuotes(simulator::beginningOf(text, shownTextBytesMax));
}

/// Texts in the order in which they are seen, each once, and none that is empty.
class SeenTexts {
 public:
  void add(const std::string& text) {
    if (!text.empty() && known_.insert(text).second) all_.push_back(text);
  }

  bool isEmpty() const { return all_.empty(); }

  /// What is nearest to `wanted` stands first, as there may be more than anybody reads.
  std::string listed(const std::string& wanted) const {
    Words texts = all_;
    const auto first = std::find(texts.begin(), texts.end(), simulator::nearest(wanted, texts));
    if (first != texts.end()) std::rotate(texts.begin(), first, first + 1);
    std::transform(texts.begin(), texts.end(), texts.begin(), beginningInQuotes);
    return beginningOfList(texts, ", ");
  }

 private:
  Words all_;
  std::set<std::string> known_;  // the same: an application may show very many
};

/// What there was, or that there was nothing.
std::string toldOf(const std::string& some, const SeenTexts& texts, const std::string& wanted,
                   const std::string& none) {
  return texts.isEmpty() ? none : some + " " + texts.listed(wanted);
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

std::string shownTexts(const World& world, const Application& application, const Words& words) {
  SeenTexts texts;
  anyShown(world, application, [&](const Element& element) {
    for (const char* attribute : {"AXValue", "AXTitle", "AXDescription"}) {
      const std::string* text = simulator::textAttribute(element, attribute);
      if (text != nullptr) texts.add(*text);
    }
    return false;
  });
  return toldOf("it showed", texts, words[0], "it showed no text");
}

bool hasWindow(const World& world, const Application& application, const Words& words) {
  return std::any_of(world.windows.begin(), world.windows.end(), [&](const auto& window) {
    return window.owner == application.pid && window.onScreen && window.title == words[0];
  });
}

std::string windowTitles(const World& world, const Application& application, const Words& words) {
  SeenTexts titles;
  for (const simulator::Window& window : world.windows) {
    const bool isSeen = window.owner == application.pid && window.onScreen;
    if (isSeen) titles.add(window.title.value_or(""));
  }
  return toldOf("it had the windows", titles, words[0], "it had no window with a title");
}

bool hasElement(const World& world, const Application& application, const Words& words) {
  return anyShown(world, application,
                  [&](const Element& element) { return simulator::labelOf(element) == words[0]; });
}

std::string elementLabels(const World& world, const Application& application, const Words& words) {
  SeenTexts labels;
  anyShown(world, application, [&](const Element& element) {
    labels.add(simulator::labelOf(element));
    return false;
  });
  return toldOf("it had the elements", labels, words[0], "it had no element with a label");
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

/// Of the elements with the label; of all elements when there is none.
std::string valuesOf(const World& world, const Application& application, const Words& words) {
  Words values;
  anyShown(world, application, [&](const Element& element) {
    if (simulator::labelOf(element) != words[0]) return false;
    const auto value = element.attributes.find("AXValue");
    const bool hasOne = value != element.attributes.end();
    values.push_back(hasOne ? beginningInQuotes(textOf(value->second)) : "no value");
    return false;
  });
  if (values.empty()) return elementLabels(world, application, words);
  return simulator::inQuotes(words[0]) + " had " + beginningOfList(values, " and ");
}

struct ConditionKind {
  std::string_view word;
  std::size_t count;  // of the words that follow
  bool (*isMet)(const World& world, const Application& application, const Words& words);
  std::string (*instead)(const World& world, const Application& application, const Words& words);
};

constexpr std::array<ConditionKind, 4> conditions = {{
    {"shows", 1, shows, shownTexts},
    {"window", 1, hasWindow, windowTitles},
    {"element", 1, hasElement, elementLabels},
    {"value", 2, hasValue, valuesOf},
}};

constexpr const char* form =
    "\"wait\" needs a time, or until APP and one of: shows TEXT, window TITLE, element LABEL, "
    "value LABEL TEXT, each with gone behind it or not; gone alone: it has quit";

/// For a word that is nearly one of a condition.
std::string guessed(const std::string& word) {
  std::vector<std::string> known = {"gone"};
  for (const ConditionKind& each : conditions) known.emplace_back(each.word);
  return simulator::suggestion(simulator::nearest(word, known));
}

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
  wait.instead = [](const World&) { return "it was still so"; };
  if (gone && rest.size() == 1) {
    wait.isMet = [=](const World& present) { return find(present) == nullptr; };
    return wait;
  }
  const auto kind =
      std::find_if(conditions.begin(), conditions.end(), [&](const ConditionKind& each) {
        return each.word == rest[1] && each.count + 2 == rest.size();
      });
  if (kind == conditions.end()) throw Failure(form + guessed(rest[1]));
  const Words arguments(rest.begin() + 2, rest.end());
  wait.isMet = [=, isMet = kind->isMet](const World& present) {
    const Application* application = find(present);
    return (application != nullptr && isMet(present, *application, arguments)) != gone;
  };
  if (gone) return wait;
  wait.instead = [=, instead = kind->instead](const World& present) {
    const Application* application = find(present);
    return application == nullptr ? "it had quit" : instead(present, *application, arguments);
  };
  return wait;
}

}  // namespace companion
