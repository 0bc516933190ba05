#include "simulator/companion/help.h"

#include <algorithm>
#include <array>

#include "platform/call.h"
#include "simulator/companion/failure.h"

namespace companion {

namespace {

using Row = std::vector<std::string>;

/// The headings, then what stands below them.
using Table = std::vector<Row>;

constexpr std::string_view gap = "  ";

Table calls() {
  Table table = {{"NUMBER", "CALL"}};
  for (const std::string_view name : platform::functionNames) {
    table.push_back({std::to_string(table.size() - 1), std::string(name)});
  }
  return table;
}

struct Topic {
  std::string_view name;
  std::string_view summary;
  Table (*table)();
};

constexpr std::array topics = {
    Topic{"calls", "every call that a process can make of a Mac", calls},
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
  for (const Topic& topic : topics) {
    if (topic.name == name) return aligned(topic.table());
    names += (names.empty() ? "" : ", ") + std::string(topic.name);
  }
  throw Failure("unknown topic: " + std::string(name) + "; the topics are " + names);
}

}  // namespace companion
