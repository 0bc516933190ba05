#include "tests/soak/workers.h"

#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <fstream>
#include <limits>
#include <sstream>

#include "tests/soak/apart.h"
#include "tests/soak/generate.h"
#include "tests/support/temporary_folder.h"

namespace soak {

namespace {

using Clock = std::chrono::steady_clock;

/// So many cases are played twice.
constexpr std::uint64_t repeatedOneIn = 16;

/// And so many of those a third time, by snapshots.
constexpr std::uint64_t resumedOneIn = 64;

/// What a worker tells while it works, so that it is known when it ends.
struct Progress {
  std::atomic<std::uint64_t> next;  // the seed that is being played
  std::atomic<std::uint64_t> cases;
  std::atomic<std::uint64_t> runs;
  std::atomic<std::uint64_t> simulatedMicroseconds;
};

/// Memory that this process and its children share.
class SharedProgress {
 public:
  explicit SharedProgress(std::size_t count)
      : bytes_(sizeof(std::atomic<std::uint64_t>) + count * sizeof(Progress)) {
    memory_ = mmap(nullptr, bytes_, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    firstFailure() = std::numeric_limits<std::uint64_t>::max();
  }
  SharedProgress(const SharedProgress&) = delete;
  SharedProgress& operator=(const SharedProgress&) = delete;
  ~SharedProgress() { munmap(memory_, bytes_); }

  /// The lowest seed that is known to have failed.
  std::atomic<std::uint64_t>& firstFailure() const {
    return *static_cast<std::atomic<std::uint64_t>*>(memory_);
  }

  Progress& of(std::size_t worker) {
    return reinterpret_cast<Progress*>(&firstFailure() + 1)[worker];
  }

 private:
  std::size_t bytes_;
  void* memory_ = nullptr;
};

std::string oneLine(std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

double processorSecondsOfChildren() {
  rusage usage{};
  getrusage(RUSAGE_CHILDREN, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void writeFailure(const Failure& failure, const std::string& path) {
  std::ofstream file(path, std::ios::app);
  file << failure.seed << '\t' << failure.judge << '\t' << oneLine(failure.text) << '\n';
}

std::vector<Failure> readFailures(const std::string& path) {
  std::vector<Failure> failures;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    std::istringstream parts(line);
    Failure failure;
    std::string seed;
    std::getline(parts, seed, '\t');
    failure.seed = std::stoull(seed);
    std::getline(parts, failure.judge, '\t');
    std::getline(parts, failure.text);
    failures.push_back(std::move(failure));
  }
  return failures;
}

class Workers {
 public:
  explicit Workers(const Options& options)
      : options_(options), jobs_(std::max<std::size_t>(options.jobs, 1)), progress_(jobs_) {}

  Tally play() {
    for (std::size_t worker = 0; worker < jobs_; ++worker) {
      progress_.of(worker).next = options_.seed + worker;
      start(worker);
    }
    int status = 0;
    for (pid_t pid = wait(&status); pid > 0; pid = wait(&status)) attend(pid, status);
    return tally();
  }

 private:
  void start(std::size_t worker) {
    const pid_t pid = fork();
    if (pid == 0) {
      work(worker);
      _exit(0);
    }
    workers_.emplace_back(pid, worker);
  }

  /// In the child.
  void work(std::size_t worker) {
    const testing_support::TemporaryFolder folder;
    Progress& progress = progress_.of(worker);
    for (; goesOn(progress.next); progress.next += jobs_) {
      alarm(caseSecondsMax);
      const Case one = generate(progress.next);
      if (!isChosen(one)) continue;
      const auto complaint = playOne(one, folder.path(""), progress);
      ++progress.cases;
      progress.runs += one.steps.size();
      if (complaint) {
        note({progress.next, complaint->judge, complaint->text}, worker);
      }
    }
    std::ofstream file(coverageOf(worker));
    for (const std::string& each : coverage_) file << each << '\n';
  }

  void note(const Failure& failure, std::size_t worker) {
    writeFailure(failure, failuresOf(worker));
    auto& first = progress_.firstFailure();
    std::uint64_t known = first;
    while (failure.seed < known && !first.compare_exchange_weak(known, failure.seed)) continue;
  }

  std::optional<Complaint> playOne(const Case& one, const std::string& folder, Progress& progress) {
    const auto observe = [&](const Played& played) {
      progress.simulatedMicroseconds += static_cast<std::uint64_t>(played.desktop->mac().now);
      if (options_.showsCoverage) addCoverage(one, played, coverage_);
    };
    auto complaint =
        verdict(one, folder, observe, options_.showsCoverage ? Trace::kept : Trace::none);
    if (complaint || progress.next % repeatedOneIn != 0) return complaint;
    complaint = repetition(one, folder);
    if (complaint || progress.next % resumedOneIn != 0) return complaint;
    return resumption(one, folder);
  }

  bool isChosen(const Case& one) const {
    const auto& names = options_.commands;
    return names.empty() || std::any_of(one.steps.begin(), one.steps.end(), [&](const Step& step) {
             return !step.words.empty() &&
                    std::find(names.begin(), names.end(), step.words.front()) != names.end();
           });
  }

  bool goesOn(std::uint64_t seed) const {
    if (options_.stopsAtFirst && seed > progress_.firstFailure()) return false;
    if (options_.seconds) {
      return std::chrono::duration<double>(Clock::now() - start_).count() < *options_.seconds;
    }
    return seed < options_.seed + options_.runs.value_or(1000);
  }

  /// A worker has ended: with its last seed, or in the middle of one, which is then a failing one.
  void attend(pid_t pid, int status) {
    const auto found = std::find_if(workers_.begin(), workers_.end(),
                                    [&](const auto& each) { return each.first == pid; });
    if (found == workers_.end()) return;
    const std::size_t worker = found->second;
    workers_.erase(found);
    const auto complaint = complaintOfEnd(status);
    if (!complaint) return;
    Progress& progress = progress_.of(worker);
    note({progress.next, complaint->judge, complaint->text}, worker);
    ++progress.cases;
    progress.next += jobs_;
    start(worker);
  }

  Tally tally() {
    Tally tally;
    for (std::size_t worker = 0; worker < jobs_; ++worker) {
      const Progress& progress = progress_.of(worker);
      tally.cases += progress.cases;
      tally.runs += progress.runs;
      simulated_ += progress.simulatedMicroseconds;
      for (Failure& failure : readFailures(failuresOf(worker))) {
        tally.failures.push_back(std::move(failure));
      }
    }
    for (std::size_t worker = 0; worker < jobs_; ++worker) {
      std::ifstream file(coverageOf(worker));
      for (std::string line; std::getline(file, line);) tally.coverage.insert(line);
    }
    tally.simulatedSeconds = simulated_ / 1'000'000;
    tally.processorSeconds = processorSecondsOfChildren();
    tally.seconds = std::chrono::duration<double>(Clock::now() - start_).count();
    std::sort(tally.failures.begin(), tally.failures.end(),
              [](const Failure& a, const Failure& b) { return a.seed < b.seed; });
    return tally;
  }

  std::string failuresOf(std::size_t worker) const {
    return folder_.path("failures-" + std::to_string(worker));
  }

  std::string coverageOf(std::size_t worker) const {
    return folder_.path("coverage-" + std::to_string(worker));
  }

  const Options& options_;
  std::size_t jobs_;
  SharedProgress progress_;
  Clock::time_point start_ = Clock::now();
  testing_support::TemporaryFolder folder_;
  std::vector<std::pair<pid_t, std::size_t>> workers_;  // those at work
  std::uint64_t simulated_ = 0;
  Coverage coverage_;  // of a worker
};

}  // namespace

Tally playSeeds(const Options& options) { return Workers(options).play(); }

}  // namespace soak
