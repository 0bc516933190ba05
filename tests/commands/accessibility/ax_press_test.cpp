#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/simulated_run.h"

/// "ax-at" and "ax-press": the control at a point.
namespace ax_press_test {

using namespace testing_support;

std::string windowOf(const std::string& elements) {
  return R"(
    app Notes pid 41
        window 7 "Inbox" at 0,0 size 900x700
)" + elements;
}

std::string at(const std::string& world, const std::string& point,
               const Environment& environment = {}) {
  TestMac mac(world);
  return seen(mac.driver("ax-at Notes " + point, environment));
}

const std::string nothing = success(R"({"element":null,"ok":true})");

std::string element(const std::string& role, const std::string& label) {
  return R"({"frame":{"height":20,"width":60,"x":120,"y":90},"label":")" + label + R"(","role":")" +
         role + "\"}";
}

std::string onlyElement(const std::string& role, const std::string& label) {
  return success(R"({"element":)" + element(role, label) + R"(,"ok":true})");
}

TEST(ax_at, is_the_control_at_the_point) {
  const std::string world = windowOf(R"(
            AXButton "Send" at 120,90 size 60x20
            AXGroup "Bar" at 300,90 size 60x20
)");
  EXPECT_EQ(at(world, "130 95"), onlyElement("AXButton", "Send"));
  EXPECT_EQ(at(world, "120 90"), onlyElement("AXButton", "Send"));
  EXPECT_EQ(at(world, "180 95"), nothing);
  EXPECT_EQ(at(world, "310 95"), nothing);
  EXPECT_EQ(at(world, "2000 2000"), nothing);
  EXPECT_EQ(at(world, "-1 -1"), nothing);
}

TEST(ax_at, goes_up_to_what_can_be_acted_on) {
  EXPECT_EQ(at(windowOf(R"(
            AXButton "Send" at 120,90 size 60x20
                AXGroup at 120,90 size 60x20
                    AXImage at 120,90 size 60x20
)"),
               "130 95"),
            onlyElement("AXButton", "Send"));
}

TEST(ax_at, takes_what_can_be_edited_for_a_control) {
  EXPECT_EQ(at(windowOf("            AXGroup \"Page\" at 120,90 size 60x20 "
                        "attribute AXEditable true\n"),
               "130 95"),
            onlyElement("AXGroup", "Page"));
  for (const char* value : {"false", "1", "\"true\""}) {
    EXPECT_EQ(at(windowOf("            AXGroup \"Page\" at 120,90 size 60x20 "
                          "attribute AXEditable " +
                          std::string(value) + "\n"),
                 "130 95"),
              nothing);
  }
}

/// A button with so many groups in it, one in the other.
std::string buttonAround(int groups) {
  std::string elements = "            AXButton \"Send\" at 120,90 size 60x20\n";
  for (int i = 1; i <= groups; ++i) {
    elements +=
        std::string(static_cast<std::size_t>(12 + 4 * i), ' ') + "AXGroup at 120,90 size 60x20\n";
  }
  return windowOf(elements);
}

TEST(ax_at, examines_12_elements_at_most) {
  EXPECT_EQ(at(buttonAround(11), "130 95"), onlyElement("AXButton", "Send"));
  EXPECT_EQ(at(buttonAround(12), "130 95"), nothing);
}

TEST(ax_at, ends_in_a_circle_of_parents) {
  EXPECT_EQ(at(windowOf(R"(
            AXGroup "A" at 120,90 size 60x20 attribute AXParent element "B"
                AXGroup "B" at 120,90 size 60x20 attribute AXParent element "A"
)"),
               "130 95"),
            nothing);
}

TEST(ax_at, survives_a_parent_of_the_wrong_kind) {
  for (const char* parent : {"attribute AXParent 5", "failing AXParent -25204"}) {
    EXPECT_EQ(at(windowOf("            AXButton \"Send\" at 120,90 size 60x20\n"
                          "                AXGroup at 120,90 size 60x20 " +
                          std::string(parent) + "\n"),
                 "130 95"),
              nothing);
  }
}

TEST(ax_at, is_nothing_when_the_element_at_the_point_cannot_be_had) {
  for (const char* fault : {"ax.element-at 1 error -25204", "ax.element-at 1 error -25200",
                            "ax.attributes 1 error -25202", "ax.attributes 1 wrong"}) {
    TestMac mac(buttonAround(0), {fault});
    EXPECT_EQ(seen(mac.driver("ax-at Notes 130 95")), nothing) << fault;
  }
}

TEST(ax_at, reads_one_by_one_what_is_refused_together) {
  TestMac mac(buttonAround(3), {"ax.attributes 1+ error -25200"});
  EXPECT_EQ(seen(mac.driver("ax-at Notes 130 95")), onlyElement("AXButton", "Send"));
}

constexpr const char* twoWindows = R"(
    app Notes pid 41
        window 7 "Inbox" at 0,0 size 300x300
            AXButton "Send" at 120,90 size 60x20
        window 8 "Draft" at 400,0 size 300x300
            AXButton "Other" at 420,90 size 60x20
        AXMenuBar at 800,0 size 60x20
            AXMenuItem "File" at 800,0 size 60x20
)";

TEST(ax_at, in_a_scope_must_be_in_a_window_of_it) {
  EXPECT_EQ(at(twoWindows, "130 95", {{"CU_WINDOW", "inbox"}}), onlyElement("AXButton", "Send"));
  EXPECT_EQ(at(twoWindows, "430 95", {{"CU_WINDOW", "inbox"}}), nothing);
  EXPECT_EQ(at(twoWindows, "430 95"),
            success(R"({"element":{"frame":{"height":20,"width":60,"x":420,"y":90},)"
                    R"("label":"Other","role":"AXButton"},"ok":true})"));
}

TEST(ax_at, in_a_scope_must_have_a_window) {
  for (const char* window : {"failing AXWindow -25212", "attribute AXWindow \"Inbox\""}) {
    const std::string world = windowOf("            AXButton \"Send\" at 120,90 size 60x20 " +
                                       std::string(window) + "\n");
    EXPECT_EQ(at(world, "130 95", {{"CU_WINDOW", "inbox"}}), nothing);
    EXPECT_EQ(at(world, "130 95"), onlyElement("AXButton", "Send"));
  }
}

TEST(ax_at, reads_the_window_only_in_a_scope) {
  TestMac mac(twoWindows);
  EXPECT_EQ(mac.driver("ax-at Notes 130 95").calls.size() + 1,
            mac.driver("ax-at Notes 130 95", {{"CU_WINDOW", ""}}).calls.size() + 1);
  const auto count = [](const Result& run, const std::string& name) {
    return std::count(run.calls.begin(), run.calls.end(), name);
  };
  EXPECT_EQ(count(mac.driver("ax-at Notes 130 95"), "private.ax-window"), 0);
  EXPECT_EQ(count(mac.driver("ax-at Notes 130 95", {{"CU_WINDOW", "inbox"}}), "private.ax-window"),
            1);
}

constexpr const char* sender = R"(
    app Notes pid 41
        window 7 "Inbox" at 0,0 size 900x700
            AXButton "Send" at 120,90 size 60x20 press: append "sent" to Body
                AXImage at 120,90 size 60x20
            AXTextArea "Body" at 120,130 size 700x400 value "hello "
            AXButton "Fix" at 300,90 size 60x20 press: retitle "Fixed"
)";

constexpr const char* enabling = R"(    0 ms  write 41/0 AXManualAccessibility true
    0 ms  write 41/0 AXEnhancedUserInterface true
)";

TEST(ax_press, presses_the_control_at_the_point) {
  TestMac mac(sender);
  const Result run = mac.driver("ax-press Notes 130 95");
  EXPECT_EQ(seen(run),
            success(R"({"axError":0,"element":)" + element("AXButton", "Send") + R"(,"ok":true})"));
  EXPECT_EQ(run.effects, enabling + std::string("    0 ms  action 41/7 AXPress: "
                                                "pressed AXButton \"Send\"\n"));
  EXPECT_EQ(run.elapsed, 0);
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "hello sent");
}

TEST(ax_press, tells_how_the_control_is_after_it) {
  TestMac mac(R"(
    app Notes pid 41
        window 7 "Inbox" at 0,0 size 900x700
            AXLink "State" at 120,90 size 60x20 value "off" press: set State "on"
)");
  EXPECT_EQ(seen(mac.driver("ax-press Notes 130 95")),
            success(R"({"axError":0,"element":{"frame":{"height":20,"width":60,"x":120,"y":90},)"
                    R"("label":"State","role":"AXLink","value":"on"},"ok":true})"));
}

TEST(ax_press, of_nothing_is_refused) {
  TestMac mac(sender);
  const Result run = mac.driver("ax-press Notes 5 5");
  EXPECT_EQ(seen(run), success(R"({"error":"no element","ok":false})"));
  EXPECT_EQ(run.effects, enabling);
}

TEST(ax_press, that_fails_tells_the_platforms_code) {
  for (const int code : {-25200, -25202, -25204, -25206, -25211}) {
    TestMac mac(sender, {"ax.perform 1 error " + std::to_string(code)});
    EXPECT_EQ(seen(mac.driver("ax-press Notes 130 95")),
              success(R"({"axError":)" + std::to_string(code) + R"(,"element":)" +
                      element("AXButton", "Send") + R"(,"ok":false})"));
    EXPECT_EQ(mac.valueOf("Notes", "Body"), "hello ");
  }
}

TEST(ax_press, of_an_element_without_that_action_tells_so) {
  TestMac mac(windowOf("            AXRow \"Row\" at 120,90 size 60x20 actions none\n"));
  EXPECT_EQ(
      seen(mac.driver("ax-press Notes 130 95")),
      success(R"({"axError":-25206,"element":)" + element("AXRow", "Row") + R"(,"ok":false})"));
}

TEST(ax_press, in_a_scope_never_presses_beside_it) {
  TestMac mac(twoWindows);
  const Result run = mac.driver("ax-press Notes 430 95", {{"CU_WINDOW", "inbox"}});
  EXPECT_EQ(seen(run), success(R"({"error":"no element","ok":false})"));
  EXPECT_EQ(run.effects, enabling);
}

TEST(ax_press, of_a_control_that_goes_with_it_tells_no_more_of_it) {
  TestMac mac(
      windowOf("            AXButton \"Close\" at 120,90 size 60x20 press: close window\n"));
  EXPECT_EQ(seen(mac.driver("ax-press Notes 130 95")),
            success(R"({"axError":0,"element":{"label":"","role":""},"ok":true})"));
}

}  // namespace ax_press_test
