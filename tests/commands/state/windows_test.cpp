#include <gtest/gtest.h>

#include <limits>

#include "main/replies.h"
#include "main/state_queries.h"
#include "platform/window_server.h"
#include "tests/support/inside.h"

namespace driver {
namespace windows_test {

using namespace testing_support;
using platform::Function;
using windowserver::Window;

constexpr const char* desk = R"(
    app Browser pid 40 bundle com.example.browser chromium frontmost
        window 5 "Start" at 0,30 size 600x500
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100.5,80 size 800x600
        window 8 "Draft \u{2014} Notes" at -300,-20 size 40x40
        window 9 at 10,10 size 100x100 layer 3
        window 10 "Narrow" at 0,0 size 39x500
        window 11 "Flat" at 0,0 size 500x39.9
        window 12 "Elsewhere" at 0,0 size 500x500 off-screen
    app tool pid 44 unbundled unnamed
)";

constexpr const char* notRunning = R"({"ok":true,"running":false,"windows":[]})";

std::string seenOf(std::string_view commandLine, const Environment& environment = {}) {
  TestMac mac(desk);
  return seen(mac.driver(commandLine, environment));
}

/// The windows of process 41 as replies have them, when the server's list is this one.
std::string seenOfList(const std::optional<std::vector<Window>>& list) {
  TestMac mac(desk);
  return seen(runInside(mac, [&] {
    const FixedAnswer answer(Function::windows, pack(list));
    emit({{"ok", true}, {"windows", windows(41)}});
  }));
}

/// A window that would be listed.
Window sound() { return {7, 41, 0, "Inbox", 1, 2, 300, 200}; }

TEST(windows, lists_what_is_on_screen_front_to_back) {
  EXPECT_EQ(
      seenOf("windows Notes"),
      success(R"({"active":false,"bundleId":"com.example.notes","name":"Notes","ok":true,"pid":41,)"
              R"("running":true,"windows":[)"
              R"({"height":100,"id":9,"layer":3,"title":"","width":100,"x":10,"y":10},)"
              R"({"height":600,"id":7,"layer":0,"title":"Inbox","width":800,"x":100.5,"y":80},)"
              "{\"height\":40,\"id\":8,\"layer\":0,\"title\":\"Draft \u2014 Notes\",\"width\":40,"
              "\"x\":-300,\"y\":-20}]}"));
}

TEST(windows, tells_the_active_application) {
  EXPECT_EQ(
      seenOf("windows com.example.browser"),
      success(R"({"active":true,"bundleId":"com.example.browser","name":"Browser","ok":true,)"
              R"("pid":40,"running":true,"windows":[)"
              R"({"height":500,"id":5,"layer":0,"title":"Start","width":600,"x":0,"y":30}]})"));
}

TEST(windows, has_empty_texts_for_what_an_application_lacks) {
  EXPECT_EQ(seenOf("windows pid:44"),
            success(R"({"active":false,"bundleId":"","name":"","ok":true,"pid":44,)"
                    R"("running":true,"windows":[]})"));
}

TEST(windows, of_an_application_that_does_not_run_is_no_failure) {
  EXPECT_EQ(seenOf("windows pid:99999"), success(notRunning));
  EXPECT_EQ(seenOf("windows pid:abc"), success(notRunning));
  EXPECT_EQ(seenOf("windows Nobody"), success(notRunning));
}

TEST(windows, needs_an_application) {
  EXPECT_EQ(seenOf("windows"), failure("usage: windows <bundleId|name>"));
}

TEST(windows, ignores_further_arguments) {
  EXPECT_EQ(seenOf("windows Nobody else here"), success(notRunning));
}

TEST(windows, takes_an_empty_name_for_nobody) {
  TestMac mac(desk);
  EXPECT_EQ(seen(mac.driverWith({"windows", ""})), success(notRunning));
}

TEST(windows, lists_only_those_in_the_window_scope) {
  const std::string prefix =
      R"({"active":false,"bundleId":"com.example.notes","name":"Notes","ok":true,"pid":41,)"
      R"("running":true,"windows":[)";
  EXPECT_EQ(
      seenOf("windows Notes", {{"CU_WINDOW", "Inbox"}}),
      success(prefix +
              R"({"height":600,"id":7,"layer":0,"title":"Inbox","width":800,"x":100.5,"y":80}]})"));
  EXPECT_EQ(seenOf("windows Notes", {{"CU_WINDOW", "draft"}}),
            success(prefix + "{\"height\":40,\"id\":8,\"layer\":0,\"title\":\"Draft \u2014 Notes\","
                             "\"width\":40,\"x\":-300,\"y\":-20}]}"));
  EXPECT_EQ(seenOf("windows Notes", {{"CU_WINDOW", "nothing"}}), success(prefix + "]}"));
}

TEST(windows, shows_no_titles_without_the_screen_recording_permission) {
  TestMac mac(std::string(desk) + "    deny screen-recording\n");
  EXPECT_EQ(seen(mac.driver("windows Browser")),
            success(R"({"active":true,"bundleId":"com.example.browser","name":"Browser",)"
                    R"("ok":true,"pid":40,"running":true,"windows":[)"
                    R"({"height":500,"id":5,"layer":0,"title":"","width":600,"x":0,"y":30}]})"));
}

TEST(window_list, that_cannot_be_had_is_empty) {
  EXPECT_EQ(seenOfList(std::nullopt), success(R"({"ok":true,"windows":[]})"));
  EXPECT_EQ(seenOfList(std::vector<Window>{}), success(R"({"ok":true,"windows":[]})"));
}

TEST(window_list, has_zero_or_empty_for_missing_fields) {
  Window bare;
  bare.ownerPid = 41;
  bare.width = 300;
  bare.height = 200;
  EXPECT_EQ(seenOfList({{bare}}),
            success(R"({"ok":true,"windows":[)"
                    R"({"height":200,"id":0,"layer":0,"title":"","width":300,"x":0,"y":0}]})"));
}

TEST(window_list, skips_windows_without_a_size_or_an_owner) {
  Window narrow = sound();
  narrow.width.reset();
  Window flat = sound();
  flat.height.reset();
  Window orphan = sound();
  orphan.ownerPid.reset();
  Window foreign = sound();
  foreign.ownerPid = 42;
  Window wrapped = sound();
  wrapped.ownerPid = (std::int64_t{1} << 32) + 41;
  EXPECT_EQ(seenOfList({{narrow, flat, orphan, foreign, wrapped}}),
            success(R"({"ok":true,"windows":[]})"));
}

TEST(window_list, keeps_windows_of_forty_points_and_more) {
  Window least = sound();
  least.width = least.height = 40;
  Window narrow = least;
  narrow.width = 39.999;
  Window flat = least;
  flat.height = 39.999;
  Window negative = least;
  negative.width = -500;
  EXPECT_EQ(seenOfList({{narrow, flat, negative, least}}),
            success(R"({"ok":true,"windows":[)"
                    R"({"height":40,"id":7,"layer":0,"title":"Inbox","width":40,"x":1,"y":2}]})"));
}

TEST(window_list, skips_windows_whose_frame_is_not_finite) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinity = std::numeric_limits<double>::infinity();
  std::vector<Window> list;
  for (const double value : {nan, infinity, -infinity}) {
    for (auto member : {&Window::x, &Window::y, &Window::width, &Window::height}) {
      list.push_back(sound());
      list.back().*member = value;
    }
  }
  EXPECT_EQ(seenOfList(list), success(R"({"ok":true,"windows":[]})"));
}

TEST(window_list, gives_numbers_and_layers_as_they_are) {
  Window odd = sound();
  odd.number = std::int64_t{1} << 40;
  odd.layer = -2147483601;
  odd.x = -0.0;
  odd.y = 1e9;
  EXPECT_EQ(seenOfList({{odd}}),
            success(R"({"ok":true,"windows":[{"height":200,"id":1099511627776,)"
                    R"("layer":-2147483601,"title":"Inbox","width":300,"x":0,"y":1000000000}]})"));
}

TEST(window_list, repairs_titles) {
  Window odd = sound();
  odd.name = "a\xFF\"";
  EXPECT_EQ(seenOfList({{odd}}),
            success("{\"ok\":true,\"windows\":[{\"height\":200,\"id\":7,\"layer\":0,"
                    "\"title\":\"a\uFFFD\\\"\",\"width\":300,\"x\":1,\"y\":2}]}"));
}

}  // namespace windows_test
}  // namespace driver
