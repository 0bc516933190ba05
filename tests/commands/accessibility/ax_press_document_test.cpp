#include <gtest/gtest.h>

#include "tests/support/simulated_run.h"

/// "ax-press-in-document": a button of the only conversation that is open.
namespace ax_press_document_test {

using namespace testing_support;

std::string windowOf(const std::string& elements) {
  return "    app Notes pid 41\n        window 7 \"Inbox\" at 0,0 size 900x700\n" + elements;
}

std::string pressed(const std::string& world, const std::string& document,
                    const std::string& button, const Environment& environment = {}) {
  TestMac mac(world);
  const Result run =
      mac.driverWith({"ax-press-in-document", "Notes", document, button}, environment);
  const bool acted = run.effects.find("action") != std::string::npos;
  EXPECT_EQ(acted, run.status == 0) << run.effects;
  return seen(run);
}

std::string done(const std::string& document, const std::string& button) {
  return success(R"({"axError":0,"document":")" + document + R"(","ok":true,"pressed":")" + button +
                 "\"}");
}

const std::string noDocument = failure("the expected conversation document is not uniquely open");
const std::string noButton =
    failure("the expected conversation has no unique button with that exact label");

const std::string chat = windowOf(R"(
            AXButton "Send" at 5,5 size 20x10
            AXWebArea "Chat with Ada" at 0,0 size 900x700
                AXGroup
                    AXButton "Send" at 5,100 size 20x10 press: append "sent" to Body
                    AXButton "Send now" at 5,120 size 20x10
                    AXLink "Send" at 5,140 size 20x10
                AXButton "Twice" at 5,160 size 20x10
                AXButton "Twice"
                AXTextArea "Body" at 5,200 size 200x10
            AXWebArea at 0,0 size 900x700
                AXButton "Send" at 5,300 size 20x10
)");

TEST(ax_press_in_document, presses_the_one_button_with_the_label) {
  TestMac mac(chat);
  const Result run = mac.driverWith({"ax-press-in-document", "Notes", "Chat with Ada", "Send"});
  EXPECT_EQ(seen(run), done("Chat with Ada", "Send"));
  EXPECT_EQ(run.effects, R"(    0 ms  write 41/0 AXManualAccessibility true
    0 ms  write 41/0 AXEnhancedUserInterface true
    0 ms  action 41/7 AXPress: pressed AXButton "Send"
)");
  EXPECT_EQ(run.elapsed, 0);
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "sent");
}

TEST(ax_press_in_document, needs_the_very_label_of_the_document) {
  for (const char* label : {"chat with ada", "Chat  with Ada", "Chat with Ada ", "Chat", ""}) {
    EXPECT_EQ(pressed(chat, label, "Send"), noDocument) << label;
  }
}

TEST(ax_press_in_document, needs_the_very_label_of_the_button) {
  for (const char* label : {"send", "Send ", "Sen", "Twice", ""}) {
    EXPECT_EQ(pressed(chat, "Chat with Ada", label), noButton) << label;
  }
  EXPECT_EQ(pressed(chat, "Chat with Ada", "Send now"), done("Chat with Ada", "Send now"));
}

TEST(ax_press_in_document, refuses_two_labelled_documents) {
  for (const char* second : {"Other", "Chat"}) {
    EXPECT_EQ(pressed(windowOf("            AXWebArea \"Chat\"\n"
                               "                AXButton \"Send\" at 5,5 size 20x10\n"
                               "            AXWebArea \"" +
                               std::string(second) + "\"\n"),
                      "Chat", "Send"),
              noDocument);
  }
  EXPECT_EQ(pressed(windowOf(R"(
            AXWebArea "Chat"
                AXButton "Send" at 5,5 size 20x10
                AXWebArea "Advertisement"
)"),
                    "Chat", "Send"),
            noDocument);
}

TEST(ax_press_in_document, refuses_without_a_labelled_document) {
  EXPECT_EQ(pressed(windowOf("            AXWebArea\n"
                             "                AXButton \"Send\" at 5,5 size 20x10\n"),
                    "", "Send"),
            noDocument);
  EXPECT_EQ(pressed(windowOf("            AXGroup \"Chat\"\n"
                             "                AXButton \"Send\" at 5,5 size 20x10\n"),
                    "Chat", "Send"),
            noDocument);
}

TEST(ax_press_in_document, takes_any_label_of_a_document_or_button) {
  EXPECT_EQ(pressed(windowOf(R"(
            AXWebArea description "Chat"
                AXButton help "Send" at 5,5 size 20x10
)"),
                    "Chat", "Send"),
            done("Chat", "Send"));
}

TEST(ax_press_in_document, does_not_take_inner_texts_for_a_label) {
  EXPECT_EQ(pressed(windowOf(R"(
            AXWebArea "Chat"
                AXButton at 5,5 size 20x10
                    AXStaticText value "Send"
)"),
                    "Chat", "Send"),
            noButton);
}

TEST(ax_press_in_document, counts_documents_in_scope_only) {
  const char* world = R"(
    app Notes pid 41
        window 7 "Inbox" at 0,0 size 100x100
            AXWebArea "Chat"
                AXButton "Send" at 5,100 size 20x10
        window 8 "Draft" at 200,0 size 100x100
            AXWebArea "Other"
)";
  EXPECT_EQ(pressed(world, "Chat", "Send", {{"CU_WINDOW", "inbox"}}), done("Chat", "Send"));
  EXPECT_EQ(pressed(world, "Chat", "Send"), noDocument);
}

TEST(ax_press_in_document, looks_for_buttons_30_levels_below_the_document) {
  const auto world = [](std::size_t groups) {
    std::string elements = "            AXWebArea \"Chat\"\n";
    for (std::size_t i = 1; i <= groups; ++i) {
      elements += std::string(12 + i, ' ') + "AXGroup\n";
    }
    return windowOf(elements + std::string(13 + groups, ' ') +
                    "AXButton \"Send\" at 5,5 size 20x10\n");
  };
  EXPECT_EQ(pressed(world(29), "Chat", "Send"), done("Chat", "Send"));
  EXPECT_EQ(pressed(world(30), "Chat", "Send"), noButton);
}

TEST(ax_press_in_document, looks_for_documents_80_levels_below_the_windows) {
  const auto world = [](std::size_t groups) {
    std::string elements;
    for (std::size_t i = 0; i < groups; ++i) {
      elements += std::string(12 + i, ' ') + "AXGroup\n";
    }
    return windowOf(elements + std::string(12 + groups, ' ') + "AXWebArea \"Chat\"\n" +
                    std::string(13 + groups, ' ') + "AXButton \"Send\" at 5,5 size 20x10\n");
  };
  EXPECT_EQ(pressed(world(79), "Chat", "Send"), done("Chat", "Send"));
  EXPECT_EQ(pressed(world(80), "Chat", "Send"), noDocument);
}

TEST(ax_press_in_document, refuses_a_button_that_became_another_meanwhile) {
  // The window and the three elements below it are four reads; the next is of the button alone.
  const std::string world = windowOf(R"(
            AXWebArea "Chat"
                AXGroup
                AXButton "Send" at 5,5 size 20x10
)");
  TestMac mac(world, {"ax.attributes 5 wrong"});
  EXPECT_EQ(seen(mac.driver("ax-press-in-document Notes Chat Send")), noButton);
}

TEST(ax_press_in_document, that_fails_tells_the_platforms_code) {
  TestMac mac(chat, {"ax.perform 1 error -25204"});
  EXPECT_EQ(seen(mac.driverWith({"ax-press-in-document", "Notes", "Chat with Ada", "Send"})),
            success(R"({"axError":-25204,"document":"Chat with Ada","ok":false,)"
                    R"("pressed":"Send"})"));
}

}  // namespace ax_press_document_test
