// Runs the cases of tests/support/pasteboard_cases.h, which both sides of the seam are held to,
// through driver's own adapter and the real general pasteboard. Another process copies what another
// application copies; what was on the pasteboard comes back.
#import <AppKit/AppKit.h>

#include "tests/support/pasteboard_cases.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "support/cases.h"

/// Promises types, and supplies none of them.
@interface Promiser : NSObject <NSPasteboardItemDataProvider>
@end

@implementation Promiser
- (void)pasteboard:(NSPasteboard*)pasteboard
                  item:(NSPasteboardItem*)item
    provideDataForType:(NSPasteboardType)type {
}
@end

namespace {

using pasteboard_cases::Case;
using pasteboard_cases::Copied;
using pasteboard_cases::Step;

constexpr const char* copyMode = "copy";

NSPasteboardItem* itemOf(const Copied::value_type& entries, Promiser* promiser) {
  NSPasteboardItem* item = [[NSPasteboardItem alloc] init];
  for (const auto& [name, data] : entries) {
    NSString* type = [NSString stringWithUTF8String:name.c_str()];
    if (data) {
      [item setData:[NSData dataWithBytes:data->data() length:data->size()] forType:type];
    } else {
      [item setDataProvider:promiser forTypes:@[ type ]];
    }
  }
  return item;
}

/// The other process: copies what a step of a case says, writes a line, and stays, with its
/// promises, until its standard input ends.
int copyInThisProcess(std::size_t number, std::size_t step) {
  Promiser* promiser = [[Promiser alloc] init];
  NSMutableArray<id<NSPasteboardWriting>>* objects = [NSMutableArray arrayWithCapacity:0];
  for (const auto& entries : pasteboard_cases::cases.at(number).steps.at(step).copied)
    [objects addObject:itemOf(entries, promiser)];
  [NSPasteboard.generalPasteboard clearContents];
  if (![NSPasteboard.generalPasteboard writeObjects:objects]) return EXIT_FAILURE;
  std::puts("copied");
  std::fflush(stdout);
  std::thread([] {
    while (std::getchar() != EOF) continue;
    std::_Exit(EXIT_SUCCESS);
  }).detach();
  CFRunLoopRun();
  return EXIT_SUCCESS;
}

/// Another process that has copied something, and ends with this object.
class Copier {
 public:
  Copier(const std::string& program, std::size_t number, std::size_t step) {
    int output[2];
    if (pipe(input_) != 0 || pipe(output) != 0) return;
    for (const int descriptor : {input_[0], input_[1], output[0], output[1]})
      fcntl(descriptor, F_SETFD, FD_CLOEXEC);
    const std::string words[] = {std::to_string(number), std::to_string(step)};
    pid_ = fork();
    if (pid_ == 0) {
      dup2(input_[0], STDIN_FILENO);
      dup2(output[1], STDOUT_FILENO);
      execl(program.c_str(), program.c_str(), copyMode, words[0].c_str(), words[1].c_str(),
            static_cast<char*>(nullptr));
      _exit(127);
    }
    close(input_[0]);
    close(output[1]);
    char line[16];
    hasCopied_ = read(output[0], line, sizeof line) > 0;
    close(output[0]);
  }
  ~Copier() {
    if (pid_ <= 0) return;
    close(input_[1]);
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
  }
  Copier(const Copier&) = delete;
  Copier& operator=(const Copier&) = delete;
  bool hasCopied() const { return hasCopied_; }

 private:
  pid_t pid_ = -1;
  int input_[2] = {-1, -1};
  bool hasCopied_ = false;
};

/// What was on the pasteboard, which comes back with the end of this object.
class Kept {
 public:
  Kept() : items_(pasteboard::items().value_or(pasteboard_cases::Items{})) {}
  ~Kept() {
    pasteboard::clear();
    if (!items_.empty()) pasteboard::write(items_);
  }
  Kept(const Kept&) = delete;
  Kept& operator=(const Kept&) = delete;

 private:
  pasteboard_cases::Items items_;
};

std::string joined(const pasteboard_cases::Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += (text.empty() ? "" : "; ") + line;
  return text;
}

/// The steps in which others copy, in their order.
std::vector<std::size_t> copies(const Case& given) {
  std::vector<std::size_t> places;
  for (std::size_t step = 0; step < given.steps.size(); ++step)
    if (given.steps[step].kind == Step::Kind::copied) places.push_back(step);
  return places;
}

void tryAll(probe::Cases& result, const std::string& program) {
  for (std::size_t number = 0; number < pasteboard_cases::cases.size(); ++number) {
    const Case& each = pasteboard_cases::cases[number];
    const auto steps = copies(each);
    std::vector<std::unique_ptr<Copier>> copiers;
    bool areCopied = true;
    pasteboard::clear();
    const auto lines = pasteboard_cases::seenLines(each, [&](const Copied&) {
      copiers.push_back(std::make_unique<Copier>(program, number, steps.at(copiers.size())));
      areCopied = areCopied && copiers.back()->hasCopied();
    });
    result.add(areCopied && lines == pasteboard_cases::expectedLines(each),
               "case " + std::to_string(number) + (areCopied ? "" : ", not copied"), joined(lines));
  }
}

}  // namespace

int main(int count, char** words) {
  @autoreleasepool {
    if (count == 4 && std::string(words[1]) == copyMode)
      return copyInThisProcess(std::stoul(words[2]), std::stoul(words[3]));
    probe::Cases result;
    {
      const Kept kept;
      tryAll(result, words[0]);
    }
    return result.answer(count, words);
  }
}
