#include "input/paste.h"

#include <gtest/gtest.h>

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

TEST(withClipboard, has_only_what_is_written_while_it_is_used) {
  TestMac mac("");
  Items used;
  runInside(filled(mac), [&] { withClipboard(writeOurs, [&] { used = pasteboard::items(); }); });
  EXPECT_EQ(used, (Items{{{"own", "ours"}}}));
}

TEST(withClipboard, gives_all_items_back_300_milliseconds_after_the_use) {
  TestMac mac("");
  const Result run = runInside(filled(mac), [&] { withClipboard(writeOurs, [] {}); });
  EXPECT_EQ(contents(mac), users);
  EXPECT_EQ(run.elapsed, 300'000);
  EXPECT_EQ(run.calls, (std::vector<std::string>{"pasteboard.items", "pasteboard.clear",
                                                 "pasteboard.write", "pasteboard.change-count",
                                                 "loop.sleep", "pasteboard.change-count",
                                                 "pasteboard.clear", "pasteboard.write"}));
}

TEST(withClipboard, leaves_an_empty_one_empty) {
  TestMac mac("");
  const Result run = runInside(mac, [&] { withClipboard(writeOurs, [] {}); });
  EXPECT_EQ(contents(mac), Items{});
  EXPECT_EQ(run.calls.back(), "pasteboard.clear");
}

TEST(withClipboard, keeps_what_the_user_copies_meanwhile) {
  TestMac mac("at 200ms user copy \"newer\"\n");
  runInside(filled(mac), [&] { withClipboard(writeOurs, [] {}); });
  EXPECT_EQ(contents(mac), (Items{{{"public.utf8-plain-text", "newer"}}}));
}

TEST(withClipboard, gives_back_after_a_use_that_is_refused) {
  TestMac mac("");
  const Result run = runInside(filled(mac), [&] {
    EXPECT_THROW(withClipboard(writeOurs, [] { throw InputFailure("refused"); }), InputFailure);
  });
  EXPECT_EQ(contents(mac), users);
  EXPECT_EQ(run.elapsed, 300'000);
}

TEST(withClipboard, gives_back_when_the_run_fails_in_mid_use) {
  TestMac mac("");
  const Result run =
      runInside(filled(mac), [&] { withClipboard(writeOurs, [] { fail("stopped"); }); });
  EXPECT_EQ(seen(run), failure("stopped"));
  EXPECT_EQ(contents(mac), users);
  EXPECT_EQ(run.elapsed, 300'000);
}

TEST(withClipboard, is_not_used_when_it_cannot_be_written) {
  TestMac mac("");
  std::string message;
  runInside(filled(mac), [&] {
    try {
      withClipboard([] { return false; }, [] { ADD_FAILURE(); });
    } catch (const InputFailure& failure) {
      message = failure.message();
    }
  });
  EXPECT_EQ(message, "the clipboard could not be written");
  EXPECT_EQ(contents(mac), users);
}

TEST(withClipboard, loses_only_what_nobody_can_read) {
  TestMac mac("");
  filled(mac);
  auto& items = mac.desktop().mac().world.pasteboard.items;
  items[1].push_back(promised("public.tiff")[0]);
  runInside(mac, [&] { withClipboard(writeOurs, [] {}); });
  EXPECT_EQ(contents(mac), users);
}

}  // namespace
}  // namespace driver
