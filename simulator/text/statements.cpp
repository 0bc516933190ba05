#include "simulator/text/statements.h"

#include <algorithm>
#include <limits>

#include "simulator/text/display.h"
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

constexpr std::array<Option<WorldBuilder>, 13> statements = {{
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
    {"clock", [](Words& words, WorldBuilder& builder) { readClock(words, builder.world()); }},
}};

void refuseOrphan(const Words& words) {
  if (words.nextIs("window")) words.fail("a window belongs in an application");
  if (words.nextIsRole()) {
    words.fail("an element belongs in an application, a window or another element");
  }
}

}  // namespace

WorldBuilder::Place readStatement(Words& words, WorldBuilder& builder) {
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
  words.failUnknown("app, " + firstWords(phrasesOf(statements)) + ", " + userStatementWords() +
                    ", define, use, repeat, include");
}

}  // namespace simulator
