#include <gtest/gtest.h>

#include "simulator/text/happenings.h"
#include "simulator/text/parse.h"
#include "tests/support/guarded.h"

namespace {

using testing_support::endedBy;
using testing_support::guard;
using testing_support::guardedDesk;
using testing_support::guardSays;
using testing_support::Mode;
using testing_support::Result;
using testing_support::seen;
using testing_support::TestMac;

/// What the covers have said as their title, in order, when these inputs come a second apart.
std::vector<std::string> titles(const std::vector<std::string>& inputs,
                                const testing_support::Environment& environment = {}) {
  simulator::World world = simulator::parseWorld(guardedDesk);
  simulator::Microseconds time = 0;
  for (const std::string& input : inputs) {
    simulator::Happening happening = simulator::happeningCalled("input");
    happening.text = input;
    world.script.push_back({time += 1'000'000, happening});
  }
  TestMac mac(std::move(world), {}, Mode::direct);
  guard(mac, environment);
  std::vector<std::string> said;
  for (const auto& entry : mac.desktop().trace()) {
    if (entry.call.function == platform::Function::showPanel) {
      said.push_back(driver::unpack<platform::WirePanel>(entry.call.arguments[0]).labels[0].text);
    } else if (entry.call.function == platform::Function::setPanelLabel) {
      said.push_back(driver::unpack<std::string>(entry.call.arguments[2]));
    }
  }
  return said;
}

using Titles = std::vector<std::string>;
const std::string minding = "Zentrove Desk is minding this Mac";
const std::string operating = "Zentrove Desk is using this Mac for you";

TEST(guard_input, switches_the_wording) {
  EXPECT_EQ(titles({"operating\n", "minding\n", "operating\n"}),
            (Titles{minding, operating, minding, operating}));
  EXPECT_EQ(titles({"minding\n"}, {{"ZENTROVE_COVER_OPERATING", "1"}}),
            (Titles{operating, minding}));
}

TEST(guard_input, that_changes_nothing_leaves_the_labels_alone) {
  EXPECT_EQ(titles({"operating\n", "operating\n", "operating\n"}), (Titles{minding, operating}));
  EXPECT_EQ(titles({"minding\n"}), (Titles{minding}));
}

TEST(guard_input, may_have_blanks_around_the_word_and_come_in_pieces) {
  EXPECT_EQ(titles({" \t operating\t  \n"}), (Titles{minding, operating}));
  EXPECT_EQ(titles({"oper", "ating", "\n"}), (Titles{minding, operating}));
  EXPECT_EQ(titles({"operating\nmind", "ing\n"}), (Titles{minding, operating, minding}));
}

TEST(guard_input, of_any_other_line_says_nothing) {
  for (const char* line : {"Operating\n", "operating\r\n", "operating now\n", "op erating\n", "\n",
                           "   \n", "operatin\n", "operatings\n", "\"operating\"\n", "operating",
                           "operating\xFF\n", "\xC3operating\n", "\xEF\xBB\xBFoperating\n",
                           "lock\n", "{\"mode\":\"operating\"}\n", "operating\v\n"}) {
    EXPECT_EQ(titles({line}), (Titles{minding})) << line;
  }
}

TEST(guard_input, of_megabytes_is_taken_in_its_stride) {
  const std::string flood(3'000'000, 'x');
  EXPECT_EQ(titles({flood, flood + "\noperating\n"}), (Titles{minding, operating}));
  EXPECT_EQ(
      titles({std::string(3'000'000, ' ') + "operating" + std::string(3'000'000, '\t') + "\n"}),
      (Titles{minding, operating}));
}

TEST(guard_input, that_says_both_at_once_leaves_the_last) {
  EXPECT_EQ(titles({"operating\nminding\noperating\n"}), (Titles{minding, operating}));
  EXPECT_EQ(titles({"operating\nminding\n"}), (Titles{minding}));
}

TEST(guard_input, that_ends_locks) {
  for (const char* before : {"", "at 1s input \"operating\\n\"\n", "at 1s input \"oper\"\n"}) {
    const Result run = guard(std::string(guardedDesk) + before + "at 2s close input\n");
    EXPECT_EQ(seen(run), guardSays({endedBy("run")})) << before;
    EXPECT_EQ(run.elapsed, 2'500'000);
  }
}

TEST(guard_input, that_has_ended_before_the_start_locks_at_once) {
  const Result run = guard(guardedDesk, {}, {"loader.open-library 1 before close input"});
  EXPECT_EQ(seen(run), guardSays({endedBy("run")}));
  EXPECT_EQ(run.elapsed, 500'000);
}

TEST(guard_input, that_ends_in_the_half_second_after_the_return_adds_its_line) {
  const Result run = guard(std::string(guardedDesk) + "at 1s user key a\nat 1200ms close input\n");
  EXPECT_EQ(seen(run), guardSays({endedBy("user"), endedBy("run")}));
  EXPECT_EQ(run.elapsed, 1'700'000);
}

// A flood of lines must not keep the main flow from its tap.
TEST(guard_input, asks_the_main_flow_for_one_change_at_a_time) {
  TestMac mac(std::string(guardedDesk) + "at 1s input \"operating\\n\"\nat 2s user key a\n",
              {"streams.read-available 2 before input \"minding\\n\"",
               "streams.read-available 3 before input \"operating\\n\""},
              Mode::direct);
  EXPECT_EQ(seen(guard(mac)), guardSays({endedBy("user")}));
  std::vector<std::string> said;
  std::size_t posts = 0;
  for (const auto& entry : mac.desktop().trace()) {
    if (entry.call.function == platform::Function::postToMain) ++posts;
    if (entry.call.function != platform::Function::setPanelLabel) continue;
    said.push_back(driver::unpack<std::string>(entry.call.arguments[2]));
  }
  EXPECT_EQ(posts, 1U);
  EXPECT_EQ(said, Titles{operating});
}

}  // namespace
