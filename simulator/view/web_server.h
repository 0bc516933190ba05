#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

struct MHD_Connection;
struct MHD_Daemon;

namespace companion {

/// What a browser has asked for.
struct WebRequest {
  std::string method;
  std::string path;  // below the address, without a slash at its beginning
  std::string body;
};

struct WebReply {
  unsigned int status = 200;
  std::string type = "text/plain; charset=utf-8";
  std::string body;
  /// In place of a policy that lets a page load nothing.
  std::string policy = "default-src 'none'";
};

/// A server of HTTP for one user's browser: on the loopback interface alone, under an address that
/// cannot be guessed. Whoever asks under another one, by another name of this machine, or from a
/// page of somebody else's, is turned away. One thread, and no wait.
class WebServer {
 public:
  using Ticket = std::uint64_t;

  /// Answers at once, or later by `reply`.
  using Handler = std::function<std::optional<WebReply>(const WebRequest&, Ticket)>;

  static constexpr unsigned int connectionsMax = 32;
  static constexpr std::size_t bodyLengthMax = 64U << 10U;  // bytes

  /// Listens at a port, or at any for 0. Throws Failure.
  WebServer(std::uint16_t port, Handler handler);
  WebServer(const WebServer&) = delete;
  WebServer& operator=(const WebServer&) = delete;
  ~WebServer();

  /// Under which it is reached: http://127.0.0.1:PORT/TOKEN/.
  std::string address() const;

  /// Can be read when there is something to do, and `run` does it. It is also to be called when
  /// this time has passed, in milliseconds; none: there is no such time.
  int descriptor() const;
  std::optional<int> timeout() const;
  void run();

  /// Answers a request. One that nobody waits for any more is forgotten.
  void reply(Ticket ticket, WebReply reply);

 private:
  struct Exchange;
  struct Hooks;  // what the library calls
  struct Stop {
    void operator()(MHD_Daemon* daemon) const;
  };

  std::optional<WebReply> refusalOf(MHD_Connection* connection, const std::string& url) const;
  int proceed(MHD_Connection* connection, Exchange& exchange);
  unsigned int connections() const;  // that are open

  Handler handler_;
  std::string token_;
  std::uint16_t port_ = 0;
  Ticket latest_ = 0;
  std::map<Ticket, Exchange*> exchanges_;  // that are open
  std::unique_ptr<MHD_Daemon, Stop> daemon_;
};

}  // namespace companion
