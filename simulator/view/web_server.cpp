#include "simulator/view/web_server.h"

#include <arpa/inet.h>
#include <microhttpd.h>
#include <netinet/in.h>

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "simulator/companion/failure.h"
#include "simulator/companion/socket.h"

namespace companion {

namespace {

constexpr unsigned int idleSecondsMax = 60;
constexpr MHD_UNSIGNED_LONG_LONG timeoutMax = 60'000;  // milliseconds
constexpr std::size_t headersLengthMax = 16U << 10U;   // bytes, of a connection

/// Takes as long whatever the first difference: nobody is to find a token by time.
bool isSame(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  unsigned int difference = 0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    difference |= static_cast<unsigned char>(a[i]) ^ static_cast<unsigned char>(b[i]);
  }
  return difference == 0;
}

std::string_view header(MHD_Connection* connection, const char* name) {
  const char* value = MHD_lookup_connection_value(connection, MHD_HEADER_KIND, name);
  return value == nullptr ? std::string_view() : value;
}

WebReply refusal(unsigned int status, std::string why) {
  return {status, "text/plain; charset=utf-8", std::move(why) + "\n"};
}

MHD_Result send(MHD_Connection* connection, const WebReply& reply) {
  MHD_Response* response = MHD_create_response_from_buffer(
      reply.body.size(), const_cast<char*>(reply.body.data()), MHD_RESPMEM_MUST_COPY);
  if (response == nullptr) return MHD_NO;
  const std::pair<const char*, const char*> headers[] = {
      {MHD_HTTP_HEADER_CONTENT_TYPE, reply.type.c_str()},
      {MHD_HTTP_HEADER_CACHE_CONTROL, "no-store"},
      {MHD_HTTP_HEADER_CONTENT_SECURITY_POLICY, reply.policy.c_str()},
      {"Cross-Origin-Opener-Policy", "same-origin"},
      {"Cross-Origin-Resource-Policy", "same-origin"},
      {"Referrer-Policy", "no-referrer"},
      {MHD_HTTP_HEADER_X_CONTENT_TYPE_OPTIONS, "nosniff"},
      {MHD_HTTP_HEADER_X_FRAME_OPTIONS, "DENY"},
  };
  for (const auto& [name, value] : headers) MHD_add_response_header(response, name, value);
  const MHD_Result result = MHD_queue_response(connection, reply.status, response);
  MHD_destroy_response(response);
  return result;
}

}  // namespace

/// A request on its way, and its reply.
struct WebServer::Exchange {
  Ticket ticket = 0;
  WebRequest request;
  std::optional<WebReply> reply;
  bool isTooLarge = false;
  bool waits = false;                    // for `reply`
  MHD_Connection* connection = nullptr;  // borrowed
};

struct WebServer::Hooks {
  static MHD_Result answer(void* server, MHD_Connection* connection, const char* url,
                           const char* method, const char* /*version*/, const char* data,
                           std::size_t* length, void** context) {
    auto& self = *static_cast<WebServer*>(server);
    if (*context == nullptr) {
      if (const auto refused = self.refusalOf(connection, url)) return send(connection, *refused);
      auto* made = new Exchange{++self.latest_, {method, url, ""}, {}, false, false, connection};
      made->request.path.erase(0, self.token_.size() + 2);
      self.exchanges_.emplace(made->ticket, made);
      *context = made;
      return MHD_YES;
    }
    auto& exchange = *static_cast<Exchange*>(*context);
    if (*length == 0) return static_cast<MHD_Result>(self.proceed(connection, exchange));
    const bool fits =
        !exchange.isTooLarge && exchange.request.body.size() + *length <= bodyLengthMax;
    if (fits) exchange.request.body.append(data, *length);
    exchange.isTooLarge = !fits;
    *length = 0;
    return MHD_YES;
  }

  static void completed(void* server, MHD_Connection* /*connection*/, void** context,
                        MHD_RequestTerminationCode /*how*/) {
    const std::unique_ptr<Exchange> exchange(static_cast<Exchange*>(*context));
    *context = nullptr;
    if (exchange) static_cast<WebServer*>(server)->exchanges_.erase(exchange->ticket);
  }
};

WebServer::WebServer(std::uint16_t port, Handler handler)
    : handler_(std::move(handler)), token_(randomDigits()) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  daemon_.reset(MHD_start_daemon(MHD_USE_EPOLL | MHD_ALLOW_SUSPEND_RESUME, port, nullptr, nullptr,
                                 Hooks::answer, this, MHD_OPTION_SOCK_ADDR,
                                 reinterpret_cast<sockaddr*>(&address),                 //
                                 MHD_OPTION_NOTIFY_COMPLETED, Hooks::completed, this,   //
                                 MHD_OPTION_CONNECTION_LIMIT, connectionsMax,           //
                                 MHD_OPTION_CONNECTION_MEMORY_LIMIT, headersLengthMax,  //
                                 MHD_OPTION_CONNECTION_TIMEOUT, idleSecondsMax, MHD_OPTION_END));
  if (!daemon_) throw systemFailure("cannot listen at port " + std::to_string(port));
  port_ = MHD_get_daemon_info(daemon_.get(), MHD_DAEMON_INFO_BIND_PORT)->port;
}

WebServer::~WebServer() {
  // The library stops only when nobody waits.
  std::vector<Ticket> waiting;
  for (const auto& [ticket, exchange] : exchanges_) waiting.push_back(ticket);
  for (const Ticket ticket : waiting) reply(ticket, refusal(MHD_HTTP_SERVICE_UNAVAILABLE, "ended"));
  run();
}

void WebServer::Stop::operator()(MHD_Daemon* daemon) const { MHD_stop_daemon(daemon); }

std::string WebServer::address() const {
  return "http://127.0.0.1:" + std::to_string(port_) + "/" + token_ + "/";
}

int WebServer::descriptor() const {
  return MHD_get_daemon_info(daemon_.get(), MHD_DAEMON_INFO_EPOLL_FD)->epoll_fd;
}

std::optional<int> WebServer::timeout() const {
  MHD_UNSIGNED_LONG_LONG milliseconds = 0;
  if (MHD_get_timeout(daemon_.get(), &milliseconds) != MHD_YES) return std::nullopt;
  return static_cast<int>(std::min<MHD_UNSIGNED_LONG_LONG>(milliseconds, timeoutMax));
}

unsigned int WebServer::connections() const {
  return MHD_get_daemon_info(daemon_.get(), MHD_DAEMON_INFO_CURRENT_CONNECTIONS)->num_connections;
}

/// Once there were as many connections as there may be, the library takes those that wait only in
/// the run after the one in which others ended; and its descriptor does not say that they wait.
void WebServer::run() {
  unsigned int before = 0;
  do {
    before = connections();
    MHD_run(daemon_.get());
  } while (connections() < before);
}

void WebServer::reply(Ticket ticket, WebReply reply) {
  const auto found = exchanges_.find(ticket);
  if (found == exchanges_.end() || !found->second->waits) return;
  found->second->reply = std::move(reply);
  found->second->waits = false;
  MHD_resume_connection(found->second->connection);
}

/// Why nothing is done of what is asked; none when all is well. A name of this machine that is not
/// its own address may be one that somebody else's page has given it.
std::optional<WebReply> WebServer::refusalOf(MHD_Connection* connection,
                                             const std::string& url) const {
  const std::string port = ":" + std::to_string(port_);
  const std::string_view host = header(connection, MHD_HTTP_HEADER_HOST);
  const std::string_view origin = header(connection, MHD_HTTP_HEADER_ORIGIN);
  if (host != "127.0.0.1" + port && host != "localhost" + port) {
    return refusal(MHD_HTTP_FORBIDDEN, "not a name of this Mac");
  }
  if (!origin.empty() && origin != "http://" + std::string(host)) {
    return refusal(MHD_HTTP_FORBIDDEN, "not a page of this Mac");
  }
  const bool isLongEnough = url.size() > token_.size() + 1 && url[token_.size() + 1] == '/';
  if (!isLongEnough || !isSame(std::string_view(url).substr(1, token_.size()), token_)) {
    return refusal(MHD_HTTP_NOT_FOUND, "not the address that was printed");
  }
  return std::nullopt;
}

/// The request is here whole, or its reply is.
int WebServer::proceed(MHD_Connection* connection, Exchange& exchange) {
  if (exchange.isTooLarge) {
    return send(connection, refusal(MHD_HTTP_CONTENT_TOO_LARGE, "too long"));
  }
  if (!exchange.reply) exchange.reply = handler_(exchange.request, exchange.ticket);
  if (exchange.reply) return send(connection, *exchange.reply);
  exchange.waits = true;
  MHD_suspend_connection(connection);
  return MHD_YES;
}

}  // namespace companion
