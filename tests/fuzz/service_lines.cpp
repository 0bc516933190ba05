#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "tests/fuzz/request_lines.h"

/// Feeds the parsers of the capture service with request lines: service-lines [SECONDS [SEED]], for
/// a minute by default. Prints how many there were; status 1 and the line, as JSON would quote it,
/// when one is taken wrongly.
int main(int count, char** words) {
  const double seconds = count > 1 ? std::atof(words[1]) : 60;
  const auto seed = static_cast<fuzz::Random::result_type>(count > 2 ? std::atoll(words[2]) : 1);
  fuzz::Random random(seed);
  const auto end = std::chrono::steady_clock::now() +
                   std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                       std::chrono::duration<double>(seconds));
  long long lines = 0;
  while (std::chrono::steady_clock::now() < end) {
    const std::string line = fuzz::requestLine(random);
    const std::string complaint = fuzz::complaintAbout(line);
    ++lines;
    if (complaint.empty()) continue;
    std::printf("line %lld of seed %llu: %s\n%s\n", lines, static_cast<unsigned long long>(seed),
                complaint.c_str(), line.c_str());
    return 1;
  }
  std::printf("%lld lines, seed %llu\n", lines, static_cast<unsigned long long>(seed));
  return 0;
}
