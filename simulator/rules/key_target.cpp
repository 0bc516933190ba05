#include "simulator/rules/key_target.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "simulator/input/key_window.h"
#include "simulator/input/posted_event.h"
#include "simulator/input/records.h"
#include "simulator/mac/arguments.h"
#include "simulator/rules/replies.h"
#include "simulator/world/keyboard_layouts.h"
#include "simulator/world/windows.h"

namespace simulator {

using platform::Call;
using platform::EventImage;
using platform::Function;

namespace {

constexpr double tolerance = 2;  // points, of two windows that cannot be told apart
constexpr std::string_view panelService = "com.apple.appkit.xpc.openAndSavePanelService";

/// Whether the list of windows says of it what no window can have as its number.
bool isListedImpossibly(const Window& window) {
  return window.listedNumber && !std::in_range<WindowNumber>(*window.listedNumber);
}

bool isNear(const Rect& a, const Rect& b) {
  const auto near = [](double x, double y) { return std::fabs(x - y) < tolerance; };
  return near(a.x, b.x) && near(a.y, b.y) && near(a.width, b.width) && near(a.height, b.height);
}

/// Where the keys of an application go: its key window, or the sheet on it.
WindowNumber keysOf(const World& world, const Application* application) {
  const WindowNumber key = application == nullptr ? 0 : keyWindowOf(*application);
  return key == 0 ? 0 : innermostSheet(world, key);
}

/// How many of the elements that are a window's children call themselves sheets, be they or not.
std::size_t claimedSheets(const World& world, WindowNumber number) {
  const Window* window = findWindow(world, number);
  const Application* owner = window == nullptr ? nullptr : findApplication(world, window->owner);
  const Element* element = owner == nullptr ? nullptr : findElement(*owner, window->element);
  if (element == nullptr) return 0;
  const auto& children = element->children;
  const auto count = std::count_if(children.begin(), children.end(), [&](ElementId id) {
    const Element* child = findElement(*owner, id);
    return child != nullptr && child->role == "AXSheet";
  });
  return static_cast<std::size_t>(count);
}

/// The window by which a run knows where the keys of this one go: of several sheets it takes none,
/// but the window below.
const Window& knownBy(const World& world, const Window& window) {
  const Window* below = findWindow(world, window.sheetOf);
  return below != nullptr && claimedSheets(world, below->number) > 1 ? *below : window;
}

/// Whether a reading gives something.
bool isTold(const Answer& answer) {
  const auto told = driver::unpack<platform::WireReadings>(answer.value);
  return !told.slots.empty() && !told.slots.front().value.isNothing();
}

}  // namespace

KeyTargetRules::Owner KeyTargetRules::owner() const {
  const World& world = run_.mac.world;
  return {world.frontmost, keysOf(world, findApplication(world, world.frontmost))};
}

void KeyTargetRules::look() {
  if (run_.pressesKeys() && owner() != found_) isStale_ = true;
}

void KeyTargetRules::before(const ObservedCall& seen, Violations& violations) {
  if (!run_.pressesKeys()) return;
  switch (seen.call.function) {
    case Function::frontProcess:
      found_ = owner();
      wasTold_ = isStale_ = false;
      break;
    case Function::publicPost:
    case Function::privatePost:
      checkPost(seen.call, violations);
      break;
    case Function::postRecord:
      checkRecord(seen.call, violations);
      break;
    case Function::axPerform:
      checkAct(Arguments(seen.call).get<platform::ElementReference>(0).pid, true, violations);
      break;
    default:
      break;
  }
}

void KeyTargetRules::after(const ObservedCall& seen, const Answer& answer, Violations& violations) {
  if (!run_.pressesKeys()) return;
  switch (seen.call.function) {
    case Function::frontProcess:
      hasLooked_ = true;
      break;
    case Function::processPid: {
      const auto told = driver::unpack<std::vector<std::int64_t>>(answer.value);
      wasTold_ = told.at(0) == 0 && static_cast<Pid>(told.at(2)) == found_.pid;
      if (wasTold_) toldInFront_.insert(found_.pid);
      break;
    }
    case Function::axGetWindow: {
      const auto told = driver::unpack<std::vector<std::int64_t>>(answer.value);
      if (told.at(0) == 0) toldNumbers_.insert(static_cast<WindowNumber>(told.at(2)));
      break;
    }
    case Function::axAttribute:
    case Function::axAttributes:
      noteReading(seen, answer, violations);
      break;
    default:
      break;
  }
}

void KeyTargetRules::noteReading(const ObservedCall& seen, const Answer& answer,
                                 Violations& violations) {
  if (answer.delay >= messagingTimeout) ++timeOuts_;
  const bool asks = readsAttribute(seen.call, "AXFocusedWindow");
  if (asks) {
    const auto told = driver::unpack<platform::WireReadings>(answer.value);
    toldKey_ = told.slots.empty() ? driver::Datum() : told.slots.front().value;
    hasAskedSince_ = true;
    // Whoever has had no answer means the first window, whichever has the keyboard.
    if (!seen.faulty && answer.delay < messagingTimeout) noteFocusedWindow(seen.call);
  }
  if (readsAttribute(seen.call, "AXChildren") && isTold(answer)) noteSheets(seen.call);
  if (readsAttribute(seen.call, "AXMenuBar")) {
    if (!hasJustAsked_)
      violations.push_back("I14: menus are searched without a look at the key window");
    toldKeyBefore_ = toldKey_;
    hasSearched_ = true;
    // It takes its time: what was seen before it is old.
    hasLooked_ = hasAskedSince_ = false;
  }
  hasJustAsked_ = asks;
}

/// I14: what is pressed after a search through menus goes to the key window. The user may have come
/// meanwhile, chosen another one, and gone.
void KeyTargetRules::checkSearch(Pid pid, Violations& violations) {
  if (!std::exchange(hasSearched_, false) || timeOuts_ > 1) return;
  if (!hasAskedSince_) {
    violations.push_back("I14: keys without a look at the key window since menus were searched");
  }
  const World& world = run_.mac.world;
  const bool staysMeant =
      meant_.count(pid) > 0 && isMeant(pid, keysOf(world, findApplication(world, pid)));
  const bool isTold = !toldKeyBefore_.isNothing() && !toldKey_.isNothing();
  if (hasAskedSince_ && isTold && toldKeyBefore_ != toldKey_ && !staysMeant) {
    violations.push_back("I14: keys for another window than was key before menus were searched");
  }
}

/// The window that has an application's keyboard when the run first looks is the one it means, if
/// it is in its scope; unless records name another.
void KeyTargetRules::noteFocusedWindow(const Call& call) {
  const Pid pid = Arguments(call).get<platform::ElementReference>(0).pid;
  if (!target_) target_ = pid;
  const World& world = run_.mac.world;
  const WindowNumber key = keysOf(world, findApplication(world, pid));
  const Window* window = findWindow(world, key);
  if (window == nullptr) return;
  if (!titleInScope(run_.client, rootOf(world, *window).title.value_or(""))) return;
  meant_.emplace(pid, key);
}

/// The run takes the sheet that it finds in the window with the keyboard. One that comes up after
/// that may not be noticed.
void KeyTargetRules::noteSheets(const Call& call) {
  const auto read = Arguments(call).get<platform::ElementReference>(0);
  const World& world = run_.mac.world;
  const Application* application = findApplication(world, read.pid);
  const Element* element = application == nullptr ? nullptr : findElement(*application, read.id);
  if (element == nullptr || element->parent != 0) return;
  sheetsRead_[element->window] = openSheets(world, element->window).size();
  const auto meant = meant_.find(read.pid);
  const Window* window = meant == meant_.end() ? nullptr : findWindow(world, meant->second);
  if (window == nullptr || rootOf(world, *window).number != element->window) return;
  // The user may have gone to another window since the run was told of this one.
  if (chosen_.insert(read.pid).second) meant->second = innermostSheet(world, element->window);
}

void KeyTargetRules::checkPost(const Call& call, Violations& violations) {
  const EventImage& event = run_.latestEvent;
  if (!isKeyEvent(event)) return;
  const bool isModifier = event.text.empty() && modifierWithCode(event.keyCode) != nullptr;
  if (typeOf(event) == quartz::EventType::keyUp) {
    // The modifiers come up after the key, the next of them go down after another look.
    hasKeyDown_ = false;
    return;
  }
  // Between modifiers nobody need look again: they do nothing by themselves.
  checkAct(Arguments(call).get<Pid>(0), !isModifier || !hasKeyDown_, violations);
  hasKeyDown_ = true;
}

/// I14: before whatever goes down, or is pressed, the run has looked whether the user has come. One
/// who comes after the look began may not be noticed.
void KeyTargetRules::checkAct(Pid pid, bool needsLook, Violations& violations) {
  if (needsLook && !hasLooked_) {
    violations.push_back("I14: keys without a look at the foreground before them");
  }
  hasLooked_ = false;
  checkSearch(pid, violations);
  if (!wasTold_ || isStale_) return;
  if (found_.pid != pid) {
    if (toldInFront_.count(pid) > 0 && !hasFocus(pid)) {
      violations.push_back("I14: keys for an application that the user has left without focus");
    }
    return;
  }
  if (meant_.count(pid) > 0 && !isMeant(pid, found_.window)) {
    violations.push_back("I14: keys for a window that the user has chosen instead");
  }
  checkWindow(found_.window, Known::byKeyboard, violations);
}

/// The window is the one that the keys for the process are to go to, which has been noted, as far
/// as the run can tell.
bool KeyTargetRules::isMeant(Pid pid, WindowNumber number) const {
  const WindowNumber meant = meant_.at(pid);
  const Window* window = findWindow(run_.mac.world, number);
  const bool isKnownAs = window != nullptr && knownBy(run_.mac.world, *window).number == meant;
  return number == meant || isKnownAs;
}

/// By this client, or by the service that holds it.
bool KeyTargetRules::hasFocus(Pid pid) const {
  const auto& environment = run_.client.environment;
  const auto held = environment.find("CU_FOCUS_PID");
  const bool isHeld = held != environment.end() && held->second == std::to_string(pid);
  return isHeld || givenFocus_.count(pid) > 0;
}

void KeyTargetRules::checkRecord(const Call& call, Violations& violations) {
  const std::string record = Arguments(call).text(2);
  const RecordKind kind = recordKind(record);
  const bool isSecond = kind == RecordKind::secondOfKeyPair;
  if (!isSecond && kind != RecordKind::givesFocus) return;
  const auto pid = static_cast<Pid>(Arguments(call).get<std::uint32_t>(1));
  if (!isSecond) givenFocus_.insert(pid);
  meant_[pid] = recordWindow(record);
  if (isSecond) {
    checkWindow(recordWindow(record), Known::byNumber, violations);
    checkSheet(recordWindow(record), violations);
  } else {
    checkPanel(recordWindow(record), violations);
  }
}

/// I12: of several sheets on a window none is chosen; one that has the keyboard already need not
/// be.
void KeyTargetRules::checkSheet(WindowNumber number, Violations& violations) const {
  const World& world = run_.mac.world;
  const Window* window = findWindow(world, number);
  if (window == nullptr || window->sheetOf == 0) return;
  const Application* owner = findApplication(world, window->owner);
  if (owner == nullptr || keyWindowOf(*owner) == number) return;
  const auto read = sheetsRead_.find(window->sheetOf);
  const bool isRead = read != sheetsRead_.end();
  if ((isRead ? read->second : openSheets(world, window->sheetOf).size()) > 1) {
    violations.push_back("I12: keys for one of several sheets");
  }
}

/// I12: of several panels at one place none is chosen. Those of a run's own target are none of
/// them: it looks for another process's panel there, unless they have not told their numbers.
void KeyTargetRules::checkPanel(WindowNumber number, Violations& violations) const {
  const World& world = run_.mac.world;
  const Window* window = findWindow(world, number);
  const auto isPanel = [&](const Window& each) {
    const Application* owner = findApplication(world, each.owner);
    return owner != nullptr && owner->bundleIdentifier == panelService;
  };
  if (window == nullptr || !isPanel(*window) || window->owner == target_) return;
  const auto isTargets = [&](const Window& each) {
    return each.owner == target_ && toldNumbers_.count(each.number) > 0;
  };
  const auto panels =
      std::count_if(world.windows.begin(), world.windows.end(), [&](const Window& each) {
        return isPanel(each) && !isTargets(each) &&
               std::fabs(each.frame.x - window->frame.x) < tolerance &&
               std::fabs(each.frame.y - window->frame.y) < tolerance;
      });
  if (panels > 1) violations.push_back("I12: keys for one of several panels");
}

void KeyTargetRules::checkWindow(WindowNumber number, Known how, Violations& violations) {
  const Window* window = findWindow(run_.mac.world, number);
  if (window == nullptr || !checkedWindows_.insert(number).second) return;
  const Application* own = findApplication(run_.mac.world, window->owner);
  const Window& root = rootOf(run_.mac.world, *window);
  const bool isPanel = own != nullptr && own->bundleIdentifier == panelService;
  // A sheet that has a title counts by that as well: an application may tell it as its key window.
  const std::string ownTitle = window->title.value_or("");
  const bool inScope = titleInScope(run_.client, root.title.value_or("")) ||
                       (!ownTitle.empty() && titleInScope(run_.client, ownTitle));
  if (!isPanel && !inScope) {
    violations.push_back("I11: keys for a window outside the scope");
  }
  const Window& known = knownBy(run_.mac.world, *window);
  if (toldNumbers_.count(number) > 0 || toldNumbers_.count(known.number) > 0) return;
  if (hasTwin(known, how)) {
    violations.push_back("I12: keys for one of two windows that cannot be told apart");
  }
}

/// Whether a run finds another window in the list that may be this one. A list that says an
/// impossible number of one of the application's windows counts up to there: who has the keyboard
/// beyond that is known by the only one that is like it, and cannot have been named.
bool KeyTargetRules::hasTwin(const Window& window, Known how) const {
  const bool untold = !run_.mac.world.screenRecordingAllowed;
  const auto& windows = run_.mac.world.windows;
  const auto end = std::find_if(windows.begin(), windows.end(), [&](const Window& each) {
    return each.owner == window.owner && isListedImpossibly(each);
  });
  const auto alike = std::count_if(windows.begin(), end, [&](const Window& each) {
    return each.owner == window.owner &&
           (untold || each.title.value_or("") == window.title.value_or("")) &&
           isNear(each.frame, window.frame);
  });
  const bool isListed = std::any_of(
      windows.begin(), end, [&](const Window& each) { return each.number == window.number; });
  return alike > (isListed || how == Known::byKeyboard ? 1 : 0);
}

}  // namespace simulator
