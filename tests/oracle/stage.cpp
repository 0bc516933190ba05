#include "tests/oracle/stage.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "platform/value_codec.h"
#include "simulator/calls/calls.h"
#include "simulator/drawing/digest.h"
#include "simulator/drawing/pictures.h"
#include "simulator/input/posted_pointer.h"
#include "simulator/input/records.h"
#include "simulator/mac/recording_question.h"
#include "simulator/world/actions.h"
#include "simulator/world/attributes.h"
#include "simulator/world/elements.h"
#include "simulator/world/fields.h"
#include "simulator/world/presses.h"
#include "tests/oracle/effects.h"
#include "tests/oracle/opinion.h"
#include "tests/oracle/texts.h"

namespace oracle {

namespace {

using simulator::AttributeValue;

driver::Datum reference(const Element& element) {
  return driver::pack(platform::ElementReference{element.pid, element.id});
}

/// As it is sent. The reference has no command that writes anything else.
driver::Datum sent(const AttributeValue& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return platform::packPlain(*text);
  if (const auto* flag = std::get_if<bool>(&value)) return platform::packPlain(*flag);
  if (const auto* number = std::get_if<double>(&value)) return platform::packPlain(*number);
  return platform::packPlain(std::get<ax::Range>(value));
}

template <class T>
std::optional<T> as(const Reading& reading) {
  if (!reading.value) return std::nullopt;
  const T* value = std::get_if<T>(&*reading.value);
  return value == nullptr ? std::nullopt : std::optional(*value);
}

}  // namespace

Stage::Stage(const simulator::Mac& before, std::map<std::string, std::string> environment)
    : start_(before.now), environment_(std::move(environment)) {
  mac_.world = before.world;
  mac_.now = before.now;
  mac_.numbers = before.numbers;
  mac_.comingLock = before.comingLock;
  client_.pid = 2'000'000'000;  // nobody else's
  if (!mac_.world.covers.empty()) throw NoOpinion{Silence::covered};
  for (const simulator::Application& each : mac_.world.applications) {
    if (!each.waiting.empty()) throw NoOpinion{Silence::waitingInput};
  }
  if (!mac_.world.pending.empty()) throw NoOpinion{Silence::pendingWrite};
}

std::optional<std::string> Stage::variable(const std::string& name) const {
  const auto found = environment_.find(name);
  if (found == environment_.end()) return std::nullopt;
  return found->second;
}

bool Stage::has(const std::string& function, const std::string& library) const {
  return world().missing.count(function) == 0 && world().missing.count(library) == 0;
}

const simulator::Application* Stage::application(Pid pid) const {
  return simulator::findApplication(world(), pid);
}

/// The application that a message goes to; null when nobody answers.
const simulator::Application* Stage::ask(const Element& element) {
  if (!world().accessibilityAllowed) return nullptr;
  const auto* found = application(element.pid);
  if (found == nullptr) return nullptr;
  if (found->hangs || found->answerDelay >= simulator::messagingTimeout) {
    throw NoOpinion{Silence::hanging};
  }
  if (found->answerDelay > 0 || world().seed) {
    exact_ = false;
    // How long its answers take is not counted here, so that anything may come meanwhile.
    requireStill(std::numeric_limits<Microseconds>::max());
    if (found->treeOnDemand) throw NoOpinion{Silence::slowTree};
  }
  return found;
}

Reading Stage::read(const Element& element, const std::string& name) {
  const auto* asked = ask(element);
  if (asked == nullptr) return {std::nullopt, ax::Error::cannotComplete};
  const auto children = simulator::habitsOf(*asked, element.id).children;
  if (name == "AXChildren" && children != simulator::Habits::Children::steady) {
    throw NoOpinion{Silence::restless};
  }
  auto result = simulator::readAttribute(world(), *asked, element.id, name, mac_.now);
  if (result.value) {
    if (auto* value = std::get_if<std::string>(&*result.value)) *value = repaired(*value);
  }
  return {std::move(result.value), result.error};
}

std::optional<std::string> Stage::text(const Element& element, const std::string& name) {
  return as<std::string>(read(element, name));
}

std::optional<double> Stage::number(const Element& element, const std::string& name) {
  const Reading reading = read(element, name);
  if (const auto whole = as<std::int64_t>(reading)) return static_cast<double>(*whole);
  const auto number = as<double>(reading);
  // A reply cannot tell another one.
  return number && std::isfinite(*number) ? number : std::nullopt;
}

std::optional<Element> Stage::link(const Element& element, const std::string& name) {
  const auto found = as<simulator::ElementLink>(read(element, name));
  if (!found) return std::nullopt;
  return Element{element.pid, found->id};
}

std::optional<std::vector<Element>> Stage::list(const Element& element, const std::string& name) {
  const auto ids = as<std::vector<ElementId>>(read(element, name));
  if (!ids) return std::nullopt;
  std::vector<Element> elements;
  for (const ElementId id : *ids) elements.push_back({element.pid, id});
  return elements;
}

bool Stage::isTrue(const Element& element, const std::string& name) {
  return as<bool>(read(element, name)) == true;
}

bool Stage::isFalse(const Element& element, const std::string& name) {
  return as<bool>(read(element, name)) == false;
}

std::optional<Rect> Stage::frame(const Element& element) {
  const auto position = as<Point>(read(element, "AXPosition"));
  if (!position) return std::nullopt;
  const auto size = as<simulator::Size>(read(element, "AXSize"));
  if (!size) return std::nullopt;
  for (const double value : {position->x, position->y, size->width, size->height}) {
    if (!std::isfinite(value)) return std::nullopt;
  }
  return Rect{position->x, position->y, size->width, size->height};
}

std::vector<std::string> Stage::actions(const Element& element) {
  const auto* asked = ask(element);
  if (asked == nullptr) return {};
  const auto* found = simulator::findElement(*asked, element.id);
  if (found == nullptr || !simulator::isThere(world(), *asked, *found)) return {};
  return simulator::actionNames(*asked, element.id).value_or(std::vector<std::string>());
}

std::optional<Element> Stage::elementAt(Pid pid, Point point) {
  const auto* asked = ask({pid, 0});
  if (asked == nullptr) return std::nullopt;
  const ElementId id = simulator::elementAtPoint(world(), *asked, point, mac_.now);
  if (id == 0) return std::nullopt;
  return Element{pid, id};
}

WindowNumber Stage::windowOf(const Element& element) {
  if (!has("_AXUIElementGetWindow", "ApplicationServices")) return 0;
  const auto* asked = ask(element);
  if (asked == nullptr) return 0;
  const auto* found = simulator::findElement(*asked, element.id);
  if (found == nullptr) return 0;
  const auto* window = simulator::findWindow(world(), found->window);
  return window != nullptr && window->numberHidden ? 0 : found->window;
}

std::int32_t Stage::perform(const Element& element, const std::string& action) {
  ask(element);
  const platform::Call call{platform::Function::axPerform,
                            {reference(element), driver::pack(action)}};
  const auto answer = simulator::calls::axPerform(mac_, client_, simulator::Arguments(call));
  return static_cast<std::int32_t>(driver::unpack<ax::Outcome>(answer.value).error);
}

std::int32_t Stage::write(const Element& element, const std::string& name,
                          const AttributeValue& value) {
  ask(element);
  const platform::Call call{platform::Function::axSetAttribute,
                            {reference(element), driver::pack(name), sent(value)}};
  const auto answer = simulator::calls::axSetAttribute(mac_, client_, simulator::Arguments(call));
  // How long its answers take is not counted here, so that it may land before the next.
  if (!exact_ && !mac_.world.pending.empty()) throw NoOpinion{Silence::slowWrite};
  return static_cast<std::int32_t>(driver::unpack<ax::Outcome>(answer.value).error);
}

void Stage::unhide(Pid pid) {
  const platform::Call call{platform::Function::unhide, {driver::pack(pid)}};
  simulator::calls::unhide(mac_, client_, simulator::Arguments(call));
}

void Stage::requireStill(Microseconds until) const {
  const auto isDue = [&](const simulator::Scripted& each) {
    return each.at > mac_.now && each.at <= until;
  };
  const auto& script = world().script;
  const auto& due = world().due;
  const bool follows = !due.empty() && due.front().due <= until;
  if (std::any_of(script.begin(), script.end(), isDue) || follows || mac_.comingLock) {
    throw NoOpinion{Silence::happening};
  }
}

void Stage::wait(Microseconds time) {
  requireStill(mac_.now + time);
  simulator::passTimeTo(mac_, mac_.now + time);
}

void Stage::post(Pid pid, const platform::EventImage& event, simulator::Route route) {
  simulator::deliver(mac_, pid, event, route);
}

void Stage::postRecord(Pid pid, const std::string& record) {
  simulator::takeRecord(mac_, pid, record);
}

void Stage::clearClipboard() {
  const platform::Call call{platform::Function::clearPasteboard, {}};
  simulator::calls::clearPasteboard(mac_, client_, simulator::Arguments(call));
}

void Stage::writeClipboard(const std::vector<pasteboard::Item>& items) {
  const platform::Call call{platform::Function::writePasteboard, {driver::pack(items)}};
  simulator::calls::writePasteboard(mac_, client_, simulator::Arguments(call));
}

void Stage::writeFiles(const std::vector<std::string>& paths) {
  const platform::Call call{platform::Function::writeFilesToPasteboard, {driver::pack(paths)}};
  simulator::calls::writeFilesToPasteboard(mac_, client_, simulator::Arguments(call));
}

void Stage::noteFile(const std::string& path) {
  simulator::enter(mac_, {.kind = simulator::JournalEntry::Kind::file, .what = path});
}

void Stage::requireNoQuestion() const {
  if (world().system.asksForRecording || simulator::awaitsRecordingAnswer(world())) {
    throw NoOpinion{Silence::askedUser};
  }
}

std::optional<std::uint64_t> Stage::look(WindowNumber window) const {
  const auto* found = simulator::findWindow(world(), window);
  if (!world().screenRecordingAllowed || found == nullptr) return std::nullopt;
  requireNoQuestion();
  if (!found->onScreen || !found->capturable) return std::nullopt;
  simulator::Picture picture;
  picture.windows.push_back(simulator::pictureOf(world(), *found));
  picture.source = found->frame;
  picture.backgroundGrey = 0;
  picture.width = static_cast<std::uint64_t>(std::max(1.0, std::trunc(found->frame.width / 2)));
  picture.height = static_cast<std::uint64_t>(std::max(1.0, std::trunc(found->frame.height / 2)));
  return simulator::digest(picture);
}

std::string Stage::effects() const {
  std::string lines;
  for (const auto& entry : mac_.journal) {
    const std::string line = simulator::effectLine(entry, start_);
    if (!line.empty()) lines += line + "\n";
  }
  return lines;
}

}  // namespace oracle
