#include "platform/image.h"
#include "platform/macos/standins/applications.h"
#include "platform/macos/standins/fixture.h"
#include "platform/macos/standins/images.h"

namespace {

class fileIcon : public standins::AdapterTest {};

}  // namespace

TEST_F(fileIcon, is_as_sharp_as_it_comes) {
  standins::setIcon(standins::image("x"));
  const std::optional<image::Image> icon = image::fileIcon("/a");
  ASSERT_TRUE(icon);
  EXPECT_EQ(standins::describe(icon->get()), "image");
  EXPECT_EQ(standins::takeCalls(), (Calls{"icon of /a", "picture for 0,0,512x512"}));
  standins::setIcon(nullptr);
}

TEST_F(fileIcon, may_be_missing) {
  standins::setIcon(nullptr);
  EXPECT_FALSE(image::fileIcon("/a"));
}
