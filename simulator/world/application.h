#pragma once

#include <cstdint>
#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "base/geometry.h"
#include "platform/ax.h"
#include "platform/call.h"
#include "platform/types.h"
#include "platform/workspace.h"

/// An application of the simulated Mac as plain values: its elements and windows, how it answers,
/// what it does by itself, and what events have made of it.
namespace simulator {

using driver::Point;
using driver::Rect;
using driver::Size;
using platform::Pid;
using platform::WindowNumber;

/// Virtual time since the Mac started.
using Microseconds = std::int64_t;
inline constexpr Microseconds microsecondsPerSecond = 1'000'000;

/// The earliest of some times; none when there is none.
inline std::optional<Microseconds> earliest(
    std::initializer_list<std::optional<Microseconds>> times) {
  std::optional<Microseconds> first;
  for (const auto& time : times) {
    if (time && (!first || *time < *first)) first = time;
  }
  return first;
}

/// Names an element within its application; 0 is the application itself. Ids are given in the order
/// of the world's text, from 1, and never used twice.
using ElementId = std::int64_t;

/// A value that nothing looks into; only its hash is known.
struct Opaque {
  std::uint64_t hash = 0;
  friend bool operator==(const Opaque&, const Opaque&) = default;
};

/// An attribute whose value is one element.
struct ElementLink {
  ElementId id = 0;
  friend bool operator==(const ElementLink&, const ElementLink&) = default;
};

using AttributeValue = std::variant<Opaque, std::string, bool, std::int64_t, double, ElementLink,
                                    std::vector<ElementId>, Point, Size, Rect, ax::Range>;

struct World;
struct Application;
struct Reacting;
struct Addition;  // a call of a body of lines, in text/call.h

/// What a reaction does: one of those in reactions.h, which say what they make of its parts. Gives
/// what the journal is to say of it, as that it found nothing to act on; empty when there is
/// nothing to say.
using ReactionEffect = std::string(const Reacting& with);

/// A time that is left to chance, both ends included; the middle in a world without a seed.
struct Span {
  Microseconds least = 0;
  Microseconds most = 0;
};

/// What must be so for a reaction to take place: an element's value, as a text.
struct Condition {
  std::string label;
  std::string text;
  bool negated = false;
};

/// Where something goes that is put among others.
enum class Placement { above, below, at };

/// What an element does when a click lands on it, or an application by itself.
struct Reaction {
  ReactionEffect* effect = nullptr;
  std::string text = {};
  std::optional<std::string> textOf = {};  // the label of the element whose value is the text
  std::optional<std::string> target = {};  // the label of the element that it is about
  std::optional<std::string> window = {};  // the title of the application's window that it is about
  std::optional<std::string> other = {};   // the label of what its target goes to
  Placement placement = Placement::at;
  Point point = {};
  std::int64_t number = 0;
  std::shared_ptr<const Addition> addition = nullptr;     // whose elements come
  std::map<std::size_t, std::string> argumentsOf = {};    // by place: whose values are arguments
  std::map<std::size_t, std::string> heldArguments = {};  // these values, when it takes place
  std::optional<Span> after = {};                         // it takes place that much later
  std::optional<Condition> when = {};         // of an element of its own application, by then
  std::optional<std::string> elsewhere = {};  // the application that it is about, as it is written
  Pid elsewherePid = 0;
};

/// A reaction that takes place, and what it has to do with.
struct Reacting {
  World& world;
  Application& application;
  ElementId element = 0;  // whose reaction it is; 0: the application's own
  const Reaction& reaction;
};

/// A reaction that is due later.
struct DueReaction {
  Microseconds due = 0;
  Pid pid = 0;
  ElementId element = 0;
  Reaction reaction;
  Pid actor = 0;           // who has caused it, as for World::actor
  bool recurring = false;  // as for World::recurring
};

/// When an element is there.
enum class Presence {
  always,
  whileHovered,  // the pointer is over what it is in
  whileOpen,     // it is the application's open menu
  whileHeld,     // another element has a value, as its habits say
};

struct Element {
  ElementId id = 0;
  ElementId parent = 0;     // 0 for a window
  WindowNumber window = 0;  // the window it is drawn in
  std::string role;
  std::optional<Rect> frame;  // global points; absent: neither position nor size can be read
  std::vector<ElementId> children;
  /// By attribute name: AXTitle, AXValue, AXSubrole, AXEnabled, AXSelectedTextRange … A name of the
  /// structure (AXRole, AXChildren, AXPosition, AXSize …) in here hides the real one: so an
  /// application lies.
  std::map<std::string, AttributeValue> attributes;
  /// Attributes whose read fails, by the error it gives.
  std::map<std::string, ax::Error> failing;
  std::vector<std::string> actions;
  std::vector<Reaction> onClick;
  std::vector<Reaction> onRightClick;
  std::vector<Reaction> onDoubleClick;  // to the second of two clicks, in place of onClick
  std::vector<Reaction> onSubmit;       // to the return key, in place of a line break
  Presence presence = Presence::always;
  ElementId dependsOn = 0;   // itself, or the nearest around it, that is not always there; else 0
  ElementId scrolledBy = 0;  // the nearest around it in which it scrolls; else 0
  bool removed = false;
};

/// One step of what a field makes of a text that it is given.
struct Transform {
  enum class Kind { upper, lower, trim, oneLine, first };
  Kind kind = Kind::upper;
  std::size_t characters = 0;  // that `first` keeps
};

/// What an element makes of what is asked of it, where that is not the plain thing.
struct Habits {
  std::vector<Transform> transforms;  // of the whole text after a write, in order
  enum class Writes { taken, halved, ignored };
  Writes writes = Writes::taken;       // of texts
  Microseconds delay = 0;              // a text that is written lands that much later
  bool showsPlaceholder = false;       // an empty field reads as its placeholder
  bool isComposer = false;             // its AXValue shows as static texts in it, one for each line
  bool hidesValue = false;             // of a composer: only the static texts can be read
  bool losesMarked = false;            // what comes into it takes the place of its marked text
  bool takesFiles = false;             // pasted files become pictures in it, whatever else it takes
  bool stacks = false;                 // its children lie one below the other, and close up
  std::optional<Condition> onlyWhile;  // it is there only then
  bool givesActions = false;           // its line says which actions it has
  enum class Scrolling { none, whole, lazy };
  Scrolling scrolling = Scrolling::none;  // of what is in it; of lazy ones out of sight is away
  std::map<std::string, ax::Error> rejecting;  // writes of these attributes give the error
  std::optional<double> step;                  // of AXIncrement and AXDecrement
  ax::Error actionError = ax::Error::success;  // what an action that ran answers
  enum class Children { steady, grow, growDeeper, shrink };
  Children children = Children::steady;  // after each read of them
};

/// Elements that share everything with another but their ids.
struct Copies {
  ElementId first = 0;  // the others follow
  std::int64_t count = 0;
  ElementId original = 0;
};

/// What is in an element scrolls there.
struct ScrollArea {
  ElementId id = 0;
  Point offset = {};            // how far to the right and down, in points
  bool isLazy = false;          // what is out of sight is not in the tree
  ElementId verticalBar = 0;    // 0: none
  ElementId horizontalBar = 0;  // 0: none
};

/// The first id of a copy.
inline constexpr ElementId firstCopy = 1'000'000'000;

/// What an application has been sent of the click that is under way.
struct ClickProgress {
  std::int64_t group = -1;
  std::size_t primingSteps = 0;  // of the four that come first
  std::int64_t button = 0;       // that the last of them announced
  std::optional<std::uint32_t> pressedType;
  Pid pressedBy = 0;  // the process that posted it
  std::int64_t clickState = 0;
};

/// A key that was posted to an application and not released.
struct HeldKey {
  std::int64_t code = 0;
  Pid by = 0;  // the process that posted it
  friend bool operator==(const HeldKey&, const HeldKey&) = default;
};

/// What an input method, or a dead key, shows in a field and has not committed yet.
struct Marked {
  ElementId element = 0;
  ax::Range range;         // of the field's text, in UTF-16 units
  bool isDeadKey = false;  // an accent that waits for its letter
};

/// An event that was posted to an application and waits for its menu to close.
struct WaitingEvent {
  platform::EventImage event;
  bool isPrivate = false;  // the route by which it came
  Pid actor = 0;           // the process that posted it
};

enum class ApplicationKind { appKit, chromium };

struct Application {
  Pid pid = 0;
  std::optional<std::string> name;
  std::optional<std::string> bundleIdentifier;
  std::optional<std::string> bundlePath;
  ApplicationKind kind = ApplicationKind::appKit;
  workspace::ActivationPolicy policy = workspace::ActivationPolicy::regular;
  bool hidden = false;
  bool running = true;

  // How it answers accessibility messages.
  bool hangs = false;
  Microseconds answerDelay = 0;
  bool rejectsEnabling = false;  // the enabling writes answer "unsupported", yet take effect
  bool treeOnDemand = false;     // the tree exists only `treeDelay` after both writes
  Microseconds treeDelay = 0;
  Microseconds pasteDelay = 50'000;  // from the asking for a paste to its reading the pasteboard
  bool tracksMenus = false;          // while one is open it takes no other input
  bool manualAccessibility = false;
  bool enhancedUserInterface = false;
  std::optional<Microseconds> enabledAt;  // when the second of the two writes came

  // As for an element, but of the application element itself.
  std::map<std::string, AttributeValue> attributes;
  std::map<std::string, ax::Error> failing;

  std::vector<Element> elements;        // by id, from 1 at index 0
  std::map<ElementId, Habits> habits;   // of the elements that have any
  std::vector<Copies> copies;           // by id
  std::vector<ScrollArea> scrollAreas;  // those around others before them
  bool rearranged = false;              // ids do not tell any more in which order they are drawn
  ElementId openMenu = 0;               // the AXMenu of the one menu that is open; 0: none
  std::vector<ElementId> windows;       // AXWindows, in the application's order
  ElementId focusedWindow = 0;          // 0: none
  ElementId focusedElement = 0;
  std::optional<Marked> marked;  // of one of its fields

  // What event records and events have made of it.
  WindowNumber focusByRecord = 0;  // 0: it holds no focus by record
  Pid focusGivenBy = 0;            // the process that gave it
  WindowNumber keyByRecord = 0;    // 0: no first record of a pair waits for its second
  WindowNumber madeKey = 0;        // by such a pair, since it has held focus by record; 0: none
  std::vector<HeldKey> keysDown;
  std::vector<WaitingEvent> waiting;  // in the order in which they came
  ClickProgress click;
  std::optional<Microseconds> lastPost;
  std::int64_t lastPostIdentity = -1;
  bool lastPostTooSoon = false;
  bool lastPostTaken = false;
};

struct Window {
  WindowNumber number = 0;
  Pid owner = 0;
  std::optional<std::string> title;
  Rect frame;  // global points
  std::int64_t layer = 0;
  bool onScreen = true;
  bool hiddenWithOwner = false;  // off screen only because its application is hidden
  ElementId element = 0;         // its AXWindow or AXSheet; 0: it shows nothing to accessibility
  WindowNumber sheetOf = 0;
  bool numberHidden = false;                 // accessibility gives 0 for its number
  std::optional<std::int64_t> listedNumber;  // what the window server lists in its place
  ElementId hadKeyboard = 0;   // what had the keyboard focus when another window got it
  bool capturable = true;      // listed among what can be shared
  Point scrolledLines;         // by scroll events that landed
  std::optional<Point> hover;  // where the last pointer move that landed was, in global points
};

}  // namespace simulator
