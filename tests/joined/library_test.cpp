#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "mac.h"

namespace joined {
namespace {

std::vector<std::string> library() {
  std::vector<std::string> paths;
  for (const auto& entry : std::filesystem::directory_iterator(DRIVER_SOURCE_DIR "/worlds")) {
    if (entry.path().extension() == ".world") paths.push_back(entry.path().string());
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

TEST(world_library, has_nothing_to_complain_of) {
  std::vector<std::string> command = {simulatedMacPath(), "check"};
  const auto paths = library();
  command.insert(command.end(), paths.begin(), paths.end());

  EXPECT_EQ(seen(run(command)), "0 7 worlds, 0 errors, 0 warnings\n");
}

TEST(world_library, is_of_the_size_of_real_applications) {
  for (const std::string& path : library()) {
    const Finished tree = run(
        {simulatedMacPath(), "run", "--virtual", path, "--", simulatedMacPath(), "tree", "--text"});
    const auto lines = std::count(tree.output.begin(), tree.output.end(), '\n');
    EXPECT_GE(lines, 150) << path;
    EXPECT_LE(lines, 600) << path;
  }
}

TEST(world_library, is_alive) {
  for (const std::string& path : library()) {
    const Finished changed = run({simulatedMacPath(), "run", "--virtual", path, "--", "sh", "-c",
                                  "$MAC wait 0s; before=$($MAC tree); $MAC wait 9s; test "
                                  "\"$($MAC tree)\" != \"$before\"; echo $?; $MAC journal --text |"
                                  " grep -cE 'nothing labelled|no element'"},
                                 {{"MAC", simulatedMacPath()}});
    const std::string ending = "\n0\n0\n";
    EXPECT_EQ(changed.output.substr(changed.output.size() - ending.size()), ending) << path;
  }
}

}  // namespace
}  // namespace joined
