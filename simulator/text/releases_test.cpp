#include "simulator/text/releases.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "simulator/text/parse.h"
#include "tests/support/world_errors.h"

namespace simulator {
namespace {

using testing_support::errorOf;

/// The settings that the system has, as lines say them.
std::vector<std::string> settingsOf(std::string_view world) {
  std::vector<std::string> settings;
  const World read = parseWorld(world);
  for (const ReleaseSetting& setting : releaseSettings()) {
    if (isSet(read.system, setting)) settings.emplace_back(setting.phrase);
  }
  return settings;
}

using Lines = std::vector<std::string>;

TEST(releases, are_the_settings_that_they_stand_for) {
  EXPECT_EQ(settingsOf("macos 14"), (Lines{"recording-question never", "pasteboard-reads free",
                                           "key-taps given", "closed-window goes-on"}));
  EXPECT_EQ(settingsOf("macos 15"),
            (Lines{"recording-question before-capture", "pasteboard-reads free", "key-taps given",
                   "closed-window inactive"}));
  EXPECT_EQ(settingsOf("macos 26"),
            (Lines{"recording-question before-capture", "pasteboard-reads refused",
                   "key-taps given", "closed-window inactive"}));
  EXPECT_EQ(settingsOf(""), settingsOf("macos 14"));
}

TEST(releases, tell_versions_of_their_own) {
  EXPECT_EQ(parseWorld("macos 14").system.version, (process::Version{14, 7}));
  EXPECT_EQ(parseWorld("macos 15").system.version, (process::Version{15, 7}));
  EXPECT_EQ(parseWorld("macos 26").system.version, (process::Version{26, 5}));
  EXPECT_EQ(parseWorld("").system.version, (process::Version{14, 2}));
}

TEST(releases, are_not_chosen_by_a_version) {
  EXPECT_EQ(settingsOf("macos 26.1"), settingsOf(""));
  EXPECT_EQ(parseWorld("macos 26\nmacos 26.1").system.version, (process::Version{26, 1}));
  EXPECT_EQ(settingsOf("macos 26\nmacos 26.1"), settingsOf("macos 26"));
}

TEST(releases, set_each_thing_once) {
  std::map<std::string, std::array<int, releases.size()>> counts;
  for (const ReleaseSetting& setting : releaseSettings()) {
    const std::string phrase = setting.phrase;
    auto& count = counts[phrase.substr(0, phrase.find(' '))];
    for (std::size_t i = 0; i < releases.size(); ++i) count[i] += setting.isSetBy[i] ? 1 : 0;
  }
  EXPECT_EQ(counts.size(), 4U);
  for (const auto& [name, count] : counts) {
    EXPECT_EQ(count, (std::array<int, releases.size()>{1, 1, 1})) << name;
  }
}

TEST(releases, give_way_to_a_setting_of_a_later_line) {
  EXPECT_EQ(settingsOf("macos 26\nsystem recording-question never\n"
                       "system closed-window stopped\nsystem key-taps refused"),
            (Lines{"recording-question never", "pasteboard-reads refused", "key-taps refused",
                   "closed-window stopped"}));
  EXPECT_EQ(settingsOf("system pasteboard-reads hanging"),
            (Lines{"recording-question never", "pasteboard-reads hanging", "key-taps given",
                   "closed-window goes-on"}));
  EXPECT_EQ(settingsOf("system pasteboard-reads hanging\nmacos 15"), settingsOf("macos 15"));
}

TEST(releases, have_settings_that_are_lines_of_their_own) {
  const char* const lines[] = {
      "system recording-question never", "system recording-question before-capture",
      "system pasteboard-reads free",    "system pasteboard-reads refused",
      "system pasteboard-reads hanging", "system key-taps given",
      "system key-taps refused",         "system closed-window goes-on",
      "system closed-window inactive",   "system closed-window stopped"};
  EXPECT_EQ(std::size(lines), releaseSettings().size());
  for (const std::string line : lines) {
    const auto settings = settingsOf("macos 26\n" + line);
    const std::string setting = line.substr(line.find(' ') + 1);
    EXPECT_EQ(std::count(settings.begin(), settings.end(), setting), 1) << line;
    EXPECT_EQ(settings.size(), 4U) << line;
  }
}

TEST(releases, refuse_what_is_not_known) {
  const std::pair<const char*, const char*> cases[] = {
      {"macos 13",
       "unknown release '13'; those known are 14, 15, 26, beside versions such as 14.2"},
      {"system",
       "'system' needs one of recording-question, pasteboard-reads, key-taps, "
       "closed-window"},
      {"system taps",
       "unknown word 'taps'; expected recording-question, pasteboard-reads, "
       "key-taps, closed-window"},
      {"system key-taps", "'key-taps' needs given or refused"},
      {"system closed-window stops", "unknown word 'stops'; expected goes-on, inactive, stopped"},
      {"system key-taps given twice", "unexpected 'twice' at the end of the line"},
  };
  for (const auto& [text, cause] : cases) {
    EXPECT_EQ(errorOf(text), std::string("line 1: ") + cause) << text;
  }
}

}  // namespace
}  // namespace simulator
