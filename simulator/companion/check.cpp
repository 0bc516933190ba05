#include "simulator/companion/check.h"

#include <algorithm>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <tuple>

#include "simulator/companion/failure.h"
#include "simulator/companion/world_file.h"
#include "simulator/mac/json_text.h"
#include "simulator/text/parse.h"
#include "simulator/text/scanner.h"

namespace companion {

namespace {

using nlohmann::json;
using simulator::Complaint;
using simulator::Extent;

/// A complaint where a reader finds it.
struct Problem {
  bool isError = true;
  std::string file;
  std::size_t line = 0;
  std::size_t column = 0;  // from 1, in characters
  std::size_t length = 0;  // in characters, at least 1
  std::string cause;
  std::string message;
  std::string meant;   // empty: nothing
  std::string text;    // of the line
  std::string before;  // what of it stands before the column
};

bool startsCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }

std::size_t characters(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), startsCharacter));
}

/// As much blank as the text takes on a screen: what begins with these bytes, ideographs and the
/// like, is two columns wide.
std::string blankFor(std::string_view text) {
  constexpr unsigned char firstWide = 0xE2;
  std::string blank;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (!startsCharacter(c)) continue;
    blank += c == '\t' ? "\t" : byte > firstWide ? "  " : " ";
  }
  return blank;
}

/// The texts of a world's files, line by line.
class Sources {
 public:
  explicit Sources(const WorldFile& file) : file_(file) {}

  /// Empty for a line that is not there.
  std::string line(const std::string& path, std::size_t number) {
    const auto [place, isNew] = lines_.try_emplace(path);
    if (isNew)
      place->second = split(path.empty() ? file_.text : file_.files().read(path).value_or(""));
    return number >= 1 && number <= place->second.size() ? place->second[number - 1] : "";
  }

 private:
  static std::vector<std::string> split(std::string_view text) {
    std::vector<std::string> lines(1);
    for (const char c : simulator::withoutByteOrderMark(text)) {
      if (c == '\n') {
        lines.emplace_back();
      } else if (c != '\r') {
        lines.back() += c;
      }
    }
    return lines;
  }

  const WorldFile& file_;
  std::map<std::string, std::vector<std::string>> lines_;
};

/// Which part of the line a complaint is about.
Extent extentOf(const Complaint& complaint, const std::string& line) {
  const std::vector<simulator::Line> scanned = simulator::scanDamagedLines(line);
  Extent extent{0, 1};
  if (!scanned.empty()) extent.begin = std::min(scanned.front().indentation, line.size());
  if (complaint.extent) extent = *complaint.extent;
  if (complaint.about && !scanned.empty()) {
    for (const simulator::Token& token : scanned.front().tokens) {
      if (token.text == *complaint.about) extent = token.extent;
    }
  }
  extent.begin = std::min(extent.begin, line.size());
  extent.length = std::min(extent.length, line.size() - extent.begin);
  return extent;
}

Problem problemOf(const Complaint& complaint, const WorldFile& file, Sources& sources) {
  const std::string& included = simulator::fileOf(complaint.spot);
  Problem problem;
  problem.isError = !complaint.isWarning;
  problem.file = included.empty() ? file.name() : included;
  problem.line = complaint.spot.line;
  problem.cause = complaint.cause;
  problem.message = simulator::messageOf(complaint);
  problem.meant = complaint.meant;
  problem.text = sources.line(included, problem.line);
  const Extent extent = extentOf(complaint, problem.text);
  problem.before = problem.text.substr(0, extent.begin);
  problem.column = characters(problem.before) + 1;
  problem.length = std::max<std::size_t>(
      characters(std::string_view(problem.text).substr(extent.begin, extent.length)), 1);
  return problem;
}

auto orderOf(const Problem& problem, const WorldFile& file) {
  return std::tuple(problem.file != file.name(), problem.file, problem.line, problem.column,
                    problem.cause);
}

/// All of one world, by file and line, each once: what is wrong in a body is wrong wherever it is
/// used.
std::vector<Problem> problemsOf(const WorldFile& file) {
  const auto reading = simulator::readWorld(file.text, file.files(), simulator::Warnings::yes);
  Sources sources(file);
  std::vector<Problem> problems;
  for (const auto* complaints : {&reading.errors, &reading.warnings}) {
    for (const Complaint& each : *complaints) problems.push_back(problemOf(each, file, sources));
  }
  std::stable_sort(problems.begin(), problems.end(), [&](const Problem& a, const Problem& b) {
    return orderOf(a, file) < orderOf(b, file);
  });
  const auto same = [](const Problem& a, const Problem& b) {
    return a.file == b.file && a.line == b.line && a.column == b.column && a.cause == b.cause;
  };
  problems.erase(std::unique(problems.begin(), problems.end(), same), problems.end());
  return problems;
}

json jsonOf(const Problem& problem) {
  json object = {{"column", problem.column},
                 {"file", simulator::textJson(problem.file)},
                 {"length", problem.length},
                 {"line", problem.line},
                 {"message", simulator::textJson(problem.message)},
                 {"severity", problem.isError ? "error" : "warning"},
                 {"text", simulator::textJson(problem.text)}};
  if (!problem.meant.empty()) object["meant"] = simulator::textJson(problem.meant);
  return object;
}

std::string textOf(const Problem& problem) {
  return problem.file + ":" + std::to_string(problem.line) + ":" + std::to_string(problem.column) +
         ": " + (problem.isError ? "error" : "warning") + ": " + problem.message + "\n" +
         problem.text + "\n" + blankFor(problem.before) + "^" +
         std::string(problem.length - 1, '~') + "\n";
}

std::string counted(std::size_t number, const std::string& what) {
  return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
}

}  // namespace

int checkCommand(const std::vector<std::string>& words) {
  const bool isJson = words.size() > 1 && words[1] == "--json";
  const std::vector<std::string> paths(words.begin() + (isJson ? 2 : 1), words.end());
  if (paths.empty()) throw UsageError();
  std::vector<Problem> problems;
  for (const std::string& path : paths) {
    if (path.substr(0, 2) == "--") throw UsageError();
    for (Problem& each : problemsOf(readWorldFile(path))) problems.push_back(std::move(each));
  }
  const auto errors = static_cast<std::size_t>(std::count_if(
      problems.begin(), problems.end(), [](const Problem& each) { return each.isError; }));
  if (isJson) {
    json list = json::array();
    for (const Problem& each : problems) list.push_back(jsonOf(each));
    std::cout << simulator::jsonLine({{"ok", errors == 0}, {"problems", list}}) << std::endl;
  } else {
    for (const Problem& each : problems) std::cout << textOf(each);
    std::cout << counted(paths.size(), "world") << ", " << counted(errors, "error") << ", "
              << counted(problems.size() - errors, "warning") << std::endl;
  }
  return errors == 0 ? 0 : 1;
}

}  // namespace companion
