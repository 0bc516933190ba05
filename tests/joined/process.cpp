#include "process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <stdexcept>
#include <utility>

#include "tests/support/seen_replies.h"

namespace joined {

namespace {

constexpr int patienceMilliseconds = 30'000;

struct Pipe {
  Pipe() {
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  }
  int ends[2];
};

std::vector<char*> pointers(const std::vector<std::string>& texts) {
  std::vector<char*> result;
  for (const std::string& text : texts) result.push_back(const_cast<char*>(text.c_str()));
  result.push_back(nullptr);
  return result;
}

// What scripts/mutants says to programs that it has made a mistake in, and the fonts of a suite.
constexpr std::array passedOn = {"MUTANT", "REACHED", "FONTCONFIG_FILE"};

std::vector<std::string> settings(const Environment& environment) {
  std::vector<std::string> result = {std::string("PATH=") + std::getenv("PATH")};
  for (const std::string name : passedOn) {
    if (const char* value = std::getenv(name.c_str())) result.push_back(name + "=" + value);
  }
  for (const auto& [name, value] : environment) result.push_back(name + "=" + value);
  return result;
}

void closeNow(int& descriptor) {
  if (descriptor >= 0) close(std::exchange(descriptor, -1));
}

/// Adds what can be read now. False at the end.
bool take(int descriptor, std::string& text) {
  std::array<char, 65536> bytes;
  const ssize_t count = read(descriptor, bytes.data(), bytes.size());
  if (count > 0) text.append(bytes.data(), static_cast<std::size_t>(count));
  return count > 0;
}

}  // namespace

std::string seen(const Finished& finished) {
  const std::string text = std::to_string(finished.status) + " " + finished.output;
  return finished.errors.empty() ? text : text + "STANDARD ERROR: " + finished.errors;
}

Process::Process(const std::vector<std::string>& command, const Environment& environment)
    : command_(command) {
  const Pipe input;
  const Pipe output;
  const Pipe errors;
  const auto variables = settings(environment);
  const auto words = pointers(command);
  const auto assignments = pointers(variables);
  pid_ = fork();
  if (pid_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    dup2(input.ends[0], STDIN_FILENO);
    dup2(output.ends[1], STDOUT_FILENO);
    dup2(errors.ends[1], STDERR_FILENO);
    // Whoever started the tests may have some ignored, as "nohup" does.
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) ::signal(number, SIG_DFL);
    execvpe(words[0], words.data(), assignments.data());
    _exit(126);
  }
  close(input.ends[0]);
  close(output.ends[1]);
  close(errors.ends[1]);
  input_ = input.ends[1];
  output_ = output.ends[0];
  errors_ = errors.ends[0];
}

Process::~Process() {
  if (pid_ > 0) {
    signal(SIGKILL);
    waitpid(pid_, nullptr, 0);
    // What was cut off by the signal is no reply.
    written_.erase(written_.rfind('\n') + 1);
    keepReplies();
  }
  closeNow(input_);
  closeNow(output_);
  closeNow(errors_);
}

/// Reads from either stream. False when both are at their end.
bool Process::readMore() {
  if (output_ < 0 && errors_ < 0) return false;
  pollfd streams[] = {{output_, POLLIN, 0}, {errors_, POLLIN, 0}};
  if (poll(streams, 2, patienceMilliseconds) <= 0) {
    signal(SIGKILL);
    finished_.errors += "(killed: it did not end)";
  }
  if (streams[0].revents != 0) {
    const std::size_t before = finished_.output.size();
    if (!take(output_, finished_.output)) closeNow(output_);
    written_.append(finished_.output, before);
  }
  if (streams[1].revents != 0 && !take(errors_, finished_.errors)) closeNow(errors_);
  return true;
}

std::string Process::readLine() {
  while (finished_.output.find('\n') == std::string::npos && output_ >= 0) readMore();
  const std::size_t end = std::min(finished_.output.find('\n'), finished_.output.size());
  std::string line = finished_.output.substr(0, end);
  finished_.output.erase(0, end + 1);
  return line;
}

bool Process::offer(const std::string& text) const {
  // Children must not inherit that it is ignored.
  const auto before = ::signal(SIGPIPE, SIG_IGN);
  const ssize_t count = ::write(input_, text.data(), text.size());
  ::signal(SIGPIPE, before);
  return count == static_cast<ssize_t>(text.size());
}

void Process::write(const std::string& text) const {
  if (!offer(text)) throw std::runtime_error("the program does not read");
}

void Process::keepReplies() const {
  const bool hasWrapper = command_.front() == asAnotherUser.front();
  const std::size_t wrapper = hasWrapper ? asAnotherUser.size() : 0;
  if (command_.at(wrapper) != DRIVER_EXECUTABLE) return;
  testing_support::keepReplies(
      {command_.begin() + static_cast<std::ptrdiff_t>(wrapper), command_.end()}, written_);
}

void Process::closeInput() { closeNow(input_); }

void Process::closeOutput() { closeNow(output_); }

void Process::signal(int number) const { kill(pid_, number); }

Finished Process::finish() {
  closeInput();
  while (readMore()) continue;
  int status = 0;
  waitpid(std::exchange(pid_, -1), &status, 0);
  finished_.status = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
  keepReplies();
  return finished_;
}

Finished run(const std::vector<std::string>& command, const Environment& environment,
             const std::string& input) {
  Process process(command, environment);
  if (!input.empty()) process.write(input);
  return process.finish();
}

}  // namespace joined
