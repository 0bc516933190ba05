// Writes into text fields of an application of our own in the background: selections that do not
// fit, a field that is disabled, and one for passwords.
#include <ApplicationServices/ApplicationServices.h>

#include <string>

#include "support/accessibility.h"
#include "support/answer.h"
#include "support/receiver.h"
#include "support/system.h"

namespace {

using probe::Evidence;
using probe::verdictOf;

constexpr const char* text = "a\U0001F600b";
constexpr const char* character = "\U0001F600";
constexpr const char* fixedText = "fixed";
constexpr const char* bullets = "\u2022\u2022\u2022\u2022\u2022\u2022";  // for "secret"

AXError select(AXUIElementRef field, CFIndex location, CFIndex length) {
  const CFRange range{location, length};
  return AXUIElementSetAttributeValue(field, CFSTR("AXSelectedTextRange"),
                                      AXValueCreate(kAXValueTypeCFRange, &range));
}

std::string selected(AXUIElementRef field) {
  CFRange range{};
  const auto value =
      static_cast<AXValueRef>(probe::copyAttribute(field, CFSTR("AXSelectedTextRange")));
  if (value == nullptr || !AXValueGetValue(value, kAXValueTypeCFRange, &range)) return "nothing";
  return std::to_string(range.location) + " and " + std::to_string(range.length);
}

int insideCharacter(const std::string& assumption, AXUIElementRef field) {
  AXUIElementSetAttributeValue(field, CFSTR("AXFocused"), kCFBooleanTrue);
  const AXError whole = select(field, 1, 2);
  const auto wholeText = probe::textAttribute(field, CFSTR("AXSelectedText"));
  const AXError part = select(field, 2, 1);
  const auto partText = probe::textAttribute(field, CFSTR("AXSelectedText"));
  Evidence evidence;
  evidence.add("selecting the character gives", static_cast<int>(whole))
      .add("selected then", wholeText.value_or("nothing"))
      .add("selecting its second half gives", static_cast<int>(part))
      .add("selected from there", selected(field))
      .add("selected text then", partText.value_or("nothing"));
  if (wholeText != character) return probe::answer(assumption, probe::Verdict::notShown, evidence);
  return probe::answer(assumption, verdictOf(part == 0 && partText == character), evidence);
}

int outsideText(const std::string& assumption, AXUIElementRef field) {
  AXUIElementSetAttributeValue(field, CFSTR("AXFocused"), kCFBooleanTrue);
  const AXError inside = select(field, 0, 1);
  const AXError behind = select(field, 5, 0);
  const AXError longer = select(field, 1, 4);
  Evidence evidence;
  evidence.add("inside the text", static_cast<int>(inside))
      .add("behind its end", static_cast<int>(behind))
      .add("beyond its end", static_cast<int>(longer))
      .add("selected then", selected(field));
  if (inside != kAXErrorSuccess)
    return probe::answer(assumption, probe::Verdict::notShown, evidence);
  return probe::answer(
      assumption, verdictOf(behind == kAXErrorIllegalArgument && longer == kAXErrorIllegalArgument),
      evidence);
}

int disabledField(const std::string& assumption, AXUIElementRef field) {
  const AXError status = AXUIElementSetAttributeValue(field, CFSTR("AXValue"), CFSTR("written"));
  const auto value = probe::textAttribute(field, CFSTR("AXValue"));
  return probe::answer(assumption,
                       verdictOf(status == kAXErrorAttributeUnsupported && value == fixedText),
                       Evidence()
                           .add("writing gives", static_cast<int>(status))
                           .add("value afterwards", value.value_or("nothing")));
}

int secureField(const std::string& assumption, AXUIElementRef window) {
  AXUIElementRef field = probe::elementBelow(window, "AXTextField", bullets);
  AXUIElementRef plain = probe::elementBelow(window, "AXTextField", "secret");
  if (field != nullptr) {
    AXUIElementSetAttributeValue(field, CFSTR("AXFocused"), kCFBooleanTrue);
    select(field, 0, 2);
  }
  const auto told =
      field == nullptr ? std::nullopt : probe::textAttribute(field, CFSTR("AXSelectedText"));
  return probe::answer(assumption, verdictOf(field != nullptr && told.value_or("").empty()),
                       Evidence()
                           .add("a field has six bullets", field != nullptr)
                           .add("a field has the text itself", plain != nullptr)
                           .add("selected text", told.value_or("nothing")));
}

int answerFor(const std::string& assumption, AXUIElementRef window) {
  if (assumption == "secure-fields") return secureField(assumption, window);
  const bool isDisabled = assumption == "disabled-fields";
  AXUIElementRef field = probe::elementBelow(window, "AXTextField", isDisabled ? fixedText : text);
  if (field == nullptr) return probe::notShown(assumption, "the receiver's field is not found");
  if (isDisabled) return disabledField(assumption, field);
  if (assumption == "selection-inside-character") return insideCharacter(assumption, field);
  if (assumption == "selection-outside-text") return outsideText(assumption, field);
  return probe::notShown(assumption, "it is not asked here");
}

}  // namespace

int main(int count, char** words) {
  const std::string assumption = probe::asked(count, words);
  if (const auto missing = probe::missingForElements())
    return probe::notShown(assumption, *missing);
  probe::Receiver receiver;
  if (!receiver.isReady()) return probe::notShown(assumption, "the receiver has not started");
  receiver.tell("fields");
  AXUIElementRef application = AXUIElementCreateApplication(receiver.pid());
  for (AXUIElementRef window : probe::listedElements(application, CFSTR("AXWindows")))
    if (probe::windowOf(window) == receiver.window(1)) return answerFor(assumption, window);
  return probe::notShown(assumption, "the receiver's window is not found");
}
