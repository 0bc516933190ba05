#include <gtest/gtest.h>

#include "tests/support/world_errors.h"

namespace simulator {

namespace {

using testing_support::errorOf;

struct BadWorld {
  const char* text;
  std::string error;
};

const std::string statementWords =
    "app, user, pointer, display, deny, session, missing, process, file, image, at, panel, seed, "
    "clock, keyboard, pasteboard, idle, languages, macos, system, directory, tool, link, define, "
    "use, "
    "repeat, include";
const std::string applicationWords =
    "pid, bundle, path, unbundled, unnamed, chromium, appkit, accessory, prohibited, frontmost, "
    "hidden, no-focused-window, hangs, answers, rejects-enabling, tree, attribute, failing, "
    "tracks, pastes";
const std::string windowWords =
    "id, at, size, layer, off-screen, not-capturable, no-element, focused, closed, minimized, "
    "modal, "
    "sheet, subrole, attribute, failing, unnumbered, listed";
const std::string elementWords =
    "id, at, size, below, right, inside, fill, width, height, value, description, placeholder, "
    "help, "
    "subrole, disabled, modal, focused, selection, marked, actions, attribute, failing, range, "
    "choices, "
    "while, only, also, repeat, open, closed, "
    "transform, ignores, half, late, shows, composer, rejects, replying, grows, shrinks, press:, "
    "right:, double:, stacks, scrolls, takes, submit:";
const std::string reactionWords =
    "append, set, toggle, open, close, show, retitle, quit, hang, remove, choose, paste, move, "
    "add, enable, disable, relabel, count, save";

TEST(world_text_errors, of_the_form_of_the_text) {
  const BadWorld cases[] = {
      {"\nfile \"a", "line 2: a text lacks its closing quotation mark"},
      {"file \"a\\", "line 1: a text lacks its closing quotation mark"},
      {"file \"\\q\"",
       "line 1: unknown escape '\\q'; expected \\\" \\\\ \\n \\t \\u{…} or \\x and two digits"},
      {"file \"\\x4\"", "line 1: '\\x' needs two hexadecimal digits"},
      {"file \"\\u41\"", "line 1: '\\u' needs a code point such as \\u{1F600}"},
      {"file \"\\u{}\"", "line 1: '\\u' needs a code point such as \\u{1F600}"},
      {"file \"\\u{110000}\"", "line 1: '\\u' needs a code point such as \\u{1F600}"},
      {"file \"a\"b", "line 1: a blank is missing after \"a\""},
      {"file\"a\"", "line 1: a blank is missing after 'file'"},
      {"app A pid 1\n\tAXButton", "line 2: indent with spaces, not with tabs"},
      {"  process 1\nprocess 2", "line 2: the indentation is that of no line above"},
      {"app A pid 1\n    AXGroup\n        AXButton\n      AXButton",
       "line 4: the indentation is that of no line above"},
      {"process 1\n  process 2", "line 2: nothing can be in 'process'"},
      {"at 1s lock\n  AXButton", "line 2: nothing can be in 'at'"},
  };
  for (const BadWorld& each : cases) EXPECT_EQ(errorOf(each.text), each.error) << each.text;
}

TEST(world_text_errors, of_statements) {
  const BadWorld cases[] = {
      {"speed 1",
       "line 1: unknown word 'speed'; expected " + statementWords + "; did you mean 'seed'?"},
      {"\"file\" 7", "line 1: unexpected \"file\"; expected " + statementWords},
      {"; file", "line 1: unexpected ';'; expected " + statementWords},
      {"process 1 2", "line 1: unexpected '2' at the end of the line"},
      {"user Ada", "line 1: 'user' needs a quoted name, not 'Ada'"},
      {"user \"Ada\" name", "line 1: unknown word 'name'; expected login, unparsable"},
      {"pointer 1;2", "line 1: 'pointer' needs X,Y, not '1'"},
      {"pointer nan,2", "line 1: 'pointer' needs X,Y, not 'nan,2'"},
      {"pointer \"1,2\"", "line 1: 'pointer' needs X,Y, not \"1,2\""},
      {"display 0 9x9", "line 1: 'display' needs a number from 1 on, not '0'"},
      {"display 1 big", "line 1: 'display' needs WIDTHxHEIGHT, not 'big'"},
      {"display 1 9x9 mode secret", "line 1: 'mode' needs 'unreadable' after it, not 'secret'"},
      {"display 1 9x0", "line 1: a display needs a finite place, and a size and scale above 0"},
      {"display 1 9x9 scale 0",
       "line 1: a display needs a finite place, and a size and scale above 0"},
      {"display 1 9x9 at nan,0",
       "line 1: a display needs a finite place, and a size and scale above 0"},
      {"display 1 9x9 scale x", "line 1: 'scale' needs a number above 0, not 'x'"},
      {"display 1 9x9\ndisplay 1 9x9", "line 2: display number 1 is taken"},
      {"deny",
       "line 1: 'deny' needs one of display-hold, accessibility, keys-in-taps, screen-recording"},
      {"deny all",
       "line 1: unknown word 'all'; expected display-hold, accessibility, keys-in-taps, "
       "screen-recording"},
      {"session",
       "line 1: 'session' needs one of locked, off-console, unreadable, "
       "without-console-key, locks"},
      {"session locked locked", "line 1: 'locked' is given twice"},
      {"missing", "line 1: 'missing' needs a symbol or a library"},
      {"process 0", "line 1: 'process' needs a process id, not '0'"},
      {"process 5\nprocess 5", "line 2: process id 5 is taken"},
      {"file /a", "line 1: 'file' needs a quoted path, not '/a'"},
      {"image", "line 1: 'image' needs a quoted path"},
      {"at noon lock", "line 1: 'at' needs a time such as 250us, 100ms or 1.5s, not 'noon'"},
      {"app A pid 1\nat 1s quit B", "line 2: no application 'B' is running"},
      {"window 7 at 0,0 size 9x9", "line 1: a window belongs in an application"},
      {"AXButton", "line 1: an element belongs in an application, a window or another element"},
  };
  for (const BadWorld& each : cases) EXPECT_EQ(errorOf(each.text), each.error) << each.text;
}

TEST(world_text_errors, of_applications) {
  const BadWorld cases[] = {
      {"app", "line 1: 'app' needs a name"},
      {"app A", "line 1: an application needs 'pid'"},
      {"app A pid abc", "line 1: 'pid' needs a process id, not 'abc'"},
      {"app A pid 2147483648", "line 1: 'pid' needs a process id, not '2147483648'"},
      {"app A pid 1 pid 2", "line 1: 'pid' is given twice"},
      {"app A pid 1 shiny", "line 1: unknown word 'shiny'; expected " + applicationWords},
      {"app A pid 1 bundle", "line 1: 'bundle' needs a bundle identifier"},
      {"app A pid 1 path /A", "line 1: 'path' needs the quoted path of a bundle, not '/A'"},
      {"app A pid 1 unbundled bundle b",
       "line 1: an unbundled application has neither 'bundle' nor 'path'"},
      {"app A pid 1 answers 5ms", "line 1: 'answers' needs 'after' after it, not '5ms'"},
      {"app A pid 1 tree after long",
       "line 1: 'after' needs a time such as 250us, 100ms or 1.5s, not 'long'"},
      {"app A pid 1\napp B pid 1", "line 2: process id 1 is taken"},
      {"process 1\napp B pid 1", "line 2: process id 1 is taken"},
      {"app A pid 1 frontmost\napp B pid 2 frontmost",
       "line 2: a second application is marked frontmost"},
      {"app A pid 1 attribute AXFoo element B", "line 1: no element of A is labelled \"B\""},
      {"app A pid 1 unnamed attribute AXFoo element B",
       "line 1: no element of pid 1 is labelled \"B\""},
  };
  for (const BadWorld& each : cases) EXPECT_EQ(errorOf(each.text), each.error) << each.text;
}

TEST(world_text_errors, of_windows) {
  struct BadLine {
    const char* line;
    std::string error;
  };
  const BadLine cases[] = {
      {"windoe 7",
       "unknown word 'windoe'; expected window, menu or an element's role such as AXButton; did "
       "you "
       "mean 'window'?"},
      {"window", "'window' needs a number from 1 on"},
      {"window Inbox", "'window' needs a number from 1 on, not 'Inbox'"},
      {"window 0 at 0,0 size 9x9", "'window' needs a number from 1 on, not '0'"},
      {"window 7", "a window needs 'at' and 'size'"},
      {"window 7 at 0,0", "'at' needs 'size' beside it"},
      {"window 7 size 9x9", "'size' needs 'at' beside it"},
      {"window 7 at 0,0 sized 9x9",
       "unknown word 'sized'; expected " + windowWords + "; did you mean 'size'?"},
      {"window 7 at 0,0 size 9x9 \"T\"", "unexpected \"T\"; expected " + windowWords},
      {"window 7 at 0,0 size 9 x9", "'size' needs WIDTHxHEIGHT, not '9'"},
      {"window 7 at 0,0 size 9x9 layer top", "'layer' needs an integer, not 'top'"},
      {"window 7 at 0,0 size 9x9 no-element focused",
       "a window without an element cannot be focused"},
      {"window 7 at 0,0 size 9x9 failing AXTitle 0",
       "'failing' needs an error code below 0, not '0'"},
      {"window 7 at 0,0 size 9x9 failing AXTitle -1 failing AXTitle -1",
       "'failing AXTitle' is given twice"},
  };
  for (const BadLine& each : cases) {
    EXPECT_EQ(errorOf(std::string("app A pid 1\n  ") + each.line), "line 2: " + each.error);
  }
  EXPECT_EQ(errorOf("app A pid 1\n  window 7 at 0,0 size 9x9\napp B pid 2\n  window 7 at 0,0 size "
                    "9x9"),
            "line 4: window number 7 is taken");
  EXPECT_EQ(errorOf("app A pid 1\n  window 7 at 0,0 size 9x9 focused\n  window 8 at 0,0 size 9x9 "
                    "focused"),
            "line 3: a second window of one application is focused");
  EXPECT_EQ(errorOf("app A pid 1\n  window 7 at 0,0 size 9x9\n    window 8 at 0,0 size 9x9"),
            "line 3: a window belongs in an application");
  EXPECT_EQ(errorOf("app A pid 1\n  window 7 at 0,0 size 9x9 no-element\n    AXButton"),
            "line 3: nothing can be in a window without an element");
}

TEST(world_text_errors, of_elements) {
  const std::string anyValue =
      "'attribute' needs a text, a number, true, false, point, size, rect, range, opaque, element "
      "or elements";
  struct BadLine {
    const char* line;
    std::string error;
  };
  const BadLine cases[] = {
      {"button", "unknown word 'button'; expected an element's role such as AXButton"},
      {"AXButton sized 9x9",
       "unknown word 'sized'; expected " + elementWords + "; did you mean 'size'?"},
      {"AXButton \"A\" \"B\"", "unexpected \"B\"; expected " + elementWords},
      {"AXButton at 1,2", "'at' needs 'size' beside it"},
      {"AXButton at 1 2 size 9x9", "'at' needs X,Y, not '1'"},
      {"AXButton at 1,2,3 size 9x9", "'at' needs X,Y, not '1,2,3'"},
      {"AXButton size 1x2 at 1,2 size 1x2", "'size' is given twice"},
      {"AXButton value", "'value' needs a text, a number, true or false"},
      {"AXButton value yes", "'value' needs a text, a number, true or false, not 'yes'"},
      {"AXButton \"A\" attribute AXTitle \"B\"", "AXTitle is given twice"},
      {"AXButton \"A\" attribute AXTitle element A", "AXTitle is given twice"},
      {"AXButton help me", "'help' needs a quoted text, not 'me'"},
      {"AXButton subrole", "'subrole' needs a subrole"},
      {"AXTextArea selection 3", "'selection' needs LOCATION+LENGTH, not '3'"},
      {"AXTextArea selection a+b", "'selection' needs LOCATION+LENGTH, not 'a+b'"},
      {"AXButton actions", "'actions' needs names such as AXPress,AXShowMenu, or none"},
      {"AXButton actions AXPress,", "'actions' has an empty name in 'AXPress,'"},
      {"AXButton attribute", "'attribute' needs the name of an attribute"},
      {"AXButton attribute AXFoo", anyValue},
      {"AXButton attribute AXFoo maybe", anyValue + ", not 'maybe'"},
      {"AXButton attribute AXFoo point 1", "'point' needs X,Y, not '1'"},
      {"AXButton attribute AXFoo size 1", "'size' needs WIDTHxHEIGHT, not '1'"},
      {"AXButton attribute AXFoo rect 1,2", "'rect' needs X,Y,WIDTHxHEIGHT, not '1,2'"},
      {"AXButton attribute AXFoo range 1", "'range' needs LOCATION+LENGTH, not '1'"},
      {"AXButton attribute AXFoo opaque -1", "'opaque' needs a hash of 0 or more, not '-1'"},
      {"AXButton attribute AXFoo element", "'element' needs the label of an element"},
      {"AXButton attribute AXFoo elements \"Q\"", "no element of A is labelled \"Q\""},
      {"AXButton failing", "'failing' needs the name of an attribute"},
      {"AXButton press:", "'press:' needs one of " + reactionWords},
      {"AXButton press: explode", "unknown word 'explode'; expected " + reactionWords},
      {"AXButton press: toggle;", "'press:' needs one of " + reactionWords},
      {"AXButton press: hang quit",
       "unknown word 'quit'; expected ;, press:, right:, double: or submit:"},
      {"AXButton press: toggle press: quit", "'press:' is given twice"},
      {"AXButton right: append to B", "'append' needs a quoted text, not 'to'"},
      {"AXButton press: append \"x\" B", "'append' needs 'to' after it, not 'B'"},
      {"AXButton press: append \"x\" to", "'to' needs the label of an element"},
      {"AXButton press: append \"x\" to B", "no element of A is labelled \"B\""},
      {"AXButton right: set B \"x\"", "no element of A is labelled \"B\""},
      {"AXButton press: set B", "'set' needs a quoted text"},
      {"AXButton press: open \"T\"", "unexpected \"T\"; expected sheet, window, panel"},
      {"AXButton press: after soon quit",
       "'after' needs a time such as 250us, 100ms or 1.5s, not 'soon'"},
      {"AXButton press: after 2s..1s quit",
       "'after' needs a time such as 250us, 100ms or 1.5s, not '2s..1s'"},
      {"AXButton press: after 2s", "'press:' needs one of " + reactionWords},
      {"AXButton press: when B 1 then quit", "'when' needs 'is' after it, not '1'"},
      {"AXButton press: when B is 1 quit", "'when' needs 'then' after it, not 'quit'"},
      {"AXButton press: when B is 1 then quit", "no element of A is labelled \"B\""},
      {"AXButton press: in B quit", "no application 'B' is running"},
      {"AXButton press: in A toggle", "'toggle' needs the label of an element here"},
      {"AXButton press: set B value of B", "no element of A is labelled \"B\""},
      {"AXButton \"B\" press: set B value C", "'value' needs 'of' after it, not 'C'"},
      {"AXButton \"B\" press: set B value of C", "no element of A is labelled \"C\""},
      {"AXButton \"B\" press: move B", "'move' needs above, below or to after the label"},
      {"AXButton \"B\" press: move B above C", "no element of A is labelled \"C\""},
      {"AXButton \"B\" press: count B", "'count' needs up or down after the label"},
      {"AXButton \"B\" press: count B up by 0", "'by' needs a number from 1, not '0'"},
      {"AXButton press: close window \"W\"", "no window of A is titled \"W\""},
      {"AXButton press: save panel", "no 'panel' stands over a window of A"},
      {"AXButton press: close", "'close' needs 'window' after it"},
      {"AXButton press: show window \"W\"", "no window of A is titled \"W\""},
      {"AXButton press: retitle T", "'retitle' needs a quoted text, not 'T'"},
  };
  for (const BadLine& each : cases) {
    EXPECT_EQ(errorOf(std::string("app A pid 1\n  window 7 at 0,0 size 9x9\n    ") + each.line),
              "line 3: " + each.error);
  }
  EXPECT_EQ(errorOf("app A pid 1\n  AXTextArea focused\n  AXTextArea focused"),
            "line 3: a second element of one application is focused");
}

TEST(world_text_errors, of_habits) {
  const BadWorld cases[] = {
      {"AXSlider range 5", "'range' needs LEAST..MOST, not '5'"},
      {"AXSlider range 0..x", "'range' needs LEAST..MOST, not '0..x'"},
      {"AXSlider range 0..1 step", "'step' needs a number"},
      {"AXSlider range 0..1 attribute AXMinValue 0", "AXMinValue is given twice"},
      {"AXPopUpButton choices", "'choices' needs quoted texts"},
      {"AXButton while", "'while' needs 'hovered' after it"},
      {"AXButton also", "'also' needs 'under' after it"},
      {"AXButton also under \"X\"", "no element of A is labelled \"X\""},
      {"AXRow repeat 0", "'repeat' needs a number from 1 to 1000000, not '0'"},
      {"AXRow repeat 1000001", "'repeat' needs a number from 1 to 1000000, not '1000001'"},
      {"AXButton closed", "only an AXMenu is 'open' or 'closed'"},
      {"AXMenu open closed", "a menu is either 'open' or 'closed'"},
      {"AXTextField transform", "'transform' needs one of upper, lower, trim, one-line, first"},
      {"AXTextField transform first x", "'first' needs a number of characters, not 'x'"},
      {"AXTextField ignores", "'ignores' needs 'writes' after it"},
      {"AXTextField ignores writes half of writes", "writes are described twice"},
      {"AXTextField half of", "'of' needs 'writes' after it"},
      {"AXTextField late", "'late' needs a time such as 250us, 100ms or 1.5s"},
      {"AXTextField shows", "'shows' needs 'placeholder' after it"},
      {"AXTextField composer without", "'without' needs 'value' after it"},
      {"AXTextField rejects", "'rejects' needs the name of an attribute"},
      {"AXTextField rejects AXValue 3", "'rejects' needs an error code below 0, not '3'"},
      {"AXTextField rejects AXValue rejects AXValue", "'rejects AXValue' is given twice"},
      {"AXButton replying 0", "'replying' needs an error code below 0, not '0'"},
      {"AXGroup grows shrinks", "children are described twice"},
      {"AXButton press: remove", "'remove' needs the label of an element"},
      {"AXButton press: remove X", "no element of A is labelled \"X\""},
  };
  for (const BadWorld& each : cases) {
    EXPECT_EQ(errorOf(std::string("app A pid 1\n  window 7 at 0,0 size 9x9\n    ") + each.text),
              "line 3: " + each.error);
  }
}

TEST(world_text_errors, of_what_must_stand_elsewhere) {
  const BadWorld cases[] = {
      {"app A pid 1\n  AXRow repeat 2", "line 2: what is repeated must be in an element"},
      {"app A pid 1\n  AXRow while hovered",
       "line 2: what is there 'while hovered' must be in an element"},
      {"app A pid 1\n  window 7 at 0,0 size 9x9\n    AXMenu open\n    AXMenu open",
       "line 4: a second menu of one application is open"},
      {"app A pid 1\n  window 7 at 0,0 size 9x9 sheet of 8",
       "line 2: no window 8 with an element stands above in this application"},
      {"app A pid 1\n  window 8 at 0,0 size 9x9 no-element\n  window 7 at 0,0 size 9x9 sheet of 8",
       "line 3: no window 8 with an element stands above in this application"},
      {"app B pid 2\n  window 8 at 0,0 size 9x9\napp A pid 1\n  window 7 at 0,0 size 9x9 sheet of "
       "8",
       "line 4: no window 8 with an element stands above in this application"},
      {"app A pid 1\n  window 7 at 0,0 size 9x9 sheet", "line 2: 'sheet' needs 'of' after it"},
  };
  for (const BadWorld& each : cases) EXPECT_EQ(errorOf(each.text), each.error);
}

}  // namespace

}  // namespace simulator
