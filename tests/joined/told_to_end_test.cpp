#include <gtest/gtest.h>
#include <signal.h>

#include "mac.h"

/// Runs of one command that get a real signal, on a Mac in real time.
namespace joined {
namespace {

constexpr const char* toldDesk = R"(
display 1 1440x900 scale 1
pasteboard item "public.utf8-plain-text" "old"
app Browser pid 40 bundle com.example.browser frontmost
    window 5 "Start" at 0,30 size 90x500
app Notes pid 41 bundle com.example.notes
    window 7 "Inbox" at 100,80 size 800x600
        AXTextArea "Body" at 120,130 size 700x400 focused
app Stuck pid 42 hangs
    window 8 "Wait" at 950,80 size 400x600
)";

constexpr const char* told = "{\"error\":\"the run was told to end by a signal\",\"ok\":false}\n";

std::string toldBy(int number) { return std::to_string(128 + number) + " " + told; }

/// Waits until the Mac's journal tells of this.
void awaitEntry(const ServedMac& mac, const std::string& entry) {
  while (mac.command({"journal", "--text"}).output.find(entry) == std::string::npos) {
  }
}

std::string clipboardOf(const ServedMac& mac) {
  const std::string state = mac.command({"state"}).output;
  const std::size_t start = state.find("\"clipboard\"");
  return state.substr(start, state.find(",\"front\"") - start);
}

std::size_t countOf(const std::string& text, const std::string& piece) {
  std::size_t count = 0;
  for (std::size_t at = text.find(piece); at != text.npos; at = text.find(piece, at + 1)) ++count;
  return count;
}

class told_to_end_by : public testing::TestWithParam<int> {};

TEST_P(told_to_end_by, a_signal_a_paste_gives_clipboard_and_focus_back) {
  const ServedMac mac(toldDesk, {});
  const std::string before = clipboardOf(mac);
  Process paste(driverCommand({"bg-paste-files", "Notes", "/a.txt"}), mac.environment());
  awaitEntry(mac, "pasteboard write-files");
  paste.signal(GetParam());
  EXPECT_EQ(seen(paste.finish()), toldBy(GetParam()));
  EXPECT_EQ(clipboardOf(mac), before);
  const std::string journal = mac.command({"journal", "--text"}).output;
  EXPECT_EQ(countOf(journal, "focus 41/7 give"), 1U) << journal;
  EXPECT_EQ(countOf(journal, "focus 41/7 take"), 1U) << journal;
  EXPECT_EQ(mac.command({"violations"}).output, noViolations);
}

TEST_P(told_to_end_by, a_signal_in_mid_combination_lets_the_keys_go) {
  const ServedMac mac(toldDesk, {});
  Process key(driverCommand({"bg-key", "Notes", "cmd+shift+alt+ctrl+x"}), mac.environment());
  awaitEntry(mac, "key-down");
  key.signal(GetParam());
  EXPECT_EQ(seen(key.finish()), toldBy(GetParam()));
  const std::string journal = mac.command({"journal", "--text"}).output;
  EXPECT_EQ(countOf(journal, "key-down"), countOf(journal, "key-up")) << journal;
  EXPECT_EQ(countOf(journal, "focus 41/7 take"), 1U) << journal;
  EXPECT_EQ(mac.command({"violations"}).output, noViolations);
}

TEST_P(told_to_end_by, a_signal_a_run_does_not_wait_for_a_hung_application) {
  const ServedMac mac(toldDesk, {});
  Process list(driverCommand({"ax-list", "Stuck"}), mac.environment());
  while (mac.command({"trace", "--text"}).output.find("workspace.application") ==
         std::string::npos) {
  }
  list.signal(GetParam());
  EXPECT_EQ(seen(list.finish()), toldBy(GetParam()));
  // Its message was never answered: that would have taken six seconds.
  EXPECT_EQ(mac.command({"trace", "--text"}).output.find("ax.attributes"), std::string::npos);
  EXPECT_EQ(mac.command({"violations"}).output, noViolations);
}

INSTANTIATE_TEST_SUITE_P(signals, told_to_end_by, testing::Values(SIGTERM, SIGINT, SIGHUP));

TEST(told_to_end_by_a_signal_that_was_ignored, a_run_goes_on) {
  const ServedMac mac(toldDesk, {});
  Process key({"/bin/sh", "-c", "trap '' TERM; exec " + driverPath() + " bg-key Notes a"},
              mac.environment());
  awaitEntry(mac, "focus 41/7 give");
  key.signal(SIGTERM);
  EXPECT_EQ(seen(key.finish()), "0 {\"ok\":true,\"pid\":41,\"via\":\"background\",\"window\":7}\n");
}

TEST(told_to_end_by_a_signal_that_was_ignored, a_service_goes_on) {
  const ServedMac mac(toldDesk, {});
  const Folder folder;
  const std::string commandLine = driverPath() + " capture-service " + folder.path("lock");
  Process service({"/bin/sh", "-c", "trap '' HUP; exec " + commandLine}, mac.environment());
  service.readLine();
  service.signal(SIGHUP);
  service.closeInput();
  EXPECT_EQ(service.finish().status, 0);
}

}  // namespace
}  // namespace joined
