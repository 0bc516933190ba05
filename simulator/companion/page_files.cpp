#include "simulator/companion/page_files.h"

#include <algorithm>
#include <array>

#include "simulator/companion/base64.h"

namespace companion {

namespace {

struct File {
  std::string_view name;
  std::string_view text;
};

// The files of page/, as the build has put them into texts.
constexpr std::array files = {
#include PAGE_FILES
};

std::string_view textOf(std::string_view name) {
  const auto file =
      std::find_if(files.begin(), files.end(), [&](const File& each) { return each.name == name; });
  return file->text;
}

bool endsWith(std::string_view text, std::string_view end) {
  return text.size() > end.size() && text.substr(text.size() - end.size()) == end;
}

void fill(std::string& page, std::string_view place, std::string_view text) {
  page.replace(page.find(place), place.size(), text);
}

/// What only the page of a running Mac needs.
bool isOfLivePage(const File& file) { return file.name.substr(0, 4) == "live"; }

/// Where scripts find each other, by their names without an end: `address` says where each is.
template <class Address>
std::string importMap(bool isLive, Address address) {
  std::string map;
  for (const File& file : files) {
    if (!endsWith(file.name, ".js") || (!isLive && isOfLivePage(file))) continue;
    const std::string name(file.name.substr(0, file.name.size() - 3));
    map += (map.empty() ? "" : ",\n") + ("\"" + name + "\": \"" + address(file) + "\"");
  }
  return "{\"imports\": {\n" + map + "\n}}";
}

}  // namespace

std::optional<std::string_view> pageFile(std::string_view name) {
  const auto file =
      std::find_if(files.begin(), files.end(), [&](const File& each) { return each.name == name; });
  if (file == files.end() || endsWith(name, ".html")) return std::nullopt;
  return file->text;
}

std::string reportPage(const std::string& record) {
  std::string page(textOf("report.html"));
  fill(page, "@STYLE@", textOf("page.css"));
  fill(page, "@IMPORTS@", importMap(false, [](const File& file) {
         return "data:text/javascript;base64," + base64(file.text);
       }));
  fill(page, "@FILTER@", textOf("filter.html"));
  fill(page, "@RECORD@", record);
  return page;
}

std::string livePage(const std::string& nonce) {
  std::string page(textOf("live.html"));
  fill(page, "@NONCE@", nonce);
  fill(page, "@NONCE@", nonce);
  fill(page, "@FILTER@", textOf("filter.html"));
  fill(page, "@IMPORTS@",
       importMap(true, [](const File& file) { return "./" + std::string(file.name); }));
  return page;
}

}  // namespace companion
