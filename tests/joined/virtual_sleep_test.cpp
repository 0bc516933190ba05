#include <gtest/gtest.h>

#include <chrono>

#include "mac.h"

namespace joined {
namespace {

constexpr const char* mail = R"(
app Mail pid 41 frontmost
    window 7 "Inbox" at 0,30 size 600x500
        AXStaticText "Status" at 10,70 size 200x20 value "waiting" press: set Status "here"
at 25s user click 20,75
)";

/// What a program prints that sleeps in virtual time, and behind it what the Mac then says to this.
std::string slept(
    const std::vector<std::string>& program,
    const std::string& question = " wait 0s | sed 's/.*\"now\":\\([0-9.]*\\).*/\\1/'") {
  const Folder folder;
  const std::string world = folder.file("world", mail);
  std::vector<std::string> command = {simulatedMacPath(),
                                      "run",
                                      "--virtual",
                                      "--sleep",
                                      world,
                                      "--",
                                      "sh",
                                      "-c",
                                      "\"$@\"; " + simulatedMacPath() + question,
                                      "sh"};
  command.insert(command.end(), program.begin(), program.end());
  const auto start = std::chrono::steady_clock::now();
  const std::string result =
      seen(run(command, {{"MAC", simulatedMacPath()}, {"DRIVER", driverPath()}}));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
  return result;
}

/// Whether the user's click after 25 seconds has come. Until then exactly is said by clocks that go
/// on while a program works.
constexpr const char* hasClicked = " value Mail Status | grep -o here";

TEST(virtual_sleep, of_a_shell) {
  EXPECT_EQ(slept({"sh", "-c", "sleep 30; sleep 0.25"}), "0 30250.0\n");
}

TEST(virtual_sleep, of_a_shell_that_polls_until_something_has_happened) {
  EXPECT_EQ(slept({"sh", "-c",
                   "until $MAC value Mail Status | grep -q here; do sleep 10; done; echo seen"}),
            "0 seen\n30000.0\n");
}

TEST(virtual_sleep, of_processes_beside_each_other_ends_in_order) {
  EXPECT_EQ(slept({"sh", "-c",
                   "(sleep 3; echo three; sleep 3; echo six) & (sleep 1; echo one; sleep 4; echo "
                   "five) & sleep 2; echo two; wait"}),
            "0 one\ntwo\nthree\nfive\nsix\n6000.0\n");
}

TEST(virtual_sleep, of_python_moves_its_clocks) {
  EXPECT_EQ(slept({"python3", "-c",
                   "import time, select\n"
                   "start = time.monotonic(), time.time()\n"
                   "time.sleep(12.5)\n"
                   "select.select([], [], [], 8.5)\n"
                   "select.poll().poll(5000)\n"
                   "print([(now - then) // 1 for now, then in\n"
                   "       zip((time.monotonic(), time.time()), start)])\n"},
                  hasClicked),
            "0 [26.0, 26.0]\nhere\n");
}

TEST(virtual_sleep, of_pythons_event_loop) {
  EXPECT_EQ(slept({"python3", "-c",
                   "import asyncio\n"
                   "async def say(after, text):\n"
                   "    await asyncio.sleep(after)\n"
                   "    print(text)\n"
                   "async def main():\n"
                   "    await asyncio.gather(say(26, 'second'), say(13, 'first'))\n"
                   "asyncio.run(main())\n"},
                  hasClicked),
            "0 first\nsecond\nhere\n");
}

TEST(virtual_sleep, of_pythons_event_loop_waits_for_its_children_and_not_beyond) {
  EXPECT_EQ(slept({"python3", "-c",
                   "import asyncio, os, subprocess\n"
                   "async def main():\n"
                   "    run = await asyncio.create_subprocess_exec(os.environ['DRIVER'],\n"
                   "        'windows', 'Mail', stdout=subprocess.PIPE)\n"
                   "    out, _ = await asyncio.wait_for(run.communicate(), 5)\n"
                   "    print(b'Inbox' in out)\n"
                   "    await asyncio.sleep(13)\n"
                   "    done = subprocess.run(['sleep', '13'])\n"
                   "    print(done.returncode)\n"
                   "asyncio.run(main())\n"},
                  hasClicked),
            "0 True\n0\nhere\n");
}

TEST(virtual_sleep, of_node_waits_for_its_children_and_not_beyond) {
  EXPECT_EQ(slept({"node", "-e",
                   "const { execFile } = require('child_process');\n"
                   "setTimeout(() => execFile(process.env.DRIVER, ['windows', 'Mail'],\n"
                   "  { timeout: 60000 }, (error, out) =>\n"
                   "  console.log(error, out.includes('Inbox'))), 40000);\n"},
                  hasClicked),
            "0 null true\nhere\n");
}

TEST(virtual_sleep, of_node) {
  EXPECT_EQ(
      slept({"node", "-e",
             "const start = Date.now();\n"
             "setTimeout(() => console.log(Math.floor((Date.now() - start) / 1000)), 40000);\n"},
            hasClicked),
      "0 40\nhere\n");
}

TEST(virtual_sleep, is_of_virtual_time_alone) {
  const Folder folder;

  EXPECT_EQ(
      seen(run({simulatedMacPath(), "run", "--sleep", folder.file("world", mail), "--", "true"})),
      "1 {\"error\":\"usage: simulated-mac run [--virtual [--sleep]] [--seed N] [--record DIR "
      "[--no-pictures]] [--snapshot FILE] WORLD -- COMMAND [ARGUMENT]...\",\"ok\":false}\n");
}

}  // namespace
}  // namespace joined
