#include "tests/oracle/focus.h"

#include <limits>

#include "tests/oracle/opinion.h"
#include "tests/oracle/texts.h"
#include "tests/oracle/windows.h"

namespace oracle {

namespace {

constexpr std::int64_t ownEventTag = 0x5A545256;

std::string emptyRecord(WindowNumber window) {
  std::string record(248, '\0');
  record[0x04] = '\xF8';
  for (std::size_t i = 0; i < 4; ++i)
    record[0x3C + i] = static_cast<char>((window >> (8 * i)) & 0xFF);
  return record;
}

bool canPostRecords(const Stage& stage) {
  return stage.has("SLPSPostEventRecordTo", "SkyLight") &&
         stage.has("GetProcessForPID", "ApplicationServices");
}

bool isKeyAlready(Stage& stage, Pid pid, WindowNumber window) {
  const auto focused = stage.link({pid, 0}, "AXFocusedWindow");
  if (!focused || stage.windowOf(*focused) != window || window == 0) return false;
  return stage.read({pid, 0}, "AXFocusedUIElement").value.has_value();
}

}  // namespace

bool isFocusHeld(const Stage& stage, Pid pid) {
  return stage.variable("CU_FOCUS_PID") == std::to_string(pid);
}

bool focus(Stage& stage, Pid pid, WindowNumber window, bool give) {
  if (!canPostRecords(stage) || stage.application(pid) == nullptr) return false;
  std::string record = emptyRecord(window);
  record[0x08] = 0x0D;
  record[0x8A] = give ? 1 : 2;
  stage.postRecord(pid, record);
  stage.wait(40'000);
  return true;
}

bool makeKey(Stage& stage, Pid pid, WindowNumber window) {
  if (isKeyAlready(stage, pid, window)) return true;
  if (!canPostRecords(stage) || stage.application(pid) == nullptr) return false;
  std::string record = emptyRecord(window);
  record[0x3A] = 0x10;
  for (std::size_t i = 0x20; i <= 0x2F; ++i) record[i] = '\xFF';
  for (const char step : {'\x01', '\x02'}) {
    record[0x08] = step;
    stage.postRecord(pid, record);
  }
  stage.wait(300'000);
  return true;
}

void postPaced(Stage& stage, Pid pid, platform::EventImage event, Routes routes) {
  requireCaptureAlive(stage);
  event.publicFields.push_back({42, ownEventTag});
  if (routes.isPrivate && stage.has("SLEventPostToPid", "SkyLight")) {
    stage.post(pid, event, simulator::Route::privateRoute);
  }
  if (routes.isPublic) stage.post(pid, event, simulator::Route::publicRoute);
  stage.wait(12'000);
}

void requireCaptureAlive(const Stage& stage) {
  const auto value = stage.variable("CU_CAPTURE_PID");
  if (!value) return;
  const auto pid =
      wholeNumber(*value, std::numeric_limits<Pid>::min(), std::numeric_limits<Pid>::max());
  if (!pid) return;
  const Pid asked = static_cast<Pid>(*pid);
  // 0 and -1 name groups that the caller is in.
  const bool alive = asked == 0 || asked == -1 || stage.world().processes.count(asked) != 0 ||
                     stage.application(asked) != nullptr;
  if (!alive) throw Failure{"native screen sharing stopped; background input is disabled"};
}

}  // namespace oracle
