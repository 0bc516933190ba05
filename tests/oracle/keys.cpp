#include <map>
#include <optional>

#include "simulator/world/pasteboard.h"
#include "tests/oracle/commands.h"
#include "tests/oracle/elements.h"
#include "tests/oracle/focus.h"
#include "tests/oracle/keyboard.h"
#include "tests/oracle/opinion.h"
#include "tests/oracle/texts.h"
#include "tests/oracle/windows.h"

namespace oracle {

namespace {

constexpr std::uint64_t commandFlag = 0x100000;
constexpr std::uint64_t shiftFlag = 0x20000;
constexpr std::uint64_t optionFlag = 0x80000;
constexpr std::uint64_t controlFlag = 0x40000;

/// Rows of names, the n-th of which has the n-th code from the row's first one on.
std::map<std::string, int> keyCodes() {
  std::map<std::string, int> codes = {
      {"`", 50},      {"return", 36},    {"enter", 36},   {"tab", 48},       {"space", 49},
      {"delete", 51}, {"backspace", 51}, {"escape", 53},  {"esc", 53},       {"forwarddelete", 117},
      {"home", 115},  {"end", 119},      {"pageup", 116}, {"pagedown", 121}, {"left", 123},
      {"right", 124}, {"down", 125},     {"up", 126}};
  const std::pair<int, std::string> rows[] = {{0, "asdfhgzxcv"},
                                              {11, "bqweryt"},
                                              {18, "123465"},
                                              {24, "=97-80]ou[ip"},
                                              {37, "lj'k;\\,/nm."}};
  for (const auto& [first, names] : rows) {
    for (std::size_t i = 0; i < names.size(); ++i) {
      codes[std::string(1, names[i])] = first + static_cast<int>(i);
    }
  }
  return codes;
}

std::optional<std::uint64_t> modifierOf(const std::string& word) {
  const std::map<std::string, std::uint64_t> words = {
      {"cmd", commandFlag},    {"command", commandFlag}, {"meta", commandFlag},
      {"super", commandFlag},  {"shift", shiftFlag},     {"alt", optionFlag},
      {"option", optionFlag},  {"opt", optionFlag},      {"ctrl", controlFlag},
      {"control", controlFlag}};
  const auto found = words.find(word);
  if (found == words.end()) return std::nullopt;
  return found->second;
}

struct Combination {
  std::uint64_t flags = 0;
  int code = 0;
};

Combination parsed(const std::string& text) {
  const auto codes = keyCodes();
  Combination combination;
  bool hasKey = false;
  for (const std::string& piece : splitAt(lowered(text), "+")) {
    if (piece.empty()) continue;
    if (const auto flag = modifierOf(piece)) {
      combination.flags |= *flag;
      continue;
    }
    const auto code = codes.find(piece);
    if (code == codes.end()) throw InputRefusal{"unknown key: " + piece};
    combination.code = code->second;
    hasKey = true;
  }
  if (!hasKey) throw InputRefusal{"no key in combo: " + text};
  return combination;
}

std::optional<Element> menuEquivalent(Stage& stage, Pid pid, const Combination& combination) {
  std::string name;
  for (const auto& [each, code] : keyCodes()) {
    if (each.size() == 1 && code == combination.code) name = each;
  }
  const auto bar = stage.link({pid, 0}, "AXMenuBar");
  if (name.empty() || !bar) return std::nullopt;
  const double mask = ((combination.flags & controlFlag) != 0 ? 4 : 0) +
                      ((combination.flags & optionFlag) != 0 ? 2 : 0) +
                      ((combination.flags & shiftFlag) != 0 ? 1 : 0);
  std::optional<Element> found;
  walk(stage, {*bar}, {static_cast<std::size_t>(-1), 5}, Siblings::lastFirst,
       [&](const Element& element, int /*depth*/) {
         if (roleOf(stage, element) != "AXMenuItem") return true;
         const auto character = stage.text(element, "AXMenuItemCmdChar");
         if (!character || lowered(*character) != name) return true;
         if (stage.number(element, "AXMenuItemCmdModifiers").value_or(0) != mask) return true;
         if (stage.isFalse(element, "AXEnabled")) return true;
         found = element;
         return false;
       });
  return found;
}

void postKey(Stage& stage, Pid pid, int code, bool down, std::uint64_t flags,
             const std::string& text = "") {
  platform::EventImage event;
  event.identity = stage.newIdentity();
  event.type = down ? 10 : 11;
  event.keyCode = code;
  event.flags = flags;
  event.text = utf16Bytes(text);
  postPaced(stage, pid, event, {false, true});
}

void postCombination(Stage& stage, Pid pid, const Combination& combination) {
  const std::pair<std::uint64_t, int> modifiers[] = {
      {commandFlag, 55}, {shiftFlag, 56}, {optionFlag, 58}, {controlFlag, 59}};
  for (const auto& [flag, code] : modifiers) {
    if ((combination.flags & flag) != 0) postKey(stage, pid, code, true, combination.flags);
  }
  postKey(stage, pid, combination.code, true, combination.flags);
  postKey(stage, pid, combination.code, false, combination.flags);
  for (int i = 3; i >= 0; --i) {
    const auto& [flag, code] = modifiers[i];
    if ((combination.flags & flag) != 0) postKey(stage, pid, code, false, combination.flags);
  }
}

void pressKey(Stage& stage, Pid pid, const std::string& text) {
  const Combination combination = parsed(text);
  const bool hasCommand = (combination.flags & commandFlag) != 0;
  const auto item = hasCommand ? menuEquivalent(stage, pid, combination) : std::nullopt;
  if (!item) return postCombination(stage, pid, combination);
  requireCaptureAlive(stage);
  if (stage.perform(*item, "AXPress") != 0) {
    throw InputRefusal{"target menu shortcut failed: " + text};
  }
  stage.wait(100'000);
}

std::vector<std::string> chunksOf(const std::string& line) {
  std::vector<std::string> chunks;
  std::string chunk;
  for (const std::string& character : charactersOf(line)) {
    if (!chunk.empty() && utf16Length(chunk + character) > 20) {
      chunks.push_back(chunk);
      chunk.clear();
    }
    chunk += character;
  }
  if (!chunk.empty()) chunks.push_back(chunk);
  return chunks;
}

/// The key window of an application in front; none for another.
std::optional<Element> usersWindow(Stage& stage, Pid pid) {
  if (foreground(stage) != pid) return std::nullopt;
  return stage.link({pid, 0}, "AXFocusedWindow");
}

void typeText(Stage& stage, Pid pid, const std::string& text) {
  const auto window = usersWindow(stage, pid);
  const auto requireSame = [&] {
    if (usersWindow(stage, pid) != window) throw NoOpinion{Silence::movedKeyboard};
  };
  const auto lines = splitAt(joined(splitAt(text, "\r\n"), "\n"), "\n");
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (i > 0) {
      requireSame();
      pressKey(stage, pid, "shift+return");
      stage.wait(50'000);
    }
    for (const std::string& chunk : chunksOf(lines[i])) {
      requireSame();
      postKey(stage, pid, 0, true, 0, chunk);
      postKey(stage, pid, 0, false, 0, chunk);
    }
  }
}

std::string absolutePath(const Stage& stage, const std::string& path) {
  if (repaired(path) != path) throw NoOpinion{Silence::oddPath};
  if (!path.empty() && path[0] == '/') return path;
  const auto& world = stage.world();
  const std::string folder = world.system.directory.value_or("/Users/" + world.user.loginName);
  if (folder.empty()) throw Failure{"no current directory for " + path};
  return folder + "/" + path;
}

/// Puts files on the clipboard while `use` is done, and what was there back.
void withClipboard(Stage& stage, const std::vector<std::string>& paths,
                   const std::function<void()>& use) {
  const auto saved = simulator::readableItems(stage.world().pasteboard);
  if (stage.world().system.pasteboardReads != simulator::PasteboardReads::free) {
    throw NoOpinion{Silence::unreadableBoard};
  }
  std::vector<pasteboard::Item> kept;
  for (const auto& item : saved) {
    if (!item.empty()) kept.push_back(item);
  }
  if (kept.empty() && !saved.empty()) throw NoOpinion{Silence::onlyPromises};
  stage.clearClipboard();
  stage.writeFiles(paths);
  const std::int64_t count = stage.world().pasteboard.changeCount;
  std::optional<InputRefusal> refused;
  try {
    use();
  } catch (const InputRefusal& error) {
    refused = error;
  }
  stage.wait(300'000);
  if (stage.world().pasteboard.changeCount == count) {
    stage.clearClipboard();
    if (!kept.empty()) stage.writeClipboard(kept);
  }
  if (refused) throw *refused;
}

}  // namespace

Json bgKey(Stage& stage, const Words& words) {
  if (words.size() != 2) throw Failure{"usage: bg-key <app> <combo>"};
  return withTargetKeyboard(stage, words[0],
                            [&](Pid receiver) { pressKey(stage, receiver, words[1]); });
}

Json bgType(Stage& stage, const Words& words) {
  if (words.size() != 2) throw Failure{"usage: bg-type <app> <text>"};
  return withTargetKeyboard(stage, words[0],
                            [&](Pid receiver) { typeText(stage, receiver, words[1]); });
}

Json bgPasteFiles(Stage& stage, const Words& words) {
  require(words, 2, "bg-paste-files <app> <path>...");
  std::vector<std::string> paths;
  for (std::size_t i = 1; i < words.size(); ++i) paths.push_back(absolutePath(stage, words[i]));
  return withTargetKeyboard(stage, words[0], [&](Pid receiver) {
    withClipboard(stage, paths, [&] { pressKey(stage, receiver, "cmd+v"); });
  });
}

}  // namespace oracle
