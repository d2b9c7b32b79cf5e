#include "remote/words.h"

#include "remote/script_error.h"

namespace orbelcast {

namespace {

constexpr std::string_view kBlanks = " \t\r";

/// Takes a character off the front of `rest`.
char Take(std::string_view& rest) {
  const char first = rest.front();
  rest.remove_prefix(1);
  return first;
}

char TakeEscape(std::string_view& rest) {
  if (rest.empty()) throw ScriptError("a quote does not end");
  switch (const char letter = Take(rest)) {
    case 'n':
      return '\n';
    case 'r':
      return '\r';
    case 't':
      return '\t';
    case '"':
    case '\\':
      return letter;
    default:
      throw ScriptError(std::string("there is no escape \\") + letter +
                        R"(; there are \n, \r, \t, \" and \\, so a backslash in quotes is written twice)");
  }
}

/// Appends the text up to the closing quote; the opening one has been consumed.
void TakeQuoted(std::string_view& rest, std::string& word) {
  while (!rest.empty()) {
    const char next = Take(rest);
    if (next == '"') return;
    word += next == '\\' ? TakeEscape(rest) : next;
  }
  throw ScriptError("a quote does not end");
}

std::string TakeWord(std::string_view& rest) {
  std::string word;
  while (!rest.empty() && kBlanks.find(rest.front()) == std::string_view::npos) {
    const char next = Take(rest);
    if (next == '"') {
      TakeQuoted(rest, word);
    } else {
      word += next;
    }
  }
  return word;
}

}  // namespace

std::vector<std::string> SplitWords(std::string_view line) {
  std::vector<std::string> words;
  for (std::string_view rest = line;;) {
    rest.remove_prefix(std::min(rest.find_first_not_of(kBlanks), rest.size()));
    if (rest.empty() || (words.empty() && rest.front() == '#')) return words;
    words.push_back(TakeWord(rest));
  }
}

}  // namespace orbelcast
