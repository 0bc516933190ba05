#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>

#include "mac.h"

namespace joined {
namespace {

std::string textOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// What scripts/record-world writes of applications in a world.
std::string recorded(const std::string& world, const std::vector<std::string>& applications) {
  std::vector<std::string> command = {simulatedMacPath(),
                                      "run",
                                      "--virtual",
                                      world,
                                      "--",
                                      DRIVER_SOURCE_DIR "/scripts/record-world"};
  command.insert(command.end(), applications.begin(), applications.end());
  const Finished finished = run(command, {{"DRIVER", driverPath()}});
  EXPECT_EQ(finished.status, 0) << finished.output << finished.errors;
  return finished.output;
}

/// Imports a file and gives the world's path.
std::string imported(const Folder& folder, const std::string& name, const std::string& text) {
  const std::string world = folder.path("imported.world");
  EXPECT_EQ(seen(run({simulatedMacPath(), "import", folder.file(name, text), "-o", world})),
            "0 {\"ok\":true,\"path\":\"" + world + "\"}\n");
  return world;
}

struct Seen {
  const char* world;
  std::vector<std::string> applications;
};

TEST(import, gives_a_world_that_is_seen_as_what_was_recorded) {
  const Seen cases[] = {
      {"demo/mail.world", {"Browser", "Mail"}}, {"demo/chat.world", {"Chat"}},
      {"demo/settings.world", {"Settings"}},    {"tests/worlds/chinese.world", {"备忘录"}},
      {"worlds/mail-client.world", {"Mail"}},   {"worlds/control-panel.world", {"Settings"}},
      {"worlds/editor.world", {"Editor"}},
  };
  for (const Seen& each : cases) {
    const Folder folder;
    const std::string path = std::string(DRIVER_SOURCE_DIR "/") + each.world;
    const std::string before = recorded(path, each.applications);
    const std::string world = imported(folder, "seen", before);
    EXPECT_EQ(recorded(world, each.applications), before) << each.world << textOf(world);
  }
}

TEST(import, keeps_strange_trees_as_they_are) {
  std::string text =
      "app Odd pid 41 unbundled frontmost\n"
      "  window 7 \"Two\" at 0,0 size 400x300\n"
      "    AXGroup \"Same\"\n"
      "      AXGroup \"Same\"\n"
      "        AXTextField \"Same\" at 1.5,2 size 3x4 value \"a \\\"b\\\" \\\\ \\n#;\" attribute "
      "AXChildren elements \"Leaf\" \"Leaf\"\n"
      "    AXStaticText \"Leaf\" value \"x\"\n"
      "    AXButton attribute AXRole \"no role\" subrole AXOdd\n"
      "  window 8 \"Two\" at 0,0 size 400x300 failing AXSubrole -25212\n"
      "    AXTextArea failing AXValue -25212\n"
      "      AXStaticText value \"line\"\n"
      "    AXCheckBox value true\n"
      "    AXSlider value 0.5\n"
      "    AXImage value \"7 of 9\"\n"
      "  window 9 at 10,10 size 90x90 no-element layer 3\n";
  const Folder folder;
  const std::string before = recorded(folder.file("world", text), {"Odd"});

  EXPECT_EQ(recorded(imported(folder, "seen", before), {"Odd"}), before);
}

TEST(import, reads_a_page_source) {
  const Folder folder;
  const std::string world = imported(folder, "source.xml",
                                     R"(<?xml version="1.0" encoding="UTF-8"?>
<Source>
 <XCUIElementTypeApplication elementType="2" title="Notes" bundleId="com.example.notes"
     x="0" y="0" width="0" height="0">
  <XCUIElementTypeWindow title="Inbox" identifier="main" x="100" y="80" width="800" height="600">
   <XCUIElementTypeButton title="Send" label="Sends &amp; closes" enabled="false"
       x="120" y="90" width="60" height="20"/>
   <XCUIElementTypeScrollView x="120" y="130" width="700" height="400">
    <XCUIElementTypeTextView value="Dear &quot;Ada&quot;&#10;" placeholderValue="Text"
        selected="true" x="120" y="130" width="700" height="400"/>
   </XCUIElementTypeScrollView>
   <XCUIElementTypeSearchField label="Find" value="" x="200" y="90.5" width="3" height="4"/>
   <XCUIElementTypeCheckBox title="Sign" value="1"/>
  </XCUIElementTypeWindow>
  <XCUIElementTypeMenuBar x="0" y="0" width="1440" height="24">
   <XCUIElementTypeMenuBarItem title="File" x="10" y="0" width="40" height="24"/>
  </XCUIElementTypeMenuBar>
 </XCUIElementTypeApplication>
</Source>
)");

  EXPECT_EQ(
      textOf(world),
      "# From a page source, which has no process ids and no numbers of windows (they are made "
      "up), no actions, and no application in front.\n"
      "app \"Notes\" pid 500 bundle \"com.example.notes\"\n"
      "  # The number of this window is made up.\n"
      "  window 1000 \"Inbox\" at 100,80 size 800x600 failing AXSubrole -25212 attribute "
      "AXIdentifier \"main\"\n"
      "   AXButton \"Send\" at 120,90 size 60x20 description \"Sends & closes\" disabled\n"
      "   AXScrollArea at 120,130 size 700x400\n"
      "    AXTextArea at 120,130 size 700x400 value \"Dear \\\"Ada\\\"\\n\" placeholder "
      "\"Text\" attribute AXSelected true\n"
      "   AXTextField \"Find\" at 200,90.5 size 3x4 value \"\" attribute AXSubrole "
      "\"AXSearchField\"\n"
      "   AXCheckBox \"Sign\" value 1\n"
      "  AXMenuBar at 0,0 size 1440x24\n"
      "   AXMenuBarItem \"File\" at 10,0 size 40x24\n");
  const std::string warned = run({simulatedMacPath(), "check", world}).output;
  EXPECT_EQ(warned.substr(warned.rfind('^')), "^\n1 world, 0 errors, 1 warning\n");
}

TEST(import, keeps_a_tree_that_is_thousands_deep) {
  std::string source = "<XCUIElementTypeApplication title=\"Deep\">";
  constexpr int depth = 3000;
  for (int i = 0; i < depth; ++i) source += "<XCUIElementTypeGroup label=\"Same\">";
  for (int i = 0; i < depth; ++i) source += "</XCUIElementTypeGroup>";
  source += "</XCUIElementTypeApplication>";
  const Folder folder;
  const std::string world = imported(folder, "source.xml", source);

  const Finished tree = run({simulatedMacPath(), "run", "--virtual", world, "--",
                             simulatedMacPath(), "tree", "Deep", "--text"});
  EXPECT_EQ(tree.status, 0);
  EXPECT_EQ(std::count(tree.output.begin(), tree.output.end(), '\n'), depth + 1);
}

TEST(import, says_what_it_cannot_read) {
  const Folder folder;
  const std::string world = folder.path("world");
  const auto error = [&](const std::string& text) {
    const std::string path = folder.file("seen", text);
    std::string told = seen(run({simulatedMacPath(), "import", path, "-o", world}));
    const std::size_t place = told.find(path);
    return place == told.npos ? told : told.replace(place, path.size(), "FILE");
  };
  const auto failure = [](const std::string& cause) {
    return "1 {\"error\":\"FILE" + cause + "\",\"ok\":false}\n";
  };
  EXPECT_EQ(error("{\"error\":\"app not running: X\",\"ok\":false}\n"),
            failure(", line 1: the command has failed"));
  EXPECT_EQ(error("\n{\"elements\":[],\"ok\":true}\n"),
            failure(", line 2: no reply of windows, or of ax-dump or ax-menubar behind one of "
                    "windows"));
  EXPECT_EQ(error("{\"ok\":true,"),
            failure(", line 1: no whole reply of windows, ax-dump or ax-menubar"));
  EXPECT_EQ(error("<a><b></a>"), failure(": no whole XML: Start-end tags mismatch"));
  EXPECT_EQ(error("<a/>"), failure(": no XCUIElementTypeApplication is in it"));
  EXPECT_EQ(seen(run({simulatedMacPath(), "import", world})),
            "1 {\"error\":\"usage: simulated-mac import FILE... -o WORLD\",\"ok\":false}\n");
}

}  // namespace
}  // namespace joined
