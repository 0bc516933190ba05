#pragma once

#include <string>
#include <utility>

namespace oracle {

/// Why the oracle says nothing of a case. This is the whole list.
enum class Silence {
  // The Mac is not still: what a command meets depends on more than the commands' reference says.
  happening,     // something is scripted for a time that the command lives through
  covered,       // a guard covers the screens
  waitingInput,  // events wait for a menu that an application tracks
  pendingWrite,  // a write of an earlier command has not landed yet
  hanging,       // the application asked does not answer; how long a run asks is a limit of its own
  restless,      // an element's children change whenever they are read
  slowTree,      // a tree that comes with time, of an application that answers slowly
  slowWrite,     // a write that lands with time, in an application that answers slowly

  // The system asks the user, or lets nobody read: the reference says nothing of that.
  askedUser,        // whether the screen may be recorded
  unreadableBoard,  // the clipboard cannot be read

  // The command does not end by itself, or does what only a process of its own can show.
  livesOn,
  outsideTheMac,  // the reply depends on a file of the machine that the test runs on

  // The reference leaves it open.
  repeatedText,     // the same text twice for ax-find-text
  equallyLow,       // two controls for "last" with the same top edge, or one without a frame
  oddNumber,        // a number in hexadecimal, with a payload or beyond what a double holds
  oddPath,          // a path that is no well-formed text
  onlyPromises,     // a clipboard whose items cannot be read
  shownDecoration,  // whether a second write follows in a field that shows its decoration as its
                    // value
  splitCharacter,   // a selection that begins or ends in the middle of a character
  movedKeyboard     // the rest of a text that has itself made another window of an application in
                    // front the key one
};

/// Thrown where the oracle says nothing.
struct NoOpinion {
  Silence why;
};

/// What it is called in a report.
std::string nameOf(Silence silence);

/// Thrown where a command fails: status 1, and this message.
struct Failure {
  std::string message;
};

/// Thrown where input is refused in the middle of an operation; whoever began it replies so.
struct InputRefusal {
  std::string message;
};

}  // namespace oracle
