#include "tests/soak/judges.h"

#include <gtest/gtest.h>

#include "tests/support/channels.h"
#include "tests/support/temporary_folder.h"

namespace {

using namespace soak;
using testing_support::TemporaryFolder;

constexpr const char* desk = R"(
process 900
pasteboard item "public.utf8-plain-text" "old"
app "Browser" pid 40 frontmost
    window 5 "Start" at 0,0 size 90x90
        AXTextArea "Page" at 0,0 size 60x60 value "mine" focused
app "Notes" pid 41
    window 7 "Inbox" at 100,80 size 800x600
)";

Played playedOn(const Case& one) {
  const TemporaryFolder folder;
  return play(one, folder.path(""));
}

/// Who complains first when what happened is changed so.
template <class Change>
std::string judgeOf(Change change) {
  const Case one = readCase(desk, "run \"windows\" \"Notes\"\n");
  Played played = playedOn(one);
  EXPECT_FALSE(judge(one, played));
  change(played);
  const auto complaint = judge(one, played);
  return complaint ? complaint->judge : "";
}

TEST(judge, sees_what_is_wrong_with_what_happened) {
  const auto world = [](Played& played) -> simulator::World& {
    return played.desktop->mac().world;
  };
  EXPECT_EQ(judgeOf([&](Played& played) { world(played).pointer.x = 3; }), "user");
  EXPECT_EQ(judgeOf([&](Played& played) { world(played).frontmost = 41; }), "user");
  EXPECT_EQ(judgeOf([&](Played& played) { world(played).pasteboard.items.clear(); }), "user");
  EXPECT_EQ(judgeOf([&](Played& played) {
              world(played).applications[0].elements[1].attributes["AXValue"] =
                  std::string("yours");
            }),
            "user");
  EXPECT_EQ(judgeOf([&](Played& played) { world(played).session.locked = true; }), "user");
  EXPECT_EQ(judgeOf([&](Played& played) { world(played).windows[0].onScreen = false; }), "user");
  EXPECT_EQ(judgeOf([&](Played& played) { world(played).windows[0].frame.x += 1; }), "user");
  EXPECT_EQ(judgeOf([&](Played& played) { world(played).applications[0].focusedElement = 0; }),
            "user");
  EXPECT_EQ(judgeOf([](Played& played) { played.handlesLeft = 1; }), "handles");
  EXPECT_EQ(judgeOf([](Played& played) { played.steps[0].output = "{\"ok\":true}\n"; }),
            "contract");
  EXPECT_EQ(judgeOf([](Played& played) { played.steps[0].status = testing_support::stillRunning; }),
            "ending");
}

TEST(verdict, complains_of_a_world_that_cannot_be) {
  const TemporaryFolder folder;
  const auto complaint = verdict(readCase("app\n", ""), folder.path(""));
  ASSERT_TRUE(complaint);
  EXPECT_EQ(complaint->judge, "generator");
}

TEST(play, runs_several_at_once_and_ends_them_from_outside) {
  const Case one = readCase(desk, R"(beside "watch-input"
    at 500000us end of input
beside "keep-awake"
    at 300000us signal 9
run "scene"
    after 100000us
)");
  const Played played = playedOn(one);

  EXPECT_FALSE(judge(one, played));
  EXPECT_EQ(played.steps[0].status, 0);
  EXPECT_EQ(played.steps[0].ended, 500'000);
  EXPECT_EQ(played.steps[1].status, 128 + 9);
  EXPECT_EQ(played.steps[1].ended, 300'000);
  EXPECT_EQ(played.steps[2].began, 100'000);
  EXPECT_EQ(played.steps[2].output, "{\"bundleId\":\"\",\"ok\":true,\"pid\":40,\"x\":0,\"y\":0}\n");
}

TEST(play, tells_who_does_not_end) {
  const Case one = readCase(desk, "beside \"watch-input\"\n    at 5us input \"a\\n\"\n");
  const auto complaint = judge(one, playedOn(one));
  ASSERT_TRUE(complaint);
  EXPECT_EQ(complaint->judge, "ending");
}

}  // namespace
