#include "tests/fuzz/request_lines.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "base/utf8.h"
#include "capture/service_request.h"
#include "platform/json.h"
#include "platform/types.h"

namespace fuzz {

namespace {

constexpr std::array<std::string_view, 9> seeds = {
    R"({"op":"open","session":"notes","app":"com.example.notes"})",
    R"({"op":"open","session":"weather","app":"Browser","window":"Weather"})",
    R"({"op":"refresh","session":"notes"})",
    R"({"op":"command","session":"notes","args":["bg-focus-hold","com.example.notes"]})",
    R"({"op":"command","session":"notes","args":["bg-click","com.example.notes","340","574"]})",
    R"({"op":"command","session":"notes","args":["capture","Notes","\/tmp\/a.png"]})",
    R"({"op":"command","session":"s","args":["bg-scroll","Notes","1","2","3","4"]})",
    R"({"op":"close","session":"weather"})",
    R"({"session":"","op":"","app":"","window":"","args":[]})",
};

/// What is put in somewhere.
constexpr std::array<std::string_view, 34> tokens = {"{",
                                                     "}",
                                                     "[",
                                                     "]",
                                                     ",",
                                                     ":",
                                                     "\"",
                                                     "\\",
                                                     "null",
                                                     "true",
                                                     "-0",
                                                     "1e999",
                                                     "-1.5e-3",
                                                     "18446744073709551616",
                                                     "\"op\":",
                                                     "\"session\":",
                                                     "\"app\":",
                                                     "\"window\":",
                                                     "\"args\":",
                                                     "\"open\"",
                                                     "\"close\"",
                                                     "\"command\"",
                                                     "\"bg-click\"",
                                                     "\"capture-probe\"",
                                                     "\\u0000",
                                                     "\\ud800",
                                                     "\\udc00",
                                                     "\xC3",
                                                     "\xF4\x90\x80\x80",
                                                     "\xEF\xBB\xBF",
                                                     "\r",
                                                     " \t ",
                                                     "/*x*/",
                                                     "\xC3\xA9"};

std::size_t below(Random& random, std::size_t count) { return random() % count; }

void insertToken(Random& random, std::string& line) {
  line.insert(below(random, line.size() + 1), tokens[below(random, tokens.size())]);
}

void removePart(Random& random, std::string& line) {
  if (line.empty()) return;
  const std::size_t start = below(random, line.size());
  line.erase(start, 1 + below(random, 8));
}

void changeByte(Random& random, std::string& line) {
  if (line.empty()) return;
  line[below(random, line.size())] = static_cast<char>(random());
}

void repeatPart(Random& random, std::string& line) {
  if (line.empty()) return;
  const std::size_t start = below(random, line.size());
  const std::string part = line.substr(start, 1 + below(random, 40));
  for (std::size_t i = below(random, 3); i > 0; --i) line.insert(start, part);
}

/// Wraps the line into something, or makes it deep or long.
void wrap(Random& random, std::string& line) {
  const std::size_t depth = below(random, 16) == 0 ? below(random, 3000) : below(random, 3);
  line = std::string(depth, '[') + line + std::string(below(random, 2) == 0 ? depth : 0, ']');
  if (below(random, 64) == 0) line.append(below(random, 100'000), ' ');
}

bool isShared(const driver::SharedCommand& shared, const std::string& app) {
  const driver::CaptureCommand& command = *shared.command;
  return shared.words.size() >= 2 && shared.words[0] == command.form.name &&
         shared.words[1] == app && command.inSession != driver::InSession::refused;
}

}  // namespace

std::string requestLine(Random& random) {
  using Step = void (*)(Random&, std::string&);
  constexpr std::array<Step, 6> steps = {insertToken, insertToken, removePart,
                                         changeByte,  repeatPart,  wrap};
  std::string line(seeds[below(random, seeds.size())]);
  for (std::size_t i = below(random, 6); i > 0; --i) {
    steps[below(random, steps.size())](random, line);
  }
  for (char& c : line) {
    if (c == '\n') c = ' ';
  }
  return line;
}

std::string complaintAbout(const std::string& line) {
  std::optional<driver::ServiceRequest> request;
  try {
    request = driver::parseServiceRequest(line);
  } catch (const platform::PlatformError& error) {
    if (!driver::isUtf8(line)) return "ill-formed text was parsed";
    if (!driver::isUtf8(error.what())) return "the error is ill-formed";
    return json::parse(line) ? "an error for what can be parsed" : "";
  }
  if (!request) return "";
  if (!driver::isUtf8(line)) return "ill-formed text was taken";
  if (!driver::isUtf8(request->op + request->session)) return "a text is ill-formed";
  const std::string app = driver::appOf(*request).value_or("Notes");
  driver::scopeOf(*request);
  const auto shared = driver::sharedCommandOf(*request, app);
  if (shared && !isShared(*shared, app)) return "a command that is not shared";
  const auto written = json::write(driver::Value(request->entries));
  // A whole number that was written with an exponent is written without one.
  const auto again = json::parse(written);
  return again && json::write(*again) == written ? "" : "it reads differently";
}

std::string complaintAboutLines(const std::string& input) {
  std::string_view rest = input;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    std::string complaint = complaintAbout(std::string(rest.substr(0, end)));
    if (!complaint.empty()) return complaint;
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return "";
}

}  // namespace fuzz
