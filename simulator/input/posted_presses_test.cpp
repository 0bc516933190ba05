#include <gtest/gtest.h>

#include "simulator/input/posted_pointer.h"
#include "tests/support/planted_click.h"

/// Presses, releases, scrolls and moves that a receiver does not take, pace, and the session.
namespace simulator {

namespace {

using quartz::EventType;
using quartz::Field;
using testing_support::Click;
using testing_support::setField;

using Outcomes = std::vector<std::string>;

using testing_support::brokenGroup;
using testing_support::pressed;

std::uint32_t number(EventType type) { return static_cast<std::uint32_t>(type); }

TEST(press, needs_focus_by_record_or_in_front_in_appkit_only) {
  Click without;
  without.target().focusByRecord = 0;
  Click front;
  front.target().focusByRecord = 0;
  front.mac().world.frontmost = 41;
  Click otherWindow;
  otherWindow.target().focusByRecord = 8;
  Click chromium(true);
  chromium.target().focusByRecord = 0;

  EXPECT_EQ(without.outcomes(), (Outcomes{"priming", "priming", "priming", "priming",
                                          "LOST: the application holds no focus", brokenGroup}));
  EXPECT_EQ(front.outcomes().back(), pressed);
  EXPECT_EQ(otherWindow.outcomes().back(), pressed);
  EXPECT_EQ(chromium.outcomes().back(), pressed);
}

TEST(press, wants_its_event_number) {
  for (const std::size_t index : {4U, 5U}) {
    Click click;
    setField(click[index].event, Field::mouseEventNumber, 2);

    EXPECT_EQ(click.outcome(index), "LOST: wrong event number");
  }
}

TEST(press, wants_its_button_number) {
  for (const std::size_t index : {4U, 5U}) {
    Click left;
    setField(left[index].event, Field::buttonNumber, 1);
    Click right(false, true);
    setField(right[index].event, Field::buttonNumber, 0);

    EXPECT_EQ(left.outcome(index), "LOST: wrong button number");
    EXPECT_EQ(right.outcome(index), "LOST: wrong button number");
  }
}

TEST(press, is_of_the_button_that_the_move_to_the_point_announced) {
  Click left;
  setField(left[3].event, Field::buttonNumber, 1);
  Click right(false, true);
  setField(right[3].event, Field::buttonNumber, 0);

  EXPECT_EQ(left.outcome(4), "LOST: another button than the priming events announced");
  EXPECT_EQ(right.outcome(4), "LOST: another button than the priming events announced");
}

TEST(press, counts_its_clicks) {
  Click first;
  setField(first[4].event, Field::clickState, 2);
  Click release;
  setField(release[5].event, Field::clickState, 2);
  Click second(false, false, 2);
  setField(second[6].event, Field::clickState, 1);

  EXPECT_EQ(first.outcome(4), "LOST: wrong click state");
  EXPECT_EQ(release.outcome(5), "LOST: wrong click state");
  EXPECT_EQ(second.outcome(6), "LOST: wrong click state");
}

TEST(press, alternates_with_its_release) {
  Click twice(false, false, 2);
  twice.steps().erase(twice.steps().begin() + 5);
  Click released;
  released.steps().erase(released.steps().begin() + 4);
  Click otherButton;
  otherButton[5].event.type = number(EventType::rightMouseUp);
  setField(otherButton[5].event, Field::buttonNumber, 1);

  EXPECT_EQ(twice.outcome(5), "LOST: a second press without a release");
  EXPECT_EQ(released.outcome(4), "LOST: a release without its press");
  EXPECT_EQ(otherButton.outcome(5), "LOST: another button than the priming events announced");
}

TEST(press, off_screen_does_not_count_after_priming) {
  Click click;
  click[4].event.location = click[4].event.windowLocation.emplace(Point{-1, -1});

  EXPECT_EQ(click.outcome(4), "LOST: a press off screen after the priming events");
}

TEST(press, that_is_no_known_event_breaks_the_group) {
  Click click;
  click[4].event.type = 99;

  EXPECT_EQ(click.outcomes()[4].substr(0, 4), "LOST");
  EXPECT_EQ(click.mac().journal[4].what, "type-99");
}

TEST(pace, drops_what_comes_less_than_12_ms_after_the_one_before) {
  for (std::size_t index = 1; index < 6; ++index) {
    Click tooSoon;
    tooSoon[index].delay = 11'999;
    Click justIn;
    justIn[index].delay = 12'000;

    EXPECT_EQ(tooSoon.outcome(index), "LOST: came less than 12 ms after the one before");
    EXPECT_EQ(justIn.outcomes().back(), pressed);
  }
}

TEST(pace, counts_from_what_was_dropped_too) {
  Click click;
  click[1].delay = 6'000;
  click[2].delay = 6'000;

  const Outcomes outcomes = click.outcomes();

  EXPECT_EQ(outcomes[1], "LOST: came less than 12 ms after the one before");
  EXPECT_EQ(outcomes[2], "LOST: came less than 12 ms after the one before");
}

TEST(pace, drops_both_postings_of_an_event_that_comes_too_soon) {
  Click click(true);
  click[1].delay = 5'000;

  const Outcomes outcomes = click.outcomes();

  EXPECT_EQ(outcomes[2], "LOST: came less than 12 ms after the one before");
  EXPECT_EQ(outcomes[3], "LOST: came less than 12 ms after the one before");
  EXPECT_EQ(outcomes.back(), brokenGroup);
}

TEST(session, that_is_unusable_lets_nothing_through) {
  Click locked;
  locked.mac().world.session.locked = true;
  Click away;
  away.mac().world.session.onConsole = false;
  Click unknown;
  unknown.mac().world.session.onConsole.reset();

  for (Click* click : {&locked, &away}) {
    EXPECT_EQ(click->outcomes(), Outcomes(6, "LOST: the session is locked or not on the console"));
  }
  EXPECT_EQ(unknown.outcomes().back(), pressed);
}

TEST(permission, is_needed_to_post) {
  Click click;
  click.mac().world.accessibilityAllowed = false;

  EXPECT_EQ(click.outcome(0), "LOST: posting is not permitted");
}

TEST(application, that_does_not_run_takes_nothing) {
  Click click;
  click.target().running = false;

  EXPECT_EQ(click.outcome(0), "LOST: no such application");
}

/// A scroll or a move, as a receiver wants it, at the point of the click.
Click motion(bool chromium, EventType type) {
  Click click(chromium);
  click.steps().erase(click.steps().begin(), click.steps().begin() + 4);
  click.steps().resize(1);
  Click::Step& step = click[0];
  step.event.type = number(type);
  const bool scroll = type == EventType::scrollWheel;
  if (scroll) {
    step.event.vertical = -3;
    step.event.horizontal = 2;
    step.event.windowLocation = Point{20, 20};
  }
  step.privately = scroll == chromium;
  step.publicly = !step.privately;
  return click;
}

TEST(motion, lands_in_the_window_of_either_kind_of_application) {
  for (const bool chromium : {false, true}) {
    const std::size_t window = chromium ? 3 : 1;
    Click scroll = motion(chromium, EventType::scrollWheel);
    Click move = motion(chromium, EventType::mouseMoved);

    EXPECT_EQ(scroll.outcomes(), Outcomes{"scrolled"});
    EXPECT_EQ(scroll.mac().world.windows[window].scrolledLines, (Point{2, -3}));
    EXPECT_EQ(move.outcomes(), Outcomes{"pointer over the window"});
    EXPECT_EQ(move.mac().world.windows[window].hover,
              (chromium ? Point{320, 120} : Point{120, 120}));
  }
}

TEST(motion, by_the_wrong_route_is_lost) {
  for (const bool chromium : {false, true}) {
    for (const EventType type : {EventType::scrollWheel, EventType::mouseMoved}) {
      Click click = motion(chromium, type);
      std::swap(click[0].privately, click[0].publicly);

      EXPECT_EQ(click.outcomes(), Outcomes{"LOST: wrong route"});
    }
  }
}

TEST(motion, with_the_wrong_window_location_is_lost) {
  Click scroll = motion(false, EventType::scrollWheel);
  scroll[0].event.windowLocation = Point{120, 120};
  Click move = motion(false, EventType::mouseMoved);
  move[0].event.windowLocation = Point{20, 20};
  Click chromium = motion(true, EventType::mouseMoved);
  chromium[0].event.windowLocation = Point{320, 120};

  for (Click* click : {&scroll, &move, &chromium}) {
    EXPECT_EQ(click->outcomes(), Outcomes{"LOST: wrong window location"});
  }
}

TEST(motion, with_a_wrong_field_is_lost) {
  for (const Field field : {Field::mouseSubtype, Field::targetProcess, Field::targetWindow,
                            Field::windowUnderPointer, Field::windowThatCanHandle}) {
    Click click = motion(false, EventType::scrollWheel);
    setField(click[0].event, field, 99);

    EXPECT_EQ(click.outcome(0).substr(0, 11), "LOST: field");
  }
}

TEST(motion, needs_no_focus_and_no_priming) {
  Click click = motion(false, EventType::mouseMoved);
  click.target().focusByRecord = 0;

  EXPECT_EQ(click.outcomes(), Outcomes{"pointer over the window"});
}

TEST(fieldOf, gives_the_last_write_and_none_for_zero) {
  platform::EventImage event;
  EXPECT_EQ(fieldOf(event, Field::clickState), 0);
  setField(event, Field::clickState, 1);
  setField(event, Field::clickState, 2);
  EXPECT_EQ(fieldOf(event, Field::clickState), 2);
}

TEST(fieldOf, takes_public_writes_of_public_fields_alone) {
  platform::EventImage event;
  event.publicFields = {{42, 5}, {51, 7}};

  EXPECT_EQ(fieldOf(event, Field::sourceUserData), 5);
  EXPECT_EQ(fieldOf(event, Field::targetWindow), 0);
}

}  // namespace

}  // namespace simulator
