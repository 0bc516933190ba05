#include <gtest/gtest.h>

#include <algorithm>

#include "simulator/desktop.h"
#include "tests/support/simulated_run.h"

/// Searches and presses in applications that hang or go, and in trees without an end.
namespace ax_search_hung_test {

using namespace testing_support;

constexpr simulator::Microseconds timeOut = 6'000'000;

constexpr const char* inbox = R"(
    app Browser pid 40 frontmost
        window 5 "Start" at 1000,0 size 90x50
    app Notes pid 41
        window 7 "Inbox" at 0,0 size 900x700
            AXGroup "Bar"
                AXButton "Send" at 5,5 size 20x10
                AXButton at 35,5 size 20x10
                    AXStaticText value "Later"
            AXTextArea "To" at 5,45 size 20x10 value "Ada"
            AXRow "Row" at 5,65 size 200x10
                AXButton at 5,65 size 20x10
                    AXStaticText value "Open"
            AXWebArea "Chat"
                AXButton "Reply" at 5,85 size 20x10
)";

constexpr const char* lines[] = {"ax-list Notes",
                                 "ax-dump Notes",
                                 "ax-find-text Notes Send Chat",
                                 "ax-texts-at Notes 10 10",
                                 "ax-at Notes 10 10",
                                 "ax-press Notes 10 10",
                                 "ax-match Notes later 10 10",
                                 "ax-press-match Notes later 10 10",
                                 "ax-press-exact Notes Send only Bar",
                                 "ax-press-child Notes Row open",
                                 "ax-press-in-document Notes Chat Reply"};

TEST(a_hung_application, costs_a_search_one_time_out_when_it_hangs_once) {
  for (const char* line : lines) {
    TestMac plain(inbox);
    const Result without = plain.driver(line);
    for (const char* function : {"ax.attribute", "ax.attributes", "ax.action-names",
                                 "ax.element-at", "ax.perform", "ax.set-attribute"}) {
      const auto count = std::count(without.calls.begin(), without.calls.end(), function);
      for (std::ptrdiff_t call = 1; call <= count; ++call) {
        TestMac mac(inbox, {std::string(function) + " " + std::to_string(call) + " hang"});
        EXPECT_EQ(mac.driver(line).elapsed / timeOut, 1) << line << " " << function << " " << call;
      }
    }
  }
}

TEST(a_press, that_hangs_is_told_with_the_platforms_code) {
  TestMac mac(inbox, {"ax.perform 1 hang"});
  const Result run = mac.driver("ax-press Notes 10 10");
  EXPECT_EQ(seen(run), success(R"({"axError":-25204,"element":{"frame":{"height":10,"width":20,)"
                               R"("x":5,"y":5},"label":"Send","role":"AXButton"},"ok":false})"));
  EXPECT_EQ(run.elapsed, timeOut);
}

TEST(a_search, survives_an_application_that_goes_at_any_call) {
  for (const char* line : lines) {
    TestMac plain(inbox);
    const std::size_t calls = plain.driver(line).calls.size();
    for (std::size_t call = 1; call <= calls; ++call) {
      TestMac mac(inbox, {"any " + std::to_string(call) + " before quit Notes"});
      const Result run = mac.driver(line);
      EXPECT_EQ(std::count(run.output.begin(), run.output.end(), '\n'), 1) << line << " " << call;
    }
  }
}

TEST(a_search, survives_wrong_answers_from_any_call_on) {
  for (const char* line : lines) {
    for (const char* function : {"ax.attribute", "ax.attributes"}) {
      for (int call = 1; call <= 20; ++call) {
        TestMac mac(inbox, {std::string(function) + " " + std::to_string(call) + "+ wrong"});
        const Result run = mac.driver(line);
        EXPECT_EQ(std::count(run.output.begin(), run.output.end(), '\n'), 1) << line << " " << call;
        EXPECT_EQ(run.elapsed / timeOut, 0) << line << " " << call;
      }
    }
  }
}

std::string counted(const std::string& elements) {
  TestMac mac("    app Notes pid 41\n        window 7 at 0,0 size 900x700\n" + elements);
  return seen(mac.driver("ax-find-text Notes A"));
}

std::string count(int number) {
  return success(R"({"counts":{"A":)" + std::to_string(number) + R"(},"frames":{},"ok":true})");
}

TEST(a_search, visits_what_is_in_two_places_twice) {
  EXPECT_EQ(counted("            AXGroup \"First\" attribute AXChildren elements \"A\" \"A\"\n"
                    "            AXButton \"A\"\n"),
            count(3));
}

TEST(a_search, ends_in_a_circle) {
  // Its own only child, down to 80 levels below the window.
  EXPECT_EQ(counted("            AXGroup \"A\" attribute AXChildren elements \"A\"\n"), count(80));
  // Twice its own child: the number of elements is what ends it.
  EXPECT_EQ(counted("            AXGroup \"A\" attribute AXChildren elements \"A\" \"A\"\n"),
            count(29'999));
}

TEST(a_search, ends_in_a_tree_that_shrinks_while_it_is_read) {
  EXPECT_EQ(counted("            AXGroup \"A\" shrinks\n                AXGroup \"A\"\n"
                    "                AXGroup\n"),
            count(2));
}

}  // namespace ax_search_hung_test
