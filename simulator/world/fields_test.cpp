#include "simulator/world/fields.h"

#include <gtest/gtest.h>

#include <cmath>

#include "simulator/text/parse.h"
#include "simulator/world/attributes.h"
#include "simulator/world/element_text.h"
#include "simulator/world/windows.h"
#include "tests/support/attribute_values.h"

namespace simulator {

namespace {

using testing_support::text;
AttributeValue range(std::int64_t location, std::int64_t length) {
  return ax::Range{location, length};
}

class fields : public testing::Test {
 protected:
  /// A world whose only window has these lines in it; the field is labelled F.
  void build(const std::string& lines) {
    world_ = parseWorld("app Notes pid 41\n  window 7 \"Inbox\" at 0,0 size 400x300\n    " + lines);
  }

  Application& notes() { return world_.applications[0]; }
  ElementId field() { return findLabelled(notes(), "F")->id; }
  AttributeResult result(const std::string& name, Microseconds now = 0) {
    return readAttribute(world_, notes(), field(), name, now);
  }
  AttributeValue read(const std::string& name) { return result(name).value.value_or(Opaque{}); }
  int write(const std::string& name, const AttributeValue& value, Microseconds now = 0) {
    return static_cast<int>(writeAttribute(world_, notes(), field(), name, value, now));
  }
  /// The static texts in the field, in order.
  std::vector<std::string> lines() {
    std::vector<std::string> found;
    for (const ElementId id : findElement(notes(), field())->children) {
      const Element* child = findElement(notes(), id);
      found.push_back(child->role + " " +
                      std::get<std::string>(
                          readAttribute(world_, notes(), id, "AXValue", 0).value.value_or("-")));
    }
    return found;
  }

  World world_;
};

TEST_F(fields, a_write_of_the_value_replaces_it_and_the_caret_follows) {
  build(R"(AXTextArea "F" value "hello" selection 1+2)");

  EXPECT_EQ(write("AXValue", text("a😀")), 0);

  EXPECT_EQ(read("AXValue"), text("a😀"));
  EXPECT_EQ(read("AXSelectedTextRange"), range(3, 0));
  EXPECT_EQ(read("AXNumberOfCharacters"), AttributeValue(std::int64_t{3}));
  EXPECT_EQ(write("AXValue", std::int64_t{3}), -25201);
}

TEST_F(fields, a_write_of_the_selected_text_replaces_the_selection_in_utf16_units) {
  build(R"(AXTextArea "F" value "a😀b😀c")");

  EXPECT_EQ(read("AXSelectedTextRange"), range(0, 0));
  EXPECT_EQ(write("AXSelectedTextRange", range(3, 3)), 0);
  EXPECT_EQ(read("AXSelectedText"), text("b😀"));
  EXPECT_EQ(write("AXSelectedText", text("é€")), 0);
  EXPECT_EQ(read("AXValue"), text("a😀é€c"));
  EXPECT_EQ(read("AXSelectedTextRange"), range(5, 0));
  EXPECT_EQ(write("AXSelectedText", text("!")), 0);
  EXPECT_EQ(read("AXValue"), text("a😀é€!c"));
}

TEST_F(fields, a_selection_lies_within_the_text) {
  build(R"(AXTextField "F" value "abc")");

  EXPECT_EQ(write("AXSelectedTextRange", range(3, 0)), 0);
  EXPECT_EQ(write("AXSelectedTextRange", range(3, 1)), -25201);
  EXPECT_EQ(write("AXSelectedTextRange", range(-1, 1)), -25201);
  EXPECT_EQ(write("AXSelectedTextRange", range(0, INT64_MAX)), -25201);
  EXPECT_EQ(write("AXSelectedTextRange", text("0")), -25201);
  EXPECT_EQ(read("AXSelectedTextRange"), range(3, 0));
}

TEST_F(fields, the_focus_puts_the_caret_at_the_end_unless_it_has_a_place) {
  build(
      "AXTextField \"F\" value \"abc\"\n    AXTextField \"G\" value \"abc\" selection 1+1\n"
      "    AXGroup \"H\" attribute AXEditable true\n    AXButton \"B\"");
  const auto focus = [&](const char* label) {
    return static_cast<int>(
        writeAttribute(world_, notes(), findLabelled(notes(), label)->id, "AXFocused", true, 0));
  };

  EXPECT_EQ(focus("F"), 0);
  EXPECT_EQ(read("AXFocused"), AttributeValue(true));
  EXPECT_EQ(read("AXSelectedTextRange"), range(3, 0));
  EXPECT_EQ(focus("G"), 0);
  EXPECT_EQ(read("AXFocused"), AttributeValue(false));
  EXPECT_EQ(findLabelled(notes(), "G")->attributes["AXSelectedTextRange"], range(1, 1));
  EXPECT_EQ(focus("H"), 0);
  EXPECT_EQ(notes().focusedElement, findLabelled(notes(), "H")->id);
  EXPECT_EQ(focus("B"), -25205);
  EXPECT_EQ(write("AXFocused", false), 0);
  EXPECT_EQ(notes().focusedElement, findLabelled(notes(), "H")->id);
}

TEST_F(fields, a_field_may_change_what_is_written) {
  build(R"(AXTextField "F" transform trim transform upper transform first 3 characters)");

  EXPECT_EQ(write("AXValue", text("  abcdef ")), 0);
  EXPECT_EQ(read("AXValue"), text("ABC"));
  EXPECT_EQ(write("AXSelectedTextRange", range(0, 1)), 0);
  EXPECT_EQ(write("AXSelectedText", text("xyz")), 0);
  EXPECT_EQ(read("AXValue"), text("XYZ"));
  EXPECT_EQ(read("AXSelectedTextRange"), range(3, 0));
}

TEST_F(fields, a_field_may_ignore_or_halve_what_is_written) {
  build(R"(AXTextField "F" value "old" ignores writes)");
  EXPECT_EQ(write("AXValue", text("new")), 0);
  EXPECT_EQ(write("AXSelectedText", text("new")), 0);
  EXPECT_EQ(read("AXValue"), text("old"));

  build(R"(AXTextField "F" value "old" half of writes)");
  EXPECT_EQ(write("AXSelectedText", text("1😀345")), 0);
  EXPECT_EQ(read("AXValue"), text("1😀old"));
  EXPECT_EQ(write("AXValue", text("abcd")), 0);
  EXPECT_EQ(read("AXValue"), text("ab"));
}

TEST_F(fields, a_late_field_takes_writes_in_order_each_at_its_time) {
  build(R"(AXTextField "F" value "old" selection 3+0 late 120ms)");

  EXPECT_EQ(write("AXSelectedText", text("1"), 1'000), 0);
  EXPECT_EQ(write("AXSelectedText", text("2"), 2'000), 0);
  settleWrites(world_, 120'999);
  EXPECT_EQ(read("AXValue"), text("old"));
  settleWrites(world_, 121'000);
  EXPECT_EQ(read("AXValue"), text("old1"));
  settleWrites(world_, 500'000);
  EXPECT_EQ(read("AXValue"), text("old12"));
  EXPECT_TRUE(world_.pending.empty());
}

TEST_F(fields, a_late_write_to_what_has_gone_is_lost) {
  build(R"(AXTextField "F" late 1ms)");

  write("AXValue", text("x"));
  quitApplication(world_, 41);
  settleWrites(world_, 1'000);

  EXPECT_TRUE(world_.pending.empty());
}

TEST_F(fields, an_empty_field_may_show_its_placeholder_as_value) {
  build(R"(AXTextField "F" placeholder "Write…" shows placeholder)");

  EXPECT_EQ(read("AXValue"), text("Write…"));
  EXPECT_EQ(read("AXNumberOfCharacters"), AttributeValue(std::int64_t{0}));
  EXPECT_EQ(write("AXSelectedText", text("x")), 0);
  EXPECT_EQ(read("AXValue"), text("x"));
  EXPECT_EQ(write("AXValue", text("")), 0);
  EXPECT_EQ(read("AXValue"), text("Write…"));
}

TEST_F(fields, a_secure_field_shows_bullets) {
  build(R"(AXTextField "F" subrole AXSecureTextField value "aé😀")");

  EXPECT_EQ(read("AXValue"), text("•••"));
  EXPECT_EQ(result("AXSelectedText").error, ax::Error::noValue);
  EXPECT_EQ(write("AXValue", text("1")), 0);
  EXPECT_EQ(read("AXValue"), text("•"));
}

TEST_F(fields, a_composer_shows_its_text_as_static_texts) {
  build("AXTextArea \"F\" at 10,20 size 200x90 value \"one\\n\\ntwo\" composer");
  const ElementId before = findElement(notes(), field())->children[0];

  EXPECT_EQ(read("AXValue"), text("one\n\ntwo"));
  EXPECT_EQ(lines(), (std::vector<std::string>{"AXStaticText one", "AXStaticText two"}));
  EXPECT_EQ(*readAttribute(world_, notes(), before, "AXPosition", 0).value,
            AttributeValue(Point{19, 27}));
  EXPECT_EQ(write("AXSelectedTextRange", range(0, 3)), 0);
  EXPECT_EQ(write("AXSelectedText", text("1")), 0);
  EXPECT_EQ(read("AXValue"), text("1\n\ntwo"));
  EXPECT_EQ(lines(), (std::vector<std::string>{"AXStaticText 1", "AXStaticText two"}));
  EXPECT_EQ(readAttribute(world_, notes(), before, "AXValue", 0).error, ax::Error::invalidElement);
  EXPECT_EQ(write("AXValue", text("")), 0);
  EXPECT_EQ(lines(), std::vector<std::string>{});
}

TEST_F(fields, a_composers_text_may_be_that_of_its_static_texts_and_hidden) {
  build(
      "AXGroup \"F\" attribute AXEditable true composer without value\n"
      "        AXGroup\n"
      "            AXStaticText value \"one\"\n"
      "        AXStaticText value \"two\"\n"
      "        AXTextField \"Mention\" value \"@ada\"");

  EXPECT_EQ(result("AXValue").error, ax::Error::noValue);
  EXPECT_EQ(read("AXNumberOfCharacters"), AttributeValue(std::int64_t{7}));
  EXPECT_EQ(write("AXValue", text("new")), 0);
  EXPECT_EQ(result("AXValue").error, ax::Error::noValue);
  EXPECT_EQ(lines(),
            (std::vector<std::string>{"AXStaticText new", "AXGroup -", "AXTextField @ada"}));
}

TEST_F(fields, a_composers_static_texts_go_with_what_they_would_do) {
  build(
      "AXTextArea \"F\" composer\n"
      "        AXStaticText press: set F \"pressed\"");

  EXPECT_EQ(lines(), std::vector<std::string>{});
}

TEST_F(fields, an_empty_composer_may_hold_its_placeholder) {
  build(R"(AXTextArea "F" placeholder "Message" composer shows placeholder)");

  EXPECT_EQ(lines(), std::vector<std::string>{"AXStaticText Message"});
  addText(notes(), field(), "hi");
  EXPECT_EQ(lines(), std::vector<std::string>{"AXStaticText hi"});
  putText(notes(), field(), "");
  EXPECT_EQ(lines(), std::vector<std::string>{"AXStaticText Message"});
}

TEST_F(fields, a_field_may_reject_writes) {
  build(R"(AXTextField "F" value "old" rejects AXSelectedText rejects AXValue -25200)");

  EXPECT_EQ(write("AXSelectedText", text("x")), -25205);
  EXPECT_EQ(write("AXValue", text("x")), -25200);
  EXPECT_EQ(write("AXSelectedTextRange", range(1, 1)), 0);
  EXPECT_EQ(read("AXValue"), text("old"));
}

TEST_F(fields, a_disabled_field_takes_nothing) {
  build(R"(AXTextField "F" value "old" disabled)");

  EXPECT_EQ(write("AXValue", text("x")), -25205);
  EXPECT_EQ(write("AXFocused", true), -25205);
  EXPECT_EQ(read("AXValue"), text("old"));
  EXPECT_EQ(notes().focusedElement, 0);
}

TEST_F(fields, a_field_may_lie_about_its_text) {
  build(R"(AXTextField "F" value 3 attribute AXSelectedText "lie" attribute AXFocused true)");

  EXPECT_EQ(read("AXValue"), AttributeValue(std::int64_t{3}));
  EXPECT_EQ(read("AXSelectedText"), text("lie"));
  EXPECT_EQ(write("AXValue", text("x")), -25201);
  EXPECT_EQ(write("AXFocused", true), 0);
  EXPECT_EQ(notes().focusedElement, 0);
}

TEST_F(fields, a_slider_stays_within_its_limits) {
  build(R"(AXSlider "F" range 0..10)");

  EXPECT_EQ(read("AXValue"), AttributeValue(std::int64_t{0}));
  EXPECT_EQ(write("AXValue", 3.0), 0);
  EXPECT_EQ(read("AXValue"), AttributeValue(std::int64_t{3}));
  EXPECT_EQ(write("AXValue", 2.5), 0);
  EXPECT_EQ(read("AXValue"), AttributeValue(2.5));
  EXPECT_EQ(write("AXValue", std::int64_t{99}), 0);
  EXPECT_EQ(read("AXValue"), AttributeValue(10.0));
  EXPECT_EQ(write("AXValue", std::nan("")), -25201);
  EXPECT_EQ(write("AXValue", text("5")), -25201);
}

TEST_F(fields, a_disabled_slider_stays) {
  build(R"(AXSlider "F" range 0..10 value 4 disabled)");

  EXPECT_EQ(write("AXValue", 3.0), -25205);
  EXPECT_EQ(read("AXValue"), AttributeValue(std::int64_t{4}));
}

TEST(field_texts, are_changed_by_characters_and_lines) {
  const auto first = [](std::size_t count) {
    return std::vector<Transform>{{Transform::Kind::first, count}};
  };
  EXPECT_EQ(transformed("a😀é", first(2)), "a😀");
  EXPECT_EQ(transformed("a😀é", first(9)), "a😀é");
  EXPECT_EQ(transformed("a😀é", first(0)), "");
  EXPECT_EQ(transformed(" \n ", {{Transform::Kind::trim, 0}}), "");
  EXPECT_EQ(transformed("Aa\nÉ", {{Transform::Kind::lower, 0}, {Transform::Kind::oneLine, 0}}),
            "aa É");
  EXPECT_EQ(firstHalf("ab😀"), "a");
  EXPECT_EQ(firstHalf(""), "");
  EXPECT_EQ(filledLines("\na\n\nb"), (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(filledLines(""), std::vector<std::string>{});
}

}  // namespace

}  // namespace simulator
