#include <gtest/gtest.h>

#include <algorithm>

#include "input/context.h"
#include "tests/support/inside.h"

namespace driver {
namespace {

using namespace testing_support;
using platform::Function;

using Calls = std::vector<std::string>;

constexpr const char* focusSignatureDesk = R"(
    app Browser pid 40 bundle com.example.browser frontmost
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600
            AXTextArea "Body" at 120,130 size 700x400 value "hello" selection 2+3 focused
            AXTextField "To" at 120,100 size 700x20 value "ada"
        window 8 "Draft" at 200,80 size 800x600
)";

std::string signatureOf(TestMac& mac) {
  return valueInside(mac, [] { return focusSignature(41); });
}

std::string signatureOf(const std::string& world, std::vector<std::string> faults = {}) {
  TestMac mac(world, std::move(faults));
  return signatureOf(mac);
}

Calls partsOf(const std::string& signature) {
  Calls parts(1);
  for (const char c : signature) {
    if (c == '|') {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  return parts;
}

bool isNumber(const std::string& text) {
  return !text.empty() &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

TEST(focusSignature, has_four_parts) {
  const Calls parts = partsOf(signatureOf(focusSignatureDesk));
  ASSERT_EQ(parts.size(), 4U);
  EXPECT_TRUE(isNumber(parts[0])) << parts[0];
  EXPECT_TRUE(isNumber(parts[1])) << parts[1];
  EXPECT_EQ(parts[2], "2:3");
  EXPECT_TRUE(isNumber(parts[3])) << parts[3];
}

TEST(focusSignature, is_the_platforms_hashes_in_decimal) {
  TestMac mac(focusSignatureDesk);
  runInside(mac, [&] {
    const ax::Value window{elementOf(mac, "Notes", "Inbox")};
    const ax::Value value{std::string("hello")};
    EXPECT_EQ(focusSignature(41), std::to_string(ax::hash(window)) + "|" +
                                      std::to_string(ax::hash(elementOf(mac, "Notes", "Body"))) +
                                      "|2:3|" + std::to_string(ax::hash(value)));
  });
}

TEST(focusSignature, is_the_same_while_nothing_changes) {
  EXPECT_EQ(signatureOf(focusSignatureDesk), signatureOf(focusSignatureDesk));
}

TEST(focusSignature, differs_when_any_part_changes) {
  TestMac mac(focusSignatureDesk);
  auto& notes = mac.desktop().mac().world.applications.at(1);
  auto& body = notes.elements.at(1);
  std::vector<std::string> signatures = {signatureOf(mac)};
  const auto expectNew = [&] {
    const std::string next = signatureOf(mac);
    EXPECT_EQ(std::count(signatures.begin(), signatures.end(), next), 0) << next;
    signatures.push_back(next);
  };
  body.attributes["AXValue"] = std::string("hellO");
  expectNew();
  body.attributes["AXSelectedTextRange"] = ax::Range{2, 2};
  expectNew();
  body.attributes["AXSelectedTextRange"] = ax::Range{1, 2};
  expectNew();
  notes.focusedElement = 3;
  expectNew();
  notes.focusedWindow = 4;
  expectNew();
  notes.focusedElement = 0;
  expectNew();
}

TEST(focusSignature, without_a_focused_element_is_the_window_alone) {
  TestMac mac(focusSignatureDesk);
  const std::string window = partsOf(signatureOf(mac))[0];
  mac.desktop().mac().world.applications.at(1).focusedElement = 0;
  EXPECT_EQ(signatureOf(mac), window);
}

TEST(focusSignature, has_a_dash_for_a_window_that_cannot_be_read) {
  TestMac mac(focusSignatureDesk);
  const Calls parts = partsOf(signatureOf(mac));
  mac.desktop().mac().world.applications.at(1).focusedWindow = 0;
  EXPECT_EQ(signatureOf(mac), "-|" + parts[1] + "|" + parts[2] + "|" + parts[3]);
  mac.desktop().mac().world.applications.at(1).focusedElement = 0;
  EXPECT_EQ(signatureOf(mac), "-");
}

TEST(focusSignature, leaves_out_a_selection_or_value_that_cannot_be_read) {
  TestMac mac(focusSignatureDesk);
  const Calls parts = partsOf(signatureOf(mac));
  auto& body = mac.desktop().mac().world.applications.at(1).elements.at(1);
  body.failing["AXValue"] = ax::Error::noValue;
  EXPECT_EQ(signatureOf(mac), parts[0] + "|" + parts[1] + "|2:3");
  body.failing["AXSelectedTextRange"] = ax::Error::attributeUnsupported;
  EXPECT_EQ(signatureOf(mac), parts[0] + "|" + parts[1]);
  body.failing.erase("AXValue");
  EXPECT_EQ(signatureOf(mac), parts[0] + "|" + parts[1] + "|" + parts[3]);
}

TEST(focusSignature, leaves_out_a_selection_that_is_no_range) {
  TestMac mac(focusSignatureDesk);
  const Calls parts = partsOf(signatureOf(mac));
  mac.desktop().mac().world.applications.at(1).elements.at(1).attributes["AXSelectedTextRange"] =
      std::string("2:3");
  EXPECT_EQ(signatureOf(mac), parts[0] + "|" + parts[1] + "|" + parts[3]);
}

TEST(focusSignature, takes_values_of_all_types) {
  for (const char* value : {"value 5", "value 0.5", "value true", "attribute AXValue opaque 7",
                            "attribute AXValue point 1,2"}) {
    const std::string world =
        "app Notes pid 41\n    window 7 \"A\" at 0,0 size 99x99\n"
        "        AXSlider \"S\" " +
        std::string(value) + " focused\n";
    EXPECT_EQ(partsOf(signatureOf(world)).size(), 3U) << value;
  }
}

TEST(focusSignature, is_a_dash_for_an_application_that_does_not_answer) {
  EXPECT_EQ(signatureOf(focusSignatureDesk,
                        {"ax.attributes 1 error -25204", "ax.attribute 1+ error -25204"}),
            "-");
  EXPECT_EQ(signatureOf("app Notes pid 41 hangs\n"), "-");
  EXPECT_EQ(signatureOf("app Other pid 50\n"), "-");
}

TEST(focusSignature, reads_each_attribute_once) {
  TestMac mac(focusSignatureDesk);
  EXPECT_EQ(runInside(mac, [] { focusSignature(41); }).calls,
            (Calls{"ax.attributes", "ax.attributes"}));
}

}  // namespace
}  // namespace driver
