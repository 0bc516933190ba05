#include "simulator/text/line_reader.h"

#include <algorithm>
#include <string>
#include <utility>

#include "base/numbers.h"
#include "simulator/text/statements.h"
#include "simulator/text/words.h"

namespace simulator {

namespace {

using Place = WorldBuilder::Place;

/// A line about what it stands in, rather than of something else there.
Place readNowLine(Words& words, WorldBuilder& builder, const Place& place) {
  builder.addNow(words, place);
  return {Place::Kind::other, "now", 0, 0, 0};
}

Place readInApplication(Words& words, WorldBuilder& builder, const Place& application) {
  if (words.take("window")) return builder.addWindow(words, application);
  if (words.take("menu")) return builder.addMenuItem(words, application);
  if (words.nextIsRole()) return builder.addElement(words, application);
  if (words.take("gone")) {
    readGone(words, builder.world(), application);
    return {Place::Kind::other, "gone", 0, 0, 0};
  }
  words.failUnknown("window, menu or an element's role such as AXButton");
}

Place readInElement(Words& words, WorldBuilder& builder, const Place& parent) {
  if (words.nextIs("window")) words.fail("a window belongs in an application");
  if (words.nextIsRole()) return builder.addElement(words, parent);
  words.failUnknown("an element's role such as AXButton");
}

Place readLine(Words& words, WorldBuilder& builder, const Place& parent) {
  const bool canBeSo = parent.kind != Place::Kind::other && parent.kind != Place::Kind::unread;
  if (canBeSo && words.take("now")) return readNowLine(words, builder, parent);
  switch (parent.kind) {
    case Place::Kind::top:
      return readStatement(words, builder);
    case Place::Kind::application:
      return readInApplication(words, builder, parent);
    case Place::Kind::window:
    case Place::Kind::element:
      return readInElement(words, builder, parent);
    case Place::Kind::other:
    case Place::Kind::unread:
      break;
  }
  words.fail(std::string("nothing can be in '") + parent.statement + "'");
}

Token bareWord(std::string text) { return {Token::Kind::word, std::move(text)}; }

/// The number behind this word of the line, unless it is taken or none; then the other.
template <class IsFree>
Token numberBehind(const Line& line, std::string_view word, IsFree isFree, std::int64_t other) {
  for (std::size_t i = 0; i + 1 < line.tokens.size(); ++i) {
    if (line.tokens[i].text != word) continue;
    const auto number = driver::parseInt32(line.tokens[i + 1].text);
    if (number && *number > 0 && isFree(*number)) return bareWord(std::to_string(*number));
  }
  return bareWord(std::to_string(other));
}

/// The least that a line can be meant to say, for one that cannot be read: the application, window
/// or element by its name. Without tokens when it is none of them.
Line outlineOf(const Line& line, const World& world) {
  Line outline{line.number, line.indentation, {}, line.trail};
  const auto& tokens = line.tokens;
  const bool isWord = !tokens.empty() && tokens.front().kind == Token::Kind::word;
  if (!isWord) return outline;
  const std::string& first = tokens.front().text;
  const auto text = std::find_if(tokens.begin(), tokens.end(), [](const Token& token) {
    return token.kind == Token::Kind::text;
  });
  if (first == "app" && tokens.size() > 1) {
    const auto isFree = [&](Pid pid) {
      return world.processes.count(pid) == 0 && findApplication(world, pid) == nullptr;
    };
    constexpr std::int64_t highPid = 2'000'000'000;
    const auto count = static_cast<std::int64_t>(world.applications.size());
    outline.tokens = {tokens[0], tokens[1], bareWord("pid"),
                      numberBehind(line, "pid", isFree, highPid + count)};
  } else if (first == "window") {
    const auto isFree = [&](std::int32_t number) {
      return findWindow(world, static_cast<WindowNumber>(number)) == nullptr;
    };
    outline.tokens = {tokens[0], numberBehind(line, "window", isFree, world.lastWindow + 1)};
    if (text != tokens.end()) outline.tokens.push_back(*text);
    // Wherever its elements are, they are in it.
    for (const char* word : {"at", "-1000000,-1000000", "size", "3000000x3000000"}) {
      outline.tokens.push_back(bareWord(word));
    }
  } else if (first.compare(0, 2, "AX") == 0) {
    outline.tokens = {tokens[0]};
    if (text != tokens.end()) outline.tokens.push_back(*text);
  }
  return outline;
}

}  // namespace

/// Leaves on the stack what the line belongs to.
void LineReader::unwind(const Line& line) {
  bool unwound = false;
  while (!levels_.empty() && levels_.back().indentation > line.indentation) {
    levels_.pop_back();
    unwound = true;
  }
  const bool continues = !levels_.empty() && levels_.back().indentation == line.indentation;
  if (continues) levels_.pop_back();
  if (unwound && !continues) {
    throw WorldError({spotOf(line), "the indentation is that of no line above"});
  }
}

Place LineReader::placeOf(const Line& line, const Place& parent) {
  Words words(line);
  if (line.damage) throw WorldError({spotOf(line), line.damage->cause, {}, line.damage->extent});
  return readLine(words, builder_, parent);
}

/// The place of a line that could not be read, for the lines below it.
Place LineReader::placeHeld(const Line& line, const Place& parent) {
  Place place;
  place.kind = Place::Kind::unread;
  const Line outline = outlineOf(line, builder_.world());
  if (outline.tokens.empty()) return place;
  try {
    return placeOf(outline, parent);
  } catch (const WorldError&) {
    return place;
  }
}

const Place& LineReader::read(const Line& line) {
  Place place;
  place.kind = Place::Kind::unread;
  try {
    unwind(line);
    const Place& parent = levels_.empty() ? root_ : levels_.back().place;
    if (parent.kind != Place::Kind::unread) place = placeOf(line, parent);
  } catch (const WorldError& error) {
    complain_(error.complaint());
    place = placeHeld(line, levels_.empty() ? root_ : levels_.back().place);
  }
  return levels_.emplace_back(Level{line.indentation, place}).place;
}

}  // namespace simulator
