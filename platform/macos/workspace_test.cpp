#include "platform/workspace.h"

#include "platform/macos/standins/applications.h"
#include "platform/macos/standins/fixture.h"

namespace {

class Workspace : public standins::AdapterTest {
 protected:
  Workspace() {
    standins::setApplications(
        {{7, "com.a", "A", "/a.app", false, true, false, 1},
         {8, std::nullopt, std::nullopt, std::nullopt, true, false, true, 2}});
  }
};
using application = Workspace;
using applications = Workspace;

}  // namespace

TEST_F(application, has_what_the_system_says) {
  const auto first = workspace::application(7);
  ASSERT_TRUE(first);
  EXPECT_EQ(first->pid, 7);
  EXPECT_EQ(first->bundleIdentifier, "com.a");
  EXPECT_EQ(first->name, "A");
  EXPECT_EQ(first->bundlePath, "/a.app");
  EXPECT_FALSE(first->active);
  EXPECT_TRUE(first->hidden);
  const auto second = workspace::application(8);
  ASSERT_TRUE(second);
  EXPECT_EQ(second->bundleIdentifier, std::nullopt);
  EXPECT_EQ(second->name, std::nullopt);
  EXPECT_EQ(second->bundlePath, std::nullopt);
  EXPECT_TRUE(second->active);
  EXPECT_FALSE(second->hidden);
  EXPECT_FALSE(workspace::application(9));
}

TEST_F(applications, are_listed) {
  ASSERT_EQ(workspace::applications().size(), 2u);
  EXPECT_EQ(workspace::applications()[0].pid, 7);
  EXPECT_EQ(workspace::applications()[1].pid, 8);
  ASSERT_EQ(workspace::applications("com.a").size(), 1u);
  EXPECT_EQ(workspace::applications("com.a")[0].pid, 7);
  EXPECT_EQ(workspace::applications("com.b").size(), 0u);
}

TEST_F(Workspace, knows_the_application_in_front) {
  ASSERT_TRUE(workspace::frontmost());
  EXPECT_EQ(workspace::frontmost()->pid, 8);
  standins::setApplications({});
  EXPECT_FALSE(workspace::frontmost());
}

TEST_F(Workspace, unhides_what_is_there) {
  EXPECT_TRUE(workspace::unhide(7));
  EXPECT_FALSE(workspace::unhide(9));
  EXPECT_EQ(standins::takeCalls(), Calls{"unhide 7"});
}

TEST_F(Workspace, knows_how_applications_are_activated_and_whether_they_have_ended) {
  EXPECT_EQ(workspace::activationPolicy(7), workspace::ActivationPolicy::accessory);
  EXPECT_EQ(workspace::activationPolicy(8), workspace::ActivationPolicy::prohibited);
  EXPECT_EQ(workspace::activationPolicy(9), std::nullopt);
  EXPECT_FALSE(workspace::terminated(7));
  EXPECT_TRUE(workspace::terminated(8));
  EXPECT_TRUE(workspace::terminated(9));
}

TEST_F(Workspace, prohibits_its_own_activation) {
  workspace::prohibitOwnActivation();
  EXPECT_EQ(standins::takeCalls(), Calls{"activation policy 2"});
}
