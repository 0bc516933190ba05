#include <gtest/gtest.h>

#include <chrono>

#include "mac.h"

namespace joined {
namespace {

constexpr const char* mail = R"(
app Mail pid 41 frontmost
    window 7 "Inbox" at 0,30 size 600x500
        AXButton "Send" at 10,40 size 60x20 press: append "sent" to Status; show window "Done"
        AXTextField "Search" at 80,40 size 90x20 late 700ms
        AXStaticText "Status" at 10,70 size 200x20 value ""
    window 8 "Done" at 100,100 size 200x100 closed
        AXButton "OK" at 120,120 size 60x20 press: close window
app Other pid 42
at 2500ms user click 20,45
at 4s user click 130,125
at 6s quit Mail
)";

std::string came(const char* now, const char* waited) {
  return std::string("0 {\"now\":") + now + ",\"ok\":true,\"waited\":" + waited + "}\n";
}

std::string failed(const std::string& cause) {
  return "1 {\"error\":\"" + cause + "\",\"ok\":false}\n";
}

TEST(wait, moves_virtual_time_as_far_as_it_says) {
  const ServedMac mac(mail);

  EXPECT_EQ(seen(mac.command({"wait", "500ms"})), came("500.0", "500.0"));
  EXPECT_EQ(seen(mac.command({"wait", "250us"})), came("500.25", "0.25"));
}

TEST(wait, moves_virtual_time_to_when_it_is_so) {
  const ServedMac mac(mail);

  EXPECT_EQ(seen(mac.command({"wait", "until", "Mail", "window", "Inbox"})), came("0.0", "0.0"));
  EXPECT_EQ(seen(mac.command({"wait", "until", "Mail", "shows", "sen"})), came("2500.0", "2500.0"));
  EXPECT_EQ(seen(mac.command({"wait", "until", "Mail", "value", "Status", "sent"})),
            came("2500.0", "0.0"));
  EXPECT_EQ(seen(mac.command({"wait", "until", "Mail", "element", "OK"})), came("2500.0", "0.0"));
  EXPECT_EQ(seen(mac.command({"wait", "until", "Mail", "window", "Done", "gone"})),
            came("4000.0", "1500.0"));
  EXPECT_EQ(seen(mac.command({"wait", "until", "Mail", "element", "OK", "gone"})),
            came("4000.0", "0.0"));
  EXPECT_EQ(seen(mac.command({"wait", "until", "Mail", "gone", "within", "1min"})),
            failed("'within' needs a time such as 250us, 100ms or 1.5s, not '1min'"));
  EXPECT_EQ(seen(mac.command({"wait", "until", "Mail", "gone", "within", "60s"})),
            came("6000.0", "2000.0"));
}

TEST(wait, sees_a_text_when_it_lands) {
  const ServedMac mac(mail);
  mac.driver({"ax-set-value", "Mail", "85", "45", "minutes"});

  EXPECT_EQ(seen(mac.command({"wait", "until", "Mail", "shows", "minutes"})),
            came("700.0", "500.0"));
}

TEST(wait, gives_up_in_time) {
  const ServedMac mac(mail);

  EXPECT_EQ(seen(mac.command({"wait", "until", "Mail", "shows", "sent", "within", "2s"})),
            failed("waited 2000.0 ms in vain: Mail shows sent; at last it showed \\\"Inbox\\\", "
                   "\\\"Send\\\", \\\"Search\\\", \\\"Status\\\""));
  EXPECT_EQ(seen(mac.command({"wait", "until", "Mail", "shows", "a \"word\""})),
            failed("waited 10000.0 ms in vain: Mail shows \\\"a \\\\\\\"word\\\\\\\"\\\"; at last "
                   "it had quit"));
}

/// Of a wait in vain: what there was instead.
std::string insteadOf(const ServedMac& mac, std::vector<std::string> words) {
  words.insert(words.begin(), {"wait", "until"});
  words.insert(words.end(), {"within", "1us"});
  const std::string line = seen(mac.command(words));
  const std::size_t begin = line.find("; at last ");
  return begin == line.npos ? line : line.substr(begin + 2, line.find("\",\"ok\"") - begin - 2);
}

TEST(wait, in_vain_says_what_was_there_instead) {
  const ServedMac mac(mail);

  EXPECT_EQ(
      insteadOf(mac, {"Mail", "element", "Staus"}),
      "at last it had the elements \\\"Status\\\", \\\"Inbox\\\", \\\"Send\\\", \\\"Search\\\"");
  EXPECT_EQ(insteadOf(mac, {"Mail", "value", "Status", "sent"}),
            "at last \\\"Status\\\" had \\\"\\\"");
  EXPECT_EQ(insteadOf(mac, {"Mail", "value", "Send", "sent"}), "at last \\\"Send\\\" had no value");
  EXPECT_EQ(
      insteadOf(mac, {"Mail", "value", "Staus", "sent"}),
      "at last it had the elements \\\"Status\\\", \\\"Inbox\\\", \\\"Send\\\", \\\"Search\\\"");
  EXPECT_EQ(insteadOf(mac, {"Mail", "window", "Inbox", "gone"}), "at last it was still so");
  EXPECT_EQ(insteadOf(mac, {"Mail", "gone"}), "at last it was still so");
  EXPECT_EQ(insteadOf(mac, {"Other", "shows", "x"}), "at last it showed no text");
  EXPECT_EQ(insteadOf(mac, {"Other", "window", "x"}), "at last it had no window with a title");
  EXPECT_EQ(insteadOf(mac, {"Other", "element", "x"}), "at last it had no element with a label");
}

TEST(wait, in_vain_lists_no_more_than_anybody_reads) {
  std::string rows = "app Mail pid 41 frontmost\n    window 7 \"Inbox\" at 0,30 size 600x500\n";
  rows += "        AXStaticText \"" + std::string(200, 'a') + "\" at 0,30 size 9x9\n";
  for (int row = 10; row < 60; ++row) {
    rows += "        AXRow \"row " + std::to_string(row) + "\" at 0,30 size 9x9\n";
  }
  const ServedMac mac(rows);

  const std::string line = insteadOf(mac, {"Mail", "element", "Send"});
  EXPECT_EQ(line.substr(0, line.find("row")), "at last it had the elements \\\"Inbox\\\", \\\"" +
                                                  std::string(100, 'a') + "…\\\", \\\"");
  EXPECT_EQ(line.substr(line.rfind(',')), ", \\\"row 28\\\" and 31 more");
}

TEST(wait, in_vain_shows_no_more_of_values_than_anybody_reads) {
  std::string fields = "app Mail pid 41 frontmost\n    window 7 \"Inbox\" at 0,30 size 600x500\n";
  fields +=
      "        AXTextArea \"Body\" at 0,30 size 9x9 value \"" + std::string(200, 'a') + "\"\n";
  for (int row = 0; row < 300; ++row) {
    fields += "        AXTextField \"Row\" at 0,30 size 9x9 value \"x\"\n";
  }
  const ServedMac mac(fields);

  EXPECT_EQ(insteadOf(mac, {"Mail", "value", "Body", "b"}),
            "at last \\\"Body\\\" had \\\"" + std::string(100, 'a') + "…\\\"");
  const std::string line = insteadOf(mac, {"Mail", "value", "Row", "y"});
  EXPECT_EQ(line.substr(line.rfind("x\\\"")), "x\\\" and 261 more");
}

TEST(wait, in_vain_is_in_the_journal) {
  const ServedMac mac(mail);
  mac.command({"wait", "1s"});
  mac.command({"wait", "until", "Mail", "window", "Inbox"});
  mac.command({"wait", "until", "Mail", "shows", "sent at last", "within", "500ms"});

  EXPECT_EQ(
      seen(mac.command({"journal", "--text"})),
      "0  1500 ms        -  wait until Mail shows \"sent at last\": waited 500.0 ms in vain; at "
      "last it showed \"Inbox\", \"Send\", \"Search\", \"Status\"\n");
}

TEST(wait, does_not_see_a_window_that_is_closed) {
  const ServedMac mac(mail);

  EXPECT_EQ(seen(mac.command({"wait", "until", "Mail", "window", "Done", "within", "1s"})),
            failed("waited 1000.0 ms in vain: Mail window Done; at last it had the windows "
                   "\\\"Inbox\\\""));
  EXPECT_EQ(seen(mac.command({"wait", "until", "Mail", "window", "Done", "gone"})),
            came("1000.0", "0.0"));
}

TEST(wait, sees_what_comes_at_the_last_instant) {
  const ServedMac mac(mail);

  EXPECT_EQ(seen(mac.command({"wait", "until", "Mail", "shows", "sent", "within", "2499999us"})),
            failed("waited 2499.999 ms in vain: Mail shows sent; at last it showed \\\"Inbox\\\", "
                   "\\\"Send\\\", \\\"Search\\\", \\\"Status\\\""));
  EXPECT_EQ(seen(mac.command({"wait", "until", "Mail", "shows", "sent", "within", "1us"})),
            came("2500.0", "0.001"));
}

TEST(wait, says_what_it_can_wait_for) {
  const ServedMac mac(mail);
  const std::string form =
      "\\\"wait\\\" needs a time, or until APP and one of: shows TEXT, window TITLE, element "
      "LABEL, value LABEL TEXT, each with gone behind it or not; gone alone: it has quit";

  EXPECT_EQ(seen(mac.command({"wait", "soon"})),
            failed("'wait' needs a time such as 250us, 100ms or 1.5s, not 'soon'"));
  EXPECT_EQ(seen(mac.command({"wait", "until", "Mail", "says", "hello"})), failed(form));
  EXPECT_EQ(seen(mac.command({"wait", "until", "Mail"})), failed(form));
  EXPECT_EQ(seen(mac.command({"wait", "500ms", "more"})), failed(form));
  EXPECT_EQ(seen(mac.command({"wait", "until", "Nobody", "gone"})),
            failed("there is no application \\\"Nobody\\\""));
  EXPECT_EQ(seen(mac.command({"wait", "until", "Mial", "gone"})),
            failed("there is no application \\\"Mial\\\"; did you mean 'Mail'?"));
  EXPECT_EQ(seen(mac.command({"wait", "until", "Mail", "shws", "hello"})),
            failed(form + "; did you mean 'shows'?"));
}

TEST(wait, takes_its_time_on_a_mac_in_real_time) {
  const ServedMac mac("app Mail pid 41 frontmost\nat 300ms quit Mail\n", {});
  const auto start = std::chrono::steady_clock::now();

  EXPECT_EQ(seen(mac.command({"wait", "until", "Mail", "gone"})).substr(0, 2), "0 ");
  EXPECT_EQ(seen(mac.command({"wait", "400ms"})).substr(0, 2), "0 ");

  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(400));
}

std::string hintAbout(const std::string& question) {
  return "0 STANDARD ERROR: simulated-mac: virtual time hardly passed while the same was asked 25 "
         "times: " +
         question +
         "; let time pass by \"simulated-mac wait 500ms\" or \"simulated-mac wait until APP shows "
         "TEXT\", or start the Mac by \"simulated-mac run --virtual --sleep\"\n";
}

TEST(polling, in_vain_is_told_once) {
  const Folder folder;
  const std::string ask =
      "for i in $(seq 120); do " + simulatedMacPath() + " value Mail Status > /dev/null; done";
  const Finished finished = run(
      {simulatedMacPath(), "run", "--virtual", folder.file("world", mail), "--", "sh", "-c", ask});

  EXPECT_EQ(seen(finished), hintAbout("value Mail Status"));
}

TEST(polling, where_calls_take_their_time_by_chance_is_the_same) {
  const Folder folder;
  const std::string ask =
      "for i in $(seq 40); do " + driverPath() + " ax-find-text Mail Sent > /dev/null; done";
  const Finished finished = run({simulatedMacPath(), "run", "--virtual", "--seed", "7",
                                 folder.file("world", mail), "--", "sh", "-c", ask});

  EXPECT_EQ(seen(finished), hintAbout(driverPath() + " ax-find-text Mail Sent"));
}

TEST(polling, with_time_between_is_none) {
  const Folder folder;
  const std::string mac = simulatedMacPath();
  const std::string ask = "for i in $(seq 60); do " + mac + " value Mail Status > /dev/null; " +
                          mac + " wait 1ms > /dev/null; done";

  EXPECT_EQ(seen(run({mac, "run", "--virtual", folder.file("world", mail), "--", "sh", "-c", ask})),
            "0 ");
}

}  // namespace
}  // namespace joined
