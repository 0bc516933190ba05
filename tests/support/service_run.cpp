#include "tests/support/service_run.h"

#include "tests/support/temporary_folder.h"

namespace testing_support {

namespace {

std::string quoted(const std::string& text) { return "\"" + text + "\""; }

std::string pathOf(const Service& service, const TemporaryFolder& folder) {
  return service.lock.value_or(folder.path("lock"));
}

}  // namespace

Result serve(TestMac& mac, const std::vector<std::string>& lines, const Service& service) {
  const TemporaryFolder folder;
  const std::vector<std::string> commandLine = {"driver", "capture-service",
                                                pathOf(service, folder)};
  return mac.record(commandLine, service.environment, [&](std::size_t client) {
    simulator::Client& process = *mac.desktop().mac().clients[client];
    for (const std::string& line : lines) process.input += line + "\n";
    process.inputClosed = service.closesInput;
    return runDirect(mac.desktop(), client, commandLine, service.schedule);
  });
}

std::string openLine(const std::string& session, const std::string& app) {
  return R"({"op":"open","session":)" + quoted(session) + R"(,"app":)" + quoted(app) + "}";
}

std::string sessionLine(const std::string& op, const std::string& session) {
  return R"({"op":)" + quoted(op) + R"(,"session":)" + quoted(session) + "}";
}

std::string commandLine(const std::string& session, const std::string& arguments) {
  std::string list;
  for (std::size_t start = 0; start <= arguments.size();) {
    const std::size_t end = std::min(arguments.find(' ', start), arguments.size());
    list += (list.empty() ? "" : ",") + quoted(arguments.substr(start, end - start));
    start = end + 1;
  }
  return R"({"op":"command","session":)" + quoted(session) + R"(,"args":[)" + list + "]}";
}

std::string served(int status, const std::vector<std::string>& replies) {
  std::string text = std::to_string(status) + " {\"ok\":true,\"pid\":5000000}\n";
  for (const std::string& reply : replies) text += reply + "\n";
  return text;
}

std::string failedService(std::vector<std::string> replies, const std::string& message) {
  replies.push_back("{\"error\":" + quoted(message) + ",\"ok\":false}");
  return served(1, replies);
}

}  // namespace testing_support
