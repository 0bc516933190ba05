#include "simulator/companion/pace.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "base/numbers.h"
#include "simulator/companion/failure.h"
#include "simulator/text/nearest.h"

namespace companion {

namespace {

// Slower, time stands still for whoever watches; faster, nobody can watch.
constexpr double speedMin = 0.001;
constexpr double speedMax = 1'000'000;

/// A wait of which nothing is left after rounding would be asked for again and again.
Microseconds wholeMicroseconds(double length) {
  return static_cast<Microseconds>(std::ceil(std::min(length, 1e15)));
}

}  // namespace

void Pace::tell(const std::vector<std::string>& words) {
  if (words == std::vector<std::string>{"stop"}) {
    stop();
    return;
  }
  if (words == std::vector<std::string>{"run"}) {
    speed_.reset();
    return;
  }
  const bool names = words.size() == 2 && words[0] == "run";
  const auto speed = names ? driver::parseDouble(words[1]) : std::nullopt;
  if (!names) {
    throw Failure("\"clock\" is followed by stop, step, run or nothing" +
                  simulator::suggestion(simulator::nearest(words[0], {"stop", "step", "run"})));
  }
  if (!speed || !(*speed >= speedMin && *speed <= speedMax)) {
    throw Failure("a clock runs 0.001 to 1,000,000 times as fast as real time, not " + words[1]);
  }
  speed_ = *speed;
  stand_.reset();
}

void Pace::stop() { speed_ = 0; }

std::optional<Microseconds> Pace::waitFor(Microseconds now, Microseconds next, Microseconds real) {
  if (!speed_ || next <= allowed_) return 0;
  if (*speed_ == 0) return std::nullopt;
  if (!stand_ || stand_->at != now) stand_ = Stand{now, real};
  const Microseconds whole = wholeMicroseconds(static_cast<double>(next - now) / *speed_);
  return std::max<Microseconds>(stand_->since + whole - real, 0);
}

nlohmann::json Pace::json() const { return speed_ ? nlohmann::json(*speed_) : nlohmann::json(); }

}  // namespace companion
