#include "input/chromium.h"

#include <gtest/gtest.h>

#include "tests/support/inside.h"

namespace {

using namespace testing_support;

bool chromiumAt(const std::optional<std::string>& path, const std::string& world) {
  TestMac mac(world);
  workspace::Application app;
  app.pid = 41;
  app.bundlePath = path;
  return valueInside(mac, [&] { return driver::isChromium(app); });
}

TEST(isChromium, finds_the_engines_resources_in_any_framework) {
  EXPECT_TRUE(chromiumAt("/Applications/A.app", R"(
    file "/Applications/A.app/Contents/Frameworks/A Framework.framework/Resources/chrome_100_percent.pak"
)"));
  EXPECT_TRUE(chromiumAt("/Applications/A.app", R"(
    file "/Applications/A.app/Contents/Frameworks/A.framework/Resources/icon.png"
    file "/Applications/A.app/Contents/Frameworks/Z.framework/Resources/chrome_100_percent.pak"
)"));
}

TEST(isChromium, is_false_without_them) {
  for (const char* world :
       {"", "    file \"/Applications/A.app/Contents/Info.plist\"\n",
        "    file \"/Applications/A.app/Contents/Frameworks/A.framework/A\"\n",
        "    file \"/Applications/A.app/Contents/Frameworks/A/Resources/Chrome_100_percent.pak\"\n",
        "    file \"/Applications/A.app/Contents/Frameworks/Resources/chrome_100_percent.pak\"\n",
        "    file \"/Applications/A.app/Contents/Resources/chrome_100_percent.pak\"\n",
        "    file "
        "\"/Applications/B.app/Contents/Frameworks/A/Resources/chrome_100_percent.pak\"\n"}) {
    SCOPED_TRACE(world);
    EXPECT_FALSE(chromiumAt("/Applications/A.app", world));
  }
}

TEST(isChromium, is_false_without_a_bundle_and_asks_nothing) {
  TestMac mac("");

  const Result run = runInside(mac, [] { EXPECT_FALSE(driver::isChromium({})); });

  EXPECT_EQ(run.calls, std::vector<std::string>{});
}

TEST(isChromium, stops_at_the_first_hit) {
  TestMac mac(R"(
    file "/A.app/Contents/Frameworks/A/Resources/chrome_100_percent.pak"
    file "/A.app/Contents/Frameworks/B/Resources/chrome_100_percent.pak"
)");
  workspace::Application app;
  app.bundlePath = "/A.app";

  const Result run = runInside(mac, [&] { EXPECT_TRUE(driver::isChromium(app)); });

  EXPECT_EQ(run.calls, (std::vector<std::string>{"streams.list-directory", "streams.file-exists"}));
}

TEST(isChromium, decides_by_the_files_and_not_by_the_kind_of_engine_behind_a_window) {
  // A helper application without frameworks of its own is taken for an AppKit one.
  TestMac mac(R"(
    app Browser pid 40 frontmost
    app Chat pid 42 chromium path "/Applications/Chat.app"
        window 9 "Chat" at 0,0 size 100x100
)");
  mac.desktop().mac().world.files.clear();

  const Result run = mac.driver("bg-drag Chat 50 50 60 60");

  EXPECT_EQ(seen(run),
            success(R"({"error":"AppKit background drag is unsupported: native delivery )"
                    R"(raises the target window","ok":false})"));
}

}  // namespace
