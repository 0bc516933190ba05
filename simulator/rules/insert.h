#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "simulator/rules/rule.h"

namespace simulator {

/// I13, of one client that enters text: replacing destroys no readable text that is not the run's
/// own, no text is written a second time into a field that has told of another change, and a
/// success means that the field was seen to hold the text. What an element answered with a fault is
/// not held against the client.
class InsertRules : public Rule {
 public:
  using Rule::Rule;

  void before(const ObservedCall& seen, Violations& violations) override;
  void after(const ObservedCall& seen, const Answer& answer, Violations& violations) override;
  void atEnd(Violations& violations) override;

 private:
  using Key = std::pair<Pid, ElementId>;

  bool concernsUs() const;
  const std::string& argument(std::size_t index) const;
  std::optional<AttributeValue> read(const Key& key, const std::string& name) const;
  std::string readText(const Key& key, const std::string& name) const;
  std::string withoutDecoration(const Key& key, const std::string& value) const;
  std::set<std::string> ownTexts() const;
  bool isTransient(Key key) const;
  void noteReadings(const Key& key, const std::vector<std::string>& names, const Answer& answer);
  void checkReplacement(const Key& key, Violations& violations) const;
  bool isShownAnew(const std::string& now) const;
  void checkSecondWrite(Violations& violations) const;
  std::string expected() const;
  std::optional<std::string> staticTexts(const Key& field) const;
  bool holdsExpected() const;
  bool isMisledAbout(const Key& field) const;

  std::map<Key, std::string> told_;       // the AXValue that was answered last; empty for no text
  std::map<Key, std::string> toldSince_;  // the same, after a text was written
  std::map<Key, ax::Range> toldSelection_;
  std::set<Key> faulty_;
  std::optional<Key> field_;  // that was written to
  std::string prior_;         // what it held before, as far as the client was told
  std::optional<ax::Range> priorSelection_;
  bool wroteText_ = false;
  bool landed_ = false;  // as the last write left it, and a later read could tell
};

}  // namespace simulator
