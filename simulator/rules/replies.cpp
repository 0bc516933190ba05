#include "simulator/rules/replies.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "base/numbers.h"

namespace simulator {

namespace {

constexpr std::string_view titleSeparator = " \xE2\x80\x94 ";  // an em dash between spaces
constexpr const char* withoutOk = "the reply has no \"ok\"";
constexpr std::string_view hostPrefix = "[extension development host] ";

std::string variable(const Client& client, const char* name) {
  const auto found = client.environment.find(name);
  return found == client.environment.end() ? "" : found->second;
}

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

/// The bytes of the white space that the text begins with; 0 when it begins with none.
std::size_t whiteSpaceAt(std::string_view text) {
  if (text.front() == ' ' || (text.front() >= '\t' && text.front() <= '\r')) return 1;
  constexpr std::string_view longer[] = {
      "\xC2\x85",     "\xC2\xA0",     "\xE1\x9A\x80", "\xE2\x80\xA8",
      "\xE2\x80\xA9", "\xE2\x80\xAF", "\xE2\x81\x9F", "\xE3\x80\x80",
  };
  for (const std::string_view each : longer) {
    if (text.substr(0, each.size()) == each) return each.size();
  }
  // From U+2000 to U+200A.
  const bool isGeneral = text.size() >= 3 && text.substr(0, 2) == "\xE2\x80" &&
                         static_cast<unsigned char>(text[2]) <= 0x8A;
  return isGeneral ? 3 : 0;
}

std::string slashesEscaped(const std::string& text) {
  std::string escaped;
  for (const char c : text) escaped += c == '/' ? std::string("\\/") : std::string(1, c);
  return escaped;
}

/// The same for one line, without its line feed.
ReplyFacts readReplyLine(const std::string& line) {
  ReplyFacts facts;
  const auto fault = [&](const char* sentence) { facts.faults.emplace_back(sentence); };
  const auto reply = nlohmann::json::parse(line, nullptr, false);
  if (!reply.is_object()) {
    fault("the output is no JSON object");
    return facts;
  }
  if (slashesEscaped(reply.dump()) != line) fault("the reply is not in canonical form");
  const auto ok = reply.find("ok");
  if (ok == reply.end() || !ok->is_boolean()) {
    fault(withoutOk);
    return facts;
  }
  facts.ok = ok->get<bool>();
  const auto error = reply.find("error");
  const bool hasError = error != reply.end() && error->is_string();
  facts.saysWhy = hasError || reply.contains("axError");
  facts.copyLost = reply.value("copyLost", nlohmann::json()) == true;
  facts.clipboardNotRestored = reply.value("clipboardRestored", nlohmann::json()) == false;
  const auto typed = reply.find("typed");
  if (typed != reply.end() && typed->is_number_integer()) facts.typed = typed->get<std::int64_t>();
  facts.cannotWrite =
      !facts.ok && hasError && error->get<std::string>().rfind("cannot write ", 0) == 0;
  return facts;
}

}  // namespace

ReplyFacts readReply(const std::string& output) {
  if (std::count(output.begin(), output.end(), '\n') == 1 && output.back() == '\n') {
    return readReplyLine(output.substr(0, output.size() - 1));
  }
  ReplyFacts facts;
  facts.faults.emplace_back("the output is not exactly one line");
  return facts;
}

bool isLivenessRefusal(const std::string& output) {
  auto reply = nlohmann::json::parse(output, nullptr, false);
  if (!reply.is_object()) return false;
  reply.erase("copyLost");
  reply.erase("clipboardRestored");
  return slashesEscaped(reply.dump()) + "\n" == livenessRefusal;
}

bool isLongLived(std::string_view command) {
  constexpr std::string_view commands[] = {"lock-guard", "keep-awake", "watch-input",
                                           "capture-service"};
  return std::find(std::begin(commands), std::end(commands), command) != std::end(commands);
}

std::vector<std::string> lineFaults(const std::string& output) {
  std::vector<std::string> faults;
  std::size_t start = 0;
  for (std::size_t end = output.find('\n'); end != std::string::npos;
       end = output.find('\n', start)) {
    for (const std::string& fault : readReplyLine(output.substr(start, end - start)).faults) {
      // News of a watcher has no "ok".
      if (start == 0 || fault != withoutOk) faults.push_back(fault);
    }
    start = end + 1;
  }
  if (start != output.size()) faults.emplace_back("the last line is not whole");
  return faults;
}

std::optional<Pid> servicePid(const Client& client) {
  const auto pid = driver::parseInt32(variable(client, "CU_CAPTURE_PID"));
  return pid && *pid > 0 ? pid : std::nullopt;
}

bool titleInScope(const Client& client, const std::string& title) {
  const std::string scope = lowered(variable(client, "CU_WINDOW"));
  std::string lower = lowered(title);
  const bool plain = isAscii(scope);
  if (scope.empty() || title.empty() || !plain) return true;
  std::string_view rest = trimmed(lower);
  if (rest.substr(0, hostPrefix.size()) == hostPrefix) rest.remove_prefix(hostPrefix.size());
  while (true) {
    const std::size_t end = rest.find(titleSeparator);
    if (trimmed(rest.substr(0, end)) == scope) return true;
    if (end == std::string_view::npos) return false;
    rest.remove_prefix(end + titleSeparator.size());
  }
}

std::string lowered(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return text;
}

std::string squashedText(std::string_view text) {
  std::string squashed;
  bool separated = false;
  while (!text.empty()) {
    const std::size_t blank = whiteSpaceAt(text);
    if (blank > 0) {
      separated = true;
      text.remove_prefix(blank);
      continue;
    }
    if (separated && !squashed.empty()) squashed += ' ';
    separated = false;
    squashed += text.front();
    text.remove_prefix(1);
  }
  return squashed;
}

}  // namespace simulator
