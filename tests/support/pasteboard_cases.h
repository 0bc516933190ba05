#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/pasteboard.h"

/// What happens to the general pasteboard, and what platform/pasteboard.h then says of it: the same
/// for both sides of the seam.
namespace pasteboard_cases {

using Items = std::vector<pasteboard::Item>;

/// Items as another application copies them; without data a way is promised, and never supplied.
using Copied = std::vector<std::vector<std::pair<std::string, std::optional<std::string>>>>;

/// One thing that happens.
struct Step {
  enum class Kind { copied, cleared, written, filesWritten };
  Kind kind = Kind::cleared;
  Copied copied;
  Items items;
  std::vector<std::string> paths;
  bool isTaken = true;  // what writing says
};

struct Case {
  std::vector<Step> steps;
  Items items;               // afterwards
  std::int64_t changes = 0;  // of the count, meanwhile
};

inline Step copied(Copied items) { return {Step::Kind::copied, std::move(items), {}, {}, true}; }
inline Step cleared() { return {}; }
inline Step written(Items items, bool isTaken = true) {
  return {Step::Kind::written, {}, std::move(items), {}, isTaken};
}
inline Step filesWritten(std::vector<std::string> paths, bool isTaken = true) {
  return {Step::Kind::filesWritten, {}, {}, std::move(paths), isTaken};
}

inline const std::string withZero = std::string("\0x", 2);

inline const std::vector<Case> cases = {
    {{}, {}, 0},
    // What others copy, in its order, without promises.
    {{copied({{{"b", "1"}, {"a", "2"}}, {{"c", ""}}})}, {{{"b", "1"}, {"a", "2"}}, {{"c", ""}}}, 1},
    {{copied({{{"a", std::nullopt}, {"b", "x"}}, {{"a", std::nullopt}}})}, {{{"b", "x"}}, {}}, 1},
    // What one writes oneself.
    {{cleared(), written({{{"a", withZero}, {"b", ""}}, {{"c", "z"}}})},
     {{{"a", withZero}, {"b", ""}}, {{"c", "z"}}},
     1},
    {{cleared(), written({{{"a", "1"}}}), written({{{"a", "2"}}})},
     {{{"a", "1"}}, {{"a", "2"}}},
     1},
    {{cleared(), written({})}, {}, 1},
    {{cleared(), written({{{"a", "1"}}}), cleared()}, {}, 2},
    {{cleared(), filesWritten({"/a", "/caf\u00E9 1/50%#?"})},
     {{{"public.file-url", "file:///a"}},
      {{"public.file-url", "file:///caf%C3%A9%201/50%25%23%3F"}}},
     1},
    // Only who has cleared it last may write.
    {{copied({{{"a", "user's"}}}), written({{{"a", "ours"}}}, false), filesWritten({"/a"}, false)},
     {{{"a", "user's"}}},
     1},
    {{cleared(), copied({{{"a", "user's"}}}), written({{{"a", "ours"}}}, false)},
     {{{"a", "user's"}}},
     2},
};

inline void take(const Step& step, const std::function<void(const Copied&)>& copy) {
  switch (step.kind) {
    case Step::Kind::copied:
      return copy(step.copied);
    case Step::Kind::cleared: {
      const std::int64_t before = pasteboard::changeCount();
      EXPECT_EQ(pasteboard::clear(), before + 1);
      return;
    }
    case Step::Kind::written:
      EXPECT_EQ(pasteboard::write(step.items), step.isTaken);
      return;
    case Step::Kind::filesWritten:
      EXPECT_EQ(pasteboard::writeFiles(step.paths), step.isTaken);
      return;
  }
}

/// Has all of a case happen; `copy` has another application copy items.
inline void expectCase(const Case& expected, const std::function<void(const Copied&)>& copy) {
  const std::int64_t before = pasteboard::changeCount();
  for (const Step& step : expected.steps) take(step, copy);
  EXPECT_EQ(pasteboard::items(), expected.items);
  EXPECT_EQ(pasteboard::changeCount() - before, expected.changes);
}

}  // namespace pasteboard_cases
