#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "simulator/text/parse.h"

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

TEST(world_documents, every_example_of_the_manual_can_be_read) {
  std::ifstream file(DRIVER_SOURCE_DIR "/docs/WORLDS.md", std::ios::binary);
  const std::string page{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};

  const std::vector<std::string> worlds = worldsIn(page);

  ASSERT_FALSE(worlds.empty());
  for (const std::string& world : worlds) EXPECT_NO_THROW(parseWorld(world)) << world;
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
