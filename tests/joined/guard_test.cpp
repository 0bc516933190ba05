#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <memory>

#include "guarded.h"

namespace joined {
namespace {

std::string lastLine(const std::string& by) {
  return "0 {\"by\":\"" + by + "\",\"ok\":true,\"relocked\":true}\n";
}

TEST(guard, locks_when_its_input_is_closed) {
  Guarded guard;
  guard.process().closeInput();
  EXPECT_EQ(seen(guard.process().finish()), lastLine("run"));
  EXPECT_TRUE(guard.isLocked());
  EXPECT_EQ(guard.violations(), noViolations);
}

TEST(guard, locks_at_once_for_a_caller_that_gives_no_input) {
  const ServedMac mac(desk);
  EXPECT_EQ(seen(mac.driver({"lock-guard"})),
            "0 " + std::string(firstLine) + "\n" + lastLine("run").substr(2));
}

TEST(guard, locks_at_each_of_its_signals_and_once_when_it_comes_twice) {
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
    Guarded guard;
    guard.process().signal(number);
    guard.process().signal(number);
    EXPECT_EQ(guard.end(), lastLine("signal")) << number;
    EXPECT_TRUE(guard.isLocked()) << number;
    EXPECT_EQ(guard.violations(), noViolations);
  }
}

TEST(guard, locks_when_the_user_comes_back) {
  Guarded guard;
  guard.happen({"user", "key", "a"});
  EXPECT_EQ(guard.end(), lastLine("user"));
  EXPECT_TRUE(guard.isLocked());
  EXPECT_EQ(guard.violations(), noViolations);
}

TEST(guard, lets_the_user_back_while_grace_lasts) {
  Guarded guard(desk + std::string("at 3s user key a\n"), {{"ZENTROVE_COVER_GRACE", "10"}});
  EXPECT_EQ(guard.process().readLine(), "{\"by\":\"grace\",\"ok\":true}");
  // Its input stays open until it has ended: the end of input would be one more reason.
  siginfo_t info = {};
  EXPECT_EQ(waitid(P_PID, static_cast<id_t>(guard.process().pid()), &info, WEXITED | WNOWAIT), 0);
  EXPECT_EQ(seen(guard.process().finish()), "0 ");
  EXPECT_FALSE(guard.isLocked());
  EXPECT_EQ(guard.violations(), noViolations);
}

TEST(guard, switches_its_wording) {
  Guarded guard;
  guard.process().write("operating\n");
  guard.process().write(" minding\t\nOperating\noperating\r\n");
  guard.process().closeInput();
  EXPECT_EQ(seen(guard.process().finish()), lastLine("run"));
  const std::string journal = guard.mac().command({"journal", "--text"}).output;
  const std::size_t operating = journal.find("says \"Zentrove Desk is using this Mac for you\"");
  const std::size_t minding = journal.find("says \"Zentrove Desk is minding this Mac\"");
  // Both lines may have been read together, when the last one counts.
  EXPECT_EQ(operating == std::string::npos, minding == std::string::npos) << journal;
}

// Faults of its own, and signals that it has no handler for: it locks, and dies of them.
TEST(guard, locks_before_it_dies_of_a_signal) {
  for (const int number :
       {SIGSEGV, SIGABRT, SIGBUS, SIGILL, SIGFPE, SIGTRAP, SIGSYS, SIGQUIT, SIGUSR1, SIGUSR2,
        SIGALRM, SIGXCPU, SIGXFSZ, SIGVTALRM, SIGPROF, SIGIO, SIGPWR, SIGSTKFLT}) {
    Guarded guard;
    guard.process().signal(number);
    EXPECT_EQ(seen(guard.process().finish()), std::to_string(128 + number) + " ") << number;
    EXPECT_TRUE(guard.isLocked()) << number;
  }
}

// A guard that were stopped would go on covering, and watch nobody.
TEST(guard, is_not_stopped_by_a_terminal) {
  for (const int number : {SIGTSTP, SIGTTIN, SIGTTOU}) {
    Guarded guard;
    guard.process().signal(number);
    guard.happen({"user", "key", "a"});
    EXPECT_EQ(guard.end(), lastLine("user")) << number;
    EXPECT_EQ(guard.violations(), noViolations);
  }
}

TEST(guard, goes_on_when_its_reader_has_gone) {
  const ServedMac mac(desk);
  // The shell's end of the pipe closes at once, and standard input stays open meanwhile.
  Process shell(
      {"/bin/sh", "-c", "{ \"$0\" lock-guard; echo \"status $?\" >&2; } | true", driverPath()},
      mac.environment());
  // Its end of the input is still ours.
  mac.command({"user", "key", "a"});
  shell.closeInput();
  const Finished finished = shell.finish();
  EXPECT_EQ(finished.errors, "status 0\n");
  EXPECT_NE(mac.command({"state"}).output.find("\"locked\":true"), std::string::npos);
}

TEST(keep_awake, holds_until_it_is_terminated) {
  const ServedMac mac(desk);
  Process hold(driverCommand({"keep-awake"}), mac.environment());
  EXPECT_EQ(hold.readLine(), "{\"keepAwake\":true,\"ok\":true}");
  hold.signal(SIGTERM);
  EXPECT_EQ(seen(hold.finish()), std::to_string(128 + SIGTERM) + " ");
}

TEST(lock_now, locks) {
  const ServedMac mac(desk);
  EXPECT_EQ(seen(mac.driver({"lock-now"})), "0 {\"ok\":true}\n");
  mac.command({"advance", "400ms"});
  EXPECT_NE(mac.command({"state"}).output.find("\"locked\":true"), std::string::npos);
}

}  // namespace
}  // namespace joined
