#include <cairo.h>
#include <gtest/gtest.h>

#include "mac.h"
#include "worlds.h"

namespace joined {
namespace {

constexpr const char* done = "0 {\"ok\":true}\n";

std::string session(bool locked, bool onConsole) {
  const auto word = [](bool value) { return value ? "true" : "false"; };
  return std::string("0 {\"locked\":") + word(locked) +
         ",\"ok\":true,\"onConsole\":" + word(onConsole) + "}\n";
}

std::string failure(const std::string& message) {
  return "1 {\"error\":\"" + message + "\",\"ok\":false}\n";
}

TEST(control, without_a_mac_says_so) {
  EXPECT_EQ(seen(run({simulatedMacPath(), "lock"})),
            failure("no simulated Mac to control: set SIMULATED_MAC to the socket that "
                    "\\\"simulated-mac serve WORLD\\\" prints"));
}

TEST(control, help_names_every_command) {
  const Finished help = run({simulatedMacPath(), "--help"});

  EXPECT_EQ(help.status, 0);
  EXPECT_EQ(help.errors, "");
  for (const char* name :
       {"run",   "serve",   "screenshot", "state",   "journal", "trace",  "violations",
        "fault", "advance", "user",       "lock",    "unlock",  "leave",  "return",
        "quit",  "front",   "hang",       "recover", "end",     "remove", "help"}) {
    EXPECT_NE(help.output.find(std::string("\n  ") + name), std::string::npos) << name;
  }
  EXPECT_EQ(seen(run({simulatedMacPath(), "help"})), "0 " + help.output);
}

TEST(control, help_on_a_topic_prints_its_table_without_a_mac) {
  const std::string path = simulatedMacPath();
  const std::string calls = seen(run({path, "help", "calls"}));

  EXPECT_EQ(calls.substr(0, calls.find("1       ")),
            "0 NUMBER  CALL                                ANSWER                   OUTCOMES\n"
            "0       loop.uptime                         fixed                    before\n");
  EXPECT_NE(calls.find("\n76      share.screenshot                    platform error or none   "
                       "thrown, late, before\n"),
            std::string::npos)
      << calls;
  EXPECT_EQ(
      seen(run({path, "help", "weather"})),
      failure(
          "unknown topic: weather; the topics are calls, outcomes, happenings, reactions, habits, "
          "releases"));
  EXPECT_EQ(
      seen(run({path, "help", "outcomse"})),
      failure("unknown topic: outcomse; the topics are calls, outcomes, happenings, reactions, "
              "habits, releases; did you mean 'outcomes'?"));
  EXPECT_EQ(seen(run({path, "help", "calls", "outcomes"})),
            failure("usage: simulated-mac help [TOPIC]"));
}

TEST(control, locks_and_unlocks) {
  const ServedMac mac(notes);

  EXPECT_EQ(seen(mac.command({"lock"})), done);
  EXPECT_EQ(seen(mac.driver({"session"})), session(true, true));
  EXPECT_EQ(seen(mac.command({"unlock"})), done);
  EXPECT_EQ(seen(mac.driver({"session"})), session(false, true));
}

TEST(control, leaves_the_console_and_returns) {
  const ServedMac mac(notes);

  EXPECT_EQ(seen(mac.command({"leave", "console"})), done);
  EXPECT_EQ(seen(mac.driver({"session"})), session(false, false));
  EXPECT_EQ(seen(mac.command({"return", "to", "console"})), done);
  EXPECT_EQ(seen(mac.driver({"session"})), session(false, true));
}

TEST(control, an_application_acts_by_itself) {
  const ServedMac mac(notes);

  EXPECT_EQ(seen(mac.command({"in", "Notes", "set Body \"told; \"; append \"twice\" to Body"})),
            done);
  EXPECT_EQ(seen(mac.command({"in", "Notes", "set", "Bdy", "\"x\""})),
            failure("no element of Notes is labelled \\\"Bdy\\\"; did you mean 'Body'?"));
  EXPECT_EQ(seen(mac.command({"journal", "--text"})),
            "0     0 ms        -  happening 41/0 in Notes set Body \"told; \"; append \"twice\" to "
            "Body\n");
}

TEST(control, the_user_acts) {
  const ServedMac mac(notes);

  EXPECT_EQ(seen(mac.command({"user", "move", "10,20"})), done);
  EXPECT_EQ(seen(mac.command({"user", "key", "#"})), done);
  EXPECT_EQ(seen(mac.command({"user", "key", " "})), done);
  EXPECT_EQ(seen(mac.command({"user", "key", "\""})), done);
  EXPECT_EQ(seen(mac.command({"user", "click", "1000,300"})), done);
  EXPECT_EQ(seen(mac.driver({"scene"})),
            "0 {\"bundleId\":\"\",\"ok\":true,\"pid\":42,\"x\":1000,\"y\":300}\n");
  EXPECT_EQ(seen(mac.command({"journal", "--text"})),
            R"(0     0 ms        -  happening user move 10,20
    0 ms        -  happening user key "#": Browser: nothing has the keyboard
    0 ms        -  happening user key " ": Browser: nothing has the keyboard
    0 ms        -  happening user key "\"": Browser: nothing has the keyboard
    0 ms        -  happening user click 1000,300: Mail: clicked AXWindow "Drafts", which does nothing
    0 ms  5000000  process joined driver scene
    0 ms  5000000  reply "{"bundleId":"","ok":true,"pid":42,"x":1000,"y":300}"
    0 ms  5000000  process ended: status 0
)");
}

TEST(control, what_cannot_be_told_is_refused_with_its_reason) {
  const ServedMac mac(notes);
  const std::string streams =
      "\\\": each process of a running Mac has a standard input and output of its own";

  EXPECT_EQ(seen(mac.command({"close", "input"})),
            failure("only worlds have \\\"close input" + streams));
  EXPECT_EQ(seen(mac.command({"input", "hello"})), failure("only worlds have \\\"input" + streams));
  EXPECT_EQ(seen(mac.command({"signal", "15"})),
            failure("only worlds have \\\"signal\\\": the processes of a running Mac "
                    "get their signals from the system"));
  EXPECT_EQ(seen(mac.command({"end-loop"})), done);
  EXPECT_EQ(seen(mac.command({"leave"})), failure("'leave' needs 'console' after it"));
  EXPECT_EQ(seen(mac.command({"lock", "now"})), failure("unexpected 'now' at the end of the line"));
  EXPECT_EQ(seen(mac.command({"journal", "--text"})), "0     0 ms        -  happening end-loop\n");
}

TEST(control, the_state_is_the_users_own) {
  const ServedMac mac(notes);
  const std::string untouched =
      "0 {\"clipboard\":[],\"front\":{\"name\":\"Browser\",\"pid\":40},"
      "\"keyboard\":{\"element\":\"\",\"window\":5},\"locked\":false,\"ok\":true,"
      "\"onConsole\":true,\"pointer\":{\"x\":0.0,\"y\":0.0}}\n";
  EXPECT_EQ(seen(mac.command({"state", "--user"})), untouched);

  mac.driver({"bg-click", "Notes", "130", "95"});
  EXPECT_EQ(seen(mac.command({"state", "--user"})), untouched);

  mac.command({"user", "move", "10,20.5"});
  mac.command({"lock"});
  mac.command({"leave", "console"});
  mac.command({"quit", "Browser"});
  mac.command({"quit", "Notes"});
  mac.command({"quit", "Mail"});
  EXPECT_EQ(seen(mac.command({"state", "--user"})),
            "0 "
            "{\"clipboard\":[],\"front\":null,\"keyboard\":null,\"locked\":true,\"ok\":true,"
            "\"onConsole\":false,"
            "\"pointer\":{\"x\":10.0,\"y\":20.5}}\n");
}

TEST(control, the_state_shows_what_there_is_besides) {
  const ServedMac mac(notes);
  mac.command({"user", "press", "shift"});
  mac.command({"advance", "1500us"});
  mac.command({"fault", "ax.perform", "2", "hang"});
  mac.command({"fault", "any", "1", "before", "lock"});
  mac.driver({"session"});

  EXPECT_EQ(seen(mac.command({"state"})),
            R"(0 {"clipboard":[],"covers":[],"devices":{"buttons":[],"modifiers":"shift"},)"
            R"("displayHolds":[],"faults":[{"counted":0,"fault":"ax.perform 2 hang"}],"focus":[],)"
            R"("front":{"name":"Browser","pid":40},"keyboard":{"element":"","window":5},)"
            R"("locked":true,"now":1.5,"ok":true,"onConsole":true,"pointer":{"x":0.0,"y":0.0},)"
            R"("pressed":[],"processes":[],"sharing":[],"taps":[]})"
            "\n");
  EXPECT_EQ(seen(mac.command({"state", "--frob"})), failure("unknown option: --frob"));
  EXPECT_EQ(seen(mac.command({"state", "--usr"})),
            failure("unknown option: --usr; did you mean '--user'?"));
}

constexpr const char* hiddenNotes = R"(
app Browser pid 40 frontmost
app Notes pid 41 hidden
    window 7 "Inbox" at 100,80 size 800x600
        AXGroup "Row" at 110,90 size 700x40
            AXButton "Send" at 120,90 size 60x20
        AXTextField "To" at 120,130 size 700x20 value "a\nb"
        AXMenu "More" at 120,200 size 90x40 closed
            AXMenuItem "Item" at 120,200 size 90x20
        AXRow "Line" at 120,300 size 700x20 repeat 3
)";

TEST(control, the_tree_is_the_whole_truth) {
  const ServedMac mac(hiddenNotes);
  mac.command({"hang", "Notes"});

  EXPECT_EQ(seen(mac.command({"tree", "Notes", "--text"})),
            "0 \"Notes\" pid 41, hidden, hangs\n  window 7 \"Inbox\" at 100,80 size "
            "800x600, not on screen\n    AXWindow \"Inbox\" at 100,80 size 800x600 "
            "AXRaise\n      AXGroup \"Row\" at 110,90 size 700x40\n        AXButton "
            "\"Send\" at 120,90 size 60x20 AXPress\n      AXTextField \"To\" at "
            "120,130 size 700x20 value \"a\\nb\"\n      AXMenu \"More\" at 120,200 "
            "size 90x40 AXCancel, not there\n        AXMenuItem \"Item\" at 120,200 size "
            "90x20 AXPress, not there\n      AXRow \"Line\" at 120,300 size 700x20 "
            "AXPress\n      AXRow \"Line\" at 120,300 size 700x20 AXPress (2 of them)\n");
  EXPECT_EQ(seen(mac.command({"tree", "--text"})),
            "0 \"Browser\" pid 40, front\n\"Notes\" pid 41, hidden, hangs\n  window 7 \"Inbox\" at "
            "100,80 size 800x600, not on screen\n    AXWindow \"Inbox\" at 100,80 size "
            "800x600 AXRaise\n      AXGroup \"Row\" at 110,90 size 700x40\n        "
            "AXButton \"Send\" at 120,90 size 60x20 AXPress\n      AXTextField \"To\" at "
            "120,130 size 700x20 value \"a\\nb\"\n      AXMenu \"More\" at 120,200 "
            "size 90x40 AXCancel, not there\n        AXMenuItem \"Item\" at 120,200 size "
            "90x20 AXPress, not there\n      AXRow \"Line\" at 120,300 size 700x20 "
            "AXPress\n      AXRow \"Line\" at 120,300 size 700x20 AXPress (2 of them)\n");
  EXPECT_EQ(seen(mac.command({"tree", "pid:40"})),
            "0 "
            "{\"answerDelay\":0.0,\"attributes\":{},\"bundleId\":\"\",\"failing\":{},"
            "\"focusedElement\":0,\"focusedWindow\":0,\"front\":true,\"hangs\":false,\"hidden\":"
            "false,\"kind\":\"application\",\"name\":\"Browser\",\"pid\":40,\"running\":true}\n");
  const std::string lines = mac.command({"tree", "Notes"}).output;
  EXPECT_EQ(
      lines.substr(lines.find("{\"actions\":[\"AXPress\"]")),
      "{\"actions\":[\"AXPress\"],\"attributes\":{\"AXTitle\":\"Send\"},\"depth\":2,\"element\":3,"
      "\"failing\":{},\"frame\":{\"height\":20.0,\"width\":60.0,\"x\":120.0,\"y\":90.0},\"kind\":"
      "\"element\",\"label\":\"Send\",\"parent\":2,\"pid\":41,\"role\":\"AXButton\",\"there\":true,"
      "\"window\":7}\n{\"actions\":[],\"attributes\":{\"AXDescription\":\"To\",\"AXValue\":"
      "\"a\\nb\"},\"depth\":1,\"element\":4,\"failing\":{},\"frame\":{\"height\":20.0,\"width\":"
      "700.0,\"x\":120.0,\"y\":130.0},\"kind\":\"element\",\"label\":\"To\",\"parent\":1,\"pid\":"
      "41,\"role\":\"AXTextField\",\"there\":true,\"window\":7}\n{\"actions\":[\"AXCancel\"],"
      "\"attributes\":{\"AXTitle\":\"More\"},\"depth\":1,\"element\":5,\"failing\":{},\"frame\":{"
      "\"height\":40.0,\"width\":90.0,\"x\":120.0,\"y\":200.0},\"kind\":\"element\",\"label\":"
      "\"More\",\"parent\":1,\"pid\":41,\"role\":\"AXMenu\",\"there\":false,\"window\":7}\n{"
      "\"actions\":[\"AXPress\"],\"attributes\":{\"AXTitle\":\"Item\"},\"depth\":2,\"element\":6,"
      "\"failing\":{},\"frame\":{\"height\":20.0,\"width\":90.0,\"x\":120.0,\"y\":200.0},\"kind\":"
      "\"element\",\"label\":\"Item\",\"parent\":5,\"pid\":41,\"role\":\"AXMenuItem\",\"there\":"
      "false,\"window\":7}\n{\"actions\":[\"AXPress\"],\"attributes\":{\"AXTitle\":\"Line\"},"
      "\"depth\":1,\"element\":7,\"failing\":{},\"frame\":{\"height\":20.0,\"width\":700.0,\"x\":"
      "120.0,\"y\":300.0},\"kind\":\"element\",\"label\":\"Line\",\"parent\":1,\"pid\":41,\"role\":"
      "\"AXRow\",\"there\":true,\"window\":7}\n{\"actions\":[\"AXPress\"],\"attributes\":{"
      "\"AXTitle\":\"Line\"},\"copies\":2,\"depth\":1,\"element\":1000000000,\"failing\":{},"
      "\"frame\":{\"height\":20.0,\"width\":700.0,\"x\":120.0,\"y\":300.0},\"kind\":\"element\","
      "\"label\":\"Line\",\"parent\":1,\"pid\":41,\"role\":\"AXRow\",\"there\":true,\"window\":7}"
      "\n");
  EXPECT_EQ(seen(mac.command({"tree", "Mail"})), failure("there is no application \\\"Mail\\\""));
  EXPECT_EQ(seen(mac.command({"tree", "Notes", "Mail"})), failure("unknown option: Mail"));
}

TEST(control, the_value_is_what_the_element_holds) {
  const ServedMac mac(hiddenNotes);
  mac.command({"hang", "Notes"});

  EXPECT_EQ(
      seen(mac.command({"value", "Notes", "To"})),
      "0 {\"element\":4,\"ok\":true,\"role\":\"AXTextField\",\"value\":\"a\\nb\",\"window\":7}\n");
  EXPECT_EQ(seen(mac.command({"value", "Notes", "Send"})),
            "0 {\"element\":3,\"ok\":true,\"role\":\"AXButton\",\"value\":null,\"window\":7}\n");
  EXPECT_EQ(seen(mac.command({"value", "Notes", "From"})),
            failure("no element is labelled \\\"From\\\""));
  EXPECT_EQ(seen(mac.command({"value", "Notes", "Sned"})),
            failure("no element is labelled \\\"Sned\\\"; did you mean 'Send'?"));
  EXPECT_EQ(seen(mac.command({"value", "Notes"})), failure("usage: simulated-mac value APP LABEL"));
}

TEST(control, the_value_of_one_of_several_is_not_guessed) {
  const ServedMac mac(
      "app Notes pid 41\n"
      "    window 7 \"Draft\" at 0,0 size 600x500\n"
      "        AXTextField \"To\" at 10,40 size 60x20 value \"Ada\"\n"
      "        AXTextField \"To\" at 10,70 size 60x20 value \"Grace\"\n"
      "        AXTextArea \"Draft\" at 10,100 size 60x20 value \"Dear\"\n"
      "    window 8 \"Sent\" at 0,0 size 60x50\n");

  EXPECT_EQ(seen(mac.command({"value", "Notes", "To"})),
            failure("2 elements are labelled \\\"To\\\": AXTextField at 10,40 size 60x20, "
                    "AXTextField at 10,70 size 60x20; \\\"simulated-mac tree\\\" shows their "
                    "values"));
  EXPECT_EQ(
      seen(mac.command({"value", "Notes", "Draft"})),
      "0 {\"element\":4,\"ok\":true,\"role\":\"AXTextArea\",\"value\":\"Dear\",\"window\":7}\n");
  EXPECT_EQ(seen(mac.command({"value", "Notes", "Sent"})),
            "0 {\"element\":5,\"ok\":true,\"role\":\"AXWindow\",\"value\":null,\"window\":8}\n");
}

TEST(control, the_state_shows_the_clipboard) {
  const ServedMac mac(
      "pasteboard item \"a\" \"one\" \"b\" \"\\xFF\" promises \"c\"\n"
      "pasteboard item \"a\" \"" +
      std::string(1'001, 'x') + "\"\n");
  const auto clipboard = [&] {
    const std::string output = mac.command({"state", "--user"}).output;
    return output.substr(0, output.find(",\"front\""));
  };
  EXPECT_EQ(clipboard(),
            "{\"clipboard\":[[{\"data\":\"one\",\"type\":\"a\"},{\"data\":{\"hex\":\"ff\"},"
            "\"type\":\"b\"},"
            "{\"data\":null,\"type\":\"c\"}],[{\"data\":\"1001 bytes\",\"type\":\"a\"}]]");

  mac.command({"user", "copy", "two"});
  EXPECT_EQ(clipboard(),
            "{\"clipboard\":[[{\"data\":\"two\",\"type\":\"public.utf8-plain-text\"}]]");
}

TEST(control, applications_come_and_go) {
  const ServedMac mac(notes);

  EXPECT_EQ(seen(mac.command({"front", "Notes"})), done);
  EXPECT_EQ(seen(mac.driver({"scene"})),
            "0 {\"bundleId\":\"com.example.notes\",\"ok\":true,\"pid\":41,\"x\":0,\"y\":0}\n");
  EXPECT_EQ(seen(mac.command({"hang", "pid:42"})), done);
  EXPECT_EQ(seen(mac.command({"recover", "Mail"})), done);
  EXPECT_EQ(seen(mac.command({"quit", "Mail"})), done);
  EXPECT_EQ(seen(mac.driver({"windows", "Mail"})),
            "0 {\"ok\":true,\"running\":false,\"windows\":[]}\n");
  EXPECT_EQ(seen(mac.command({"quit", "Mail"})), failure("no application 'Mail' is running"));
  EXPECT_EQ(seen(mac.command({"quit", "My Mail"})), failure("no application 'My Mail' is running"));
}

TEST(control, a_fault_strikes_the_call_it_names) {
  const ServedMac mac(notes);
  mac.command({"user", "move", "10,20"});

  EXPECT_EQ(seen(mac.command({"fault", "quartz.create-event", "2", "absent"})),
            "0 {\"fault\":\"quartz.create-event 2 absent\",\"ok\":true}\n");

  EXPECT_EQ(seen(mac.command({"journal", "--text"})),
            "0     0 ms        -  happening user move 10,20\n"
            "    0 ms        -  fault armed: quartz.create-event 2 absent\n");

  const std::string front = "0 {\"bundleId\":\"com.example.browser\",\"ok\":true,\"pid\":40,";
  EXPECT_EQ(seen(mac.driver({"scene"})), front + "\"x\":10,\"y\":20}\n");
  EXPECT_EQ(seen(mac.driver({"scene"})), front + "\"x\":0,\"y\":0}\n");
  EXPECT_EQ(seen(mac.driver({"scene"})), front + "\"x\":10,\"y\":20}\n");
}

TEST(control, a_failure_of_a_test_is_in_the_journal) {
  const ServedMac mac(notes);

  EXPECT_EQ(seen(mac.command({"failed", "no answer (agent_test.py:12)\nexpected one"})), done);
  EXPECT_EQ(seen(mac.command({"failed"})), failure("usage: simulated-mac failed TEXT"));
  EXPECT_EQ(seen(mac.command({"journal"})),
            "0 {\"at\":0.0,\"kind\":\"failure\",\"number\":1,"
            "\"text\":\"no answer (agent_test.py:12)\\nexpected one\"}\n");
}

TEST(control, a_fault_is_one_text_or_several_words) {
  const ServedMac mac(notes);

  EXPECT_EQ(seen(mac.command({"fault", "any 1 before lock"})),
            "0 {\"fault\":\"any 1 before lock\",\"ok\":true}\n");
  EXPECT_EQ(seen(mac.driver({"session"})), session(true, true));
  EXPECT_EQ(
      seen(mac.command({"fault", "private.pst", "1"})),
      failure("unknown call 'private.pst'; \\\"simulated-mac help calls\\\" lists them; did you "
              "mean 'private.post'?"));
}

TEST(control, virtual_time_passes_when_it_is_advanced) {
  const ServedMac mac(std::string(notes) + "at 100ms lock\n");

  EXPECT_EQ(seen(mac.driver({"session"})), session(false, true));
  EXPECT_EQ(seen(mac.command({"advance", "99.999ms"})), "0 {\"now\":99.999,\"ok\":true}\n");
  EXPECT_EQ(seen(mac.driver({"session"})), session(false, true));
  EXPECT_EQ(seen(mac.command({"advance", "1us"})), "0 {\"now\":100.0,\"ok\":true}\n");
  EXPECT_EQ(seen(mac.driver({"session"})), session(true, true));
  const std::string journal = mac.command({"journal", "--text"}).output;
  EXPECT_NE(journal.find("  100 ms        -  happening lock\n"), std::string::npos) << journal;
}

TEST(control, time_is_advanced_within_reason) {
  const ServedMac mac(notes);
  const ServedMac realTime(notes, {});

  EXPECT_EQ(mac.command({"advance", "1000000000s"}).status, 0);
  EXPECT_EQ(seen(mac.command({"advance", "1us"})), failure("a Mac does not run that long"));
  EXPECT_EQ(seen(mac.command({"advance", "10"})),
            failure("'advance' needs a time such as 250us, 100ms or 1.5s, not '10'"));
  EXPECT_EQ(seen(realTime.command({"advance", "1s"})),
            failure("this Mac runs in real time; only one started with --virtual can be advanced"));
}

TEST(control, the_trace_tells_every_call) {
  const ServedMac mac(notes);
  mac.driver({"permissions"});

  EXPECT_EQ(seen(mac.command({"trace", "--text"})),
            R"(0 0 ms 5000000 process.environment "CU_WINDOW" -> -
0 ms 5000000 quartz.create-source -> 1
0 ms 5000000 process.environment "ZENTROVE_COVER_GRACE" -> -
0 ms 5000000 process.environment "ZENTROVE_COVER_OPERATING" -> -
0 ms 5000000 process.environment "ZENTROVE_COVER_FACE" -> -
0 ms 5000000 process.environment "ZENTROVE_COVER_NAME" -> -
0 ms 5000000 process.full-user-name -> "Ada Lovelace"
0 ms 5000000 process.given-name "Ada Lovelace" -> ["Ada"]
0 ms 5000000 process.environment "CU_CAPTURE_PID" -> -
0 ms 5000000 ax.trusted -> true
0 ms 5000000 windowserver.capture-access -> true
0 ms 5000000 streams.write-output "{"accessibility":true,"ok":true,"screenRecording":true}" true -> true
0 ms 5000000 streams.write-output "." true -> true
0 ms 5000000 process.exit 0 -> -
)");
  const Finished trace = mac.command({"trace"});
  EXPECT_EQ(trace.output.substr(0, trace.output.find('\n')),
            R"({"answer":null,"arguments":["CU_WINDOW"],"at":0.0,"call":"process.environment",)"
            R"("faulty":false,"pid":5000000})");
  EXPECT_EQ(seen(mac.command({"trace", "--frob"})), failure("unknown option: --frob"));
}

TEST(control, a_screenshot_is_a_picture_of_the_screens) {
  const ServedMac mac(notes);
  const Folder folder;
  const std::string path = folder.path("screen.png");

  EXPECT_EQ(seen(mac.command({"screenshot", path})), "0 {\"ok\":true,\"path\":\"" + path + "\"}\n");

  cairo_surface_t* picture = cairo_image_surface_create_from_png(path.c_str());
  EXPECT_EQ(cairo_surface_status(picture), CAIRO_STATUS_SUCCESS);
  EXPECT_EQ(cairo_image_surface_get_width(picture), 2880);
  EXPECT_EQ(cairo_image_surface_get_height(picture), 1800);
  cairo_surface_destroy(picture);
}

TEST(control, a_screenshot_that_cannot_be_made_says_why) {
  const ServedMac mac(notes);
  const Folder folder;
  const std::string path = folder.path("none/screen.png");

  EXPECT_EQ(seen(mac.command({"screenshot", path})),
            failure("cannot write " + path + ": No such file or directory"));
  mac.command({"remove", "displays"});
  EXPECT_EQ(seen(mac.command({"screenshot", folder.path("screen.png")})),
            failure("no display can be seen, or they are larger than 16,384 pixels"));
}

}  // namespace
}  // namespace joined
