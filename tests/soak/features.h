#pragma once

#include "simulator/world/random.h"

namespace soak {

using simulator::Random;

/// What a case may have at all. Each seed leaves most of it off: what comes together rarely in a
/// mixture of everything comes together often in a mixture of little.
struct Features {
  // Of the Mac.
  bool oddTexts = false;         // ill-formed, long, of other scripts
  bool chromium = false;         // applications of that kind
  bool oddApplications = false;  // unnamed, unbundled, accessory, of the same name
  bool hidden = false;           // applications and minimised windows
  bool slow = false;             // applications that take time over each message
  bool hanging = false;
  bool oddWindows = false;  // untitled, unnumbered, in layers, not capturable, without element
  bool sheets = false;
  bool panel = false;
  bool menus = false;
  bool deepTrees = false;
  bool largeTrees = false;     // hundreds of elements and more
  bool endlessTrees = false;   // that grow while they are read
  bool lies = false;           // attributes that are not so, and reads that fail
  bool fieldHabits = false;    // fields that make something else of a text
  bool twins = false;          // elements that are labelled as others of their role
  bool windowActs = false;     // presses that open, close and retitle windows
  bool deadlyActs = false;     // presses that quit the application or let it hang
  bool displays = false;       // several
  bool denials = false;        // permissions, private functions, sessions
  bool pasteboard = false;     // something is on it
  bool otherKeyboard = false;  // layout, languages, version
  bool changing = false;       // rows that move, elements that come to be used or called otherwise
  bool later = false;          // what follows a press later, and what applications do by themselves
  bool scrolling = false;      // areas that scroll, lists that close up
  bool tracking = false;       // applications that track their menus
  bool templates = false;      // windows and areas that come from a body of lines
  bool marking = false;        // marked text, dead keys
  bool releases = false;       // of macOS, and single settings of theirs

  // Of what happens.
  bool userMoves = false;     // pointer, scrolling
  bool userClicks = false;    // clicks, fronts
  bool userTypes = false;     // keys
  bool userCopies = false;    //
  bool userSwitches = false;  // applications come to front, quit, hang
  bool session = false;       // locks, unlocks, other users
  bool hardware = false;      // displays
  bool system = false;        // permissions, taps, sharing
  bool signals = false;       // every process is told to end
  bool serviceEnds = false;   // the service that runs depend on

  // Of the agent.
  bool scope = false;
  bool service = false;       // CU_CAPTURE_PID names a process
  bool oddArguments = false;  // words that make no sense
  bool pointer = false;
  bool keyboard = false;
  bool accessibility = false;
  bool pictures = false;
  bool living = false;  // services, guards, watchers
  bool faults = false;
  bool latencies = false;
  bool turns = false;  // flows go on in any order

  // Of both.
  bool fewTexts = false;  // so that many are equal
  bool aimed = false;     // most runs are of one command, and the Mac has what it is for
};

/// The features of a case.
Features drawFeatures(Random random);

}  // namespace soak
