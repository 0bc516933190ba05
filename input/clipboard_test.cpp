#include "input/paste.h"

#include <gtest/gtest.h>

#include "main/globals.h"
#include "main/replies.h"
#include "platform/loop.h"
#include "platform/pasteboard.h"
#include "tests/support/inside.h"

namespace driver {
namespace {

using namespace testing_support;

using Items = std::vector<pasteboard::Item>;

/// Two items, the first of them in two ways.
const Items users = {{{"public.utf8-plain-text", "text"}, {"public.rtf", std::string("\0{", 2)}},
                     {{"public.png", "png"}}};

simulator::Pasteboard::Item promised(const char* type) { return {{type, std::nullopt}}; }

/// A Mac with the user's items on its clipboard.
TestMac& filled(TestMac& mac) {
  for (const pasteboard::Item& item : users) {
    auto& copied = mac.desktop().mac().world.pasteboard.items.emplace_back();
    for (const auto& [type, data] : item) copied.push_back({type, data});
  }
  return mac;
}

Items contents(const TestMac& mac) { return simulator::readableItems(mac.world().pasteboard); }

bool writeOurs() { return pasteboard::write({{{"own", "ours"}}}); }

void unused(const std::function<void()>& /*requireOwn*/) {}

TEST(withClipboard, has_only_what_is_written_while_it_is_used) {
  TestMac mac("");
  Items used;
  runInside(filled(mac), [&] {
    withClipboard(writeOurs, [&](const auto&) { used = pasteboard::items().value(); });
  });
  EXPECT_EQ(used, (Items{{{"own", "ours"}}}));
}

TEST(withClipboard, gives_all_items_back_300_milliseconds_after_the_use) {
  TestMac mac("");
  const Result run = runInside(filled(mac), [&] { withClipboard(writeOurs, unused); });
  EXPECT_EQ(contents(mac), users);
  EXPECT_EQ(run.elapsed, 300'000);
  EXPECT_EQ(run.calls,
            (std::vector<std::string>{
                "pasteboard.change-count", "pasteboard.items", "pasteboard.change-count",
                "pasteboard.clear", "pasteboard.write", "pasteboard.change-count", "loop.sleep",
                "pasteboard.change-count", "pasteboard.clear", "pasteboard.write"}));
}

TEST(withClipboard, leaves_an_empty_one_empty) {
  TestMac mac("");
  const Result run = runInside(mac, [&] { withClipboard(writeOurs, unused); });
  EXPECT_EQ(contents(mac), Items{});
  EXPECT_EQ(run.calls.back(), "pasteboard.clear");
}

TEST(withClipboard, keeps_what_the_user_copies_meanwhile) {
  TestMac mac("at 200ms user copy \"newer\"\n");
  runInside(filled(mac), [&] { withClipboard(writeOurs, unused); });
  EXPECT_EQ(contents(mac), (Items{{{"public.utf8-plain-text", "newer"}}}));
}

TEST(withClipboard, gives_back_after_a_use_that_is_refused) {
  TestMac mac("");
  const Result run = runInside(filled(mac), [&] {
    EXPECT_THROW(withClipboard(writeOurs, [](const auto&) { throw InputFailure("refused"); }),
                 InputFailure);
  });
  EXPECT_EQ(contents(mac), users);
  EXPECT_EQ(run.elapsed, 300'000);
}

TEST(withClipboard, gives_back_when_the_run_fails_in_mid_use) {
  TestMac mac("");
  const Result run = runInside(
      filled(mac), [&] { withClipboard(writeOurs, [](const auto&) { fail("stopped"); }); });
  EXPECT_EQ(seen(run), failure("stopped"));
  EXPECT_EQ(contents(mac), users);
  EXPECT_EQ(run.elapsed, 300'000);
}

/// Uses the clipboard where it must not be used. Returns the refusal.
std::string refusalOf(TestMac& mac, const std::function<bool()>& write = writeOurs) {
  std::string message;
  runInside(mac, [&] {
    try {
      withClipboard(write, [](const auto&) { ADD_FAILURE(); });
    } catch (const InputFailure& failure) {
      message = failure.message();
    }
  });
  return message;
}

constexpr const char* usedByOthers = "somebody else has just copied something; nothing was pasted";
const Items newer = {{{"public.utf8-plain-text", "newer"}}};

TEST(withClipboard, is_not_used_when_it_cannot_be_written) {
  TestMac mac("");
  EXPECT_EQ(refusalOf(filled(mac), [] { return false; }), "the clipboard could not be written");
  EXPECT_EQ(contents(mac), users);
}

TEST(withClipboard, is_not_touched_when_it_cannot_be_read) {
  for (const char* outcome : {"absent", "wrong"}) {
    TestMac mac("", {std::string("pasteboard.items 1 ") + outcome});
    EXPECT_EQ(refusalOf(filled(mac)), "the clipboard could not be read");
    EXPECT_EQ(contents(mac), users);
    EXPECT_EQ(callsOf(mac, platform::Function::clearPasteboard).size(), 0U);
  }
}

TEST(withClipboard, is_not_touched_when_nothing_on_it_can_be_read) {
  TestMac mac("pasteboard item promises \"com.example.lazy\"\n");
  EXPECT_EQ(refusalOf(mac), "the clipboard could not be read");
  EXPECT_EQ(mac.world().pasteboard.changeCount, 1);
}

TEST(withClipboard, comes_back_without_items_that_could_not_be_read) {
  TestMac mac("pasteboard item promises \"com.example.lazy\"\n");
  runInside(filled(mac), [&] { withClipboard(writeOurs, unused); });
  EXPECT_EQ(contents(mac), users);
}

TEST(withClipboard, is_not_touched_when_somebody_copies_while_it_is_read) {
  for (const char* call : {"pasteboard.items 1", "pasteboard.change-count 2"}) {
    TestMac mac("", {std::string(call) + " before user copy newer"});
    EXPECT_EQ(refusalOf(filled(mac)), usedByOthers) << call;
    EXPECT_EQ(contents(mac), newer) << call;
  }
}

TEST(withClipboard, is_not_used_when_somebody_copies_before_or_after_it_is_written) {
  for (const char* call : {"pasteboard.write 1", "pasteboard.change-count 3"}) {
    TestMac mac("", {std::string(call) + " before user copy newer"});
    EXPECT_EQ(refusalOf(filled(mac)), usedByOthers) << call;
    EXPECT_EQ(contents(mac), newer) << call;
  }
}

TEST(withClipboard, tells_its_user_when_somebody_copies_meanwhile) {
  TestMac mac("", {"pasteboard.change-count 5 before user copy newer"});
  std::string message;
  runInside(filled(mac), [&] {
    try {
      withClipboard(writeOurs, [&](const auto& requireOwn) {
        requireOwn();
        requireOwn();
      });
    } catch (const InputFailure& failure) {
      message = failure.message();
    }
  });
  EXPECT_EQ(message, usedByOthers);
  EXPECT_EQ(contents(mac), newer);
}

TEST(withClipboard, tells_of_a_copy_that_comes_right_before_it_is_cleared) {
  for (const char* call : {"pasteboard.clear 1", "pasteboard.clear 2"}) {
    TestMac mac("", {std::string(call) + " before user copy newer"});
    runInside(filled(mac), [&] {
      withClipboard(writeOurs, unused);
      EXPECT_TRUE(globals().copyLost) << call;
    });
    EXPECT_EQ(contents(mac), users) << call;
  }
}

TEST(withClipboard, tells_when_it_takes_nothing_back) {
  TestMac mac("", {"pasteboard.write 2 refused"});
  const Result run = runInside(filled(mac), [&] {
    withClipboard(writeOurs, unused);
    EXPECT_TRUE(globals().clipboardNotRestored);
    EXPECT_FALSE(globals().copyLost);
  });
  EXPECT_EQ(contents(mac), Items{});
  EXPECT_EQ(run.calls.back(), "pasteboard.change-count");
}

TEST(withClipboard, tells_nothing_when_a_newer_copy_is_why_it_takes_nothing_back) {
  TestMac mac("", {"pasteboard.write 2 before user copy newer"});
  runInside(filled(mac), [&] {
    withClipboard(writeOurs, unused);
    EXPECT_FALSE(globals().clipboardNotRestored);
    EXPECT_FALSE(globals().copyLost);
  });
  EXPECT_EQ(contents(mac), newer);
}

TEST(withClipboard, loses_only_what_nobody_can_read) {
  TestMac mac("");
  filled(mac);
  auto& items = mac.desktop().mac().world.pasteboard.items;
  items[1].push_back(promised("public.tiff")[0]);
  runInside(mac, [&] { withClipboard(writeOurs, unused); });
  EXPECT_EQ(contents(mac), users);
}

}  // namespace
}  // namespace driver
