#include "tests/oracle/oracle.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "simulator/text/parse.h"
#include "tests/oracle/cases.h"
#include "tests/oracle/effects.h"
#include "tests/oracle/random_world.h"
#include "tests/support/every_command.h"
#include "tests/support/simulated_run.h"
#include "tests/support/temporary_folder.h"

/// What the product replies and does, held against what the oracle says.
namespace oracle {

namespace {

using testing_support::Mode;
using testing_support::TestMac;

/// What became of the cases of a world.
struct Tally {
  std::size_t cases = 0;
  std::size_t judged = 0;
  std::map<std::string, std::size_t> silences;
  std::map<std::string, std::size_t> successes;                 // by command
  std::map<std::string, std::vector<std::string>> differences;  // by command
};

std::string difference(const Expectation& expectation, const testing_support::Result& run) {
  std::string text;
  const std::string wanted = std::to_string(expectation.status) + " " + expectation.output;
  if (wanted != seen(run)) text += "  oracle:  " + wanted + "  product: " + seen(run);
  if (expectation.elapsed && *expectation.elapsed != run.elapsed) {
    text += "  oracle takes " + std::to_string(*expectation.elapsed) + " us, product " +
            std::to_string(run.elapsed) + "\n";
  }
  const std::string effects = comparableEffects(run.effects);
  if (expectation.effects && *expectation.effects != effects) {
    text += "  oracle's effects:\n" + *expectation.effects + "  product's:\n" + effects;
  }
  return text;
}

void judge(TestMac& mac, const Case& each, Tally& tally) {
  ++tally.cases;
  Silence why{};
  const auto expectation = expected(mac.desktop().mac(), each.arguments, each.environment, &why);
  if (!expectation) {
    ++tally.silences[nameOf(why)];
    return;
  }
  ++tally.judged;
  const auto run = mac.driverWith(each.arguments, each.environment);
  const std::string found = difference(*expectation, run);
  const std::string command = each.arguments.empty() ? "" : each.arguments[0];
  if (run.output.find("\"ok\":true") != std::string::npos) ++tally.successes[command];
  if (!found.empty()) tally.differences[command].push_back(described(each) + "\n" + found);
}

/// Judges every `step`-th case of the world from the one numbered `first` on, each on a Mac of its
/// own.
Tally judgeAll(const simulator::World& world, std::size_t first = 0, std::size_t step = 1) {
  const testing_support::TemporaryFolder folder;
  const auto cases = casesOf(world, folder.path(""));
  Tally tally;
  for (std::size_t i = first; i < cases.size(); i += step) {
    TestMac mac(world, {}, Mode::direct);
    judge(mac, cases[i], tally);
  }
  return tally;
}

/// For people: how far the oracle sees.
void print(const Tally& tally) {
  std::cout << tally.judged << " of " << tally.cases << " cases judged";
  for (const auto& [why, count] : tally.silences) std::cout << "; " << why << ": " << count;
  std::cout << "\n";
  for (const auto& [command, count] : tally.successes) std::cout << command << " " << count << "  ";
  std::cout << "\n";
}

void report(const Tally& tally, std::size_t judgedPercentMin = 30) {
  if (std::getenv("ORACLE_TALLY") != nullptr) print(tally);
  for (const auto& [command, found] : tally.differences) {
    ADD_FAILURE() << command << ": " << found.size() << " differences, the first:\n" << found[0];
  }
  EXPECT_GE(100 * tally.judged, judgedPercentMin * tally.cases);
}

std::string contentsOf(const std::filesystem::path& path) {
  std::stringstream contents;
  contents << std::ifstream(path).rdbuf();
  return contents.str();
}

std::vector<std::string> worldFiles() {
  std::vector<std::string> files;
  for (const char* folder : {"tests/worlds", "demo"}) {
    for (const auto& entry :
         std::filesystem::directory_iterator(std::filesystem::path(DRIVER_SOURCE_DIR) / folder)) {
      if (entry.path().extension() == ".world") files.push_back(entry.path().string());
    }
  }
  std::sort(files.begin(), files.end());
  return files;
}

class world_files : public testing::TestWithParam<std::string> {};

TEST_P(world_files, reply_as_the_reference_says) {
  report(judgeAll(simulator::parseWorld(contentsOf(GetParam()))));
}

std::string testName(const testing::TestParamInfo<std::string>& info) {
  const std::filesystem::path file(info.param);
  return file.parent_path().filename().string() + "_" + file.stem().string();
}

INSTANTIATE_TEST_SUITE_P(oracle, world_files, testing::ValuesIn(worldFiles()), testName);

/// The worlds that stand in a page, each between its fences.
std::vector<std::string> worldsOfPage(const std::string& page) {
  std::vector<std::string> worlds;
  const std::string fence = "```world\n";
  for (std::size_t start = page.find(fence); start != std::string::npos;) {
    const std::size_t end = page.find("```\n", start + fence.size());
    worlds.push_back(page.substr(start + fence.size(), end - start - fence.size()));
    start = page.find(fence, end);
  }
  return worlds;
}

TEST(oracle_worlds, of_the_pages_reply_as_the_reference_says) {
  for (const char* name : {"WORLDS.md", "WORLD_REFERENCE.md"}) {
    const auto page = contentsOf(std::filesystem::path(DRIVER_SOURCE_DIR) / "docs" / name);
    const auto worlds = worldsOfPage(page);
    EXPECT_GT(worlds.size(), 1U);
    for (const std::string& world : worlds) {
      SCOPED_TRACE(world);
      report(judgeAll(simulator::parseWorld(world)), 0);
    }
  }
}

/// A world of the conformance scenarios: its template, with the frames of the layout in it.
std::string conformanceWorld(bool withPanel) {
  const auto folder = std::filesystem::path(DRIVER_SOURCE_DIR) / "tests" / "conformance";
  std::string world = contentsOf(folder / "worlds" / "fixture.world.in");
  if (withPanel) world += contentsOf(folder / "worlds" / "panel.world.in");
  const auto layout = nlohmann::json::parse(contentsOf(folder / "layout.json"));
  std::map<std::string, std::string> words = {{"hidden", ""},
                                              {"focused", withPanel ? "" : "focused"}};
  for (const char* kind : {"slots", "windows"}) {
    for (const auto& [name, frame] : layout.at(kind).items()) {
      const auto number = [&place = frame](std::size_t i) {
        return std::to_string(place.at(i).get<int>());
      };
      const std::string word = std::string(kind) == "windows" ? "window " + name : name;
      words[word] = "at " + number(0) + "," + number(1) + " size " + number(2) + "x" + number(3);
    }
  }
  world = world.substr(world.find("user "));  // the comments name words too
  for (std::size_t start = world.find('{'); start != std::string::npos; start = world.find('{')) {
    const std::size_t end = world.find('}', start);
    world.replace(start, end - start + 1, words.at(world.substr(start + 1, end - start - 1)));
  }
  return world;
}

TEST(oracle_worlds, of_the_conformance_fixture_reply_as_the_reference_says) {
  for (const bool withPanel : {false, true}) {
    SCOPED_TRACE(withPanel);
    report(judgeAll(simulator::parseWorld(conformanceWorld(withPanel))));
  }
}

TEST(oracle_worlds, of_every_command_reply_as_the_reference_says) {
  report(judgeAll(testing_support::deskOfEveryCommand()));
}

class random_worlds : public testing::TestWithParam<std::uint64_t> {};

TEST_P(random_worlds, reply_as_the_reference_says) {
  const std::string world = randomWorld(GetParam());
  SCOPED_TRACE(world);
  report(judgeAll(simulator::parseWorld(world), GetParam() % 8, 8));
}

/// Many commands one after the other on one Mac, as an agent gives them.
TEST_P(random_worlds, reply_in_a_session_as_the_reference_says) {
  const std::string world = randomWorld(GetParam());
  SCOPED_TRACE(world);
  TestMac mac(simulator::parseWorld(world), {}, Mode::direct);
  const testing_support::TemporaryFolder folder;
  const auto cases = casesOf(mac.world(), folder.path(""));
  Tally tally;
  std::uint64_t place = GetParam();
  for (int i = 0; i < 150; ++i) {
    place = place * 6364136223846793005U + 1442695040888963407U;
    judge(mac, cases[(place >> 33) % cases.size()], tally);
  }
  report(tally, 0);
}

/// Others than the first ones, for as many as one likes.
std::uint64_t firstSeed() {
  const char* const seed = std::getenv("ORACLE_FIRST_SEED");
  return seed == nullptr ? 0 : std::stoull(seed);
}

INSTANTIATE_TEST_SUITE_P(oracle, random_worlds,
                         testing::Range<std::uint64_t>(firstSeed(), firstSeed() + 60));

}  // namespace

}  // namespace oracle
