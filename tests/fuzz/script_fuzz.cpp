// Any bytes as a line of a script.

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "remote/script_error.h"
#include "remote/words.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view line(reinterpret_cast<const char*>(data), size);
  try {
    std::size_t characters = 0;
    std::string again;
    const auto words = orbelcast::SplitWords(line);
    for (const std::string& word : words) {
      characters += word.size();
      again += '"';
      for (const char letter : word) {
        if (letter == '"' || letter == '\\') again += '\\';
        again += letter;
      }
      again += "\" ";
    }
    // Words only lose what separates and quotes them, and written in quotes they are read as what they are.
    if (characters > size || orbelcast::SplitWords(again) != words) std::abort();
  } catch (const orbelcast::ScriptError&) {
    return 0;
  }
  return 0;
}
