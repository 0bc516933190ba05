#include "tests/soak/judges.h"

#include <algorithm>
#include <array>
#include <exception>

#include "simulator/text/error.h"
#include "tests/soak/contract_judge.h"
#include "tests/soak/oracle_judge.h"
#include "tests/soak/resumption.h"
#include "tests/soak/user_judge.h"
#include "tests/support/channels.h"

namespace soak {

namespace {

std::string brokenRule(const Case& /*one*/, const Played& played) {
  const auto& violations = played.desktop->violations();
  return violations.empty() ? "" : violations.front();
}

std::string endlessRun(const Case& one, const Played& played) {
  for (std::size_t i = 0; i < played.steps.size(); ++i) {
    const PlayedStep& step = played.steps[i];
    if (step.began && step.status == testing_support::stillRunning) {
      return "step " + std::to_string(i + 1) + " (" +
             (one.steps[i].words.empty() ? "" : one.steps[i].words.front()) + ") does not end";
    }
  }
  return "";
}

std::string keptHandles(const Case& /*one*/, const Played& played) {
  if (played.handlesLeft == 0) return "";
  return std::to_string(played.handlesLeft) + " handles more than at the start are alive";
}

constexpr std::array allJudges = {
    Judge{"rules", brokenRule},       Judge{"ending", endlessRun},
    Judge{"handles", keptHandles},    Judge{"contract", lineOutsideOfContract},
    Judge{"user", disturbanceOfUser}, Judge{"oracle", difference},
};

/// The first lines in which they differ.
std::optional<Complaint> differenceOfTraces(const char* judge, const std::string& first,
                                            const std::string& second) {
  if (first == second) return std::nullopt;
  const auto difference = std::mismatch(first.begin(), first.end(), second.begin(), second.end());
  const auto place = static_cast<std::size_t>(difference.first - first.begin());
  const std::size_t start = place == 0 ? 0 : first.rfind('\n', place - 1) + 1;
  return Complaint{judge, "first " + first.substr(start, first.find('\n', start) - start) +
                              ", then " + second.substr(start, second.find('\n', start) - start)};
}

/// Of a rule's sentence, which begins with its name: "rules I5".
std::string nameWithRule(const Judge& judge, const std::string& complaint) {
  std::string name(judge.name);
  if (name == "rules") name += " " + complaint.substr(0, complaint.find(':'));
  return name;
}

}  // namespace

std::span<const Judge> judges() { return allJudges; }

std::optional<Complaint> judge(const Case& one, const Played& played) {
  for (const Judge& each : allJudges) {
    std::string text = each.complaint(one, played);
    if (!text.empty()) return Complaint{nameWithRule(each, text), std::move(text)};
  }
  return std::nullopt;
}

std::optional<Complaint> verdict(const Case& one, const std::string& folder,
                                 const std::function<void(const Played&)>& observe, Trace trace) {
  try {
    const Played played = play(one, folder, Way::fast, trace);
    observe(played);
    return judge(one, played);
  } catch (const simulator::WorldError& error) {
    return Complaint{"generator", error.what()};
  } catch (const std::exception& error) {
    return Complaint{"exception", error.what()};
  }
}

std::optional<Complaint> repetition(const Case& one, const std::string& folder) {
  const Played played = play(one, folder);
  const std::string first = traceOf(played);
  const Case again = readCase(worldText(one), stepsText(one));
  if (worldText(again) != worldText(one) || stepsText(again) != stepsText(one)) {
    return Complaint{"repetition", "the case reads back as another one"};
  }
  return differenceOfTraces("repetition", first, traceOf(play(again, folder, Way::inFlows)));
}

std::optional<Complaint> resumption(const Case& one, const std::string& folder) {
  if (!runsAlone(one)) return std::nullopt;
  const Played straight = play(one, folder);
  try {
    const Played resumed = play(one, folder, Way::resumed);
    for (std::size_t i = 0; i < straight.steps.size(); ++i) {
      const PlayedStep& first = straight.steps[i];
      const PlayedStep& second = resumed.steps[i];
      const bool isSame = first.status == second.status && first.output == second.output &&
                          first.began == second.began && first.ended == second.ended;
      if (!isSame) {
        return Complaint{"resumption", "first " + first.output + ", then " + second.output};
      }
    }
    return differenceOfTraces("resumption", traceOf(straight), traceOf(resumed));
  } catch (const ResumptionFailure& failure) {
    return Complaint{"resumption", failure.what()};
  }
}

}  // namespace soak
