#include "tests/soak/resumption.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include "simulator/text/gathering.h"
#include "simulator/text/parse.h"
#include "tests/soak/judges.h"
#include "tests/support/temporary_folder.h"

/// A Mac goes on from a snapshot as if there had been none: at every step of the demo, and of runs
/// in the worlds that are shipped.
namespace {

using namespace soak;
using testing_support::TemporaryFolder;

std::string contentsOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string inSources(const std::string& path) { return DRIVER_SOURCE_DIR "/" + path; }

/// A case with the world of the file, and no steps.
Case caseOf(const std::string& path) {
  const simulator::WorldFiles files{
      path, [](const std::string& each) { return std::optional(contentsOf(each)); }};
  return readCase(simulator::withIncluded(contentsOf(path), files), "");
}

/// The words of a line of a shell's, as far as the demo's lines go.
std::vector<std::string> wordsOf(const std::string& line) {
  std::vector<std::string> words;
  bool isOpen = false;
  bool isQuoted = false;
  for (const char c : line) {
    if (c == '"') {
      isQuoted = !isQuoted;
      if (!std::exchange(isOpen, true)) words.emplace_back();
    } else if (c == ' ' && !isQuoted) {
      isOpen = false;
    } else {
      if (!std::exchange(isOpen, true)) words.emplace_back();
      words.back() += c;
    }
  }
  return words;
}

/// The runs of a script, `run WORDS` or `CU_WINDOW=TITLE run WORDS`.
std::vector<Step> stepsOf(const std::string& script) {
  std::vector<Step> steps;
  std::istringstream lines(contentsOf(inSources(script)));
  for (std::string line; std::getline(lines, line);) {
    std::vector<std::string> words = wordsOf(replaced(line, "$out", std::string(folderName)));
    Step step;
    step.after = 700'000;
    if (!words.empty() && words[0].starts_with("CU_WINDOW=")) {
      step.environment["CU_WINDOW"] = words[0].substr(10);
      words.erase(words.begin());
    }
    if (words.size() < 2 || words[0] != "run") continue;
    step.words.assign(words.begin() + 1, words.end());
    steps.push_back(std::move(step));
  }
  return steps;
}

std::string complaintOf(const Case& one) {
  const TemporaryFolder folder;
  const auto complaint = resumption(one, folder.path(""));
  return complaint ? complaint->judge + ": " + complaint->text : "";
}

TEST(resumption, changes_nothing_at_any_step_of_the_demo) {
  Case demo = caseOf(inSources("demo/desk.world"));
  demo.steps = stepsOf("scripts/demo");

  ASSERT_GT(demo.steps.size(), 60U);
  EXPECT_EQ(complaintOf(demo), "");
}

TEST(resumption, changes_nothing_at_any_step_of_the_demo_of_keys) {
  Case demo = caseOf(inSources("demo/keyboard.world"));
  demo.steps = stepsOf("scripts/demo-keyboard");

  ASSERT_GT(demo.steps.size(), 10U);
  EXPECT_EQ(complaintOf(demo), "");
}

/// Reads the application, clicks on what reacts in it, here and there, and writes.
void addSteps(const simulator::Application& application, std::vector<Step>& steps) {
  const std::string& name = *application.name;
  steps.push_back({.words = {"ax-dump", name}, .after = 1'300'000});
  std::size_t count = 0;
  for (const simulator::Element& each : application.elements) {
    const bool reacts = !each.onClick.empty() && each.frame && each.window != 0;
    if (!reacts || count++ % 5 != 0 || count > 60) continue;
    const auto x = std::to_string(static_cast<int>(each.frame->x + each.frame->width / 2));
    const auto y = std::to_string(static_cast<int>(each.frame->y + each.frame->height / 2));
    steps.push_back({.words = {"bg-click", name, x, y}, .after = 900'000});
    steps.push_back({.words = {"bg-scroll", name, x, y, "0", "-2"}, .after = 10'000});
    steps.push_back({.words = {"ax-press-exact", name, simulator::labelOf(each)}});
  }
  steps.push_back({.words = {"bg-type", name, "hello"}, .after = 2'100'000});
  steps.push_back({.words = {"bg-paste-files", name, "/a/picture.png"}, .after = 3'100'000});
}

std::vector<std::string> shippedWorlds() {
  std::vector<std::string> paths;
  for (const char* folder : {"worlds", "demo"}) {
    for (const auto& entry : std::filesystem::directory_iterator(inSources(folder))) {
      if (entry.path().extension() == ".world") paths.push_back(entry.path());
    }
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

class shipped_worlds : public testing::TestWithParam<std::string> {};

TEST_P(shipped_worlds, go_on_from_snapshots) {
  Case one = caseOf(GetParam());
  const simulator::World world = simulator::parseWorld(worldText(one));
  for (const auto& application : world.applications) {
    if (application.name) addSteps(application, one.steps);
  }

  EXPECT_EQ(complaintOf(one), "");
}

INSTANTIATE_TEST_SUITE_P(resumption, shipped_worlds, testing::ValuesIn(shippedWorlds()),
                         [](const auto& each) {
                           std::string name = std::filesystem::path(each.param).stem();
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

}  // namespace
