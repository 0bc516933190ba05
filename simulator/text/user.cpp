#include "simulator/text/user.h"

#include <limits>
#include <utility>

#include "base/numbers.h"
#include "simulator/text/releases.h"

namespace simulator {

namespace {

constexpr const char* aType = "a quoted type";
constexpr std::int64_t photoBytesMax = 10'000'000;

constexpr std::array<Option<Keyboard>, 4> layouts = {{
    {"us", [](Words&, Keyboard& keyboard) { keyboard.layout = KeyboardLayout::us; }},
    {"german", [](Words&, Keyboard& keyboard) { keyboard.layout = KeyboardLayout::german; }},
    {"french", [](Words&, Keyboard& keyboard) { keyboard.layout = KeyboardLayout::french; }},
    {"japanese", [](Words&, Keyboard& keyboard) { keyboard.layout = KeyboardLayout::japanese; }},
}};

void readKeyboard(Words& words, World& world) {
  if (words.atEnd()) words.failNeeding("keyboard", oneOf(phrasesOf(layouts)).c_str());
  layouts[takePhrase(words, phrasesOf(layouts))].read(words, world.keyboard);
}

void readPasteboardItem(Words& words, World& world) {
  words.expect("pasteboard", "item");
  Pasteboard::Item& item = world.pasteboard.items.emplace_back();
  do {
    if (words.take("promises")) {
      item.push_back({words.text("promises", aType), std::nullopt});
    } else {
      std::string type = words.text("item", aType);
      item.push_back({std::move(type), words.text("item", "quoted data behind each type")});
    }
  } while (!words.atEnd());
}

void readLanguages(Words& words, World& world) {
  const std::string list = words.word("languages", "tags such as zh-Hans,en");
  auto& languages = world.system.languages;
  languages.clear();
  for (std::size_t start = 0; start <= list.size();) {
    const std::size_t comma = std::min(list.find(',', start), list.size());
    languages.push_back(list.substr(start, comma - start));
    if (languages.back().empty()) words.fail("'languages' has an empty tag in '" + list + "'");
    start = comma + 1;
  }
}

std::string releaseNames() {
  std::string names;
  for (const Release& release : releases) {
    names += (names.empty() ? "" : ", ") + std::to_string(release.number);
  }
  return names;
}

/// A release of macOS with all that goes with it, or a version alone.
void readVersion(Words& words, World& world) {
  const std::string text = words.word("macos", "a version such as 14.2");
  const std::size_t dot = text.find('.');
  const auto major = driver::parseInt32(std::string_view(text).substr(0, dot));
  if (major && dot == text.npos) {
    if (!applyRelease(world.system, *major)) {
      words.fail("unknown release '" + text + "'; those known are " + releaseNames() +
                 ", beside versions such as 14.2");
    }
    return;
  }
  const auto minor =
      dot == text.npos ? std::nullopt : driver::parseInt32(std::string_view(text).substr(dot + 1));
  if (!major || !minor) words.fail("'macos' needs a version such as 14.2, not '" + text + "'");
  world.system.version = {*major, *minor};
}

/// What the directory tool writes of a photo with this many bytes.
std::string photoRecord(std::int64_t count) {
  constexpr std::string_view digits = "0123456789abcdef";
  constexpr std::int64_t groupBytes = 4;
  constexpr std::array<unsigned, 4> start = {0xFF, 0xD8, 0xFF, 0xE0};
  std::string text = "JPEGPhoto:\n";
  for (std::int64_t i = 0; i < count; ++i) {
    const auto byte = i < static_cast<std::int64_t>(start.size())
                          ? start[static_cast<std::size_t>(i)]
                          : static_cast<unsigned>(i * 7 % 256);
    if (i % groupBytes == 0) text += ' ';
    text += {digits[byte >> 4U], digits[byte & 0xFU]};
  }
  return text + '\n';
}

void readTool(Words& words, World& world) {
  platform::Bytes& output = world.system.tools[words.text("tool", aPath)];
  if (words.take("output")) {
    output = words.text("output", "a quoted text");
  } else if (words.take("photo")) {
    output = photoRecord(words.integer("photo", "a number of bytes", 0, photoBytesMax));
  } else {
    words.failNeeding("tool", "output or photo behind its path");
  }
}

constexpr std::array<Option<World>, 9> userStatements = {{
    {"keyboard", readKeyboard},
    {"pasteboard", readPasteboardItem},
    {"idle",
     [](Words& words, World& world) {
       world.activity.before.reset();
       if (!words.take("never")) world.activity.before = words.time("idle");
     }},
    {"languages", readLanguages},
    {"macos", readVersion},
    {"system", readReleaseSetting},
    {"directory",
     [](Words& words, World& world) { world.system.directory = words.text("directory", aPath); }},
    {"tool", readTool},
    {"link",
     [](Words& words, World& world) {
       std::string path = words.text("link", aPath);
       words.expect("link", "to");
       world.system.links[std::move(path)] = words.text("to", aPath);
     }},
}};

}  // namespace

const char* readUserStatement(Words& words, World& world) {
  for (const Option<World>& statement : userStatements) {
    if (!words.take(statement.phrase)) continue;
    statement.read(words, world);
    return statement.phrase;
  }
  return nullptr;
}

std::string userStatementWords() { return firstWords(phrasesOf(userStatements)); }

}  // namespace simulator
