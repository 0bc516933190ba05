#include "simulator/text/parse.h"

#include <utility>

#include "simulator/text/addition.h"
#include "simulator/text/builder.h"
#include "simulator/text/expansion.h"
#include "simulator/text/happenings.h"
#include "simulator/text/inspection.h"
#include "simulator/text/line_reader.h"
#include "simulator/text/now.h"
#include "simulator/text/reactions.h"
#include "simulator/text/scanner.h"
#include "simulator/text/words.h"

namespace simulator {

WorldReading readWorld(std::string_view text, const WorldFiles& files, Warnings warnings) {
  WorldReading reading;
  const Complain complain = [&](const Complaint& each) {
    (each.isWarning ? reading.warnings : reading.errors).push_back(each);
  };
  const WorldLines lines = gatherLines(text, files, complain);
  reading.world.definitions = lines.definitions;
  reading.world.adder = addForReaction;
  WorldBuilder builder(reading.world, complain);
  LineReader reader(builder, complain);
  Inspection inspection(reading.world, complain);
  const bool inspects = warnings == Warnings::yes;
  const TakeLine take = [&](const Line& line) {
    const WorldBuilder::Place& place = reader.read(line);
    if (inspects) inspection.inspect(line, place);
  };
  expand(lines, take, complain);
  builder.finish();
  if (inspects) inspection.finish(reading.errors.empty());
  return reading;
}

World parseWorld(std::string_view text, const WorldFiles& files) {
  WorldReading reading = readWorld(text, files);
  if (!reading.errors.empty()) throw WorldError(reading.errors.front());
  return std::move(reading.world);
}

Happening parseHappening(std::string_view text, const World& world) {
  const std::vector<Line> lines = scanLines(text);
  if (lines.size() > 1) throw WorldError(1, "expected a single line");
  const Line line = lines.empty() ? Line{1, 0, {}} : Line{1, 0, lines.front().tokens};
  Words words(line);
  Happening happening = readHappening(words, world);
  if (hasRunBefore(world)) {
    settleApplications(spotOf(line), world, happening.reactions);
    return happening;
  }
  KnownLabels labels(world);
  settleReactions({spotOf(line), happening.pid, false}, labels, happening.reactions);
  return happening;
}

Microseconds parseTime(std::string_view text, const char* owner) {
  const Line line{1, 0, {{Token::Kind::word, std::string(text)}}};
  Words words(line);
  return words.time(owner);
}

}  // namespace simulator
