#include "tests/fuzz/runs.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "guard/cover_pictures.h"
#include "guard/lock_guard.h"
#include "main/dispatcher.h"
#include "tests/soak/judges.h"
#include "tests/support/temporary_folder.h"

namespace fuzz {

using soak::Delivery;
using soak::Microseconds;
using soak::Step;

namespace {

/// So long what reads waits for the next piece.
constexpr Microseconds betweenPieces = 20'000;

/// Whatever lives on, ends at the latest.
constexpr Microseconds lifeMax = 5'000'000;
constexpr int terminated = 15;

/// What is left then comes at once.
constexpr std::size_t piecesMax = 100;

const std::string& desk() {
  static const std::string text = [] {
    std::ifstream file(std::string(DRIVER_SOURCE_DIR) + "/demo/desk.world");
    if (!file) throw std::runtime_error("there is no demo/desk.world");
    return std::string(std::istreambuf_iterator<char>(file), {});
  }();
  return text;
}

/// What a run on that Mac comes to.
std::string complaintAboutRun(const std::string& world, Step step) {
  static const testing_support::TemporaryFolder folder;
  soak::Case one = soak::readCase(world, "");
  one.steps.push_back(std::move(step));
  const auto complaint = soak::verdict(one, folder.path(""));
  return complaint ? complaint->judge + ": " + complaint->text : "";
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

bool livesOn(const std::string& name) {
  const auto commands = driver::commands();
  return std::any_of(commands.begin(), commands.end(), [&](const driver::Command& each) {
    return each.form.name == name && each.livesOn;
  });
}

/// A run that makes files makes them in its own folder.
void keepInFolder(std::vector<std::string>& words) {
  if (words.empty() || !words[0].starts_with("capture")) return;
  for (std::string& word : words) std::replace(word.begin(), word.end(), '/', '_');
}

/// The next piece of a text; its end is that of a line, or of the text.
std::string takeLine(std::string& rest) {
  std::string line = rest.substr(0, rest.find('\n') + 1);
  if (line.empty()) line = rest;
  rest.erase(0, line.size());
  return line;
}

/// The same with an end that any byte may be.
std::vector<std::string> piecesOf(const std::string& text) {
  constexpr std::array<std::size_t, 5> lengths = {1, 2, 3, 7, 19};
  std::vector<std::string> pieces;
  for (std::size_t at = 0; at < text.size(); at += pieces.back().size()) {
    pieces.push_back(text.substr(at, lengths[pieces.size() % lengths.size()]));
  }
  return pieces;
}

/// They come one after the other, and then the end.
void deliver(const std::vector<std::string>& pieces, Step& step) {
  Microseconds at = 0;
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    if (i < piecesMax) {
      step.deliveries.push_back({Delivery::Kind::input, at, pieces[i]});
      at += betweenPieces;
    } else {
      step.deliveries.back().text += pieces[i];
    }
  }
  step.deliveries.push_back({Delivery::Kind::endOfInput, at});
  step.deliveries.push_back({Delivery::Kind::signal, at + lifeMax, {}, terminated});
}

/// What the last whole line of the guard's input says that says anything, letter by letter.
std::optional<bool> lastSaid(const std::string& input) {
  std::optional<bool> said;
  std::string whole = input.substr(0, input.rfind('\n') + 1);
  while (!whole.empty()) {
    std::string line = takeLine(whole);
    line.pop_back();
    const std::size_t start = std::min(line.find_first_not_of(" \t"), line.size());
    line = line.substr(start, line.find_last_not_of(" \t") + 1 - start);
    if (line == "operating") said = true;
    if (line == "minding") said = false;
  }
  return said;
}

/// As the directory's tool prints a picture.
std::string recordOf(const std::string& picture) {
  constexpr std::string_view digits = "0123456789abcdef";
  constexpr std::size_t bytesOfGroup = 4;
  std::string record = "JPEGPhoto:\n";
  for (std::size_t i = 0; i < picture.size(); ++i) {
    const auto byte = static_cast<unsigned char>(picture[i]);
    if (i % bytesOfGroup == 0) record += ' ';
    record += {digits[byte / 16], digits[byte % 16]};
  }
  return record + "\n";
}

}  // namespace

std::string complaintAboutArguments(const std::string& input) {
  Step step;
  for (const std::string& line : linesOf(input)) {
    const std::string word = line.substr(0, line.find('\0'));
    const bool isVariable = word.starts_with("CU_") || word.starts_with("ZENTROVE_");
    const std::size_t sign = word.find('=');
    if (step.words.empty() && isVariable && sign != std::string::npos) {
      step.environment[word.substr(0, sign)] = word.substr(sign + 1);
    } else {
      step.words.push_back(word);
    }
  }
  keepInFolder(step.words);
  if (!step.words.empty() && livesOn(step.words[0])) deliver({}, step);
  return complaintAboutRun(desk(), std::move(step));
}

std::string complaintAboutService(const std::string& input) {
  Step step{{"capture-service", std::string(soak::folderName) + "/lock"}};
  std::vector<std::string> pieces;
  for (std::string rest = input; !rest.empty();) pieces.push_back(takeLine(rest));
  for (std::string& piece : pieces) std::replace(piece.begin(), piece.end(), '/', '_');
  deliver(pieces, step);
  return complaintAboutRun(desk(), std::move(step));
}

std::string complaintAboutGuardInput(const std::string& input) {
  const std::vector<std::string> pieces = piecesOf(input);
  driver::GuardInput guard;
  std::optional<bool> said;
  for (const std::string& piece : pieces) {
    if (const auto news = guard.feed(piece)) said = news;
  }
  if (said != lastSaid(input)) return "its lines are read otherwise";
  Step step{{"lock-guard"}};
  deliver(pieces, step);
  return complaintAboutRun(desk(), std::move(step));
}

std::string complaintAboutPhoto(const std::string& input) {
  constexpr std::size_t shortest = 51;  // bytes that are a picture
  const auto bytes = driver::photoBytes(recordOf(input));
  const bool isPicture = input.size() >= shortest;
  if (isPicture ? bytes != input : bytes.has_value()) return "another picture than was recorded";
  for (const std::string& record : {recordOf(input), input}) {
    Step step{{"lock-guard"}};
    deliver({}, step);
    const std::string world =
        desk() + "\ntool \"/usr/bin/dscl\" output " + soak::inQuotes(record) + "\n";
    if (auto complaint = complaintAboutRun(world, std::move(step)); !complaint.empty()) {
      return complaint;
    }
  }
  return "";
}

}  // namespace fuzz
