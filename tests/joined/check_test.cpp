#include <gtest/gtest.h>

#include "mac.h"

namespace joined {
namespace {

Finished check(const std::vector<std::string>& words, const std::string& input = "") {
  std::vector<std::string> command = {simulatedMacPath(), "check"};
  command.insert(command.end(), words.begin(), words.end());
  return run(command, {}, input);
}

TEST(check, says_nothing_of_a_world_that_is_well) {
  EXPECT_EQ(
      seen(check({DRIVER_SOURCE_DIR "/demo/mail.world", DRIVER_SOURCE_DIR "/demo/chat.world",
                  DRIVER_SOURCE_DIR "/demo/desk.world", DRIVER_SOURCE_DIR "/demo/settings.world"})),
      "0 4 worlds, 0 errors, 0 warnings\n");
}

const std::string applicationWords =
    "pid, bundle, path, unbundled, unnamed, chromium, appkit, accessory, prohibited, frontmost, "
    "hidden, no-focused-window, hangs, answers, rejects-enabling, tree, attribute, failing, "
    "tracks, pastes";

TEST(check, shows_all_errors_with_the_part_of_the_line_and_what_was_meant) {
  const std::string world =
      "app Mail pid 41 frontmots\n"
      "    window 7 \"Posteingang — 収件箱\" at 0,0 size 400x\n"
      "        AXButton \"Send\" at 0,0 size 60x20 press: set Statsu \"a\"; show window \"B\"\n"
      "        AXStaticText \"Status\" at 0,30 size 60x20 value\n"
      "    windw 8\n"
      "        AXButton \"in vain\n"
      "file \"a\n"
      "at 1s quit Mial\n";

  EXPECT_EQ(seen(check({"-"}, world)),
            "1 standard input:1:17: error: unknown word 'frontmots'; expected " + applicationWords +
                "; did you mean 'frontmost'?\n"
                "app Mail pid 41 frontmots\n"
                "                ^~~~~~~~~\n"
                "standard input:2:46: error: 'size' needs WIDTHxHEIGHT, not '400x'\n"
                "    window 7 \"Posteingang — 収件箱\" at 0,0 size 400x\n"
                "                                                ^~~~\n"
                "standard input:3:54: error: no element of Mail is labelled \"Statsu\"; did you "
                "mean 'Status'?\n"
                "        AXButton \"Send\" at 0,0 size 60x20 press: set Statsu \"a\"; show window "
                "\"B\"\n"
                "                                                     ^~~~~~\n"
                "standard input:3:78: error: no window of Mail is titled \"B\"\n"
                "        AXButton \"Send\" at 0,0 size 60x20 press: set Statsu \"a\"; show window "
                "\"B\"\n"
                "                                                                             "
                "^~~\n"
                "standard input:4:55: error: 'value' needs a text, a number, true or false\n"
                "        AXStaticText \"Status\" at 0,30 size 60x20 value\n"
                "                                                      ^\n"
                "standard input:5:5: error: unknown word 'windw'; expected window, menu or an "
                "element's role such as AXButton; did you mean 'window'?\n"
                "    windw 8\n"
                "    ^~~~~\n"
                "standard input:7:6: error: a text lacks its closing quotation mark\n"
                "file \"a\n"
                "     ^~\n"
                "standard input:8:12: error: no application 'Mial' is running; did you mean "
                "'Mail'?\n"
                "at 1s quit Mial\n"
                "           ^~~~\n"
                "1 world, 8 errors, 0 warnings\n");
}

TEST(check, shows_every_name_in_a_line_that_names_nothing) {
  const std::string world =
      "app Mail pid 41 frontmost\n"
      "at 1s in Mail remove Lettr; set Statuss \"x\"\n";

  EXPECT_EQ(seen(check({"-"}, world)),
            "1 standard input:2:22: error: no element of Mail is labelled \"Lettr\"\n"
            "at 1s in Mail remove Lettr; set Statuss \"x\"\n"
            "                     ^~~~~\n"
            "standard input:2:33: error: no element of Mail is labelled \"Statuss\"\n"
            "at 1s in Mail remove Lettr; set Statuss \"x\"\n"
            "                                ^~~~~~~\n"
            "1 world, 2 errors, 0 warnings\n");
}

TEST(check, warns_of_what_is_hardly_meant) {
  const std::string world =
      "\xEF\xBB\xBF"
      "app A pid 1\n"
      "  window 7 at 0,0 size 100x100 subrole AXDialgo\n"
      "    AXButon \"Two\" at 90,0 size 20x20 actions AXPress,AXPres,none press: set Two \"\"\n"
      "    AXStaticText \"Two\" attribute AXTitel \"x\" failing AXHelp -25200\n"
      "    AXScrollArea at 0,0 size 100x100\n"
      "      AXRow at 0,5000 size 9x9\n";

  EXPECT_EQ(
      seen(check({"-"}, world)),
      "0 standard input:1:1: warning: a byte order mark stands before the text\n"
      "app A pid 1\n"
      "^\n"
      "standard input:1:1: warning: no application is in front\n"
      "app A pid 1\n"
      "^\n"
      "standard input:2:40: warning: macOS knows no subrole 'AXDialgo'; did you mean "
      "'AXDialog'?\n"
      "  window 7 at 0,0 size 100x100 subrole AXDialgo\n"
      "                                       ^~~~~~~~\n"
      "standard input:3:5: warning: it reaches out of its window\n"
      "    AXButon \"Two\" at 90,0 size 20x20 actions AXPress,AXPres,none press: set Two \"\"\n"
      "    ^\n"
      "standard input:3:5: warning: macOS knows no role 'AXButon'; did you mean "
      "'AXButton'?\n"
      "    AXButon \"Two\" at 90,0 size 20x20 actions AXPress,AXPres,none press: set Two \"\"\n"
      "    ^~~~~~~\n"
      "standard input:3:54: warning: macOS knows no action 'AXPres'; did you mean "
      "'AXPress'?\n"
      "    AXButon \"Two\" at 90,0 size 20x20 actions AXPress,AXPres,none press: set Two \"\"\n"
      "                                                     ^~~~~~\n"
      "standard input:3:77: warning: 2 elements are labelled \"Two\"; the first is meant\n"
      "    AXButon \"Two\" at 90,0 size 20x20 actions AXPress,AXPres,none press: set Two \"\"\n"
      "                                                                            ^~~\n"
      "standard input:4:34: warning: macOS knows no attribute 'AXTitel'; did you mean "
      "'AXTitle'?\n"
      "    AXStaticText \"Two\" attribute AXTitel \"x\" failing AXHelp -25200\n"
      "                                 ^~~~~~~\n"
      "1 world, 0 errors, 8 warnings\n");
}

TEST(check, warns_of_a_reaction_behind_one_with_a_condition) {
  const std::string world =
      "app A pid 1 frontmost\n"
      "  window 7 at 0,0 size 100x100\n"
      "    AXCheckBox \"On\" at 0,0 size 20x20 press: when On is 1 then quit; set Log \"x\"\n"
      "    AXStaticText \"Log\" at 0,30 size 20x20 press: set Log \"y\"; when On is 1 then quit; "
      "when On is not 1 then hang; after 1s set Log \"z\" right: hang; quit\n"
      "at 1s in A when On is 1 then hang; quit\n";

  EXPECT_EQ(
      seen(check({"-"}, world)),
      "0 standard input:3:70: warning: this takes place anyway: 'when' is about the one reaction "
      "before ';'\n"
      "    AXCheckBox \"On\" at 0,0 size 20x20 press: when On is 1 then quit; set Log \"x\"\n"
      "                                                                     ^~~\n"
      "standard input:5:36: warning: this takes place anyway: 'when' is about the one reaction "
      "before ';'\n"
      "at 1s in A when On is 1 then hang; quit\n"
      "                                   ^~~~\n"
      "1 world, 0 errors, 2 warnings\n");
}

TEST(check, tells_of_an_included_file_and_of_a_body_once) {
  const Folder folder;
  const std::string parts = folder.file("parts.world", "define Tool(label)\n  AXButton {lable}\n");
  const std::string world = folder.file(
      "a.world", "include \"parts.world\"\napp A pid 1 frontmost\n  use Tool(1)\n  use Tool(2)\n");

  EXPECT_EQ(seen(check({world})),
            "1 " + parts +
                ":2:12: error: no parameter is called 'lable'; did you mean 'label'? (used in line "
                "3 of the world)\n"
                "  AXButton {lable}\n"
                "           ^~~~~~~\n"
                "1 world, 1 error, 0 warnings\n");
  EXPECT_EQ(seen(run({simulatedMacPath(), "serve", world})),
            "1 STANDARD ERROR: {\"error\":\"" + parts +
                ", line 2: no parameter is called 'lable'; did you mean 'label'? (used in line 3 "
                "of the world); 1 more: simulated-mac check " +
                world + "\",\"ok\":false}\n");
}

TEST(check, prints_json_for_editors) {
  EXPECT_EQ(
      seen(check({"--json", "-"}, "app A pid 1 frontmost\n  AXButon\nquit 3\n")),
      "1 {\"ok\":false,\"problems\":[{\"column\":3,\"file\":\"standard input\",\"length\":7,"
      "\"line\":2,\"meant\":\"AXButton\",\"message\":\"macOS knows no role 'AXButon'; did you "
      "mean 'AXButton'?\",\"severity\":\"warning\",\"text\":\"  AXButon\"},{\"column\":1,"
      "\"file\":\"standard input\",\"length\":4,\"line\":3,\"message\":\"unknown word 'quit'; "
      "expected app, user, pointer, display, deny, session, missing, process, file, image, "
      "at, panel, seed, clock, keyboard, pasteboard, idle, languages, macos, system, directory, "
      "tool, "
      "link, "
      "define, use, repeat, include\",\"severity\":\"error\",\"text\":\"quit 3\"}]}\n");
}

TEST(check, takes_worlds_alone) {
  EXPECT_EQ(seen(check({})),
            "1 {\"error\":\"usage: simulated-mac check [--json] WORLD...\",\"ok\":false}\n");
  EXPECT_EQ(seen(check({"--jsn", "world"})),
            "1 {\"error\":\"usage: simulated-mac check [--json] WORLD...\",\"ok\":false}\n");
}

}  // namespace
}  // namespace joined
