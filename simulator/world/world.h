#pragma once

#include <cstdint>
#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <variant>
#include <vector>

#include "base/geometry.h"
#include "platform/ax.h"
#include "platform/call.h"
#include "platform/types.h"
#include "platform/workspace.h"
#include "simulator/world/cover.h"
#include "simulator/world/pasteboard.h"
#include "simulator/world/random.h"
#include "simulator/world/sharing.h"
#include "simulator/world/user_state.h"

/// The simulated Mac's state, as plain values: copying a World copies the Mac. What happens in it
/// is in applications.h and input.h; how it is written as text in world_text.h.
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
struct HappeningKind;
struct Definitions;  // bodies of lines, in text/gathering.h
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

struct Display {
  std::uint32_t id = 0;
  Rect frame;  // global points
  double scale = 1;
  bool modeReadable = true;
};

struct Session {
  bool readable = true;
  std::optional<bool> locked;  // absent: the key is missing, as it is while unlocked
  std::optional<bool> onConsole = true;
  Microseconds lockDelay = 400'000;  // from the call that locks to the login window

  /// Neither locked nor off the console: input reaches applications.
  bool isUsable() const { return !locked.value_or(false) && onConsole.value_or(true); }
};

struct User {
  std::string fullName = "Ada Lovelace";
  std::string loginName = "ada";
  bool nameParses = true;  // whether the person-name parser finds a given name
};

enum class MouseButton { left, right, other };

/// Something that happens at a time, whoever causes it.
struct Happening {
  const HappeningKind* kind = nullptr;  // a row of the table in text/happenings.h; null: nothing
  // What it is about, as far as its kind needs it.
  Pid pid = 0;
  std::string text;
  Point point{};
  Point end{};
  std::uint64_t modifiers = 0;  // as quartz::Modifier has them; of a key: held down meanwhile
  MouseButton button = MouseButton::left;
  bool tagged = false;  // of input: not the user's own, but posted with the own tag
  Display display = {};
  Pid addressee = 0;  // of input: the process that it names as its target; 0: none
  int number = 0;
  std::vector<Reaction> reactions = {};
};

/// Something that happens at a time, and perhaps again.
struct Scripted {
  Microseconds at = 0;
  Happening happening;
  Microseconds latest = 0;                 // when it is above `at`, the time is left to chance
  std::optional<Span> every = {};          // from one time to the next
  std::optional<std::int64_t> times = {};  // how often it is still to happen; none: for ever
  std::size_t place = 0;                   // in the text, which orders what has the same time
  std::optional<Random> chance = {};       // for its times, where the world has a seed
};

/// Elements, or windows, that have come while a Mac runs.
struct Added {
  std::size_t count = 0;  // of windows, or of the outermost elements, which are the last children
                          // of what they are in
  std::string error;      // why none has come
};

/// Adds what a reaction's call says to the element `parent` of the application, or windows to the
/// application itself, which is 0.
using Adder = Added(World& world, Pid pid, ElementId parent, const Reaction& reaction);

/// The system's service for open and save panels, as far as a line says: which window its next
/// panel is, and over which one it lies.
struct PanelService {
  Pid pid = 0;
  WindowNumber number = 0;
  WindowNumber over = 0;
};

/// A write, or a paste, that was accepted and has not had its effect yet.
struct PendingWrite {
  Microseconds due = 0;
  Pid pid = 0;
  ElementId element = 0;
  std::string attribute;
  std::string text;
  bool pastes = false;  // what is on the pasteboard then, in place of `text`
  Pid actor = 0;        // who has asked for it, as for World::actor
};

/// The login window that a call has asked for, and that does not show yet.
struct ComingLock {
  Microseconds asked = 0;
  Microseconds due = 0;
  Pid caller = 0;
};

/// A fault that has still to strike, as a text, and how many of its calls there have been.
struct WaitingFault {
  std::string text;
  std::size_t counted = 0;
};

/// What a Mac goes on with that has run before, beside its world.
struct Resumption {
  std::size_t processes = 0;    // that have joined so far
  std::int64_t numbers = 0;     // the last one given to an event, source, picture, tap or stream
  std::int64_t lastSerial = 0;  // of an event that a tap was asked about
  Microseconds lastNews = 0;    // when the latest entry came that tells of something new
  std::optional<ComingLock> comingLock = {};
  std::optional<Microseconds> screensChanged = {};  // when they last did
  std::set<Pid> killed = {};                        // processes that were, and held something then
  std::vector<WaitingFault> faults = {};
  std::optional<Random> chance = {};  // for how long calls take, where there is a seed
};

struct World {
  std::vector<Display> displays;
  std::vector<Application> applications;  // in the workspace's order
  std::vector<Window> windows;            // front to back, higher layers first
  WindowNumber lastWindow = 0;            // the largest number given so far; none is used twice
  Pid frontmost = 0;                      // 0: none
  Session session;
  bool accessibilityAllowed = true;
  bool screenRecordingAllowed = true;
  bool displayHoldAllowed = true;  // the system keeps the display awake for who asks
  bool keysInTapsAllowed = true;   // a tap gets what its mask has of keys
  User user;
  Point pointer;
  Keyboard keyboard;
  std::map<std::uint32_t, HeldButton> heldButtons;  // by the event type of the press
  std::optional<UserClick> lastClick;
  Activity activity;
  Pasteboard pasteboard;
  std::vector<Cover> covers;  // in the order of their showing, later ones in front
  System system;
  std::vector<PanelService> panels;   // in the order of the text
  std::vector<Sharing> sharings;      // in the order of their starting
  std::set<std::string> missing;      // symbols, and libraries by the last component of their path
  std::set<Pid> processes;            // alive, besides applications
  std::set<std::string> files;        // absolute paths that exist, those of bundles included
  std::set<std::string> images;       // absolute paths that load as pictures
  Pid actor = 0;                      // the process whose call is answered; 0: the user, the system
  std::vector<Scripted> script;       // by time; equal times in the order of the text
  std::vector<PendingWrite> pending;  // by time; equal times in the order of the writes
  Microseconds present = 0;           // up to when they have had their effects
  std::vector<DueReaction> due;       // by time; equal times in the order of their causes
  bool recurring = false;             // what happens now does so again and again, for ever
  std::optional<std::uint64_t> seed;  // of what is left to chance; absent: nothing is
  std::shared_ptr<const Definitions> definitions;  // that its text gives; null: none
  Adder* adder = nullptr;  // reads them when something is to be added; set by the text's reader
  std::optional<Random> chance;          // for reactions, where there is a seed
  std::optional<Resumption> resumption;  // of a world that was written of a running Mac
};

/// One attribute of an element, as an application that answers gives it.
struct AttributeResult {
  std::optional<AttributeValue> value;
  ax::Error error = ax::Error::success;
};

/// Lookups. A null pointer when there is none; the result is borrowed from the world.
Application* findApplication(World& world, Pid pid);  // only a running one
const Application* findApplication(const World& world, Pid pid);
Window* findWindow(World& world, WindowNumber number);
const Window* findWindow(const World& world, WindowNumber number);
Element* findElement(Application& application, ElementId id);  // none for a removed one; the
                                                               // original of a copy
const Element* findElement(const Application& application, ElementId id);

/// The first of AXTitle, AXDescription, AXPlaceholderValue and AXHelp that is a text of at least
/// one character; empty when none is. Borrowed from the element.
const std::string& labelOf(const Element& element);

/// The attribute that its label is; AXTitle when it has none.
const std::string& labelAttributeOf(const Element& element);

/// The first element of the application with this label that is neither removed nor a window.
Element* findLabelled(Application& application, const std::string& label);
const Element* findLabelled(const Application& application, const std::string& label);

/// The first window of the application with this title, on screen or not.
Window* findTitled(World& world, Pid owner, const std::string& title);

}  // namespace simulator
