#include "simulator/snapshot/world_text.h"

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

#include "simulator/snapshot/element_lines.h"
#include "simulator/snapshot/state_lines.h"
#include "simulator/text/now.h"
#include "simulator/text/parse.h"
#include "simulator/text/reaction_arguments.h"
#include "simulator/text/value_text.h"

namespace simulator {

namespace {

/// What `now` lines say, by what they stand in.
struct NowTexts {
  using Texts = std::vector<std::string>;  // words with values, each led by a blank
  Texts world;
  std::map<Pid, Texts> applications;
  std::map<WindowNumber, Texts> windows;
  std::map<std::pair<Pid, ElementId>, Texts> elements;
};

/// The window's element, when its line can say which it is.
const Element* shownBy(const Application& application, const Window& window) {
  const Element* element = findElement(application, window.element);
  return element != nullptr && element->window == window.number ? element : nullptr;
}

/// Writes the lines of a world.
class Writer {
 public:
  Writer(const World& world, const NowTexts& now, LineStyle style)
      : world_(world), now_(now), style_(style) {}

  std::string text() {
    add(0, "clock " + spanText({world_.present, world_.present}));
    addNow(0, now_.world);
    for (const std::string& each : stateLines(world_)) add(0, each);
    for (const std::string& each : definitionLines(world_)) add(0, each);
    for (const Application& each : world_.applications) addApplication(each);
    for (const std::string& each : scriptLines(world_)) add(0, each);
    return std::move(text_);
  }

 private:
  /// Deep down a blank is enough: trees may be thousands deep.
  void add(std::size_t depth, const std::string& line) {
    constexpr std::size_t wideDepths = 20;
    constexpr std::size_t wide = 4;
    const std::size_t blanks =
        wide * std::min(depth, wideDepths) + (depth > wideDepths ? depth - wideDepths : 0);
    text_ += std::string(blanks, ' ') + line + "\n";
  }

  /// As much in a line as has its place in one.
  void addNow(std::size_t depth, const NowTexts::Texts& texts) {
    constexpr std::size_t lengthMax = 96;
    std::string line;
    for (const std::string& each : texts) {
      if (!line.empty() && line.size() + each.size() > lengthMax) {
        add(depth, line);
        line.clear();
      }
      line += line.empty() ? "now" + each : each;
    }
    if (!line.empty()) add(depth, line);
  }

  template <class Texts, class Key>
  void addNowOf(std::size_t depth, const Texts& texts, const Key& key) {
    const auto found = texts.find(key);
    if (found != texts.end()) addNow(depth, found->second);
  }

  void addApplication(const Application& application) {
    add(0, applicationLine(world_, application, style_));
    addNowOf(1, now_.applications, application.pid);
    written_.assign(application.elements.size() + 1, false);
    for (const Window* window : windowsOf(application)) addWindow(application, *window);
    // Those that no other one has in it, and then whatever is left.
    for (const bool isRoot : {true, false}) {
      for (const Element& each : application.elements) {
        const bool isNext = (each.parent == 0) == isRoot && !each.removed;
        if (isNext && !isWritten(each.id)) addElement(application, each, 1);
      }
    }
    for (const Element& each : application.elements) {
      if (!each.removed || each.window == 0) continue;
      add(1, "gone id " + std::to_string(each.id) + " window " + std::to_string(each.window));
    }
  }

  /// What a sheet lies on stands above it.
  std::vector<const Window*> windowsOf(const Application& application) const {
    std::vector<const Window*> windows;
    for (const Window& each : world_.windows) {
      if (each.owner == application.pid) windows.push_back(&each);
    }
    std::sort(windows.begin(), windows.end(), [](const Window* a, const Window* b) {
      return std::pair(a->element, a->number) < std::pair(b->element, b->number);
    });
    return windows;
  }

  bool isWritten(ElementId id) const { return written_[static_cast<std::size_t>(id)]; }

  void addWindow(const Application& application, const Window& window) {
    const Element* element = shownBy(application, window);
    if (element != nullptr && isWritten(element->id)) element = nullptr;
    add(1, windowLine(world_, application, window, element, style_));
    addNowOf(2, now_.windows, window.number);
    if (element == nullptr) return;
    written_[static_cast<std::size_t>(element->id)] = true;
    addChildren(application, *element, 2);
  }

  void addElement(const Application& application, const Element& element, std::size_t depth) {
    written_[static_cast<std::size_t>(element.id)] = true;
    add(depth, elementLine(application, element, style_));
    addNowOf(depth + 1, now_.elements, std::pair(application.pid, element.id));
    addChildren(application, element, depth + 1);
  }

  /// A window has a line of its own, and what is elsewhere too stands where it is first.
  void addChildren(const Application& application, const Element& element, std::size_t depth) {
    for (const ElementId id : element.children) {
      const Element* child = id < firstCopy ? findElement(application, id) : nullptr;
      const bool isOwn = child != nullptr && child->parent == element.id && !isWritten(id);
      if (isOwn && !isWindows(application, *child)) addElement(application, *child, depth);
    }
  }

  bool isWindows(const Application& application, const Element& element) const {
    const Window* window = findWindow(world_, element.window);
    return window != nullptr && shownBy(application, *window) == &element;
  }

  const World& world_;
  const NowTexts& now_;
  LineStyle style_;
  std::string text_;
  std::vector<bool> written_;  // by id
};

std::vector<WindowNumber> orderOf(const World& world) {
  std::vector<WindowNumber> numbers;
  for (const Window& each : world.windows) numbers.push_back(each.number);
  return numbers;
}

template <class Value>
void addWord(NowTexts::Texts& texts, const char* word, const Value& value) {
  writeMember(texts.emplace_back(), word, value);
}

/// What an element has come to beside what its line says, but for its habits.
NowTexts::Texts apartOf(const Element& element, const Element& read) {
  return membersApart(element, read);
}

bool sameHabits(const Application& application, const Application& read, ElementId id) {
  const auto one = application.habits.find(id);
  const auto other = read.habits.find(id);
  if (one == application.habits.end()) return other == read.habits.end();
  return other != read.habits.end() && isSame(one->second, other->second);
}

void compareElement(const Application& application, const Application& read, ElementId id,
                    NowTexts& now) {
  const auto place = static_cast<std::size_t>(id) - 1;
  NowTexts::Texts texts = apartOf(application.elements[place], read.elements[place]);
  const auto habits = application.habits.find(id);
  if (habits != application.habits.end() && !sameHabits(application, read, id)) {
    const auto known = read.habits.find(id);
    texts.push_back(
        std::string(" ") + now_words::habits + " (" +
        differingMembers(habits->second, known == read.habits.end() ? Habits() : known->second) +
        " )");
  }
  if (!texts.empty()) now.elements.emplace(std::pair(application.pid, id), std::move(texts));
}

/// What the text read as, beside what it should have.
class Comparison {
 public:
  Comparison(const World& world, const World& read) : world_(world), read_(read) {}

  /// Without elements as long as what they follow from is not known.
  NowTexts texts(bool withElements) const {
    NowTexts now;
    now.world = membersApart(world_, read_);
    if (orderOf(world_) != orderOf(read_)) {
      addWord(now.world, now_words::windowOrder, orderOf(world_));
    }
    for (std::size_t i = 0; i < world_.applications.size(); ++i) {
      compareApplication(world_.applications[i], read_.applications.at(i), withElements, now);
    }
    for (const Window& each : world_.windows) compareWindow(each, withElements, now);
    return now;
  }

 private:
  void compareApplication(const Application& application, const Application& read,
                          bool withElements, NowTexts& now) const {
    NowTexts::Texts texts = membersApart(application, read);
    if (application.elements.size() > read.elements.size()) {
      addWord(texts, now_words::lastElement, application.elements.size());
    }
    if (!texts.empty()) now.applications.emplace(application.pid, std::move(texts));
    if (!withElements) return;
    for (const Element& each : application.elements) {
      const Window* window = findWindow(world_, each.window);
      const bool isWindows = window != nullptr && shownBy(application, *window) == &each;
      if (!each.removed && !isWindows) compareElement(application, read, each.id, now);
    }
  }

  void compareWindow(const Window& window, bool withElements, NowTexts& now) const {
    const Window* read = findWindow(read_, window.number);
    if (read == nullptr) return;
    NowTexts::Texts texts = membersApart(window, *read);
    const Application* owner = findApplication(world_, window.owner);
    const Application* readOwner = findApplication(read_, window.owner);
    if (withElements && owner != nullptr && readOwner != nullptr) {
      if (const Element* element = shownBy(*owner, window)) {
        const auto& same = readOwner->elements.at(static_cast<std::size_t>(element->id) - 1);
        const std::string apart = differingMembers(*element, same);
        if (!apart.empty()) {
          texts.push_back(std::string(" ") + now_words::itsElement + " (" + apart + " )");
        }
      }
    }
    if (!texts.empty()) now.windows.emplace(window.number, std::move(texts));
  }

  const World& world_;
  const World& read_;
};

/// Goes through all members of two wholes, down to where they differ.
template <class Value>
std::string differenceIn(const std::string& path, const Value& one, const Value& other);

template <class Value>
std::string differenceInList(const std::string& path, const std::vector<Value>& one,
                             const std::vector<Value>& other) {
  if (one.size() != other.size()) {
    return path + ": " + std::to_string(one.size()) + " and " + std::to_string(other.size());
  }
  std::string found;
  for (std::size_t i = 0; i < one.size() && found.empty(); ++i) {
    found = differenceIn(path + " " + std::to_string(i + 1), one[i], other[i]);
  }
  return found;
}

template <class Whole>
std::string differenceInMembers(const std::string& path, const Whole& one, const Whole& other) {
  std::string found;
  forEachMember(
      [&](const std::string& word, const auto& a, const auto& b) {
        if (found.empty()) found = differenceIn(path + (path.empty() ? "" : " ") + word, a, b);
      },
      one, other);
  return found;
}

template <class Value>
std::string differenceIn(const std::string& path, const Value& one, const Value& other) {
  if constexpr (std::is_same_v<Value, std::map<ElementId, Habits>> ||
                std::is_same_v<Value, std::vector<Display>>) {
    return isSame(one, other) ? "" : path;
  } else if constexpr (std::is_same_v<Value, std::vector<Application>> ||
                       std::is_same_v<Value, std::vector<Window>> ||
                       std::is_same_v<Value, std::vector<Element>>) {
    return differenceInList(path, one, other);
  } else if constexpr (isElsewhere<Value>) {
    return "";
  } else if constexpr (std::is_same_v<Value, Application> || std::is_same_v<Value, Window> ||
                       std::is_same_v<Value, Element>) {
    return differenceInMembers(path, one, other);
  } else {
    return isSame(one, other) ? "" : path;
  }
}

WorldReading readBack(const World& world, const NowTexts& now, LineStyle style) {
  return readWorld(Writer(world, now, style).text());
}

/// The text in a style; none when some line of it cannot be read, of which `cause` tells.
std::optional<std::string> textIn(const World& world, LineStyle style, std::string& cause) {
  NowTexts now;
  // First what the lines say, then what follows from what else is so, and then what is so after
  // all.
  for (const bool withElements : {false, true}) {
    const WorldReading reading = readBack(world, now, style);
    if (!reading.errors.empty()) {
      cause = messageOf(reading.errors.front());
      return std::nullopt;
    }
    const NowTexts more = Comparison(world, reading.world).texts(withElements);
    if (withElements) {
      now.elements = more.elements;
      for (const auto& [number, texts] : more.windows) {
        auto& all = now.windows[number];
        all.insert(all.end(), texts.begin(), texts.end());
      }
    } else {
      now = more;
    }
  }
  std::string text = Writer(world, now, style).text();
  const WorldReading reading = readWorld(text);
  cause = reading.errors.empty() ? differenceOf(world, reading.world)
                                 : messageOf(reading.errors.front());
  if (cause.empty()) return text;
  return std::nullopt;
}

}  // namespace

std::string differenceOf(const World& one, const World& other) {
  if (scriptLines(one) != scriptLines(other)) return "script";
  if (definitionLines(one) != definitionLines(other)) return "definitions";
  return differenceInMembers("", one, other);
}

std::string worldText(const World& world) {
  std::string cause;
  if (auto text = textIn(world, LineStyle::whole, cause)) return std::move(*text);
  std::string again;
  if (auto text = textIn(world, LineStyle::least, again)) return std::move(*text);
  throw UnwritableWorld("this state cannot be written: " + cause);
}

}  // namespace simulator
