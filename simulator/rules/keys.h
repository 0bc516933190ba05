#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "simulator/rules/rule.h"

namespace simulator {

/// What must hold of a client that presses keys, types or pastes: the keys and modifiers are those
/// that were asked for, or the menu item of that shortcut; each goes down and up again, a success
/// means that nothing was left out that could be created, and what a refusal says of the text that
/// was typed is true.
class KeyRules : public Rule {
 public:
  using Rule::Rule;

  void before(const ObservedCall& seen, Violations& violations) override;
  void after(const ObservedCall& seen, const Answer& answer, Violations& violations) override;
  void atEnd(Violations& violations) override;

 private:
  using Step = std::pair<std::int64_t, bool>;  // a key's code, and whether it goes down

  struct Combination {
    std::string key;         // its name
    std::int64_t code = -1;  // below 0: none
    std::uint64_t flags = 0;
  };

  std::string payload() const;
  Combination combination() const;
  std::vector<Step> stepsTold() const;
  std::pair<std::string, std::size_t> textTold() const;
  std::uint64_t flagsTold(const platform::EventImage& event) const;
  bool isComplete() const;
  bool endsLine(const platform::EventImage& event) const;
  bool hasShortcut(const platform::ElementReference& reference) const;
  void checkPost(Violations& violations);
  void checkKey(const platform::EventImage& event, Violations& violations);
  void checkRecord(const platform::Call& call, Violations& violations);

  std::vector<std::int64_t> down_;  // keys that are down, in the order of their going down
  std::vector<Step> steps_;         // of events without a text
  std::u16string typed_;
  std::size_t lineBreaks_ = 0;
  bool menuPressed_ = false;
  bool misled_ = false;  // by a fault, about an element
  bool outOfOrder_ = false;
  std::size_t notCreated_ = 0;  // events
};

}  // namespace simulator
