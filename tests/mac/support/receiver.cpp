#include "support/receiver.h"

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "support/answer.h"

namespace probe {

namespace {

constexpr int startMilliseconds = 15'000;
constexpr int answerMilliseconds = 5'000;

std::string receiverPath() {
  const char* const folder = std::getenv("MAC_FACTS_FOLDER");
  return std::string(folder == nullptr ? "." : folder) + "/Receiver.app/Contents/MacOS/Receiver";
}

int millisecondsUntil(std::chrono::steady_clock::time_point end) {
  using std::chrono::milliseconds;
  const auto left = end - std::chrono::steady_clock::now();
  return std::max(0, static_cast<int>(std::chrono::duration_cast<milliseconds>(left).count()));
}

}  // namespace

Receiver::Receiver() {
  int commands[2];
  int lines[2];
  if (pipe(commands) != 0 || pipe(lines) != 0) return;
  const std::string path = receiverPath();
  signal(SIGPIPE, SIG_IGN);
  process_ = fork();
  if (process_ == 0) {
    dup2(commands[0], STDIN_FILENO);
    dup2(lines[1], STDOUT_FILENO);
    for (const int descriptor : {commands[0], commands[1], lines[0], lines[1]}) close(descriptor);
    execl(path.c_str(), path.c_str(), static_cast<char*>(nullptr));
    _exit(127);
  }
  close(commands[0]);
  close(lines[1]);
  input_ = commands[1];
  output_ = lines[0];
  const auto ready = line(startMilliseconds);
  if (!ready ||
      std::sscanf(ready->c_str(), "ready %d %u %u", &pid_, &windows_[0], &windows_[1]) != 3)
    windows_[0] = 0;
}

Receiver::~Receiver() {
  if (process_ <= 0) return;
  close(input_);
  close(output_);
  kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
}

void Receiver::send(const std::string& command) const {
  const std::string text = command + "\n";
  if (write(input_, text.data(), text.size()) < 0) std::perror("the receiver");
}

std::optional<std::string> Receiver::line(int milliseconds) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
  for (;;) {
    const std::size_t at = read_.find('\n');
    if (at != std::string::npos) {
      const std::string result = read_.substr(0, at);
      read_.erase(0, at + 1);
      return result;
    }
    pollfd waited{output_, POLLIN, 0};
    if (poll(&waited, 1, millisecondsUntil(end)) <= 0) return std::nullopt;
    char buffer[4096];
    const ssize_t count = read(output_, buffer, sizeof buffer);
    if (count <= 0) return std::nullopt;
    read_.append(buffer, static_cast<std::size_t>(count));
  }
}

// Lines that come before are kept for who asks for them.
std::optional<std::string> Receiver::lineThatBegins(const std::string& words) {
  while (const auto next = line(answerMilliseconds)) {
    if (next->rfind(words, 0) == 0) return next;
    passed_.push_back(*next);
  }
  return std::nullopt;
}

void Receiver::tell(const std::string& command) {
  send(command);
  lineThatBegins("done");
}

std::vector<std::string> Receiver::linesUntilQuiet(int milliseconds) {
  std::vector<std::string> lines;
  lines.swap(passed_);
  while (const auto next = line(milliseconds)) lines.push_back(*next);
  return lines;
}

Receiver::State Receiver::state() {
  send("state");
  State state;
  int active = 0;
  const auto told = lineThatBegins("state ");
  if (told) std::sscanf(told->c_str(), "state %u %d", &state.keyWindow, &active);
  state.active = active != 0;
  return state;
}

long long countThatBegin(const std::vector<std::string>& lines, const std::string& words) {
  return std::count_if(lines.begin(), lines.end(),
                       [&](const std::string& each) { return each.rfind(words, 0) == 0; });
}

std::string jsonList(const std::vector<std::string>& lines) {
  std::string text = "[";
  for (const std::string& each : lines) {
    if (text.size() > 1) text += ", ";
    text += quoted(each);
  }
  return text + "]";
}

}  // namespace probe
