#pragma once

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

inline const std::string first = "com.example.first";
inline const std::string second = "com.example.second";
inline const std::string third = "com.example.third";
inline const std::string withZero = std::string("\0x", 2);

inline const std::vector<Case> cases = {
    {{}, {}, 0},
    // What others copy, in its order, without promises.
    {{copied({{{second, "1"}, {first, "2"}}, {{third, ""}}})},
     {{{second, "1"}, {first, "2"}}, {{third, ""}}},
     1},
    {{copied({{{first, std::nullopt}, {second, "x"}}, {{first, std::nullopt}}})},
     {{{second, "x"}}, {}},
     1},
    // What one writes oneself.
    {{cleared(), written({{{first, withZero}, {second, ""}}, {{third, "z"}}})},
     {{{first, withZero}, {second, ""}}, {{third, "z"}}},
     1},
    {{cleared(), written({{{first, "1"}}}), written({{{first, "2"}}})},
     {{{first, "1"}}, {{first, "2"}}},
     1},
    {{cleared(), written({})}, {}, 1},
    {{cleared(), written({{{first, "1"}}}), cleared()}, {}, 2},
    {{cleared(), filesWritten({"/a", "/caf\u00E9 1/50%#?"})},
     {{{"public.file-url", "file:///a"}},
      {{"public.file-url", "file:///caf%C3%A9%201/50%25%23%3F"}}},
     1},
    // Only who has cleared it last may write.
    {{copied({{{first, "user's"}}}), written({{{first, "ours"}}}, false),
      filesWritten({"/a"}, false)},
     {{{first, "user's"}}},
     1},
    {{cleared(), copied({{{first, "user's"}}}), written({{{first, "ours"}}}, false)},
     {{{first, "user's"}}},
     2},
};

/// What is said and seen in a case, in the order in which it happens: a line for each answer, item
/// and representation.
using Lines = std::vector<std::string>;

inline std::string answerLine(bool isTaken) { return isTaken ? "taken" : "refused"; }

inline void addItems(Lines& lines, const std::optional<Items>& items) {
  if (!items) lines.push_back("not read");
  for (const pasteboard::Item& item : items.value_or(Items{})) {
    lines.push_back("item");
    for (const auto& [type, data] : item) lines.push_back(type + ": " + data);
  }
}

inline void addChanges(Lines& lines, std::int64_t changes) {
  lines.push_back(std::to_string(changes) + " changes");
}

inline Lines expectedLines(const Case& expected) {
  Lines lines;
  for (const Step& step : expected.steps)
    if (step.kind != Step::Kind::copied) lines.push_back(answerLine(step.isTaken));
  addItems(lines, expected.items);
  addChanges(lines, expected.changes);
  return lines;
}

/// Has a step happen; what is said to it.
inline bool take(const Step& step) {
  if (step.kind == Step::Kind::written) return pasteboard::write(step.items);
  if (step.kind == Step::Kind::filesWritten) return pasteboard::writeFiles(step.paths);
  const std::int64_t before = pasteboard::changeCount();
  return pasteboard::clear() == before + 1;
}

/// Has all of a case happen; `copy` has another application copy items.
inline Lines seenLines(const Case& given, const std::function<void(const Copied&)>& copy) {
  Lines lines;
  const std::int64_t before = pasteboard::changeCount();
  for (const Step& step : given.steps) {
    if (step.kind == Step::Kind::copied) {
      copy(step.copied);
    } else {
      lines.push_back(answerLine(take(step)));
    }
  }
  addItems(lines, pasteboard::items());
  addChanges(lines, pasteboard::changeCount() - before);
  return lines;
}

}  // namespace pasteboard_cases
