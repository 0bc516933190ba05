#include "simulator/rules/keys.h"

#include <algorithm>
#include <iterator>

#include "base/utf16.h"
#include "base/utf8.h"
#include "platform/text.h"
#include "simulator/input/posted_event.h"
#include "simulator/input/records.h"
#include "simulator/mac/arguments.h"
#include "simulator/rules/pace.h"
#include "simulator/rules/replies.h"
#include "simulator/world/attributes.h"
#include "simulator/world/elements.h"
#include "simulator/world/keyboard_layouts.h"
#include "simulator/world/utf16_text.h"

namespace simulator {

using platform::Call;
using platform::EventImage;
using platform::Function;

namespace {

constexpr std::uint32_t waitAfterLineBreak = 50'000;
constexpr std::uint32_t waitBeforeTakingBack = 50'000;
constexpr std::uint32_t waitAfterMenu = 100'000;
constexpr std::uint32_t waitAfterRestore = 100'000;
constexpr std::uint32_t waitAfterKeyRecords = 300'000;
constexpr std::size_t unitsMax = 20;       // of a piece of text
constexpr std::size_t lineBreakSteps = 4;  // shift and return, down and up

constexpr std::pair<std::string_view, std::uint64_t> modifierWords[] = {
    {"cmd", commandFlag},  {"command", commandFlag}, {"meta", commandFlag},  {"super", commandFlag},
    {"shift", shiftFlag},  {"alt", optionFlag},      {"option", optionFlag}, {"opt", optionFlag},
    {"ctrl", controlFlag}, {"control", controlFlag},
};

/// The code that a command's name of a key has.
std::int64_t codeOf(const std::string& name) {
  if (name == "enter") return key_codes::returnKey;
  if (name == "esc") return key_codes::escape;
  if (const auto named = codeNamed(name)) return *named;
  const auto stroke = strokeFor(KeyboardLayout::us, name);
  return stroke && !stroke->shift ? stroke->code : -1;
}

/// Most calls are none of this: they are many.
bool isWatched(Function function) {
  switch (function) {
    case Function::publicPost:
    case Function::privatePost:
    case Function::postRecord:
    case Function::axPerform:
    case Function::axSetAttribute:
    case Function::createKeyboardEvent:
      return true;
    default:
      return false;
  }
}

/// True when leaving something out of `whole` gives `rest`.
bool isLeftOf(std::u16string_view rest, std::u16string_view whole) {
  for (const char16_t unit : whole) {
    if (!rest.empty() && rest.front() == unit) rest.remove_prefix(1);
  }
  return rest.empty();
}

bool isUp(const EventImage& event) { return typeOf(event) == quartz::EventType::keyUp; }

}  // namespace

std::string KeyRules::payload() const {
  return run_.client.arguments.size() > 3 ? run_.client.arguments[3] : "";
}

KeyRules::Combination KeyRules::combination() const {
  if (run_.command() == "bg-paste-files") return {"v", codeOf("v"), commandFlag};
  Combination result;
  std::string rest = lowered(payload());
  while (!rest.empty()) {
    const std::size_t plus = rest.find('+');
    const std::string piece = rest.substr(0, plus);
    rest.erase(0, plus == rest.npos ? plus : plus + 1);
    if (piece.empty()) continue;
    const auto word = std::find_if(std::begin(modifierWords), std::end(modifierWords),
                                   [&](const auto& each) { return each.first == piece; });
    if (word != std::end(modifierWords)) {
      result.flags |= word->second;
    } else {
      result.key = piece;
      result.code = codeOf(piece);
    }
  }
  return result;
}

std::vector<KeyRules::Step> KeyRules::stepsTold() const {
  const Combination keys = combination();
  std::vector<Step> steps;
  for (const ModifierKey& modifier : modifierKeys) {
    if ((keys.flags & modifier.flag) != 0) steps.emplace_back(modifier.code, true);
  }
  std::vector<Step> ups;
  for (auto step = steps.rbegin(); step != steps.rend(); ++step)
    ups.emplace_back(step->first, false);
  steps.emplace_back(keys.code, true);
  steps.emplace_back(keys.code, false);
  steps.insert(steps.end(), ups.begin(), ups.end());
  return steps;
}

/// The text that is to be typed, without its line breaks, and how many these are.
std::pair<std::string, std::size_t> KeyRules::textTold() const {
  std::string text = driver::repairedUtf8(payload());
  for (std::size_t at = text.find("\r\n"); at != text.npos; at = text.find("\r\n", at)) {
    text.erase(at, 1);
  }
  const auto breaks = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
  text.erase(std::remove(text.begin(), text.end(), '\n'), text.end());
  return {text, breaks};
}

std::uint64_t KeyRules::flagsTold(const EventImage& event) const {
  if (run_.command() == "bg-type") return event.text.empty() ? shiftFlag : 0;
  return combination().flags;
}

/// True when all of the input was posted, but for what had an event that could not be created: of a
/// combination nothing then, of a text at most a piece or a line break for each.
bool KeyRules::isComplete() const {
  if (run_.command() != "bg-type") {
    return menuPressed_ || steps_ == stepsTold() || (notCreated_ > 0 && steps_.empty());
  }
  const auto [text, breaks] = textTold();
  if (notCreated_ == 0) return utf8Of(typed_) == text && lineBreaks_ == breaks;
  const std::u16string told = driver::utf16(text);
  if (lineBreaks_ > breaks || steps_.size() != lineBreaks_ * lineBreakSteps) return false;
  if (!isLeftOf(typed_, told)) return false;
  const std::size_t pieces = (told.size() - typed_.size() + unitsMax - 1) / unitsMax;
  return pieces + breaks - lineBreaks_ <= notCreated_;
}

void KeyRules::before(const ObservedCall& seen, Violations& violations) {
  if (!isWatched(seen.call.function) || !run_.pressesKeys()) return;
  if (isPost(seen.call.function)) checkPost(violations);
  if (seen.call.function == Function::axPerform && !misled_ &&
      !hasShortcut(Arguments(seen.call).get<platform::ElementReference>(0))) {
    violations.push_back("I8: a menu item is pressed that has not this shortcut");
  }
  if (seen.call.function == Function::postRecord) checkRecord(seen.call, violations);
}

/// True for an enabled menu item of the combination's shortcut; one that has gone does no harm.
bool KeyRules::hasShortcut(const platform::ElementReference& reference) const {
  const Application* application = findApplication(run_.mac.world, reference.pid);
  const Element* item = application == nullptr ? nullptr : findElement(*application, reference.id);
  if (item == nullptr) return true;
  const auto held = [&](const char* name) {
    return readAttribute(run_.mac.world, *application, reference.id, name, run_.mac.now).value;
  };
  const auto character = held("AXMenuItemCmdChar");
  const auto* shown = character ? std::get_if<std::string>(&*character) : nullptr;
  const auto modifiers = held("AXMenuItemCmdModifiers");
  const Combination keys = combination();
  double mask = 0;
  for (const auto& [flag, bit] : {std::pair(shiftFlag, 1), {optionFlag, 2}, {controlFlag, 4}}) {
    if ((keys.flags & flag) != 0) mask += bit;
  }
  return item->role == "AXMenuItem" && isEnabled(*item) && shown != nullptr &&
         text::lowercase(*shown) == keys.key &&
         (modifiers ? numberOf(*modifiers) : 0).value_or(0) == mask;
}

void KeyRules::checkPost(Violations& violations) {
  const EventImage& event = run_.latestEvent;
  if (!isKeyEvent(event)) return;
  if (endsLine(event)) run_.owedWaits = {waitAfterPost, waitAfterLineBreak};
  checkKey(event, violations);
}

/// A line break is shift and return: when the shift key goes up after the other it has been made.
bool KeyRules::endsLine(const EventImage& event) const {
  const ModifierKey* modifier = modifierWithCode(event.keyCode);
  return run_.command() == "bg-type" && event.text.empty() && isUp(event) && modifier != nullptr &&
         modifier->flag == shiftFlag && !steps_.empty() &&
         steps_.back().first == key_codes::returnKey;
}

void KeyRules::checkKey(const EventImage& event, Violations& violations) {
  if (event.flags != flagsTold(event)) {
    violations.push_back("I3: a key with other modifiers than it was told");
  }
  const bool up = isUp(event);
  if (event.text.empty()) {
    steps_.emplace_back(event.keyCode, !up);
    if (up && event.keyCode == key_codes::returnKey) ++lineBreaks_;
  } else if (!up) {
    const std::u16string piece = unitsOf(event.text);
    if (piece.size() > unitsMax && text::characters(utf8Of(piece)).size() > 1) {
      violations.push_back("I8: a piece of text is longer than receivers take");
    }
    typed_ += piece;
  }
  const bool isDown = std::find(down_.begin(), down_.end(), event.keyCode) != down_.end();
  if (!up) {
    outOfOrder_ = outOfOrder_ || isDown;
    down_.push_back(event.keyCode);
  } else if (isDown) {
    outOfOrder_ = outOfOrder_ || down_.back() != event.keyCode;
    down_.erase(std::find(down_.begin(), down_.end(), event.keyCode));
  } else {
    outOfOrder_ = true;
  }
}

/// I5 of taking focus back.
void KeyRules::checkRecord(const Call& call, Violations& violations) {
  const std::string record = Arguments(call).text(2);
  const RecordKind kind = recordKind(record);
  if (kind == RecordKind::takesFocus && !run_.livenessFailed && !run_.interrupted &&
      run_.lastSleep != waitBeforeTakingBack) {
    violations.push_back("I5: focus is taken back without the wait before it");
  }
}

void KeyRules::after(const ObservedCall& seen, const Answer& answer, Violations& /*violations*/) {
  const Function function = seen.call.function;
  const bool reads = function == Function::axAttribute || function == Function::axAttributes;
  if (reads && seen.faulty) misled_ = true;
  if (!isWatched(seen.call.function) || !run_.pressesKeys()) return;
  const Arguments arguments(seen.call);
  switch (seen.call.function) {
    case Function::createKeyboardEvent:
      if (answer.value.isNothing()) ++notCreated_;
      break;
    case Function::axPerform:
      if (driver::unpack<ax::Outcome>(answer.value).error != ax::Error::success) break;
      menuPressed_ = true;
      run_.owedWaits = {waitAfterMenu};
      break;
    case Function::axSetAttribute:
      if (arguments.text(1) == "AXFocused") run_.owedWaits = {waitAfterRestore};
      break;
    case Function::postRecord:
      if (recordKind(arguments.text(2)) != RecordKind::secondOfKeyPair) break;
      if (driver::unpack<std::int32_t>(answer.value) != 0) break;
      run_.owedWaits = {waitAfterKeyRecords};
      break;
    default:
      break;
  }
}

void KeyRules::atEnd(Violations& violations) {
  if (!run_.reply || !run_.pressesKeys()) return;
  const bool isExcused = run_.everUnusable || run_.livenessFailed;
  if (!isExcused && !down_.empty()) violations.push_back("I4: a key was left down");
  if (!isExcused && outOfOrder_) {
    violations.push_back("I4: keys went up in another order than they should");
  }
  if (run_.reply->ok && !isComplete()) {
    violations.push_back("I8: a success without all of the input");
  }
  const auto typed = static_cast<std::int64_t>(typed_.size() + lineBreaks_);
  if (run_.reply->typed && *run_.reply->typed != typed) {
    violations.push_back("I8: another number of units is told than was typed");
  }
}

}  // namespace simulator
