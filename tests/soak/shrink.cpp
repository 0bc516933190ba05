#include "tests/soak/shrink.h"

#include <algorithm>

namespace soak {

namespace {

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
      thinLines(case_.world);
      for (std::size_t i = 0; i < case_.steps.size(); ++i) simplify(case_.steps[i]);
    } while (isSmaller_);
    return std::move(case_);
  }

 private:
  /// Takes out of a list of the case what is not needed: halves first, then ever smaller pieces.
  template <class List>
  void thin(List& list) {
    for (std::size_t length = list.size(); length > 0; length /= 2) {
      std::size_t start = 0;
      while (start < list.size()) {
        const std::size_t end = std::min(start + length, list.size());
        if (!removes(list, start, end)) start = end;
      }
    }
  }

  template <class List>
  bool removes(List& list, std::size_t start, std::size_t end) {
    List before = list;
    list.erase(list.begin() + static_cast<std::ptrdiff_t>(start),
               list.begin() + static_cast<std::ptrdiff_t>(end));
    return isKept([&] { list = std::move(before); });
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
      thinLines(line.lines);
    }
  }

  void simplify(Step& step) {
    thin(step.deliveries);
    const auto variables = step.environment;
    for (const auto& [name, value] : variables) removeVariable(step, name);
    tryValue(step.after, Microseconds{0});
    tryValue(step.beside, false);
    while (step.words.size() > 1 && removes(step.words, step.words.size() - 1, step.words.size())) {
    }
    for (std::string& word : step.words) {
      if (word.size() > shortWord) thin(word);
    }
  }

  void removeVariable(Step& step, const std::string& name) {
    const auto before = step.environment;
    step.environment.erase(name);
    isKept([&] { step.environment = before; });
  }

  static constexpr std::size_t shortWord = 24;

  Case case_;
  const std::function<bool(const Case&)>& fails_;
  bool isSmaller_ = false;
};

}  // namespace

Case shrunk(Case one, const std::function<bool(const Case&)>& fails) {
  return Shrinker(std::move(one), fails).smallest();
}

}  // namespace soak
