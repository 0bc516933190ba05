#include "simulator/companion/report.h"

#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string_view>

#include "base/datum.h"
#include "simulator/companion/base64.h"
#include "simulator/companion/failure.h"
#include "simulator/companion/files.h"
#include "simulator/companion/page_files.h"
#include "simulator/companion/picture_changes.h"
#include "simulator/companion/record_format.h"
#include "simulator/drawing/canvas.h"
#include "simulator/drawing/picture_codec.h"
#include "simulator/drawing/pictures.h"
#include "simulator/mac/json_text.h"

namespace companion {

namespace {

using nlohmann::json;

/// The lines of a record. What was being written when the Mac was killed is left out.
std::vector<json> linesOf(const std::string& folder) {
  const std::string text = readFile(folder + "/" + record_format::linesFile);
  std::vector<json> lines;
  std::istringstream stream(text.substr(0, text.rfind('\n') + 1));
  for (std::string line; std::getline(stream, line);) {
    json parsed = json::parse(line, nullptr, false);
    if (!parsed.is_object() || !parsed.contains("kind")) {
      throw Failure(folder + " has a record with a line that cannot be read");
    }
    lines.push_back(std::move(parsed));
  }
  const bool isKnown = !lines.empty() && lines.front()["kind"] == "record" &&
                       lines.front().value("version", 0) == record_format::version;
  if (!isKnown) throw Failure(folder + " has no record of a version that is known");
  return lines;
}

json regionJson(const simulator::PixelRows& picture, const Region& region) {
  return {{"height", region.height},
          {"png", base64(pngOf(picture, region))},
          {"width", region.width},
          {"x", region.x},
          {"y", region.y}};
}

/// The picture that is kept in a file; null when there is none, or it is of no version that is
/// known.
std::unique_ptr<simulator::Canvas> drawn(const std::string& path) {
  try {
    return simulator::draw(simulator::decodedPicture(readFile(path)));
  } catch (const Failure&) {
    return nullptr;
  } catch (const driver::MalformedDatum&) {
    return nullptr;
  }
}

/// Puts the pictures of a record together, each as what has changed since the one before.
class Pictures {
 public:
  explicit Pictures(std::string folder) : folder_(std::move(folder)) {}

  json next(json line) {
    auto picture = drawn(folder_ + "/" + line["file"].get<std::string>());
    line.erase("file");
    line["missing"] = picture == nullptr;
    line["whole"] = !isAsLarge(picture.get());
    line["regions"] = json::array();
    for (const Region& region : regionsOf(picture.get())) {
      line["regions"].push_back(regionJson(picture->pixels(), region));
    }
    before_ = std::move(picture);
    return line;
  }

 private:
  bool isAsLarge(const simulator::Canvas* picture) const {
    return picture != nullptr && before_ && picture->pixels().width == before_->pixels().width &&
           picture->pixels().height == before_->pixels().height;
  }

  std::vector<Region> regionsOf(const simulator::Canvas* picture) const {
    if (picture == nullptr) return {};
    const simulator::PixelRows pixels = picture->pixels();
    if (!isAsLarge(picture)) return {{0, 0, pixels.width, pixels.height}};
    return changedRegions(before_->pixels(), pixels);
  }

  std::string folder_;
  std::unique_ptr<simulator::Canvas> before_;
};

/// The world with which the Mac can go on from its end; null where there is none.
json endOf(const std::string& folder) {
  try {
    return simulator::textJson(readFile(folder + "/" + record_format::endFile));
  } catch (const Failure&) {
    return nullptr;
  }
}

/// All that the page shows.
json recordOf(const std::string& folder) {
  json record{{"end", nullptr},
              {"endWorld", endOf(folder)},
              {"entries", json::array()},
              {"pictures", json::array()}};
  Pictures pictures(folder);
  for (json& line : linesOf(folder)) {
    const std::string kind = line["kind"];
    if (kind == "record") {
      record["header"] = std::move(line);
    } else if (kind == "picture") {
      record["pictures"].push_back(pictures.next(std::move(line)));
    } else if (kind == "end") {
      record["end"] = std::move(line);
    } else {
      record["entries"].push_back(std::move(line));
    }
  }
  return record;
}

/// In a page no text of a record may look like markup.
std::string withoutMarkup(const std::string& text) {
  std::string safe;
  for (const char c : text) safe += c == '<' ? std::string("\\u003c") : std::string(1, c);
  return safe;
}

}  // namespace

std::string reportOf(const std::string& folder) {
  return reportPage(withoutMarkup(simulator::jsonLine(recordOf(folder))));
}

int reportCommand(const std::vector<std::string>& words) {
  if (words[2] != "-o") throw UsageError();
  writeFile(words[3], reportOf(words[1]));
  std::cout << simulator::jsonLine({{"ok", true}, {"path", simulator::textJson(words[3])}})
            << std::endl;
  return 0;
}

}  // namespace companion
