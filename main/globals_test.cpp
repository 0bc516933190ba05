#include "main/globals.h"

#include <gtest/gtest.h>

#include <cmath>

#include "main/arguments.h"
#include "tests/support/inside.h"

namespace driver {
namespace {

using namespace testing_support;

constexpr const char* globalsDesk = R"(
    image "/faces/oru.png"
    app Notes pid 41 bundle com.example.notes frontmost
)";

/// One start-up value of a run with this environment.
template <class Read>
auto startValue(const Read& read, const Environment& environment = {},
                const std::string& world = globalsDesk) {
  TestMac mac(world);
  return valueInside(mac, read, environment);
}

std::optional<std::string> scopeFor(const std::string& value) {
  return startValue([] { return globals().windowScope; }, {{"CU_WINDOW", value}});
}

double graceFor(const std::string& value) {
  return startValue([] { return globals().guardGrace; }, {{"ZENTROVE_COVER_GRACE", value}});
}

bool operatingFor(const std::string& value) {
  return startValue([] { return globals().guardOperating; }, {{"ZENTROVE_COVER_OPERATING", value}});
}

bool hasFace(const Environment& environment) {
  return startValue([] { return globals().guardOruFace.has_value(); }, environment);
}

/// The name for a user, who is written as in a world's text.
std::string nameOf(const std::string& user, const Environment& environment = {}) {
  return startValue([] { return globals().guardOruName; }, environment,
                    "user " + user + "\napp Notes pid 41 frontmost\n");
}

TEST(window_scope, is_absent_when_the_variable_is_unset_or_empty) {
  EXPECT_EQ(startValue([] { return globals().windowScope; }), std::nullopt);
  EXPECT_EQ(scopeFor(""), std::nullopt);
}

TEST(window_scope, is_the_value_in_lower_case) {
  EXPECT_EQ(scopeFor("Inbox"), "inbox");
  EXPECT_EQ(scopeFor("\u00C9T\u00C9"), "\u00E9t\u00E9");
}

TEST(window_scope, is_not_trimmed) {
  EXPECT_EQ(scopeFor(" Inbox "), " inbox ");
  EXPECT_EQ(scopeFor(" "), " ");
}

TEST(window_scope, is_repaired_when_it_is_no_utf8) { EXPECT_EQ(scopeFor("A\xFF"), "a\uFFFD"); }

TEST(event_source, is_there_from_the_start) {
  EXPECT_TRUE(startValue([] { return globals().src.has_value(); }));
}

TEST(event_source, may_be_missing) {
  TestMac mac(globalsDesk, {"quartz.create-source 1 absent"});
  EXPECT_FALSE(valueInside(mac, [] { return globals().src.has_value(); }));
}

TEST(own_event_tag, has_its_fixed_value) { EXPECT_EQ(ownEventTag, 0x5A545256); }

TEST(start_up, has_withheld_nothing_and_holds_no_focus) {
  EXPECT_FALSE(startValue([] { return globals().droppedWhileLocked; }));
  EXPECT_TRUE(startValue([] { return globals().heldInputFocus.empty(); }));
}

TEST(start_up, forgets_the_run_before) {
  TestMac mac(globalsDesk);
  runInside(mac,
            [] {
              globals().droppedWhileLocked = true;
              globals().heldInputFocus[41] = {1, 7};
              globals().messageTimeOuts[41] = 2;
            },
            {{"CU_WINDOW", "inbox"}, {"ZENTROVE_COVER_OPERATING", "1"}});
  runInside(mac, [] {
    EXPECT_FALSE(globals().droppedWhileLocked);
    EXPECT_TRUE(globals().heldInputFocus.empty());
    EXPECT_TRUE(globals().messageTimeOuts.empty());
    EXPECT_EQ(globals().windowScope, std::nullopt);
    EXPECT_FALSE(globals().guardOperating);
  });
}

TEST(arguments, are_the_command_line_repaired_to_utf8) {
  TestMac mac(globalsDesk);
  runInside(mac, [] {
    renewGlobals();
    initialise({"driver", "windows", "A\xFFz", "", "caf\u00E9"});
    EXPECT_EQ(globals().args, (Arguments{"driver", "windows", "A\uFFFDz", "", "caf\u00E9"}));
  });
}

TEST(guard_grace, is_a_number_of_seconds) {
  EXPECT_EQ(graceFor("2.5"), 2.5);
  EXPECT_EQ(graceFor("0"), 0);
  EXPECT_EQ(graceFor("+3"), 3);
  EXPECT_EQ(graceFor("1e9"), 1e9);
}

TEST(guard_grace, is_zero_when_absent_or_unparsable) {
  EXPECT_EQ(startValue([] { return globals().guardGrace; }), 0);
  for (const char* value : {"", "abc", "2.5s", " 2", "2 ", "1,5", "\xFF"}) {
    EXPECT_EQ(graceFor(value), 0) << value;
  }
}

TEST(guard_grace, is_zero_when_it_is_negative_or_not_finite) {
  for (const char* value : {"-5", "-0.1", "-0", "nan", "-nan", "inf", "-inf", "1e400"}) {
    const double grace = graceFor(value);
    EXPECT_EQ(grace, 0) << value;
    EXPECT_FALSE(std::signbit(grace)) << value;
  }
}

TEST(guard_operating, is_true_for_1_only) {
  EXPECT_FALSE(startValue([] { return globals().guardOperating; }));
  EXPECT_TRUE(operatingFor("1"));
  for (const char* value : {"", "0", "true", "yes", "11", " 1", "1 ", "01", "+1", "1.0"}) {
    EXPECT_FALSE(operatingFor(value)) << value;
  }
}

TEST(guard_face, is_the_picture_at_the_path) {
  EXPECT_TRUE(hasFace({{"ZENTROVE_COVER_FACE", "/faces/oru.png"}}));
}

TEST(guard_face, is_absent_without_a_path_or_without_a_picture_there) {
  EXPECT_FALSE(hasFace({}));
  EXPECT_FALSE(hasFace({{"ZENTROVE_COVER_FACE", ""}}));
  EXPECT_FALSE(hasFace({{"ZENTROVE_COVER_FACE", "/faces/none.png"}}));
}

TEST(guard_name, is_the_one_that_is_given) {
  EXPECT_EQ(nameOf("\"Ada Lovelace\"", {{"ZENTROVE_COVER_NAME", "Countess"}}), "Countess");
  EXPECT_EQ(nameOf("\"Ada Lovelace\"", {{"ZENTROVE_COVER_NAME", " "}}), " ");
  EXPECT_EQ(nameOf("\"Ada Lovelace\"", {{"ZENTROVE_COVER_NAME", "A\xFF"}}), "A\uFFFD");
}

TEST(guard_name, is_the_given_name_of_the_user) {
  EXPECT_EQ(nameOf("\"Ada Lovelace\""), "Ada");
  EXPECT_EQ(nameOf("\"Ada Lovelace\"", {{"ZENTROVE_COVER_NAME", ""}}), "Ada");
  EXPECT_EQ(nameOf("\"Dr. Grace Hopper\""), "Grace");
  EXPECT_EQ(nameOf("\"Plato\""), "Plato");
}

TEST(guard_name, is_the_first_word_when_no_given_name_is_found) {
  EXPECT_EQ(nameOf("\"Ada Lovelace\" unparsable"), "Ada");
  EXPECT_EQ(nameOf("\"  Dr.  Grace\" unparsable"), "Dr.");
}

TEST(guard_name, takes_words_to_end_at_spaces_only) {
  EXPECT_EQ(nameOf("\"Ada\\tMary Lovelace\" unparsable"), "Ada\tMary");
  EXPECT_EQ(nameOf("\"\\tAda\\t Lovelace\" unparsable"), "Ada\t");
  EXPECT_EQ(nameOf("\"Ada\u00A0Mary Lovelace\" unparsable"), "Ada\u00A0Mary");
}

TEST(guard_name, is_the_login_name_when_the_full_name_has_no_word) {
  EXPECT_EQ(nameOf("\"\" login ada"), "ada");
  EXPECT_EQ(nameOf("\" \\t \" login ada"), "ada");
  EXPECT_EQ(nameOf("\"\" login \"a\\xFF\""), "a\uFFFD");
}

TEST(guard_name, hands_the_trimmed_full_name_to_the_parser) {
  TestMac mac("user \" \\tAda Lovelace \\t\"\napp Notes pid 41 frontmost\n");
  EXPECT_EQ(valueInside(mac, [] { return globals().guardOruName; }), "Ada");
  EXPECT_EQ(callsOf(mac, platform::Function::givenName),
            (std::vector<std::string>{"process.given-name \"Ada Lovelace\" -> [\"Ada\"]"}));
}

TEST(guard_name, asks_for_no_more_than_it_needs) {
  TestMac mac(globalsDesk);
  mac.driver("session", {{"ZENTROVE_COVER_NAME", "Countess"}});
  EXPECT_EQ(callsOf(mac, platform::Function::fullUserName), std::vector<std::string>{});
  EXPECT_EQ(callsOf(mac, platform::Function::loginName), std::vector<std::string>{});
}

}  // namespace
}  // namespace driver
