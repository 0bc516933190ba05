#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

#include "simulator/world/pasteboard.h"
#include "tests/support/pasting.h"

/// What becomes of the user's clipboard, whoever else uses it meanwhile.
namespace paste_clipboard_test {

using namespace testing_support;

/// A paste into Notes has the clipboard from here to there, and a paste into Mail; in milliseconds.
constexpr int taken = 40;
constexpr int keyPressed = 52;  // into Notes, after its modifier
constexpr int givenBackByNotes = 388;
constexpr int givenBackByMail = 440;

/// The desk with these items on the clipboard.
std::string deskWithItems(const std::string& items) {
  std::string desk(pastingDesk);
  const std::size_t first = desk.find("pasteboard");
  const std::size_t behind = desk.find("app ");
  return desk.replace(first, behind - first, items);
}

std::size_t count(const std::string& text, const std::string& part) {
  std::size_t found = 0;
  for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; ++at) ++found;
  return found;
}

TEST(paste_clipboard, stays_empty_when_it_was) {
  TestMac mac(deskWithItems(""));

  const Result run = mac.driver("bg-paste-files Notes /a.txt");

  EXPECT_EQ(seen(run), pastedIntoNotes);
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "hello /a.txt");
  EXPECT_EQ(clipboard(mac), "");
  EXPECT_EQ(mac.world().pasteboard.items.size(), 0U);
  EXPECT_EQ(count(run.effects, "pasteboard clear"), 2U);
  EXPECT_EQ(count(run.effects, "pasteboard write\n"), 0U);
  EXPECT_EQ(run.elapsed, 478'000);
}

TEST(paste_clipboard, has_all_representations_of_all_items_in_their_order_again) {
  TestMac mac(deskWithItems(R"(
pasteboard item "public.html" "<b>x</b>" "public.rtf" "{x}" "public.utf8-plain-text" "x" "com.a" "1" "com.b" "2"
pasteboard item "public.file-url" "file:///Users/ada/old%20letter.txt"
pasteboard item "public.png" "\x89PNG\x00\xFF" "public.tiff" "II*"
pasteboard item "public.utf8-plain-text" ""
pasteboard item "public.utf8-plain-text" "second" "public.html" "<i>second</i>"
)"));
  const auto before = simulator::readableItems(mac.world().pasteboard);

  EXPECT_EQ(seen(mac.driver("bg-paste-files Notes /a.txt")), pastedIntoNotes);

  EXPECT_EQ(simulator::readableItems(mac.world().pasteboard), before);
  EXPECT_EQ(before.size(), 5U);
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "hello /a.txt");
}

TEST(paste_clipboard, has_megabytes_again) {
  const std::string picture(3'000'000, '\xAB');
  TestMac mac(pastingDesk);
  mac.desktop().mac().world.pasteboard.items[1][0].data = picture;

  EXPECT_EQ(seen(mac.driver("bg-paste-files Notes /a.txt")), pastedIntoNotes);

  EXPECT_EQ(clipboard(mac), "public.utf8-plain-text=old public.rtf={old}, public.png=" + picture);
}

TEST(paste_clipboard, loses_what_is_promised_and_never_comes) {
  TestMac mac(deskWithItems(R"(
pasteboard item promises "com.example.lazy" "public.utf8-plain-text" "old" promises "public.html" "public.rtf" "{old}"
pasteboard item "public.png" "picture"
)"));

  EXPECT_EQ(seen(mac.driver("bg-paste-files Notes /a.txt")), pastedIntoNotes);

  EXPECT_EQ(clipboard(mac), usersClipboard);
  for (const auto& item : mac.world().pasteboard.items) {
    for (const auto& entry : item) EXPECT_TRUE(entry.data.has_value()) << entry.type;
  }
}

/// What a caller sees of a paste that leaves the field and this clipboard as they were.
std::string refusal(TestMac& mac) {
  const std::int64_t before = mac.world().pasteboard.changeCount;
  const Result run = mac.driver("bg-paste-files Notes /a.txt");
  EXPECT_EQ(mac.world().pasteboard.changeCount, before);
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "hello ");
  return seen(run);
}

TEST(paste_clipboard, of_which_nothing_can_be_read_is_not_touched) {
  const std::string unread = refused("the clipboard could not be read");
  TestMac promises(deskWithItems("pasteboard item promises \"com.example.lazy\"\n"));
  EXPECT_EQ(refusal(promises), unread);
  TestMac closed(pastingDesk, {"pasteboard.items 1 absent"});
  EXPECT_EQ(refusal(closed), unread);
}

constexpr const char* nothingPasted = "somebody else has just copied something; nothing was pasted";

/// The reply to a paste into Notes during which somebody copies something before this call.
std::string copiedBefore(const std::string& call, const std::string& expectedClipboard) {
  TestMac mac(pastingDesk, {call + " before user copy newer"});
  const Result run = mac.driver("bg-paste-files Notes /a.txt");
  EXPECT_EQ(clipboard(mac), expectedClipboard) << call;
  const bool isPasted = mac.valueOf("Notes", "Body") == "hello /a.txt";
  EXPECT_EQ(isPasted, run.output.find("\"ok\":true") != std::string::npos) << call;
  return seen(run);
}

TEST(paste_clipboard, keeps_what_the_user_copies_while_it_is_saved_or_written) {
  for (const char* call :
       {"pasteboard.items 1", "pasteboard.change-count 2", "pasteboard.write-files 1",
        "pasteboard.change-count 3", "pasteboard.change-count 4", "pasteboard.change-count 5"}) {
    EXPECT_EQ(copiedBefore(call, newerClipboard), refused(nothingPasted)) << call;
  }
}

TEST(paste_clipboard, keeps_what_the_user_copies_around_its_restoring) {
  for (const char* call :
       {"pasteboard.change-count 1", "pasteboard.change-count 6", "pasteboard.write 1"}) {
    EXPECT_EQ(copiedBefore(call, newerClipboard), pastedIntoNotes) << call;
  }
}

// Between the last look and a clearing nobody can see it coming.
TEST(paste_clipboard, tells_when_it_had_to_lose_a_copy) {
  const std::string told =
      success(R"({"copyLost":true,"ok":true,"pid":41,"via":"background","window":7})");
  EXPECT_EQ(copiedBefore("pasteboard.clear 1", usersClipboard), told);
  EXPECT_EQ(copiedBefore("pasteboard.clear 2", usersClipboard), told);
}

TEST(paste_clipboard, keeps_what_the_user_copies_at_any_millisecond) {
  for (int time = 0; time <= givenBackByNotes + 40; ++time) {
    TestMac mac(pastingDeskWith("at " + std::to_string(time) + "ms user copy \"newer\"\n"));

    const Result run = mac.driver("bg-paste-files Notes /a.txt");

    SCOPED_TRACE(time);
    const bool beforeUse = time > taken && time <= keyPressed;
    ASSERT_EQ(seen(run), beforeUse ? refused(nothingPasted) : pastedIntoNotes);
    ASSERT_EQ(clipboard(mac), newerClipboard);
    ASSERT_EQ(run.elapsed, beforeUse ? 454'000 : 478'000);
    const bool duringUse = time > taken && time <= givenBackByNotes;
    ASSERT_EQ(count(run.effects, "pasteboard clear"), duringUse ? 1U : 2U);
  }
}

TEST(paste_clipboard, keeps_what_the_user_copies_during_a_paste_by_menu) {
  for (int time = 0; time <= givenBackByMail + 40; ++time) {
    TestMac mac(pastingDeskWith("at " + std::to_string(time) + "ms user copy \"newer\"\n"));

    const Result run = mac.driver("bg-paste-files Mail /a.txt");

    SCOPED_TRACE(time);
    ASSERT_EQ(seen(run), pastedIntoMail);
    ASSERT_EQ(clipboard(mac), newerClipboard);
    ASSERT_EQ(run.elapsed, 530'000);
    const bool duringUse = time > taken && time <= givenBackByMail;
    ASSERT_EQ(count(run.effects, "pasteboard clear"), duringUse ? 1U : 2U);
  }
}

// A menu bar has hundreds of items, and an application takes its time over each.
TEST(paste_clipboard, is_not_pasted_from_when_the_user_copies_while_menus_are_searched) {
  TestMac counted(pastingDesk);
  const std::vector<std::string> calls = counted.driver("bg-paste-files Mail /a.txt").calls;
  const auto written = std::find(calls.begin(), calls.end(), "pasteboard.write-files");
  const auto pressed = std::find(written, calls.end(), "ax.perform");
  const auto looked =
      std::find(std::reverse_iterator(pressed), calls.rend(), "pasteboard.change-count").base();
  EXPECT_GT(looked - written, 5);
  for (auto call = written + 1; call != looked; ++call) {
    const std::string number = std::to_string(call - calls.begin() + 1);
    SCOPED_TRACE(number + " " + *call);
    TestMac mac(pastingDesk, {"any " + number + " before user copy newer"});

    EXPECT_EQ(seen(mac.driver("bg-paste-files Mail /a.txt")), refused(nothingPasted));

    mac.desktop().advanceTo(5'000'000);
    EXPECT_EQ(attachedFiles(mac, "Mail"), "");
    EXPECT_EQ(mac.valueOf("Mail", "Letter"), "");
    EXPECT_EQ(clipboard(mac), newerClipboard);
  }
}

TEST(paste_clipboard, keeps_the_last_of_several_copies) {
  TestMac mac(pastingDeskWith(R"(
at 100ms user copy "first"
at 200ms user copy "second"
at 387ms user copy "newer"
)"));
  EXPECT_EQ(seen(mac.driver("bg-paste-files Notes /a.txt")), pastedIntoNotes);
  EXPECT_EQ(clipboard(mac), newerClipboard);
}

TEST(paste_clipboard, keeps_a_copy_of_the_very_same_contents) {
  TestMac mac(pastingDeskWith("at 200ms user copy \"old\"\n"));
  EXPECT_EQ(seen(mac.driver("bg-paste-files Notes /a.txt")), pastedIntoNotes);
  EXPECT_EQ(clipboard(mac), "public.utf8-plain-text=old");
}

// A paste in flight is followed by another, as an agent makes it.
TEST(paste_clipboard, is_the_users_after_one_paste_and_after_the_next) {
  TestMac mac(pastingDesk);
  for (const char* path : {"/a", "/b", "/c"}) {
    const std::vector<std::string> arguments = {"bg-paste-files", "Notes", path};
    EXPECT_EQ(seen(mac.driverWith(arguments)), pastedIntoNotes);
    EXPECT_EQ(clipboard(mac), usersClipboard);
  }
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "hello /a/b/c");
}

/// What a slow application pastes, and how the clipboard ends.
std::string pastedAfter(int milliseconds) {
  TestMac mac(pastingDeskWith("app Docs pid 43 pastes after " + std::to_string(milliseconds) +
                              "ms\n    window 20 \"Letter\" at 100,80 size 800x600\n"
                              "        AXTextArea \"Text\" at 120,130 size 700x400 focused\n"
                              "at 10s user move 1,1\n"));
  mac.driver("bg-paste-files Docs /a.txt");
  mac.desktop().advanceTo(5'000'000);
  EXPECT_EQ(clipboard(mac), usersClipboard);
  return mac.valueOf("Docs", "Text");
}

TEST(paste_clipboard, waits_for_an_application_that_reads_it_late) {
  // It is asked to paste at 52 ms, and the files are there until 388 ms.
  EXPECT_EQ(pastedAfter(0), "/a.txt");
  EXPECT_EQ(pastedAfter(300), "/a.txt");
  EXPECT_EQ(pastedAfter(335), "/a.txt");
}

TEST(paste_clipboard, is_the_users_again_for_an_application_that_reads_it_later_still) {
  EXPECT_EQ(pastedAfter(337), "old");
  EXPECT_EQ(pastedAfter(2000), "old");
}

}  // namespace paste_clipboard_test
