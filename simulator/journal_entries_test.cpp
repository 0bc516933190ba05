#include <gtest/gtest.h>

#include "platform/value_codec.h"
#include "simulator/desktop.h"
#include "simulator/text/parse.h"
#include "simulator/world/fields.h"

/// What the journal says of each thing: who did it, to what, and why it came to nothing.
namespace simulator {

namespace {

using driver::Datum;
using driver::pack;
using platform::Function;

constexpr const char* journalDesk = R"(
    app Browser pid 40 frontmost
        window 5 "Web" at 0,0 size 900x900
            AXTextField "Address" at 10,10 size 200x20
    app Notes pid 41
        window 7 "Inbox" at 1000,100 size 200x200
            AXTextField "To" value "" at 10,10 size 100x20
            AXTextField "Loud" value "" at 10,40 size 100x20 transform upper
            AXTextField "Late" value "" at 10,70 size 100x20 late 30ms
            AXButton "Send" at 10,100 size 50x20 press: append "sent" to Log
            AXButton "Odd" at 10,130 size 50x20 replying -25204
            AXStaticText "Log" value "" at 10,160 size 50x20
)";

class journal_entries : public testing::Test {
 protected:
  explicit journal_entries(const char* world = journalDesk) : desktop_(parseWorld(world)) {
    client_ = desktop_.join({"/usr/bin/driver", "ax-press", "Notes", "a b"},
                            {{"CU_WINDOW", "Inbox"}, {"HOME", "/home/ada"}});
  }

  platform::ElementReference element(const char* label) {
    Application& notes = desktop_.mac().world.applications[1];
    return {41, findLabelled(notes, label)->id};
  }

  Answer write(const char* label, const std::string& attribute, const Datum& value) {
    return desktop_.handle(
        client_, {Function::axSetAttribute, {pack(element(label)), pack(attribute), value}});
  }
  void writeText(const char* label, const std::string& text) {
    write(label, "AXValue", platform::packPlain(text));
  }
  void press(const char* label) {
    desktop_.handle(client_, {Function::axPerform, {pack(element(label)), pack("AXPress")}});
  }
  void happen(const char* text) { desktop_.happen(parseHappening(text, desktop_.mac().world)); }

  /// The lines after the one that tells of the process, without what its rules say of it.
  std::string lines() const {
    std::string text;
    for (const JournalEntry& entry : desktop_.mac().journal) {
      if (entry.number > 1 && entry.kind != JournalEntry::Kind::violation) {
        text += journalText(entry) + "\n";
      }
    }
    return text;
  }

  Desktop desktop_;
  std::size_t client_ = 0;
};

TEST_F(journal_entries, names_a_process_with_its_command_line_and_what_it_heeds) {
  EXPECT_EQ(journalText(desktop_.mac().journal.front()),
            "    0 ms  5000000  process joined CU_WINDOW=Inbox driver ax-press Notes 'a b'");
  EXPECT_EQ(journalLine(desktop_.mac().journal.front()),
            R"({"arguments":["driver","ax-press","Notes","a b"],"at":0.0,"kind":"process",)"
            R"("number":1,"pid":5000000,"variables":["CU_WINDOW=Inbox"],"what":"joined"})");
}

TEST_F(journal_entries, tells_how_a_process_ended) {
  desktop_.handle(client_, {Function::writeOutput, {pack("{\"ok\":true}"), pack(true)}});
  desktop_.handle(client_, {Function::writeOutput, {pack("\n"), pack(true)}});
  desktop_.handle(client_, {Function::exit, {pack(3)}});
  desktop_.leave(client_);
  desktop_.leave(desktop_.join({"driver"}, {}));

  EXPECT_EQ(lines(),
            "    0 ms  5000000  reply \"{\"ok\":true}\"\n"
            "    0 ms  5000000  process ended: status 3\n"
            "    0 ms  5000001  process joined driver\n"
            "    0 ms  5000001  process ended: gone, without a word\n");
}

TEST_F(journal_entries, says_of_a_text_where_it_was_written_and_what_the_field_made_of_it) {
  writeText("To", "one\ntwo");
  writeText("Loud", "one");
  write("To", "AXFocused", platform::packPlain(true));

  EXPECT_EQ(
      lines(),
      "    0 ms  5000000  write 41/7 AXValue of AXTextField \"To\" \"one\\ntwo\"\n"
      "    0 ms  5000000  write 41/7 AXValue of AXTextField \"Loud\" \"one\": it holds \"ONE\" "
      "now\n"
      "    0 ms  5000000  write 41/7 AXFocused of AXTextField \"To\" true\n");
  EXPECT_EQ(journalLine(desktop_.mac().journal[2]),
            R"({"at":0.0,"element":{"label":"To","role":"AXTextField","window":7},"kind":"write",)"
            R"("landed":true,"number":3,"pid":5000000,"target":41,"text":"one\ntwo",)"
            R"("what":"AXValue","window":7})");
}

TEST_F(journal_entries, says_when_a_late_write_lands) {
  writeText("Late", "one");
  desktop_.advanceTo(50'000);

  EXPECT_EQ(lines(),
            "    0 ms  5000000  write 41/7 AXValue of AXTextField \"Late\" \"one\": comes later\n"
            "   30 ms  5000000  landing 41/7 AXValue \"one\"\n");
}

TEST_F(journal_entries, says_of_a_lost_write_and_action_why) {
  happen("hang Notes");
  writeText("To", "one");
  press("Send");

  EXPECT_EQ(
      lines(),
      "    0 ms        -  happening 41/0 hang Notes\n"
      "    0 ms  5000000  write 41/0 AXValue \"one\" LOST: the application did not answer in "
      "time\n"
      "    0 ms  5000000  action 41/0 AXPress LOST: the application did not answer in time\n");
}

TEST_F(journal_entries,
       says_of_a_reaction_that_it_finds_nothing_and_of_an_action_what_is_answered) {
  removeElement(desktop_.mac().world.applications[1], element("Log").id);
  press("Send");
  press("Odd");

  EXPECT_EQ(lines(),
            "    0 ms  5000000  action 41/7 AXPress: pressed AXButton \"Send\", finds nothing "
            "labelled \"Log\"\n"
            "    0 ms  5000000  action 41/7 AXPress: pressed AXButton \"Odd\", which does nothing, "
            "answered with -25204\n");
}

TEST_F(journal_entries, says_where_the_users_input_went) {
  happen("user click 20,20");
  happen("user key a");
  happen("user click 1900,20");
  happen("lock");
  happen("user key b");

  EXPECT_EQ(
      lines(),
      "    0 ms        -  happening user click 20,20: Browser: focused AXTextField "
      "\"Address\"\n"
      "    0 ms        -  happening user key a: Browser: typed \"a\" into AXTextField "
      "\"Address\"\n"
      "    0 ms        -  happening user click 1900,20: there is no window\n"
      "    0 ms        -  happening lock\n"
      "    0 ms        -  happening user key b: nothing gets it: the session is locked or not "
      "on the console\n");
}

TEST_F(journal_entries, marks_the_faults_that_struck) {
  desktop_.addFault(parseFault("windowserver.session 2 absent", desktop_.mac().world));
  desktop_.addFault(parseFault("windowserver.session 1 before lock", desktop_.mac().world));
  desktop_.handle(client_, {Function::session, {}});
  desktop_.handle(client_, {Function::session, {}});

  EXPECT_EQ(lines(),
            "    0 ms  5000000  fault windowserver.session: windowserver.session 1 before lock\n"
            "    0 ms        -  happening lock\n"
            "    0 ms  5000000  fault windowserver.session: windowserver.session 2 absent\n");
}

TEST_F(journal_entries, says_of_a_rule_when_it_is_broken) {
  press("Odd");

  EXPECT_EQ(journalText(desktop_.mac().journal[1]),
            "    0 ms  5000000  violation I21: acted on an element before any session check");
}

TEST_F(journal_entries, shows_an_event_record_byte_for_byte) {
  desktop_.handle(client_, {Function::postRecord, {pack(0U), pack(41U), pack("\x0D\xFF\x01")}});

  EXPECT_EQ(lines(), "    0 ms  5000000  key 41/0 first LOST: malformed record: wrong length\n");
  EXPECT_EQ(journalLine(desktop_.mac().journal[1]),
            R"({"at":0.0,"kind":"key","landed":false,"number":2,)"
            R"("outcome":"malformed record: wrong length","pid":5000000,"record":"0dff01",)"
            R"("target":41,"what":"first"})");
}

TEST_F(journal_entries, says_that_a_hold_on_the_display_ends_with_its_process) {
  desktop_.handle(client_, {Function::preventDisplaySleep, {pack("agent")}});
  desktop_.leave(client_);

  EXPECT_EQ(lines(),
            "    0 ms  5000000  awake 5000000/0 display held\n"
            "    0 ms  5000000  awake 5000000/0 display released with its process\n"
            "    0 ms  5000000  process ended: gone, without a word\n");
}

class journal_of_pastes : public journal_entries {
 protected:
  journal_of_pastes()
      : journal_entries(R"(
    app Browser pid 40 frontmost
    app Notes pid 41 pastes after 20ms
        window 7 "Inbox" at 1000,100 size 200x200
            AXTextField "To" value "" at 10,10 size 100x20
            AXTextArea "Body" value "" at 10,40 size 100x20 takes files
            AXButton "Paste" at 10,70 size 50x20 press: paste
)") {}

  void paste(const char* label) {
    focusField(desktop_.mac().world.applications[1],
               *findElement(desktop_.mac().world.applications[1], element(label).id));
    press("Paste");
    desktop_.advanceTo(desktop_.mac().now + 20'000);
  }
};

TEST_F(journal_of_pastes, says_what_a_paste_did) {
  desktop_.handle(client_, {Function::clearPasteboard, {}});
  paste("To");
  desktop_.handle(client_,
                  {Function::writeFilesToPasteboard, {pack(std::vector<std::string>{"/a/b.txt"})}});
  paste("To");
  paste("Body");

  EXPECT_EQ(
      lines(),
      "    0 ms  5000000  pasteboard clear\n"
      "    0 ms  5000000  action 41/7 AXPress: pressed AXButton \"Paste\", asked for a paste into "
      "AXTextField \"To\"\n"
      "   20 ms  5000000  landing 41/7 paste LOST: there is neither text nor a file on the "
      "pasteboard\n"
      "   20 ms  5000000  pasteboard write-files \"/a/b.txt\"\n"
      "   20 ms  5000000  action 41/7 AXPress: pressed AXButton \"Paste\", asked for a paste into "
      "AXTextField \"To\"\n"
      "   40 ms  5000000  landing 41/7 paste \"/a/b.txt\": pasted paths as text into AXTextField "
      "\"To\"\n"
      "   40 ms  5000000  action 41/7 AXPress: pressed AXButton \"Paste\", asked for a paste into "
      "AXTextArea \"Body\"\n"
      "   60 ms  5000000  landing 41/7 paste \"/a/b.txt\": attached files to AXTextArea "
      "\"Body\"\n");
}

}  // namespace

}  // namespace simulator
