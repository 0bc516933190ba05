#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "simulator/input/posted_event.h"
#include "simulator/mac/mac.h"

namespace oracle {

using simulator::ElementId;
using simulator::Microseconds;
using simulator::Pid;
using simulator::Point;
using simulator::Rect;
using simulator::WindowNumber;

/// An element of an application; id 0 is the application itself.
struct Element {
  Pid pid = 0;
  ElementId id = 0;
  friend bool operator==(const Element&, const Element&) = default;
};

/// One attribute as it was read: a value, or the error.
struct Reading {
  std::optional<simulator::AttributeValue> value;
  ax::Error error = ax::Error::success;
};

/// A copy of the Mac on which a command is played, and the command's environment. All that a
/// command sees and does goes through here; each function throws NoOpinion where the Mac is not
/// still.
class Stage {
 public:
  Stage(const simulator::Mac& before, std::map<std::string, std::string> environment);

  const simulator::World& world() const { return mac_.world; }

  /// The variable, read afresh; none when it is not set.
  std::optional<std::string> variable(const std::string& name) const;

  /// Whether the system has this private function.
  bool has(const std::string& function, const std::string& library) const;

  /// A running application; null when there is none.
  const simulator::Application* application(Pid pid) const;

  // Accessibility. An attribute that cannot be read, or is of another type, is absent.
  Reading read(const Element& element, const std::string& name);
  std::optional<std::string> text(const Element& element, const std::string& name);
  std::optional<double> number(const Element& element, const std::string& name);
  std::optional<Element> link(const Element& element, const std::string& name);
  std::optional<std::vector<Element>> list(const Element& element, const std::string& name);
  bool isTrue(const Element& element, const std::string& name);
  bool isFalse(const Element& element, const std::string& name);
  std::optional<Rect> frame(const Element& element);
  std::vector<std::string> actions(const Element& element);
  std::optional<Element> elementAt(Pid pid, Point point);
  /// The private window number of an element; 0 when the system does not tell one.
  WindowNumber windowOf(const Element& element);

  // Acts. Those on elements give the platform's code.
  std::int32_t perform(const Element& element, const std::string& action);
  std::int32_t write(const Element& element, const std::string& name,
                     const simulator::AttributeValue& value);
  void unhide(Pid pid);
  void wait(Microseconds time);
  /// An event's identity, which all its postings share.
  std::int64_t newIdentity() { return ++mac_.numbers; }
  void post(Pid pid, const platform::EventImage& event, simulator::Route route);
  void postRecord(Pid pid, const std::string& record);
  void clearClipboard();
  void writeClipboard(const std::vector<pasteboard::Item>& items);
  void writeFiles(const std::vector<std::string>& paths);
  void noteFile(const std::string& path);  // that was put in place

  /// Throws where a picture would bring up the system's question, or wait for its answer.
  void requireNoQuestion() const;

  /// What a picture of the window would show; none when there is no picture of it.
  std::optional<std::uint64_t> look(WindowNumber window) const;

  Microseconds elapsed() const { return mac_.now - start_; }
  /// What was done, as the journal has it.
  std::string effects() const;
  /// Every application that was asked answered at once, and no call takes time by chance.
  bool isExact() const { return exact_ && !world().seed; }

 private:
  const simulator::Application* ask(const Element& element);
  void requireStill(Microseconds until) const;

  simulator::Mac mac_;
  simulator::Client client_;
  Microseconds start_ = 0;
  std::map<std::string, std::string> environment_;
  bool exact_ = true;
};

}  // namespace oracle
