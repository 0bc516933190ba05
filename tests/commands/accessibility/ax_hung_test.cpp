#include <gtest/gtest.h>

#include "tests/support/simulated_run.h"

/// Text entry, menus and controls of an application that does not answer: two time-outs of 1.5 s
/// are all it costs.
namespace ax_hung_test {

using namespace testing_support;
using Words = std::vector<std::string>;

std::string deskWith(const std::string& application, const std::string& more = "") {
  return R"(
    display 1 1440x900
    app Notes pid 41 )" +
         application + R"(
        menu File > New
        window 7 "Inbox" at 100,80 size 800x600
            AXTextArea "Body" at 120,130 size 700x400 value "abc"
            AXSlider "Size" value 6
)" + more;
}

constexpr simulator::Microseconds twoTimeOuts = 12'000'000;

TEST(ax_hung, application_is_as_one_without_windows_and_menus) {
  const std::pair<Words, std::string> cases[] = {
      {{"ax-insert", "Notes", "Body", "200", "200", "end", "x"},
       R"({"error":"no text input matches \"Body\" there","ok":false})"},
      {{"ax-insert", "Notes", "", "200", "200", "end", "x"},
       R"({"error":"no text input matches \"\" there","ok":false})"},
      {{"ax-focus", "Notes", "Body", "200", "200"}, R"({"error":"no element","ok":false})"},
      {{"ax-focused", "Notes"}, R"({"element":null,"ok":true})"},
      {{"ax-set-value", "Notes", "200", "200", "x"}, R"({"error":"no element","ok":false})"},
      {{"ax-menu", "Notes", "File"},
       R"({"error":"no menu item \"File\" under the menu bar; available: ","ok":false})"},
      {{"ax-menubar", "Notes"}, R"({"menus":[],"ok":true})"},
      {{"reveal", "Notes"}, R"({"did":[],"ok":true,"windows":0})"},
      {{"ax-modal", "Notes"}, R"({"modals":[],"ok":true})"},
      {{"ax-modal-press", "Notes", "Sure?", "Yes"},
       R"({"error":"0 dialogs read exactly the approved text","ok":false})"},
      {{"ax-popup-items", "Notes"}, R"({"items":[],"ok":true})"},
      {{"ax-slider", "Notes", "Size", "increment"},
       R"({"error":"0 sliders labelled \"Size\"","ok":false})"}};
  for (const auto& [words, reply] : cases) {
    SCOPED_TRACE(words[0]);
    TestMac mac(deskWith("hangs"));
    const Result run = mac.driverWith(words);
    EXPECT_EQ(seen(run), success(reply));
    EXPECT_EQ(run.elapsed, twoTimeOuts);
  }
}

TEST(ax_hung, in_the_middle_of_an_insertion_shows_nothing_of_it) {
  TestMac mac(deskWith("", "    at 100ms hang Notes\n"));

  const Result run = mac.driver("ax-insert Notes Body 200 200 end x");

  EXPECT_EQ(seen(run),
            success("{\"before\":\"abc\",\"element\":{\"label\":\"\",\"role\":\"\"},"
                    "\"error\":\"text did not land in the field (value after write does not "
                    "match)\",\"method\":\"selected\",\"ok\":false}"));
  EXPECT_EQ(run.effects.find("AXValue"), std::string::npos) << run.effects;
  EXPECT_EQ(run.elapsed, 300'000 + twoTimeOuts);
}

TEST(ax_hung, after_a_write_leaves_its_reading_out) {
  TestMac mac(deskWith("", "    at 100ms hang Notes\n"));

  const Result run = mac.driver("ax-slider Notes Size increment");

  EXPECT_EQ(seen(run), success(R"({"axError":0,"ok":true})"));
}

TEST(ax_hung, application_that_is_only_slow_is_waited_for) {
  TestMac mac(deskWith("answers after 50ms"));
  EXPECT_EQ(seen(mac.driver("ax-slider Notes Size")), success(R"({"ok":true,"value":6})"));
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "abc");
}

}  // namespace ax_hung_test
