#include "guard/cover_pictures.h"

#include <gtest/gtest.h>

namespace driver {
namespace {

TEST(enclosing_bundle, lies_three_folders_above_the_tool) {
  EXPECT_EQ(enclosingBundle("/Applications/Zentrove Desk.app/Contents/MacOS/driver"),
            "/Applications/Zentrove Desk.app");
  EXPECT_EQ(enclosingBundle("/A.app/Contents/Helpers/driver"), "/A.app");
  EXPECT_EQ(enclosingBundle("A.app/Contents/MacOS/driver"), "A.app");
  EXPECT_EQ(enclosingBundle("/A.app//Contents///MacOS/driver/"), "/A.app");
}

TEST(enclosing_bundle, is_none_elsewhere) {
  for (const char* path : {"", "/", "driver", "/driver", "/usr/local/bin/driver",
                           "/A.app/Contents/driver", "/A.app/Contents/MacOS/deeper/driver",
                           "/A.APP/Contents/MacOS/driver", "/.app/Contents/MacOS/driver",
                           "/Aapp/Contents/MacOS/driver", "/A.application/Contents/MacOS/driver"}) {
    EXPECT_FALSE(enclosingBundle(path)) << path;
  }
}

}  // namespace
}  // namespace driver
