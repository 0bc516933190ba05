// Counts the changes of a pasteboard: of the general one on a hosted Mac, whose clipboard is
// nobody's, and of one of its own elsewhere. Reading is tried on a hosted Mac alone.
#import <AppKit/AppKit.h>

#include <cstdlib>
#include <string>

#include "support/answer.h"

namespace {

using probe::Evidence;

bool isHosted() {
  const char* const hosted = std::getenv("MAC_FACTS_HOSTED");
  return hosted != nullptr && *hosted != '\0';
}

bool writeText(NSPasteboard* pasteboard, NSString* text) {
  NSPasteboardItem* item = [[NSPasteboardItem alloc] init];
  [item setData:[text dataUsingEncoding:NSUTF8StringEncoding] forType:NSPasteboardTypeString];
  return [pasteboard writeObjects:@[ item ]];
}

int counts(const std::string& assumption) {
  NSPasteboard* pasteboard =
      isHosted() ? NSPasteboard.generalPasteboard : [NSPasteboard pasteboardWithUniqueName];
  const NSInteger before = pasteboard.changeCount;
  const NSInteger cleared = [pasteboard clearContents];
  const NSInteger afterClearing = pasteboard.changeCount;
  const bool wrote = writeText(pasteboard, @"a text of the probe");
  const NSInteger afterWriting = pasteboard.changeCount;
  const NSInteger clearedAgain = [pasteboard clearContents];
  if (!isHosted()) [pasteboard releaseGlobally];
  const bool holds = cleared == before + 1 && afterClearing == cleared && wrote &&
                     afterWriting == cleared && clearedAgain == cleared + 1;
  return probe::answer(
      assumption, probe::verdictOf(holds),
      Evidence()
          .add("pasteboard", isHosted() ? "the general one" : "one of its own")
          .add("raised by clearing", static_cast<long long>(cleared - before))
          .add("count afterwards less what clearing returned",
               static_cast<long long>(afterClearing - cleared))
          .add("written", wrote)
          .add("raised by writing", static_cast<long long>(afterWriting - afterClearing))
          .add("raised by clearing again", static_cast<long long>(clearedAgain - afterWriting)));
}

/// What another process has copied: `pbcopy` writes it.
int reads(const std::string& assumption) {
  if (std::system("printf 'a text of another' | pbcopy") != 0)
    return probe::notShown(assumption, "pbcopy has failed");
  NSArray<NSPasteboardItem*>* items = NSPasteboard.generalPasteboard.pasteboardItems;
  NSData* data = items.count == 0 ? nil : [items[0] dataForType:NSPasteboardTypeString];
  const std::string text =
      data == nil ? "" : std::string(static_cast<const char*>(data.bytes), data.length);
  return probe::answer(assumption, probe::verdictOf(text == "a text of another"),
                       Evidence()
                           .add("items", static_cast<long long>(items.count))
                           .add("text of another process", text));
}

}  // namespace

int main(int count, char** words) {
  @autoreleasepool {
    const std::string assumption = probe::asked(count, words);
    if (assumption == "pasteboard-counts") return counts(assumption);
    if (assumption != "pasteboard-reads")
      return probe::notShown(assumption, "it is not asked here");
    if (!isHosted()) return probe::notShown(assumption, "it would take the clipboard");
    return reads(assumption);
  }
}
