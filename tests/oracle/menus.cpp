#include <algorithm>

#include "tests/oracle/commands.h"
#include "tests/oracle/elements.h"
#include "tests/oracle/opinion.h"
#include "tests/oracle/texts.h"
#include "tests/oracle/windows.h"

namespace oracle {

namespace {

std::vector<Element> childrenOf(Stage& stage, const Element& element) {
  return stage.list(element, "AXChildren").value_or(std::vector<Element>());
}

std::vector<Element> menuBarItems(Stage& stage, Pid pid) {
  const auto bar = stage.link({pid, 0}, "AXMenuBar");
  return bar ? childrenOf(stage, *bar) : std::vector<Element>();
}

std::string titleOf(Stage& stage, const Element& element) {
  return stage.text(element, "AXTitle").value_or("");
}

std::string menuKey(const std::string& title) {
  const std::string shortened = joined(splitAt(title, "…"), "");
  return normalizedLabel(joined(splitAt(shortened, "..."), ""));
}

std::optional<Element> menuItem(Stage& stage, const std::vector<Element>& candidates,
                                const std::string& title) {
  const std::string wanted = menuKey(title);
  for (const Element& each : candidates) {
    if (same(menuKey(titleOf(stage, each)), wanted)) return each;
  }
  for (const Element& each : candidates) {
    const std::string key = menuKey(titleOf(stage, each));
    if (!key.empty() && key.compare(0, wanted.size(), wanted) == 0) return each;
  }
  return std::nullopt;
}

Json noMenuItem(Stage& stage, const std::vector<Element>& candidates, const std::string& title,
                const std::string& walked) {
  std::vector<std::string> titles;
  for (const Element& each : candidates) titles.push_back(titleOf(stage, each));
  titles.erase(std::remove(titles.begin(), titles.end(), ""), titles.end());
  return refusal("no menu item " + inQuotes(title) + " under " +
                 (walked.empty() ? "the menu bar" : walked) +
                 "; available: " + joined(titles, " | "));
}

struct Modal {
  Element element;
  std::string subrole;
};

bool isModal(Stage& stage, const Element& element, int depth, const std::string& subrole) {
  const std::string role = roleOf(stage, element);
  const bool qualifies = role == "AXSheet" || role == "AXDrawer" || subrole == "AXDialog" ||
                         subrole == "AXSystemDialog" || subrole == "AXApplicationDialog" ||
                         subrole == "AXApplicationAlertDialog";
  if (!qualifies || (depth == 0 && !stage.isTrue(element, "AXModal"))) return false;
  const auto frame = stage.frame(element);
  return frame && frame->width > 1 && frame->height > 1;
}

std::vector<Modal> modalsOf(Stage& stage, Pid pid) {
  std::vector<Modal> modals;
  walk(stage, windowsInScope(stage, pid), searchBounds, Siblings::lastFirst,
       [&](const Element& element, int depth) {
         const std::string subrole = stage.text(element, "AXSubrole").value_or("");
         if (isModal(stage, element, depth, subrole)) modals.push_back({element, subrole});
         return modals.size() < 8;
       });
  return modals;
}

std::string modalText(Stage& stage, const Element& modal) {
  return innerText(stage, modal, {80, 2000});
}

/// What a slider says of itself, added to the reply.
Json withReading(Stage& stage, const Element& slider, Json reply) {
  const std::pair<const char*, const char*> attributes[] = {
      {"value", "AXValue"}, {"min", "AXMinValue"}, {"max", "AXMaxValue"}};
  for (const auto& [key, name] : attributes) {
    if (const auto number = stage.number(slider, name)) reply[key] = *number;
  }
  return reply;
}

std::vector<Element> slidersLabelled(Stage& stage, Pid pid, const std::string& label) {
  std::vector<Element> sliders;
  walk(stage, windowsInScope(stage, pid), searchBounds, Siblings::lastFirst,
       [&](const Element& element, int /*depth*/) {
         if (roleOf(stage, element) == "AXSlider" && same(labelOf(stage, element), label)) {
           sliders.push_back(element);
         }
         return true;
       });
  return sliders;
}

}  // namespace

Json axMenu(Stage& stage, const Words& words) {
  require(words, 2, "ax-menu <app> <title>...");
  const Pid pid = enabledApp(stage, words[0]);
  auto candidates = menuBarItems(stage, pid);
  std::vector<std::string> titles;
  Element item;
  for (std::size_t i = 1; i < words.size(); ++i) {
    const std::string walked = joined(titles, " > ");
    const auto found = menuItem(stage, candidates, words[i]);
    if (!found) return noMenuItem(stage, candidates, words[i], walked);
    item = *found;
    titles.push_back(titleOf(stage, item));
    candidates.clear();
    for (const Element& menu : childrenOf(stage, item)) {
      const auto items = childrenOf(stage, menu);
      candidates.insert(candidates.end(), items.begin(), items.end());
    }
  }
  const std::string path = joined(titles, " > ");
  if (stage.isFalse(item, "AXEnabled")) return refusal("menu item " + path + " is disabled");
  const std::int32_t error = stage.perform(item, "AXPress");
  return {{"ok", error == 0}, {"pressed", path}, {"axError", error}};
}

Json axMenubar(Stage& stage, const Words& words) {
  require(words, 1, "ax-menubar <app>");
  const Pid pid = enabledApp(stage, words[0]);
  Json titles = Json::array();
  for (const Element& item : menuBarItems(stage, pid)) titles.push_back(titleOf(stage, item));
  return {{"ok", true}, {"menus", titles}};
}

Json axModal(Stage& stage, const Words& words) {
  require(words, 1, "ax-modal <app>");
  const Pid pid = enabledApp(stage, words[0]);
  Json modals = Json::array();
  for (const Modal& modal : modalsOf(stage, pid)) {
    Json entry = describe(stage, modal.element);
    entry.erase("value");
    entry["subrole"] = modal.subrole;
    entry["text"] = modalText(stage, modal.element);
    entry["buttons"] = Json::array();
    for (const Element& button : buttonsIn(stage, modal.element)) {
      entry["buttons"].push_back(labelOf(stage, button));
    }
    modals.push_back(entry);
  }
  return {{"ok", true}, {"modals", modals}};
}

Json axModalPress(Stage& stage, const Words& words) {
  require(words, 3, "ax-modal-press <app> <text> <button>");
  const Pid pid = enabledApp(stage, words[0]);
  std::vector<Element> dialogs;
  for (const Modal& modal : modalsOf(stage, pid)) {
    if (same(modalText(stage, modal.element), words[1])) dialogs.push_back(modal.element);
  }
  if (dialogs.size() != 1) {
    return refusal(std::to_string(dialogs.size()) + " dialogs read exactly the approved text");
  }
  std::vector<Element> buttons;
  for (const Element& button : buttonsIn(stage, dialogs[0])) {
    if (same(labelOf(stage, button), words[2])) buttons.push_back(button);
  }
  if (buttons.size() != 1) {
    return refusal(std::to_string(buttons.size()) + " buttons labelled " + inQuotes(words[2]) +
                   " in that dialog");
  }
  const std::int32_t error = stage.perform(buttons[0], "AXPress");
  return {{"ok", error == 0}, {"axError", error}, {"pressed", words[2]}};
}

Json axSlider(Stage& stage, const Words& words) {
  require(words, 2, "ax-slider <app> <label> [<number>|increment|decrement]");
  const bool acts = words.size() >= 3;
  const bool steps = acts && (words[2] == "increment" || words[2] == "decrement");
  const auto number = acts && !steps ? realNumber(words[2]) : std::nullopt;
  const Pid pid = enabledApp(stage, words[0]);
  const auto sliders = slidersLabelled(stage, pid, words[1]);
  if (sliders.size() != 1) {
    return refusal(std::to_string(sliders.size()) + " sliders labelled " + inQuotes(words[1]));
  }
  const Element slider = sliders[0];
  if (!acts) return withReading(stage, slider, {{"ok", true}});
  if (!steps && !number) throw Failure{"not a number: " + words[2]};
  // Only what an action came to has a code.
  Json reply;
  if (steps) {
    reply["axError"] =
        stage.perform(slider, words[2] == "increment" ? "AXIncrement" : "AXDecrement");
    reply["ok"] = reply["axError"] == 0;
  } else {
    reply["ok"] = stage.write(slider, "AXValue", *number) == 0;
  }
  stage.wait(300'000);
  return withReading(stage, slider, reply);
}

Json reveal(Stage& stage, const Words& words) {
  require(words, 1, "reveal <app>");
  const auto pid = runningApp(stage, words[0]);
  if (!pid) return refusal("app not running");
  Json did = Json::array();
  if (isHidden(stage, *pid)) {
    stage.unhide(*pid);
    did.push_back("unhid");
  }
  enabledApp(stage, words[0]);
  const auto windows = windowsInScope(stage, *pid);
  const bool allMinimized =
      !windows.empty() && std::all_of(windows.begin(), windows.end(), [&](const Element& window) {
        return stage.isTrue(window, "AXMinimized");
      });
  if (allMinimized) {
    stage.write(windows[0], "AXMinimized", false);
    did.push_back("unminimized " + inQuotes(titleOf(stage, windows[0])));
  }
  return {{"ok", true}, {"did", did}, {"windows", windows.size()}};
}

}  // namespace oracle
