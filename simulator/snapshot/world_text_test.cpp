#include "simulator/snapshot/world_text.h"

#include <gtest/gtest.h>

#include <set>

#include "simulator/desktop.h"
#include "simulator/snapshot/snapshot.h"
#include "simulator/text/parse.h"
#include "simulator/text/value_text.h"

namespace simulator {

namespace {

/// A state with one of everything at least.
World fullState() {
  const Desktop desktop(parseWorld(R"(
    display 1 800x600
    seed 7
    pasteboard item "public.text" "hello"
    tool "/bin/x" output "y"
    link "/a" to "/b"
    file "/f"
    image "/i"
    missing SkyLight
    process 900
    define Row(text)
        AXRow {text}
    app Notes pid 41 frontmost
        window 7 "Inbox" at 0,0 size 600x500
            AXButton "Send" at 10,10 size 60x20 press: append "sent" to Body
            AXTextField "Body" at 10,40 size 60x20 late 5ms transform upper focused
            AXList "List" at 10,70 size 60x40 scrolls
                AXRow "One" at 10,70 size 60x20 repeat 2
                AXRow "Two" at 10,90 size 60x90 only while Body is "x"
            AXTextArea "More" at 10,200 size 60x20 rejects AXValue press: add Row("x") to List
    app Mail pid 42
        window 8 "Letters" at 0,0 size 300x200
    panel pid 50 window 60 over 7 closed
    at 5s every 1s 3 times in Notes set Body "late"
  )"));
  World world = presentWorld(desktop);
  Application& notes = world.applications[0];
  notes.keysDown = {{36, 5'000'000}};
  notes.click.pressedType = 1;
  world.heldButtons[1] = {7, true};
  world.lastClick = UserClick{5, {1, 2}, 1};
  world.activity.lastTimes[1] = 3;
  world.pending = {{.due = 9, .pid = 41, .element = 3, .attribute = "AXValue", .text = "t"}};
  Reaction reaction = notes.elements[1].onClick.front();
  reaction.after = Span{1, 2};
  reaction.when = Condition{"Body", "x", true};
  world.due = {{.due = 8, .pid = 41, .element = 2, .reaction = reaction}};
  world.resumption->comingLock = ComingLock{1, 2, 3};
  world.resumption->faults = {{"windowserver.session 2 absent", 1}};
  world.resumption->killed = {5'000'000};
  return world;
}

/// Changes one thing of a state, the `wanted`-th that is met, and knows its path.
class Change {
 public:
  explicit Change(std::size_t wanted) : wanted_(wanted) {}

  /// Whether there was such a thing.
  bool isMade() const { return isMade_; }
  const std::string& path() const { return path_; }

  template <class Value>
  void visit(const std::string& path, Value& value) {
    if (isMade_) return;
    if constexpr (std::is_same_v<Value, Reaction>) {
      if (isNext(path)) value.target = "Another";
    } else if constexpr (isElsewhere<Value> && !std::is_same_v<Value, std::vector<Application>> &&
                         !std::is_same_v<Value, std::vector<Window>> &&
                         !std::is_same_v<Value, std::vector<Element>> &&
                         !std::is_same_v<Value, std::vector<Display>> &&
                         !std::is_same_v<Value, std::map<ElementId, Habits>>) {
      others_.insert(path);
    } else if constexpr (Structure<Value>) {
      forEachMember([&](const std::string& word,
                        auto& member) { visit(path + (path.empty() ? "" : " ") + word, member); },
                    value);
    } else {
      visitPlain(path, value);
    }
  }

 private:
  bool isNext(const std::string& path) {
    if (seen_++ != wanted_) return false;
    path_ = path;
    isMade_ = true;
    return true;
  }

  void visitPlain(const std::string& path, bool& value) {
    if (isNext(path)) value = !value;
  }

  /// Ids are among those that there are.
  template <class Number>
  requires std::is_arithmetic_v<Number>
  void visitPlain(const std::string& path, Number& value) {
    if (isNext(path)) value = value == 1 ? Number{2} : Number{1};
  }

  template <class Enumeration>
  requires std::is_enum_v<Enumeration>
  void visitPlain(const std::string& path, Enumeration& value) {
    using Number = std::underlying_type_t<Enumeration>;
    if (isNext(path)) value = static_cast<Enumeration>(static_cast<Number>(value) == 1 ? 0 : 1);
  }

  void visitPlain(const std::string& path, std::string& value) {
    if (isNext(path)) value += "\"\xFF\x01";
  }
  void visitPlain(const std::string& path, Point& value) {
    if (isNext(path)) value.x += 0.1;
  }
  void visitPlain(const std::string& path, Size& value) {
    if (isNext(path)) value.width += 0.1;
  }
  void visitPlain(const std::string& path, Rect& value) {
    if (isNext(path)) value.height += 0.1;
  }
  void visitPlain(const std::string& path, ax::Range& value) {
    if (isNext(path)) value.length += 1;
  }
  void visitPlain(const std::string& path, Random& value) {
    if (isNext(path)) value.next();
  }
  void visitPlain(const std::string& path, AttributeValue& value) {
    if (isNext(path)) value = Rect{0.5, 1, 2, 3};
  }

  /// What is there may be missing, and what is not may be there.
  template <class Value>
  void visitPlain(const std::string& path, std::optional<Value>& value) {
    if (value) visit(path, *value);
    if (isMade_ || !isNext(path)) return;
    if (value) {
      value.reset();
    } else {
      value = emptyValue<Value>();
    }
  }

  /// Windows and applications, which others are named after, do not go by themselves.
  template <class Value>
  void visitPlain(const std::string& path, std::vector<Value>& values) {
    for (Value& each : values) visit(path, each);
    constexpr bool isNamed = std::is_same_v<Value, Application> || std::is_same_v<Value, Window> ||
                             std::is_same_v<Value, Element>;
    if constexpr (!isNamed) {
      if (values.empty() || isMade_ || !isNext(path)) return;
      values.pop_back();
    }
  }

  template <class Value>
  void visitPlain(const std::string& path, std::set<Value>& values) {
    if (values.empty() || !isNext(path)) return;
    values.erase(values.begin());
  }

  template <class Key, class Value>
  void visitPlain(const std::string& path, std::map<Key, Value>& values) {
    for (auto& [key, value] : values) visit(path, value);
    if (values.empty() || isMade_ || !isNext(path)) return;
    values.erase(values.begin());
  }

  std::size_t wanted_;
  std::size_t seen_ = 0;
  bool isMade_ = false;
  std::string path_;
  std::set<std::string> others_;  // what other lines say, or nothing
};

/// What cannot be another by itself: others are named by it, or it would be a state that no Mac
/// comes to.
const std::set<std::string> namedBy = {
    "applications pid",
    "applications elements id",
    "applications elements removed",
    "applications copies first",
    "applications scroll-areas id",
    "windows number",
    "windows owner",
    "pending pid",
    "due pid",
    "resumption",
};

/// States that no Mac comes to are refused.
bool isUnsound(const UnwritableWorld& unwritable) {
  const std::string text = unwritable.what();
  for (const char* cause : {"is in itself", "has no element", "needs a frame",
                            "there is no process", "scrolls in nothing"}) {
    if (text.find(cause) != text.npos) return true;
  }
  return false;
}

TEST(worldText, reads_back_as_the_same_text) {
  const std::string text = worldText(fullState());

  EXPECT_EQ(worldText(parseWorld(text)), text);
}

TEST(worldText, tells_of_each_member_of_a_state) {
  const World state = fullState();
  const std::string text = worldText(state);
  for (std::size_t number = 0;; ++number) {
    World other = state;
    Change change(number);
    change.visit("", other);
    if (!change.isMade()) break;
    if (namedBy.contains(change.path())) continue;
    try {
      const std::string changed = worldText(other);
      EXPECT_NE(changed, text) << change.path();
      EXPECT_EQ(worldText(parseWorld(changed)), changed) << change.path();
    } catch (const UnwritableWorld& unwritable) {
      if (!isUnsound(unwritable)) ADD_FAILURE() << change.path() << ": " << unwritable.what();
    }
  }
}

TEST(worldText, is_refused_where_no_mac_could_go_on) {
  World world = fullState();
  world.applications[0].elements[0].parent = 1;

  EXPECT_THROW(worldText(world), UnwritableWorld);
}

}  // namespace

}  // namespace simulator
