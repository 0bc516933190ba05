#include "simulator/text/parse.h"

#include <algorithm>
#include <limits>

#include "simulator/text/builder.h"
#include "simulator/text/display.h"
#include "simulator/text/happenings.h"
#include "simulator/text/scanner.h"
#include "simulator/text/user.h"
#include "simulator/text/words.h"

namespace simulator {

namespace {

using Place = WorldBuilder::Place;

constexpr std::array<Option<User>, 2> userOptions = {{
    {"login",
     [](Words& words, User& user) { user.loginName = words.name("login", "a login name"); }},
    {"unparsable", [](Words&, User& user) { user.nameParses = false; }},
}};

constexpr std::array<Option<Session>, 5> sessionOptions = {{
    {"locked", [](Words&, Session& session) { session.locked = true; }},
    {"off-console", [](Words&, Session& session) { session.onConsole = false; }},
    {"unreadable", [](Words&, Session& session) { session.readable = false; }},
    {"without-console-key", [](Words&, Session& session) { session.onConsole.reset(); }},
    {"locks after",
     [](Words& words, Session& session) { session.lockDelay = words.time("after"); }},
}};

constexpr std::array<Option<World>, 4> denials = {{
    {"display-hold", [](Words&, World& world) { world.displayHoldAllowed = false; }},
    {"accessibility", [](Words&, World& world) { world.accessibilityAllowed = false; }},
    {"keys-in-taps", [](Words&, World& world) { world.keysInTapsAllowed = false; }},
    {"screen-recording", [](Words&, World& world) { world.screenRecordingAllowed = false; }},
}};

template <class Target, std::size_t count>
void readAtLeastOne(Words& words, const char* owner,
                    const std::array<Option<Target>, count>& options, Target& target) {
  if (words.atEnd()) words.failNeeding(owner, oneOf(phrasesOf(options)).c_str());
  readOptions(words, options, target);
}

void addDisplay(Words& words, WorldBuilder& builder) {
  const Display display = readDisplay(words);
  auto& displays = builder.world().displays;
  if (std::any_of(displays.begin(), displays.end(),
                  [&](const Display& each) { return each.id == display.id; })) {
    words.fail("display number " + std::to_string(display.id) + " is taken");
  }
  displays.push_back(display);
}

constexpr std::array<Option<WorldBuilder>, 12> statements = {{
    {"user",
     [](Words& words, WorldBuilder& builder) {
       User& user = builder.world().user;
       user.fullName = words.text("user", "a quoted name");
       readOptions(words, userOptions, user);
     }},
    {"pointer",
     [](Words& words, WorldBuilder& builder) {
       builder.world().pointer = words.finitePoint("pointer");
     }},
    {"display", addDisplay},
    {"deny",
     [](Words& words, WorldBuilder& builder) {
       readAtLeastOne(words, "deny", denials, builder.world());
     }},
    {"session",
     [](Words& words, WorldBuilder& builder) {
       readAtLeastOne(words, "session", sessionOptions, builder.world().session);
     }},
    {"missing",
     [](Words& words, WorldBuilder& builder) {
       builder.world().missing.insert(words.name("missing", "a symbol or a library"));
     }},
    {"process",
     [](Words& words, WorldBuilder& builder) {
       const auto pid = static_cast<Pid>(
           words.integer("process", "a process id", 1, std::numeric_limits<Pid>::max()));
       builder.claimPid(words, pid);
       builder.world().processes.insert(pid);
     }},
    {"file",
     [](Words& words, WorldBuilder& builder) {
       builder.world().files.insert(words.text("file", aPath));
     }},
    {"image",
     [](Words& words, WorldBuilder& builder) {
       builder.world().images.insert(words.text("image", aPath));
     }},
    {"at", [](Words& words, WorldBuilder& builder) { builder.addToScript(words); }},
    {"panel", [](Words& words, WorldBuilder& builder) { builder.addPanel(words); }},
    {"seed",
     [](Words& words, WorldBuilder& builder) {
       if (builder.world().seed) words.fail("a second seed");
       builder.world().seed = static_cast<std::uint64_t>(
           words.integer("seed", "a number from 0", 0, std::numeric_limits<std::int64_t>::max()));
     }},
}};

void refuseOrphan(const Words& words) {
  if (words.nextIs("window")) words.fail("a window belongs in an application");
  if (words.nextIsRole()) {
    words.fail("an element belongs in an application, a window or another element");
  }
}

/// Reads a line that belongs to nothing: `app`, `display`, `at` …
Place readStatement(Words& words, WorldBuilder& builder) {
  if (words.take("app")) return builder.addApplication(words);
  refuseOrphan(words);
  for (const Option<WorldBuilder>& statement : statements) {
    if (!words.take(statement.phrase)) continue;
    statement.read(words, builder);
    words.expectEnd();
    return {Place::Kind::other, statement.phrase, 0, 0, 0};
  }
  if (const char* word = readUserStatement(words, builder.world())) {
    words.expectEnd();
    return {Place::Kind::other, word, 0, 0, 0};
  }
  words.failUnknown("app, " + firstWords(phrasesOf(statements)) + ", " + userStatementWords());
}

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
  Happening happening = readHappening(words, world);
  KnownLabels labels(world);
  settleHappening(line.number, labels, happening);
  return happening;
}

Microseconds parseTime(std::string_view text, const char* owner) {
  const Line line{1, 0, {{Token::Kind::word, std::string(text)}}};
  Words words(line);
  return words.time(owner);
}

}  // namespace simulator
