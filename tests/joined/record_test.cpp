#include <gtest/gtest.h>
#include <sys/resource.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include "mac.h"
#include "worlds.h"

/// What a Mac keeps of what happens, and the page that is made of it.
namespace joined {
namespace {

std::string contentsOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::size_t filesIn(const std::string& folder) {
  const std::filesystem::directory_iterator files(folder);
  return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

std::size_t occurrences(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at + 1)) ++count;
  return count;
}

/// Asks again and again, for half a minute.
template <class Ask>
bool isSeenInTime(Ask ask) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  while (std::chrono::steady_clock::now() < end) {
    if (ask()) return true;
  }
  return false;
}

/// A page's pictures, with an ellipsis for what is in them.
std::string withoutPixels(std::string text) {
  const std::string key = "\"png\":\"";
  for (std::size_t at = text.find(key); at != text.npos; at = text.find(key, at + 1)) {
    const std::size_t begin = at + key.size();
    text.replace(begin, text.find('"', begin) - begin, "…");
  }
  return text;
}

class record : public testing::Test {
 protected:
  record() : world_(files_.file("world", notes)), folder_(files_.path("record")) {}

  /// A run of a command with a Mac that keeps what happens.
  Finished kept(const std::vector<std::string>& command, const std::string& option = "") const {
    std::vector<std::string> words = {simulatedMacPath(), "run", "--virtual", "--record", folder_};
    if (!option.empty()) words.push_back(option);
    words.insert(words.end(), {world_, "--"});
    words.insert(words.end(), command.begin(), command.end());
    return run(words);
  }
  Finished report(const std::string& page) const {
    return run({simulatedMacPath(), "report", folder_, "-o", page});
  }
  std::string lines() const { return contentsOf(folder_ + "/record.jsonl"); }

  Folder files_;
  std::string world_;
  std::string folder_;
};

TEST_F(record, has_the_world_the_journal_the_screens_and_an_end) {
  EXPECT_EQ(kept({driverPath(), "bg-click", "Notes", "130", "95"}).status, 0);

  const std::string text = lines();
  EXPECT_EQ(text.substr(0, text.find(",\"program\"")),
            R"({"applications":[{"name":"Browser","pid":40},{"name":"Notes","pid":41},)"
            R"({"name":"Mail","pid":42}],"kind":"record")");
  EXPECT_EQ(occurrences(text, "\"kind\":\"process\""), 2U);
  EXPECT_NE(text.find("\"outcome\":\"pressed AXButton \\\"Send\\\"\""), std::string::npos);
  EXPECT_EQ(text.substr(text.rfind("{\"at\"")),
            "{\"at\":584.0,\"kind\":\"end\",\"violations\":[]}\n");
  EXPECT_EQ(contentsOf(folder_ + "/world"), notes);
  EXPECT_EQ(occurrences(text, "\"kind\":\"picture\""), 2U);
  EXPECT_EQ(filesIn(folder_ + "/pictures"), 2U);
}

TEST_F(record, has_the_failure_of_its_command) {
  EXPECT_EQ(kept({"/bin/sh", "-c", "exit 3", "a word"}).status, 3);

  const std::string text = lines();
  EXPECT_EQ(text.substr(text.rfind("{\"at\"", text.rfind("{\"at\"") - 1)),
            "{\"at\":0.0,\"kind\":\"failure\",\"number\":1,"
            "\"text\":\"the command ended with status 3: /bin/sh -c 'exit 3' 'a word'\"}\n"
            "{\"at\":0.0,\"kind\":\"end\",\"violations\":[]}\n");
}

TEST_F(record, has_a_world_that_goes_on_from_its_end) {
  EXPECT_EQ(kept({driverPath(), "bg-click", "Notes", "130", "95"}).status, 0);
  const ServedMac after(contentsOf(folder_ + "/end.world"));

  EXPECT_EQ(seen(after.command({"value", "Notes", "Body"})),
            "0 {\"element\":3,\"ok\":true,\"role\":\"AXTextArea\",\"value\":\"hello sent\","
            "\"window\":7}\n");
  const std::string page = files_.path("report.html");
  EXPECT_EQ(report(page).status, 0);
  EXPECT_NE(contentsOf(page).find("\"endWorld\":\"# A Mac that has run before"), std::string::npos);
}

TEST_F(record, keeps_a_look_once_however_often_it_is_seen) {
  const std::string back = "\"$0\" user move 1,1; \"$0\" user move 0,0; \"$0\" user move 1,1";
  EXPECT_EQ(kept({"/bin/sh", "-c", back, simulatedMacPath()}).status, 0);

  EXPECT_EQ(occurrences(lines(), "\"kind\":\"picture\""), 4U);
  EXPECT_EQ(filesIn(folder_ + "/pictures"), 2U);
}

TEST_F(record, has_no_screens_when_none_are_wanted) {
  EXPECT_EQ(kept({driverPath(), "session"}, "--no-pictures").status, 0);

  EXPECT_EQ(occurrences(lines(), "\"kind\":\"picture\""), 0U);
  EXPECT_EQ(filesIn(folder_ + "/pictures"), 0U);
}

TEST_F(record, keeps_the_seed_that_was_told_in_place_of_the_worlds) {
  EXPECT_EQ(seen(run({simulatedMacPath(), "run", "--virtual", "--seed", "7", "--record", folder_,
                      world_, "--", "/bin/true"})),
            "0 ");

  EXPECT_NE(lines().find("\"seed\":7,\"time\":\"virtual\""), std::string::npos) << lines();
}

TEST_F(record, is_not_written_over) {
  EXPECT_EQ(kept({driverPath(), "session"}).status, 0);
  const std::string before = lines();

  EXPECT_EQ(seen(kept({driverPath(), "session"})),
            "1 {\"error\":\"" + folder_ +
                " has a record already; remove it, or name another folder\",\"ok\":false}\n");
  EXPECT_EQ(lines(), before);
}

TEST_F(record, has_what_was_acknowledged_when_the_mac_is_killed) {
  ServedMac mac(notes, {"--virtual", "--record", folder_});
  EXPECT_EQ(mac.driver({"bg-click", "Notes", "130", "95"}).status, 0);
  mac.command({"lock"});
  mac.process().signal(SIGKILL);
  mac.process().finish();

  EXPECT_NE(lines().find("\"kind\":\"reply\""), std::string::npos);
  EXPECT_NE(lines().find("\"what\":\"lock\""), std::string::npos);
  EXPECT_EQ(lines().find("\"kind\":\"end\""), std::string::npos);
  EXPECT_EQ(report(files_.path("report.html")).status, 0);
}

TEST_F(record, has_what_was_asked_before_it_is_answered) {
  ServedMac mac(notes, {"--virtual", "--record", folder_, "--no-pictures"});
  // The system ends the Mac as soon as it writes more.
  const rlimit full = {lines().size(), lines().size()};
  ASSERT_EQ(prlimit(mac.process().pid(), RLIMIT_FSIZE, &full, nullptr), 0);

  EXPECT_EQ(seen(mac.command({"lock"})),
            "1 {\"error\":\"the simulated Mac at " + mac.socket() + " has gone\",\"ok\":false}\n");
}

TEST_F(record, says_at_its_end_what_was_left_behind) {
  const ServedMac mac(notes, {"--virtual", "--record", folder_});
  mac.command({"clock", "stop"});
  Process click(driverCommand({"bg-click", "Notes", "130", "95"}), mac.environment());
  EXPECT_TRUE(isSeenInTime(
      [&] { return mac.command({"state"}).output.find("\"focus\":[]") == std::string::npos; }));
  click.signal(SIGKILL);
  click.finish();
  EXPECT_TRUE(isSeenInTime(
      [&] { return mac.command({"state"}).output.find("\"processes\":[]") != std::string::npos; }));
  mac.command({"stop"});

  const std::string text = lines();
  EXPECT_EQ(
      text.substr(text.rfind("{\"at\"")),
      "{\"at\":0.0,\"kind\":\"end\",\"violations\":[\"I27: focus is held in window 7 of Notes "
      "by process 5000000, which was killed\"]}\n");
}

TEST_F(record, that_was_cut_off_is_reported_as_far_as_it_goes) {
  const std::string page = files_.path("report.html");
  EXPECT_EQ(kept({driverPath(), "session"}).status, 0);
  std::ofstream(folder_ + "/record.jsonl", std::ios::app) << "{\"at\":0.0,\"ki";

  EXPECT_EQ(seen(report(page)), "0 {\"ok\":true,\"path\":\"" + page + "\"}\n");
}

TEST_F(record, ends_when_the_mac_is_stopped) {
  const ServedMac mac(notes, {"--virtual", "--record", folder_});

  EXPECT_EQ(seen(mac.command({"stop"})), "0 {\"ok\":true}\n");
  EXPECT_NE(lines().find("\"kind\":\"end\""), std::string::npos);
}

TEST_F(record, becomes_a_page_that_needs_nothing_else) {
  const std::string page = files_.path("report.html");
  EXPECT_EQ(
      kept({driverPath(), "ax-insert", "Notes", "Body", "-1", "-1", "end", "</script><b>"}).status,
      0);

  EXPECT_EQ(seen(report(page)), "0 {\"ok\":true,\"path\":\"" + page + "\"}\n");
  const std::string text = contentsOf(page);
  EXPECT_EQ(occurrences(text, "</script>"), 3U);
  EXPECT_NE(text.find("\\u003c/script>\\u003cb>"), std::string::npos);
  EXPECT_EQ(occurrences(text, "http:") + occurrences(text, "https:") + occurrences(text, "src="),
            0U);
  EXPECT_EQ(
      occurrences(text, "@RECORD@") + occurrences(text, "@STYLE@") + occurrences(text, "@IMPORTS@"),
      0U);
}

TEST_F(record, has_every_entry_on_its_page) {
  const std::string page = files_.path("report.html");
  const std::string all =
      "\"$0\" user move 1,1; \"$1\" session; \"$0\" lock; \"$0\" user move 9,9; "
      "\"$0\" fault any 1 before unlock; \"$1\" bg-click Notes 130 95";
  EXPECT_EQ(kept({"/bin/sh", "-c", all, simulatedMacPath(), driverPath()}).status, 0);
  EXPECT_EQ(report(page).status, 0);

  std::istringstream stream(lines());
  std::string entries;
  for (std::string line; std::getline(stream, line);) {
    const bool isEntry = line.find("\"kind\":\"picture\"") == line.npos &&
                         line.find("\"kind\":\"record\"") == line.npos &&
                         line.find("\"kind\":\"end\"") == line.npos;
    if (isEntry) entries += (entries.empty() ? "" : ",") + line;
  }
  EXPECT_NE(contentsOf(page).find("\"entries\":[" + entries + "],"), std::string::npos) << entries;
}

TEST_F(record, shows_on_its_page_what_has_changed_on_the_screens) {
  const std::string page = files_.path("report.html");
  EXPECT_EQ(kept({simulatedMacPath(), "user", "move", "100,100"}).status, 0);
  EXPECT_EQ(report(page).status, 0);

  // The pointer, where it was and where it is.
  const std::string text = contentsOf(page);
  const std::string pictures = text.substr(text.find("\"pictures\":["));
  const std::string shown = withoutPixels(pictures.substr(0, pictures.find("</script>")));
  EXPECT_EQ(shown, R"("pictures":[{"after":0,"at":0.0,"height":900.0,"kind":"picture","missi)"
                   R"(ng":false,"regions":[{"height":900,"png":"…","width":1440,"x":0,"y":0})"
                   R"(],"whole":true,"width":1440.0,"x":0.0,"y":0.0},{"after":1,"at":0.0,"he)"
                   R"(ight":900.0,"kind":"picture","missing":false,"regions":[{"height":20,")"
                   R"(png":"…","width":13,"x":0,"y":0},{"height":21,"png":"…","width":13,"x")"
                   R"(:99,"y":99}],"whole":false,"width":1440.0,"x":0.0,"y":0.0}]})");
}

TEST_F(record, that_is_none_or_of_another_version_is_not_reported) {
  const std::string page = files_.path("report.html");
  const auto failure = [](const std::string& message) {
    return "1 {\"error\":\"" + message + "\",\"ok\":false}\n";
  };

  EXPECT_EQ(seen(report(page)),
            failure("cannot read " + folder_ + "/record.jsonl: No such file or directory"));
  std::filesystem::create_directory(folder_);
  std::ofstream(folder_ + "/record.jsonl") << "{\"kind\":\"record\",\"version\":2}\n";
  EXPECT_EQ(seen(report(page)), failure(folder_ + " has no record of a version that is known"));
  std::ofstream(folder_ + "/record.jsonl") << "nonsense\n";
  EXPECT_EQ(seen(report(page)), failure(folder_ + " has a record with a line that cannot be read"));
  EXPECT_EQ(seen(run({simulatedMacPath(), "report", folder_, "to", page})),
            failure("usage: simulated-mac report DIR -o FILE"));
}

}  // namespace
}  // namespace joined
