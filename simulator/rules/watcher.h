#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

#include "simulator/rules/rule.h"

namespace simulator {

/// An input that a watcher has heard of and not yet reported.
struct HeardInput {
  tap::Event event;
  bool touchedTarget = false;            // as it came
  std::optional<std::string> submitted;  // the identifier of the application in front then
  bool isBlurred = false;                // a fault has answered since
  std::optional<double> time;            // the date that the watcher was told since, in seconds
};

/// What must hold of every run of "watch-input": it says what its tap hears of the user's input, in
/// order and at once, and nothing else, and does not go on unheard or unhearing. It takes no notice
/// of other commands.
class WatcherRules : public Rule {
 public:
  using Rule::Rule;

  void before(const ObservedCall& seen, Violations& violations) override;
  void after(const ObservedCall& seen, const Answer& answer, Violations& violations) override;
  void beforeTimePasses(Violations& violations) override;
  void atEnd(Violations& violations) override;

 private:
  bool isWatcher() const { return run_.command() == "watch-input"; }
  bool hasWholeTap() const;
  bool isHearing() const;
  bool touchesTarget(const tap::Event& event) const;
  std::optional<std::string> inFront() const;
  std::optional<bool> touches() const;
  std::optional<bool> isDue() const;
  void checkItemTaken(Violations& violations);
  void checkHearing(Violations& violations);
  void checkLine(const std::string& text, Violations& violations);
  void checkReport(const nlohmann::json& report, Violations& violations) const;

  bool began_ = false;         // the first line has been tried to write
  std::optional<Pid> target_;  // as that line told it
  std::optional<HeardInput> input_;
  double lastReport_ = 0;      // the date of the latest report
  bool isBlind_ = false;       // the system lacks what tells who is in front
  bool enablingOwed_ = false;  // the system has disabled the tap, and said so
  bool isResting_ = false;     // it waits for the next input, not for its reader or an answer
  std::optional<Microseconds> deafSince_;
  bool deafTold_ = false;
};

}  // namespace simulator
