#include "simulator/input/composing.h"

#include <gtest/gtest.h>

#include "simulator/mac/mac.h"
#include "simulator/text/happenings.h"
#include "simulator/text/parse.h"
#include "simulator/world/attributes.h"
#include "simulator/world/element_text.h"
#include "simulator/world/elements.h"
#include "simulator/world/fields.h"
#include "simulator/world/marking.h"
#include "tests/support/world_errors.h"

namespace simulator {
namespace {

using testing_support::errorOf;

class marking : public testing::Test {
 protected:
  void begin(const std::string& keyboard, const std::string& field) {
    mac_.world = parseWorld(keyboard +
                            "\napp Notes pid 41 frontmost\n"
                            "    window 7 \"Inbox\" at 0,0 size 300x300\n"
                            "        AXTextField \"Other\" at 10,10 size 100x20\n"
                            "        AXStaticText \"Log\" at 10,250 size 100x20\n"
                            "        AXTextField \"To\" at 10,50 size 200x20 focused " +
                            field + " submit: set Log \"sent\"");
  }
  Application& notes() { return mac_.world.applications[0]; }
  Element& to() { return *findLabelled(notes(), "To"); }
  std::string text() { return std::string(textOf(to())); }
  /// The marked text.
  std::string marked() {
    const auto range = markedIn(notes(), to().id);
    if (!range) return "";
    to().attributes["AXSelectedTextRange"] = *range;
    const std::string selected = selectedText(to());
    to().attributes["AXSelectedTextRange"] = ax::Range{range->location + range->length, 0};
    return selected;
  }
  void key(const std::string& name) {
    happen(mac_, parseHappening("user key " + name, mac_.world));
  }
  AttributeResult read(const char* name) {
    return readAttribute(mac_.world, notes(), to().id, name, 0);
  }
  void write(const char* name, const std::string& value) {
    writeField(mac_.world, notes(), to(), name, value, 0);
  }

  Mac mac_;
};

TEST_F(marking, is_part_of_what_accessibility_reads) {
  begin("", "value \"abcd\" marked 2+2");
  EXPECT_EQ(read("AXValue").value, AttributeValue(std::string("abcd")));
  EXPECT_EQ(read("AXTextInputMarkedRange").value, AttributeValue(ax::Range{2, 2}));
  EXPECT_EQ(read("AXSelectedTextRange").value, AttributeValue(ax::Range{4, 0}));
  key("return");
  EXPECT_EQ(read("AXTextInputMarkedRange").error, ax::Error::attributeUnsupported);
}

TEST_F(marking, is_committed_by_return_which_submits_nothing) {
  begin("", "value \"abcd\" marked 2+2");
  key("return");
  EXPECT_EQ(textOf(*findLabelled(notes(), "Log")), "");
  key("return");
  EXPECT_EQ(textOf(*findLabelled(notes(), "Log")), "sent");
  EXPECT_EQ(text(), "abcd");
}

TEST_F(marking, is_composed_by_keys_and_taken_back) {
  begin("", "value \"abcd\" marked 2+2");
  key("x");
  EXPECT_EQ(text(), "abcdx");
  EXPECT_EQ(marked(), "cdx");
  key("delete");
  EXPECT_EQ(marked(), "cd");
  key("escape");
  EXPECT_EQ(text(), "ab");
  EXPECT_EQ(marked(), "");
}

TEST_F(marking, is_committed_by_other_texts) {
  begin("", "value \"abcd\" marked 2+2");
  write("AXSelectedText", "!");
  EXPECT_EQ(text(), "abcd!");
  EXPECT_EQ(marked(), "");
  begin("", "value \"abcd\" marked 2+2");
  write("AXValue", "new");
  EXPECT_EQ(text(), "new");
  EXPECT_EQ(marked(), "");
}

TEST_F(marking, is_lost_to_other_texts_where_the_field_has_it_so) {
  begin("", "value \"abcd\" marked 2+2 lost");
  write("AXSelectedText", "!");
  EXPECT_EQ(text(), "ab!");
}

TEST_F(marking, is_committed_when_the_keyboard_goes_elsewhere) {
  begin("", "value \"abcd\" marked 2+2");
  key("tab");
  EXPECT_EQ(marked(), "");
  EXPECT_EQ(text(), "abcd");
  EXPECT_EQ(labelOf(*findElement(notes(), notes().focusedElement)), "Other");
}

TEST_F(marking, is_what_a_dead_key_shows_until_its_letter_comes) {
  begin("keyboard german dead-keys", "");
  key("´");
  EXPECT_EQ(text(), "´");
  EXPECT_EQ(marked(), "´");
  key("e");
  EXPECT_EQ(text(), "é");
  EXPECT_EQ(marked(), "");
  key("`");
  key("x");
  EXPECT_EQ(text(), "é`x");
  key("^");
  key("space");
  EXPECT_EQ(text(), "é`x^");
  key("^");
  key("delete");
  EXPECT_EQ(text(), "é`x^");
  key("´");
  key("return");
  EXPECT_EQ(text(), "é`x^´");
  EXPECT_EQ(textOf(*findLabelled(notes(), "Log")), "sent");
}

TEST_F(marking, has_the_dead_keys_of_the_layout) {
  begin("keyboard french dead-keys", "");
  key("¨");
  key("i");
  EXPECT_EQ(text(), "ï");
  begin("keyboard german", "");
  key("^");
  EXPECT_EQ(text(), "^");
  EXPECT_EQ(marked(), "");
}

TEST_F(marking, is_described_once_and_of_fields_alone) {
  const std::string app = "app A pid 1\n  window 7 at 0,0 size 9x9\n";
  EXPECT_EQ(errorOf(app + "    AXButton \"B\" marked 0+1"), "line 3: only a field has marked text");
  EXPECT_EQ(errorOf(app + "    AXTextField marked -1+1"), "line 3: 'marked' needs numbers from 0");
  EXPECT_EQ(errorOf(app + "    AXTextField marked 0+1\n    AXTextField marked 0+1"),
            "line 4: a second field of one application has marked text");
}

}  // namespace
}  // namespace simulator
