#include "platform/pasteboard.h"

#include "platform/macos/standins/fixture.h"
#include "platform/macos/standins/pasteboard.h"
#include "tests/support/pasteboard_cases.h"

namespace {

using pasteboard_cases::Items;
using standins::PasteboardFault;

class Pasteboard : public standins::AdapterTest {
 protected:
  static void copy(const pasteboard_cases::Copied& items) {
    std::vector<std::vector<standins::PasteboardEntry>> copied;
    for (const auto& item : items) {
      auto& entries = copied.emplace_back();
      for (const auto& [type, data] : item) entries.push_back({type, data});
    }
    standins::copyToPasteboard(copied);
  }
};

}  // namespace

TEST_F(Pasteboard, has_what_was_copied_and_written) {
  for (const auto& each : pasteboard_cases::cases) {
    pasteboard::clear();
    EXPECT_EQ(pasteboard_cases::seenLines(each, copy), pasteboard_cases::expectedLines(each));
  }
}

TEST_F(Pasteboard, is_absent_when_it_cannot_be_read) {
  standins::setPasteboardFault(PasteboardFault::refusesToBeRead);
  EXPECT_EQ(pasteboard::items(), std::nullopt);
}

TEST_F(Pasteboard, takes_items_without_the_ways_that_the_system_refuses) {
  pasteboard::clear();
  EXPECT_TRUE(pasteboard::write({{{"a", "1"}, {"no type", "2"}}}));
  EXPECT_EQ(pasteboard::items(), (Items{{{"a", "1"}}}));
}

TEST_F(Pasteboard, says_when_the_system_refuses_what_is_written) {
  standins::setPasteboardFault(PasteboardFault::refusesToBeWritten);
  pasteboard::clear();
  EXPECT_FALSE(pasteboard::write({{{"a", "1"}}}));
  EXPECT_FALSE(pasteboard::writeFiles({"/a"}));
}
