#include <gtest/gtest.h>

#include "tests/support/simulated_run.h"

/// After how many elements each search ends. The trees take the sanitizers minutes.
namespace {

using namespace testing_support;

std::string windowOf(const std::string& elements) {
  return "app Notes pid 41\n    window 7 at 0,0 size 900x700\n" + elements;
}

std::string replyOf(const std::string& world, const std::vector<std::string>& arguments) {
  return seen(TestMac(world).driverWith(arguments));
}

std::string refused(const std::string& error) {
  return success(R"({"error":")" + error + R"(","ok":false})");
}

constexpr const char* sent =
    R"({"axError":0,"element":{"frame":{"height":10,"width":20,"x":5,"y":100},"label":"Send",)"
    R"("role":"AXButton"},"matches":1,"ok":true})";

TEST(ax_find_text, ends_after_30000_elements) {
  const auto found = [](int others) {
    return replyOf(windowOf("        AXGroup \"a\"\n        AXButton \"b\" repeat " +
                            std::to_string(others) + "\n"),
                   {"ax-find-text", "Notes", "a", "b"});
  };
  EXPECT_EQ(found(29998), success(R"({"counts":{"a":1,"b":29998},"frames":{},"ok":true})"));
  EXPECT_EQ(found(29999), success(R"({"counts":{"a":0,"b":29999},"frames":{},"ok":true})"));
}

TEST(ax_texts_at, end_after_30000_elements) {
  const auto found = [](int others) {
    return replyOf(windowOf("        AXButton \"a\" at 0,0 size 9x9\n        AXGroup repeat " +
                            std::to_string(others) + "\n"),
                   {"ax-texts-at", "Notes", "1", "1"});
  };
  EXPECT_EQ(found(29998), success(R"({"ok":true,"texts":["a"]})"));
  EXPECT_EQ(found(29999), success(R"({"ok":true,"texts":[]})"));
}

TEST(ax_press_exact, looks_at_30000_elements) {
  const auto pressed = [](int others) {
    return replyOf(
        windowOf("        AXButton \"Send\" at 5,100 size 20x10\n        AXGroup repeat " +
                 std::to_string(others) + "\n"),
        {"ax-press-exact", "Notes", "Send"});
  };
  EXPECT_EQ(pressed(29998), success(sent));
  EXPECT_EQ(pressed(29999), refused(R"(no element labelled \"Send\")"));
}

TEST(ax_press_exact, looks_at_30000_elements_of_its_container) {
  // The container is found after 20,000 others, and its own walk starts anew.
  const auto pressed = [](int inside) {
    return replyOf(windowOf("        AXGroup \"Bar\"\n"
                            "            AXButton \"Send\" at 5,100 size 20x10\n"
                            "            AXGroup repeat " +
                            std::to_string(inside) + "\n        AXGroup repeat 20000\n"),
                   {"ax-press-exact", "Notes", "Send", "only", "Bar"});
  };
  EXPECT_EQ(pressed(29998), success(sent));
  EXPECT_EQ(pressed(29999), refused(R"(no element labelled \"Send\")"));
}

TEST(ax_press_in_document, looks_at_30000_elements_for_documents) {
  const auto pressed = [](int others) {
    TestMac mac(windowOf("        AXWebArea \"Other\"\n        AXGroup repeat " +
                         std::to_string(others) +
                         "\n        AXWebArea \"Chat\"\n"
                         "            AXButton \"Send\" at 5,5 size 20x10\n"));
    const Result run = mac.driver("ax-press-in-document Notes Chat Send");
    EXPECT_EQ(run.effects.find("action") != std::string::npos, run.status == 0) << run.effects;
    return seen(run);
  };
  EXPECT_EQ(pressed(29997),
            success(R"({"axError":0,"document":"Chat","ok":true,"pressed":"Send"})"));
  EXPECT_EQ(pressed(29996), failure("the expected conversation document is not uniquely open"));
}

}  // namespace
