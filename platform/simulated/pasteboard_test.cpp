#include "platform/pasteboard.h"

#include <gtest/gtest.h>

#include "simulator/text/parse.h"
#include "tests/support/channels.h"
#include "tests/support/pasteboard_cases.h"

namespace {

void copyAsUser(simulator::Desktop& desktop, const pasteboard_cases::Copied& items) {
  simulator::Pasteboard& pasteboard = desktop.mac().world.pasteboard;
  simulator::clearPasteboard(pasteboard, 0);
  for (const auto& item : items) {
    auto& copied = pasteboard.items.emplace_back();
    for (const auto& [type, data] : item) copied.push_back({type, data});
  }
}

}  // namespace

// By no command: the rules that hold for those are not asked.
TEST(pasteboard, has_what_was_copied_and_written) {
  for (const auto& each : pasteboard_cases::cases) {
    simulator::Desktop desktop(simulator::parseWorld(""));
    const std::size_t client = desktop.join({"driver"}, {});
    testing_support::runBodyDirect(desktop, client, [&] {
      const auto copy = [&](const auto& items) { copyAsUser(desktop, items); };
      EXPECT_EQ(pasteboard_cases::seenLines(each, copy), pasteboard_cases::expectedLines(each));
    });
  }
}
