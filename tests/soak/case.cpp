#include "tests/soak/case.h"

#include <array>
#include <limits>

#include "simulator/text/error.h"
#include "simulator/text/scanner.h"
#include "simulator/text/words.h"

namespace soak {

namespace {

using simulator::Token;
using simulator::Words;

constexpr std::size_t indentation = 4;

void writeLines(const std::vector<WorldLine>& lines, std::size_t depth, std::string& text) {
  for (const WorldLine& line : lines) {
    text += std::string(depth * indentation, ' ') + line.head;
    for (const std::string& option : line.options) text += " " + option;
    text += "\n";
    writeLines(line.lines, depth + 1, text);
  }
}

std::string timeText(Microseconds time) { return std::to_string(time) + "us"; }

void writeDelivery(const Delivery& delivery, std::string& text) {
  text += "    at " + timeText(delivery.at);
  switch (delivery.kind) {
    case Delivery::Kind::input:
      text += " input " + inQuotes(delivery.text);
      break;
    case Delivery::Kind::endOfInput:
      text += " end of input";
      break;
    case Delivery::Kind::signal:
      text += " signal " + std::to_string(delivery.signal);
      break;
  }
  text += "\n";
}

void writeStep(const Step& step, std::string& text) {
  text += step.beside ? "beside" : "run";
  for (const std::string& word : step.words) text += " " + inQuotes(word);
  text += "\n";
  if (step.after != 0) text += "    after " + timeText(step.after) + "\n";
  for (const auto& [name, value] : step.environment) {
    text += "    with " + name + " " + inQuotes(value) + "\n";
  }
  for (const Delivery& delivery : step.deliveries) writeDelivery(delivery, text);
}

/// The lines of a text, each as it stands but for its indentation.
struct TextLine {
  std::size_t indentation = 0;
  std::string_view text;
};

std::vector<TextLine> linesOf(std::string_view text) {
  std::vector<TextLine> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    const std::size_t start = line.find_first_not_of(' ');
    if (start == std::string_view::npos || line[start] == '#') continue;
    lines.push_back({start, line.substr(start)});
  }
  return lines;
}

std::vector<WorldLine> readLines(const std::vector<TextLine>& lines, std::size_t& next,
                                 std::size_t least) {
  std::vector<WorldLine> read;
  while (next < lines.size() && lines[next].indentation >= least) {
    const std::size_t own = lines[next].indentation;
    WorldLine line{std::string(lines[next++].text)};
    line.lines = readLines(lines, next, own + 1);
    read.push_back(std::move(line));
  }
  return read;
}

Delivery readDelivery(Words& words) {
  Delivery delivery;
  delivery.at = words.time("at");
  if (words.take("input")) {
    delivery.text = words.text("input", "a quoted text");
  } else if (words.take("end")) {
    words.expect("end", "of");
    words.expect("of", "input");
    delivery.kind = Delivery::Kind::endOfInput;
  } else {
    words.expect("at", "signal");
    delivery.kind = Delivery::Kind::signal;
    delivery.signal = static_cast<int>(words.integer("signal", "a number from 1 to 31", 1, 31));
  }
  return delivery;
}

/// A line that belongs to a step.
void readOfStep(Words& words, Step& step) {
  if (words.take("after")) {
    step.after = words.time("after");
  } else if (words.take("with")) {
    const std::string name = words.word("with", "a variable");
    step.environment[name] = words.text(name.c_str(), "a quoted text");
  } else if (words.take("at")) {
    step.deliveries.push_back(readDelivery(words));
  } else {
    words.failUnknown("after, with or at");
  }
}

std::string readFault(const simulator::Line& line) {
  std::string text;
  for (std::size_t i = 1; i < line.tokens.size(); ++i) {
    const Token& token = line.tokens[i];
    // The parentheses of a call stand at its arguments.
    const bool closes = token.kind == Token::Kind::word && token.text.starts_with(')');
    if (i > 1 && !closes && !text.ends_with('(')) text += " ";
    text += token.kind == Token::Kind::text ? inQuotes(token.text) : token.text;
  }
  return text;
}

void readSteps(std::string_view text, Case& one) {
  for (const simulator::Line& line : simulator::scanLines(text)) {
    Words words(line);
    if (line.indentation > 0 && !one.steps.empty()) {
      readOfStep(words, one.steps.back());
    } else if (words.take("fault")) {
      one.faults.push_back(readFault(line));
      continue;
    } else if (words.take("turns")) {
      one.turns = words.integer("turns", "a number", 0, std::numeric_limits<std::int64_t>::max());
    } else if (words.nextIs("run") || words.nextIs("beside")) {
      Step& step = one.steps.emplace_back();
      step.beside = words.take("beside") || !words.take("run");
      while (!words.atEnd()) step.words.push_back(words.text("run", "quoted texts"));
    } else {
      words.failUnknown("turns, fault, run or beside");
    }
    words.expectEnd();
  }
}

}  // namespace

std::string worldText(const Case& one) {
  std::string text;
  writeLines(one.world, 0, text);
  return text;
}

std::string stepsText(const Case& one) {
  std::string text;
  if (one.turns) text += "turns " + std::to_string(*one.turns) + "\n";
  for (const std::string& fault : one.faults) text += "fault " + fault + "\n";
  for (const Step& step : one.steps) writeStep(step, text);
  return text;
}

Case readCase(std::string_view world, std::string_view steps) {
  Case one;
  const std::vector<TextLine> lines = linesOf(world);
  std::size_t next = 0;
  one.world = readLines(lines, next, 0);
  readSteps(steps, one);
  return one;
}

std::string escaped(char byte) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  const auto value = static_cast<unsigned char>(byte);
  return {'\\', 'x', digits[value / 16], digits[value % 16]};
}

std::string inQuotes(std::string_view text) {
  std::string result = "\"";
  result.reserve(text.size() + 2);
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      result += '\\';
      result += c;
    } else if (c == '\n') {
      result += "\\n";
    } else if (byte < 0x20 || byte >= 0x7F) {
      result += escaped(c);
    } else {
      result += c;
    }
  }
  return result + '"';
}

std::string replaced(std::string text, std::string_view name, const std::string& replacement) {
  for (std::size_t at = text.find(name); at != std::string::npos;
       at = text.find(name, at + replacement.size())) {
    text.replace(at, name.size(), replacement);
  }
  return text;
}

}  // namespace soak
