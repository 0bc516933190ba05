#include <dirent.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "main/dispatcher.h"
#include "platform/simulated/channel.h"
#include "simulator/desktop.h"
#include "simulator/text/parse.h"

/// What a request to the capture service costs beside a bare echo through the same kind of pipes,
/// what a session takes of memory, and how often an idle service wakes. The simulated Mac is in the
/// service's own process, so that no socket is measured.
namespace {

using Clock = std::chrono::steady_clock;

constexpr int requests = 100'000;
constexpr int batch = 1'000;
constexpr int sessions = 1'000;
constexpr int idleSeconds = 5;

constexpr const char* world = R"(
display 1 1440x900 scale 2
app Browser pid 40 bundle com.example.browser chromium frontmost
    window 5 "Start" at 0,30 size 600x500
app Notes pid 41 bundle com.example.notes
    window 7 "Inbox" at 100,80 size 800x600
)";

/// A Mac inside the process: what waits for something to happen there waits for good.
class OwnMac : public platform::Channel {
 public:
  explicit OwnMac(simulator::Desktop& desktop) : desktop_(desktop) {}

  driver::Datum call(platform::Call call) override {
    std::unique_lock lock(mutex_);
    auto answer = desktop_.handle(0, call);
    while (answer.pending) never_.wait(lock);
    return std::move(answer.value);
  }
  platform::Pid ownPid() const override { return desktop_.client(0).pid; }
  void startFlow(std::function<void()> body) override { std::thread(std::move(body)).detach(); }
  void watchSignals(const std::vector<int>& /*numbers*/) override {}
  void awaitEndingSignal(const std::vector<int>& /*numbers*/,
                         std::function<void(int)> /*handler*/) override {}
  bool keepsOutput() const override { return false; }
  void exit(int status) override { _exit(status); }
  void dieBySignal(int /*signal*/) override { _exit(1); }

 private:
  simulator::Desktop& desktop_;
  std::mutex mutex_;
  std::condition_variable never_;
};

[[noreturn]] void serve(const std::string& lock) {
  simulator::Desktop desktop(simulator::parseWorld(world));
  const std::vector<std::string> words = {"driver", "capture-service", lock};
  desktop.join(words, {});
  OwnMac mac(desktop);
  simulated::setChannel(&mac);
  driver::run(words);
  _exit(0);
}

[[noreturn]] void echo(const std::string& /*lock*/) {
  std::array<char, 4096> bytes{};
  for (ssize_t count = 0; (count = read(STDIN_FILENO, bytes.data(), bytes.size())) > 0;) {
    if (write(STDOUT_FILENO, bytes.data(), static_cast<std::size_t>(count)) != count) break;
  }
  _exit(0);
}

/// A child that answers lines.
class Peer {
 public:
  Peer(void (*body)(const std::string&), const std::string& lock) {
    std::array<int, 2> in{};
    std::array<int, 2> out{};
    if (pipe2(in.data(), O_CLOEXEC) != 0 || pipe2(out.data(), O_CLOEXEC) != 0) std::abort();
    child_ = fork();
    if (child_ == 0) {
      dup2(in[0], STDIN_FILENO);
      dup2(out[1], STDOUT_FILENO);
      body(lock);
    }
    close(in[0]);
    close(out[1]);
    to_ = in[1];
    from_ = out[0];
  }
  Peer(const Peer&) = delete;
  Peer& operator=(const Peer&) = delete;
  ~Peer() {
    close(to_);
    close(from_);
    kill(child_, SIGKILL);
    waitpid(child_, nullptr, 0);
  }

  void awaitLine() {
    std::array<char, 4096> bytes{};
    for (;;) {
      const ssize_t count = read(from_, bytes.data(), bytes.size());
      if (count <= 0) std::abort();
      if (bytes[static_cast<std::size_t>(count) - 1] == '\n') return;
    }
  }

  double ask(const std::string& line) {
    const auto start = Clock::now();
    if (write(to_, line.data(), line.size()) != static_cast<ssize_t>(line.size())) std::abort();
    awaitLine();
    return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
  }

  long status(const std::string& field) const { return statusOf(child_, field); }

  /// How often its threads were put to sleep and woken.
  long switches() const {
    long sum = 0;
    const std::string folder = "/proc/" + std::to_string(child_) + "/task";
    DIR* tasks = opendir(folder.c_str());
    for (const dirent* task = readdir(tasks); task != nullptr; task = readdir(tasks)) {
      const int thread = std::atoi(task->d_name);
      if (thread > 0) sum += statusOf(thread, "voluntary_ctxt_switches:");
    }
    closedir(tasks);
    return sum;
  }

 private:
  static long statusOf(int process, const std::string& field) {
    std::ifstream file("/proc/" + std::to_string(process) + "/status");
    for (std::string word; file >> word;) {
      long value = 0;
      if (word == field && file >> value) return value;
    }
    return 0;
  }

  pid_t child_ = 0;
  int to_ = -1;
  int from_ = -1;
};

double quantile(std::vector<double>& values, double part) {
  const auto at = static_cast<std::ptrdiff_t>(part * static_cast<double>(values.size() - 1));
  std::nth_element(values.begin(), values.begin() + at, values.end());
  return values[static_cast<std::size_t>(at)];
}

void measureRequests(Peer& service, Peer& bare) {
  const std::string refresh = "{\"op\":\"refresh\",\"session\":\"0\"}\n";
  std::vector<double> served;
  std::vector<double> echoed;
  // In turn, so that the machine's moods strike both.
  while (served.size() < requests) {
    for (int i = 0; i < batch; ++i) served.push_back(service.ask(refresh));
    for (int i = 0; i < batch; ++i) echoed.push_back(bare.ask(refresh));
  }
  for (const double part : {0.5, 0.99}) {
    const double ours = quantile(served, part);
    const double theirs = quantile(echoed, part);
    std::printf("request, quantile %.2f: %.1f us, bare pipe %.1f us, ratio %.2f\n", part, ours,
                theirs, ours / theirs);
  }
}

void measureSessions(Peer& service) {
  const auto open = [&](int session) {
    service.ask("{\"op\":\"open\",\"app\":\"Notes\",\"session\":\"" + std::to_string(session) +
                "\"}\n");
  };
  open(0);
  const long before = service.status("VmRSS:");
  for (int session = 1; session <= sessions; ++session) open(session);
  const long after = service.status("VmRSS:");
  std::printf("memory: %.0f bytes a session, the simulated Mac's own included (%d sessions)\n",
              static_cast<double>(after - before) * 1024 / sessions, sessions);
}

void measureIdling(const Peer& service) {
  const long before = service.switches();
  std::this_thread::sleep_for(std::chrono::seconds(idleSeconds));
  std::printf("idle: %ld wake-ups in %d seconds\n", service.switches() - before, idleSeconds);
}

}  // namespace

int main() {
  std::string folder = "/tmp/driver-benchmark-XXXXXX";
  if (mkdtemp(folder.data()) == nullptr) return 1;
  const std::string lock = folder + "/lock";
  {
    Peer bare(echo, lock);
    Peer service(serve, lock);
    service.awaitLine();
    measureSessions(service);
    measureRequests(service, bare);
    measureIdling(service);
  }
  unlink(lock.c_str());
  rmdir(folder.c_str());
}
