#pragma once

#include <string>
#include <vector>

#include "support/answer.h"
#include "support/receiver.h"

namespace probe {

/// Cases that both sides of the seam are held to: how many there were, and which ones came out
/// otherwise.
class Cases {
 public:
  void add(bool holds, const std::string& what, const std::string& given) {
    ++count_;
    // The longest is a megabyte long.
    if (!holds) different_.push_back(what + ": " + given.substr(0, 80));
  }

  /// Prints the answer to what the probe was asked. The status with which the probe ends.
  int answer(int count, char** words) const {
    return probe::answer(
        asked(count, words), verdictOf(different_.empty()),
        Evidence().add("cases", count_).addJson("different", jsonList(different_)));
  }

 private:
  long long count_ = 0;
  std::vector<std::string> different_;
};

}  // namespace probe
