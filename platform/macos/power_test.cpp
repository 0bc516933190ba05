#include "platform/power.h"

#include "platform/macos/standins/fixture.h"
#include "platform/macos/standins/power.h"
#include "platform/types.h"

namespace {

class preventDisplaySleep : public standins::AdapterTest {};

}  // namespace

TEST_F(preventDisplaySleep, asserts_at_full_level_under_the_name) {
  standins::answerAssertions(0, 17);
  const power::Assertion assertion = power::preventDisplaySleep("Caf\u00e9: awake");
  EXPECT_EQ(assertion.status, platform::statusSuccess);
  EXPECT_EQ(assertion.id, 17u);
  EXPECT_EQ(standins::takeCalls(),
            Calls{"assert \"PreventUserIdleDisplaySleep\" level 255 name \"Caf\u00e9: awake\""});
}

TEST_F(preventDisplaySleep, tells_the_status_of_a_refusal) {
  standins::answerAssertions(-536870212, 17);
  const power::Assertion assertion = power::preventDisplaySleep("awake");
  EXPECT_EQ(assertion.status, -536870212);
  EXPECT_EQ(assertion.id, 0u);
}
