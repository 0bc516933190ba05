#include <gtest/gtest.h>

#include <algorithm>

#include "accessibility/element.h"
#include "accessibility/messages.h"
#include "accessibility/snapshot.h"
#include "tests/support/inside.h"

/// An application that does not answer costs a command two time-outs, whatever it asks.
namespace driver {
namespace {

using namespace testing_support;

using Calls = std::vector<std::string>;

constexpr const char* hungApplicationDesk = R"(
    app Browser pid 40 bundle com.example.browser frontmost
        window 5 "Start" at 0,30 size 600x500
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600
            AXButton "Send" at 120,90 size 60x20
)";

constexpr simulator::Microseconds timeOut = 6'000'000;

/// One message of each kind to an element, and what it gives.
std::string everyMessage(const ax::Element& element) {
  std::string seen;
  const ax::Reading title = messages::attribute(element, "AXTitle");
  seen += title.value ? "value " : "absent ";
  seen += messages::attributes(element, {"AXTitle", "AXHelp"})[0].value ? "value " : "absent ";
  seen += std::to_string(messages::actionNames(element).size()) + " ";
  const ax::Error error = messages::setAttribute(element, "AXTitle", ax::Value{std::string("x")});
  seen += std::to_string(static_cast<int>(error)) + " ";
  seen += messages::windowNumber(element) ? "number" : "none";
  return seen;
}

constexpr const char* answered = "value value 1 0 number";
constexpr const char* unanswered = "absent absent 0 -25204 none";

TEST(hung_application, gets_two_messages_and_no_more) {
  TestMac mac(std::string(hungApplicationDesk) + "    at 0ms hang Notes\n");
  const Result run = runInside(mac, [&] {
    const ax::Element send = elementOf(mac, "Notes", "Send");
    for (int time = 0; time < 3; ++time) EXPECT_EQ(everyMessage(send), unanswered);
    EXPECT_EQ(everyMessage(applicationOf(mac, "Notes")), unanswered);
  });
  EXPECT_EQ(run.calls,
            (Calls{"ax.attribute", "ax.attributes", "loader.open-library", "loader.find-symbol"}));
  EXPECT_EQ(run.elapsed, 2 * timeOut);
}

TEST(hung_application, is_silenced_by_messages_of_every_kind) {
  using Send = void (*)(const ax::Element&);
  const Send sends[] = {
      [](const ax::Element& element) { messages::attribute(element, "AXTitle"); },
      [](const ax::Element& element) { messages::attributes(element, {"AXTitle"}); },
      [](const ax::Element& element) { messages::actionNames(element); },
      [](const ax::Element& element) {
        messages::setAttribute(element, "AXTitle", ax::Value{true});
      },
      [](const ax::Element& element) { messages::windowNumber(element); },
  };
  for (const Send send : sends) {
    TestMac mac(std::string(hungApplicationDesk) + "    at 0ms hang Notes\n");
    const Result run = runActing(mac, [&] {
      const ax::Element element = elementOf(mac, "Notes", "Send");
      for (int time = 0; time < 4; ++time) send(element);
    });
    EXPECT_EQ(run.elapsed, 2 * timeOut);
  }
}

TEST(hung_application, does_not_silence_another) {
  TestMac mac(std::string(hungApplicationDesk) + "    at 0ms hang Notes\n");
  runActing(mac, [&] {
    EXPECT_EQ(everyMessage(elementOf(mac, "Notes", "Send")), unanswered);
    EXPECT_EQ(everyMessage(elementOf(mac, "Browser", "Start")), answered);
  });
}

TEST(hung_application, is_heard_again_after_one_time_out) {
  TestMac mac(std::string(hungApplicationDesk) +
              "    at 0ms hang Notes\n    at 6s recover Notes\n");
  const Result run = runActing(mac, [&] {
    const ax::Element send = elementOf(mac, "Notes", "Send");
    EXPECT_FALSE(messages::attribute(send, "AXTitle").value);
    for (int time = 0; time < 3; ++time) EXPECT_EQ(everyMessage(send), answered);
  });
  EXPECT_EQ(run.elapsed, timeOut);
}

TEST(hung_application, stays_silenced_although_it_recovers) {
  TestMac mac(std::string(hungApplicationDesk) +
              "    at 0ms hang Notes\n    at 12s recover Notes\n");
  const Result run = runInside(mac, [&] {
    const ax::Element send = elementOf(mac, "Notes", "Send");
    EXPECT_EQ(everyMessage(send), unanswered);
    EXPECT_EQ(everyMessage(send), unanswered);
  });
  EXPECT_EQ(run.elapsed, 2 * timeOut);
}

TEST(hung_application, is_silenced_by_two_time_outs_with_answers_between) {
  TestMac mac(hungApplicationDesk, {"ax.attribute 1 hang", "ax.attribute 3 hang"});
  const Result run = runInside(mac, [&] {
    const ax::Element send = elementOf(mac, "Notes", "Send");
    EXPECT_FALSE(messages::attribute(send, "AXTitle").value);
    EXPECT_TRUE(messages::attribute(send, "AXTitle").value);
    EXPECT_FALSE(messages::attribute(send, "AXTitle").value);
    EXPECT_FALSE(messages::attribute(send, "AXTitle").value);
  });
  EXPECT_EQ(run.calls, Calls(3, "ax.attribute"));
}

TEST(hung_application, is_asked_again_in_the_next_run) {
  TestMac mac(std::string(hungApplicationDesk) +
              "    at 0ms hang Notes\n    at 12s recover Notes\n");
  runInside(mac, [&] { EXPECT_EQ(everyMessage(elementOf(mac, "Notes", "Send")), unanswered); });
  runActing(mac, [&] { EXPECT_EQ(everyMessage(elementOf(mac, "Notes", "Send")), answered); });
}

TEST(slow_application, is_never_silenced) {
  TestMac mac(R"(
    app Notes pid 41 answers after 5s
        window 7 "Inbox" at 100,80 size 800x600
            AXButton "Send" at 120,90 size 60x20
)");
  const Result run = runActing(mac, [&] {
    const ax::Element send = elementOf(mac, "Notes", "Send");
    for (int time = 0; time < 3; ++time) EXPECT_EQ(everyMessage(send), answered);
  });
  EXPECT_EQ(run.elapsed, 15 * 5'000'000);
}

TEST(refusing_application, is_never_silenced) {
  TestMac mac(hungApplicationDesk,
              {"ax.attribute 1+ error -25204", "ax.attributes 1+ error -25204",
               "ax.action-names 1+ error -25204", "ax.set-attribute 1+ error -25204",
               "private.ax-window 1+ error -25204"});
  const Result run = runActing(mac, [&] {
    const ax::Element send = elementOf(mac, "Notes", "Send");
    for (int time = 0; time < 3; ++time) EXPECT_EQ(everyMessage(send), unanswered);
  });
  // One by itself, and two for each batch that was refused.
  EXPECT_EQ(std::count(run.calls.begin(), run.calls.end(), "ax.attribute"), 3 * (1 + 2));
  EXPECT_EQ(std::count(run.calls.begin(), run.calls.end(), "private.ax-window"), 3);
  EXPECT_EQ(run.elapsed, 0);
}

TEST(hung_application, costs_its_enabling_two_time_outs) {
  TestMac mac(std::string(hungApplicationDesk) + "    at 0ms hang Notes\n");
  const Result run = runInside(mac, [] {
    const ax::Element notes = axApp("Notes");
    EXPECT_EQ(axWindows(notes).size(), 0U);
    EXPECT_EQ(axLabel(notes), "");
    EXPECT_EQ(axText(notes), "");
    Snapshot now(notes);
    EXPECT_FALSE(axFrame(now));
    EXPECT_EQ(axActions(notes).size(), 0U);
  });
  EXPECT_EQ(run.calls, (Calls{"workspace.applications-with-bundle", "workspace.applications",
                              "ax.set-attribute", "ax.set-attribute"}));
  EXPECT_EQ(run.elapsed, 2 * timeOut);
}

TEST(hung_application, costs_a_click_two_time_outs) {
  TestMac mac(std::string(hungApplicationDesk) + "    at 0ms hang Notes\n");
  const Result run = mac.driver("bg-click Notes 130 95");
  EXPECT_EQ(seen(run), success(R"({"changed":false,"ok":true,"via":"background","window":7})"));
  EXPECT_EQ(run.elapsed, 984'000 + 2 * timeOut);
}

TEST(hung_application, costs_the_check_of_the_users_keyboard_one_time_out) {
  TestMac mac(std::string(hungApplicationDesk) + "    at 0ms hang Browser\n");
  const Result run = mac.driver("ax-press Browser 10 40", {{"CU_WINDOW", "start"}});
  EXPECT_EQ(seen(run), failure("another window of the target app currently owns the user's "
                               "keyboard; background input will not switch it"));
  EXPECT_EQ(run.elapsed, timeOut);
}

}  // namespace
}  // namespace driver
