#include "simulator/text/gathering.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <utility>

#include "simulator/text/call.h"
#include "simulator/text/words.h"

namespace simulator {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

bool begins(const Line& line, std::string_view word) {
  return !line.tokens.empty() && line.tokens.front().kind == Token::Kind::word &&
         line.tokens.front().text == word;
}

/// The path of a file that the one at `path` names.
std::string besides(const std::string& path, const std::string& named) {
  return (std::filesystem::path(path).parent_path() / named).lexically_normal().string();
}

/// Puts the lines of included files where they are included.
class Includer {
 public:
  Includer(const WorldFiles& files, const Complain& complain)
      : files_(files), complain_(complain) {}

  std::vector<Line> gather(std::string_view text) {
    add(text, files_.path, nullptr, 0);
    return std::move(lines_);
  }

 private:
  void add(std::string_view text, const std::string& path,
           const std::shared_ptr<const Trail>& trail, std::size_t indentation) {
    open_.push_back(path);
    if (withoutByteOrderMark(text).size() < text.size()) {
      complain_({{1, trail}, "a byte order mark stands before the text", {}, {}, {}, true});
    }
    std::vector<Line> own = scanDamagedLines(withoutByteOrderMark(text), trail);
    const std::size_t least = trail == nullptr || own.empty() ? 0 : own.front().indentation;
    for (std::size_t i = 0; i < own.size(); ++i) {
      Line& line = own[i];
      try {
        if (line.indentation < least) {
          throw WorldError({spotOf(line), "the indentation is that of no line above"});
        }
        line.indentation = line.indentation - least + indentation;
        if (begins(line, "include")) {
          include(line, i + 1 < own.size() ? &own[i + 1] : nullptr, path);
        } else {
          lines_.push_back(std::move(line));
        }
      } catch (const WorldError& error) {
        complain_(error.complaint());
      }
    }
    open_.pop_back();
  }

  void include(const Line& line, const Line* next, const std::string& path) {
    if (line.damage) throw WorldError(*line.damage);
    Words words(line);
    words.take("include");
    const std::string file = besides(path, words.text("include", aPath));
    if (std::find(open_.begin(), open_.end(), file) != open_.end()) {
      words.failAtLast("'" + file + "' includes itself");
    }
    if (!files_.read) words.failAtLast("a world that is no file can include none");
    const auto text = files_.read(file);
    if (!text) words.failAtLast("'" + file + "' cannot be read");
    words.expectEnd();
    if (next != nullptr && next->indentation > line.indentation) {
      complain_({spotOf(*next), "nothing can be in 'include'"});
    }
    add(*text, file, std::make_shared<const Trail>(Trail{file, "included", spotOf(line)}),
        line.indentation);
  }

  const WorldFiles& files_;
  const Complain& complain_;
  std::vector<std::string> open_;  // that are being read, the innermost last
  std::vector<Line> lines_;
};

/// Copies a text, with the lines of what it includes as deep as the lines that include them.
class TextIncluder {
 public:
  explicit TextIncluder(const WorldFiles& files) : files_(files) {}

  std::string copy(std::string_view text) {
    add(text, files_.path, 0, 0);
    return std::move(copy_);
  }

 private:
  void add(std::string_view text, const std::string& path, std::size_t indentation,
           std::size_t depth) {
    text = withoutByteOrderMark(text);
    const std::vector<Line> lines = scanDamagedLines(text);
    const std::size_t least = depth == 0 || lines.empty() ? 0 : lines.front().indentation;
    auto line = lines.begin();
    for (std::size_t number = 1; !text.empty(); ++number) {
      const std::string_view written = text.substr(0, text.find('\n'));
      text.remove_prefix(std::min(written.size() + 1, text.size()));
      const bool says = line != lines.end() && line->number == number;
      const std::size_t own = says ? line->indentation : 0;
      const std::size_t shifted = indentation + own - std::min(own, least);
      if (says && begins(*line, "include") && include(*line, path, shifted, depth)) {
        ++line;
        continue;
      }
      if (says) copy_ += std::string(shifted, ' ');
      copy_ += written.substr(own);
      copy_ += '\n';
      if (says) ++line;
    }
  }

  bool include(const Line& line, const std::string& path, std::size_t indentation,
               std::size_t depth) {
    // A circle ends here: that the world has one is told elsewhere.
    constexpr std::size_t nestingMax = 100;
    if (line.tokens.size() != 2 || !files_.read || depth == nestingMax) return false;
    const std::string file = besides(path, line.tokens[1].text);
    const auto text = files_.read(file);
    if (text) add(*text, file, indentation, depth + 1);
    return text.has_value();
  }

  const WorldFiles& files_;
  std::string copy_;
};

std::vector<std::string> readParameters(const Words& words, const Call& call) {
  std::vector<std::string> names;
  for (const Token& argument : call.arguments) {
    if (argument.kind != Token::Kind::word || !isParameterName(argument.text)) {
      words.failAtLast("a parameter is a name, not '" + argument.text + "'");
    }
    if (std::find(names.begin(), names.end(), argument.text) != names.end()) {
      words.failAtLast("parameter '" + argument.text + "' is given twice");
    }
    names.push_back(argument.text);
  }
  return names;
}

bool isSame(const Spot& first, const Spot& second) {
  return first.line == second.line && fileOf(first) == fileOf(second);
}

void addDefinition(std::span<const Line> block, Definitions& definitions) {
  const Line& head = block.front();
  if (head.damage) throw WorldError(*head.damage);
  Words words(head);
  words.take("define");
  const Call call = readCall(words, "define");
  words.expectEnd();
  const auto body = block.subspan(1);
  checkBody(head, body);
  for (const Line& line : body) {
    if (begins(line, "define")) throw WorldError({spotOf(line), "'define' is in another one"});
  }
  Definition definition{spotOf(head), readParameters(words, call), {body.begin(), body.end()}};
  const auto [place, isNew] = definitions.byName.emplace(call.name, std::move(definition));
  // A file that is included twice defines the same things twice.
  if (!isNew && !isSame(place->second.spot, spotOf(head))) {
    words.fail("'" + call.name + "' is defined already");
  }
}

}  // namespace

WorldLines gatherLines(std::string_view text, const WorldFiles& files, const Complain& complain) {
  WorldLines world{Includer(files, complain).gather(text), nullptr};
  auto definitions = std::make_shared<Definitions>();
  const std::span<const Line> lines = world.lines;
  for (std::size_t i = 0; i < lines.size();) {
    if (!begins(lines[i], "define")) {
      ++i;
      continue;
    }
    const std::size_t length = lengthOfBlock(lines.subspan(i));
    try {
      addDefinition(lines.subspan(i, length), *definitions);
    } catch (const WorldError& error) {
      complain(error.complaint());
    }
    i += length;
  }
  world.definitions = std::move(definitions);
  return world;
}

std::string_view withoutByteOrderMark(std::string_view text) {
  const bool isMarked = text.substr(0, byteOrderMark.size()) == byteOrderMark;
  return isMarked ? text.substr(byteOrderMark.size()) : text;
}

std::string withIncluded(std::string_view text, const WorldFiles& files) {
  return TextIncluder(files).copy(text);
}

std::size_t lengthOfBlock(std::span<const Line> lines) {
  std::size_t length = 1;
  while (length < lines.size() && lines[length].indentation > lines.front().indentation) ++length;
  return length;
}

void checkBody(const Line& head, std::span<const Line> body) {
  if (body.empty()) Words(head).fail("'" + head.tokens.front().text + "' needs lines in it");
  for (const Line& line : body) {
    if (line.indentation < body.front().indentation) {
      throw WorldError({spotOf(line), "the indentation is that of no line above"});
    }
  }
}

bool isParameterName(std::string_view word) {
  const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  const auto fits = [&](char c) {
    return isLetter(c) || (c >= '0' && c <= '9') || c == '_' || c == '-';
  };
  return !word.empty() && isLetter(word.front()) && std::all_of(word.begin(), word.end(), fits);
}

}  // namespace simulator
