#include "simulator/input/taps.h"

#include <gtest/gtest.h>

#include "simulator/text/happenings.h"
#include "simulator/text/parse.h"
#include "simulator/world/element_text.h"

namespace simulator {

namespace {

using platform::ItemKind;
using tap::Kind;
using tap::Place;

constexpr std::uint64_t keys = std::uint64_t{1} << 10U;
constexpr std::uint64_t movements = std::uint64_t{1} << 5U;

constexpr const char* tapsDesk = R"(
    app Notes pid 41 frontmost
        window 7 "Inbox" at 0,0 size 300x300
            AXTextArea "Body" at 10,10 size 100x100 focused
            AXTextField "Secret" at 10,120 size 100x20 subrole AXSecureTextField
)";

class taps : public testing::Test {
 protected:
  taps() {
    mac_.world = parseWorld(tapsDesk);
    for (const Pid pid : {5'000'000, 5'000'001}) {
      mac_.clients.push_back(std::make_unique<Client>());
      mac_.clients.back()->pid = pid;
    }
  }

  Client& client(std::size_t index = 0) { return *mac_.clients[index]; }

  std::int64_t add(Place place, Kind kind, std::uint64_t mask = keys, std::size_t owner = 0) {
    const auto number = createTap(mac_, client(owner), place, kind, mask);
    enableTap(mac_, number.value());
    return *number;
  }

  void happen(const char* text) { simulator::happen(mac_, parseHappening(text, mac_.world)); }

  /// What waits for a client, as "TAP:TYPE", and is taken away from it.
  std::vector<std::string> told(std::size_t index = 0) {
    std::vector<std::string> lines;
    for (const platform::WireItem& item : client(index).items) {
      EXPECT_EQ(item.kind, ItemKind::tapEvent);
      lines.push_back(std::to_string(item.number) + ":" + std::to_string(item.event.type));
      if (item.serial != 0) serial_ = item.serial;
    }
    client(index).items.clear();
    return lines;
  }

  std::string body() {
    return std::string(textOf(*findLabelled(mac_.world.applications[0], "Body")));
  }

  Mac mac_;
  std::int64_t serial_ = 0;  // of the latest event that waits
};

using Lines = std::vector<std::string>;

TEST_F(taps, that_filter_hold_events_until_they_have_said_what_becomes_of_them) {
  const std::int64_t tap = add(Place::head, Kind::filters);
  happen("user key a");
  happen("user key b");
  EXPECT_EQ(body(), "");
  EXPECT_EQ(told(), Lines{"1:10"});

  takeVerdict(mac_, tap, serial_, true);
  EXPECT_EQ(body(), "a");
  EXPECT_EQ(told(), Lines{"1:10"});
  takeVerdict(mac_, tap, serial_, false);
  EXPECT_EQ(body(), "a");
  EXPECT_EQ(told(), Lines{});
}

TEST_F(taps, that_listen_are_told_and_hold_nothing) {
  add(Place::tail, Kind::listens);
  happen("user key a");
  EXPECT_EQ(body(), "a");
  EXPECT_EQ(told(), Lines{"1:10"});
  EXPECT_EQ(serial_, 0);
  EXPECT_EQ(nextTapDeadline(mac_), std::nullopt);
}

TEST_F(taps, come_from_the_head_to_the_tail) {
  const std::int64_t tail = add(Place::tail, Kind::listens);
  const std::int64_t head = add(Place::head, Kind::filters);
  const std::int64_t first = add(Place::head, Kind::listens, keys, 1);
  EXPECT_EQ(tail, 1);
  EXPECT_EQ(head, 2);
  EXPECT_EQ(first, 3);

  happen("user key a");
  EXPECT_EQ(told(1), Lines{"3:10"});
  EXPECT_EQ(told(0), Lines{"2:10"});
  takeVerdict(mac_, head, serial_, true);
  EXPECT_EQ(told(0), Lines{"1:10"});

  happen("user key b");
  EXPECT_EQ(told(0), Lines{"2:10"});
  takeVerdict(mac_, head, serial_, false);
  EXPECT_EQ(told(0), Lines{});
  EXPECT_EQ(body(), "a");
}

TEST_F(taps, see_what_their_masks_have_and_what_happens_while_they_are_enabled) {
  add(Place::head, Kind::filters, movements);
  happen("user key a");
  EXPECT_EQ(body(), "a");
  happen("user move 5,7");
  EXPECT_EQ(client().items.at(0).event.deltaY, 7);
  EXPECT_EQ(told(), Lines{"1:5"});

  createTap(mac_, client(), Place::head, Kind::filters, keys);
  takeVerdict(mac_, 1, serial_, true);
  happen("user key b");
  EXPECT_EQ(body(), "ab");
}

TEST_F(taps, are_told_all_of_an_event) {
  add(Place::head, Kind::listens);
  happen("user move 5,7");
  happen("user key A tagged for Notes");
  const tap::Event& event = client().items.at(0).event;
  EXPECT_EQ(event.type, 10U);
  EXPECT_EQ(event.location, (Point{5, 7}));
  EXPECT_EQ(event.flags, 0x20000U);
  EXPECT_EQ(event.sourceUserData, 0x5A545256);
  EXPECT_EQ(event.keyCode, 0);
  EXPECT_EQ(event.targetProcess, 41);
}

TEST_F(taps, that_are_too_slow_are_disabled_and_told) {
  const std::int64_t tap = add(Place::head, Kind::filters);
  mac_.now = 500;
  happen("user key a");
  told();
  EXPECT_EQ(nextTapDeadline(mac_), 1'000'500);
  mac_.now = 1'000'499;
  expireTaps(mac_);
  EXPECT_EQ(body(), "");
  mac_.now = 1'000'500;
  expireTaps(mac_);
  EXPECT_EQ(body(), "a");
  EXPECT_EQ(told(), Lines{"1:4294967294"});
  takeVerdict(mac_, tap, serial_, false);
  happen("user key b");
  EXPECT_EQ(body(), "ab");
  enableTap(mac_, tap);
  happen("user key c");
  EXPECT_EQ(body(), "ab");
  EXPECT_EQ(told(), Lines{"1:10"});
}

TEST_F(taps, each_have_their_own_time) {
  add(Place::head, Kind::filters);
  add(Place::tail, Kind::filters);
  happen("user key a");
  mac_.now = 1'000'000;
  expireTaps(mac_);
  EXPECT_EQ(nextTapDeadline(mac_), 2'000'000);
  EXPECT_EQ(told(), (Lines{"1:10", "1:4294967294", "2:10"}));
  EXPECT_EQ(body(), "");
}

TEST_F(taps, can_be_disabled_by_the_system) {
  add(Place::head, Kind::filters);
  add(Place::tail, Kind::listens);
  happen("user key a");
  happen("disable taps");
  EXPECT_EQ(told(), (Lines{"1:10", "1:4294967295", "2:4294967295"}));
  EXPECT_EQ(body(), "a");
  enableTap(mac_, 2);
  happen("disable taps timeout");
  EXPECT_EQ(told(), Lines{"2:4294967294"});
}

TEST_F(taps, go_with_their_owner_and_let_go_what_they_held) {
  add(Place::head, Kind::filters);
  const std::int64_t other = add(Place::tail, Kind::filters, keys, 1);
  happen("user key a");
  dropTaps(mac_, client());
  EXPECT_EQ(told(1), Lines{"2:10"});
  takeVerdict(mac_, other, serial_, true);
  EXPECT_EQ(body(), "a");
  dropTaps(mac_, client(1));
  happen("user key b");
  EXPECT_EQ(body(), "ab");
}

TEST_F(taps, hear_verdicts_only_of_what_waits) {
  const std::int64_t tap = add(Place::head, Kind::filters);
  happen("user key a");
  told();
  takeVerdict(mac_, tap, serial_ + 1, true);
  takeVerdict(mac_, tap + 1, serial_, true);
  EXPECT_EQ(body(), "");
  takeVerdict(mac_, tap, serial_, true);
  takeVerdict(mac_, tap, serial_, true);
  EXPECT_EQ(body(), "a");
}

TEST_F(taps, see_no_keys_for_a_secure_field_and_nothing_of_a_locked_session) {
  add(Place::head, Kind::listens, keys | movements);
  happen("user click 20,130");
  EXPECT_EQ(told(), Lines{"1:5"});
  happen("user key a");
  EXPECT_EQ(told(), Lines{});
  happen("lock");
  happen("user move 1,1");
  EXPECT_EQ(told(), Lines{});
  EXPECT_EQ(mac_.world.pointer, (Point{1, 1}));
}

TEST_F(taps, need_the_permission) {
  mac_.world.accessibilityAllowed = false;
  EXPECT_EQ(createTap(mac_, client(), Place::head, Kind::filters, keys), std::nullopt);
}

TEST_F(taps, get_no_keys_where_the_system_takes_them_out_of_masks) {
  mac_.world.keysInTapsAllowed = false;
  EXPECT_FALSE(canMakeTap(mac_, Kind::listens, keys));
  EXPECT_TRUE(canMakeTap(mac_, Kind::listens, keys | movements));
  add(Place::head, Kind::listens, keys | movements);
  happen("user key a");
  happen("user move 5,7");
  EXPECT_EQ(told(), Lines{"1:5"});
}

TEST_F(taps, that_filter_keys_are_not_given_where_the_system_refuses_them) {
  mac_.world.system.givesKeyTaps = false;
  EXPECT_FALSE(canMakeTap(mac_, Kind::filters, keys | movements));
  EXPECT_EQ(createTap(mac_, client(), Place::head, Kind::filters, keys), std::nullopt);
  EXPECT_TRUE(canMakeTap(mac_, Kind::filters, movements));
  EXPECT_TRUE(canMakeTap(mac_, Kind::listens, keys));
}

TEST_F(taps, that_filter_hold_everything_once_their_permission_has_gone) {
  const std::int64_t tap = add(Place::head, Kind::filters);
  happen("withdraw accessibility");
  EXPECT_FALSE(canMakeTap(mac_, Kind::filters, movements));
  happen("user key a");
  happen("user move 5,7");
  EXPECT_EQ(told(), Lines{});
  for (const std::int64_t time : {1'000'000, 2'000'000}) {
    EXPECT_EQ(nextTapDeadline(mac_), time);
    mac_.now = time;
    expireTaps(mac_);
    EXPECT_EQ(told(), Lines{"1:4294967294"});
    EXPECT_EQ(nextTapDeadline(mac_), std::nullopt);
    enableTap(mac_, tap);
    EXPECT_TRUE(isTapEnabled(mac_, tap));
  }
  EXPECT_EQ(body(), "");
  dropTaps(mac_, client());
  EXPECT_EQ(body(), "a");
}

TEST_F(taps, that_listen_hear_nothing_once_their_permission_has_gone) {
  add(Place::head, Kind::listens);
  happen("withdraw accessibility");
  happen("user key a");
  EXPECT_EQ(told(), Lines{});
  EXPECT_EQ(body(), "a");
}

TEST_F(taps, fall_silent_without_being_told) {
  const std::int64_t tap = add(Place::head, Kind::filters);
  happen("silence taps");
  happen("user key a");
  EXPECT_FALSE(isTapEnabled(mac_, tap));
  enableTap(mac_, tap);
  EXPECT_TRUE(isTapEnabled(mac_, tap));
  happen("invalidate taps");
  happen("user key b");
  EXPECT_FALSE(isTapEnabled(mac_, tap));
  EXPECT_EQ(told(), Lines{});
  EXPECT_EQ(body(), "ab");
}

TEST_F(taps, leave_their_mark_in_the_journal) {
  happen("user key a");
  EXPECT_TRUE(mac_.journal.empty());
  const std::int64_t tap = add(Place::head, Kind::filters);
  happen("user key shift b");
  told();
  takeVerdict(mac_, tap, serial_, false);
  std::string journal;
  for (const JournalEntry& entry : mac_.journal) journal += effectLine(entry, 0) + "\n";
  EXPECT_EQ(journal,
            "    0 ms  input flags with shift\n"
            "    0 ms  input key-down 11 with shift LOST: swallowed by a tap\n"
            "    0 ms  input key-up 11 with shift\n"
            "    0 ms  input flags\n");
}

}  // namespace

}  // namespace simulator
