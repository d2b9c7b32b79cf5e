#pragma once

#include <istream>
#include <optional>
#include <string>

namespace orbelcast {

/// One line of a script and its number, from 1.
struct ScriptLine {
  std::string text;
  int number = 0;
};

/// The lines of a script, one after another.
class LineReader {
 public:
  explicit LineReader(std::istream& input) : input_(input) {}

  /// The next line; nothing at the end.
  std::optional<ScriptLine> Next() {
    ScriptLine line;
    if (!std::getline(input_, line.text)) return std::nullopt;
    line.number = ++number_;
    return line;
  }

 private:
  std::istream& input_;
  int number_ = 0;
};

}  // namespace orbelcast
