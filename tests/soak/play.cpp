#include "tests/soak/play.h"

#include <algorithm>
#include <filesystem>

#include "main/globals.h"
#include "platform/simulated/channel.h"
#include "simulator/rules/replies.h"
#include "simulator/text/parse.h"
#include "tests/soak/processes.h"
#include "tests/soak/resumption.h"
#include "tests/support/channels.h"

namespace soak {

namespace {

using simulator::Client;
using simulator::Desktop;

std::unique_ptr<Desktop> desktopOf(const Case& one, const simulator::World& world) {
  std::vector<simulator::Fault> faults;
  for (const std::string& text : one.faults) faults.push_back(simulator::parseFault(text, world));
  return std::make_unique<Desktop>(world, faults);
}

/// While it lives, files without a folder of their own are in this one: a run may name any.
class WorkingFolder {
 public:
  explicit WorkingFolder(const std::string& folder) : before_(std::filesystem::current_path()) {
    std::filesystem::current_path(folder);
  }
  WorkingFolder(const WorkingFolder&) = delete;
  WorkingFolder& operator=(const WorkingFolder&) = delete;
  ~WorkingFolder() {
    std::error_code ignored;
    std::filesystem::current_path(before_, ignored);
  }

 private:
  std::filesystem::path before_;
};

std::string traceOf(const Desktop& desktop) {
  std::string text;
  for (const auto& entry : desktop.trace()) text += simulator::traceLine(entry) + "\n";
  return text;
}

/// What plays the steps of a case, by either way.
class Player {
 public:
  Player(const Case& one, const std::string& folder, Trace trace) : case_(one), folder_(folder) {
    played_.before = simulator::parseWorld(worldText(one));
    played_.desktop = desktopOf(one, played_.before);
    if (trace == Trace::none) played_.desktop->keepNoTrace();
    played_.steps.resize(one.steps.size());
  }

  Played playOneByOne() {
    for (std::size_t i = 0; i < case_.steps.size(); ++i) playAlone(i);
    return std::move(played_);
  }

  /// On another Mac for each step, and for the second half of the pause before it.
  Played playResumed() {
    for (std::size_t i = 0; i < case_.steps.size(); ++i) {
      const Microseconds half = case_.steps[i].after / 2;
      const Microseconds start = now() + case_.steps[i].after;
      desktop().advanceTo(now() + half);
      resume();
      runAlone(i, start);
      resume();
    }
    return std::move(played_);
  }

  Played playTogether() {
    driver::exchangeGlobals(nullptr);
    const long before = simulated::liveHandles();
    {
      Processes processes(desktop(), case_.turns);
      processes_ = &processes;
      scheduleStep(0);
      processes.run();
      for (PlayedStep& step : played_.steps) {
        if (step.began) step.status = processes.statusOf(step.client);
      }
    }
    played_.handlesLeft = simulated::liveHandles() - before;
    return std::move(played_);
  }

 private:
  Desktop& desktop() { return *played_.desktop; }
  Microseconds now() { return desktop().mac().now; }

  /// The oracle knows of no faults and of no chance. It is slow, so that it is asked of small
  /// worlds only.
  bool mayBeForetold() const {
    constexpr std::size_t elementsMax = 200;
    std::size_t elements = 0;
    for (const auto& application : played_.before.applications)
      elements += application.elements.size();
    return case_.faults.empty() && !played_.before.seed && elements <= elementsMax;
  }

  std::vector<std::string> commandLine(const Step& step) const {
    std::vector<std::string> words = {"driver"};
    for (const std::string& word : step.words) {
      words.push_back(replaced(word, folderName, folder_));
    }
    return words;
  }

  std::map<std::string, std::string> environment(const Step& step) const {
    std::map<std::string, std::string> variables = step.environment;
    for (auto& [name, value] : variables) value = replaced(value, serviceName, service_);
    return variables;
  }

  void noteService(const Step& step, std::size_t client) {
    const bool isService = !step.words.empty() && step.words.front() == "capture-service";
    if (isService) service_ = std::to_string(Desktop::pidOf(client));
  }

  void noteEnd(PlayedStep& result) {
    result.output = desktop().client(result.client).output;
    result.ended = now();
  }

  void resume() {
    auto next = resumed(desktop());
    played_.earlierTrace += traceOf(desktop());
    played_.desktop = std::move(next);
  }

  void playAlone(std::size_t index) {
    const Step& step = case_.steps[index];
    desktop().advanceTo(now() + step.after);
    if (mayBeForetold()) {
      const auto words = commandLine(step);
      played_.steps[index].expected =
          oracle::expected(desktop().mac(), {words.begin() + 1, words.end()}, environment(step));
    }
    runAlone(index, now());
  }

  void runAlone(std::size_t index, Microseconds start) {
    const Step& step = case_.steps[index];
    PlayedStep& result = played_.steps[index];
    desktop().advanceTo(start);
    const auto words = commandLine(step);
    result.entriesBefore = desktop().mac().entries;
    result.client = desktop().join(words, environment(step));
    noteService(step, result.client);
    result.began = now();
    result.status = testing_support::runDirect(desktop(), result.client, words);
    desktop().leave(result.client);
    result.entriesAfter = desktop().mac().entries;
    noteEnd(result);
    // With a process that is killed goes what it had still to undo.
    if (desktop().client(result.client).diedBySignal) driver::renewGlobals();
    // The handles that the start-up values of a run hold until the next run.
    const driver::Globals& values = driver::globals();
    const long kept = (values.src ? 1 : 0) + (values.guardOruFace ? 1 : 0);
    played_.handlesLeft += simulated::liveHandles() - kept;
  }

  void scheduleStep(std::size_t index) {
    if (index >= case_.steps.size()) return;
    processes_->at(now() + case_.steps[index].after, [this, index] { begin(index); });
  }

  void begin(std::size_t index) {
    const Step& step = case_.steps[index];
    PlayedStep& result = played_.steps[index];
    result.began = now();
    result.client = processes_->start(commandLine(step), environment(step), [this, index] {
      noteEnd(played_.steps[index]);
      if (!case_.steps[index].beside) scheduleStep(index + 1);
    });
    noteService(step, result.client);
    for (const Delivery& delivery : step.deliveries) {
      processes_->at(now() + delivery.at,
                     [this, &delivery, client = result.client] { deliver(delivery, client); });
    }
    if (step.beside) scheduleStep(index + 1);
  }

  void deliver(const Delivery& delivery, std::size_t client) {
    Client& process = *desktop().mac().clients[client];
    switch (delivery.kind) {
      case Delivery::Kind::input:
        process.input += replaced(delivery.text, folderName, folder_);
        break;
      case Delivery::Kind::endOfInput:
        process.inputClosed = true;
        break;
      case Delivery::Kind::signal:
        processes_->signal(client, delivery.signal);
        break;
    }
  }

  const Case& case_;
  const std::string& folder_;
  Played played_;
  Processes* processes_ = nullptr;
  std::string service_ = "0";  // its process id
};

}  // namespace

bool runsAlone(const Case& one) {
  return !one.turns && std::all_of(one.steps.begin(), one.steps.end(), [](const Step& step) {
    const bool livesOn = !step.words.empty() && simulator::isLongLived(step.words.front());
    return !livesOn && !step.beside && step.deliveries.empty();
  });
}

Played play(const Case& one, const std::string& folder, Way way, Trace trace) {
  const WorkingFolder there(folder);
  Player player(one, folder, trace);
  if (way == Way::resumed) return player.playResumed();
  const bool oneByOne = way == Way::fast && runsAlone(one);
  return oneByOne ? player.playOneByOne() : player.playTogether();
}

bool isKilled(const PlayedStep& step) { return step.status > 128 && step.output.empty(); }

std::string traceOf(const Played& played) { return played.earlierTrace + traceOf(*played.desktop); }

}  // namespace soak
