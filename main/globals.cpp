#include "main/globals.h"

#include <cmath>
#include <memory>
#include <utility>

#include "base/numbers.h"
#include "base/utf8.h"
#include "platform/process.h"
#include "platform/text.h"

namespace driver {

namespace {

// A plain pointer, so that nothing is constructed before the process entry.
Globals* current = nullptr;

std::optional<std::string> nonEmptyVariable(const char* name) {
  const std::optional<std::string> value = process::environment(name);
  if (!value || value->empty()) return std::nullopt;
  return repairedUtf8(*value);
}

std::optional<std::string> startWindowScope() {
  const std::optional<std::string> value = nonEmptyVariable("CU_WINDOW");
  if (!value) return std::nullopt;
  return text::lowercase(*value);
}

// An infinite grace counts as none: it could not be counted down, and would never lock.
double startGuardGrace() {
  const std::string value = process::environment("ZENTROVE_COVER_GRACE").value_or("");
  const double seconds = parseDouble(value).value_or(0);
  return std::isfinite(seconds) && seconds > 0 ? seconds : 0;
}

std::optional<image::Image> startGuardOruFace() {
  const std::optional<std::string> path = process::environment("ZENTROVE_COVER_FACE");
  if (!path) return std::nullopt;
  return image::load(*path);
}

// The first piece of the text between single spaces; other white space belongs to the word.
std::string firstWord(const std::string& text) {
  const std::size_t begin = text.find_first_not_of(' ');
  if (begin == std::string::npos) return "";
  return text.substr(begin, text.find(' ', begin) - begin);
}

std::string startGuardOruName() {
  if (std::optional<std::string> name = nonEmptyVariable("ZENTROVE_COVER_NAME")) return *name;
  const std::string fullName = text::trimmedBlanks(repairedUtf8(process::fullUserName()));
  std::string givenName = repairedUtf8(process::givenName(fullName).value_or(""));
  if (!givenName.empty()) return givenName;
  std::string word = firstWord(fullName);
  return word.empty() ? repairedUtf8(process::loginName()) : word;
}

}  // namespace

Globals& globals() { return *current; }

// Tests start several runs in one process: the state of the one before goes here.
void renewGlobals() { exchangeGlobals(std::make_unique<Globals>()); }

std::unique_ptr<Globals> exchangeGlobals(std::unique_ptr<Globals> state) {
  return std::unique_ptr<Globals>(std::exchange(current, state.release()));
}

void initialise(const std::vector<std::string>& commandLine) {
  // In this order: nearly all of it asks the system, and each run's first calls are the same.
  Globals& fresh = globals();
  fresh.windowScope = startWindowScope();
  fresh.src = quartz::createSource();
  fresh.guardGrace = startGuardGrace();
  fresh.guardOperating = process::environment("ZENTROVE_COVER_OPERATING") == "1";
  fresh.guardOruFace = startGuardOruFace();
  fresh.guardOruName = startGuardOruName();
  for (const std::string& word : commandLine) {
    if (!isUtf8(word)) fresh.repairedArgs.insert(fresh.args.size());
    fresh.args.push_back(repairedUtf8(word));
  }
}

}  // namespace driver
