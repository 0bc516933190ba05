#include "tests/soak/faults.h"

#include <array>
#include <vector>

#include "simulator/fault_outcomes.h"
#include "tests/soak/happenings.h"

namespace soak {

namespace {

std::string someCode(Random& random) {
  constexpr std::array<std::string_view, 6> codes = {"-25200", "-25202", "-25204",
                                                     "-25205", "-25211", "-600"};
  return std::string(random.pick(codes));
}

/// Something happens before a call, whichever it is.
std::string someInterruption(Random& random, const MacSketch& mac) {
  const std::string happening = someHappening(random, mac);
  if (happening.empty()) return "";
  constexpr std::array callsMax = {30, 120, 120, 1000};
  const auto call = random.between(1, random.pick(callsMax));
  return "any " + std::to_string(call) + " before " + happening;
}

using platform::Function;

/// What most runs call, and what those do that live on.
constexpr std::array callsOfRuns = {Function::createMouseEvent,
                                    Function::createKeyboardEvent,
                                    Function::privatePost,
                                    Function::publicPost,
                                    Function::postRecord,
                                    Function::frontProcess,
                                    Function::frontmost,
                                    Function::session,
                                    Function::axAttribute,
                                    Function::axAttributes,
                                    Function::axActionNames,
                                    Function::axPerform,
                                    Function::axSetAttribute,
                                    Function::windows,
                                    Function::nullSignal,
                                    Function::pasteboardItems,
                                    Function::writeFilesToPasteboard,
                                    Function::writePasteboard,
                                    Function::writeOutput};
constexpr std::array callsOfLivingRuns = {
    Function::createTap,          Function::tapIsEnabled, Function::tapCanBeMade,
    Function::lockScreen,         Function::screens,      Function::showPanel,
    Function::axTrusted,          Function::toolOutput,   Function::writeOutput,
    Function::shareContent,       Function::startStream,  Function::updateFilter,
    Function::stopStream,         Function::frontProcess, Function::postRecord,
    Function::preventDisplaySleep};

/// One whose name begins so.
Function functionOf(Random& random, std::string_view beginning) {
  std::vector<Function> fitting;
  for (std::size_t i = 0; i < platform::functionNames.size(); ++i) {
    if (platform::functionNames[i].starts_with(beginning)) {
      fitting.push_back(static_cast<Function>(i));
    }
  }
  return random.pick(fitting);
}

Function someFunction(Random& random, const MacSketch& mac) {
  const bool isAimed = mac.aim != nullptr && !mac.aim->calls.empty();
  if (isAimed && random.oneIn(2)) return functionOf(random, mac.aim->calls);
  if (random.oneIn(2)) return static_cast<Function>(random.below(platform::functionNames.size()));
  return mac.features.living ? random.pick(callsOfLivingRuns) : random.pick(callsOfRuns);
}

std::string someFault(Random& random, const MacSketch& mac) {
  if (random.oneIn(3)) return someInterruption(random, mac);
  const Function function = someFunction(random, mac);
  const auto names = simulator::outcomeNames(platform::shapeOf(function));
  std::string outcome(random.pick(names));
  if (outcome == "before") {
    const std::string happening = someHappening(random, mac);
    if (happening.empty()) return "";
    outcome += " " + happening;
  } else if (outcome == "error") {
    outcome += " " + someCode(random);
  }
  const auto occurrence = random.between(1, random.oneIn(3) ? 40 : 4);
  // What happens before every call, and leads to further calls, has no end.
  const bool mayGoOn = !outcome.starts_with("before");
  const char* const onwards = mayGoOn && random.oneIn(4) ? "+ " : " ";
  return std::string(platform::nameOf(function)) + " " + std::to_string(occurrence) + onwards +
         outcome;
}

}  // namespace

std::vector<std::string> someFaults(Random random, const MacSketch& mac) {
  std::vector<std::string> faults;
  const std::size_t count = 1 + random.below(random.oneIn(2) ? 12 : 3);
  for (std::size_t i = 0; i < count; ++i) {
    std::string fault = someFault(random, mac);
    if (!fault.empty()) faults.push_back(std::move(fault));
  }
  return faults;
}

}  // namespace soak
