#include "simulator/companion/help.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "platform/seam_calls.h"
#include "simulator/companion/failure.h"
#include "simulator/fault_outcomes.h"
#include "simulator/text/habits.h"
#include "simulator/text/happenings.h"
#include "simulator/text/nearest.h"
#include "simulator/text/reactions.h"
#include "simulator/text/releases.h"

namespace companion {

namespace {

using Row = std::vector<std::string>;

/// The headings, then what stands below them.
using Table = std::vector<Row>;

constexpr std::string_view gap = "  ";

void addTo(std::string& list, std::string_view entry) {
  if (!list.empty()) list += ", ";
  list += entry;
}

Table calls() {
  Table table = {{"NUMBER", "CALL", "ANSWER", "OUTCOMES"}};
  for (std::size_t i = 0; i < platform::functionNames.size(); ++i) {
    const auto function = static_cast<platform::Function>(i);
    const platform::Shape shape = platform::shapeOf(function);
    std::string admitted;
    for (const std::string_view name : simulator::outcomeNames(shape)) addTo(admitted, name);
    table.push_back({std::to_string(i), std::string(platform::nameOf(function)),
                     std::string(textOf(shape)), admitted});
  }
  return table;
}

Table outcomes() {
  Table table = {{"OUTCOME", "EFFECT", "ANSWERS"}};
  for (const simulator::OutcomeRow& row : simulator::outcomeRows()) {
    std::string form(row.name);
    if (!row.argument.empty()) form += " " + std::string(row.argument);
    std::string answers;
    for (const simulator::Way& way : row.ways) addTo(answers, textOf(way.shape));
    if (row.ways.size() == platform::shapeTexts.size()) answers = "all";
    table.push_back({form, std::string(row.effect), answers});
  }
  return table;
}

std::string formOf(const simulator::Habit& habit) {
  return std::string(habit.phrase) + (*habit.arguments == '\0' ? "" : " ") + habit.arguments;
}

Table happenings() {
  Table table = {{"HAPPENING", "MEANING", "ONLY IN WORLDS"}};
  for (const simulator::HappeningKind& kind : simulator::happeningKinds()) {
    table.push_back(
        {simulator::formOf(kind), kind.description, kind.notTold == nullptr ? "-" : kind.notTold});
  }
  return table;
}

Table reactions() {
  Table table = {{"REACTION", "EFFECT"}};
  for (const simulator::ReactionKind& kind : simulator::reactionKinds()) {
    table.push_back({simulator::formOf(kind), kind.description});
  }
  return table;
}

Table habits() {
  Table table = {{"HABIT", "MEANING", "REPEATABLE"}};
  for (const simulator::Habit& habit : simulator::habits()) {
    table.push_back({formOf(habit), habit.description, habit.repeatable ? "yes" : "-"});
  }
  return table;
}

std::string versionLine(process::Version version) {
  return "macos " + std::to_string(version.major) + "." + std::to_string(version.minor);
}

const char* mark(bool isSo) { return isSo ? "yes" : "-"; }

/// The lines that each release stands for, and in the last column those that a world has without.
Table releases() {
  const simulator::System unset;
  Table table = {{"LINE", "MEANING"}};
  for (const simulator::Release& release : simulator::releases) {
    table.front().push_back(std::to_string(release.number));
  }
  table.front().emplace_back("WITHOUT");
  const auto addVersion = [&](process::Version version) {
    Row row = {versionLine(version), "the version of the system"};
    for (const simulator::Release& release : simulator::releases) {
      row.emplace_back(mark(release.version == version));
    }
    row.emplace_back(mark(unset.version == version));
    table.push_back(std::move(row));
  };
  addVersion(unset.version);
  for (const simulator::Release& release : simulator::releases) addVersion(release.version);
  for (const simulator::ReleaseSetting& setting : simulator::releaseSettings()) {
    Row row = {"system " + std::string(setting.phrase), setting.description};
    for (const bool isSo : setting.isSetBy) row.emplace_back(mark(isSo));
    row.emplace_back(mark(isSet(unset, setting)));
    table.push_back(std::move(row));
  }
  return table;
}

struct Topic {
  std::string_view name;
  std::string_view summary;
  Table (*table)();
};

constexpr std::array topics = {
    Topic{"calls",
          "the calls that a process can make, the form of the answer, how a fault can change it",
          calls},
    Topic{"outcomes", "what a fault can do to a call, and to which forms of answers", outcomes},
    Topic{"happenings", "what a world can script, and which of it a running Mac accepts",
          happenings},
    Topic{"reactions", "what an element can do when it is clicked", reactions},
    Topic{"habits", "what a world can say of an element", habits},
    Topic{"releases", "what the releases of macOS stand for that a world can name", releases},
};

std::vector<std::size_t> widths(const Table& table) {
  std::vector<std::size_t> result(table.front().size());
  for (const Row& row : table) {
    for (std::size_t i = 0; i < row.size(); ++i) result[i] = std::max(result[i], row[i].size());
  }
  return result;
}

std::string aligned(const Table& table) {
  const std::vector<std::size_t> columns = widths(table);
  std::string text;
  for (const Row& row : table) {
    for (std::size_t i = 0; i + 1 < row.size(); ++i) {
      text += row[i] + std::string(columns[i] - row[i].size(), ' ') + std::string(gap);
    }
    text += row.back() + "\n";
  }
  return text;
}

}  // namespace

std::string topicLines() {
  std::string text;
  for (const Topic& topic : topics) {
    text += std::string(gap) + std::string(topic.name) + ": " + std::string(topic.summary) + "\n";
  }
  return text;
}

std::string topicText(std::string_view name) {
  std::string names;
  std::vector<std::string> known;
  for (const Topic& topic : topics) {
    if (topic.name == name) return aligned(topic.table());
    known.emplace_back(topic.name);
    names += (names.empty() ? "" : ", ") + known.back();
  }
  throw Failure("unknown topic: " + std::string(name) + "; the topics are " + names +
                simulator::suggestion(simulator::nearest(name, known)));
}

}  // namespace companion
