#include "simulator/text/menus.h"

#include <algorithm>
#include <utility>

#include "simulator/text/reactions.h"
#include "simulator/world/controls.h"
#include "simulator/world/element_text.h"
#include "simulator/world/elements.h"
#include "simulator/world/reactions.h"

namespace simulator {

namespace {

constexpr double menuBarHeight = 24;
constexpr double comboButtonWidth = 20;
constexpr double menuWidth = 220;
constexpr double firstTitleX = 10;
constexpr double characterWidth = 8;
constexpr double titlePadding = 20;

// The bits of AXMenuItemCmdModifiers. That of the command key says that it is not needed.
constexpr std::int64_t shiftBit = 1;
constexpr std::int64_t optionBit = 2;
constexpr std::int64_t controlBit = 4;
constexpr std::int64_t withoutCommandBit = 8;

constexpr const char* aShortcutKey = "one character, or return, tab, space, delete or escape";

std::string keyCharacter(Words& words) {
  constexpr std::pair<const char*, const char*> named[] = {
      {"return", "\r"}, {"tab", "\t"}, {"space", " "}, {"delete", "\b"}, {"escape", "\x1b"}};
  std::string key = words.name("cmd, shift, option or control", aShortcutKey);
  for (const auto& [name, character] : named) {
    if (key == name) return character;
  }
  if (characterCount(key) != 1) words.fail("unknown key '" + key + "'; expected " + aShortcutKey);
  if (key[0] >= 'a' && key[0] <= 'z') key[0] = static_cast<char>(key[0] - 'a' + 'A');
  return key;
}

/// Reads the other modifiers and the key.
void readKeyEquivalent(Words& words, MenuItemDraft& draft, bool command, std::int64_t bit) {
  if (draft.character) words.fail("a menu's item has one key equivalent");
  draft.modifiers = bit;
  while (true) {
    if (words.take("cmd")) {
      command = true;
    } else if (words.take("shift")) {
      draft.modifiers |= shiftBit;
    } else if (words.take("option")) {
      draft.modifiers |= optionBit;
    } else if (words.take("control")) {
      draft.modifiers |= controlBit;
    } else {
      break;
    }
  }
  if (!command) draft.modifiers |= withoutCommandBit;
  draft.character = keyCharacter(words);
}

constexpr std::array<Option<MenuItemDraft>, 7> menuItemOptions = {{
    {"cmd", [](Words& words, MenuItemDraft& draft) { readKeyEquivalent(words, draft, true, 0); }},
    {"shift",
     [](Words& words, MenuItemDraft& draft) { readKeyEquivalent(words, draft, false, shiftBit); }},
    {"option",
     [](Words& words, MenuItemDraft& draft) { readKeyEquivalent(words, draft, false, optionBit); }},
    {"control", [](Words& words,
                   MenuItemDraft& draft) { readKeyEquivalent(words, draft, false, controlBit); }},
    {"disabled", [](Words&, MenuItemDraft& draft) { draft.disabled = true; }},
    {"alternate", [](Words&, MenuItemDraft& draft) { draft.alternate = true; }},
    {"press:",
     [](Words& words, MenuItemDraft& draft) { draft.onClick = readReactions(words, "press:"); }},
}};

ElementId findMenuBar(const Application& application) {
  const auto& elements = application.elements;
  const auto found = std::find_if(elements.begin(), elements.end(), [](const Element& element) {
    return element.parent == 0 && element.window == 0 && element.role == "AXMenuBar";
  });
  return found == elements.end() ? 0 : found->id;
}

ElementId childTitled(const Application& application, ElementId parent, const std::string& title) {
  for (const ElementId id : findElement(application, parent)->children) {
    const auto& attributes = findElement(application, id)->attributes;
    const auto found = attributes.find("AXTitle");
    if (found != attributes.end() && found->second == AttributeValue(title)) return id;
  }
  return 0;
}

Rect frameOf(const Application& application, ElementId id) {
  const Element* element = findElement(application, id);
  return element == nullptr ? Rect() : element->frame.value_or(Rect());
}

ElementId addTitle(Application& application, ElementId bar, const std::string& title) {
  const auto& siblings = findElement(application, bar)->children;
  const Rect last =
      siblings.empty() ? Rect{firstTitleX, 0, 0, 0} : frameOf(application, siblings.back());
  const double width = titlePadding + characterWidth * static_cast<double>(characterCount(title));
  const Rect frame{last.x + last.width, 0, width, menuBarHeight};
  return addElement(application, bar, 0, frame, "AXMenuBarItem").id;
}

/// Adds an item at the foot of the menu, which grows by it.
ElementId addItem(Application& application, ElementId menu, bool visible) {
  const Rect before = frameOf(application, menu);
  const Rect frame{before.x, before.y + before.height, visible ? before.width : 0, menuItemHeight};
  if (visible)
    findElement(application, menu)->frame =
        Rect{before.x, before.y, before.width, before.height + menuItemHeight};
  const WindowNumber window = findElement(application, menu)->window;
  return addElement(application, menu, window, frame, "AXMenuItem").id;
}

ElementId menuBelow(Application& application, ElementId item) {
  const ElementId menu = menuOf(application, *findElement(application, item));
  if (menu != 0) return menu;
  const Rect frame{parkedMenus.x, parkedMenus.y, menuWidth, 0};
  const ElementId added = addElement(application, item, 0, frame, "AXMenu").id;
  findElement(application, added)->actions = {"AXCancel"};
  return added;
}

void name(Element& element, const std::string& title) {
  const bool isSeparator = title == "-";
  element.attributes["AXTitle"] = isSeparator ? std::string() : title;
  if (isSeparator) {
    element.attributes["AXEnabled"] = false;
  } else {
    element.actions = {"AXPress"};
  }
}

}  // namespace

MenuItemDraft readMenuItem(Words& words) {
  MenuItemDraft draft;
  do {
    draft.path.push_back(words.name("menu", "titles with > between them"));
  } while (words.take(">"));
  readOptions(words, menuItemOptions, draft);
  return draft;
}

ElementId addMenuItem(Application& application, const MenuItemDraft& draft) {
  ElementId above = findMenuBar(application);
  if (above == 0) above = addElement(application, 0, 0, Rect(), "AXMenuBar").id;
  for (std::size_t i = 0; i < draft.path.size(); ++i) {
    const bool isLast = i + 1 == draft.path.size();
    const std::string& title = draft.path[i];
    const ElementId around = i == 0 ? above : menuBelow(application, above);
    const ElementId known = isLast ? 0 : childTitled(application, around, title);
    if (known != 0) {
      above = known;
      continue;
    }
    above = i == 0 ? addTitle(application, around, title)
                   : addItem(application, around, !(isLast && draft.alternate));
    name(*findElement(application, above), title);
  }
  Element& item = *findElement(application, above);
  if (draft.disabled) item.attributes["AXEnabled"] = false;
  if (draft.character) {
    item.attributes["AXMenuItemCmdChar"] = *draft.character;
    item.attributes["AXMenuItemCmdModifiers"] = draft.modifiers;
  }
  item.onClick = draft.onClick;
  const bool pastes = draft.path.back() == "Paste" && draft.onClick.empty();
  if (pastes) item.onClick = {{reactions::paste}};
  return above;
}

/// A combo box has a button at its end, and below it a list while that is open.
void addListOfChoices(Application& application, ElementId box,
                      const std::vector<std::string>& titles) {
  const Rect frame = frameOf(application, box);
  const WindowNumber window = findElement(application, box)->window;
  const double side = std::min(frame.height, comboButtonWidth);
  Element& button =
      addElement(application, box, window,
                 Rect{frame.x + frame.width - side, frame.y, side, frame.height}, "AXButton");
  button.actions = {"AXPress"};
  const double height = menuItemHeight * static_cast<double>(titles.size());
  Rect place{frame.x, frame.y + frame.height, frame.width, height};
  Element& list = addElement(application, box, window, place, "AXList");
  const ElementId id = list.dependsOn = list.id;
  list.presence = Presence::whileOpen;
  place.height = menuItemHeight;
  for (const std::string& title : titles) {
    Element& item = addElement(application, id, window, place, "AXStaticText");
    item.attributes["AXValue"] = title;
    item.actions = {"AXPress"};
    place.y += menuItemHeight;
  }
}

void addChoices(Application& application, ElementId button,
                const std::vector<std::string>& titles) {
  if (titles.empty()) return;
  if (findElement(application, button)->role == "AXComboBox") {
    addListOfChoices(application, button, titles);
    return;
  }
  const Rect frame = frameOf(application, button);
  const WindowNumber window = findElement(application, button)->window;
  Element& menu = addElement(application, button, window,
                             Rect{frame.x, frame.y + frame.height, frame.width, 0}, "AXMenu");
  const ElementId id = menu.dependsOn = menu.id;
  menu.presence = Presence::whileOpen;
  menu.actions = {"AXCancel"};
  for (const std::string& title : titles) {
    name(*findElement(application, addItem(application, id, true)), title);
  }
}

void placeMenuBars(World& world) {
  const Rect& display = world.displays.front().frame;
  for (Application& application : world.applications) {
    for (Element& element : application.elements) {
      const bool isUnplaced = element.role == "AXMenuBar" && element.frame == Rect();
      if (isUnplaced) element.frame = Rect{display.x, display.y, display.width, menuBarHeight};
    }
  }
}

}  // namespace simulator
