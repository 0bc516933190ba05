#include "simulator/companion/report.h"

#include <cstdint>
#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>
#include <string_view>

#include "base/datum.h"
#include "simulator/companion/failure.h"
#include "simulator/companion/files.h"
#include "simulator/companion/picture_changes.h"
#include "simulator/companion/record_format.h"
#include "simulator/companion/report_page.h"
#include "simulator/drawing/picture_codec.h"
#include "simulator/drawing/pictures.h"
#include "simulator/mac/json_text.h"

namespace companion {

namespace {

using nlohmann::json;

/// Bytes as text, in the alphabet of RFC 4648.
std::string base64(std::string_view bytes) {
  constexpr std::string_view digits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    std::uint32_t group = 0;
    for (std::size_t j = i; j < i + 3; ++j) {
      group = group << 8U | (j < bytes.size() ? static_cast<std::uint8_t>(bytes[j]) : 0U);
    }
    for (std::size_t j = 0; j < 4; ++j) {
      const bool isFilled = i + j <= bytes.size();
      text += isFilled ? digits[group >> (18 - 6 * j) & 0x3FU] : '=';
    }
  }
  return text;
}

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

json regionJson(const PixelPicture& picture, const Region& region) {
  return {{"height", region.height},
          {"png", base64(picture.png(region))},
          {"width", region.width},
          {"x", region.x},
          {"y", region.y}};
}

/// The picture that is kept in a file; none when there is none, or it is of no version that is
/// known.
std::optional<PixelPicture> drawn(const std::string& path) {
  try {
    const auto png = simulator::drawPng(simulator::decodedPicture(readFile(path)));
    return png ? PixelPicture::fromPng(*png) : std::nullopt;
  } catch (const Failure&) {
    return std::nullopt;
  } catch (const driver::MalformedDatum&) {
    return std::nullopt;
  }
}

/// Puts the pictures of a record together, each as what has changed since the one before.
class Pictures {
 public:
  explicit Pictures(std::string folder) : folder_(std::move(folder)) {}

  json next(json line) {
    auto picture = drawn(folder_ + "/" + line["file"].get<std::string>());
    line.erase("file");
    line["missing"] = !picture;
    line["regions"] = json::array();
    const bool isLike = picture && before_ && picture->width() == before_->width() &&
                        picture->height() == before_->height();
    line["whole"] = !isLike;
    std::vector<Region> regions;
    if (isLike) regions = changedRegions(*before_, *picture);
    if (picture && !isLike) regions = {picture->all()};
    for (const Region& region : regions) line["regions"].push_back(regionJson(*picture, region));
    before_ = std::move(picture);
    return line;
  }

 private:
  std::string folder_;
  std::optional<PixelPicture> before_;
};

/// All that the page shows.
json recordOf(const std::string& folder) {
  json record{{"end", nullptr}, {"entries", json::array()}, {"pictures", json::array()}};
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
