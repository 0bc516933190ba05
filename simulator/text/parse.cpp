#include "simulator/text/parse.h"

#include "simulator/text/builder.h"
#include "simulator/text/happenings.h"
#include "simulator/text/scanner.h"
#include "simulator/text/statements.h"
#include "simulator/text/words.h"

namespace simulator {

namespace {

using Place = WorldBuilder::Place;

struct Level {
  std::size_t indentation;
  Place place;
};

/// Leaves on the stack what the line belongs to.
void unwind(std::vector<Level>& levels, const Line& line) {
  bool unwound = false;
  while (!levels.empty() && levels.back().indentation > line.indentation) {
    levels.pop_back();
    unwound = true;
  }
  const bool continues = !levels.empty() && levels.back().indentation == line.indentation;
  if (unwound && !continues) {
    throw WorldError(line.number, "the indentation is that of no line above");
  }
  if (continues) levels.pop_back();
}

Place readInApplication(Words& words, WorldBuilder& builder, const Place& application) {
  if (words.take("window")) return builder.addWindow(words, application);
  if (words.take("menu")) return builder.addMenuItem(words, application);
  if (words.nextIsRole()) return builder.addElement(words, application);
  words.failUnknown("window, menu or an element's role such as AXButton");
}

Place readInElement(Words& words, WorldBuilder& builder, const Place& parent) {
  if (words.nextIs("window")) words.fail("a window belongs in an application");
  if (words.nextIsRole()) return builder.addElement(words, parent);
  words.failUnknown("an element's role such as AXButton");
}

Place readLine(Words& words, WorldBuilder& builder, const Place& parent) {
  switch (parent.kind) {
    case Place::Kind::top:
      return readStatement(words, builder);
    case Place::Kind::application:
      return readInApplication(words, builder, parent);
    case Place::Kind::window:
    case Place::Kind::element:
      return readInElement(words, builder, parent);
    case Place::Kind::other:
      break;
  }
  words.fail(std::string("nothing can be in '") + parent.statement + "'");
}

}  // namespace

World parseWorld(std::string_view text) {
  WorldBuilder builder;
  std::vector<Level> levels;
  for (const Line& line : scanLines(text)) {
    unwind(levels, line);
    Words words(line);
    const Place place = readLine(words, builder, levels.empty() ? Place() : levels.back().place);
    levels.push_back({line.indentation, place});
  }
  return builder.finish();
}

Happening parseHappening(std::string_view text, const World& world) {
  const std::vector<Line> lines = scanLines(text);
  if (lines.size() > 1) throw WorldError(1, "expected a single line");
  const Line line = lines.empty() ? Line{1, 0, {}} : Line{1, 0, lines.front().tokens};
  Words words(line);
  return readHappening(words, world);
}

Microseconds parseTime(std::string_view text) {
  const Line line{1, 0, {{Token::Kind::word, std::string(text)}}};
  Words words(line);
  return words.time("at");
}

}  // namespace simulator
