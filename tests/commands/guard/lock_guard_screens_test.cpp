#include <gtest/gtest.h>

#include "tests/support/guarded.h"

namespace {

using testing_support::deskWith;
using testing_support::endedBy;
using testing_support::Environment;
using testing_support::guard;
using testing_support::guardSays;
using testing_support::Mode;
using testing_support::Result;
using testing_support::seen;
using testing_support::TestMac;

/// What becomes of the covers, and when, one line each.
std::string covers(const std::vector<std::string>& happenings,
                   const Environment& environment = {}) {
  TestMac mac(deskWith(happenings), {}, Mode::direct);
  guard(mac, environment);
  std::string lines;
  for (const auto& entry : mac.desktop().trace()) {
    const auto& arguments = entry.call.arguments;
    std::string line;
    if (entry.call.function == platform::Function::showPanel) {
      const auto panel = driver::unpack<platform::WirePanel>(arguments[0]);
      const auto number = [](double value) { return std::to_string(static_cast<long>(value)); };
      line = "show " +
             driver::unpack<std::string>(
                 driver::pack(std::to_string(driver::unpack<std::int64_t>(entry.answer)))) +
             " at " + number(panel.frame.x) + "," + number(panel.frame.y) + " size " +
             number(panel.frame.width) + "x" + number(panel.frame.height) + ": " +
             panel.labels[1].text;
    } else if (entry.call.function == platform::Function::closePanel) {
      line = "close " + std::to_string(driver::unpack<std::int64_t>(arguments[0]));
    } else if (entry.call.function == platform::Function::setPanelLabel) {
      line = "label " + std::to_string(driver::unpack<std::int64_t>(arguments[0])) + ": " +
             driver::unpack<std::string>(arguments[2]);
    } else {
      continue;
    }
    lines += std::to_string(entry.at / 1000) + " " + line + "\n";
  }
  return lines;
}

constexpr const char* lockHint = "Press any key or move the mouse to lock";

TEST(guard_screens, that_are_connected_are_covered) {
  EXPECT_EQ(covers({"1s connect display 2 1920x1080 at 1440,0", "2s user key a"}),
            std::string("0 show 0 at 0,0 size 1440x900: ") + lockHint +
                "\n1000 show 1 at 1440,-180 size 1920x1080: " + lockHint + "\n");
}

TEST(guard_screens, that_go_take_their_cover_along) {
  EXPECT_EQ(covers({"1s connect display 2 1920x1080 at 1440,0", "2s disconnect display 2",
                    "3s input \"operating\\n\"", "4s user key a"}),
            std::string("0 show 0 at 0,0 size 1440x900: ") + lockHint +
                "\n1000 show 1 at 1440,-180 size 1920x1080: " + lockHint +
                "\n2000 close 1\n3000 label 0: Zentrove Desk is using this Mac for you\n");
}

TEST(guard_screens, that_change_their_size_are_covered_anew_before_the_old_cover_goes) {
  EXPECT_EQ(covers({"1s connect display 1 1024x768 at 0,0", "2s user key a"}),
            std::string("0 show 0 at 0,0 size 1440x900: ") + lockHint +
                "\n1000 show 1 at 0,0 size 1024x768: " + lockHint + "\n1000 close 0\n");
}

TEST(guard_screens, that_all_go_leave_their_covers_for_their_return) {
  EXPECT_EQ(covers({"1s remove displays", "2s connect display 1 1440x900 at 0,0", "3s user key a"}),
            std::string("0 show 0 at 0,0 size 1440x900: ") + lockHint + "\n");
}

/// The frames of all covers at the end of a guard to which this happens, as the Mac has them.
std::vector<platform::Rect> coversAfter(const std::vector<std::string>& happenings) {
  TestMac mac(deskWith(happenings), {}, Mode::direct);
  std::vector<platform::Rect> frames;
  const std::size_t client = mac.desktop().join({"driver", "lock-guard"}, {});
  testing_support::runDirect(mac.desktop(), client, {"driver", "lock-guard"});
  for (const auto& cover : mac.world().covers) frames.push_back(cover.frame);
  mac.desktop().leave(client);
  return frames;
}

// The system moves the panels of a display that goes, and leaves them there when it comes back.
TEST(guard_screens, that_come_back_get_their_covers_back) {
  const platform::Rect first{0, 0, 1440, 900};
  const platform::Rect second{1440, 0, 800, 600};
  const std::string connect = "1s connect display 2 800x600 at 1440,0";
  EXPECT_EQ(coversAfter({"1s replug display 1"}), std::vector<platform::Rect>{first});
  EXPECT_EQ(coversAfter({connect, "2s replug display 2"}),
            (std::vector<platform::Rect>{first, second}));
  EXPECT_EQ(coversAfter({"1s remove displays", "2s connect display 1 1440x900 scale 2"}),
            std::vector<platform::Rect>{first});
}

TEST(guard_screens, that_are_new_count_the_grace_down_with_the_others) {
  EXPECT_EQ(covers({"1500ms connect display 2 800x600 at 1440,0", "4s user key a"},
                   {{"ZENTROVE_COVER_GRACE", "3"}}),
            "0 show 0 at 0,0 size 1440x900: Press a key or click within 3 seconds to go back to "
            "Kelto\n"
            "1000 label 0: Press a key or click within 2 seconds to go back to Kelto\n"
            "1500 show 1 at 1440,300 size 800x600: Press a key or click within 3 seconds to go "
            "back to Kelto\n"
            "1500 label 0: Press a key or click within 2 seconds to go back to Kelto\n"
            "1500 label 1: Press a key or click within 2 seconds to go back to Kelto\n"
            "2000 label 0: Press a key or click within 1 seconds to go back to Kelto\n"
            "2000 label 1: Press a key or click within 1 seconds to go back to Kelto\n"
            "3000 label 0: Press any key or move the mouse to lock\n"
            "3000 label 1: Press any key or move the mouse to lock\n");
}

// The directory service may take its time: nobody waits for it while the tap has to be served.
TEST(guard_screens, that_are_new_show_the_pictures_that_were_looked_up_at_the_start) {
  TestMac mac(
      "directory \"/\"\n"
      "link \"/driver\" to \"/Applications/Desk.app/Contents/MacOS/driver\"\n"
      "tool \"/usr/bin/dscl\" photo 600\n" +
          deskWith({"1s connect display 2 800x600 at 1440,0", "2s user key a"}),
      {}, Mode::direct);
  guard(mac);
  std::vector<std::size_t> pictures;
  std::size_t lookUps = 0;
  for (const auto& entry : mac.desktop().trace()) {
    if (entry.call.function == platform::Function::toolOutput) ++lookUps;
    if (entry.call.function != platform::Function::showPanel) continue;
    const auto panel = driver::unpack<platform::WirePanel>(entry.call.arguments[0]);
    pictures.push_back(panel.pictures.size());
  }
  EXPECT_EQ(pictures, (std::vector<std::size_t>{2, 2}));
  EXPECT_EQ(lookUps, 1U);
}

TEST(guard_screens, come_and_go_and_the_guard_goes_on) {
  const Result run = guard(deskWith({"1s remove displays", "2s connect display 7 640x480",
                                     "3s disconnect display 7", "4s user key a"}));
  EXPECT_EQ(seen(run), guardSays({endedBy("user")}));
}

}  // namespace
