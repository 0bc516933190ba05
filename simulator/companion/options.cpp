#include "simulator/companion/options.h"

#include <algorithm>

#include "base/numbers.h"
#include "simulator/companion/failure.h"

namespace companion {

namespace {

using Words = std::vector<std::string>;

/// What follows "--view" may be the world: one whose file is called by a number is told as ./8080.
bool isNumber(const std::string& word) {
  return !word.empty() && word.find_first_not_of("0123456789") == word.npos;
}

/// Reads the words before "--". False for any that has no meaning.
bool readWords(const Words& words, bool serves, Options& options) {
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string& word = words[i];
    if (word == "--virtual") {
      options.time = Scheduler::Time::virtualTime;
    } else if (word == "--record" && i + 1 < words.size()) {
      options.record.folder = words[++i];
      if (options.record.folder.empty()) return false;
    } else if (word == "--no-pictures") {
      options.record.pictures = false;
    } else if (word == "--seed" && i + 1 < words.size()) {
      const auto seed = driver::parseInt64(words[++i]);
      if (!seed || *seed < 0) return false;
      options.seed = static_cast<std::uint64_t>(*seed);
    } else if (word == "--snapshot" && !serves && i + 1 < words.size()) {
      options.snapshot = words[++i];
      if (options.snapshot.empty()) return false;
    } else if (word == "--sleep" && !serves) {
      options.sleeps = true;
    } else if (word == "--view" && serves) {
      const bool namesPort = i + 1 < words.size() && isNumber(words[i + 1]);
      options.view = namesPort ? words[++i] : "0";
    } else if (word == "--until-closed" && serves) {
      options.untilClosed = true;
    } else if (word == "--socket" && serves && i + 1 < words.size()) {
      options.socket = words[++i];
      if (options.socket.empty()) return false;
    } else if (!options.world.empty() || word.empty() || word.substr(0, 2) == "--") {
      return false;
    } else {
      options.world = word;
    }
  }
  const bool recordsNothing = options.record.folder.empty() && !options.record.pictures;
  const bool sleepsReally = options.sleeps && options.time == Scheduler::Time::real;
  return !options.world.empty() && !recordsNothing && !sleepsReally;
}

}  // namespace

Options serveOptions(const Words& words) {
  Options options;
  const bool understood = readWords(words, true, options);
  if (!understood || (options.untilClosed && options.world == "-")) throw UsageError();
  return options;
}

Options runOptions(const Words& words) {
  Options options;
  const auto separator = std::find(words.begin(), words.end(), "--");
  if (!readWords(Words(words.begin(), separator), false, options)) throw UsageError();
  if (separator == words.end() || separator + 1 == words.end()) throw UsageError();
  options.command.assign(separator + 1, words.end());
  return options;
}

}  // namespace companion
