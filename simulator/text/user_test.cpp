#include "simulator/text/user.h"

#include <gtest/gtest.h>

#include "simulator/text/parse.h"
#include "simulator/world/element_text.h"
#include "simulator/world/reactions.h"
#include "tests/support/world_errors.h"

namespace simulator {

namespace {

using testing_support::errorOf;

TEST(world_text_user, describes_the_users_side_of_the_mac) {
  const World world = parseWorld(R"(
    keyboard german
    idle 2.5s
    pasteboard item "public.utf8-plain-text" "hi" promises "com.example.lazy" "public.rtf" ""
    pasteboard item promises "com.example.lazy"
    languages zh-Hans,en
    macos 14.6
    directory "/tmp"
    tool "/bin/x" output ""
    tool "/bin/y" photo 6
    link "/a" to "b")");

  EXPECT_EQ(world.keyboard.layout, KeyboardLayout::german);
  EXPECT_EQ(world.activity.before, 2'500'000);
  EXPECT_EQ(
      readableItems(world.pasteboard),
      (std::vector<pasteboard::Item>{{{"public.utf8-plain-text", "hi"}, {"public.rtf", ""}}, {}}));
  EXPECT_EQ(world.system.languages, (std::vector<std::string>{"zh-Hans", "en"}));
  EXPECT_EQ(world.system.version, (process::Version{14, 6}));
  EXPECT_EQ(world.system.directory, "/tmp");
  EXPECT_EQ(world.system.tools.at("/bin/x"), "");
  EXPECT_EQ(world.system.tools.at("/bin/y"), "JPEGPhoto:\n ffd8ffe0 1c23\n");
  EXPECT_EQ(world.system.links.at("/a"), "b");
}

TEST(world_text_user, shows_a_panel_of_the_service) {
  const World world = parseWorld(R"(
    app Notes pid 41 frontmost
        window 7 "Inbox" at 100,80 size 800x600
    panel pid 50 window 60 over 7)");

  const Application& service = world.applications.at(1);
  EXPECT_EQ(service.bundleIdentifier, "com.apple.appkit.xpc.openAndSavePanelService");
  EXPECT_EQ(service.policy, workspace::ActivationPolicy::accessory);
  const Window& panel = *findWindow(world, 60);
  EXPECT_EQ(panel.owner, 50);
  EXPECT_EQ(panel.frame, (Rect{100, 80, 480, 200}));
  EXPECT_EQ(labelOf(*findElement(service, service.focusedElement)), "Save As:");
  EXPECT_EQ(findElement(service, service.focusedWindow)->window, 60U);
  EXPECT_EQ(world.frontmost, 41);
}

TEST(world_text_user, describes_how_applications_take_keys_and_pastes) {
  const World world = parseWorld(R"(
    app Notes pid 41 pastes after 1s
        menu Edit > Paste cmd v
        window 7 "Inbox" at 0,0 size 9x9 unnumbered
            AXTextField "To" takes files submit: set To "sent"; close window press: paste)");

  const Application& notes = world.applications.at(0);
  EXPECT_EQ(notes.pasteDelay, 1'000'000);
  EXPECT_TRUE(findWindow(world, 7)->numberHidden);
  const Element& field = notes.elements.back();
  EXPECT_TRUE(notes.habits.at(field.id).takesFiles);
  EXPECT_EQ(field.onSubmit.size(), 2U);
  EXPECT_EQ(field.onClick.at(0).effect, &reactions::paste);
  EXPECT_EQ(notes.elements.at(3).onClick.at(0).effect, &reactions::paste);
}

TEST(world_text_user, refuses_what_it_cannot_read) {
  const std::pair<const char*, const char*> cases[] = {
      {"keyboard", "'keyboard' needs one of us, german, french, japanese"},
      {"keyboard dvorak", "unknown word 'dvorak'; expected us, german, french, japanese"},
      {"pasteboard", "'pasteboard' needs 'item' after it"},
      {"pasteboard item", "'item' needs a quoted type"},
      {"pasteboard item \"a\"", "'item' needs quoted data behind each type"},
      {"pasteboard item promises", "'promises' needs a quoted type"},
      {"idle", "'idle' needs a time such as 250us, 100ms or 1.5s"},
      {"languages en,,de", "'languages' has an empty tag in 'en,,de'"},
      {"macos 14.", "'macos' needs a version such as 14.2, not '14.'"},
      {"macos x.y", "'macos' needs a version such as 14.2, not 'x.y'"},
      {"directory tmp", "'directory' needs a quoted path, not 'tmp'"},
      {"tool \"/a\"", "'tool' needs output or photo behind its path"},
      {"tool \"/a\" photo -1", "'photo' needs a number of bytes, not '-1'"},
      {"link \"/a\" \"/b\"", "'link' needs 'to' after it, not \"/b\""},
      {"panel pid 5 window 6 over 7", "no window 7 stands above"},
      {"panel 5", "'panel' needs 'pid' after it, not '5'"},
      {"idle never today", "unexpected 'today' at the end of the line"},
  };
  for (const auto& [text, cause] : cases) {
    EXPECT_EQ(errorOf(text), std::string("line 1: ") + cause) << text;
  }
  const std::string app = "app A pid 1\n  window 7 at 0,0 size 9x9\n";
  EXPECT_EQ(errorOf(app + "panel pid 1 window 8 over 7"), "line 3: process id 1 is taken");
  EXPECT_EQ(errorOf(app + "panel pid 2 window 7 over 7"), "line 3: window number 7 is taken");
}

}  // namespace

}  // namespace simulator
