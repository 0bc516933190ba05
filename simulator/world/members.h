#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "simulator/world/world.h"

/// The members of the structures that a Mac's state is made of: what writes, reads or compares a
/// state goes by these lists, so that it forgets none. A member that its list lacks does not
/// compile.
namespace simulator {

template <class Whole>
struct Members {
  static constexpr bool areListed = false;
};

template <class Whole>
concept Structure = Members<Whole>::areListed;

// The names bind the members one by one: too many or too few are an error.
#define SIMULATOR_MEMBERS(Whole, ...)                       \
  template <>                                               \
  struct Members<Whole> {                                   \
    static constexpr bool areListed = true;                 \
    static constexpr std::string_view names = #__VA_ARGS__; \
    template <class Any>                                    \
    static auto of(Any& whole) {                            \
      auto& [__VA_ARGS__] = whole;                          \
      return std::tie(__VA_ARGS__);                         \
    }                                                       \
  }

SIMULATOR_MEMBERS(Span, least, most);
SIMULATOR_MEMBERS(Condition, label, text, negated);
SIMULATOR_MEMBERS(Reaction, effect, text, textOf, target, window, other, placement, point, number,
                  addition, argumentsOf, heldArguments, after, when, elsewhere, elsewherePid);
SIMULATOR_MEMBERS(DueReaction, due, pid, element, reaction, actor, recurring);
SIMULATOR_MEMBERS(Element, id, parent, window, role, frame, children, attributes, failing, actions,
                  onClick, onRightClick, onDoubleClick, onSubmit, presence, dependsOn, scrolledBy,
                  removed);
SIMULATOR_MEMBERS(Transform, kind, characters);
SIMULATOR_MEMBERS(Habits, transforms, writes, delay, showsPlaceholder, isComposer, hidesValue,
                  losesMarked, takesFiles, stacks, onlyWhile, givesActions, scrolling, rejecting,
                  step, actionError, children);
SIMULATOR_MEMBERS(Copies, first, count, original);
SIMULATOR_MEMBERS(ScrollArea, id, offset, isLazy, verticalBar, horizontalBar);
SIMULATOR_MEMBERS(ClickProgress, group, primingSteps, button, pressedType, pressedBy, clickState);
SIMULATOR_MEMBERS(HeldKey, code, by);
SIMULATOR_MEMBERS(Marked, element, range, isDeadKey);
SIMULATOR_MEMBERS(platform::EventField, field, value);
SIMULATOR_MEMBERS(platform::EventImage, identity, type, location, flags, fromSource, windowLocation,
                  publicFields, privateFields, vertical, horizontal, keyCode, text);
SIMULATOR_MEMBERS(WaitingEvent, event, isPrivate, actor);
SIMULATOR_MEMBERS(Application, pid, name, bundleIdentifier, bundlePath, kind, policy, hidden,
                  running, hangs, answerDelay, rejectsEnabling, treeOnDemand, treeDelay, pasteDelay,
                  tracksMenus, manualAccessibility, enhancedUserInterface, enabledAt, attributes,
                  failing, elements, habits, copies, scrollAreas, rearranged, openMenu, windows,
                  focusedWindow, focusedElement, marked, focusByRecord, focusGivenBy, keyByRecord,
                  madeKey, keysDown, waiting, click, lastPost, lastPostIdentity, lastPostTooSoon,
                  lastPostTaken);
SIMULATOR_MEMBERS(Window, number, owner, title, frame, layer, onScreen, hiddenWithOwner, element,
                  sheetOf, numberHidden, listedNumber, hadKeyboard, capturable, scrolledLines,
                  hover);
SIMULATOR_MEMBERS(Display, id, frame, scale, modeReadable);
SIMULATOR_MEMBERS(Session, readable, locked, onConsole, lockDelay);
SIMULATOR_MEMBERS(User, fullName, loginName, nameParses);
SIMULATOR_MEMBERS(Keyboard, layout, hasDeadKeys, modifiers);
SIMULATOR_MEMBERS(HeldButton, window, dragged);
SIMULATOR_MEMBERS(UserClick, at, point, state);
SIMULATOR_MEMBERS(Activity, before, lastTimes);
SIMULATOR_MEMBERS(Pasteboard::Entry, type, data);
SIMULATOR_MEMBERS(Pasteboard, items, changeCount, owner);
SIMULATOR_MEMBERS(process::Version, major, minor);
SIMULATOR_MEMBERS(System, languages, version, asksForRecording, pasteboardReads, givesKeyTaps,
                  closedWindowSharing, directory, tools, links);
SIMULATOR_MEMBERS(Scripted, at, happening, latest, every, times, place, chance);
SIMULATOR_MEMBERS(PanelService, pid, number, over);
SIMULATOR_MEMBERS(PendingWrite, due, pid, element, attribute, text, pastes, actor);
SIMULATOR_MEMBERS(ComingLock, asked, due, caller);
SIMULATOR_MEMBERS(WaitingFault, text, counted);
SIMULATOR_MEMBERS(Resumption, processes, numbers, lastSerial, lastNews, comingLock, screensChanged,
                  killed, faults, chance);
SIMULATOR_MEMBERS(World, displays, applications, windows, lastWindow, frontmost, session,
                  accessibilityAllowed, screenRecordingAllowed, displayHoldAllowed,
                  keysInTapsAllowed, user, pointer, keyboard, heldButtons, lastClick, activity,
                  pasteboard, covers, system, panels, sharings, missing, processes, files, images,
                  actor, script, pending, present, due, recurring, seed, definitions, adder, chance,
                  resumption);

#undef SIMULATOR_MEMBERS

/// The names as words of a line: "focusByRecord" is `focus-by-record`.
std::vector<std::string> wordsOfNames(std::string_view names);

/// What the members of the structure are called in a line, in their order.
template <Structure Whole>
const std::vector<std::string>& memberWords() {
  static const std::vector<std::string> words = wordsOfNames(Members<Whole>::names);
  return words;
}

namespace members {

template <class Take, std::size_t... places, class... Ties>
void takeEach(Take& take, const std::vector<std::string>& words,
              std::index_sequence<places...> /*all*/, Ties... ties) {
  const auto takeOne = [&](auto place) {
    take(words[decltype(place)::value], std::get<decltype(place)::value>(ties)...);
  };
  (takeOne(std::integral_constant<std::size_t, places>()), ...);
}

}  // namespace members

/// Calls `take` with the word of each member, and with that member of each whole, which are alike.
template <class Take, class Whole, class... Others>
void forEachMember(Take take, Whole& whole, Others&... others) {
  using Plain = std::remove_const_t<Whole>;
  using Tie = decltype(Members<Plain>::of(whole));
  members::takeEach(take, memberWords<Plain>(), std::make_index_sequence<std::tuple_size_v<Tie>>(),
                    Members<Plain>::of(whole), Members<Plain>::of(others)...);
}

}  // namespace simulator
