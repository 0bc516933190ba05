// Takes pictures of a window of our own in the background: whether two of an unchanged window have
// the same bytes, and whether child windows are in them; and whether a process that never spoke
// with the window server may ask for pictures.
#import <ScreenCaptureKit/ScreenCaptureKit.h>

#include <sys/wait.h>

#include <cstdlib>
#include <functional>
#include <set>
#include <string>

#include "support/answer.h"
#import "support/capture.h"
#include "support/receiver.h"
#include "support/system.h"

namespace {

using probe::Evidence;
using probe::Receiver;
using probe::Verdict;
using probe::verdictOf;

long long hashed(const std::string& bytes) {
  constexpr std::size_t shownMax = 1'000'000'007;
  return static_cast<long long>(std::hash<std::string>{}(bytes) % shownMax);
}

int equalPictures(const std::string& assumption, SCWindow* window) {
  constexpr int pictures = 10;
  constexpr int pauseMilliseconds = 200;
  std::set<std::string> different;
  std::string reason;
  for (int picture = 0; picture < pictures; ++picture) {
    const std::string bytes = probe::pictureOf(window, true, reason);
    if (bytes.empty()) return probe::notShown(assumption, reason);
    different.insert(bytes);
    probe::sleepMilliseconds(pauseMilliseconds);
  }
  return probe::answer(assumption, verdictOf(different.size() == 1),
                       Evidence()
                           .add("pictures", pictures)
                           .add("different ones", static_cast<long long>(different.size()))
                           .add("bytes", static_cast<long long>(different.begin()->size())));
}

int childWindows(const std::string& assumption, SCWindow* window, Receiver& receiver) {
  constexpr int showMilliseconds = 700;
  std::string reason;
  const std::string before = probe::pictureOf(window, true, reason);
  receiver.tell("child");
  probe::sleepMilliseconds(showMilliseconds);
  SCWindow* again = probe::shareableWindow(receiver.window(0), reason);
  if (again == nil) return probe::notShown(assumption, reason);
  const std::string with = probe::pictureOf(again, true, reason);
  const std::string without = probe::pictureOf(again, false, reason);
  if (before.empty() || with.empty() || without.empty()) return probe::notShown(assumption, reason);
  return probe::answer(assumption, verdictOf(with != without && without == before),
                       Evidence()
                           .add("before there was one", hashed(before))
                           .add("with child windows", hashed(with))
                           .add("without them", hashed(without)));
}

/// How a process ends that takes a picture: "connected" has asked for the main display before.
int endOf(const std::string& program, const char* mode, std::uint32_t window) {
  const std::string command =
      "'" + program + "' " + mode + " " + std::to_string(window) + " 2>/dev/null >/dev/null";
  return std::system(command.c_str());
}

int takePicture(const std::string& mode, std::uint32_t window) {
  if (mode == "connected") CGMainDisplayID();
  std::string reason;
  SCWindow* shared = probe::shareableWindow(window, reason);
  if (shared == nil) return 3;
  return probe::pictureOf(shared, true, reason).empty() ? 4 : 0;
}

int connection(const std::string& assumption, const std::string& program, Receiver& receiver) {
  const int with = endOf(program, "connected", receiver.window(0));
  const int without = endOf(program, "unconnected", receiver.window(0));
  // The shell says 128 and the number of the signal.
  constexpr int signalled = 128;
  const bool dies = WIFSIGNALED(without) || WEXITSTATUS(without) > signalled;
  return probe::answer(assumption, with != 0 ? Verdict::notShown : verdictOf(dies),
                       Evidence()
                           .add("status with a connection", WEXITSTATUS(with))
                           .add("status without", WEXITSTATUS(without))
                           .add("without, it was ended by a signal", dies));
}

int answerFor(const std::string& assumption, const std::string& program) {
  Receiver receiver;
  if (!receiver.isReady()) return probe::notShown(assumption, "the receiver has not started");
  if (!CGPreflightScreenCaptureAccess())
    return probe::notShown(assumption, "Screen Recording is not granted");
  if (assumption == "window-server-connection") return connection(assumption, program, receiver);
  std::string reason;
  SCWindow* window = probe::shareableWindow(receiver.window(0), reason);
  if (window == nil) return probe::notShown(assumption, reason);
  if (assumption == "equal-pictures") return equalPictures(assumption, window);
  if (assumption == "child-windows") return childWindows(assumption, window, receiver);
  return probe::notShown(assumption, "it is not asked here");
}

}  // namespace

int main(int count, char** words) {
  @autoreleasepool {
    const std::string assumption = probe::asked(count, words);
    if (assumption == "connected" || assumption == "unconnected")
      return takePicture(assumption, static_cast<std::uint32_t>(std::stoul(words[2])));
    CGMainDisplayID();
    return answerFor(assumption, words[0]);
  }
}
