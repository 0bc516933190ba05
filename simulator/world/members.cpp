#include "simulator/world/members.h"

namespace simulator {

std::vector<std::string> wordsOfNames(std::string_view names) {
  std::vector<std::string> words(1);
  for (const char c : names) {
    if (c == ',') {
      words.emplace_back();
    } else if (c >= 'A' && c <= 'Z') {
      words.back() += {'-', static_cast<char>(c - 'A' + 'a')};
    } else if (c != ' ' && c != '\n') {
      words.back() += c;
    }
  }
  return words;
}

}  // namespace simulator
