#include "tests/oracle/cases.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace oracle {

namespace {

using simulator::Application;
using simulator::World;
using Words = std::vector<std::string>;

constexpr std::size_t labelsMax = 14;
constexpr std::size_t pointsMax = 14;

/// A word of a command line.
std::string word(double number) {
  std::string text = std::to_string(number);
  while (text.back() == '0') text.pop_back();
  if (text.back() == '.') text.pop_back();
  return text;
}

/// Every n-th, so that no more than `count` are left.
Words thinned(const Words& all, std::size_t count) {
  const std::size_t step = all.size() / count + 1;
  Words kept;
  for (std::size_t i = 0; i < all.size(); i += step) kept.push_back(all[i]);
  return kept;
}

std::string textAttribute(const simulator::Element& element, const char* name) {
  const auto found = element.attributes.find(name);
  const auto* text =
      found == element.attributes.end() ? nullptr : std::get_if<std::string>(&found->second);
  return text == nullptr ? "" : *text;
}

Words distinct(const Words& words) {
  const std::set<std::string> all(words.begin(), words.end());
  return Words(all.begin(), all.end());
}

class Cases {
 public:
  Cases(const World& world, std::string folder) : world_(world), folder_(std::move(folder)) {}

  std::vector<Case> all() {
    general();
    wrongArguments();
    for (const Application& application : world_.applications) about(application);
    return std::move(cases_);
  }

 private:
  void add(Words arguments, std::map<std::string, std::string> environment = {}) {
    cases_.push_back({std::move(arguments), std::move(environment)});
  }

  void general() {
    for (const char* command :
         {"permissions", "scene", "session", "capture-probe", "Scene", "lock-unlock", "ax-", "bg-",
          "bg-focus-hold", "lock-status", "bg-unknown"}) {
      add({command});
      add({command, "more", "words"});
      add({command}, {{"CU_CAPTURE_PID", "77777"}});
      add({command}, {{"CU_CAPTURE_PID", "x"}});
    }
    add({});
    add({"capture-service"}, {{"CU_CAPTURE_PID", "77777"}});
    add({"watch-input", "Nobody"});
    for (const char* pid : {"0", "abc", "-1", "41", "+41", "4294967296", "40", "2147483648"}) {
      for (const char* window : {"7", "-1", "", "0", "4294967296", "4294967295"}) {
        add({"focus-release", pid, window});
      }
    }
    add({"focus-release", "41"});
    add({"focus-release", "41", "7", "8"});
  }

  void wrongArguments() {
    const std::string app =
        world_.applications.empty() ? "Nobody" : nameFor(world_.applications[0]);
    for (const char* command :
         {"windows",        "ax-list",        "ax-dump",        "ax-find-text",
          "ax-texts-at",    "ax-at",          "ax-press",       "ax-match",
          "ax-press-match", "ax-press-exact", "ax-press-child", "ax-press-in-document",
          "ax-insert",      "ax-focus",       "ax-focused",     "ax-set-value",
          "ax-menu",        "ax-menubar",     "ax-modal",       "ax-modal-press",
          "ax-popup-items", "ax-slider",      "reveal",         "bg-click",
          "bg-scroll",      "bg-move",        "bg-drag",        "bg-key",
          "bg-type",        "bg-paste-files", "capture"}) {
      Words words = {command};
      for (const char* more : {"", "a", "b", "c", "d", "e", "f", "g"}) {
        if (words.size() < 7 && !(words.size() >= 3 && words[0] == "capture")) add(words);
        words.push_back(more[0] == 0 ? app : more);
      }
      add({command, "Nobody", "1", "2", "3", "4", "5"});
      add({command, app, "1", "x", "3"});
      add({command, app, "1", "2", "x", "x"});
      add({command, app, " 1", "2", "1 ", ""});
      add({command, app, "nan", "inf", "-inf", "1e3"});
    }
  }

  static std::string nameFor(const Application& application) {
    return application.name ? *application.name : "pid:" + std::to_string(application.pid);
  }

  void about(const Application& application) {
    const std::string app = nameFor(application);
    gather(application);
    reading(app, application);
    pointing(app);
    labelled(app);
    writing(app);
    menus(app, application);
    dialogs(app, application);
    typing(app);
    pictures(app);
  }

  void gather(const Application& application) {
    Words labels;
    Words texts;
    Words points;
    for (const auto& element : application.elements) {
      for (const char* name : {"AXTitle", "AXDescription", "AXHelp", "AXPlaceholderValue"}) {
        labels.push_back(textAttribute(element, name));
      }
      texts.push_back(textAttribute(element, "AXValue"));
      if (element.frame && std::isfinite(element.frame->x)) {
        points.push_back(word(element.frame->x + element.frame->width / 2) + " " +
                         word(element.frame->y + element.frame->height / 2));
        points.push_back(word(element.frame->x) + " " + word(element.frame->y));
      }
    }
    labels_ = thinned(distinct(labels), labelsMax);
    texts_ = thinned(distinct(texts), labelsMax);
    points_ = thinned(distinct(points), pointsMax);
    points_.push_back("-1 -1");
    points_.push_back("-5000 12.5");
    titles_ = {""};
    for (const auto& window : world_.windows) {
      if (window.owner == application.pid && window.title) titles_.push_back(*window.title);
    }
    titles_ = distinct(titles_);
  }

  static Words with(const std::string& command, const std::string& app, const std::string& point) {
    const std::size_t blank = point.find(' ');
    return {command, app, point.substr(0, blank), point.substr(blank + 1)};
  }

  static Words with(Words words, const Words& more) {
    words.insert(words.end(), more.begin(), more.end());
    return words;
  }

  void reading(const std::string& app, const Application& application) {
    Words names = {app, "pid:" + std::to_string(application.pid),
                   application.bundleIdentifier.value_or("com.example.none"), app + " ",
                   "pid:1040"};
    for (const char* command : {"windows", "ax-list", "ax-dump", "ax-menubar", "ax-modal",
                                "ax-popup-items", "ax-focused", "reveal"}) {
      for (const std::string& name : names) add({command, name});
      for (const std::string& title : titles_) {
        add({command, app}, {{"CU_WINDOW", title}});
        add({command, app}, {{"CU_WINDOW", title.substr(0, title.find(" — "))}});
      }
      add({command, app}, {{"CU_WINDOW", "elsewhere"}});
    }
  }

  void pointing(const std::string& app) {
    for (const std::string& point : points_) {
      for (const char* command : {"ax-at", "ax-press", "ax-texts-at", "bg-click", "bg-move"}) {
        add(with(command, app, point));
        for (const std::string& title : titles_) {
          add(with(command, app, point), {{"CU_WINDOW", title}});
        }
      }
      add(with(with("bg-click", app, point), {"right"}));
      add(with(with("bg-click", app, point), {"left", "2"}));
      add(with(with("bg-click", app, point), {"left", "2"}), {{"CU_FOCUS_PID", "41"}});
      for (const char* count : {"0", "3", "+1", "x", "-1", "99999999999999999999"}) {
        add(with(with("bg-click", app, point), {"right", count}));
      }
      add(with(with("bg-click", app, point), {"Left"}));
      add(with(with("bg-scroll", app, point), {"0", "-3"}));
      add(with(with("bg-scroll", app, point), {"1.9", "4294967296"}));
      add(with(with("bg-scroll", app, point), {"1"}));
      add(with(with("bg-drag", app, point), {"10", "10"}));
      add(with(with("bg-drag", app, point), {"10", "y"}));
      add(with(with("ax-set-value", app, point), {"written"}));
    }
  }

  /// The label, and what resembles it.
  static Words like(const std::string& label) {
    std::string upper = label;
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
    return {label, upper, " " + label + "\n ", label.substr(0, label.size() / 2), label + "x"};
  }

  void labelled(const std::string& app) {
    Words all = {"button", "pop up button", "text area", "nothing like it"};
    for (const std::string& label : labels_) {
      const Words likes = like(label);
      all.insert(all.end(), likes.begin(), likes.end());
    }
    for (const std::string& label : distinct(all)) {
      add({"ax-match", app, label, "-1", "-1"});
      const std::string point = points_[cases_.size() % points_.size()];
      const Words place = {point.substr(0, point.find(' ')), point.substr(point.find(' ') + 1)};
      add(with({"ax-match", app, label}, place));
      add(with({"ax-press-match", app, label}, place));
      add(with({"ax-focus", app, label}, place));
      add({"ax-press-exact", app, label, "only"});
      add({"ax-press-exact", app, label, "last"});
      add({"ax-slider", app, label});
      for (const char* how : {"increment", "decrement", "7", "2.5", "-1e3", "much", "Increment"}) {
        add({"ax-slider", app, label, how});
      }
      add({"ax-press-child", app, label, "last"});
      add({"ax-press-child", app, label, "last", "AXRow"});
      add({"ax-find-text", app, label, "e"});
    }
    for (const std::string& label : labels_) {
      add({"ax-press-exact", app, "send", "only", label});
      for (const std::string& text : thinned(texts_, 4)) add({"ax-press-child", app, label, text});
      for (const std::string& other : thinned(labels_, 5)) {
        add({"ax-press-in-document", app, label, other});
        add({"ax-press-exact", app, other, "last", label});
      }
    }
    for (const std::string& text : texts_) add({"ax-find-text", app, text});
    add(with({"ax-find-text", app}, texts_));
    add({"ax-find-text", app, "a", "a"});
  }

  void writing(const std::string& app) {
    Words labels = labels_;
    labels.push_back("");
    for (const std::string& label : labels) {
      for (const char* mode : {"replace", "message", "end", "new_line", "caret", "Replace"}) {
        add({"ax-insert", app, label, "-1", "-1", mode, "new text"});
        add({"ax-insert", app, label, "-1", "-1", mode, "two\nlines  𠮷 "});
      }
      for (const std::string& text : thinned(texts_, 3)) {
        add({"ax-insert", app, label, "-1", "-1", "replace", text, "[\"hello\",\"x\"]"});
        add({"ax-insert", app, label, "-1", "-1", "replace", text, "[\"" + text + "\"]"});
        add({"ax-insert", app, label, "-1", "-1", "replace", text, "{}"});
        add({"ax-insert", app, label, "-1", "-1", "replace", "", "[\"hello\",1]"});
      }
    }
    for (const std::string& point : points_) {
      const Words place = {point.substr(0, point.find(' ')), point.substr(point.find(' ') + 1)};
      add(with(with({"ax-insert", app, ""}, place), {"end", "more"}));
    }
  }

  void menus(const std::string& app, const Application& application) {
    Words titles;
    for (const auto& element : application.elements) {
      if (element.role.find("Menu") != std::string::npos) {
        titles.push_back(textAttribute(element, "AXTitle"));
      }
    }
    titles = thinned(distinct(titles), 24);
    for (const std::string& first : titles) {
      for (const std::string& like : like(first)) add({"ax-menu", app, like});
      for (const std::string& second : titles) {
        add({"ax-menu", app, first, second});
        add({"ax-menu", app, first, second.substr(0, second.size() / 2)});
      }
    }
    for (const auto& element : application.elements) {
      if (element.role != "AXMenuItem" || element.parent == 0) continue;
      Words path = {textAttribute(element, "AXTitle")};
      for (auto id = element.parent; id != 0;) {
        const auto& parent = application.elements[static_cast<std::size_t>(id - 1)];
        const std::string title = textAttribute(parent, "AXTitle");
        if (parent.role != "AXMenu" && parent.role != "AXMenuBar") path.insert(path.begin(), title);
        id = parent.parent;
      }
      add(with({"ax-menu", app}, path));
    }
  }

  /// The texts and the buttons that are in an element, in the order of the text.
  static void gatherBelow(const Application& application, simulator::ElementId id, Words& texts,
                          Words& buttons) {
    const auto& element = application.elements[static_cast<std::size_t>(id - 1)];
    const std::string value = textAttribute(element, "AXValue");
    if (element.role == "AXStaticText" && !value.empty()) texts.push_back(value);
    for (const char* name : {"AXTitle", "AXDescription", "AXHelp"}) {
      if (element.role == "AXButton") buttons.push_back(textAttribute(element, name));
    }
    for (const auto child : element.children) gatherBelow(application, child, texts, buttons);
  }

  /// Dialogs and documents, with what is in them.
  void dialogs(const std::string& app, const Application& application) {
    for (const auto& element : application.elements) {
      Words texts;
      Words buttons = {"OK", "none such"};
      const std::string subrole = textAttribute(element, "AXSubrole");
      const bool isDialog =
          element.role == "AXSheet" || subrole.find("Dialog") != std::string::npos;
      if (!isDialog && element.role != "AXWebArea") continue;
      gatherBelow(application, element.id, texts, buttons);
      std::string whole;
      for (const std::string& text : texts) whole += (whole.empty() ? "" : " ") + text;
      for (const std::string& button : distinct(buttons)) {
        add({"ax-modal-press", app, whole, button});
        add({"ax-modal-press", app, whole + " ", button});
        for (const char* name : {"AXTitle", "AXDescription", "AXHelp"}) {
          add({"ax-press-in-document", app, textAttribute(element, name), button});
        }
      }
    }
  }

  void typing(const std::string& app) {
    for (const char* combination : {"a",
                                    "cmd+s",
                                    "Cmd+Shift+S",
                                    "cmd+z",
                                    "ctrl+c",
                                    "cmd+a+b",
                                    "shift",
                                    "cmd+f13",
                                    "cmd++",
                                    "",
                                    "+",
                                    "return",
                                    "Tab",
                                    "alt+left",
                                    "cmd+v",
                                    "cmd+option+n",
                                    "meta+super+,",
                                    "cmd+q",
                                    "shift+cmd+alt+ctrl+x",
                                    "escape"}) {
      add({"bg-key", app, combination});
      add({"bg-key", app, combination}, {{"CU_FOCUS_PID", "41"}});
    }
    for (const char* text :
         {"", "a", "one\ntwo", "one\r\n\r\ntwo\n", "123456789012345678901234567890123456789012345",
          "👨‍👩‍👧‍👦👨‍👩‍👧‍👦👨‍👩‍👧‍👦",
          "e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301"
          "e\u0301e\u0301e\u0301",
          "tab\tquote\"slash/"}) {
      add({"bg-type", app, text});
      for (const std::string& title : titles_) add({"bg-type", app, text}, {{"CU_WINDOW", title}});
    }
    add({"bg-paste-files", app, "/tmp/a b.txt"});
    add({"bg-paste-files", app, "relative.txt", "/other"});
  }

  void pictures(const std::string& app) {
    add({"capture", app, "/nowhere/at/all.png"});
    add({"capture", app, folder_ + "/picture" + std::to_string(++pictures_) + ".png"});
    for (const std::string& title : titles_) {
      add({"capture", app, "/nowhere/at/all.png"}, {{"CU_WINDOW", title}});
    }
  }

  const World& world_;
  std::string folder_;
  int pictures_ = 0;
  std::vector<Case> cases_;
  // Of the application whose turn it is.
  Words labels_;
  Words texts_;
  Words points_;
  Words titles_;
};

}  // namespace

std::vector<Case> casesOf(const World& world, const std::string& folder) {
  return Cases(world, folder).all();
}

std::string described(const Case& each) {
  std::string line;
  for (const auto& [name, value] : each.environment) line += name + "='" + value + "' ";
  line += "driver";
  for (const std::string& argument : each.arguments) line += " '" + argument + "'";
  return line;
}

}  // namespace oracle
