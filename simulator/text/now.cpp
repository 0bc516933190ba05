#include "simulator/text/now.h"

#include <limits>
#include <set>
#include <string>
#include <utility>

#include "simulator/text/error.h"
#include "simulator/text/soundness.h"
#include "simulator/text/value_text.h"
#include "simulator/world/scrolling.h"

namespace simulator {

namespace {

using Place = LinePlace;

constexpr const char* whatIsSo = "what is so, such as hidden true";

/// Reads what the line says of a structure, with the words that `readOther` knows.
template <class Whole, class ReadOther>
void readMembers(Words& words, Whole& whole, ReadOther readOther) {
  if (words.atEnd()) words.failNeeding("now", whatIsSo);
  while (!words.atEnd()) {
    const std::string word = words.word("now", whatIsSo);
    if (!readOther(word)) readMember(words, word, whole);
  }
}

/// The application has ids up to this one; those that no line has are of elements that have gone.
void makeIdsUpTo(const Words& words, const World& world, Application& application, ElementId last) {
  const auto gap = last - static_cast<ElementId>(application.elements.size());
  if (gap > 1) {
    // Many that have gone stand in no line: there is a limit to what a line may ask for.
    ElementId all = gap;
    for (const Application& each : world.applications) {
      all += static_cast<ElementId>(each.elements.size());
    }
    if (all > elementIdMax) words.fail("more than 500,000 elements");
    application.elements.reserve(static_cast<std::size_t>(last));
  }
  while (static_cast<ElementId>(application.elements.size()) < last) {
    Element& gone = application.elements.emplace_back();
    gone.id = static_cast<ElementId>(application.elements.size());
    gone.removed = true;
  }
}

void orderWindows(Words& words, World& world) {
  std::vector<WindowNumber> numbers;
  readValue(words, numbers);
  std::vector<Window> ordered;
  for (const WindowNumber number : numbers) {
    const Window* window = findWindow(world, number);
    if (window == nullptr) words.fail("there is no window " + std::to_string(number));
    ordered.push_back(*window);
  }
  const std::set<WindowNumber> different(numbers.begin(), numbers.end());
  if (ordered.size() != world.windows.size() || different.size() != ordered.size()) {
    words.fail("each window has its place once");
  }
  world.windows = std::move(ordered);
}

void readNowOfWorld(Words& words, World& world) {
  readMembers(words, world, [&](const std::string& word) {
    if (word != now_words::windowOrder) return false;
    orderWindows(words, world);
    return true;
  });
}

void readNowOfApplication(Words& words, const World& world, Application& application) {
  const Pid pid = application.pid;
  readMembers(words, application, [&](const std::string& word) {
    if (word != now_words::lastElement) return false;
    makeIdsUpTo(words, world, application, words.integer("last-element", "an id", 0, elementIdMax));
    return true;
  });
  application.pid = pid;
}

void readNowOfElement(Words& words, Application& application, ElementId id) {
  Element& element = application.elements.at(static_cast<std::size_t>(id) - 1);
  readMembers(words, element, [&](const std::string& word) {
    if (word != now_words::habits) return false;
    readValue(words, application.habits[id]);
    return true;
  });
  element.id = id;
}

void readNowOfWindow(Words& words, World& world, const Place& place) {
  Window* window = findWindow(world, place.window);
  if (window == nullptr) words.fail("the window has gone");
  Application& application = world.applications[place.application];
  readMembers(words, *window, [&](const std::string& word) {
    if (word != now_words::itsElement) return false;
    if (place.element == 0) words.fail("the window has no element");
    Element& element = application.elements.at(static_cast<std::size_t>(place.element) - 1);
    readValue(words, element);
    element.id = place.element;
    return true;
  });
  window->number = place.window;
}

/// About what the line stands in.
void readNow(Words& words, World& world, const Place& place) {
  switch (place.kind) {
    case Place::Kind::application:
      readNowOfApplication(words, world, world.applications[place.application]);
      break;
    case Place::Kind::window:
      readNowOfWindow(words, world, place);
      break;
    case Place::Kind::element:
      readNowOfElement(words, world.applications[place.application], place.element);
      break;
    case Place::Kind::top:
    case Place::Kind::other:
    case Place::Kind::unread:
      readNowOfWorld(words, world);
      break;
  }
}

}  // namespace

void requireEarlierRun(const Words& words, const World& world, const char* word) {
  if (hasRunBefore(world)) return;
  words.failAtLast(std::string("'") + word +
                   "' is of a Mac that has run before, whose world begins with 'clock'");
}

void readClock(Words& words, World& world) {
  const bool isFirst = world.applications.empty() && world.displays.empty();
  if (!isFirst || hasRunBefore(world)) {
    words.failAtLast("'clock' stands once, ahead of all else");
  }
  world.resumption.emplace();
  world.present = words.time("clock");
}

ElementId readElementId(Words& words) {
  return words.integer("id", "a number from 1 to 500000", 1, elementIdMax);
}

Element& putElement(const Words& words, const World& world, Application& application,
                    Element element, ElementId id) {
  auto& elements = application.elements;
  if (id != 0) requireEarlierRun(words, world, "id");
  if (id == 0) id = static_cast<ElementId>(elements.size()) + 1;
  makeIdsUpTo(words, world, application, id);
  Element& place = elements[static_cast<std::size_t>(id) - 1];
  if (!place.removed) words.fail("element id " + std::to_string(id) + " is taken");
  place = std::move(element);
  place.id = id;
  return place;
}

void readGone(Words& words, World& world, const LinePlace& place) {
  requireEarlierRun(words, world, "gone");
  words.expect("gone", "id");
  Element element;
  const ElementId id = readElementId(words);
  words.expect("id", "window");
  element.window = static_cast<WindowNumber>(
      words.integer("window", "a number from 1 on", 1, std::numeric_limits<WindowNumber>::max()));
  words.expectEnd();
  putElement(words, world, world.applications[place.application], element, id).removed = true;
}

void NowLines::add(Words& words, const LinePlace& place) {
  requireEarlierRun(words, world_, "now");
  lines_.push_back({place, words.rest()});
}

void NowLines::readThose(bool ofElements, const Complain& complain) const {
  for (const PlacedLine& each : lines_) {
    using Kind = LinePlace::Kind;
    const bool isElements = each.place.kind == Kind::element || each.place.kind == Kind::window;
    if (isElements != ofElements) continue;
    try {
      Words words(each.line);
      readNow(words, world_, each.place);
    } catch (const WorldError& error) {
      complain(error.complaint());
    }
  }
}

/// In which area an element scrolls follows from the areas, unless its own line says otherwise.
void NowLines::read(const Complain& complain) const {
  readThose(false, complain);
  for (Application& application : world_.applications) settleScrolledBy(application);
  readThose(true, complain);
  try {
    const Line first{1, 0, {}};
    checkSoundness(Words(first), world_);
  } catch (const WorldError& error) {
    complain(error.complaint());
  }
}

}  // namespace simulator
