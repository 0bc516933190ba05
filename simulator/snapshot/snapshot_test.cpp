#include "simulator/snapshot/snapshot.h"

#include <gtest/gtest.h>

#include "simulator/faults.h"
#include "simulator/text/parse.h"

namespace simulator {

namespace {

constexpr const char* busyWorld = R"(
define Row(text)
    AXRow {text} at 110,200 size 100x20
app Notes pid 41 bundle com.example.notes frontmost
    menu File > Close cmd w press: close window
    window 7 "Inbox" at 100,80 size 800x600
        AXButton "Send" at 120,90 size 60x20 press: after 2s count Sent up; add Row("x") to List
        AXCheckBox "Sign" at 200,90 size 60x20
        AXList "List" at 110,200 size 100x40 scrolls lazily stacks
            AXRow "One" at 110,200 size 100x20 press: relabel One "Uno"
            AXRow "Two" at 110,220 size 100x20 while hovered
        AXGroup "Sent" at 300,90 size 60x20 value 0
    window 8 "Later" at 0,0 size 300x300 closed
at 1s..3s every 10s in Notes count Sent up
at 1s user click 130,95
)";

/// What has come has its lines, and so has what is still to come; what has happened has none.
constexpr const char* busySnapshot =
    R"(# A Mac that has run before, as `simulated-mac snapshot` wrote it.
clock 1500ms
now last-click ( at 1s point 130,95 state 1 )
now activity ( last-times ( 1 1000000 2 1000000 5 1000000 ) )
now due ( ( due 3s pid 41 element 6 reaction "count Sent up" ) ) resumption ( last-news 1s )
macos 14.2
languages en
user "Ada Lovelace" login ada
keyboard us
pointer 130,95
display 1 1440x900 scale 2
file "/Applications/Notes.app/Contents/Info.plist"
define Row(text)
    AXRow {text} at 110,200 size 100x20
app "Notes" pid 41 bundle com.example.notes frontmost
    now scroll-areas ( ( id 8 is-lazy true ) ) rearranged true
    window 7 "Inbox" id 5 at 100,80 size 800x600 focused
        now hover 130,95
        AXButton "Send" id 6 at 120,90 size 60x20 press: after 2s count Sent up; add Row("x") to List
        AXCheckBox "Sign" id 7 at 200,90 size 60x20 value 0 press: toggle
        AXList "List" id 8 at 110,200 size 100x40 stacks scrolls lazily
            AXRow "One" id 9 at 110,200 size 100x20 press: relabel One "Uno"
            AXRow "Two" id 10 at 110,220 size 100x20 while hovered
            AXRow "x" id 13 at 110,240 size 100x20
        AXGroup "Sent" id 11 at 300,90 size 60x20 value 0
    window 8 "Later" id 12 at 0,0 size 300x300 closed
    AXMenuBar id 1 at 0,0 size 1440x24
        AXMenuBarItem "File" id 2 at 10,0 size 52x24
            AXMenu id 3 at 0,30000 size 220x22
                AXMenuItem "Close" id 4 at 0,30000 size 220x22 attribute AXMenuItemCmdChar "W" attribute AXMenuItemCmdModifiers 0 press: close window
at 2s every 10s in pid:41 count Sent up
)";

TEST(snapshotText, is_a_world_in_the_words_of_worlds) {
  Desktop desktop(parseWorld(busyWorld));
  desktop.advanceTo(1'500'000);

  EXPECT_EQ(snapshotText(desktop), busySnapshot);
}

TEST(snapshotText, makes_a_mac_that_goes_on_in_the_same_way) {
  Desktop desktop(parseWorld(busyWorld));
  desktop.advanceTo(1'500'000);
  Desktop after(parseWorld(snapshotText(desktop)));
  desktop.advanceTo(20'000'000);
  after.advanceTo(20'000'000);

  EXPECT_EQ(snapshotText(after), snapshotText(desktop));
}

TEST(snapshotText, says_which_processes_it_leaves_out) {
  Desktop desktop(parseWorld("app Notes pid 41"));
  const std::size_t client = desktop.join({"/bin/driver", "capture service"}, {});
  const std::string text = snapshotText(desktop);

  EXPECT_EQ(text.substr(text.find('\n') + 1, text.find("clock") - text.find('\n') - 1),
            "# Process 5000000 is left out: driver \"capture service\"\n");
  Desktop after(parseWorld(text));
  EXPECT_EQ(after.client(after.join({"driver"}, {})).pid, Desktop::pidOf(client + 1));
}

TEST(presentWorld, has_nothing_of_the_processes_that_are_left_out) {
  Desktop desktop(parseWorld("app Notes pid 41"));
  const std::size_t client = desktop.join({"/bin/driver", "lock-guard"}, {});
  desktop.mac().world.covers.emplace_back().owner = desktop.client(client).pid;

  EXPECT_TRUE(presentWorld(desktop).covers.empty());
}

TEST(snapshotText, keeps_a_fault_that_is_about_elements_which_have_gone) {
  const World world = parseWorld(
      "app Notes pid 41\n    window 7 \"A\" at 0,0 size 300x300\n        AXTextField \"Save\"");
  const Fault fault = parseFault("any 5 before in Notes set Save \"x\"", world);
  Desktop desktop(world, {fault});
  desktop.happen(parseHappening("quit Notes", world));
  const std::string text = snapshotText(desktop);
  const Desktop after(parseWorld(text));

  EXPECT_EQ(snapshotText(after), text);
}

}  // namespace

}  // namespace simulator
