#include "platform/macos/standins/fixture.h"
#include "platform/macos/standins/user.h"
#include "platform/process.h"

namespace {

class User : public standins::AdapterTest {};
using givenName = User;
using operatingSystemVersion = User;

}  // namespace

TEST_F(User, has_names) {
  standins::setUser("Ada Lovelace", "ada");
  EXPECT_EQ(process::fullUserName(), "Ada Lovelace");
  EXPECT_EQ(process::loginName(), "ada");
}

TEST_F(givenName, is_what_the_system_takes_for_it) {
  EXPECT_EQ(process::givenName("Ada Lovelace"), "Ada");
  EXPECT_EQ(process::givenName("Ada"), std::nullopt);
  EXPECT_EQ(process::givenName(""), std::nullopt);
}

TEST_F(operatingSystemVersion, is_the_systems) {
  standins::setVersion(14, 3);
  EXPECT_EQ(process::operatingSystemVersion().major, 14);
  EXPECT_EQ(process::operatingSystemVersion().minor, 3);
  standins::setNewestVersion();
}
