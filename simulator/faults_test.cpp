#include "simulator/faults.h"

#include <gtest/gtest.h>

#include "simulator/desktop.h"
#include "simulator/text/parse.h"

namespace simulator {

namespace {

using driver::Datum;
using driver::pack;
using platform::Function;

constexpr const char* faultsDesk = R"(
    process 900
    app Browser pid 40 frontmost
    app Notes pid 41
        window 7 "Inbox" at 100,100 size 200x200
)";

World world() { return parseWorld(faultsDesk); }

std::string roundTrip(const std::string& text) { return faultText(parseFault(text, world())); }

std::string errorOf(const std::string& text) {
  try {
    parseFault(text, world());
  } catch (const WorldError& error) {
    return error.what();
  }
  return "none";
}

/// The texts of all outcomes that one call of a function may have.
std::vector<std::string> outcomesOf(Function function, Pid target = 41) {
  std::vector<std::string> texts;
  for (const Outcome& outcome : admissibleOutcomes(function, world(), target)) {
    const std::string text = faultText({function, 1, false, outcome});
    texts.push_back(text.substr(text.find(" 1 ") + 3));
  }
  return texts;
}

TEST(faults, have_a_text_and_are_read_back) {
  for (const char* text :
       {"quartz.create-mouse-event 3 absent", "streams.write-output 1 refused",
        "windowserver.windows 2+ empty", "ax.attributes 1 wrong",
        "private.post-record 1+ error -600", "share.content 1 thrown", "ax.set-attribute 7 hang",
        "share.screenshot 2 late", "private.post 4 before lock", "any 12 before user key return",
        "any 1+ before front pid:41", "loop.sleep 2 before end process 900"}) {
    EXPECT_EQ(roundTrip(text), text);
  }
  EXPECT_EQ(roundTrip("  loop.sleep   2  before   quit Notes "), "loop.sleep 2 before quit pid:41");
}

TEST(faults, whose_words_are_slips_are_refused_with_what_was_meant) {
  EXPECT_EQ(errorOf("private.pst 5 refused"),
            "line 1: unknown call 'private.pst'; \"simulated-mac help calls\" lists them; did you "
            "mean 'private.post'?");
  EXPECT_EQ(errorOf("ayn 5 refused"),
            "line 1: unknown call 'ayn'; \"simulated-mac help calls\" lists them; did you mean "
            "'any'?");
  EXPECT_EQ(errorOf("private.post 5 refsed"),
            "line 1: expected absent, refused, empty, wrong, error, thrown, hang, late or before, "
            "not 'refsed'; did you mean 'refused'?");
}

TEST(faults, that_cannot_be_read_are_refused_with_a_reason) {
  const std::pair<const char*, const char*> cases[] = {
      {"", "unknown call ''; \"simulated-mac help calls\" lists them"},
      {"quartz.fly 1 absent", "unknown call 'quartz.fly'"},
      {"loop.sleep", "expected which call, from 1"},
      {"loop.sleep 0 before lock", "expected which call, from 1"},
      {"loop.sleep x before lock", "expected which call, from 1"},
      {"loop.sleep +", "expected which call, from 1"},
      {"share.content 1 broken",
       "expected absent, refused, empty, wrong, error, thrown, hang, late or before, not 'broken'"},
      {"share.content 1",
       "expected absent, refused, empty, wrong, error, thrown, hang, late or before"},
      {"private.post-record 1 error", "expected an error code"},
      {"private.post-record 1 error x", "expected an error code"},
      {"share.content 1 thrown twice", "more than one outcome"},
      {"loop.sleep 1 absent", "loop.sleep does not admit that outcome; it admits before"},
      {"private.post 1 late",
       "private.post does not admit that outcome; it admits refused or before"},
      {"share.content 1 hang",
       "share.content does not admit that outcome; it admits empty, wrong, thrown, late or before"},
      {"any 1 absent", "any does not admit that outcome; it admits before"}};
  for (const auto& [text, reason] : cases) {
    EXPECT_NE(errorOf(text).find(reason), std::string::npos) << text << ": " << errorOf(text);
  }
  EXPECT_NE(errorOf("loop.sleep 1 before quit Nobody").find("Nobody"), std::string::npos);
}

TEST(admissibleOutcomes, follow_the_form_of_the_answer) {
  const std::vector<std::string> happenings = {"before lock",        "before leave console",
                                               "before quit pid:41", "before front pid:41",
                                               "before hang pid:41", "before end process 900"};
  const auto with = [&](std::vector<std::string> own) {
    own.insert(own.end(), happenings.begin(), happenings.end());
    return own;
  };
  EXPECT_EQ(outcomesOf(Function::sleep), happenings);
  EXPECT_EQ(outcomesOf(Function::privatePost), with({"refused"}));
  EXPECT_EQ(outcomesOf(Function::writeOutput), with({"refused"}));
  EXPECT_EQ(outcomesOf(Function::createMouseEvent), with({"absent"}));
  EXPECT_EQ(outcomesOf(Function::windows), with({"absent", "empty", "wrong"}));
  EXPECT_EQ(outcomesOf(Function::applications), with({"empty"}));
  EXPECT_EQ(outcomesOf(Function::postRecord), with({"error -600"}));
  EXPECT_EQ(outcomesOf(Function::processForPid), with({"error -600"}));
  EXPECT_EQ(outcomesOf(Function::axGetWindow), with({"error -25201", "error -25204", "hang"}));
  EXPECT_EQ(outcomesOf(Function::axSetAttribute),
            with({"error -25200", "error -25202", "error -25204", "error -25205", "error -25211",
                  "error -25212", "hang", "late"}));
  const std::vector<std::string> messages = {"error -25200", "error -25202", "error -25204",
                                             "error -25205", "error -25211", "error -25212",
                                             "hang",         "late"};
  EXPECT_EQ(outcomesOf(Function::axActionNames), with(messages));
  EXPECT_EQ(outcomesOf(Function::axElementAt), with(messages));
  EXPECT_EQ(outcomesOf(Function::axAttributes).front(), "wrong");
  EXPECT_EQ(outcomesOf(Function::axAttributes).size(), 1 + with(messages).size());
  EXPECT_EQ(outcomesOf(Function::shareContent), with({"empty", "wrong", "thrown", "late"}));
  EXPECT_EQ(outcomesOf(Function::screenshot), with({"thrown", "late"}));
  EXPECT_EQ(outcomesOf(Function::createKeyboardEvent), with({"absent"}));
  EXPECT_EQ(outcomesOf(Function::createTap), with({"absent"}));
  EXPECT_EQ(outcomesOf(Function::toolOutput), with({"absent"}));
  EXPECT_EQ(outcomesOf(Function::pasteboardItems), with({"absent", "empty", "wrong"}));
  EXPECT_EQ(outcomesOf(Function::writePasteboard), with({"refused"}));
  EXPECT_EQ(outcomesOf(Function::secondsSinceLast), with({"wrong"}));
  EXPECT_EQ(outcomesOf(Function::currentDirectory), with({"empty"}));
  EXPECT_EQ(outcomesOf(Function::clearPasteboard), happenings);
}

TEST(admissibleOutcomes, without_a_target_or_process_leave_out_what_needs_one) {
  std::vector<std::string> texts;
  const World empty = parseWorld("");
  for (const Outcome& outcome : admissibleOutcomes(Function::sleep, empty, 0)) {
    texts.push_back(faultText({Function::sleep, 1, false, outcome}));
  }
  EXPECT_EQ(texts, (std::vector<std::string>{"loop.sleep 1 before lock",
                                             "loop.sleep 1 before leave console"}));
}

TEST(admissibleOutcomes, let_somebody_copy_where_the_pasteboard_matters) {
  const World full = parseWorld("pasteboard item \"public.utf8-plain-text\" \"a\"");
  const auto last = [&](Function function) {
    return faultText({function, 1, false, admissibleOutcomes(function, full, 0).back()});
  };
  EXPECT_EQ(last(Function::clearPasteboard), "pasteboard.clear 1 before user copy newer");
  EXPECT_EQ(last(Function::sleep), "loop.sleep 1 before user copy newer");
  EXPECT_EQ(last(Function::uptime), "loop.uptime 1 before leave console");
}

TEST(outcomes, take_the_arguments_that_their_rows_name) {
  for (const OutcomeRow& row : outcomeRows()) {
    std::size_t index = 0;
    while (row.wayFor(platform::shapeOf(static_cast<Function>(index))) == nullptr) ++index;
    const std::string fault =
        std::string(platform::functionNames[index]) + " 1 " + std::string(row.name);
    EXPECT_EQ(errorOf(fault) == "none", row.argument.empty()) << fault << ": " << errorOf(fault);
  }
}

TEST(admissibleOutcomes, can_all_be_given) {
  for (std::size_t index = 0; index < platform::functionNames.size(); ++index) {
    const auto function = static_cast<Function>(index);
    platform::Call call{function, {}};
    if (function == Function::axAttributes) {
      call.arguments = {pack(platform::ElementReference{41, 0}),
                        pack(std::vector<std::string>{"AXRole", "AXSize", "AXValue"})};
    }
    for (const Outcome& outcome : admissibleOutcomes(function, world(), 41)) {
      const auto answer = faultyAnswer(call, outcome);
      const bool worlds =
          outcome.kind == Outcome::Kind::happening || outcome.kind == Outcome::Kind::late;
      EXPECT_EQ(answer.has_value(), !worlds) << faultText({function, 1, false, outcome});
    }
  }
}

/// How often `sleep` calls leave the screen locked, with a fault armed.
std::vector<bool> lockedAfterSleeps(const std::string& fault, int sleeps) {
  Desktop desktop(world(), {parseFault(fault, world())});
  const std::size_t client = desktop.join({"driver", "session"}, {});
  std::vector<bool> locked;
  for (int i = 0; i < sleeps; ++i) {
    desktop.handle(client, {Function::sleep, {pack(12'000)}});
    locked.push_back(desktop.mac().world.session.locked.value_or(false));
    desktop.happen(parseHappening("unlock", desktop.mac().world));
  }
  return locked;
}

TEST(faults, strike_the_call_they_name_or_all_from_there_on) {
  using Locked = std::vector<bool>;
  EXPECT_EQ(lockedAfterSleeps("loop.sleep 2 before lock", 4), (Locked{false, true, false, false}));
  EXPECT_EQ(lockedAfterSleeps("loop.sleep 2+ before lock", 4), (Locked{false, true, true, true}));
  EXPECT_EQ(lockedAfterSleeps("any 3 before lock", 4), (Locked{false, false, true, false}));
  EXPECT_EQ(lockedAfterSleeps("loop.uptime 1 before lock", 2), (Locked{false, false}));
}

TEST(faults, count_from_when_they_were_added) {
  Desktop desktop(world());
  const std::size_t client = desktop.join({"driver", "session"}, {});
  const auto created = [&] {
    return !desktop.handle(client, {Function::createSource, {}}).value.isNothing();
  };
  EXPECT_TRUE(created());
  desktop.addFault(parseFault("quartz.create-source 2 absent", world()));
  EXPECT_TRUE(created());
  EXPECT_FALSE(created());
  EXPECT_TRUE(created());
}

TEST(faults, late_and_hang_take_their_time) {
  Desktop desktop(world(), {parseFault("share.content 1 late", world()),
                            parseFault("ax.attribute 1 hang", world())});
  const std::size_t client = desktop.join({"driver", "session"}, {});

  EXPECT_EQ(desktop.handle(client, {Function::shareContent, {pack(1), pack(0)}}).delay, 1'000'000);
  EXPECT_EQ(desktop
                .handle(client, {Function::axAttribute,
                                 {pack(platform::ElementReference{41, 0}), pack("AXRole")}})
                .delay,
            messagingTimeout);
}

TEST(faults, leave_their_mark_in_the_trace) {
  Desktop desktop(world(), {parseFault("private.process-for-pid 1 error -600", world())});
  const std::size_t client = desktop.join({"driver", "session"}, {});
  desktop.handle(client, {Function::processForPid, {pack(41)}});
  desktop.advanceTo(1500);
  desktop.handle(client, {Function::processForPid, {pack(41)}});

  EXPECT_EQ(traceLine(desktop.trace()[0]),
            "0 ms 5000000 private.process-for-pid 41 -> [-600 0 0] (fault)");
  EXPECT_EQ(traceLine(desktop.trace()[1]), "1.5 ms 5000000 private.process-for-pid 41 -> [0 0 41]");
}

}  // namespace

}  // namespace simulator
