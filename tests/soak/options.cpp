#include "tests/soak/options.h"

#include "base/numbers.h"

namespace soak {

namespace {

std::vector<std::string> piecesOf(const std::string& text) {
  std::vector<std::string> pieces(1);
  for (const char c : text) {
    if (c == ',') {
      pieces.emplace_back();
    } else {
      pieces.back() += c;
    }
  }
  return pieces;
}

class Reader {
 public:
  explicit Reader(const std::vector<std::string>& words) : words_(words) {}

  std::optional<Options> read() {
    while (next_ < words_.size() && understood_) readOption(words_[next_++]);
    if (options_.runs && options_.seconds) understood_ = false;
    if (!understood_) return std::nullopt;
    return options_;
  }

 private:
  void readOption(const std::string& option) {
    if (option == "--seed") {
      options_.seed = number();
    } else if (option == "--runs") {
      options_.runs = number();
    } else if (option == "--seconds") {
      options_.seconds = static_cast<double>(number());
    } else if (option == "--jobs") {
      options_.jobs = static_cast<std::size_t>(number());
    } else if (option == "--coverage") {
      options_.showsCoverage = true;
    } else if (option == "--first") {
      options_.stopsAtFirst = true;
    } else if (option == "--of") {
      options_.commands = piecesOf(word());
    } else if (option == "--show") {
      options_.seed = number();
      options_.shows = true;
    } else if (option == "--shrink") {
      options_.seed = number();
      options_.shrunk = word();
    } else if (option == "--replay") {
      options_.replayed = word();
    } else if (option == "--script") {
      options_.scripted = word();
    } else {
      understood_ = false;
    }
  }

  std::string word() {
    if (next_ < words_.size()) return words_[next_++];
    understood_ = false;
    return "";
  }

  std::uint64_t number() {
    const auto read = driver::parseInt64(word());
    understood_ = understood_ && read && *read >= 0;
    return understood_ ? static_cast<std::uint64_t>(*read) : 0;
  }

  const std::vector<std::string>& words_;
  std::size_t next_ = 0;
  bool understood_ = true;
  Options options_;
};

}  // namespace

std::optional<Options> readOptions(const std::vector<std::string>& words) {
  return Reader(words).read();
}

}  // namespace soak
