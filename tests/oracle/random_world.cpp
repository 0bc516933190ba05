#include "tests/oracle/random_world.h"

#include <vector>

namespace oracle {

namespace {

using Words = std::vector<std::string>;

/// The same numbers on every machine.
class Chance {
 public:
  explicit Chance(std::uint64_t seed) : state_(seed * 2 + 1) {}

  std::uint64_t below(std::uint64_t limit) {
    state_ += 0x9E3779B97F4A7C15U;
    std::uint64_t mixed = state_;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9U;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBU;
    return (mixed ^ (mixed >> 31)) % limit;
  }

  int between(int least, int most) {
    return least + static_cast<int>(below(static_cast<std::uint64_t>(most - least + 1)));
  }

  bool oneIn(std::uint64_t count) { return below(count) == 0; }

  std::string of(const Words& words) { return words[below(words.size())]; }

 private:
  std::uint64_t state_;
};

std::string inTextQuotes(const std::string& text) { return "\"" + text + "\""; }

Words someLabels() {
  return {"Send",
          "Send",
          "send now",
          "Send  later",
          "Close",
          "Ada",
          "To",
          "Body",
          "Size",
          "Volume",
          "Archive…",
          "Caf\\u{e9}",
          "Cafe\\u{301}",
          "\\u{1F468}\\u{200D}\\u{1F469}",
          "发送",
          "A\\\"q\\\\b/",
          "\\xFF\\xFEbad",
          "line\\nbreak",
          "x",
          "Yes",
          "No",
          ""};
}

Words someTitles() {
  return {"Inbox",   "Inbox — Mail", "Draft", "[Extension Development Host] proj — Ed",
          "Inbox",   " spaced ",     "İnbox", "a — b — c",
          "bad\\xC3"};
}

Words someTexts() {
  return {"hello",
          "",
          "two\\nlines",
          "  blanks  ",
          "\\u{1F600}\\u{1F600}",
          "hello",
          "Send",
          "\\xE9t\\xE9",
          "tab\\there",
          "caf\\u{e9} noir",
          "A long text that says a little more than the others do, for cutting."};
}

Words someRoles() {
  return {"AXButton",     "AXButton",
          "AXLink",       "AXMenuButton",
          "AXCheckBox",   "AXRadioButton",
          "AXTextArea",   "AXTextField",
          "AXComboBox",   "AXSearchField",
          "AXRow",        "AXCell",
          "AXTab",        "AXDisclosureTriangle",
          "AXStaticText", "AXStaticText",
          "AXGroup",      "AXGroup",
          "AXScrollArea", "AXWebArea",
          "AXSlider",     "AXImage",
          "AXSheet",      "AXPopover",
          "AXUnknown",    "AXAXButton",
          "AXSplitGroup"};
}

bool takesTextByRole(const std::string& role) {
  return role == "AXTextArea" || role == "AXTextField" || role == "AXComboBox" ||
         role == "AXSearchField";
}

/// Writes a world line by line.
class Writer {
 public:
  explicit Writer(std::uint64_t seed) : chance_(seed) {}

  std::string world() {
    system();
    const int count = chance_.between(1, 3);
    const int front = chance_.between(0, 3);
    for (int i = 0; i < count; ++i) application(i, i == front);
    if (window_ > 1 && chance_.oneIn(6)) {
      line(0, "panel pid 90 window 900 over 1");
    }
    return text_;
  }

 private:
  void line(int indent, const std::string& text) {
    text_ += std::string(static_cast<std::size_t>(indent) * 2, ' ') + text + "\n";
  }

  void system() {
    line(0, "pointer " + std::to_string(chance_.between(-10, 900)) + ".5,300");
    line(0, "display 1 1000x800 scale 2");
    if (chance_.oneIn(3)) line(0, "display 2 600x900 at 1000,-100");
    if (chance_.oneIn(8)) line(0, "deny screen-recording");
    if (chance_.oneIn(12)) line(0, "deny accessibility");
    if (chance_.oneIn(12)) line(0, "session locked");
    if (chance_.oneIn(12)) line(0, "session off-console");
    if (chance_.oneIn(4)) {
      line(0,
           "missing " + chance_.of({"SLEventPostToPid", "SLEventSetIntegerValueField",
                                    "CGEventSetWindowLocation", "SLPSPostEventRecordTo",
                                    "GetProcessForPID", "GetFrontProcess", "GetProcessPID",
                                    "_AXUIElementGetWindow", "ApplicationServices", "SkyLight"}));
    }
    if (chance_.oneIn(2)) line(0, "pasteboard item \"public.utf8-plain-text\" \"theirs\"");
  }

  void application(int index, bool front) {
    labels_.clear();
    const std::string pid = std::to_string(40 + index);
    std::string words =
        "app " + chance_.of({"Notes", "\"My Mail\"", "Notes", "\"Caf\\u{e9}\""}) + " pid " + pid;
    if (!chance_.oneIn(4)) words += " bundle com.example." + chance_.of({"a", "b", "Notes"});
    if (chance_.oneIn(3)) words += " chromium";
    if (front) words += " frontmost";
    if (!front && chance_.oneIn(6)) words += " hidden";
    if (!front && chance_.oneIn(6)) words += " accessory";
    if (chance_.oneIn(6)) words += " no-focused-window";
    if (chance_.oneIn(6)) words += " rejects-enabling";
    if (chance_.oneIn(10)) words += " tree after 300ms";
    line(0, words);
    menus();
    const int first = window_ + 1;
    const int count = chance_.between(1, 4);
    focus_ = chance_.between(0, 8);
    for (int i = 0; i < count; ++i) window(first);
  }

  void menus() {
    if (chance_.oneIn(3)) return;
    const Words menuTitles = {"File",           "Edit",  "file", "Format…",        "\"Save As…\"",
                              "\"Save as...\"", "Paste", "Copy", "\"Send Later\"", "-"};
    const Words keys = {"cmd s", "cmd shift s", "cmd v", "cmd option n", "cmd z", "control c"};
    const int count = chance_.between(1, 7);
    for (int i = 0; i < count; ++i) {
      std::string item = "menu " + chance_.of({"File", "Edit", "Notes"}) + " > ";
      const std::string title = chance_.of(menuTitles);
      if (title != "-" && chance_.oneIn(4)) item += "Export > ";
      item += title;
      if (title != "-" && chance_.oneIn(2)) item += " " + chance_.of(keys);
      if (title != "-" && chance_.oneIn(4)) item += " disabled";
      line(1, item);
    }
  }

  std::string place(int least, int most) {
    // One after the other: compilers differ in the order within one expression.
    std::string words = "at " + std::to_string(chance_.between(-20, 900));
    words += "," + std::to_string(chance_.between(-20, 700));
    words += " size " + std::to_string(chance_.between(least, most));
    return words + "x" + std::to_string(chance_.between(least, most));
  }

  void window(int first) {
    const int number = ++window_;
    std::string words = "window " + std::to_string(number);
    if (!chance_.oneIn(5)) words += " " + inTextQuotes(chance_.of(someTitles()));
    words += " " + place(30, 600);
    const bool isSheet = number > first && chance_.oneIn(4);
    if (isSheet) words += " sheet of " + std::to_string(number - 1);
    if (!isSheet && chance_.oneIn(6)) words += " layer " + chance_.of({"3", "25", "1000", "-1"});
    if (!isSheet && chance_.oneIn(8)) words += " modal subrole AXDialog";
    if (!isSheet && chance_.oneIn(8)) words += chance_.of({" off-screen", " minimized"});
    if (chance_.oneIn(10)) words += " not-capturable";
    if (chance_.oneIn(8)) words += " unnumbered";
    if (chance_.oneIn(12)) words += " listed as " + chance_.of({"4294967296", "-3", "800"});
    if (chance_.oneIn(12))
      words += chance_.of(
          {" failing AXTitle -25204", " attribute AXTitle \"Lie\"", " failing AXChildren -25200"});
    line(1, words);
    const int count = chance_.between(0, 7);
    for (int i = 0; i < count; ++i) element(2);
  }

  void element(int indent) {
    const std::string role = chance_.of(someRoles());
    std::string words = role;
    std::string label = chance_.oneIn(3) ? "" : chance_.of(someLabels());
    if (!label.empty()) words += " " + inTextQuotes(label);
    if (!chance_.oneIn(6)) words += " " + place(chance_.oneIn(6) ? 0 : 8, 300);
    words += habits(role);
    if (!label.empty() && role != "AXSheet") labels_.push_back(label);  // windows have none
    line(indent, words);
    const bool isComposer = words.find(" composer") != std::string::npos;
    if (indent > 6 || isComposer || takesTextByRole(role)) return;
    for (int i = chance_.between(-3, 3); i > 0; --i) element(indent + 1);
  }

  std::string habits(const std::string& role) {
    std::string words;
    const bool takesText = takesTextByRole(role);
    if (takesText || role == "AXStaticText" || chance_.oneIn(8)) {
      words += " value " + inTextQuotes(chance_.of(someTexts()));
    } else if (role == "AXCheckBox" || role == "AXImage") {
      words += " value " + chance_.of({"true", "2.5", "-3", "0.1", "123456789012", "false", "nan"});
    } else if (role == "AXSlider" && chance_.oneIn(4)) {
      words += " value 6 attribute AXMinValue " + chance_.of({"nan", "\"0\"", "inf", "0.1"});
    } else if (role == "AXSlider") {
      words += " range 0..24 value " + chance_.of({"6", "2.5", "24"});
    }
    const bool isDescribed = takesText || role == "AXStaticText";  // by its label
    if (!isDescribed && chance_.oneIn(6))
      words += " description " + inTextQuotes(chance_.of(someLabels()));
    if (chance_.oneIn(8)) words += " placeholder " + inTextQuotes(chance_.of(someLabels()));
    if (chance_.oneIn(8)) words += " help " + inTextQuotes(chance_.of(someLabels()));
    const bool isDisabled = chance_.oneIn(8);
    if (isDisabled) words += " disabled";
    if (!takesText && chance_.oneIn(10))
      words += " subrole " + chance_.of({"AXDialog", "AXSystemDialog", "AXOther"});
    if (takesText && --focus_ == 0) words += " focused";
    if (takesText) words += fieldHabits();
    if (chance_.oneIn(3)) words += lies(isDisabled);
    if (!takesText && chance_.oneIn(6))
      words += " actions " + chance_.of({"AXPress", "none", "AXShowMenu"});
    if (chance_.oneIn(12)) words += " replying -25204";
    if (!takesText && chance_.oneIn(4)) words += reaction();
    return words;
  }

  std::string fieldHabits() {
    if (!chance_.oneIn(2)) return "";
    return chance_.of({" transform upper", " transform first 8 characters", " ignores writes",
                       " half of writes", " late 120ms", " late 400ms", " shows placeholder",
                       " composer", " composer without value", " rejects AXSelectedText",
                       " rejects AXValue", " rejects AXFocused -25200",
                       " subrole AXSecureTextField", " selection 1+2",
                       " attribute AXSelectedTextRange range 1+100",
                       " attribute AXSelectedTextRange \"x\"", " takes files"});
  }

  std::string lies(bool isDisabled) {
    const std::string target = labels_.empty() ? "" : inTextQuotes(chance_.of(labels_));
    Words some = {" attribute AXEditable true",
                  " attribute AXEditable 1",
                  " attribute AXFocused true",
                  " attribute AXFocused true",
                  " attribute AXFocused true",
                  " attribute AXPosition point nan,3",
                  " attribute AXSize size 10x-4",
                  " attribute AXSize \"none\"",
                  " failing AXChildren -25204",
                  " failing AXChildren -25212",
                  " failing AXRole -25200",
                  " failing AXTitle -25204",
                  " failing AXValue -25212",
                  " attribute AXRole \"AXButton\"",
                  " attribute AXModal true",
                  " attribute AXPosition point 0.30000000000000004,0.0000001",
                  " attribute AXPosition point 123456789012345678,-0.0",
                  " attribute AXNumber 3",
                  " failing AXParent -25212",
                  " attribute AXParent opaque 3",
                  " failing AXFrame -25204"};
    if (!isDisabled) some.push_back(" attribute AXEnabled " + chance_.of({"false", "0", "true"}));
    if (!target.empty()) {
      // Rarely: a walk of a tree in circles goes on to its limit.
      if (chance_.oneIn(6)) some.push_back(" attribute AXChildren elements " + target);
      some.push_back(" attribute AXParent element " + target);
      if (chance_.oneIn(6)) some.push_back(" also under " + target);
    }
    return chance_.of(some);
  }

  std::string reaction() {
    Words some = {" press: toggle",
                  " press: open sheet \"Sure?\"",
                  " press: close window",
                  " press: retitle \"Draft\"",
                  " right: retitle \"Right\"",
                  " press: quit"};
    if (!labels_.empty()) {
      const std::string target = inTextQuotes(chance_.of(labels_));
      some.push_back(" press: append \"!\" to " + target);
      some.push_back(" press: set " + target + " \"pressed\"");
      some.push_back(" press: remove " + target);
    }
    return chance_.of(some);
  }

  Chance chance_;
  std::string text_;
  int window_ = 0;
  int focus_ = 0;
  Words labels_;  // of the application that is being written
};

}  // namespace

std::string randomWorld(std::uint64_t seed) { return Writer(seed).world(); }

}  // namespace oracle
