#include "simulator/text/expansion.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "simulator/text/substitution.h"

namespace simulator {

namespace {

constexpr std::int64_t repetitionsMax = 1'000'000;
constexpr std::int64_t linesMax = 1'000'000;
constexpr std::int64_t bodiesMax = 2 * linesMax;  // also of those without lines
constexpr std::size_t depthMax = 100;

std::string countOf(std::size_t number, const char* what) {
  return (number == 0 ? "no" : std::to_string(number)) + " " + what + (number == 1 ? "" : "s");
}

/// What a body is read with.
struct Scope {
  std::ptrdiff_t shift = 0;  // of its indentation
  Bindings bindings;
  std::shared_ptr<const Trail> trail;  // null: that of each line
};

class Expander {
 public:
  Expander(const Definitions& definitions, const TakeLine& take, const Complain& complain)
      : definitions_(definitions), take_(take), complain_(complain) {}

  void expand(std::span<const Line> lines, const Scope& scope) {
    while (!lines.empty() && !isSpent_) {
      std::size_t length = 1;
      try {
        length = expandFirst(lines, scope);
      } catch (const WorldError& error) {
        complain_(error.complaint());
        length = lengthOfBlock(lines);
      }
      lines = lines.subspan(length);
    }
  }

  void use(const Words& words, const Call& call, std::size_t indentation) {
    checkCall(definitions_, call, words);
    const Definition& definition = definitions_.byName.at(call.name);
    if (std::find(used_.begin(), used_.end(), call.name) != used_.end()) {
      words.fail("'" + call.name + "' uses itself");
    }
    Scope scope = scopeOf(definition.body, indentation);
    scope.trail =
        std::make_shared<const Trail>(Trail{fileOf(definition.spot), "used", words.spot()});
    for (std::size_t i = 0; i < call.arguments.size(); ++i) {
      scope.bindings[definition.parameters[i]] = call.arguments[i];
    }
    count(words, bodies_, bodiesMax);
    if (used_.size() == depthMax) words.fail("more than 100 bodies are in one another");
    used_.push_back(call.name);
    expandBody(definition.body, scope);
    used_.pop_back();
  }

 private:
  static Scope scopeOf(std::span<const Line> body, std::size_t indentation) {
    return {static_cast<std::ptrdiff_t>(indentation) -
                static_cast<std::ptrdiff_t>(body.front().indentation),
            {},
            nullptr};
  }

  /// One more, of which there may be so many.
  void count(const Words& words, std::int64_t& number, std::int64_t most) {
    if (++number <= most) return;
    isSpent_ = true;
    words.fail("more than 1,000,000 lines come of 'use' and 'repeat'");
  }

  void expandBody(std::span<const Line> body, const Scope& scope) {
    ++depth_;
    expand(body, scope);
    --depth_;
  }

  /// How many of the lines have been read: the first alone, or with all that belongs to it.
  std::size_t expandFirst(std::span<const Line> lines, const Scope& scope) {
    Line line = lines.front();
    line.indentation =
        static_cast<std::size_t>(static_cast<std::ptrdiff_t>(line.indentation) + scope.shift);
    if (scope.trail) line.trail = scope.trail;
    substitute(line, scope.bindings);
    Words words(line);
    const bool defines = words.take("define");
    const bool repeats = words.take("repeat");
    if (!defines && !repeats && !words.take("use")) {
      if (depth_ > 0) count(words, lines_, linesMax);
      take_(line);
      return 1;
    }
    const auto block = lines.first(lengthOfBlock(lines));
    if (defines) return block.size();
    if (line.damage) throw WorldError(*line.damage);
    if (repeats) {
      repeat(words, block, scope, line.indentation);
      return block.size();
    }
    const Call call = readCall(words, "use");
    words.expectEnd();
    if (!call.held.empty()) words.fail("'use' knows no element whose value it could take");
    if (block.size() > 1) throw WorldError({spotOf(block[1]), "nothing can be in 'use'"});
    use(words, call, line.indentation);
    return 1;
  }

  void repeat(Words& words, std::span<const Line> block, const Scope& scope,
              std::size_t indentation) {
    const std::int64_t times =
        words.integer("repeat", "a number from 0 to 1000000", 0, repetitionsMax);
    std::string name;
    if (words.take("as")) name = words.word("as", "a name");
    if (!name.empty() && !isParameterName(name)) words.failAtLast("'as' needs a name");
    if (scope.bindings.count(name) > 0) {
      words.failAtLast("'" + name + "' is a parameter already");
    }
    words.expectEnd();
    checkBody(block.front(), block.subspan(1));
    Scope inner = scopeOf(block.subspan(1), indentation);
    inner.bindings = scope.bindings;
    inner.trail = scope.trail;
    for (std::int64_t i = 1; i <= times && !isSpent_; ++i) {
      if (!name.empty()) inner.bindings[name] = {Token::Kind::word, std::to_string(i)};
      count(words, bodies_, bodiesMax);
      expandBody(block.subspan(1), inner);
    }
  }

  const Definitions& definitions_;
  const TakeLine& take_;
  const Complain& complain_;
  std::vector<std::string> used_;  // whose bodies are being read
  std::size_t depth_ = 0;
  std::int64_t lines_ = 0;
  std::int64_t bodies_ = 0;
  bool isSpent_ = false;
};

}  // namespace

void expand(const WorldLines& world, const TakeLine& take, const Complain& complain) {
  Expander(*world.definitions, take, complain).expand(world.lines, {});
}

void expandCall(const Definitions& definitions, const Call& call, const TakeLine& take) {
  const Line line{call.spot.line, 0, {{Token::Kind::word, call.name}}, call.spot.trail};
  const Complain complain = [](const Complaint& complaint) { throw WorldError(complaint); };
  Expander(definitions, take, complain).use(Words(line), call, 0);
}

void checkCall(const Definitions& definitions, const Call& call, const Words& words) {
  const auto found = definitions.byName.find(call.name);
  if (found == definitions.byName.end()) {
    std::vector<std::string> names;
    for (const auto& [name, definition] : definitions.byName) names.push_back(name);
    words.failUnknownName("'" + call.name + "' is defined nowhere", call.name, names);
  }
  const std::size_t expected = found->second.parameters.size();
  if (call.arguments.size() == expected) return;
  words.failAtLast("'" + call.name + "' takes " + countOf(expected, "argument") + ", not " +
                   std::to_string(call.arguments.size()));
}

}  // namespace simulator
