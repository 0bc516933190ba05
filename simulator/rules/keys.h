#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/call.h"
#include "simulator/mac/mac.h"

namespace simulator {

/// What must hold of a client that presses keys, types or pastes: the keys and modifiers are those
/// that were asked for, each goes down and up again, the window that gets them is the only one that
/// it can be, and a success means that nothing was left out.
class KeyRules {
 public:
  /// Both outlive this object.
  KeyRules(const Mac& mac, const Client& client) : mac_(mac), client_(client) {}

  using Violations = std::vector<std::string>;

  /// Whether the client runs such a command.
  bool concernsUs() const;

  /// Before the world answers a call. `lastSleep` is the latest wait; `isFailing` says that the run
  /// has met a failed check.
  void before(const platform::Call& call, std::uint32_t lastSleep, bool isFailing,
              Violations& violations);

  /// After it. Gives the waits that the call owes, in microseconds.
  std::vector<std::uint32_t> after(const platform::Call& call, const Answer& answer);

  /// The waits that the posting of a key event owes.
  std::vector<std::uint32_t> waitsAfter(const platform::EventImage& event) const;

  /// When the client has replied. `isExcused`: input was withheld for a reason, or could not be
  /// made.
  void finish(bool ok, bool isExcused, Violations& violations) const;

 private:
  using Step = std::pair<std::int64_t, bool>;  // a key's code, and whether it goes down

  struct Combination {
    std::int64_t code = -1;  // below 0: none
    std::uint64_t flags = 0;
  };

  std::string command() const;
  std::string payload() const;
  Combination combination() const;
  std::vector<Step> stepsTold() const;
  std::pair<std::string, std::size_t> textTold() const;
  std::uint64_t flagsTold(const platform::EventImage& event) const;
  bool isComplete() const;
  void checkKey(const platform::EventImage& event, Violations& violations);
  void checkRecord(const platform::Call& call, std::uint32_t lastSleep, bool isFailing,
                   Violations& violations);
  void checkWindow(WindowNumber number, Violations& violations);

  const Mac& mac_;
  const Client& client_;
  std::vector<std::int64_t> down_;  // keys that are down, in the order of their going down
  std::vector<Step> steps_;         // of events without a text
  std::u16string typed_;
  std::size_t lineBreaks_ = 0;
  bool menuPressed_ = false;
  bool outOfOrder_ = false;
  std::set<WindowNumber> toldNumbers_;  // of windows, by accessibility
  std::set<WindowNumber> checkedWindows_;
};

}  // namespace simulator
