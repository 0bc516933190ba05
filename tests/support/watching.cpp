#include "tests/support/watching.h"

namespace testing_support {

namespace {

constexpr std::int64_t beginning = 1'767'225'600'000;

std::string written(std::string_view first, const std::vector<std::string>& lines, int status) {
  std::string text = std::to_string(status) + " " + std::string(first) + "\n";
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

std::string lineWith(std::string_view kind, int time, const std::string& further) {
  return "{\"at\":" + std::to_string(beginning + time) + ",\"input\":\"" + std::string(kind) +
         "\"" + further + "}";
}

}  // namespace

std::string watchedDeskWith(const std::vector<std::string>& happenings, const char* end) {
  std::string world(watchedDesk);
  for (const std::string& happening : happenings) world += "at " + happening + "\n";
  return world + "at " + end + " close input\n";
}

Result watch(TestMac& mac, const std::vector<std::string>& words, const Schedule& schedule) {
  std::vector<std::string> commandLine = {"driver", "watch-input"};
  commandLine.insert(commandLine.end(), words.begin(), words.end());
  return mac.record(commandLine, {}, [&](std::size_t client) {
    return runDirect(mac.desktop(), client, commandLine, schedule);
  });
}

std::string watched(const std::vector<std::string>& happenings,
                    const std::vector<std::string>& words, const std::vector<std::string>& faults) {
  TestMac mac(watchedDeskWith(happenings), faults, Mode::direct);
  return seen(watch(mac, words));
}

std::string reports(const std::vector<std::string>& lines, int status) {
  return written(watchingLine, lines, status);
}

std::string reportsOnNotes(const std::vector<std::string>& lines, int status) {
  return written(watchingNotesLine, lines, status);
}

std::string report(std::string_view kind, int time) { return lineWith(kind, time, ""); }

std::string reportOnTarget(std::string_view kind, int time, bool touchesTarget) {
  return lineWith(kind, time,
                  std::string(",\"touchesTarget\":") + (touchesTarget ? "true" : "false"));
}

std::string submission(std::string_view bundle, int time) {
  return lineWith("key", time, ",\"submit\":\"" + std::string(bundle) + "\"");
}

}  // namespace testing_support
