#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "mac.h"
#include "worlds.h"

namespace joined {
namespace {

std::string bytesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

TEST(snapshot, makes_a_mac_that_goes_on_where_the_other_one_was) {
  const Folder folder;
  const ServedMac mac(notes);
  mac.driver({"bg-click", "Notes", "150", "100"});
  mac.command({"user", "copy", "newer"});
  mac.command({"advance", "1.5s"});

  EXPECT_EQ(seen(mac.command({"snapshot", folder.path("world")})),
            "0 {\"ok\":true,\"path\":\"" + folder.path("world") + "\"}\n");
  const ServedMac after(bytesOf(folder.path("world")));

  for (const char* what : {"state", "tree"}) {
    EXPECT_EQ(seen(after.command({what})), seen(mac.command({what})));
  }
  mac.command({"screenshot", folder.path("before.png")});
  after.command({"screenshot", folder.path("after.png")});
  EXPECT_EQ(bytesOf(folder.path("after.png")), bytesOf(folder.path("before.png")));
  EXPECT_EQ(seen(after.driver({"bg-click", "Notes", "150", "100"})),
            seen(mac.driver({"bg-click", "Notes", "150", "100"})));
  EXPECT_EQ(seen(after.driver({"ax-dump", "Notes"})), seen(mac.driver({"ax-dump", "Notes"})));
  EXPECT_EQ(seen(after.command({"state"})), seen(mac.command({"state"})));
}

TEST(snapshot, is_a_world_without_a_fault) {
  const Folder folder;
  const ServedMac mac(notes);
  mac.driver({"bg-click", "Notes", "150", "100"});
  mac.command({"snapshot", folder.path("world")});

  EXPECT_EQ(seen(run({simulatedMacPath(), "check", folder.path("world")})),
            "0 1 world, 0 errors, 0 warnings\n");
}

TEST(snapshot, of_the_end_of_a_run_is_written_by_itself) {
  const Folder folder;
  const std::string world = folder.file("notes.world", notes);
  const std::string path = folder.path("end");

  EXPECT_EQ(seen(run({simulatedMacPath(), "run", "--virtual", "--snapshot", path, world, "--",
                      driverPath(), "bg-click", "Notes", "150", "100"})),
            "0 {\"changed\":true,\"ok\":true,\"via\":\"background\",\"window\":7}\n");
  const ServedMac after(bytesOf(path));

  EXPECT_EQ(seen(after.command({"value", "Notes", "Body"})),
            "0 {\"element\":3,\"ok\":true,\"role\":\"AXTextArea\",\"value\":\"hello sent\","
            "\"window\":7}\n");
}

TEST(snapshot, that_cannot_be_written_says_why_and_leaves_the_status_to_the_command) {
  const Folder folder;
  const std::string world = folder.file("notes.world", notes);
  const std::string path = folder.path("none/end");

  const Finished finished =
      run({simulatedMacPath(), "run", "--virtual", "--snapshot", path, world, "--", "true"});

  EXPECT_EQ(finished.status, 0);
  EXPECT_EQ(finished.errors,
            "{\"error\":\"cannot write " + path + ": No such file or directory\",\"ok\":false}\n");
  const ServedMac mac(notes);
  EXPECT_EQ(seen(mac.command({"snapshot", path})),
            failure("cannot write " + path + ": No such file or directory"));
}

}  // namespace
}  // namespace joined
