#include "tests/soak/shrink.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace soak {

namespace {

/// A text between quotation marks in a line, in pieces that can be left out: bytes, escaped or not.
struct QuotedText {
  std::size_t start = 0;  // behind the opening mark
  std::vector<std::string> pieces;

  std::string text() const {
    std::string joined;
    for (const std::string& piece : pieces) joined += piece;
    return joined;
  }
};

std::size_t lengthOfPiece(const std::string& line, std::size_t at) {
  if (line[at] != '\\') return 1;
  return line.compare(at, 2, "\\x") == 0 ? 4 : 2;
}

/// The first one whose opening mark is at this place or behind it.
std::optional<QuotedText> quotedTextIn(const std::string& line, std::size_t from) {
  const std::size_t mark = line.find('"', from);
  if (mark == std::string::npos) return std::nullopt;
  QuotedText quoted{mark + 1, {}};
  std::size_t at = quoted.start;
  while (at < line.size() && line[at] != '"') {
    quoted.pieces.push_back(line.substr(at, lengthOfPiece(line, at)));
    at += quoted.pieces.back().size();
  }
  return quoted;
}

class Shrinker {
 public:
  Shrinker(Case one, const std::function<bool(const Case&)>& fails)
      : case_(std::move(one)), fails_(fails) {}

  Case smallest() {
    do {
      isSmaller_ = false;
      tryValue(case_.turns, std::optional<std::uint64_t>());
      thin(case_.steps);
      thin(case_.faults);
      for (std::string& fault : case_.faults) thinTexts(fault);
      thinLines(case_.world);
      for (std::size_t i = 0; i < case_.steps.size(); ++i) simplify(case_.steps[i]);
    } while (isSmaller_);
    return std::move(case_);
  }

 private:
  /// Takes out of a list of the case what is not needed: halves first, then ever smaller pieces.
  template <class List>
  void thin(List& list) {
    thin(list, [] {});
  }

  /// The same for a list that is not part of the case, which `store` puts there.
  template <class List, class Store>
  void thin(List& list, Store store) {
    for (std::size_t length = list.size(); length > 0; length /= 2) {
      std::size_t start = 0;
      while (start < list.size()) {
        const std::size_t end = std::min(start + length, list.size());
        if (!removes(list, start, end, store)) start = end;
      }
    }
  }

  template <class List, class Store>
  bool removes(List& list, std::size_t start, std::size_t end, Store store) {
    List before = list;
    list.erase(list.begin() + static_cast<std::ptrdiff_t>(start),
               list.begin() + static_cast<std::ptrdiff_t>(end));
    store();
    return isKept([&] {
      list = std::move(before);
      store();
    });
  }

  /// Makes the long ones of the texts between quotation marks shorter.
  void thinTexts(std::string& line) {
    std::size_t from = 0;
    while (auto quoted = quotedTextIn(line, from)) {
      std::size_t length = quoted->text().size();
      const auto store = [&] {
        line.replace(quoted->start, length, quoted->text());
        length = quoted->text().size();
      };
      if (quoted->pieces.size() > shortText) thin(quoted->pieces, store);
      from = quoted->start + length + 1;
    }
  }

  void thinText(std::string& text) {
    if (text.size() > shortText) thin(text);
  }

  /// Whether the case still fails; otherwise the change is undone.
  template <class Undo>
  bool isKept(Undo undo) {
    if (fails_(case_)) {
      isSmaller_ = true;
      return true;
    }
    undo();
    return false;
  }

  template <class T>
  void tryValue(T& place, T value) {
    if (place == value) return;
    std::swap(place, value);
    isKept([&] { std::swap(place, value); });
  }

  void thinLines(std::vector<WorldLine>& lines) {
    thin(lines);
    for (WorldLine& line : lines) {
      thin(line.options);
      thinTexts(line.head);
      for (std::string& option : line.options) thinTexts(option);
      thinLines(line.lines);
    }
  }

  void simplify(Step& step) {
    thin(step.deliveries);
    const auto variables = step.environment;
    for (const auto& [name, value] : variables) removeVariable(step, name);
    for (auto& [name, value] : step.environment) thinText(value);
    for (Delivery& delivery : step.deliveries) thinText(delivery.text);
    tryValue(step.after, Microseconds{0});
    tryValue(step.beside, false);
    while (step.words.size() > 1 && removesLastOf(step.words)) {
    }
    for (std::string& word : step.words) thinText(word);
  }

  bool removesLastOf(std::vector<std::string>& words) {
    return removes(words, words.size() - 1, words.size(), [] {});
  }

  void removeVariable(Step& step, const std::string& name) {
    const auto before = step.environment;
    step.environment.erase(name);
    isKept([&] { step.environment = before; });
  }

  static constexpr std::size_t shortText = 24;  // bytes

  Case case_;
  const std::function<bool(const Case&)>& fails_;
  bool isSmaller_ = false;
};

}  // namespace

Case shrunk(Case one, const std::function<bool(const Case&)>& fails) {
  return Shrinker(std::move(one), fails).smallest();
}

}  // namespace soak
