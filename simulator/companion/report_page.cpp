#include "simulator/companion/report_page.h"

#include <string_view>

namespace companion {

namespace {

// The files of page/, as the build has put them into texts.
constexpr std::string_view pageText =
#include PAGE_TEXT
    ;
constexpr std::string_view styleText =
#include STYLE_TEXT
    ;
constexpr std::string_view scriptText =
#include SCRIPT_TEXT
    ;

void fill(std::string& page, std::string_view place, std::string_view text) {
  page.replace(page.find(place), place.size(), text);
}

}  // namespace

std::string reportPage(const std::string& record) {
  std::string page(pageText);
  fill(page, "@STYLE@", styleText);
  fill(page, "@RECORD@", record);
  fill(page, "@SCRIPT@", scriptText);
  return page;
}

}  // namespace companion
