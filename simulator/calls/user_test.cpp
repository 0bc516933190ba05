#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "simulator/calls/calls.h"
#include "simulator/input/taps.h"
#include "simulator/text/happenings.h"
#include "simulator/text/parse.h"

/// How the Mac answers calls about its user, the pasteboard and taps.
namespace simulator {

namespace {

using driver::Datum;
using driver::pack;
using driver::unpack;
using platform::Function;

class user_calls : public testing::Test {
 protected:
  void begin(const char* text) { mac_.world = parseWorld(text); }

  template <class T>
  T ask(Function function, Datum::List arguments = {}) {
    return unpack<T>(answer(mac_, client_, {function, std::move(arguments)}, mac_.now).value);
  }

  void happen(const char* text) { simulator::happen(mac_, parseHappening(text, mac_.world)); }

  double idle(std::uint32_t type) { return ask<double>(Function::secondsSinceLast, {pack(type)}); }

  Mac mac_;
  Client client_;
};

TEST_F(user_calls, tell_how_long_the_user_has_been_idle) {
  begin("idle 5s");
  EXPECT_EQ(idle(5), 5.0);
  mac_.now = mac_.world.present = 2'000'000;
  EXPECT_EQ(idle(5), 7.0);
  happen("user move 1,1");
  mac_.now = 2'500'000;
  EXPECT_EQ(idle(5), 0.5);
  EXPECT_EQ(idle(10), 7.5);

  begin("");
  EXPECT_EQ(idle(10), 2.5);
  begin("idle never");
  EXPECT_TRUE(std::isinf(idle(10)));
}

TEST_F(user_calls, tell_how_the_system_is_set_up) {
  begin(R"(
    user "Grace Hopper" login grace
    languages zh-Hans,en
    macos 15.0
    tool "/usr/bin/dscl" output "JPEGPhoto:\n ff"
    link "/a" to "/b")");
  using Texts = std::vector<std::string>;
  EXPECT_EQ(ask<Texts>(Function::preferredLanguages), (Texts{"zh-Hans", "en"}));
  EXPECT_EQ(ask<process::Version>(Function::operatingSystemVersion), (process::Version{15, 0}));
  EXPECT_EQ(ask<std::string>(Function::currentDirectory), "/Users/grace");
  EXPECT_EQ(ask<std::string>(Function::resolvedPath, {pack("/a/c")}), "/b/c");
  const auto tool = [&](const char* path) {
    return ask<std::optional<std::string>>(Function::toolOutput, {pack(path), pack(Texts{})});
  };
  EXPECT_EQ(tool("/usr/bin/dscl"), "JPEGPhoto:\n ff");
  EXPECT_EQ(tool("/bin/ls"), std::nullopt);
  EXPECT_EQ(ask<std::int64_t>(Function::shieldingLevel), 2'147'483'628);
}

TEST_F(user_calls, have_defaults_of_their_own) {
  begin("");
  using Texts = std::vector<std::string>;
  EXPECT_EQ(ask<Texts>(Function::preferredLanguages), Texts{"en"});
  EXPECT_EQ(ask<process::Version>(Function::operatingSystemVersion), (process::Version{14, 2}));
  begin("directory \"\"");
  EXPECT_EQ(ask<std::string>(Function::currentDirectory), "");
}

constexpr const char* copied = "pasteboard item \"public.rtf\" \"{a}\" \"public.png\" \"b\"\n";

TEST_F(user_calls, tell_what_is_on_the_pasteboard_as_far_as_the_system_lets_them) {
  using Items = std::optional<std::vector<pasteboard::Item>>;
  client_.pid = 5'000'000;
  begin(copied);
  EXPECT_EQ(ask<Items>(Function::pasteboardItems),
            (Items{{{{"public.rtf", "{a}"}, {"public.png", "b"}}}}));
  begin((copied + std::string("system pasteboard-reads refused")).c_str());
  EXPECT_EQ(ask<Items>(Function::pasteboardItems), Items(std::in_place, 1));
  begin((copied + std::string("system pasteboard-reads hanging")).c_str());
  EXPECT_TRUE(answer(mac_, client_, {Function::pasteboardItems, {}}, 0).pending);
}

TEST_F(user_calls, tell_what_they_have_copied_themselves) {
  using Items = std::vector<pasteboard::Item>;
  client_.pid = 5'000'000;
  for (const char* setting : {"refused", "hanging"}) {
    begin((std::string("system pasteboard-reads ") + setting).c_str());
    ask<std::int64_t>(Function::clearPasteboard);
    EXPECT_TRUE(ask<bool>(Function::writePasteboard, {pack(Items{{{"own", "ours"}}})}));
    EXPECT_EQ(ask<std::optional<Items>>(Function::pasteboardItems), (Items{{{"own", "ours"}}}));
  }
}

TEST_F(user_calls, tell_whether_an_application_has_ended) {
  begin("app Notes pid 41");
  EXPECT_FALSE(ask<bool>(Function::terminated, {pack(41)}));
  EXPECT_TRUE(ask<bool>(Function::terminated, {pack(42)}));
  happen("quit Notes");
  EXPECT_TRUE(ask<bool>(Function::terminated, {pack(41)}));
}

TEST_F(user_calls, note_a_process_that_never_becomes_active) {
  client_.pid = 5'000'000;
  answer(mac_, client_, {Function::prohibitOwnActivation, {}}, 0);
  EXPECT_EQ(effectLine(mac_.journal.back(), 0), "    0 ms  policy 5000000/0 prohibited");
}

TEST_F(user_calls, list_windows_that_are_not_on_screen_when_asked_for_all) {
  begin(R"(
    app Notes pid 41
        window 7 "Inbox" at 0,0 size 9x9
        window 8 "Away" at 0,0 size 9x9 off-screen)");
  using List = std::optional<std::vector<windowserver::Window>>;
  using windowserver::Windows;
  EXPECT_EQ(ask<List>(Function::windows, {pack(Windows::onScreen)})->size(), 1U);
  EXPECT_EQ(ask<List>(Function::windows, {pack(Windows::onScreenWithoutDesktop)})->size(), 1U);
  EXPECT_EQ(ask<List>(Function::windows, {pack(Windows::allWithoutDesktop)})->size(), 2U);
}

TEST_F(user_calls, list_a_window_with_the_number_it_is_listed_as) {
  begin(R"(
    app Notes pid 41
        window 7 "Inbox" at 0,0 size 9x9 listed as 4294967296)");
  using List = std::optional<std::vector<windowserver::Window>>;
  const auto listed = ask<List>(Function::windows, {pack(windowserver::Windows::onScreen)});
  EXPECT_EQ(listed->at(0).number, 4'294'967'296);
}

TEST_F(user_calls, give_no_number_for_an_unnumbered_window) {
  begin(R"(
    app Notes pid 41
        window 7 "Inbox" at 0,0 size 9x9 unnumbered
        window 8 "Other" at 0,0 size 9x9)");
  using Words = std::vector<std::int64_t>;
  const auto number = [&](ElementId id) {
    return ask<Words>(Function::axGetWindow, {pack(platform::ElementReference{41, id})});
  };
  EXPECT_EQ(number(1), (Words{0, 0, 0}));
  EXPECT_EQ(number(2), (Words{0, 0, 8}));
}

TEST_F(user_calls, read_and_write_the_pasteboard) {
  begin(R"(pasteboard item "public.utf8-plain-text" "old" promises "com.example.lazy")");
  using Items = std::vector<pasteboard::Item>;
  client_.pid = 5'000'000;
  const Items old = {{{"public.utf8-plain-text", "old"}}};
  EXPECT_EQ(ask<std::optional<Items>>(Function::pasteboardItems), old);
  EXPECT_EQ(ask<std::int64_t>(Function::pasteboardChangeCount), 1);
  EXPECT_FALSE(ask<bool>(Function::writePasteboard, {pack(old)}));
  EXPECT_EQ(ask<std::int64_t>(Function::clearPasteboard), 2);
  EXPECT_EQ(ask<std::int64_t>(Function::pasteboardChangeCount), 2);
  const std::vector<std::string> paths = {"/a b", "/c"};
  EXPECT_TRUE(ask<bool>(Function::writeFilesToPasteboard, {pack(paths)}));
  EXPECT_EQ(ask<std::optional<Items>>(Function::pasteboardItems),
            (Items{{{"public.file-url", "file:///a%20b"}}, {{"public.file-url", "file:///c"}}}));

  std::string journal;
  for (const JournalEntry& entry : mac_.journal) journal += effectLine(entry, 0) + "\n";
  EXPECT_EQ(journal,
            "    0 ms  pasteboard write \"old\" LOST: somebody else has cleared it since\n"
            "    0 ms  pasteboard clear\n"
            "    0 ms  pasteboard write-files \"/a b\\n/c\"\n");
}

TEST_F(user_calls, make_taps_and_hear_their_verdicts) {
  begin("");
  mac_.clients.push_back(std::make_unique<Client>());
  Client& owner = *mac_.clients.back();
  owner.pid = client_.pid = 5'000'000;
  const Datum::List filter = {pack(tap::Place::head), pack(tap::Kind::filters),
                              pack(tap::maskOf(quartz::EventType::mouseMoved))};
  const auto number = ask<std::int64_t>(Function::createTap, filter);
  happen("user move 1,1");
  EXPECT_TRUE(owner.items.empty());
  answer(mac_, client_, {Function::enableTap, {pack(number)}}, 0);
  happen("user move 2,2");
  ASSERT_EQ(owner.items.size(), 1U);
  EXPECT_EQ(owner.items[0].number, number);
  answer(mac_, client_,
         {Function::tapVerdict, {pack(number), pack(owner.items[0].serial), pack(true)}}, 0);
  EXPECT_EQ(nextTapDeadline(mac_), std::nullopt);

  mac_.world.accessibilityAllowed = false;
  EXPECT_TRUE(answer(mac_, client_, {Function::createTap, filter}, 0).value.isNothing());
}

}  // namespace

}  // namespace simulator
