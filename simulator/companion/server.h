#pragma once

#include <poll.h>

#include <chrono>
#include <list>
#include <optional>
#include <string>
#include <vector>

#include "simulator/companion/connection.h"
#include "simulator/companion/control.h"
#include "simulator/companion/news.h"
#include "simulator/companion/pace.h"
#include "simulator/companion/polling_hint.h"
#include "simulator/companion/processes.h"
#include "simulator/companion/record.h"
#include "simulator/desktop.h"
#include "simulator/turns.h"

namespace companion {

using simulator::Microseconds;
using simulator::Scheduler;
using simulator::Turns;

struct ServerSettings {
  Scheduler::Time time = Scheduler::Time::real;
  int listeningDescriptor = -1;  // borrowed
  std::string world;             // what the Mac is made of, as it is told to who asks
  bool canBeStopped = false;     // by a command to the Mac
  Recorder* recorder = nullptr;  // borrowed; null: nothing is kept
  bool heedsProcesses = false;   // time stands still while a process below this one is at work
};

/// A simulated Mac that processes join through a socket, one for each of their flows. One thread,
/// and no wait but in `turn`. A process that breaks the protocol, or goes, disturbs no other.
class Server {
 public:
  /// The Mac starts now. What is borrowed of the settings outlives this object.
  Server(simulator::World world, const ServerSettings& settings);

  /// Waits until something is to be done, for a process or on one of the caller's own descriptors
  /// (whose `revents` are set), and does what the processes wait for.
  void turn(std::vector<pollfd>& own);

  /// Somebody has asked for the end of the Mac.
  bool isStopped() const { return stopped_; }

  const simulator::Desktop& desktop() const { return desktop_; }

  /// The command that the Mac was started for has failed.
  void tellOfFailure(const std::string& text) { companion::tellOfFailure(desktop_, text); }

 private:
  enum class Kind { unknown, process, furtherFlow, control };

  struct Client {
    explicit Client(Descriptor descriptor) : connection(std::move(descriptor)) {}

    Connection connection;
    Kind kind = Kind::unknown;
    std::size_t member = 0;  // of the desktop, for a process
    std::optional<Turns::Flow> flow;
    std::optional<Known> known;  // it waits for what is more than that
    bool waits = false;          // for an answer
    bool ended = false;          // nothing more will arrive
    bool gone = false;
  };

  Microseconds elapsed() const;
  Microseconds now() const;
  bool mayMove();
  std::optional<Microseconds> standing();
  std::optional<Microseconds> timeToWait();

  void holdTime();
  void wakeDue();
  std::vector<pollfd> watched() const;
  bool isAnythingWaiting() const;
  void waitForEvents(std::vector<pollfd>& own);
  void acceptWaiting();
  void attend(Client& client, short events);
  void takeMessages(Client& client);
  void handle(Client& client, const driver::Datum& message);
  void join(Client& client, const driver::Datum::List& parts);
  void joinFlow(Client& client, const driver::Datum::List& parts);
  void joinLastAct(Client& client, const driver::Datum::List& parts);
  Client& processNamed(const driver::Datum& pid);
  void handleCall(Client& client, const driver::Datum::List& parts);
  void handleControl(Client& client, const driver::Datum::List& parts);
  void await(Client& client, const Wait& wait);
  ControlAnswer carryOut(const std::vector<std::string>& words);
  ControlAnswer about() const;
  ControlAnswer clock(const std::vector<std::string>& words);
  void tellNews();
  void tellNewsTo(Client& client);
  void deliver(Client& client, const driver::Datum& value);
  void dropGone();

  simulator::Desktop desktop_;
  Turns turns_;
  ServerSettings settings_;
  PollingHint polling_;
  Pace pace_;
  bool stopped_ = false;
  ProcessesBelow below_;
  bool looksAgain_ = false;                      // whether processes are still at work
  std::chrono::steady_clock::time_point start_;  // of the Mac's own time
  std::list<Client> clients_;
};

}  // namespace companion
