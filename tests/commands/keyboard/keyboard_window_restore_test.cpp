#include <gtest/gtest.h>

#include "tests/support/posted_events.h"
#include "tests/support/posted_keys.h"

/// After input a field of a Chromium application gets back the focus that it lost to its window.
namespace keyboard_window_restore_test {

using namespace testing_support;

/// Chat with these elements; more lines may follow.
std::string deskWith(const std::string& elements, const std::string& more = "") {
  return R"(
    process 900
    app Browser pid 40 bundle com.example.browser frontmost
        window 5 "Start" at 0,30 size 90x50
            AXTextField "Address" at 0,40 size 80x20 focused
    app Chat pid 42 bundle com.example.chat chromium
        window 9 "Chat" at 1000,300 size 250x150
)" + elements +
         more;
}

constexpr const char* field =
    "            AXTextArea \"Message\" at 1010,310 size 140x20 focused\n";

const std::string typed = success(R"({"ok":true,"pid":42,"via":"background","window":9})");

constexpr const char* written = " AXFocused of AX";

bool wasRestored(const Result& run) { return run.effects.find(written) != std::string::npos; }

TEST(focus_of_chromium, is_given_back_to_its_field_at_the_end) {
  TestMac mac(deskWith(field));

  const Result run = mac.driver("bg-key Chat a");

  EXPECT_EQ(seen(run), typed);
  EXPECT_EQ(run.effects, R"(    0 ms  write 42/0 AXManualAccessibility true
    0 ms  write 42/0 AXEnhancedUserInterface true
    0 ms  focus 42/9 give
   40 ms  post 42/9 key-down 0 public: typed "a" into AXTextArea "Message"
   52 ms  post 42/9 key-up 0 public
  114 ms  focus 42/9 take
  154 ms  write 42/9 AXFocused of AXTextArea "Message" true
)");
  EXPECT_EQ(waits(mac), "40000 12000 12000 50000 40000 100000");
  EXPECT_EQ(run.elapsed, 254'000);
}

TEST(focus_of_chromium, is_given_back_when_the_input_fails_too) {
  TestMac mac(deskWith(field));
  const Result run = mac.driver("bg-key Chat f13");
  EXPECT_EQ(seen(run), success(R"({"error":"unknown key: f13","ok":false})"));
  EXPECT_EQ(waits(mac), "40000 50000 40000 100000");
  EXPECT_TRUE(wasRestored(run));
}

TEST(focus_of_chromium, is_given_back_when_its_window_cannot_be_made_key) {
  TestMac mac(deskWith(field),
              {"private.ax-window 2 error -25201", "private.post-record 2 error -600"});
  const Result run = mac.driver("bg-key Chat a");
  EXPECT_EQ(seen(run), success(R"({"error":"background key-window selection failed","ok":false})"));
  EXPECT_EQ(waits(mac), "40000 50000 40000 100000");
  EXPECT_TRUE(wasRestored(run));
}

TEST(focus_of_chromium, is_given_back_while_focus_is_held) {
  TestMac mac(deskWith(field));
  mac.desktop().mac().world.applications[1].focusByRecord = 9;
  const Result run = mac.driver("bg-key Chat a", {{"CU_FOCUS_PID", "42"}});
  EXPECT_EQ(seen(run), typed);
  EXPECT_EQ(waits(mac), "12000 12000 50000 100000");
  EXPECT_TRUE(wasRestored(run));
}

TEST(focus_of_chromium, is_given_back_to_what_takes_text_alone) {
  const std::pair<const char*, bool> elements[] = {
      {"AXTextField \"A\" at 1010,310 size 9x9 attribute AXFocused true", true},
      {"AXSearchField \"A\" at 1010,310 size 9x9 attribute AXFocused true", true},
      {"AXComboBox \"A\" at 1010,310 size 9x9 attribute AXFocused true", true},
      {"AXGroup \"A\" at 1010,310 size 9x9 attribute AXEditable true attribute AXFocused true",
       true},
      {"AXButton \"A\" at 1010,310 size 9x9 focused", false},
      {"AXWebArea \"A\" at 1010,310 size 9x9 focused", false},
  };
  for (const auto& [element, restored] : elements) {
    TestMac mac(deskWith("            " + std::string(element) + "\n"));
    const Result run = mac.driver("bg-key Chat tab");
    EXPECT_EQ(seen(run), typed);
    EXPECT_EQ(wasRestored(run), restored) << element;
  }
}

TEST(focus_of_chromium, of_which_nothing_is_known_is_not_given_back) {
  TestMac mac(deskWith("            AXTextArea \"Message\" at 1010,310 size 140x20\n"));
  const Result run = mac.driver("bg-key Chat a");
  EXPECT_EQ(seen(run), typed);
  EXPECT_FALSE(wasRestored(run));
  EXPECT_EQ(run.elapsed, 454'000);
}

TEST(focus_of_chromium, of_two_fields_is_given_back_to_neither) {
  TestMac mac(
      deskWith("            AXTextArea \"A\" at 1010,310 size 14x20 attribute AXFocused true\n"
               "            AXTextArea \"B\" at 1040,310 size 14x20 attribute AXFocused true\n"));
  EXPECT_FALSE(wasRestored(mac.driver("bg-key Chat a")));
}

TEST(focus_of_chromium, is_not_given_back_to_a_field_outside_the_scope) {
  const std::string other =
      "        window 8 \"Other\" at 1000,500 size 250x150\n"
      "            AXTextArea \"Note\" at 1010,510 size 140x20 focused\n";
  const std::string fields = "            AXTextArea \"Message\" at 1010,310 size 140x20\n";
  TestMac mac(deskWith(fields + other));

  const Result run = mac.driver("bg-key Chat tab", {{"CU_WINDOW", "chat"}});

  EXPECT_EQ(seen(run), typed);
  EXPECT_FALSE(wasRestored(run));
}

TEST(focus_of_chromium, is_given_back_to_a_field_that_it_names_in_another_window) {
  TestMac mac(R"(
    app Browser pid 40 frontmost
    app Chat pid 42 chromium attribute AXFocusedUIElement element "Note"
        window 9 "Chat" at 1000,300 size 250x150 focused
        window 8 "Other" at 1000,500 size 250x150
            AXTextArea "Note" at 1010,510 size 140x20
)");
  const Result run = mac.driver("bg-key Chat tab");
  EXPECT_EQ(seen(run), typed);
  EXPECT_TRUE(wasRestored(run));
}

TEST(focus_of_chromium, is_not_given_back_while_a_sheet_lies_on_any_of_its_windows) {
  const std::string sheet =
      "        window 8 \"Other\" at 1000,500 size 250x150\n"
      "        window 10 at 1010,510 size 100x50 sheet of 8\n";
  TestMac mac(deskWith(field + sheet));
  const Result run = mac.driver("bg-key Chat a");
  EXPECT_EQ(seen(run), typed);
  EXPECT_FALSE(wasRestored(run));
  EXPECT_EQ(run.elapsed, 154'000);

  TestMac scoped(deskWith(field + sheet));
  EXPECT_FALSE(wasRestored(scoped.driver("bg-key Chat a", {{"CU_WINDOW", "chat"}})));
}

TEST(focus_of_chromium, is_given_back_after_a_panel_over_it_was_typed_into) {
  TestMac mac(deskWith(field, "    panel pid 50 window 60 over 9\n"));
  const Result run = mac.driver("bg-type Chat name");
  EXPECT_EQ(seen(run), success(R"({"ok":true,"pid":50,"via":"background","window":60})"));
  EXPECT_TRUE(wasRestored(run));
}

TEST(focus_of_chromium, is_left_alone_when_the_user_has_come) {
  for (const char* time : {"39ms", "45ms", "113999us"}) {
    TestMac mac(deskWith(field, "    at " + std::string(time) + " front Chat\n"));
    const Result run = mac.driver("bg-key Chat a");
    EXPECT_EQ(seen(run), typed);
    EXPECT_FALSE(wasRestored(run));
    EXPECT_EQ(run.elapsed, 114'000) << time;
  }
}

TEST(focus_of_chromium, follows_the_answer_that_its_windows_focus_followed) {
  TestMac mac(deskWith(field, "    at 153ms front Chat\n"));
  const Result run = mac.driver("bg-key Chat a");
  EXPECT_NE(run.effects.find("take"), std::string::npos);
  EXPECT_TRUE(wasRestored(run));

  // The user came for a moment: it stays as the moment left it.
  TestMac left(deskWith(field, "    at 113ms front Chat\n    at 115ms front Browser\n"));
  const Result other = left.driver("bg-key Chat a");
  EXPECT_EQ(other.effects.find("take"), std::string::npos);
  EXPECT_FALSE(wasRestored(other));
}

TEST(focus_of_chromium, is_asked_for_once_its_accessibility_is_awake) {
  TestMac mac(deskWith(field));
  const Result run = mac.driver("bg-key Chat a");
  const auto& calls = run.calls;
  const auto enabling = std::find(calls.begin(), calls.end(), "ax.set-attribute");
  ASSERT_NE(enabling, calls.end());
  EXPECT_EQ(*(enabling + 1), "ax.set-attribute");
  EXPECT_EQ(*(enabling + 2), "ax.attribute");
}

TEST(focus_of_chromium, in_front_is_not_touched) {
  TestMac mac(deskWith(field, "    at 0ms front Chat\n"));
  const Result run = mac.driver("bg-key Chat a");
  EXPECT_EQ(seen(run), typed);
  EXPECT_FALSE(wasRestored(run));
  EXPECT_EQ(run.elapsed, 24'000);
}

TEST(focus_of_chromium, is_left_alone_once_the_session_is_unusable) {
  for (const char* happening : {"lock", "leave console"}) {
    TestMac mac(deskWith(field, "    at 70ms " + std::string(happening) + "\n"));
    const Result run = mac.driver("bg-key Chat a");
    EXPECT_EQ(seen(run), typed);  // all of it was typed before
    EXPECT_FALSE(wasRestored(run));
    EXPECT_EQ(run.elapsed, 154'000);
  }
}

TEST(focus_of_chromium, is_left_alone_when_the_capture_service_has_gone) {
  TestMac mac(deskWith(field, "    at 45ms end process 900\n"));
  const Result run = mac.driver("bg-key Chat a", {{"CU_CAPTURE_PID", "900"}});
  EXPECT_EQ(seen(run), failure("native screen sharing stopped; background input is disabled"));
  EXPECT_FALSE(wasRestored(run));
  EXPECT_EQ(waits(mac), "40000 12000 40000");
}

TEST(focus_of_chromium, that_cannot_be_given_back_leaves_the_input_a_success) {
  TestMac mac(deskWith(field), {"ax.set-attribute 1 error -25200"});
  const Result run = mac.driver("bg-key Chat a");
  EXPECT_EQ(seen(run), typed);
  EXPECT_EQ(run.elapsed, 254'000);
}

TEST(focus_of_appkit, is_not_given_back) {
  TestMac mac(deskWith("", R"(    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 300x300
            AXTextArea "Body" at 120,130 size 200x200 focused
)"));
  const Result run = mac.driver("bg-key Notes a");
  EXPECT_EQ(seen(run), success(R"({"ok":true,"pid":41,"via":"background","window":7})"));
  EXPECT_EQ(run.effects.find("write"), std::string::npos);
  EXPECT_EQ(run.elapsed, 154'000);
}

}  // namespace keyboard_window_restore_test
