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

/// What a program prints that sleeps in virtual time, with the Mac's time in milliseconds behind
/// it.
std::string slept(const std::vector<std::string>& program) {
  const Folder folder;
  const std::string world = folder.file("world", mail);
  std::vector<std::string> command = {
      simulatedMacPath(),
      "run",
      "--virtual",
      "--sleep",
      world,
      "--",
      "sh",
      "-c",
      "\"$@\"; " + simulatedMacPath() + " wait 0s | sed 's/.*\"now\":\\([0-9.]*\\).*/\\1/'",
      "sh"};
  command.insert(command.end(), program.begin(), program.end());
  const auto start = std::chrono::steady_clock::now();
  const std::string result =
      seen(run(command, {{"MAC", simulatedMacPath()}, {"DRIVER", driverPath()}}));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
  return result;
}

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
                   "select.select([], [], [], 7.5)\n"
                   "select.poll().poll(5000)\n"
                   "print([round((now - then) // 1) for now, then in\n"
                   "       zip((time.monotonic(), time.time()), start)])\n"}),
            "0 [25, 25]\n25000.0\n");
}

TEST(virtual_sleep, of_pythons_event_loop_waits_for_its_children_and_not_beyond) {
  EXPECT_EQ(
      slept({"python3", "-c",
             "import asyncio, os, subprocess\n"
             "async def main():\n"
             "    run = await asyncio.create_subprocess_exec(os.environ['DRIVER'], 'windows',\n"
             "        'Mail', stdout=subprocess.PIPE)\n"
             "    out, _ = await asyncio.wait_for(run.communicate(), 5)\n"
             "    print(b'Inbox' in out)\n"
             "    await asyncio.sleep(3)\n"
             "    done = subprocess.run(['sleep', '4'])\n"
             "    print(done.returncode)\n"
             "asyncio.run(main())\n"}),
      "0 True\n0\n7000.0\n");
}

TEST(virtual_sleep, of_node) {
  EXPECT_EQ(slept({"node", "-e",
                   "const { execFile } = require('child_process');\n"
                   "const start = Date.now();\n"
                   "setTimeout(() => {\n"
                   "  console.log(Math.floor((Date.now() - start) / 1000));\n"
                   "  execFile(process.env.DRIVER, ['windows', 'Mail'], { timeout: 60000 },\n"
                   "    (error, out) => console.log(error, out.includes('Inbox')));\n"
                   "}, 40000);\n"}),
            "0 40\nnull true\n40000.0\n");
}

TEST(virtual_sleep, is_of_virtual_time_alone) {
  const Folder folder;

  EXPECT_EQ(
      seen(run({simulatedMacPath(), "run", "--sleep", folder.file("world", mail), "--", "true"})),
      "1 {\"error\":\"usage: simulated-mac run [--virtual [--sleep]] [--seed N] [--record DIR "
      "[--no-pictures]] WORLD -- COMMAND [ARGUMENT]...\",\"ok\":false}\n");
}

}  // namespace
}  // namespace joined
