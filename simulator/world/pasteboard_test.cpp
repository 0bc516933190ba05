#include "simulator/world/pasteboard.h"

#include <gtest/gtest.h>

namespace simulator {

namespace {

using Items = std::vector<pasteboard::Item>;

constexpr platform::Pid owner = 5'000'000;

Items oneText(const std::string& text) { return {{{std::string(plainTextType), text}}}; }

TEST(pasteboard, is_written_by_whoever_cleared_it) {
  Pasteboard pasteboard;

  EXPECT_FALSE(writeItems(pasteboard, owner, oneText("early")));
  clearPasteboard(pasteboard, owner);
  EXPECT_TRUE(writeItems(pasteboard, owner, oneText("a")));
  EXPECT_TRUE(writeItems(pasteboard, owner, oneText("b")));
  copyText(pasteboard, "user's");
  EXPECT_FALSE(writeItems(pasteboard, owner, oneText("late")));

  EXPECT_EQ(readableItems(pasteboard), oneText("user's"));
}

TEST(pasteboard, counts_the_clearing_and_not_the_writing) {
  Pasteboard pasteboard;
  EXPECT_EQ(pasteboard.changeCount, 1);

  clearPasteboard(pasteboard, owner);
  EXPECT_EQ(pasteboard.changeCount, 2);
  writeItems(pasteboard, owner, oneText("a"));
  EXPECT_EQ(pasteboard.changeCount, 2);
  copyText(pasteboard, "b");
  EXPECT_EQ(pasteboard.changeCount, 3);
}

TEST(pasteboard, keeps_items_and_their_types_in_order_and_leaves_promises_out) {
  Pasteboard pasteboard;
  pasteboard.items = {{{"public.rtf", "{b}"}, {"com.example.lazy", std::nullopt}, {"a", ""}},
                      {{"com.example.lazy", std::nullopt}}};

  EXPECT_EQ(readableItems(pasteboard), (Items{{{"public.rtf", "{b}"}, {"a", ""}}, {}}));
}

TEST(pasteboard, refers_to_files_by_urls) {
  const std::pair<const char*, const char*> files[] = {
      {"/a/b.txt", "file:///a/b.txt"},
      {"/a b/50%.pdf", "file:///a%20b/50%25.pdf"},
      {"/caf\xC3\xA9/#?\n\"", "file:///caf%C3%A9/%23%3F%0A%22"},
      {"/x-._~!$&'()*+,;=:@", "file:///x-._~!$&'()*+,;=:@"},
  };
  for (const auto& [path, url] : files) {
    EXPECT_EQ(fileUrl(path), url);
    EXPECT_EQ(pathOfFileUrl(url), path);
  }
  EXPECT_EQ(pathOfFileUrl("file:///%zz%4"), "/%zz%4");
  EXPECT_EQ(pathOfFileUrl("file:///%e4"), "/\xE4");
  EXPECT_EQ(pathOfFileUrl("https://example.com"), std::nullopt);
}

TEST(pasteboard, gives_a_field_the_paths_of_files_else_the_plain_texts) {
  Pasteboard pasteboard;
  EXPECT_EQ(pastedText(pasteboard), std::nullopt);

  pasteboard.items = {{{"public.png", "picture"}}, {{"public.utf8-plain-text", std::nullopt}}};
  EXPECT_EQ(pastedText(pasteboard), std::nullopt);

  pasteboard.items = {{{"public.rtf", "{a}"}, {"public.utf8-plain-text", "a"}},
                      {{"public.utf8-plain-text", "b"}}};
  EXPECT_EQ(pastedText(pasteboard), "a\nb");
  EXPECT_EQ(pastedFiles(pasteboard), std::vector<std::string>{});

  pasteboard.items.push_back({{"public.file-url", "file:///x%20y"}});
  pasteboard.items.push_back({{"public.file-url", "https://example.com"}});
  EXPECT_EQ(pastedText(pasteboard), "/x y");
  EXPECT_EQ(pastedFiles(pasteboard), std::vector<std::string>{"/x y"});
}

}  // namespace

}  // namespace simulator
