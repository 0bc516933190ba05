#include "tests/soak/coverage.h"

#include <algorithm>

#include "main/dispatcher.h"
#include "simulator/fault_outcomes.h"
#include "simulator/text/happenings.h"
#include "tests/soak/contract_judge.h"

namespace soak {

namespace {

constexpr const char* nothing = "nothing";

/// What a driver says that has no simulated Mac: not in these runs.
constexpr std::string_view ofOtherRuns = "SimulatedMac";

std::string entry(std::string_view command, std::string_view aspect, const std::string& what) {
  return std::string(command) + '\t' + std::string(aspect) + '\t' + what;
}

/// The phrases of what happened while a step ran.
std::set<std::string> happeningsDuring(const PlayedStep& step, const Played& played) {
  std::set<std::string> phrases;
  for (const auto& each : played.desktop->mac().journal) {
    const bool isDuring = each.at >= *step.began && each.at <= step.ended;
    if (each.kind != simulator::JournalEntry::Kind::happening || !isDuring) continue;
    for (const auto& kind : simulator::happeningKinds()) {
      if (each.what.starts_with(kind.phrase)) phrases.insert(kind.phrase);
    }
  }
  if (phrases.empty()) phrases.insert(nothing);
  return phrases;
}

/// The names of the outcomes that the case's faults have, when one of the step's calls met one.
std::set<std::string> faultsOf(const Case& one, const PlayedStep& step, const Played& played) {
  const auto& trace = played.desktop->trace();
  const bool met = std::any_of(trace.begin(), trace.end(), [&](const auto& each) {
    return each.client == step.client && each.faulty;
  });
  std::set<std::string> names;
  for (const std::string& fault : one.faults) {
    for (const auto& row : simulator::outcomeRows()) {
      const std::string word = " " + std::string(row.name);
      if (met && (fault + " ").find(word + " ") != std::string::npos) {
        names.insert(std::string(row.name));
      }
    }
  }
  if (names.empty()) names.insert(nothing);
  return names;
}

std::set<std::string> repliesOf(const Step& step, const PlayedStep& result) {
  std::set<std::string> kinds;
  std::string_view rest = result.output;
  for (std::size_t end = rest.find('\n'); end != std::string_view::npos; end = rest.find('\n')) {
    kinds.insert(kindOfReply(step, std::string(rest.substr(0, end))));
    rest.remove_prefix(end + 1);
  }
  if (kinds.empty()) kinds.insert(nothing);
  return kinds;
}

std::string commandOf(const Step& step) {
  for (const driver::Command& command : driver::commands()) {
    if (!step.words.empty() && step.words.front() == command.form.name) return step.words.front();
  }
  return "no command";
}

/// "    replies: A, B", or nothing.
std::string missingOf(std::string_view command, std::string_view aspect,
                      const std::vector<std::string>& all, const Coverage& coverage) {
  std::string list;
  for (const std::string& what : all) {
    if (!coverage.contains(entry(command, aspect, what))) list += (list.empty() ? "" : ", ") + what;
  }
  return list.empty() ? "" : "    " + std::string(aspect) + ": " + list + "\n";
}

std::vector<std::string> allReplies(std::string_view command) {
  std::vector<std::string> kinds = kindsOfReplies(std::string(command));
  std::erase_if(
      kinds, [](const std::string& kind) { return kind.find(ofOtherRuns) != std::string::npos; });
  return kinds;
}

}  // namespace

void addCoverage(const Case& one, const Played& played, Coverage& coverage) {
  for (std::size_t i = 0; i < one.steps.size(); ++i) {
    const PlayedStep& result = played.steps[i];
    if (!result.began) continue;
    const std::string command = commandOf(one.steps[i]);
    for (const std::string& reply : repliesOf(one.steps[i], result)) {
      coverage.insert(entry(command, "replies", reply));
      for (const std::string& fault : faultsOf(one, result, played)) {
        coverage.insert(entry(command, "faults", fault));
        for (const std::string& happening : happeningsDuring(result, played)) {
          coverage.insert(entry(command, "happenings", happening));
          const std::string all = reply + '\t' + fault + '\t' + happening;
          coverage.insert(entry(command, "combinations", all));
        }
      }
    }
  }
}

std::string whatNeverOccurred(const Coverage& coverage) {
  std::vector<std::string> faults;
  for (const auto& row : simulator::outcomeRows()) faults.emplace_back(row.name);
  std::vector<std::string> happenings;
  for (const auto& kind : simulator::happeningKinds()) happenings.emplace_back(kind.phrase);
  std::string text;
  for (const driver::Command& command : driver::commands()) {
    const std::string_view name = command.form.name;
    const std::string missing = missingOf(name, "replies", allReplies(name), coverage) +
                                missingOf(name, "faults", faults, coverage) +
                                missingOf(name, "happenings", happenings, coverage);
    if (!missing.empty()) text += std::string(name) + " never met\n" + missing;
  }
  const auto count = std::count_if(coverage.begin(), coverage.end(), [](const std::string& each) {
    return each.find("\tcombinations\t") != std::string::npos;
  });
  return text + std::to_string(count) +
         " combinations of a command, a reply, a fault and a happening occurred\n";
}

}  // namespace soak
