#include "platform/pasteboard.h"

#include "platform/macos/standins/fixture.h"
#include "platform/macos/standins/pasteboard.h"

namespace {

class Pasteboard : public standins::AdapterTest {};
using items = Pasteboard;
using pasteboard_write = Pasteboard;
using writeFiles = Pasteboard;
using clear = Pasteboard;

using pasteboard::Item;
using standins::PasteboardFault;
using Contents = std::vector<std::string>;

}  // namespace

TEST_F(items, have_their_representations_in_order) {
  standins::putOnPasteboard({{"b", "1"}, {"a", "2"}});
  standins::putOnPasteboard({{"c", ""}});
  EXPECT_EQ(pasteboard::items(), (std::vector<Item>{{{"b", "1"}, {"a", "2"}}, {{"c", ""}}}));
}

TEST_F(items, are_there_without_the_promises_that_nobody_keeps) {
  standins::putOnPasteboard({{"a", std::nullopt}, {"b", "x"}});
  standins::putOnPasteboard({{"a", std::nullopt}});
  EXPECT_EQ(pasteboard::items(), (std::vector<Item>{{{"b", "x"}}, {}}));
}

TEST_F(items, are_none_on_an_empty_pasteboard_and_absent_when_it_cannot_be_read) {
  EXPECT_EQ(pasteboard::items(), std::vector<Item>{});
  standins::setPasteboardFault(PasteboardFault::refusesToBeRead);
  EXPECT_EQ(pasteboard::items(), std::nullopt);
}

TEST_F(pasteboard_write, adds_items_and_leaves_out_what_is_refused) {
  EXPECT_TRUE(pasteboard::write({{{"a", std::string("\0x", 2)}, {"bad type", "y"}}, {{"c", "z"}}}));
  EXPECT_EQ(standins::pasteboardContents(), (Contents{std::string("a=\0x;", 5), "c=z;"}));
}

TEST_F(pasteboard_write, says_when_the_system_refuses) {
  standins::setPasteboardFault(PasteboardFault::refusesToBeWritten);
  EXPECT_FALSE(pasteboard::write({{{"a", "1"}}}));
  EXPECT_FALSE(pasteboard::writeFiles({"/a"}));
}

TEST_F(writeFiles, adds_references) {
  EXPECT_TRUE(pasteboard::writeFiles({"/a", "/caf\u00e9"}));
  EXPECT_EQ(standins::pasteboardContents(),
            (Contents{"public.file-url=/a;", "public.file-url=/caf\u00e9;"}));
}

TEST_F(clear, changes_the_count_which_writing_leaves) {
  const auto before = pasteboard::changeCount();
  pasteboard::write({{{"a", "1"}}});
  EXPECT_EQ(pasteboard::changeCount(), before);
  EXPECT_EQ(pasteboard::clear(), before + 1);
  EXPECT_EQ(pasteboard::changeCount(), before + 1);
  EXPECT_EQ(standins::pasteboardContents(), Contents{});
}
