#include <gtest/gtest.h>

#include "tests/support/posted_events.h"
#include "tests/support/simulated_run.h"

/// Scrolls and moves, field by field; drags, which are refused.
namespace motion_test {

using namespace testing_support;

/// Links light up under the pointer, so that a move shows. More lines may follow.
std::string deskWith(const std::string& more) {
  return R"(
    display 1 1440x900
    app Browser pid 40 frontmost
        window 5 "Start" at 0,30 size 90x50
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 800x600
            AXLink "News" at 120,90 size 60x20
    app Chat pid 42 chromium
        window 9 "Chat" at -300,20 size 250x150
            AXLink "Room" at -280,30 size 40x20
)" + more;
}

std::string done(platform::WindowNumber window, bool changed) {
  return success(std::string("{\"changed\":") + (changed ? "true" : "false") +
                 ",\"ok\":true,\"via\":\"background\",\"window\":" + std::to_string(window) + "}");
}

std::string refused(const std::string& message) {
  return success("{\"error\":\"" + message + "\",\"ok\":false}");
}

TEST(scroll, in_appkit_takes_the_public_route_alone) {
  TestMac mac(deskWith(""));

  const Result run = mac.driver("bg-scroll Notes 130 95.5 2 -3");

  EXPECT_EQ(seen(run), done(7, true));
  EXPECT_EQ(
      postedEvents(mac),
      R"(   40 ms public to 41: type 22 at 130,95.5, in window 30,15.5, wheels -3 and 2, no source, no flags
         0=3 1=1 7=3 40=41 51=7 58=40000000 91=7 92=7 | 42=1515475542
)");
  EXPECT_EQ(run.effects, R"(    0 ms  focus 41/7 give
   40 ms  post 41/7 scroll 130,95.5 public: scrolled
  102 ms  focus 41/7 take
)");
  EXPECT_EQ(run.elapsed, 342'000);
  EXPECT_EQ(mac.world().windows[1].scrolledLines, (simulator::Point{2, -3}));
}

TEST(scroll, moves_the_list_under_its_point_as_far_as_it_goes) {
  TestMac mac(deskWith(R"(
    app Mail pid 43
        window 10 "Mail" at 400,80 size 300x300
            AXScrollArea "Messages" at 410,120 size 280x100 scrolls
                AXRow "First" at 410,120 size 280x80
                AXRow "Second" at 410,200 size 280x50
)"));

  const Result down = mac.driver("bg-scroll Mail 420 150 0 -1");
  EXPECT_EQ(seen(down), done(10, true));
  EXPECT_EQ(down.effects, R"(    0 ms  focus 43/10 give
   40 ms  post 43/10 scroll 420,150 public: scrolled AXScrollArea "Messages" by 0,17
  102 ms  focus 43/10 take
)");
  EXPECT_EQ(seen(mac.driver("bg-scroll Mail 420 150 0 -1")), done(10, true));
  EXPECT_EQ(mac.world().applications[3].elements[3].frame, (simulator::Rect{410, 170, 280, 50}));
  const Result atEnd = mac.driver("bg-scroll Mail 420 150 0 -1");

  EXPECT_EQ(seen(atEnd), done(10, false));
  EXPECT_EQ(mac.world().windows[3].scrolledLines, (simulator::Point{0, 0}));
}

TEST(scroll, in_chromium_takes_the_private_route_alone) {
  TestMac mac(deskWith(""));

  const Result run = mac.driver("bg-scroll Chat -270 35 0 4");

  EXPECT_EQ(seen(run), done(9, true));
  EXPECT_EQ(
      postedEvents(mac),
      R"(   40 ms private to 42: type 22 at -270,35, in window 30,15, wheels 4 and 0, no source, no flags
         0=3 1=1 7=3 40=42 51=9 58=40000000 91=9 92=9 | 42=1515475542
)");
  EXPECT_EQ(run.effects, R"(    0 ms  focus 42/9 give
   40 ms  post 42/9 scroll -270,35 private: scrolled
  102 ms  focus 42/9 take
)");
  EXPECT_EQ(run.elapsed, 342'000);
}

TEST(move, in_appkit_takes_the_private_route_alone) {
  TestMac mac(deskWith(""));

  const Result run = mac.driver("bg-move Notes 130 95");

  EXPECT_EQ(seen(run), done(7, true));
  EXPECT_EQ(
      postedEvents(mac),
      R"(   40 ms private to 41: type 5 at 130,95, in window 130,95, button 0, source, no flags
         0=3 1=1 7=3 40=41 51=7 58=40000000 91=7 92=7 | 42=1515475542
)");
  EXPECT_EQ(run.effects, R"(    0 ms  focus 41/7 give
   40 ms  post 41/7 moved 130,95 private: pointer over the window
  102 ms  focus 41/7 take
)");
  EXPECT_EQ(run.elapsed, 342'000);
}

TEST(move, in_chromium_takes_the_public_route_alone) {
  TestMac mac(deskWith(""));

  const Result run = mac.driver("bg-move Chat -270 35");

  EXPECT_EQ(seen(run), done(9, true));
  EXPECT_EQ(postedEvents(mac),
            R"(   40 ms public to 42: type 5 at -270,35, in window 30,15, button 0, source, no flags
         0=3 1=1 7=3 40=42 51=9 58=40000000 91=9 92=9 | 42=1515475542
)");
  EXPECT_EQ(run.effects, R"(    0 ms  focus 42/9 give
   40 ms  post 42/9 moved -270,35 public: pointer over the window
  102 ms  focus 42/9 take
)");
  EXPECT_EQ(run.elapsed, 342'000);
}

TEST(move, over_nothing_is_no_change_after_742_ms) {
  TestMac mac(deskWith(""));

  const Result run = mac.driver("bg-move Notes 500 500");

  EXPECT_EQ(seen(run), done(7, false));
  EXPECT_EQ(run.elapsed, 742'000);
  EXPECT_EQ(waits(mac), "40000 12000 50000 40000 200000 200000 200000");
}

TEST(move, takes_212_ms_in_front_or_while_focus_is_held) {
  TestMac front(deskWith("    at 0ms front Notes\n"));
  TestMac held(deskWith(""));

  const Result inFront = front.driver("bg-move Notes 130 95");
  const Result whileHeld = held.driver("bg-move Notes 130 95", {{"CU_FOCUS_PID", "41"}});

  for (const Result& run : {inFront, whileHeld}) {
    EXPECT_EQ(seen(run), done(7, true));
    EXPECT_EQ(run.effects, "    0 ms  post 41/7 moved 130,95 private: pointer over the window\n");
    EXPECT_EQ(run.elapsed, 212'000);
  }
}

TEST(move, without_the_global_source_is_posted_without_one) {
  TestMac mac(deskWith(""), {"quartz.create-source 1 absent"});

  const Result run = mac.driver("bg-move Notes 130 95");

  EXPECT_EQ(seen(run), done(7, true));
  EXPECT_EQ(
      postedEvents(mac),
      R"(   40 ms private to 41: type 5 at 130,95, in window 130,95, button 0, no source, no flags
         0=3 1=1 7=3 40=41 51=7 58=40000000 91=7 92=7 | 42=1515475542
)");
}

TEST(motion, that_cannot_be_created_only_gives_focus_back) {
  for (const auto& [fault, command] :
       {std::pair{"quartz.create-mouse-event 1 absent", "bg-move Notes 130 95"},
        std::pair{"quartz.create-scroll-event 1 absent", "bg-scroll Notes 130 95 1 1"}}) {
    SCOPED_TRACE(command);
    TestMac mac(deskWith(""), {fault});

    const Result run = mac.driver(command);

    EXPECT_EQ(seen(run), done(7, false));
    EXPECT_EQ(run.effects, "    0 ms  focus 41/7 give\n   90 ms  focus 41/7 take\n");
    EXPECT_EQ(run.elapsed, 730'000);
  }
}

TEST(motion, does_not_take_focus_back_from_a_target_that_came_to_front) {
  TestMac mac(deskWith("    at 60ms front Notes\n"));

  const Result run = mac.driver("bg-move Notes 130 95");

  EXPECT_EQ(run.effects, R"(    0 ms  focus 41/7 give
   40 ms  post 41/7 moved 130,95 private: pointer over the window
   60 ms  happening 41/0 front Notes
)");
  EXPECT_EQ(run.elapsed, 302'000);
}

TEST(motion, takes_focus_back_while_the_foreground_is_unknown) {
  TestMac mac(deskWith(""), {"private.front-process 2+ error -600"});

  const Result run = mac.driver("bg-scroll Notes 130 95 0 1");

  EXPECT_EQ(run.effects, R"(    0 ms  focus 41/7 give
   40 ms  post 41/7 scroll 130,95 public: scrolled
  102 ms  focus 41/7 take
)");
}

TEST(motion, is_refused_without_focus) {
  TestMac record(deskWith(""), {"private.post-record 1 error -600"});
  TestMac symbol(deskWith("    missing SLPSPostEventRecordTo\n"));

  const Result refusedRecord = record.driver("bg-move Notes 130 95");
  const Result missingSymbol = symbol.driver("bg-scroll Notes 130 95 0 1");

  EXPECT_EQ(seen(refusedRecord), refused("background target focus is unavailable"));
  EXPECT_EQ(refusedRecord.elapsed, 40'000);
  EXPECT_EQ(seen(missingSymbol), refused("background target focus is unavailable"));
  EXPECT_EQ(missingSymbol.elapsed, 0);
  EXPECT_EQ(refusedRecord.effects + missingSymbol.effects, "");
}

TEST(motion, needs_every_private_pointer_function_before_anything_else) {
  for (const char* name : {"CGEventSetWindowLocation", "SLEventSetIntegerValueField",
                           "SLEventPostToPid", "SkyLight"}) {
    for (const char* command :
         {"bg-scroll Notes 130 95 0 1", "bg-move Notes 130 95", "bg-drag Notes 130 95 140 95"}) {
      SCOPED_TRACE(std::string(name) + ", " + command);
      TestMac mac(deskWith("    missing " + std::string(name) + "\n"));

      const Result run = mac.driver(command);

      EXPECT_EQ(seen(run),
                refused("private background pointer functions are missing on this macOS"));
      EXPECT_EQ(run.effects, "");
      EXPECT_EQ(run.elapsed, 0);
    }
  }
}

TEST(scroll, amounts_are_cut_to_whole_lines) {
  const std::pair<const char*, simulator::Point> cases[] = {
      {"bg-scroll Notes 130 95 2.9 -2.9", {2, -2}},
      {"bg-scroll Notes 130 95 0.5 -0.5", {0, 0}},
      {"bg-scroll Notes 130 95 2147483647.5 -2147483648.5", {2147483647, -2147483648.0}},
      {"bg-scroll Notes 130 95 1e2 0x10", {100, 16}}};
  for (const auto& [command, lines] : cases) {
    SCOPED_TRACE(command);
    TestMac mac(deskWith(""));

    mac.driver(command);

    EXPECT_EQ(mac.world().windows[1].scrolledLines, lines);
  }
}

TEST(scroll, amounts_beyond_32_bits_end_the_run) {
  for (const char* amounts : {"2147483648 0", "0 2147483648", "-2147483649 0", "0 1e300", "inf 0",
                              "0 -inf", "nan 0", "0 nan"}) {
    SCOPED_TRACE(amounts);
    TestMac mac(deskWith(""));

    const Result run = mac.driver("bg-scroll Notes 130 95 " + std::string(amounts));

    EXPECT_EQ(seen(run), failure("scroll amount is out of range"));
    EXPECT_EQ(run.effects, "");
  }
}

TEST(drag, is_refused_for_each_kind_of_application_before_any_focus_change) {
  TestMac mac(deskWith(""));

  const Result appKit = mac.driver("bg-drag Notes 130 95 140 95");
  const Result chromium = mac.driver("bg-drag Chat -270 35 -260 35");

  EXPECT_EQ(seen(appKit), refused("AppKit background drag is unsupported: native delivery raises "
                                  "the target window"));
  EXPECT_EQ(seen(chromium), refused("Chromium background drag is unsupported: the renderer "
                                    "requires global mouse-button state"));
  for (const Result& run : {appKit, chromium}) {
    EXPECT_EQ(run.effects, "");
    EXPECT_EQ(run.elapsed, 0);
  }
}

TEST(drag, is_refused_in_front_too) {
  TestMac mac(deskWith("    at 0ms front Notes\n"));

  const Result run = mac.driver("bg-drag Notes 130 95 140 95");

  EXPECT_EQ(seen(run), refused("AppKit background drag is unsupported: native delivery raises "
                               "the target window"));
}

}  // namespace motion_test
