#include "simulator/companion/polling_hint.h"

#include <iostream>

#include "simulator/text/words.h"

namespace companion {

namespace {

/// Nobody asks that often who does not wait for something. The clients' `until` asks fifty times.
constexpr int inVain = 25;

/// Where calls take their time by chance, the answers alone move time by some milliseconds.
constexpr simulator::Microseconds shortestPause = 10'000;

}  // namespace

void PollingHint::count(const std::vector<std::string>& words, simulator::Microseconds now) {
  if (time_ == simulator::Scheduler::Time::real || isTold_) return;
  if (now - last_ >= shortestPause) startAgain();
  last_ = now;
  if (++counts_[words] < inVain) return;
  isTold_ = true;
  std::string text;
  for (const std::string& word : words) text += " " + simulator::quotedWord(word);
  std::cerr << "simulated-mac: virtual time hardly passed while the same was asked " << inVain
            << " times:" << text
            << "; let time pass by \"simulated-mac wait 500ms\" or \"simulated-mac wait until APP "
               "shows TEXT\", or start the Mac by \"simulated-mac run --virtual --sleep\""
            << std::endl;
}

void PollingHint::startAgain() { counts_.clear(); }

}  // namespace companion
