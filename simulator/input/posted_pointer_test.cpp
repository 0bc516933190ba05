#include "simulator/input/posted_pointer.h"

#include <gtest/gtest.h>

#include <utility>

#include "tests/support/planted_click.h"

/// Planted wrong sequences: what a receiver says of each.
namespace simulator {

namespace {

using quartz::EventType;
using quartz::Field;
using testing_support::Click;
using testing_support::setField;

using testing_support::brokenGroup;

using Outcomes = std::vector<std::string>;

using testing_support::pressed;
const std::string rightClicked = "right-clicked AXCheckBox \"Done\"";

TEST(deliver, lets_a_whole_click_land) {
  EXPECT_EQ(Click().outcomes(),
            (Outcomes{"priming", "priming", "priming", "priming", "press", pressed}));
  EXPECT_EQ(Click(false, true).outcomes(),
            (Outcomes{"priming", "priming", "priming", "priming", "press", rightClicked}));
  EXPECT_EQ(Click(false, false, 2).outcomes(), (Outcomes{"priming", "priming", "priming", "priming",
                                                         "press", pressed, "press", pressed}));
}

TEST(deliver, lets_a_whole_click_into_chromium_land_by_its_routes) {
  const std::string again = "already taken by the other route";

  EXPECT_EQ(Click(true).outcomes(), (Outcomes{"priming", again, "priming", again, "priming", again,
                                              "priming", "press", pressed}));
  EXPECT_EQ(Click(true, true).outcomes(), (Outcomes{"priming", again, "priming", again, "priming",
                                                    again, "priming", "press", rightClicked}));
}

TEST(deliver, wants_each_addressing_field_right_in_each_event) {
  const std::pair<Field, std::string> fields[] = {
      {Field::mouseSubtype, "LOST: field 7 is 99, not 3"},
      {Field::targetProcess, "LOST: field 40 is 99, not 41"},
      {Field::targetWindow, "LOST: field 51 names no window of the application"},
      {Field::windowUnderPointer, "LOST: field 91 is 99, not 7"},
      {Field::windowThatCanHandle, "LOST: field 92 is 99, not 7"}};
  for (const auto& [field, outcome] : fields) {
    for (std::size_t index = 0; index < 6; ++index) {
      SCOPED_TRACE(outcome + " at " + std::to_string(index));
      Click click;
      setField(click[index].event, field, 99);

      const Outcomes outcomes = click.outcomes();

      EXPECT_EQ(outcomes[index], outcome);
      for (std::size_t later = index + 1; later < 6; ++later) {
        EXPECT_EQ(outcomes[later], brokenGroup);
      }
    }
  }
}

TEST(deliver, takes_no_notice_of_private_fields_that_the_public_setter_wrote) {
  for (const Field field : {Field::targetProcess, Field::targetWindow, Field::clickGroup,
                            Field::windowUnderPointer, Field::windowThatCanHandle}) {
    SCOPED_TRACE(static_cast<int>(field));
    Click click;
    std::erase_if(click[4].event.privateFields, [&](const platform::EventField& each) {
      return each.field == static_cast<std::uint32_t>(field);
    });
    click[4].event.publicFields = {
        {static_cast<std::uint32_t>(field), field == Field::targetProcess ? 41
                                            : field == Field::clickGroup  ? 77
                                                                          : 7}};

    EXPECT_EQ(click.outcome(4).substr(0, 4), "LOST");
  }
}

TEST(deliver, wants_a_window_of_the_application_on_screen) {
  Click foreign;
  for (auto& step : foreign.steps()) setField(step.event, Field::targetWindow, 5);
  Click away;
  for (auto& step : away.steps()) setField(step.event, Field::targetWindow, 8);

  EXPECT_EQ(foreign.outcome(0), "LOST: field 51 names no window of the application");
  EXPECT_EQ(away.outcome(0), "LOST: the window is not on screen");
}

TEST(deliver, wants_cleared_flags_in_each_event) {
  for (std::size_t index = 0; index < 6; ++index) {
    Click click;
    click[index].event.flags.reset();

    EXPECT_EQ(click.outcome(index), "LOST: modifier flags were not cleared");
  }
}

TEST(deliver, wants_the_point_inside_the_window) {
  for (const Point point : {Point{99, 120}, Point{300, 120}, Point{120, 300}}) {
    Click click;
    click[4].event.location = click[4].event.windowLocation.emplace(point);

    EXPECT_EQ(click.outcome(4), "LOST: the point is outside the window");
  }
}

TEST(deliver, wants_the_window_location_of_the_kind_of_application) {
  for (std::size_t index = 0; index < 6; ++index) {
    Click missing;
    missing[index].event.windowLocation.reset();
    Click local;
    local[index].event.windowLocation = Point{20, 20};

    EXPECT_EQ(missing.outcome(index), "LOST: wrong window location");
    EXPECT_EQ(local.outcome(index), "LOST: wrong window location");
  }
  Click global(true);
  global[4].event.windowLocation = global[4].event.location;
  EXPECT_EQ(global.outcome(7), "LOST: wrong window location");
}

TEST(deliver, to_appkit_wants_the_private_route) {
  for (std::size_t index = 0; index < 6; ++index) {
    Click click;
    click[index].privately = false;
    click[index].publicly = true;

    EXPECT_EQ(click.outcome(index), "LOST: wrong route");
  }
}

TEST(deliver, to_chromium_wants_left_clicks_public_and_right_clicks_private) {
  for (std::size_t index = 3; index < 6; ++index) {
    Click left(true);
    left[index].privately = true;
    left[index].publicly = false;
    Click right(true, true);
    right[index].privately = false;
    right[index].publicly = true;

    EXPECT_EQ(left.outcome(index + 3), "LOST: wrong route");
    EXPECT_EQ(right.outcome(index + 3), "LOST: wrong route");
  }
}

TEST(deliver, to_chromium_takes_priming_by_either_route_alone) {
  Click privately(true);
  Click publicly(true);
  for (std::size_t index = 0; index < 3; ++index) {
    privately[index].publicly = false;
    publicly[index].privately = false;
  }

  const Outcomes landed = {"priming", "priming", "priming", "priming", "press", pressed};
  EXPECT_EQ(privately.outcomes(), landed);
  EXPECT_EQ(publicly.outcomes(), landed);
}

TEST(deliver, takes_a_second_posting_by_the_wrong_route_for_a_wrong_event) {
  Click click;
  click[4].publicly = true;

  EXPECT_EQ(click.outcomes(), (Outcomes{"priming", "priming", "priming", "priming", "press",
                                        "LOST: wrong route", brokenGroup}));
}

TEST(deliver, wants_the_priming_events_first_and_in_order) {
  for (std::size_t index = 0; index < 4; ++index) {
    SCOPED_TRACE(index);
    Click without;
    without.steps().erase(without.steps().begin() + static_cast<std::ptrdiff_t>(index));
    Click state;
    setField(state[index].event, Field::clickState, 5);
    Click number;
    setField(number[index].event, Field::mouseEventNumber, 5);
    Click button;
    setField(button[index].event, Field::buttonNumber, 2);
    Click type;
    type[index].event.type = static_cast<std::uint32_t>(EventType::rightMouseUp);

    EXPECT_EQ(without.outcomes().back(), brokenGroup);
    for (Click* click : {&state, &number, &button, &type}) {
      EXPECT_EQ(click->outcome(index), brokenGroup);
      EXPECT_EQ(click->outcomes().back(), brokenGroup);
    }
  }
}

TEST(deliver, wants_the_priming_click_to_be_a_left_one) {
  for (std::size_t index = 0; index < 3; ++index) {
    Click click(false, true);
    setField(click[index].event, Field::buttonNumber, 1);

    EXPECT_EQ(click.outcome(index), brokenGroup);
  }
}

TEST(deliver, wants_one_click_group_for_all_events) {
  for (std::size_t index = 1; index < 6; ++index) {
    Click click;
    setField(click[index].event, Field::clickGroup, 78);

    EXPECT_EQ(click.outcome(index), brokenGroup);
  }
}

TEST(deliver, does_not_take_a_group_for_primed_twice) {
  Click click;
  const std::vector<Click::Step> first = click.steps();
  click.steps().insert(click.steps().end(), first.begin(), first.end());
  for (std::size_t index = 6; index < 12; ++index) {
    click[index].event.identity += 6;
    setField(click[index].event, Field::clickGroup, 78);
  }
  click.steps().erase(click.steps().begin() + 6, click.steps().begin() + 10);

  EXPECT_EQ(click.outcomes(), (Outcomes{"priming", "priming", "priming", "priming", "press",
                                        pressed, brokenGroup, brokenGroup}));
}

}  // namespace

}  // namespace simulator
