#include <gtest/gtest.h>

#include <utility>

#include "tests/support/watching.h"

/// A watcher whose tap hears nothing must not look like a user who does nothing.
namespace {

using namespace testing_support;

const std::string missing = failure("cannot watch input: accessibility permission is missing");

/// The first line, these reports, and the failure that ends the watcher.
std::string endedAfter(const std::vector<std::string>& lines) {
  return reports(lines, 1) +
         "{\"error\":\"watching has ended: the system no longer serves the event tap\","
         "\"ok\":false}\n";
}

TEST(watch_input_tap, that_would_see_no_keys_counts_as_none) {
  TestMac mac("deny keys-in-taps\n" + watchedDeskWith({}), {}, Mode::direct);
  EXPECT_EQ(seen(watch(mac, {})), missing);
}

TEST(watch_input_tap, that_cannot_be_enabled_counts_as_none) {
  EXPECT_EQ(watched({}, {}, {"tap.enable 1 refused"}), missing);
  EXPECT_EQ(watched({}, {}, {"tap.is-enabled 1 refused"}), missing);
}

TEST(watch_input_tap, that_fails_unheard_ends_the_watch_at_the_next_look) {
  for (const auto& [happening, end] :
       {std::pair("silence taps", 2'100'000), std::pair("invalidate taps", 2'100'000),
        std::pair("withdraw accessibility", 2'000'000)}) {
    TestMac mac(watchedDeskWith({"1s user key return", std::string("1200ms ") + happening}), {},
                Mode::direct);
    const Result run = watch(mac, {});
    EXPECT_EQ(seen(run), endedAfter({submission("com.example.browser", 1000)})) << happening;
    EXPECT_EQ(run.elapsed, end) << happening;
  }
}

TEST(watch_input_tap, is_looked_after_at_each_notice) {
  TestMac mac(watchedDeskWith({"1200ms withdraw accessibility", "1300ms disable taps"}), {},
              Mode::direct);
  const Result run = watch(mac, {});
  EXPECT_EQ(seen(run), endedAfter({}));
  EXPECT_EQ(run.elapsed, 1'300'000);
}

}  // namespace
