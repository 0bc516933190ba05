#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "simulator/desktop.h"
#include "simulator/rules/replies.h"
#include "simulator/text/parse.h"

namespace simulator {

namespace {

using driver::Datum;
using driver::pack;
using platform::ElementReference;
using platform::Function;
using platform::ValueKind;

/// A run of `ax-insert` whose calls are made by hand.
class insertion_rules : public testing::Test {
 protected:
  /// The run enters `text` into the element 2, which this line describes; element 1 is its window.
  void begin(const std::string& line, const std::string& mode, const std::string& text,
             const std::string& owned = "", std::vector<Fault> faults = {}) {
    desktop_.emplace(
        parseWorld("app Notes pid 41\n  window 7 \"Inbox\" at 0,0 size 400x300" + line),
        std::move(faults));
    std::vector<std::string> arguments = {"driver", "ax-insert", "Notes", "",
                                          "-1",     "-1",        mode,    text};
    if (!owned.empty()) arguments.push_back(owned);
    client_ = desktop_->join(arguments, {});
    call(Function::session, {});
  }

  void call(Function function, Datum::List arguments) {
    desktop_->handle(client_, {function, std::move(arguments)});
  }
  void read(const char* name, ElementId id = 2) {
    call(Function::axAttribute, {pack(ElementReference{41, id}), pack(std::string(name))});
  }
  void write(const char* name, const std::string& text) {
    const Datum value(Datum::List{pack(ValueKind::text), pack(text)});
    call(Function::axSetAttribute, {pack(ElementReference{41, 2}), pack(std::string(name)), value});
  }
  void writeSelection(ax::Range range) {
    const Datum value(Datum::List{pack(ValueKind::range), pack(range)});
    call(Function::axSetAttribute,
         {pack(ElementReference{41, 2}), pack(std::string("AXSelectedTextRange")), value});
  }
  /// Ends the run; gives what it broke.
  std::vector<std::string> end(bool ok = true) {
    call(Function::writeOutput,
         {pack(std::string(ok ? "{\"ok\":true}\n" : "{\"error\":\"x\",\"ok\":false}\n")),
          pack(true)});
    call(Function::exit, {pack(0)});
    return desktop_->violations();
  }

  std::optional<Desktop> desktop_;
  std::size_t client_ = 0;
};

const std::vector<std::string> noViolations;
const std::vector<std::string> replaced = {"I13: a text was replaced that the run had not written"};
const std::vector<std::string> unseen = {
    "I13: a success, and the field was not seen to hold the text"};

TEST_F(insertion_rules, ask_nothing_of_a_write_that_the_system_refuses) {
  begin("\n    AXTextArea \"F\" value \"theirs\"", "replace", "ours");
  desktop_->mac().world.accessibilityAllowed = false;
  read("AXValue");
  write("AXValue", "ours");
  EXPECT_EQ(end(false), noViolations);
}

TEST_F(insertion_rules, forbid_to_replace_what_could_be_read_again) {
  begin("\n    AXTextArea \"F\" value \"theirs\"", "replace", "ours");
  desktop_->mac().world.accessibilityAllowed = false;
  read("AXValue");
  desktop_->mac().world.accessibilityAllowed = true;
  write("AXValue", "ours");
  EXPECT_EQ(end(false), replaced);
}

TEST_F(insertion_rules, see_an_empty_text_in_a_field_that_takes_none) {
  begin("\n    AXTextArea \"F\" disabled", "end", "");
  read("AXValue");
  writeSelection({0, 0});
  read("AXValue");
  EXPECT_EQ(end(), noViolations);
}

TEST_F(insertion_rules, may_replace_nothing_and_decoration) {
  for (const char* line : {"\n    AXTextArea \"F\"", "\n    AXTextArea \"F\" value \" \\n\"",
                           "\n    AXTextArea placeholder \"Write\" shows placeholder",
                           "\n    AXTextArea \"Title  of it\" value \"Title of it\""}) {
    begin(line, "replace", "new");
    read("AXValue");
    write("AXValue", "new");
    read("AXValue");
    EXPECT_EQ(end(), noViolations) << line;
  }
}

TEST_F(insertion_rules, may_not_replace_a_strangers_text) {
  begin("\n    AXTextArea \"F\" value \"old\"", "replace", "new");
  read("AXValue");
  write("AXValue", "new");
  read("AXValue");
  EXPECT_EQ(end(), replaced);

  begin("\n    AXTextArea \"F\" value \"old\"", "replace", "new");
  write("AXValue", "new");
  EXPECT_EQ(end(false), replaced);
}

TEST_F(insertion_rules, may_replace_its_own_text_and_whatever_a_message_replaces) {
  begin("\n    AXTextArea \"F\" value \"old  text\"", "replace", "new", R"(["x","old\ntext"])");
  read("AXValue");
  write("AXValue", "new");
  read("AXValue");
  EXPECT_EQ(end(), noViolations);

  begin("\n    AXTextArea \"F\" value \"\\xE9t\"", "replace", "new", "[\"\xE9t\"]");
  read("AXValue");
  write("AXValue", "new");
  read("AXValue");
  EXPECT_EQ(end(), noViolations);

  begin("\n    AXTextArea \"F\" value \"old\"", "replace", "new", R"(["old",3])");
  write("AXValue", "new");
  EXPECT_EQ(end(false), replaced);

  begin("\n    AXTextArea \"F\" value \"old\"", "message", "new");
  write("AXValue", "new");
  read("AXValue");
  EXPECT_EQ(end(), noViolations);
}

TEST_F(insertion_rules, may_replace_single_lines_in_dialogs) {
  begin(" subrole AXDialog\n    AXTextField \"F\" value \"old\"", "replace", "new");
  write("AXValue", "new");
  EXPECT_EQ(end(false), noViolations);

  begin(" subrole AXDialog\n    AXTextArea \"F\" value \"old\"", "replace", "new");
  write("AXValue", "new");
  EXPECT_EQ(end(false), replaced);
}

TEST_F(insertion_rules, is_not_to_blame_for_a_text_that_could_not_be_read) {
  begin("\n    AXTextArea \"F\" value \"old\"", "replace", "new", "",
        {parseFault("ax.attribute 1 error -25204", parseWorld(""))});
  read("AXValue");
  write("AXValue", "new");
  EXPECT_EQ(end(), noViolations);

  begin("\n    AXTextArea \"F\" value \"old\" failing AXValue -25212", "replace", "new");
  read("AXValue");
  write("AXValue", "new");
  EXPECT_EQ(end(false), noViolations);
}

TEST_F(insertion_rules, succeeds_only_when_the_field_was_seen_to_hold_the_text) {
  begin("\n    AXTextArea \"F\" ignores writes", "message", "new");
  write("AXValue", "new");
  read("AXValue");
  EXPECT_EQ(end(), unseen);

  begin("\n    AXTextArea \"F\"", "message", "new");
  write("AXValue", "new");
  EXPECT_EQ(end(), unseen);

  begin("\n    AXTextArea \"F\"", "message", "new");
  EXPECT_EQ(end(), std::vector<std::string>{"I13: a success without a write"});

  begin("\n    AXTextArea \"F\" ignores writes", "message", "new");
  write("AXValue", "new");
  read("AXValue");
  EXPECT_EQ(end(false), noViolations);
}

TEST_F(insertion_rules, expects_what_the_mode_makes_of_the_prior_text) {
  const auto insert = [&](const char* mode, ax::Range range, const char* written) {
    begin("\n    AXTextArea \"F\" value \"a😀b\" selection 1+2", mode, "x");
    read("AXValue");
    read("AXSelectedTextRange");
    writeSelection(range);
    write("AXSelectedText", written);
    read("AXValue");
    return end();
  };

  EXPECT_EQ(insert("end", {4, 0}, "x"), noViolations);
  EXPECT_EQ(insert("end", {0, 0}, "x"), unseen);
  EXPECT_EQ(insert("new_line", {4, 0}, "\nx"), noViolations);
  EXPECT_EQ(insert("new_line", {4, 0}, "x"), unseen);
  EXPECT_EQ(insert("caret", {1, 2}, "x"), noViolations);
  EXPECT_EQ(insert("caret", {4, 0}, "x"), unseen);
}

const std::vector<std::string> twice = {"I13: a second write into a field that had changed"};

TEST_F(insertion_rules, may_write_a_second_time_where_the_first_changed_nothing) {
  begin("\n    AXTextArea \"F\" value \"old\" rejects AXSelectedText", "end", "new");
  read("AXValue");
  write("AXSelectedText", "new");
  read("AXValue");
  write("AXValue", "oldnew");
  read("AXValue");
  EXPECT_EQ(end(), none);
}

TEST_F(insertion_rules, may_not_write_a_second_time_into_a_field_that_has_changed) {
  begin("\n    AXTextArea \"F\" value \"old\" half of writes", "end", "new");
  read("AXValue");
  write("AXSelectedText", "new");
  read("AXValue");
  write("AXValue", "oldnew");
  EXPECT_EQ(end(false), twice);
}

TEST_F(insertion_rules, may_not_write_a_second_time_over_a_text_that_only_shows) {
  begin("\n    AXTextArea \"F\" value \"old\" composer without value", "end", "new");
  read("AXValue");
  read("AXValue", 3);
  write("AXSelectedText", "new");
  read("AXValue");
  read("AXValue", 3);
  read("AXValue", 4);
  write("AXValue", "new");
  EXPECT_EQ(end(false), twice);
}

TEST_F(insertion_rules, may_write_a_second_time_where_the_same_text_shows_anew) {
  begin("\n    AXTextArea \"F\" value \"old\" composer without value", "end", "");
  read("AXValue");
  read("AXValue", 3);
  write("AXSelectedText", "");
  read("AXValue");
  read("AXValue", 4);
  write("AXValue", "");
  EXPECT_EQ(end(false), noViolations);
}

TEST_F(insertion_rules, takes_the_text_that_shows_for_that_of_a_composer) {
  begin("\n    AXTextArea \"F\" composer without value", "message", "one\ntwo");
  write("AXValue", "one\ntwo");
  read("AXChildren");
  EXPECT_EQ(end(), noViolations);

  begin("\n    AXTextArea \"F\" composer\n        AXTextField \"In\"", "message", "one");
  write("AXValue", "one");
  read("AXValue");
  EXPECT_EQ(end(), unseen);
}

TEST_F(insertion_rules, waits_for_a_late_text) {
  begin("\n    AXTextArea \"F\" late 100ms", "message", "new");
  write("AXValue", "new");
  desktop_->advanceTo(99'999);
  read("AXValue");
  EXPECT_EQ(desktop_->mac().world.pending.size(), 1u);
  desktop_->advanceTo(100'000);
  read("AXValue");
  EXPECT_EQ(end(), noViolations);
}

TEST(squashed_texts, have_single_spaces_between_words) {
  EXPECT_EQ(squashedText(""), "");
  EXPECT_EQ(squashedText(" \t\n\v\f\r"), "");
  EXPECT_EQ(squashedText("\u00A0a\u2003\u3000b\u2028\u0085c\u180Ed "), "a b c\u180Ed");
}

}  // namespace

}  // namespace simulator
