#include "simulator/view/view.h"

#include <fcntl.h>
#include <poll.h>

#include <algorithm>
#include <chrono>
#include <list>
#include <nlohmann/json.hpp>
#include <optional>

#include "base/numbers.h"
#include "simulator/companion/client.h"
#include "simulator/companion/connection.h"
#include "simulator/companion/failure.h"
#include "simulator/companion/only_line.h"
#include "simulator/companion/page_files.h"
#include "simulator/companion/socket.h"
#include "simulator/mac/json_text.h"
#include "simulator/view/seen_screens.h"
#include "simulator/view/web_server.h"

namespace companion {

namespace {

using Clock = std::chrono::steady_clock;
using driver::Datum;
using nlohmann::json;

/// A page that has gone is noticed when it is answered: no question stays open for longer.
constexpr std::chrono::seconds questionMax{20};

/// The tree of a large application, or a long journal, is longer than what a Mac takes.
constexpr std::size_t answerLengthMax = std::size_t{64} << 20U;  // bytes

constexpr std::uint32_t portMax = 65'535;

constexpr const char* jsonType = "application/json";
constexpr const char* plainType = "text/plain; charset=utf-8";

/// A question to the Mac, for whoever waits for the answer.
struct Question {
  WebServer::Ticket ticket = 0;
  Connection connection;
  bool isForNews = false;
  Clock::time_point since;
};

/// A browser's window onto a Mac: what a page asks for goes to the Mac as the same requests that
/// "simulated-mac" makes, each by a connection of its own.
class View {
 public:
  View(std::string mac, std::uint16_t port)
      : mac_(std::move(mac)),
        life_(connectToMac(mac_)),
        server_(port,
                [this](const auto& request, auto ticket) { return answer(request, ticket); }) {}

  std::string address() const { return server_.address(); }

  /// Serves until the Mac has gone.
  void run() {
    while (!macHasGone_) {
      await();
      server_.run();
    }
  }

 private:
  std::optional<WebReply> answer(const WebRequest& request, WebServer::Ticket ticket);
  std::optional<WebReply> ask(const WebRequest& request, WebServer::Ticket ticket);
  void await();
  bool attend(Question& question);
  WebReply replyTo(const Question& question, const Datum& answer);
  WebReply newsFrom(const std::vector<std::string>& lines);

  std::string mac_;
  Descriptor life_;  // nothing is said there: it ends with the Mac
  WebServer server_;
  std::list<Question> questions_;
  SeenScreens screens_;
  bool macHasGone_ = false;
};

WebReply failed(unsigned int status, const std::string& why) {
  return {status, plainType, why + "\n"};
}

/// The page, whose scripts are its own files and the one list that stands in it.
WebReply page() {
  const std::string nonce = randomDigits();
  return {200, "text/html; charset=utf-8", livePage(nonce),
          "default-src 'none'; script-src 'self' 'nonce-" + nonce +
              "'; style-src 'self'; img-src 'self' data:; connect-src 'self'; base-uri 'none'; "
              "form-action 'none'; frame-ancestors 'none'"};
}

/// A part of the page, or a picture of the screens that the Mac has told of.
WebReply fileCalled(const std::string& path, SeenScreens& screens) {
  constexpr std::string_view pictures = "screens/";
  if (path.empty()) return page();
  if (path.rfind(pictures, 0) == 0) {
    const auto png = screens.png(path.substr(pictures.size()));
    if (png) return {200, "image/png", *png};
  } else if (const auto file = pageFile(path)) {
    const bool isScript = path.size() > 3 && path.substr(path.size() - 3) == ".js";
    return {200, isScript ? "text/javascript; charset=utf-8" : "text/css; charset=utf-8",
            std::string(*file)};
  }
  return failed(404, "there is nothing of this name");
}

std::optional<WebReply> View::answer(const WebRequest& request, WebServer::Ticket ticket) {
  if (request.method == "GET" || request.method == "HEAD") {
    return fileCalled(request.path, screens_);
  }
  if (request.method != "POST") return failed(405, "neither GET nor POST");
  if (request.path != "control") return failed(404, "there is nothing of this name");
  return ask(request, ticket);
}

/// The words of a request: a list of texts in JSON. None for anything else.
std::optional<std::vector<std::string>> wordsOf(const std::string& body) {
  const json words = json::parse(body, nullptr, false);
  const bool areTexts =
      words.is_array() && !words.empty() &&
      std::all_of(words.begin(), words.end(), [](const json& each) { return each.is_string(); });
  if (!areTexts) return std::nullopt;
  return words.get<std::vector<std::string>>();
}

std::optional<WebReply> View::ask(const WebRequest& request, WebServer::Ticket ticket) {
  const auto words = wordsOf(request.body);
  if (!words) return failed(400, "not a list of words");
  try {
    Descriptor socket = connectToMac(mac_);
    fcntl(socket.number(), F_SETFL, O_NONBLOCK);
    questions_.push_back({ticket, Connection(std::move(socket), answerLengthMax),
                          words->front() == "news", Clock::now()});
  } catch (const Failure& failure) {
    return failed(503, failure.what());
  }
  Datum::List message = {driver::pack("control")};
  for (const std::string& word : *words) message.push_back(driver::pack(word));
  if (questions_.back().connection.send(Datum(std::move(message)))) return std::nullopt;
  questions_.pop_back();
  return failed(503, "the Mac has gone");
}

/// Waits until there is something to do, and passes on what the Mac has answered.
void View::await() {
  std::vector<pollfd> watched = {{server_.descriptor(), POLLIN, 0}, {life_.number(), POLLIN, 0}};
  for (const Question& question : questions_) {
    const int events = POLLIN | (question.connection.hasOutput() ? POLLOUT : 0);
    watched.push_back({question.connection.descriptor(), static_cast<short>(events), 0});
  }
  int limit = server_.timeout().value_or(-1);
  if (!questions_.empty()) {
    const auto open = Clock::now() - questions_.front().since;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(questionMax - open).count();
    const int most = static_cast<int>(std::max<long>(left, 0));
    limit = limit < 0 ? most : std::min(limit, most);
  }
  poll(watched.data(), watched.size(), limit);
  macHasGone_ = watched[1].revents != 0;
  std::size_t next = 2;
  for (auto question = questions_.begin(); question != questions_.end(); ++next) {
    const bool isDone = watched[next].revents != 0 && attend(*question);
    const bool isOver = Clock::now() - question->since >= questionMax;
    if (!isDone && isOver) server_.reply(question->ticket, {204, plainType, ""});
    question = isDone || isOver ? questions_.erase(question) : std::next(question);
  }
}

/// True when the question has its reply.
bool View::attend(Question& question) {
  if (!question.connection.flush() || !question.connection.receive()) {
    server_.reply(question.ticket, failed(503, "the Mac has gone"));
    return true;
  }
  try {
    const auto answer = question.connection.next();
    if (answer) server_.reply(question.ticket, replyTo(question, *answer));
    return answer.has_value();
  } catch (const driver::MalformedDatum&) {
    server_.reply(question.ticket, failed(502, "the Mac's answer is too long, or makes no sense"));
    return true;
  }
}

WebReply View::replyTo(const Question& question, const Datum& answer) {
  const auto parts = driver::unpack<Datum::List>(answer);
  const auto isOk = driver::unpack<bool>(parts.at(0));
  const auto lines = driver::unpack<std::vector<std::string>>(parts.at(1));
  if (question.isForNews && isOk) return newsFrom(lines);
  json told = json::array();
  for (const std::string& line : lines) told.push_back(simulator::textJson(line));
  return {200, jsonType, simulator::jsonLine({{"lines", told}, {"ok", isOk}})};
}

/// How the Mac is, with the entries as they were told; the page asks for the picture by its name.
WebReply View::newsFrom(const std::vector<std::string>& lines) {
  json news = json::parse(lines.at(0));
  if (!lines.at(1).empty()) screens_.add(news["look"], lines[1]);
  std::string entries;
  for (std::size_t i = 2; i < lines.size(); ++i) entries += (i > 2 ? "," : "") + lines[i];
  const std::string summary = simulator::jsonLine(news);
  return {200, jsonType, "{\"entries\":[" + entries + "],\"mac\":" + summary + "}"};
}

}  // namespace

void viewMac(const std::string& port) {
  const auto number = driver::parseUint32(port);
  if (!number || *number > portMax) throw Failure(port + " is no port");
  View view(macFromEnvironment(), static_cast<std::uint16_t>(*number));
  printOnly(simulator::jsonLine({{"ok", true}, {"url", view.address()}}));
  view.run();
}

}  // namespace companion
