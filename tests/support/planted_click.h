#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/call.h"
#include "simulator/mac/mac.h"

namespace testing_support {

/// Two outcomes of its press.
inline const std::string pressed = "pressed AXCheckBox \"Done\"";
inline const std::string brokenGroup =
    "LOST: the priming events did not come first in its click group";

/// The events of one click, as a receiver wants them, to be spoilt and delivered. Application 41,
/// an AppKit one, has window 7 at 100,100, and 42, a Chromium one, window 9 at 300,100; the click
/// is at 20,20 in the window, on a check box "Done". Window 8 of 41 is off screen; 40 is in front.
class Click {
 public:
  struct Step {
    platform::EventImage event;
    bool privately = true;
    bool publicly = false;
    simulator::Microseconds delay = 100'000;  // before it
  };

  explicit Click(bool chromium = false, bool right = false, int count = 1);

  Step& operator[](std::size_t index) { return steps_[index]; }
  std::vector<Step>& steps() { return steps_; }
  simulator::Mac& mac() { return mac_; }
  simulator::Application& target();

  /// Posts the steps. What came of each posting so far: "OUTCOME", or "LOST: WHY".
  std::vector<std::string> outcomes();

  /// Posts the steps; the outcome of the posting at `index`.
  std::string outcome(std::size_t index);

 private:
  void add(quartz::EventType type, bool located, std::int64_t state, std::int64_t number);

  simulator::Mac mac_;
  platform::Pid pid_;
  bool chromium_;
  bool right_;
  std::vector<Step> steps_;
};

/// Sets a field as the private setter does.
void setField(platform::EventImage& event, quartz::Field field, std::int64_t value);

}  // namespace testing_support
