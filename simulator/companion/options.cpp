#include "simulator/companion/options.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <sstream>

#include "base/numbers.h"
#include "simulator/companion/failure.h"
#include "simulator/text/parse.h"

namespace companion {

namespace {

using Words = std::vector<std::string>;

/// Reads the words before "--". False for any that has no meaning.
bool readWords(const Words& words, bool serves, Options& options) {
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string& word = words[i];
    if (word == "--virtual") {
      options.time = Scheduler::Time::virtualTime;
    } else if (word == "--seed" && i + 1 < words.size()) {
      const auto seed = driver::parseInt64(words[++i]);
      if (!seed || *seed < 0) return false;
      options.seed = static_cast<std::uint64_t>(*seed);
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
  return !options.world.empty();
}

std::string contents(const std::string& path) {
  std::ostringstream text;
  if (path == "-") {
    text << std::cin.rdbuf();
    return text.str();
  }
  std::ifstream file(path, std::ios::binary);
  if (!file) throw systemFailure("cannot read " + path);
  if (file.peek() != std::ifstream::traits_type::eof()) text << file.rdbuf();
  if (file.bad()) throw systemFailure("cannot read " + path);
  return text.str();
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

simulator::World readWorld(const Options& options) {
  const std::string& path = options.world;
  const std::string text = contents(path);
  try {
    simulator::World world = simulator::parseWorld(text);
    if (options.seed) world.seed = options.seed;
    return world;
  } catch (const simulator::WorldError& error) {
    throw Failure((path == "-" ? "standard input" : path) + ", " + error.what());
  }
}

}  // namespace companion
