// Reads the accessibility of an application of our own: numbers of windows, batches of attributes,
// the identity of elements, and how long a stopped application is waited for.
#include <ApplicationServices/ApplicationServices.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <vector>

#include "support/accessibility.h"
#include "support/answer.h"
#include "support/receiver.h"
#include "support/system.h"

namespace {

using probe::Evidence;
using probe::Receiver;
using probe::Verdict;
using probe::verdictOf;

std::vector<AXUIElementRef> windowsOf(AXUIElementRef application) {
  return probe::listedElements(application, CFSTR("AXWindows"));
}

int windowOfElement(const std::string& assumption, AXUIElementRef application, Receiver& receiver) {
  Evidence evidence;
  bool first = false;
  bool second = false;
  for (AXUIElementRef window : windowsOf(application)) {
    std::uint32_t number = 0;
    const std::int32_t status = probe::privateFunctions().windowOfElement(window, &number);
    evidence.add("status " + std::to_string(status), static_cast<long long>(number));
    first = first || number == receiver.window(0);
    second = second || number == receiver.window(1);
  }
  std::uint32_t number = 0;
  const std::int32_t status = probe::privateFunctions().windowOfElement(application, &number);
  evidence.add("of the application, status", status)
      .add("of the application, number", static_cast<long long>(number))
      .addJson("numbers of its windows", "[" + std::to_string(receiver.window(0)) + ", " +
                                             std::to_string(receiver.window(1)) + "]");
  return probe::answer(assumption, verdictOf(first && second && (status != 0 || number == 0)),
                       evidence);
}

std::string kindOf(CFTypeRef value) {
  if (value == nullptr) return "null pointer";
  if (CFGetTypeID(value) == CFNullGetTypeID()) return "null";
  if (CFGetTypeID(value) == CFStringGetTypeID()) return "text";
  if (CFGetTypeID(value) != AXValueGetTypeID()) return "other";
  AXError error = kAXErrorSuccess;
  const auto held = static_cast<AXValueRef>(value);
  if (AXValueGetType(held) != kAXValueTypeAXError) return "value";
  AXValueGetValue(held, kAXValueTypeAXError, &error);
  return "error " + std::to_string(error);
}

int batchReads(const std::string& assumption, AXUIElementRef application) {
  const auto windows = windowsOf(application);
  if (windows.empty()) return probe::notShown(assumption, "the receiver has no windows");
  const void* names[] = {CFSTR("AXRole"), CFSTR("AXNoSuchAttribute"), CFSTR("AXTitle"),
                         CFSTR("AXHelp"), CFSTR("AXPosition")};
  CFArrayRef attributes = CFArrayCreate(nullptr, names, 5, &kCFTypeArrayCallBacks);
  CFArrayRef values = nullptr;
  const AXError status = AXUIElementCopyMultipleAttributeValues(windows[0], attributes, 0, &values);
  Evidence evidence;
  evidence.add("status", static_cast<int>(status));
  if (values == nullptr) return probe::answer(assumption, Verdict::refuted, evidence);
  std::vector<std::string> kinds;
  for (CFIndex index = 0; index < CFArrayGetCount(values); ++index)
    kinds.push_back(kindOf(CFArrayGetValueAtIndex(values, index)));
  evidence.addJson("role, an unknown one, title, help, position", probe::jsonList(kinds));
  const bool holds = kinds.size() == 5 && kinds[0] == "text" &&
                     (kinds[1].rfind("error ", 0) == 0 || kinds[1] == "null") &&
                     kinds[2] == "text" && kinds[4] == "value";
  return probe::answer(assumption, verdictOf(holds), evidence);
}

int identity(const std::string& assumption, AXUIElementRef application) {
  const auto once = windowsOf(application);
  const auto again = windowsOf(application);
  if (once.size() != 2 || again.size() != 2)
    return probe::notShown(assumption, "the receiver does not have two windows");
  const auto firstParent =
      static_cast<AXUIElementRef>(probe::copyAttribute(once[0], CFSTR("AXParent")));
  const bool same = CFEqual(once[0], again[0]) != 0 && CFHash(once[0]) == CFHash(again[0]);
  const bool distinct = CFEqual(once[0], once[1]) == 0;
  const bool parent = firstParent != nullptr && CFEqual(firstParent, application) != 0 &&
                      CFHash(firstParent) == CFHash(application);
  return probe::answer(assumption, verdictOf(same && distinct && parent),
                       Evidence()
                           .add("a window got twice is equal, with the same hash", same)
                           .add("two windows are not equal", distinct)
                           .add("a window's parent is the application", parent));
}

double secondsOfMessage(AXUIElementRef application, AXError& status) {
  CFTypeRef value = nullptr;
  const auto start = std::chrono::steady_clock::now();
  status = AXUIElementCopyAttributeValue(application, CFSTR("AXRole"), &value);
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

int timeOut(const std::string& assumption, AXUIElementRef application, Receiver& receiver) {
  constexpr float prescribedSeconds = 6;
  constexpr double tolerance = 1;
  AXUIElementSetMessagingTimeout(AXUIElementCreateSystemWide(), prescribedSeconds);
  kill(receiver.pid(), SIGSTOP);
  AXError status = kAXErrorSuccess;
  const double seconds = secondsOfMessage(application, status);
  kill(receiver.pid(), SIGCONT);
  const bool holds = status == kAXErrorCannotComplete && seconds > prescribedSeconds - tolerance &&
                     seconds < prescribedSeconds + tolerance;
  return probe::answer(assumption, verdictOf(holds),
                       Evidence()
                           .add("status", static_cast<int>(status))
                           .addJson("seconds", std::to_string(seconds)));
}

/// A process that has nothing to do with the window server, and ends with this object.
class PlainProcess {
 public:
  PlainProcess() : pid_(fork()) {
    if (pid_ != 0) return;
    execl("/bin/sleep", "sleep", "60", static_cast<char*>(nullptr));
    _exit(127);
  }
  ~PlainProcess() {
    if (pid_ <= 0) return;
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
  }
  PlainProcess(const PlainProcess&) = delete;
  PlainProcess& operator=(const PlainProcess&) = delete;
  pid_t pid() const { return pid_; }

 private:
  pid_t pid_;
};

int noApplication(const std::string& assumption) {
  constexpr double atOnceSeconds = 1;
  const PlainProcess process;
  if (process.pid() <= 0) return probe::notShown(assumption, "no process was started");
  AXError status = kAXErrorSuccess;
  const double seconds = secondsOfMessage(AXUIElementCreateApplication(process.pid()), status);
  return probe::answer(assumption,
                       verdictOf(status == kAXErrorCannotComplete && seconds < atOnceSeconds),
                       Evidence()
                           .add("status", static_cast<int>(status))
                           .addJson("seconds", std::to_string(seconds)));
}

}  // namespace

int main(int count, char** words) {
  const std::string assumption = probe::asked(count, words);
  if (const auto missing = probe::missingForElements())
    return probe::notShown(assumption, *missing);
  if (assumption == "message-to-no-application") return noApplication(assumption);
  Receiver receiver;
  if (!receiver.isReady()) return probe::notShown(assumption, "the receiver has not started");
  AXUIElementRef application = AXUIElementCreateApplication(receiver.pid());
  if (assumption == "window-of-element") return windowOfElement(assumption, application, receiver);
  if (assumption == "batch-reads") return batchReads(assumption, application);
  if (assumption == "element-identity") return identity(assumption, application);
  if (assumption == "message-time-out") return timeOut(assumption, application, receiver);
  return probe::notShown(assumption, "it is not asked here");
}
