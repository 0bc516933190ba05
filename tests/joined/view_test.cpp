#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <iterator>
#include <list>
#include <regex>
#include <string>

#include "mac.h"
#include "worlds.h"

/// A Mac that is shown in a browser, seen from the command line and from the wire. What the page
/// does stands in tests/browser.
namespace joined {
namespace {

/// Where a view is, as its one line says.
struct Address {
  std::string port;
  std::string path;
};

Address addressIn(const std::string& line) {
  const std::regex form(R"re(\{"ok":true,"url":"http://127\.0\.0\.1:(\d+)(/[0-9a-f]{32}/)"\})re");
  std::smatch parts;
  EXPECT_TRUE(std::regex_match(line, parts, form)) << line;
  return parts.empty() ? Address() : Address{parts[1], parts[2]};
}

/// A connection to a server of this machine. Whoever reads waits for half a minute at most.
class Connection {
 public:
  explicit Connection(const std::string& port, const char* host = "127.0.0.1")
      : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    const timeval patience = {30, 0};
    setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    sockaddr_in server{};
    server.sin_family = AF_INET;
    server.sin_port = htons(static_cast<std::uint16_t>(std::stoi(port)));
    server.sin_addr.s_addr = inet_addr(host);
    isOpen_ = connect(socket_, reinterpret_cast<sockaddr*>(&server), sizeof server) == 0;
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection() { close(socket_); }

  bool isOpen() const { return isOpen_; }

  void ask(const std::string& request) const {
    EXPECT_EQ(write(socket_, request.data(), request.size()), std::ssize(request));
  }

  /// What comes until there is this text in it, or until the server says no more.
  std::string read(const std::string& until) const {
    std::string answer;
    char bytes[4096];
    while (until.empty() || answer.find(until) == answer.npos) {
      const ssize_t count = ::read(socket_, bytes, sizeof bytes);
      if (count <= 0) break;
      answer.append(bytes, static_cast<std::size_t>(count));
    }
    return answer;
  }

 private:
  int socket_;
  bool isOpen_ = false;
};

/// All that a server sends back to one request, which ends the connection.
std::string exchanged(const std::string& port, const std::string& request) {
  const Connection connection(port);
  connection.ask(request);
  return connection.read("");
}

/// A request for the page, by another name of the server.
std::string headByName(const Address& address, const std::string& name) {
  return "GET " + address.path + " HTTP/1.1\r\nHost: " + name + "\r\nConnection: close\r\n";
}

std::string head(const Address& address, const std::string& what) {
  return what + " HTTP/1.1\r\nHost: 127.0.0.1:" + address.port + "\r\nConnection: close\r\n";
}

/// The status of an answer, and what came behind its headers.
std::string statusAndBody(const std::string& answer) {
  const std::size_t body = answer.find("\r\n\r\n");
  if (body == answer.npos) return "no answer";
  return answer.substr(9, 3) + " " + answer.substr(body + 4);
}

std::string answered(const Address& address, const std::string& words) {
  return statusAndBody(exchanged(
      address.port, head(address, "POST " + address.path + "control") +
                        "Content-Length: " + std::to_string(words.size()) + "\r\n\r\n" + words));
}

class view : public testing::Test {
 protected:
  view()
      : mac_(notes),
        process_({simulatedMacPath(), "view"}, mac_.environment()),
        address_(addressIn(process_.readLine())) {}

  ServedMac mac_;
  Process process_;
  Address address_;
};

TEST_F(view, has_a_page_and_its_scripts) {
  const std::string page =
      statusAndBody(exchanged(address_.port, head(address_, "GET " + address_.path) + "\r\n"));
  EXPECT_EQ(page.substr(0, 19), "200 <!DOCTYPE html>");
  const std::string script = statusAndBody(
      exchanged(address_.port, head(address_, "GET " + address_.path + "live.js") + "\r\n"));
  EXPECT_EQ(script.substr(0, 6), "200 //");
}

TEST_F(view, tells_the_mac_what_the_command_line_tells_it) {
  EXPECT_EQ(answered(address_, R"(["lock"])"), R"(200 {"lines":["{\"ok\":true}"],"ok":true})");
  EXPECT_EQ(answered(address_, R"(["quit","Nobody"])"),
            R"(200 {"lines":["{\"error\":\"no application 'Nobody' is running\",\"ok\":false}"],)"
            R"("ok":false})");
  EXPECT_EQ(seen(mac_.command({"journal", "--text"})), "0     0 ms        -  happening lock\n");
}

TEST_F(view, tells_what_is_new_and_has_its_picture) {
  const std::string news = answered(address_, R"(["news","0","",""])");
  EXPECT_EQ(news.substr(0, 24), "200 {\"entries\":[],\"mac\":");
  const std::size_t look = news.find("\"look\":\"") + 8;
  const std::string picture = statusAndBody(exchanged(
      address_.port,
      head(address_, "GET " + address_.path + "screens/" + news.substr(look, 16)) + "\r\n"));
  EXPECT_EQ(picture.substr(0, 8), "200 \x89PNG");
}

TEST_F(view, lets_in_who_knows_its_address_and_keeps_to_the_limits) {
  const std::string wrong = "GET /" + std::string(32, '0') + "/";
  EXPECT_EQ(statusAndBody(exchanged(address_.port, head(address_, wrong) + "\r\n")),
            "404 not the address that was printed\n");
  EXPECT_EQ(statusAndBody(exchanged(address_.port, head(address_, "GET " + address_.path) +
                                                       "Origin: http://evil.example\r\n\r\n")),
            "403 not a page of this Mac\n");
  EXPECT_EQ(answered(address_, "[\"" + std::string(70'000, 'x') + "\"]"), "413 too long\n");
}

TEST_F(view, lets_in_nobody_who_has_a_digit_wrong) {
  for (std::size_t i = 1; i <= 32; ++i) {
    std::string wrong = address_.path;
    wrong[i] = wrong[i] == '0' ? '1' : '0';
    const std::string answer =
        statusAndBody(exchanged(address_.port, head(address_, "GET " + wrong) + "\r\n"));
    EXPECT_EQ(answer.substr(0, 36), "404 not the address that was printed") << i;
  }
}

TEST_F(view, is_called_by_its_own_names_alone) {
  const std::string next = std::to_string(std::stoi(address_.port) + 1);
  const auto answer = [&](const std::string& name) {
    return statusAndBody(exchanged(address_.port, headByName(address_, name) + "\r\n"))
        .substr(0, 26);
  };
  EXPECT_EQ(answer("localhost:" + address_.port).substr(0, 4), "200 ");
  for (const std::string& name : {std::string("127.0.0.1"), "127.0.0.1:" + next,
                                  "evil.example:" + address_.port, std::string("localhost")}) {
    EXPECT_EQ(answer(name), "403 not a name of this Mac") << name;
  }
}

TEST_F(view, is_reached_at_one_address_of_this_machine) {
  EXPECT_TRUE(Connection(address_.port).isOpen());
  EXPECT_FALSE(Connection(address_.port, "127.0.0.2").isOpen());
}

TEST_F(view, answers_who_has_waited_when_all_others_go_at_once) {
  const std::string page =
      "HEAD " + address_.path + " HTTP/1.1\r\nHost: 127.0.0.1:" + address_.port;
  std::list<Connection> others;  // as many as there may be
  for (int i = 0; i < 32; ++i) {
    others.emplace_back(address_.port).ask(page + "\r\n\r\n");
    EXPECT_EQ(others.back().read("\r\n\r\n").substr(0, 12), "HTTP/1.1 200");
  }
  const Connection next(address_.port);
  next.ask(page + "\r\nConnection: close\r\n\r\n");
  // As a busy machine would have it: the view gets its turn when all have gone.
  process_.signal(SIGSTOP);
  ASSERT_EQ(waitpid(process_.pid(), nullptr, WUNTRACED), process_.pid());
  others.clear();
  process_.signal(SIGCONT);

  EXPECT_EQ(next.read("").substr(0, 12), "HTTP/1.1 200");
}

TEST_F(view, ends_with_its_mac) {
  mac_.command({"stop"});

  EXPECT_EQ(seen(process_.finish()), "0 ");
}

TEST_F(view, does_not_take_the_place_of_another) {
  EXPECT_EQ(seen(run({simulatedMacPath(), "view", address_.port}, mac_.environment())),
            "1 {\"error\":\"cannot listen at port " + address_.port +
                ": Address already in use\",\"ok\":false}\n");
}

TEST(view_of_a_served_mac, is_told_on_standard_error) {
  ServedMac mac(notes, {"--virtual", "--view"});
  mac.command({"stop"});

  const Finished finished = mac.process().finish();
  EXPECT_EQ(mac.socket().substr(0, 15), "@simulated-mac-");
  EXPECT_EQ(finished.output, "");
  addressIn(finished.errors.substr(0, finished.errors.find('\n')));
}

TEST(view_of_a_served_mac, that_cannot_be_is_no_mac) {
  const Folder files;
  const std::string world = files.file("world", notes);

  EXPECT_EQ(seen(run({simulatedMacPath(), "serve", "--view", "99999", world})),
            "1 STANDARD ERROR: {\"error\":\"99999 is no port\",\"ok\":false}\n");
}

TEST(view_of_a_run, is_a_command_like_others) {
  const Folder files;
  Process running({simulatedMacPath(), "run", "--virtual", files.file("world", notes), "--",
                   simulatedMacPath(), "view"});
  const Address address = addressIn(running.readLine());

  EXPECT_EQ(answered(address, R"(["violations"])"),
            R"(200 {"lines":["{\"ok\":true,\"violations\":[]}"],"ok":true})");
  running.signal(SIGTERM);
  EXPECT_EQ(running.finish().status, 128 + SIGTERM);
}

}  // namespace
}  // namespace joined
