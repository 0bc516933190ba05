#include <gtest/gtest.h>

#include "mac.h"
#include "wire.h"
#include "worlds.h"

namespace joined {
namespace {

std::string now(std::int64_t milliseconds) { return integer(milliseconds * 1'000'000); }
std::string askTime() { return call(uptimeFunction, {}); }
std::string wait(std::int64_t milliseconds) {
  return call(sleepFunction, {integer(milliseconds * 1000)});
}

TEST(protocol, a_process_learns_its_process_id) {
  const ServedMac mac(notes);
  const Wire first(mac.socket());
  first.join();
  EXPECT_EQ(first.receive(), integer(joinedPid(0)));
  EXPECT_EQ(first.exchange(askTime()), now(0));
  EXPECT_EQ(first.exchange(wait(15)), nothing());
  EXPECT_EQ(first.exchange(askTime()), now(15));
}

TEST(protocol, one_process_runs_at_a_time_in_virtual_time) {
  const ServedMac mac(notes);
  const Wire first(mac.socket());
  const Wire second(mac.socket());
  first.join();
  EXPECT_EQ(first.receive(), integer(joinedPid(0)));
  second.join();
  first.awaitProcess(joinedPid(1));

  first.send(frame(wait(100)));
  EXPECT_EQ(second.receive(), integer(joinedPid(1)));
  EXPECT_EQ(second.exchange(askTime()), now(0));
  EXPECT_EQ(second.exchange(wait(40)), nothing());
  EXPECT_EQ(second.exchange(askTime()), now(40));
  second.send(frame(wait(60)));
  EXPECT_EQ(first.receive(), nothing());  // both are due at 100 ms; the first joined earlier
  EXPECT_EQ(first.exchange(askTime()), now(100));
  first.send(frame(wait(1)));
  EXPECT_EQ(second.receive(), nothing());
  EXPECT_EQ(second.exchange(askTime()), now(100));
}

TEST(protocol, a_process_that_goes_gives_up_its_turn) {
  const ServedMac mac(notes);
  const Wire second(mac.socket());
  {
    const Wire first(mac.socket());
    first.join();
    first.receive();
    second.join();
    first.awaitProcess(joinedPid(1));
  }

  EXPECT_EQ(second.receive(), integer(joinedPid(1)));
  EXPECT_EQ(second.exchange(call(nullSignalFunction, {integer(joinedPid(0))})), boolean(false));
}

TEST(protocol, time_that_is_advanced_waits_for_processes) {
  const ServedMac mac(notes);
  const Wire process(mac.socket());
  const Wire control(mac.socket());
  process.join();
  process.receive();

  control.send(frame(list({text("control"), text("advance"), text("1s")})));
  EXPECT_EQ(process.exchange(wait(999)), nothing());
  EXPECT_EQ(process.exchange(askTime()), now(999));
  process.send(frame(wait(2)));

  EXPECT_EQ(control.receive(), list({boolean(true), list({text("{\"now\":1000.0,\"ok\":true}")})}));
  EXPECT_EQ(process.receive(), nothing());
  EXPECT_EQ(process.exchange(askTime()), now(1001));
}

TEST(protocol, calls_sent_ahead_are_answered_in_order) {
  const ServedMac mac(notes);
  const Wire process(mac.socket());
  process.join();
  process.receive();

  process.send(frame(wait(5)) + frame(askTime()) + frame(wait(6)) + frame(askTime()));

  EXPECT_EQ(process.receive(), nothing());
  EXPECT_EQ(process.receive(), now(5));
  EXPECT_EQ(process.receive(), nothing());
  EXPECT_EQ(process.receive(), now(11));
}

TEST(protocol, a_control_client_may_ask_several_times) {
  const ServedMac mac(notes);
  const Wire control(mac.socket());
  const std::string good = list({boolean(true), list({text("{\"ok\":true}")})});

  EXPECT_EQ(control.exchange(list({text("control"), text("lock")})), good);
  EXPECT_EQ(control.exchange(list({text("control"), text("unlock")})), good);
  EXPECT_EQ(control.exchange(list({text("control")})),
            list({boolean(false), list({text("{\"error\":\"no command\",\"ok\":false}")})}));
}

struct Garbage {
  const char* name;
  bool joined;  // sent by a process that has joined
  std::string bytes;
};

std::string nested(int depth) {
  std::string value = nothing();
  for (int i = 0; i < depth; ++i) value = list({value});
  return value;
}

std::vector<Garbage> everyGarbage() {
  const std::string environment = list({});
  return {
      {"no_protocol", false, "GET / HTTP/1.0\r\n\r\n"},
      {"endless_length", false, "\xFF\xFF\xFF\xFF"},
      {"empty_message", false, frame("")},
      {"unknown_kind", false, frame("\x09")},
      {"no_list", false, frame(integer(1))},
      {"empty_list", false, frame(list({}))},
      {"unknown_greeting", false, frame(list({text("hello")}))},
      {"no_environment", false, frame(list({text("driver"), list({})}))},
      {"arguments_are_numbers", false,
       frame(list({text("driver"), list({integer(1)}), environment}))},
      {"endless_list", false, frame("\5\xFF\xFF\xFF\xFF")},
      {"endless_text", false, frame("\4\xFF\xFF\xFF\xFF")},
      {"bottomless_list", false, frame(nested(100))},
      {"bytes_after_the_value", false, frame(list({text("control"), text("lock")}) + "more")},
      {"call_before_joining", false, frame(askTime())},
      {"command_is_a_number", false, frame(list({text("control"), integer(1)}))},
      {"joins_again", true, frame(list({text("driver"), list({}), environment}))},
      {"unknown_function", true, frame(call(4711, {}))},
      {"negative_function", true, frame(call(-1, {}))},
      {"function_of_another_kind", true, frame(list({text("sleep"), list({})}))},
      {"no_arguments", true, frame(call(sleepFunction, {}))},
      {"argument_of_another_kind", true, frame(call(sleepFunction, {text("long")}))},
      {"call_without_a_list", true, frame(list({integer(0)}))},
  };
}

class garbage : public testing::TestWithParam<Garbage> {};

TEST_P(garbage, ends_its_connection_and_disturbs_nobody) {
  const ServedMac mac(notes);
  const Wire wire(mac.socket());
  if (GetParam().joined) {
    wire.join();
    wire.receive();
  }

  wire.send(GetParam().bytes);

  EXPECT_EQ(wire.receive(), "closed");
  EXPECT_EQ(seen(mac.driver({"session"})), unlocked);
}

INSTANTIATE_TEST_SUITE_P(every, garbage, testing::ValuesIn(everyGarbage()),
                         [](const auto& each) { return each.param.name; });

TEST(protocol, no_function_is_upset_by_arguments_of_any_kind) {
  const ServedMac mac(notes);
  const std::vector<std::string> arguments = {nothing(), boolean(true), integer(-1), integer(41),
                                              text(""),  list({}),      nested(3)};
  constexpr std::int64_t functions = 120;  // and some that there are not
  for (std::int64_t function = 0; function < functions; ++function) {
    for (const std::string& argument : arguments) {
      const Wire wire(mac.socket());
      wire.join();
      wire.receive();
      // Some wait for something to happen: nobody waits for their answers here.
      wire.send(frame(call(function, {argument, argument, argument})));
    }
  }

  // One of them locks the screen, which shows a moment later.
  mac.command({"advance", "1s"});
  EXPECT_EQ(seen(mac.driver({"session"})), "0 {\"locked\":true,\"ok\":true,\"onConsole\":true}\n");
}

TEST(protocol, a_message_that_never_ends_holds_nobody_up) {
  const ServedMac mac(notes);
  const Wire wire(mac.socket());

  wire.send(frame(list({text("control"), text("lock")})).substr(0, 9));

  EXPECT_EQ(seen(mac.driver({"session"})), unlocked);
}

TEST(protocol, who_never_reads_holds_nobody_up) {
  const ServedMac mac(notes);
  const Wire wire(mac.socket());
  std::string requests;
  for (int i = 0; i < 100; ++i) requests += frame(list({text("control"), text("screenshot")}));

  wire.send(requests);

  EXPECT_EQ(seen(mac.driver({"session"})), unlocked);
}

}  // namespace
}  // namespace joined
