#include "simulator/companion/import.h"

#include <iostream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <utility>

#include "simulator/companion/failure.h"
#include "simulator/companion/files.h"
#include "simulator/companion/import_page_source.h"
#include "simulator/companion/import_replies.h"
#include "simulator/mac/json_text.h"

namespace companion {

int importCommand(const std::vector<std::string>& words) {
  if (words.size() < 4 || words[words.size() - 2] != "-o" || words.back().empty()) {
    throw UsageError();
  }
  std::vector<ImportedApplication> applications;
  for (auto path = words.begin() + 1; path != words.end() - 2; ++path) {
    const std::string text = readFile(*path);
    const std::size_t first = text.find_first_not_of(" \t\r\n\xEF\xBB\xBF");
    const bool isPageSource = first != text.npos && text[first] == '<';
    auto found = isPageSource ? importPageSource(text, *path) : importReplies(text, *path);
    std::move(found.begin(), found.end(), std::back_inserter(applications));
  }
  writeFile(words.back(), worldText(applications));
  std::cout << simulator::jsonLine({{"ok", true}, {"path", simulator::textJson(words.back())}})
            << std::endl;
  return 0;
}

}  // namespace companion
