#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/call.h"
#include "simulator/drawing/picture.h"
#include "simulator/mac/journal.h"
#include "simulator/world/tap_line.h"
#include "simulator/world/world.h"

namespace simulator {

/// How long an application has to answer an accessibility message before the platform gives up.
inline constexpr Microseconds messagingTimeout = 6'000'000;

/// Work that a process's main flow is to do repeatedly.
struct Timer {
  std::int64_t work = 0;
  Microseconds due = 0;
  Microseconds interval = 0;
  std::int64_t left = 0;  // how often it is still due; `forEver`: it is a round

  static constexpr std::int64_t forEver = -1;
};

/// A signal by which somebody has told a process to end.
struct ToldToEnd {
  int signal = 0;
  Microseconds at = 0;
  bool fromOutside = false;  // of the Mac: the process knew of it before the Mac did
};

/// A process that uses the Mac.
struct Client {
  Pid pid = 0;
  std::vector<std::string> arguments;
  std::map<std::string, std::string> environment;
  std::map<std::int64_t, Picture> pictures;    // by number
  std::map<std::int64_t, Portrait> portraits;  // by number
  std::vector<std::string> displayHolds;       // what keeps the display awake, by its names
  std::size_t coversShown = 0;
  bool left = false;  // it has gone
  bool exited = false;
  int status = 0;
  std::optional<int> diedBySignal;

  /// What waits for the main flow, oldest first.
  std::deque<platform::WireItem> items;
  std::vector<Timer> timers;  // in the order of their starting
  std::set<int> handledSignals;
  std::set<int> endingSignals;  // the first of which is to be told to the process
  std::optional<ToldToEnd> told;
  std::deque<platform::WireStop> stops;             // streams that the system stopped
  bool inRound = false;                             // the main flow is in a round
  std::int64_t roundsDone = 0;                      // that nobody has waited for
  std::map<std::int64_t, std::int64_t> semaphores;  // their counts, by number

  // Standard input and output, as far as the Mac keeps them.
  std::string output;         // what it wrote
  std::string line;           // of that, what no line feed has ended yet
  std::string input;          // that has arrived and was not read
  bool inputClosed = false;   // nothing more arrives
  bool readerStalls = false;  // nobody takes what is written
  bool outputClosed = false;  // nobody reads any more
  bool outputTaken = false;   // a flow has the right to write a line
};

/// The command line of a process, as a reader knows it: its program by its name alone.
std::vector<std::string> shownArguments(const Client& client);

/// The running Mac: its world, its clock, and what it keeps for its clients.
struct Mac {
  World world;
  Microseconds now = 0;
  std::vector<JournalEntry> journal;
  std::int64_t numbers = 0;  // the last number given to an event, source, picture, tap or stream
  std::vector<std::unique_ptr<Client>>
      clients;  // in the order of joining; null for one that was forgotten
  TapLine tapLine = {};
  std::optional<ComingLock> comingLock = std::nullopt;
  std::optional<Microseconds> screensChanged = std::nullopt;  // when they last did
  std::int64_t entries = 0;                                   // that the journal ever had
  Microseconds lastNews = 0;              // when the latest entry came that tells of something new
  std::set<Pid> killed = {};              // processes that were, and that held something then
  std::vector<std::string> arrived = {};  // what came of input during the present happening
};

/// A Mac that serves for days forgets the oldest entries.
inline constexpr std::size_t journalEntriesMax = 200'000;

/// Adds an entry to the journal, which is of now, and done by whose call is answered.
void enter(Mac& mac, JournalEntry entry);

/// Where in the journal the entries begin that came after the one of this number.
std::vector<JournalEntry>::const_iterator entriesAfter(const Mac& mac, std::int64_t number);

/// The clock moves on, and the writes and pastes that are due by then land, which the journal
/// tells.
void passTimeTo(Mac& mac, Microseconds time);

/// What a call gives, and how long after the call it is due. A call that must wait for something to
/// happen is pending: it is asked again whenever something has, and at `deadline` at the latest.
struct Answer {
  driver::Datum value;
  Microseconds delay = 0;
  bool pending = false;
  std::optional<Microseconds> deadline = std::nullopt;
  /// The same by a round that goes on for ever: time that stands still does not move for it alone.
  std::optional<Microseconds> roundDeadline = std::nullopt;
};

}  // namespace simulator
