#include "simulator/desktop.h"

#include <gtest/gtest.h>

#include "simulator/text/parse.h"

namespace simulator {

namespace {

using driver::Datum;
using driver::pack;
using platform::Function;

constexpr const char* desktopDesk = R"(
    app Browser pid 40 frontmost
    app Notes pid 41
        window 7 "Inbox" at 100,100 size 200x200
    at 5ms lock
    at 2ms user move 30,40
    at 5ms leave console
)";

std::vector<std::string> journalOf(const Desktop& desktop) {
  std::vector<std::string> lines;
  for (const auto& entry : desktop.mac().journal) {
    std::string line = effectLine(entry, 0);
    if (!line.empty()) lines.push_back(std::move(line));
  }
  return lines;
}

using Lines = std::vector<std::string>;

TEST(Desktop, lets_scripted_things_happen_in_passing_and_in_order) {
  Desktop desktop(parseWorld(desktopDesk));
  EXPECT_EQ(desktop.nextOwn(), 2'000);

  desktop.advanceTo(1'999);
  EXPECT_EQ(journalOf(desktop), Lines{});
  desktop.advanceTo(10'000);

  EXPECT_EQ(journalOf(desktop),
            (Lines{"    2 ms  happening user move 30,40", "    5 ms  happening lock",
                   "    5 ms  happening leave console"}));
  EXPECT_EQ(desktop.mac().now, 10'000);
  EXPECT_EQ(desktop.nextOwn(), std::nullopt);
}

TEST(Desktop, never_turns_its_clock_back) {
  Desktop desktop(parseWorld(desktopDesk));
  desktop.advanceTo(10'000);
  desktop.advanceTo(3'000);

  EXPECT_EQ(desktop.mac().now, 10'000);
}

TEST(Desktop, does_at_the_start_what_is_scripted_for_it) {
  const Desktop desktop(parseWorld("    at 0ms lock\n"));

  EXPECT_EQ(desktop.mac().world.session.locked, true);
}

TEST(Desktop, gives_each_client_a_process_of_its_own_above_any_of_the_hosts) {
  Desktop desktop(parseWorld(desktopDesk));
  const std::size_t first = desktop.join({"driver", "session"}, {});
  const std::size_t second = desktop.join({"driver", "session"}, {});
  const Pid pid = desktop.client(first).pid;
  const auto alive = [&] {
    return desktop.handle(second, {Function::nullSignal, {pack(pid)}}).value == pack(true);
  };

  EXPECT_GT(pid, 4'194'304);
  EXPECT_NE(pid, desktop.client(second).pid);
  EXPECT_TRUE(alive());
  desktop.leave(first);
  desktop.leave(first);
  EXPECT_FALSE(alive());
}

TEST(Desktop, keeps_output_and_status_of_a_client) {
  Desktop desktop(parseWorld(desktopDesk));
  const std::size_t client = desktop.join({"driver", "session"}, {});
  desktop.handle(client, {Function::writeOutput, {pack("{\"ok\":true}"), pack(true)}});
  desktop.handle(client, {Function::writeOutput, {pack("\n"), pack(true)}});
  desktop.handle(client, {Function::exit, {pack(0)}});

  EXPECT_EQ(desktop.client(client).output, "{\"ok\":true}\n");
  EXPECT_TRUE(desktop.client(client).exited);
  EXPECT_EQ(desktop.client(client).status, 0);
  EXPECT_EQ(desktop.violations(), Lines{});
}

TEST(Desktop, checks_the_rules_of_each_client) {
  Desktop desktop(parseWorld(desktopDesk));
  const std::size_t client = desktop.join({"driver", "bg-click"}, {});
  desktop.handle(client, {Function::sleep, {pack(1)}});
  desktop.handle(client, {Function::exit, {pack(3)}});

  EXPECT_EQ(desktop.violations(),
            (Lines{"I5: a wait of 1 us is never due", "I6: the output is not exactly one line",
                   "I6: unknown exit status"}));
}

TEST(Desktop, goes_on_without_clients_that_it_has_forgotten) {
  Desktop desktop(parseWorld(desktopDesk));
  const std::size_t gone = desktop.join({"driver", "session"}, {});
  desktop.handle(gone, {Function::uptime, {}});
  desktop.leave(gone);
  desktop.forget(gone);
  const std::size_t next = desktop.join({"driver", "session"}, {});
  EXPECT_NE(Desktop::pidOf(gone), Desktop::pidOf(next));
  EXPECT_EQ(desktop.client(next).pid, Desktop::pidOf(next));

  for (const char* happening : {"user move 1,1", "signal 15"}) {
    desktop.happen(parseHappening(happening, desktop.mac().world));
  }
  EXPECT_EQ(desktop.client(next).diedBySignal, 15);
  EXPECT_EQ(desktop.trace().size(), 1U);
  EXPECT_EQ(desktop.trace()[0].client, gone);
}

TEST(Desktop, answers_a_sleep_as_late_as_it_lasts_without_waiting) {
  Desktop desktop(parseWorld(desktopDesk));
  const std::size_t client = desktop.join({"driver", "session"}, {});

  EXPECT_EQ(desktop.handle(client, {Function::sleep, {pack(200'000)}}).delay, 200'000);
  EXPECT_EQ(desktop.mac().now, 0);
}

TEST(Desktop, waits_for_no_message_longer_than_the_time_out) {
  const World world = parseWorld("app Notes pid 41 answers after 5500ms\n");
  Desktop desktop(world, {parseFault("ax.attribute 2 late", world)});
  const std::size_t client = desktop.join({"driver", "ax-list"}, {});
  const auto read = [&] {
    return desktop.handle(client, {Function::axAttribute,
                                   {pack(platform::ElementReference{41, 0}), pack("AXTitle")}});
  };

  EXPECT_EQ(read().delay, 5'500'000);
  const Answer late = read();
  EXPECT_EQ(late.delay, 6'000'000);
  EXPECT_EQ(late.value, pack(platform::WireReadings{{}, {ax::Error::cannotComplete, true}}));
}

TEST(Desktop, refuses_calls_that_make_no_sense) {
  Desktop desktop(parseWorld(desktopDesk));
  const std::size_t client = desktop.join({"driver", "session"}, {});

  EXPECT_THROW(desktop.handle(client, {static_cast<Function>(250), {}}), driver::MalformedDatum);
  EXPECT_THROW(desktop.handle(client, {Function::privatePost, {pack(41), pack("event")}}),
               driver::MalformedDatum);
  EXPECT_THROW(desktop.handle(client, {Function::findSymbol, {pack(99), pack("x")}}),
               driver::MalformedDatum);
}

TEST(Desktop, gives_the_same_trace_for_the_same_calls) {
  const auto run = [] {
    Desktop desktop(parseWorld(desktopDesk));
    const std::size_t client = desktop.join({"driver", "session"}, {});
    std::string trace;
    for (const Function function : {Function::createSource, Function::windows,
                                    Function::applications, Function::session, Function::uptime}) {
      desktop.handle(client, {function, {pack(17)}});
      desktop.advanceTo(desktop.mac().now + 3'000);
    }
    for (const auto& entry : desktop.trace()) trace += traceLine(entry) + "\n";
    return trace;
  };

  EXPECT_EQ(run(), run());
  EXPECT_NE(run().find("6 ms 5000000 workspace.applications"), std::string::npos);
}

}  // namespace

}  // namespace simulator
