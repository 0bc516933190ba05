#include "simulator/text/parse.h"

#include <gtest/gtest.h>

#include <cmath>

#include "simulator/text/happenings.h"
#include "simulator/text/reactions.h"
#include "simulator/world/reactions.h"

namespace simulator {

namespace {

/// The first element of the first application of a world with this one element line.
Element elementOf(const std::string& line) {
  const World world = parseWorld("app Notes pid 41\n  window 7 at 0,0 size 9x9\n    " + line);
  return world.applications[0].elements[1];
}

std::vector<WindowNumber> numbersOf(const World& world) {
  std::vector<WindowNumber> numbers;
  for (const Window& window : world.windows) numbers.push_back(window.number);
  return numbers;
}

using Attributes = std::map<std::string, AttributeValue>;

std::string phraseOf(const Reaction& reaction) {
  for (const ReactionKind& kind : reactionKinds()) {
    if (kind.effect == reaction.effect) return kind.phrase;
  }
  return "";
}

TEST(world_text, a_seed_is_a_number_and_stands_once) {
  EXPECT_EQ(parseWorld("seed 7").seed, 7U);
  EXPECT_EQ(parseWorld("").seed, std::nullopt);
  EXPECT_THROW(parseWorld("seed -1"), WorldError);
  EXPECT_THROW(parseWorld("seed 1\nseed 2"), WorldError);
}

TEST(world_text, an_empty_text_is_a_mac_with_one_display_and_nobody_in_front) {
  const World world = parseWorld("");

  ASSERT_EQ(world.displays.size(), 1u);
  EXPECT_EQ(world.displays[0].id, 1u);
  EXPECT_EQ(world.displays[0].frame, (Rect{0, 0, 1440, 900}));
  EXPECT_EQ(world.displays[0].scale, 2);
  EXPECT_TRUE(world.displays[0].modeReadable);
  EXPECT_EQ(world.frontmost, 0);
  EXPECT_EQ(world.user.fullName, "Ada Lovelace");
  EXPECT_EQ(world.session.locked, std::nullopt);
  EXPECT_EQ(world.session.onConsole, true);
  EXPECT_TRUE(world.accessibilityAllowed && world.screenRecordingAllowed);
}

TEST(world_text, statements_set_the_mac_up) {
  const World world = parseWorld(R"(
    # a comment
    user "Grace \"Amazing\" Hopper" login grace unparsable
    pointer 300,200.5
    display 1 1440x900 scale 2
    display 2 1920x1080 at -1920,0 mode unreadable
    deny accessibility
    deny screen-recording
    session locked off-console unreadable
    missing SLEventPostToPid
    missing "SkyLight"
    process 900
    file "/some/path"
    image "/path/face.png"
  )");

  EXPECT_EQ(world.user.fullName, "Grace \"Amazing\" Hopper");
  EXPECT_EQ(world.user.loginName, "grace");
  EXPECT_FALSE(world.user.nameParses);
  EXPECT_EQ(world.pointer, (Point{300, 200.5}));
  ASSERT_EQ(world.displays.size(), 2u);
  EXPECT_EQ(world.displays[1].frame, (Rect{-1920, 0, 1920, 1080}));
  EXPECT_EQ(world.displays[1].scale, 1);
  EXPECT_FALSE(world.displays[1].modeReadable);
  EXPECT_FALSE(world.accessibilityAllowed);
  EXPECT_FALSE(world.screenRecordingAllowed);
  EXPECT_EQ(world.session.locked, true);
  EXPECT_EQ(world.session.onConsole, false);
  EXPECT_FALSE(world.session.readable);
  EXPECT_EQ(world.missing, (std::set<std::string>{"SLEventPostToPid", "SkyLight"}));
  EXPECT_EQ(world.processes, (std::set<Pid>{900}));
  EXPECT_EQ(world.files, (std::set<std::string>{"/some/path"}));
  EXPECT_EQ(world.images, (std::set<std::string>{"/path/face.png"}));
}

TEST(world_text, a_session_can_lack_its_console_key) {
  EXPECT_EQ(parseWorld("session without-console-key").session.onConsole, std::nullopt);
}

TEST(world_text, applications_have_names_bundles_and_ways) {
  const World world = parseWorld(R"(
    app Browser pid 40 bundle com.example.browser chromium frontmost rejects-enabling
    app "Two Words" pid 41 accessory path "/X.app" answers after 50ms
    app Odd pid 42 unnamed prohibited hangs tree after 1.5s appkit
    app Bare pid 43 unbundled hidden attribute AXFoo 3 failing AXWindows -25204
  )");

  const auto& all = world.applications;
  ASSERT_EQ(all.size(), 4u);
  EXPECT_EQ(world.frontmost, 40);
  EXPECT_EQ(all[0].bundleIdentifier, "com.example.browser");
  EXPECT_EQ(all[0].bundlePath, "/Applications/Browser.app");
  EXPECT_EQ(all[0].kind, ApplicationKind::chromium);
  EXPECT_EQ(all[0].policy, workspace::ActivationPolicy::regular);
  EXPECT_TRUE(all[0].rejectsEnabling);
  EXPECT_EQ(all[1].name, "Two Words");
  EXPECT_EQ(all[1].policy, workspace::ActivationPolicy::accessory);
  EXPECT_EQ(all[1].answerDelay, 50'000);
  EXPECT_EQ(all[2].name, std::nullopt);
  EXPECT_EQ(all[2].policy, workspace::ActivationPolicy::prohibited);
  EXPECT_TRUE(all[2].hangs && all[2].treeOnDemand);
  EXPECT_EQ(all[2].treeDelay, 1'500'000);
  EXPECT_EQ(all[3].bundlePath, std::nullopt);
  EXPECT_TRUE(all[3].hidden);
  EXPECT_EQ(all[3].attributes, (Attributes{{"AXFoo", std::int64_t{3}}}));
  EXPECT_EQ(all[3].failing,
            (std::map<std::string, ax::Error>{{"AXWindows", ax::Error::cannotComplete}}));
  EXPECT_EQ(world.files, (std::set<std::string>{
                             "/Applications/Browser.app/Contents/Frameworks/Browser "
                             "Framework.framework/Resources/chrome_100_percent.pak",
                             "/X.app/Contents/Info.plist",
                             "/Applications/Odd.app/Contents/Info.plist",
                         }));
}

TEST(world_text, indentation_is_the_hierarchy_whatever_its_depth) {
  const World world = parseWorld(
      "   app Notes pid 41\n"
      "\n"
      "      window 7 at 0,0 size 100x100\n"
      "       AXGroup\n"
      "          AXButton \"A\"\r\n"
      "          # a comment anywhere\n"
      "   # and here\n"
      "          AXButton \"B\"\n"
      "       AXButton \"C\"\n"
      "      AXMenuBar\n"
      "   process 900");

  const Application& notes = world.applications[0];
  ASSERT_EQ(notes.elements.size(), 6u);
  EXPECT_EQ(notes.windows, (std::vector<ElementId>{1}));
  EXPECT_EQ(notes.elements[0].children, (std::vector<ElementId>{2, 5}));
  EXPECT_EQ(notes.elements[1].children, (std::vector<ElementId>{3, 4}));
  EXPECT_EQ(notes.elements[3].parent, 2);
  EXPECT_EQ(notes.elements[3].window, 7u);
  EXPECT_EQ(notes.elements[5].role, "AXMenuBar");
  EXPECT_EQ(notes.elements[5].parent, 0);
  EXPECT_EQ(notes.elements[5].window, 0u);
}

TEST(world_text, windows_show_themselves_to_accessibility) {
  const World world = parseWorld(R"(
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 800x600 subrole AXDialog attribute AXModal true
        window 8 at 1,2 size 3x4 layer 3 off-screen not-capturable no-element
        window 9 at 1,2 size 3x4 failing AXTitle -25204 focused
  )");

  const Application& notes = world.applications[0];
  const Window& inbox = *findWindow(world, 7);
  EXPECT_EQ(inbox.owner, 41);
  EXPECT_EQ(inbox.title, "Inbox");
  EXPECT_EQ(inbox.frame, (Rect{100, 80, 800, 600}));
  EXPECT_EQ(inbox.element, 1);
  EXPECT_TRUE(inbox.onScreen && inbox.capturable);
  EXPECT_EQ(notes.elements[0].role, "AXWindow");
  EXPECT_EQ(notes.elements[0].frame, inbox.frame);
  EXPECT_EQ(notes.elements[0].attributes, (Attributes{{"AXModal", true},
                                                      {"AXSubrole", std::string("AXDialog")},
                                                      {"AXTitle", std::string("Inbox")}}));
  const Window& palette = *findWindow(world, 8);
  EXPECT_EQ(palette.title, std::nullopt);
  EXPECT_EQ(palette.layer, 3);
  EXPECT_EQ(palette.element, 0);
  EXPECT_FALSE(palette.onScreen || palette.capturable);
  EXPECT_EQ(notes.windows, (std::vector<ElementId>{1, 2}));
  EXPECT_EQ(notes.focusedWindow, 2);
  EXPECT_EQ(world.lastWindow, 9u);
}

TEST(world_text, windows_lie_by_layer_then_behind_the_front_application_then_as_written) {
  const World world = parseWorld(R"(
    app A pid 1
        window 1 at 0,0 size 9x9
        window 2 at 0,0 size 9x9 layer 5
    app B pid 2 frontmost
        window 3 at 0,0 size 9x9
        window 4 at 0,0 size 9x9 layer 5
        window 5 at 0,0 size 9x9
        window 6 at 0,0 size 9x9 layer -1
  )");

  EXPECT_EQ(numbersOf(world), (std::vector<WindowNumber>{4, 2, 3, 5, 1, 6}));
}

TEST(world_text, windows_of_a_hidden_application_are_off_screen) {
  const World world = parseWorld("app A pid 1 hidden\n  window 1 at 0,0 size 9x9");

  EXPECT_FALSE(world.windows[0].onScreen);
}

TEST(world_text, the_focused_window_is_the_marked_one_else_the_focused_elements_else_the_first) {
  const std::string head = "app A pid 1 ";
  const std::string first = "\n  window 1 at 0,0 size 9x9 no-element\n  window 2 at 0,0 size 9x9 ";
  const std::string last = "\n  window 3 at 0,0 size 9x9 ";
  const auto focused = [](const std::string& text) {
    return parseWorld(text).applications[0].focusedWindow;
  };

  EXPECT_EQ(focused(head + first + last), 1);
  EXPECT_EQ(focused(head + first + last + "focused"), 2);
  EXPECT_EQ(focused(head + first + last + "\n    AXButton focused"), 2);
  EXPECT_EQ(focused(head + first + "focused" + last + "\n    AXButton focused"), 1);
  EXPECT_EQ(focused(head + "no-focused-window" + first + last), 0);
  EXPECT_EQ(focused(head), 0);
}

TEST(world_text, an_elements_label_goes_where_its_role_has_it) {
  const std::string text = "Body";
  EXPECT_EQ(elementOf("AXButton \"Body\"").attributes, (Attributes{{"AXTitle", text}}));
  EXPECT_EQ(elementOf("AXStaticText \"Body\"").attributes, (Attributes{{"AXDescription", text}}));
  EXPECT_EQ(elementOf("AXTextArea \"Body\"").attributes,
            (Attributes{{"AXDescription", text}, {"AXValue", std::string()}}));
}

TEST(world_text, an_element_has_frame_attributes_and_actions) {
  const Element element = elementOf(
      "AXTextField \"To\" at -1.5,nan size 60x20 value \"hi\" placeholder \"p\" help \"h\" "
      "subrole AXSearchField disabled selection 3+2 actions AXPress,AXShowMenu "
      "failing AXTitle -25204 failing AXHelp -25212");

  ASSERT_TRUE(element.frame.has_value());
  EXPECT_EQ(element.frame->x, -1.5);
  EXPECT_TRUE(std::isnan(element.frame->y));
  EXPECT_EQ(element.attributes, (Attributes{{"AXDescription", std::string("To")},
                                            {"AXValue", std::string("hi")},
                                            {"AXPlaceholderValue", std::string("p")},
                                            {"AXHelp", std::string("h")},
                                            {"AXSubrole", std::string("AXSearchField")},
                                            {"AXEnabled", false},
                                            {"AXSelectedTextRange", ax::Range{3, 2}}}));
  EXPECT_EQ(element.failing,
            (std::map<std::string, ax::Error>{{"AXTitle", ax::Error::cannotComplete},
                                              {"AXHelp", ax::Error::noValue}}));
  EXPECT_EQ(element.actions, (std::vector<std::string>{"AXPress", "AXShowMenu"}));
}

TEST(world_text, a_button_named_by_description_has_only_that) {
  EXPECT_EQ(elementOf("AXButton description \"Close\"").attributes,
            (Attributes{{"AXDescription", std::string("Close")}}));
}

TEST(world_text, actions_and_values_come_with_the_role) {
  const std::vector<std::string> press{"AXPress"};
  EXPECT_EQ(elementOf("AXButton").actions, press);
  EXPECT_EQ(elementOf("AXRow").actions, press);
  EXPECT_EQ(elementOf("AXButton actions none").actions, std::vector<std::string>());
  EXPECT_EQ(elementOf("AXGroup").actions, std::vector<std::string>());
  EXPECT_EQ(elementOf("AXSlider").actions,
            (std::vector<std::string>{"AXIncrement", "AXDecrement"}));
  EXPECT_EQ(elementOf("AXRadioButton").attributes, (Attributes{{"AXValue", std::int64_t{0}}}));
  EXPECT_EQ(elementOf("AXCheckBox value true").attributes, (Attributes{{"AXValue", true}}));
  ASSERT_EQ(elementOf("AXCheckBox").onClick.size(), 1u);
  EXPECT_EQ(elementOf("AXCheckBox").onClick[0].effect, &reactions::toggle);
}

TEST(world_text, a_focused_text_has_its_caret_at_the_end_unless_told) {
  EXPECT_EQ(elementOf("AXTextArea value \"a\\u{1F600}\" focused").attributes["AXSelectedTextRange"],
            AttributeValue(ax::Range{3, 0}));
  EXPECT_EQ(
      elementOf("AXTextArea value \"abc\" selection 1+1 focused").attributes["AXSelectedTextRange"],
      AttributeValue(ax::Range{1, 1}));
}

TEST(world_text, an_attribute_takes_any_kind_of_value) {
  const auto valueOf = [](const std::string& literal) {
    return elementOf("AXButton \"B\" attribute AXFoo " + literal).attributes["AXFoo"];
  };

  EXPECT_EQ(valueOf("\"text\""), AttributeValue(std::string("text")));
  EXPECT_EQ(valueOf("-12"), AttributeValue(std::int64_t{-12}));
  EXPECT_EQ(valueOf("1.5"), AttributeValue(1.5));
  EXPECT_EQ(valueOf("3.0"), AttributeValue(3.0));
  EXPECT_TRUE(std::isnan(std::get<double>(valueOf("nan"))));
  EXPECT_EQ(valueOf("true"), AttributeValue(true));
  EXPECT_EQ(valueOf("false"), AttributeValue(false));
  EXPECT_EQ(valueOf("point 1,-2"), AttributeValue(Point{1, -2}));
  EXPECT_EQ(valueOf("size 3x4e3"), AttributeValue(Size{3, 4000}));
  EXPECT_EQ(valueOf("rect 1,2,3x4"), AttributeValue(Rect{1, 2, 3, 4}));
  EXPECT_EQ(valueOf("range -1+2"), AttributeValue(ax::Range{-1, 2}));
  EXPECT_EQ(valueOf("opaque 77"), AttributeValue(Opaque{77}));
  EXPECT_EQ(valueOf("element B"), AttributeValue(ElementLink{2}));
  EXPECT_EQ(valueOf("elements \"B\" \"B\" disabled"), AttributeValue(std::vector<ElementId>{2, 2}));
  EXPECT_EQ(valueOf("elements"), AttributeValue(std::vector<ElementId>{}));
}

TEST(world_text, an_application_may_lie_about_its_focus) {
  const World world = parseWorld(R"(
    app A pid 1 attribute AXFocusedUIElement element "Later"
        window 1 at 0,0 size 9x9
            AXButton "Later"
  )");

  EXPECT_EQ(world.applications[0].attributes, (Attributes{{"AXFocusedUIElement", ElementLink{2}}}));
}

TEST(world_text, texts_know_escapes_and_hold_any_byte) {
  const auto textOf = [](const std::string& quoted) {
    return std::get<std::string>(elementOf("AXGroup " + quoted).attributes["AXTitle"]);
  };

  EXPECT_EQ(textOf(R"("a\"b\\c\nd\te")"), "a\"b\\c\nd\te");
  EXPECT_EQ(textOf(R"("\x41\xff\xC3")"), "A\xFF\xC3");
  EXPECT_EQ(textOf(R"("\x00")"), std::string(1, '\0'));
  EXPECT_EQ(textOf(R"("\u{41}\u{e9}\u{20AC}\u{1F600}")"), "Aé€😀");
  EXPECT_EQ(textOf(R"("\u{D800}")"), "\xED\xA0\x80");
  EXPECT_EQ(textOf("\"你好 # ; : no comment\""), "你好 # ; : no comment");
  EXPECT_EQ(textOf("\"\""), "");
}

TEST(world_text, reactions_run_to_the_end_of_the_line_or_the_other_button) {
  const World world = parseWorld(R"(
    app Notes pid 41
        window 7 "Inbox" at 0,0 size 9x9
            AXButton "Send" right: toggle press: append "sent" to Body; set "Long name" "x";toggle; open sheet "T"; close window; show window "Inbox"; retitle "N"; hang; quit
            AXTextArea "Body"
            AXTextArea "Long name"
  )");

  const Element& send = world.applications[0].elements[1];
  std::vector<std::string> texts;
  for (const Reaction& each : send.onClick) {
    texts.push_back(phraseOf(each) + "|" + each.text + "|" + each.target.value_or("") + "|" +
                    each.window.value_or(""));
  }
  EXPECT_EQ(texts,
            (std::vector<std::string>{"append|sent|Body|", "set|x|Long name|", "toggle|||",
                                      "open sheet|T||", "close window|||", "show window|||Inbox",
                                      "retitle|N||", "hang|||", "quit|||"}));
  ASSERT_EQ(send.onRightClick.size(), 1u);
  EXPECT_EQ(send.onRightClick[0].effect, &reactions::toggle);
}

TEST(world_text, a_script_is_ordered_by_time_and_may_name_what_comes_later) {
  const World world = parseWorld(R"(
    at 2s user key return
    at 100ms lock
    at 100ms quit Notes
    at 0us end process 900
    app Notes pid 41
    process 900
  )");

  std::vector<std::string> script;
  for (const Scripted& each : world.script) {
    script.push_back(std::to_string(each.at) + " " + happeningText(each.happening));
  }
  EXPECT_EQ(script, (std::vector<std::string>{"0 end process 900", "100000 lock",
                                              "100000 quit pid:41", "2000000 user key return"}));
}

}  // namespace

}  // namespace simulator
