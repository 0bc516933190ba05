#include "accessibility/menu.h"

#include <gtest/gtest.h>

#include "tests/support/inside.h"

namespace driver {
namespace {

using namespace testing_support;

TEST(ax_menu, with_an_empty_path_is_refused) {
  TestMac mac("\n    app Notes pid 41\n        menu File > New\n");
  const ax::Element application = applicationOf(mac, "Notes");
  const Reply reply = valueInside(mac, [&] { return axMenu(application, {}); });
  EXPECT_EQ(Value(reply), Value(Reply{{"ok", false}, {"error", "empty menu path"}}));
}

TEST(menu_key, folds_case_white_space_and_ellipses) {
  EXPECT_EQ(menuKey("Save As\u2026"), "save as");
  EXPECT_EQ(menuKey("Save As..."), "save as");
  EXPECT_EQ(menuKey(" Save\n\tAs "), "save as");
  EXPECT_EQ(menuKey("a..b"), "a..b");
  EXPECT_EQ(menuKey("a....b"), "a.b");
  EXPECT_EQ(menuKey("a......\u2026b"), "ab");
  EXPECT_EQ(menuKey("\u2026"), "");
  EXPECT_EQ(menuKey("Re\u0301sume\u0301"), menuKey("R\u00C9SUM\u00C9"));
}

}  // namespace
}  // namespace driver
