#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

#include "simulator/text/habits.h"
#include "simulator/text/happenings.h"
#include "simulator/text/parse.h"
#include "simulator/text/reactions.h"

namespace simulator {

namespace {

constexpr std::string_view fence = "```";

/// The fenced examples of a page that are worlds.
std::vector<std::string> worldsIn(const std::string& page) {
  const std::string opening = std::string(fence) + "world\n";
  std::vector<std::string> worlds;
  std::size_t start = page.find(opening);
  while (start != page.npos) {
    start += opening.size();
    const std::size_t end = page.find(fence, start);
    worlds.push_back(page.substr(start, end - start));
    start = page.find(opening, end);
  }
  return worlds;
}

/// The examples of the manual.
std::vector<std::string> examples() {
  std::vector<std::string> worlds;
  for (const char* page : {"/docs/WORLDS.md", "/docs/WORLD_REFERENCE.md"}) {
    std::ifstream file(std::string(DRIVER_SOURCE_DIR) + page, std::ios::binary);
    const auto found =
        worldsIn({std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()});
    worlds.insert(worlds.end(), found.begin(), found.end());
  }
  return worlds;
}

TEST(world_documents, every_example_of_the_manual_can_be_read) {
  const std::vector<std::string> worlds = examples();

  ASSERT_FALSE(worlds.empty());
  for (const std::string& world : worlds) EXPECT_NO_THROW(parseWorld(world)) << world;
}

TEST(world_documents, the_examples_show_every_happening_and_what_is_written_of_it_is_read_back) {
  std::set<std::string> shown;
  for (const std::string& text : examples()) {
    const World world = parseWorld(text);
    for (const Scripted& scripted : world.script) {
      const std::string written = happeningText(scripted.happening);
      EXPECT_EQ(happeningText(parseHappening(written, world)), written);
      shown.insert(scripted.happening.kind->phrase);
    }
  }
  for (const HappeningKind& kind : happeningKinds())
    EXPECT_TRUE(shown.contains(kind.phrase)) << kind.phrase;
}

/// Whether an element's line of the examples has these words behind a blank.
bool anElementHas(const std::string& phrase) {
  for (const std::string& text : examples()) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
      const std::size_t first = line.find_first_not_of(' ');
      if (first == line.npos || line.compare(first, 2, "AX") != 0) continue;
      if ((line + ' ').find(' ' + phrase + ' ', first) != line.npos) return true;
      if (line.find(' ' + phrase + ';', first) != line.npos) return true;
    }
  }
  return false;
}

TEST(world_documents, the_examples_show_every_habit_and_every_reaction) {
  for (const Habit& habit : habits()) EXPECT_TRUE(anElementHas(habit.phrase)) << habit.phrase;
  for (const ReactionKind& kind : reactionKinds())
    EXPECT_TRUE(anElementHas(kind.phrase)) << kind.phrase;
}

TEST(world_documents, every_world_of_the_tests_can_be_read) {
  std::vector<std::string> read;
  for (const auto& entry : std::filesystem::directory_iterator(DRIVER_SOURCE_DIR "/tests/worlds")) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    EXPECT_NO_THROW(parseWorld(text)) << entry.path();
    read.push_back(entry.path().filename().string());
  }
  std::sort(read.begin(), read.end());

  EXPECT_EQ(read, (std::vector<std::string>{"chat.world", "chinese.world", "mail.world",
                                            "settings.world", "table.world"}));
}

}  // namespace

}  // namespace simulator
