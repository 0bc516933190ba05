#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>

#include "simulator/rules/rule.h"

namespace simulator {

/// Where a client's keys go: into windows in its scope (I11) that are no other's twins (I12), and
/// never, as far as the client can know, into a window that the user has chosen instead, nor into
/// another one than was key before the menus were searched (I14).
class KeyTargetRules : public Rule {
 public:
  using Rule::Rule;

  void look() override;
  void before(const ObservedCall& seen, Violations& violations) override;
  void after(const ObservedCall& seen, const Answer& answer, Violations& violations) override;

 private:
  /// Who has the user's keyboard.
  struct Owner {
    Pid pid = 0;  // in front
    WindowNumber window = 0;
    friend bool operator==(const Owner&, const Owner&) = default;
  };

  /// By what a run means a window: by its number in a record, or by the keyboard that it has.
  enum class Known { byNumber, byKeyboard };

  Owner owner() const;
  void noteReading(const ObservedCall& seen, const Answer& answer, Violations& violations);
  void noteFocusedWindow(const platform::Call& call);
  void noteSheets(const platform::Call& call);
  void checkSearch(Pid pid, Violations& violations);
  void checkPost(const platform::Call& call, Violations& violations);
  void checkAct(Pid pid, bool needsLook, Violations& violations);
  void checkRecord(const platform::Call& call, Violations& violations);
  void checkWindow(WindowNumber number, Known how, Violations& violations);
  bool hasTwin(const Window& window, Known how) const;
  void checkSheet(WindowNumber number, Violations& violations) const;
  void checkPanel(WindowNumber number, Violations& violations) const;
  bool hasFocus(Pid pid) const;
  bool isMeant(Pid pid, WindowNumber number) const;

  std::optional<Pid> target_;           // the process that the run was told to operate
  std::map<Pid, WindowNumber> meant_;   // where the keys for a process are to go
  std::set<Pid> chosen_;                // processes whose sheets have been read then
  std::set<Pid> toldInFront_;           // processes
  std::set<Pid> givenFocus_;            // by the client
  std::set<WindowNumber> toldNumbers_;  // of windows, by accessibility
  std::set<WindowNumber> checkedWindows_;
  std::map<WindowNumber, std::size_t> sheetsRead_;  // open ones, when the window was last read

  // A look is a question for the foreground.
  Owner found_;              // when the latest look began
  bool wasTold_ = false;     // it gave the truth
  bool isStale_ = false;     // the owner has changed since it began
  bool hasLooked_ = false;   // since something last went down, or menus were searched
  bool hasKeyDown_ = false;  // of the present combination

  // Which window is key, as the client was told when it asked; nothing when it was told none.
  driver::Datum toldKey_;
  driver::Datum toldKeyBefore_;  // before the latest search through menus
  bool hasJustAsked_ = false;    // by the latest reading
  bool hasAskedSince_ = false;   // since menus were searched
  bool hasSearched_ = false;     // since something last went down
  int timeOuts_ = 0;             // after two of them nothing is asked any more
};

}  // namespace simulator
