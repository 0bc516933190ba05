#include <gtest/gtest.h>
#include <signal.h>

#include "mac.h"

namespace joined {
namespace {

constexpr const char* watchDesk = R"(
display 1 1440x900 scale 1
pasteboard item "public.utf8-plain-text" "old" "public.rtf" "{old}"
app Browser pid 40 bundle com.example.browser frontmost
    window 5 "Start" at 0,30 size 90x500
        AXTextArea "Page" at 10,60 size 60x200 focused
app Notes pid 41 bundle com.example.notes
    window 7 "Inbox" at 100,80 size 800x600
        AXTextArea "Body" at 120,130 size 700x400 focused
app Mail pid 42 bundle com.example.mail
    menu Edit > Paste cmd v
    window 8 "Draft" at 950,80 size 400x600
        AXTextArea "Letter" at 960,130 size 300x400 focused
)";

/// A watcher on a Mac of its own, which has written its first line.
class Watched {
 public:
  Watched() : watcher_(driverCommand({"watch-input", "Notes"}), mac_.environment()) {
    EXPECT_EQ(watcher_.readLine(),
              "{\"idleMs\":0,\"ok\":true,\"targetPid\":41,\"touchesTarget\":false,"
              "\"watching\":true}");
  }

  const ServedMac& mac() const { return mac_; }
  Process& process() { return watcher_; }

  /// Lets something happen to the Mac.
  void happen(const std::vector<std::string>& words) const {
    EXPECT_EQ(seen(mac_.command(words)), "0 {\"ok\":true}\n");
  }

 private:
  ServedMac mac_{watchDesk};
  Process watcher_;
};

TEST(watcher, reports_each_input_until_its_own_is_closed) {
  Watched watched;
  watched.happen({"user", "key", "return"});
  EXPECT_EQ(watched.process().readLine(),
            "{\"at\":1767225600000,\"input\":\"key\",\"submit\":\"com.example.browser\","
            "\"touchesTarget\":false}");
  EXPECT_EQ(watched.mac().command({"advance", "1s"}).status, 0);
  watched.happen({"user", "click", "500,400"});
  EXPECT_EQ(watched.process().readLine(),
            "{\"at\":1767225601000,\"input\":\"pointer\",\"touchesTarget\":false}");
  EXPECT_EQ(watched.process().readLine(),
            "{\"at\":1767225601000,\"input\":\"pointer\",\"touchesTarget\":true}");
  watched.process().write("no command\n");
  watched.process().closeInput();
  EXPECT_EQ(seen(watched.process().finish()), "0 ");
  EXPECT_EQ(watched.mac().command({"violations"}).output, noViolations);
}

TEST(watcher, ends_at_once_for_a_caller_that_gives_no_input) {
  const ServedMac mac(watchDesk);
  EXPECT_EQ(seen(mac.driver({"watch-input"})), "0 {\"idleMs\":0,\"ok\":true,\"watching\":true}\n");
}

TEST(watcher, ends_by_a_signal) {
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
    Watched watched;
    watched.process().signal(number);
    EXPECT_EQ(seen(watched.process().finish()), std::to_string(128 + number) + " ");
    EXPECT_EQ(watched.mac().command({"violations"}).output, noViolations);
  }
}

TEST(watcher, ends_with_status_1_when_its_reader_has_gone) {
  const ServedMac mac(watchDesk);
  // The reader goes after the first line, and with it the last that has the shell's output. The
  // input is one that nobody can close, so that nothing but the reader ends the watching.
  Process shell({"/bin/sh", "-c",
                 "folder=$(mktemp -d); mkfifo \"$folder/input\"; exec 3<>\"$folder/input\"; "
                 "rm -r \"$folder\"; { \"$0\" watch-input <&3; echo \"status $?\" >&2; } | "
                 "{ read line; echo \"$line\"; } & exec >&-; wait",
                 driverPath()},
                mac.environment());
  EXPECT_EQ(shell.readLine(), "{\"idleMs\":0,\"ok\":true,\"watching\":true}");
  EXPECT_EQ(shell.readLine(), "");
  mac.command({"user", "key", "a"});
  EXPECT_EQ(shell.finish().errors, "status 1\n");
}

TEST(watcher, says_nothing_of_what_the_tool_does) {
  Watched watched;
  EXPECT_EQ(seen(watched.mac().driver({"bg-type", "Notes", "one\ntwo \U0001F600"})),
            "0 {\"ok\":true,\"pid\":41,\"via\":\"background\",\"window\":7}\n");
  EXPECT_EQ(seen(watched.mac().driver({"bg-key", "Notes", "return"})),
            "0 {\"ok\":true,\"pid\":41,\"via\":\"background\",\"window\":7}\n");
  watched.process().closeInput();
  EXPECT_EQ(seen(watched.process().finish()), "0 ");
  EXPECT_EQ(watched.mac().command({"violations"}).output, noViolations);
}

TEST(driver, types_into_an_application_behind) {
  const ServedMac mac(watchDesk);
  EXPECT_EQ(seen(mac.driver({"bg-type", "Notes", "one\r\ntwo \U0001F600"})),
            "0 {\"ok\":true,\"pid\":41,\"via\":\"background\",\"window\":7}\n");
  EXPECT_EQ(seen(mac.command({"journal", "--text"})),
            R"(0     0 ms  5000000  process joined driver bg-type Notes 'one\r\ntwo 😀'
    0 ms  5000000  focus 41/7 give
   40 ms  5000000  post 41/7 key-down 0 "one" public: typed "one" into AXTextArea "Body"
   52 ms  5000000  post 41/7 key-up 0 "one" public
   64 ms  5000000  post 41/7 key-down 56 with shift public: shift
   76 ms  5000000  post 41/7 key-down 36 with shift public: broke the line softly in AXTextArea "Body"
   88 ms  5000000  post 41/7 key-up 36 with shift public
  100 ms  5000000  post 41/7 key-up 56 with shift public
  162 ms  5000000  post 41/7 key-down 0 "two 😀" public: typed "two 😀" into AXTextArea "Body"
  174 ms  5000000  post 41/7 key-up 0 "two 😀" public
  236 ms  5000000  focus 41/7 take
  276 ms  5000000  reply "{"ok":true,"pid":41,"via":"background","window":7}"
  276 ms  5000000  process ended: status 0
)");
  EXPECT_EQ(mac.command({"violations"}).output, noViolations);
}

TEST(driver, pastes_files_and_gives_the_clipboard_back) {
  const ServedMac mac(watchDesk);
  EXPECT_EQ(seen(mac.driver({"bg-paste-files", "Mail", "/a b.txt", "c.txt"})),
            "0 {\"ok\":true,\"pid\":42,\"via\":\"background\",\"window\":8}\n");
  EXPECT_EQ(seen(mac.command({"journal", "--text"})),
            R"(0     0 ms  5000000  process joined driver bg-paste-files Mail '/a b.txt' c.txt
    0 ms  5000000  focus 42/8 give
   40 ms  5000000  pasteboard clear
   40 ms  5000000  pasteboard write-files "/a b.txt\n/Users/ada/c.txt"
   40 ms  5000000  action 42/0 AXPress: pressed AXMenuItem "Paste", asked for a paste into AXTextArea "Letter"
   90 ms  5000000  landing 42/8 paste "/a b.txt\n/Users/ada/c.txt": pasted paths as text into AXTextArea "Letter"
  440 ms  5000000  pasteboard clear
  440 ms  5000000  pasteboard write "old"
  490 ms  5000000  focus 42/8 take
  530 ms  5000000  reply "{"ok":true,"pid":42,"via":"background","window":8}"
  530 ms  5000000  process ended: status 0
)");
  EXPECT_EQ(mac.command({"violations"}).output, noViolations);
}

}  // namespace
}  // namespace joined
