#include "tests/support/captured.h"

#include <array>
#include <cstdio>

namespace testing_support {

namespace {

std::string number(double value) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.15g", value);
  return text.data();
}

std::string position(const platform::Rect& rect) {
  return "\"x\":" + number(rect.x) + ",\"y\":" + number(rect.y);
}

std::string windowText(const CapturedWindow& window) {
  return "{\"bundle\":\"" + window.bundle + "\",\"height\":" + number(window.frame.height) +
         ",\"layer\":" + std::to_string(window.layer) + ",\"owner\":\"" + window.owner +
         "\",\"title\":\"" + window.title + "\",\"width\":" + number(window.frame.width) + "," +
         position(window.frame) + "}";
}

}  // namespace

std::string success(const Captured& captured) {
  std::string text = std::string("0 {\"active\":") + (captured.active ? "true" : "false");
  text += ",\"anchor\":{\"height\":" + number(captured.anchorFrame.height) +
          ",\"id\":" + std::to_string(captured.anchor) +
          ",\"width\":" + number(captured.anchorFrame.width) + "," +
          position(captured.anchorFrame) + "}";
  text += ",\"name\":\"" + captured.name + "\",\"ok\":true,\"otherDisplayWindows\":[";
  for (const std::string& title : captured.otherDisplayWindows) {
    text += (text.back() == '[' ? "\"" : ",\"") + title + "\"";
  }
  text += "],\"rect\":{\"height\":" + number(captured.rect.height) +
          ",\"width\":" + number(captured.rect.width) + "," + position(captured.rect) +
          "},\"running\":true,\"windows\":[";
  for (const CapturedWindow& window : captured.windows) {
    text += (text.back() == '[' ? "" : ",") + windowText(window);
  }
  return text + "]}\n";
}

}  // namespace testing_support
