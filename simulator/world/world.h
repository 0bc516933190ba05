#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/ax.h"
#include "simulator/world/application.h"
#include "simulator/world/cover.h"
#include "simulator/world/pasteboard.h"
#include "simulator/world/random.h"
#include "simulator/world/sharing.h"
#include "simulator/world/user_state.h"

/// The simulated Mac's state, as plain values: copying a World copies the Mac. Its applications are
/// in application.h. What happens in it is in the other files of this folder and in
/// simulator/input; how it is written as text in simulator/text.
namespace simulator {

struct HappeningKind;
struct Definitions;  // bodies of lines, in text/gathering.h

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
