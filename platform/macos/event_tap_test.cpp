#include "platform/event_tap.h"

#include <vector>

#include "platform/macos/standins/accessibility.h"
#include "platform/macos/standins/events.h"
#include "platform/macos/standins/fixture.h"
#include "platform/macos/standins/pools.h"
#include "platform/macos/standins/taps.h"

namespace {

using tap::Kind;
using tap::Place;
using tap::Verdict;

constexpr std::uint64_t moves = tap::maskOf(quartz::EventType::mouseMoved);
constexpr std::uint64_t keysDown = tap::maskOf(quartz::EventType::keyDown);

class event_tap : public standins::AdapterTest {
 protected:
  void TearDown() override {
    standins::setTrusted(false);
    standins::permitListening(false);
    standins::refuseTaps(false);
    standins::refuseSources(false);
    AdapterTest::TearDown();
  }

  // A tap of this kind that says this of each event, and what it is told.
  tap::Tap tapThat(Verdict verdict) {
    return tap::create(Place::head, Kind::filters, moves,
                       [this, verdict](const tap::Event& event) {
                         told_.push_back(event);
                         return verdict;
                       })
        .value();
  }

  std::vector<tap::Event> told_;
};

bool isCreated(Kind kind, std::uint64_t mask) {
  return tap::create(Place::tail, kind, mask, [](const auto&) { return Verdict::pass; })
      .has_value();
}

CGEventRef native(const quartz::Event& event) { return static_cast<CGEventRef>(event.get()); }

}  // namespace

TEST_F(event_tap, create_taps_the_session_and_leaves_the_tap_disabled) {
  standins::setTrusted(true);
  tap::create(Place::head, Kind::filters, moves | keysDown,
              [](const auto&) { return Verdict::pass; });
  EXPECT_EQ(standins::takeCalls(),
            (Calls{"create tap at 1 place 0 options 0 mask 1056", "disable tap"}));
  tap::create(Place::tail, Kind::listens, moves, [](const auto&) { return Verdict::pass; });
  EXPECT_EQ(standins::takeCalls(),
            (Calls{"create tap at 1 place 1 options 1 mask 32", "disable tap"}));
}

TEST_F(event_tap, create_gives_none_when_the_system_refuses) {
  standins::refuseTaps(true);
  EXPECT_FALSE(isCreated(Kind::filters, moves));
}

TEST_F(event_tap, create_does_not_ask_for_a_tap_that_would_be_blind_to_the_keys_it_wants) {
  EXPECT_FALSE(isCreated(Kind::filters, moves | keysDown));
  EXPECT_FALSE(isCreated(Kind::listens, keysDown));
  EXPECT_FALSE(isCreated(Kind::listens, tap::maskOf(quartz::EventType::keyUp)));
  EXPECT_EQ(standins::takeCalls(), Calls{});
}

TEST_F(event_tap, a_tap_that_wants_no_keys_needs_no_permission) {
  EXPECT_TRUE(isCreated(Kind::filters, moves));
  EXPECT_TRUE(isCreated(Kind::listens, moves));
}

TEST_F(event_tap, a_trusted_process_sees_keys) {
  standins::setTrusted(true);
  EXPECT_TRUE(isCreated(Kind::filters, keysDown));
  EXPECT_TRUE(isCreated(Kind::listens, keysDown));
}

TEST_F(event_tap, the_permission_to_listen_is_one_to_listen_only) {
  standins::permitListening(true);
  EXPECT_TRUE(isCreated(Kind::listens, keysDown));
  EXPECT_FALSE(isCreated(Kind::filters, keysDown));
}

TEST_F(event_tap, attach_has_the_main_run_loop_serve_it_and_enable_enables_it) {
  const tap::Tap tap = tapThat(Verdict::pass);
  standins::takeCalls();
  tap::attach(tap);
  tap::enable(tap);
  EXPECT_EQ(standins::takeCalls(),
            (Calls{"serve source of tap in \"common modes\"", "enable tap"}));
}

// Whoever asks whether it is enabled is to know.
TEST_F(event_tap, one_that_cannot_be_served_is_never_enabled) {
  const tap::Tap tap = tapThat(Verdict::pass);
  standins::refuseSources(true);
  tap::attach(tap);
  tap::enable(tap);
  EXPECT_FALSE(tap::isEnabled(tap));
}

TEST_F(event_tap, one_whose_port_is_invalid_is_not_served) {
  const tap::Tap tap = tapThat(Verdict::pass);
  standins::invalidateTap();
  standins::takeCalls();
  tap::attach(tap);
  EXPECT_EQ(standins::takeCalls(), Calls{"invalidate tap"});
}

// The main thread's own pool is emptied by nobody.
TEST_F(event_tap, what_a_handler_leaves_goes_with_its_event) {
  bool hasGone = false;
  const tap::Tap tap = tap::create(Place::head, Kind::filters, moves, [&](const auto&) {
                         standins::autoreleaseTelling([&] { hasGone = true; });
                         return Verdict::pass;
                       }).value();
  standins::sendThroughTap(kCGEventTapDisabledByTimeout, nullptr);
  EXPECT_TRUE(hasGone);
}

TEST_F(event_tap, the_handler_is_told_all_of_an_event) {
  const tap::Tap tap = tapThat(Verdict::pass);
  const quartz::Event event = quartz::createEvent().value();
  quartz::setLocation(event, {12, 34});
  quartz::setFlags(event, 0x20000);
  quartz::setField(event, quartz::Field::sourceUserData, 1);
  quartz::setField(event, quartz::Field::deltaX, -2);
  quartz::setField(event, quartz::Field::deltaY, 3);
  quartz::setField(event, quartz::Field::keyCode, 36);
  quartz::setField(event, quartz::Field::targetProcess, 41);

  EXPECT_EQ(standins::sendThroughTap(kCGEventMouseMoved, native(event)), native(event));

  ASSERT_EQ(told_.size(), 1u);
  EXPECT_EQ(told_[0].type, 5u);
  EXPECT_EQ(told_[0].location, (platform::Point{12, 34}));
  EXPECT_EQ(told_[0].flags, 0x20000u);
  EXPECT_EQ(told_[0].sourceUserData, 1);
  EXPECT_EQ(told_[0].deltaX, -2);
  EXPECT_EQ(told_[0].deltaY, 3);
  EXPECT_EQ(told_[0].keyCode, 36);
  EXPECT_EQ(told_[0].targetProcess, 41);
}

TEST_F(event_tap, a_swallowed_event_does_not_come_out) {
  const tap::Tap tap = tapThat(Verdict::swallow);
  const quartz::Event event = quartz::createEvent().value();
  EXPECT_EQ(standins::sendThroughTap(kCGEventMouseMoved, native(event)), nullptr);
  EXPECT_EQ(told_.size(), 1u);
}

TEST_F(event_tap, a_notice_is_told_by_its_type_alone) {
  const tap::Tap tap = tapThat(Verdict::pass);
  EXPECT_EQ(standins::sendThroughTap(kCGEventTapDisabledByTimeout, nullptr), nullptr);
  EXPECT_EQ(standins::sendThroughTap(kCGEventTapDisabledByUserInput, nullptr), nullptr);
  ASSERT_EQ(told_.size(), 2u);
  EXPECT_EQ(told_[0].type, tap::disabledByTimeout);
  EXPECT_EQ(told_[1].type, tap::disabledByUserInput);
  EXPECT_EQ(told_[1].flags, 0u);
}

TEST_F(event_tap, an_attached_tap_outlives_its_last_user) {
  tap::attach(tapThat(Verdict::swallow));
  EXPECT_EQ(standins::sendThroughTap(kCGEventTapDisabledByTimeout, nullptr), nullptr);
  EXPECT_EQ(told_.size(), 1u);
}

TEST_F(event_tap, is_enabled_as_long_as_the_system_says_so_and_its_port_is_valid) {
  const tap::Tap tap = tapThat(Verdict::pass);
  EXPECT_FALSE(tap::isEnabled(tap));
  tap::enable(tap);
  EXPECT_TRUE(tap::isEnabled(tap));
  standins::disableTap();
  EXPECT_FALSE(tap::isEnabled(tap));
  tap::enable(tap);
  standins::invalidateTap();
  EXPECT_FALSE(tap::isEnabled(tap));
}

TEST_F(event_tap, one_is_made_for_a_trial_and_taken_away_at_once) {
  EXPECT_TRUE(tap::canBeMade(Kind::filters, tap::noEvents));
  EXPECT_EQ(standins::takeCalls(),
            (Calls{"create tap at 1 place 1 options 0 mask 1", "invalidate tap"}));
  EXPECT_FALSE(tap::canBeMade(Kind::listens, keysDown));
  EXPECT_EQ(standins::takeCalls(), Calls{});
  standins::permitListening(true);
  EXPECT_TRUE(tap::canBeMade(Kind::listens, keysDown));
  EXPECT_EQ(standins::takeCalls(),
            (Calls{"create tap at 1 place 1 options 1 mask 1024", "invalidate tap"}));
  standins::refuseTaps(true);
  EXPECT_FALSE(tap::canBeMade(Kind::filters, tap::noEvents));
}
