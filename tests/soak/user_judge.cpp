#include "tests/soak/user_judge.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "simulator/world/reactions.h"
#include "simulator/world/windows.h"

namespace soak {

using simulator::Application;
using simulator::Element;
using simulator::Reaction;
using simulator::World;

namespace {

/// A press may change which window the user's next click lands in, and so all that follows.
bool changesWindows(const Reaction& reaction) {
  namespace effects = simulator::reactions;
  constexpr std::array harmless = {effects::append,  effects::set,     effects::toggle,
                                   effects::choose,  effects::paste,   effects::enable,
                                   effects::disable, effects::relabel, effects::count};
  if (reaction.elsewhere) return true;
  return std::find(harmless.begin(), harmless.end(), reaction.effect) == harmless.end();
}

bool anyChangesWindows(const std::vector<Reaction>& reactions) {
  return std::any_of(reactions.begin(), reactions.end(), changesWindows);
}

bool hasPressesThatChangeWindows(const World& world) {
  return std::any_of(world.applications.begin(), world.applications.end(), [](const auto& app) {
    return std::any_of(app.elements.begin(), app.elements.end(), [](const Element& element) {
      return anyChangesWindows(element.onClick) || anyChangesWindows(element.onRightClick) ||
             anyChangesWindows(element.onDoubleClick) || anyChangesWindows(element.onSubmit);
    });
  });
}

bool runs(const Case& one, std::initializer_list<std::string_view> names) {
  return std::any_of(one.steps.begin(), one.steps.end(), [&](const Step& step) {
    return !step.words.empty() &&
           std::find(names.begin(), names.end(), step.words.front()) != names.end();
  });
}

/// While a menu is open nobody else gets the user's click.
bool hasTrackedMenus(const World& world) {
  return std::any_of(world.applications.begin(), world.applications.end(),
                     [](const Application& each) { return each.tracksMenus; });
}

/// The system has asked the user whether the screen may be recorded, and has come to front for
/// that.
bool hasAskedUser(const World& before, const World& world) {
  return before.system.asksForRecording && !world.system.asksForRecording;
}

/// What a run may do to the user's state by design: lock the screen, bring windows back, press what
/// changes windows. With faults the Mac that is compared with would be another one.
bool mayDiffer(const Case& one, const World& world) {
  return !one.faults.empty() || runs(one, {"lock-now", "lock-guard", "reveal"}) ||
         hasTrackedMenus(world) || hasPressesThatChangeWindows(world);
}

std::string pointerMoved(const World& alone, const World& played) {
  return alone.pointer == played.pointer ? "" : "the pointer is elsewhere";
}

std::string otherFront(const World& alone, const World& played) {
  if (alone.frontmost == played.frontmost) return "";
  return "application " + std::to_string(played.frontmost) + " is in front, not " +
         std::to_string(alone.frontmost);
}

bool holdsTheSame(const simulator::Pasteboard& one, const simulator::Pasteboard& other) {
  const auto mine = simulator::readableItems(one);
  const auto theirs = simulator::readableItems(other);
  return std::equal(mine.begin(), mine.end(), theirs.begin(), theirs.end());
}

/// What was lost of the clipboard is told, unless the run was killed: then nobody could.
bool tellsOfClipboard(const Played& played) {
  return std::any_of(played.steps.begin(), played.steps.end(), [](const PlayedStep& step) {
    return isKilled(step) || step.output.find("\"copyLost\":true") != std::string::npos ||
           step.output.find("\"clipboardRestored\":false") != std::string::npos;
  });
}

bool isNamed(const Application& application, const std::string& word) {
  return word == "pid:" + std::to_string(application.pid) || word == application.name ||
         word == application.bundleIdentifier;
}

/// Whether a request to a service may mean the application: some text in it does.
bool isNamedInRequest(const Application& application, const std::string& request) {
  std::string_view rest = request;
  for (std::size_t end = rest.find('"'); end != rest.npos; end = rest.find('"')) {
    if (isNamed(application, std::string(rest.substr(0, end)))) return true;
    rest.remove_prefix(end + 1);
  }
  return false;
}

/// Whether any word of any step, or any request, may mean the application, or its windows.
bool isMeant(const Case& one, const Application& application) {
  const std::string pid = std::to_string(application.pid);
  return std::any_of(one.steps.begin(), one.steps.end(), [&](const Step& step) {
    const bool isWord = std::any_of(
        step.words.begin(), step.words.end(),
        [&](const std::string& word) { return isNamed(application, word) || word == pid; });
    return isWord || std::any_of(step.deliveries.begin(), step.deliveries.end(),
                                 [&](const Delivery& delivery) {
                                   return isNamedInRequest(application, delivery.text);
                                 });
  });
}

const simulator::AttributeValue* valueOf(const Element& element) {
  const auto value = element.attributes.find("AXValue");
  return value == element.attributes.end() ? nullptr : &value->second;
}

bool hasTheSameValue(const Element& one, const Element& other) {
  const auto* const mine = valueOf(one);
  const auto* const theirs = valueOf(other);
  return mine == nullptr || theirs == nullptr ? mine == theirs : *mine == *theirs;
}

/// What the user has written in applications that no run was about.
std::string otherValue(const Case& one, const World& alone, const World& played) {
  for (std::size_t i = 0; i < alone.applications.size(); ++i) {
    const Application& before = alone.applications[i];
    const Application& after = played.applications[i];
    if (isMeant(one, before)) continue;
    for (std::size_t each = 0; each < before.elements.size(); ++each) {
      if (each >= after.elements.size()) return "an element is gone";
      if (!hasTheSameValue(before.elements[each], after.elements[each])) {
        return "what element " + std::to_string(each + 1) + " of application " +
               std::to_string(before.pid) + " holds is not what the user made of it";
      }
    }
  }
  return "";
}

/// A Mac that nobody has locked, or unlocked, in place of the user.
std::string otherSession(const World& alone, const World& played) {
  return alone.session.locked == played.session.locked ? "" : "the screen is locked, or is not";
}

/// Windows of applications that no run was about, front to back.
std::vector<const simulator::Window*> windowsOfOthers(const Case& one, const World& world) {
  std::vector<const simulator::Window*> windows;
  for (const simulator::Window& window : world.windows) {
    const Application* owner = simulator::findApplication(world, window.owner);
    if (owner != nullptr && !isMeant(one, *owner)) windows.push_back(&window);
  }
  return windows;
}

std::string otherWindows(const Case& one, const World& alone, const World& played) {
  const auto isSame = [](const simulator::Window* a, const simulator::Window* b) {
    return a->number == b->number && a->frame == b->frame && a->onScreen == b->onScreen;
  };
  const auto before = windowsOfOthers(one, alone);
  const auto after = windowsOfOthers(one, played);
  const bool same = std::equal(before.begin(), before.end(), after.begin(), after.end(), isSame);
  return same ? "" : "windows of others lie otherwise";
}

/// The window and the element that have the keyboard in applications that no run was about.
std::string otherKeyboard(const Case& one, const World& alone, const World& played) {
  for (const Application& before : alone.applications) {
    const Application* after = simulator::findApplication(played, before.pid);
    if (after == nullptr || isMeant(one, before)) continue;
    if (before.focusedWindow != after->focusedWindow ||
        before.focusedElement != after->focusedElement) {
      return "the keyboard is elsewhere in application " + std::to_string(before.pid);
    }
  }
  return "";
}

}  // namespace

std::string disturbanceOfUser(const Case& one, const Played& played) {
  const World& world = played.desktop->mac().world;
  if (mayDiffer(one, world) || hasAskedUser(played.before, world)) return "";
  simulator::Desktop alone(played.before);
  alone.advanceTo(played.desktop->mac().now);
  const World& undisturbed = alone.mac().world;
  if (auto complaint = pointerMoved(undisturbed, world); !complaint.empty()) return complaint;
  if (auto complaint = otherFront(undisturbed, world); !complaint.empty()) return complaint;
  if (auto complaint = otherSession(undisturbed, world); !complaint.empty()) return complaint;
  if (auto complaint = otherWindows(one, undisturbed, world); !complaint.empty()) return complaint;
  if (auto complaint = otherKeyboard(one, undisturbed, world); !complaint.empty()) {
    return complaint;
  }
  if (!holdsTheSame(undisturbed.pasteboard, world.pasteboard) && !tellsOfClipboard(played)) {
    return "the clipboard holds something else";
  }
  return runs(one, {"bg-paste-files"}) ? "" : otherValue(one, undisturbed, world);
}

}  // namespace soak
