// Any bytes as what a server lists or logs and a person types, on their way into the player's boxes.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "player/limits.h"
#include "player/texts.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orbelcast;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  if (UrlDecode(text).size() > size || ZeroPadded(text, 4).size() < 4) std::abort();
  ForEachLine(text, [&](std::size_t, const std::vector<std::string_view>& fields) {
    for (const std::string_view field : fields) {
      if (field.data() < text.data() || field.data() + field.size() > text.data() + size) std::abort();
    }
  });
  constexpr std::size_t kNote = 200;  // the line that says what was left out
  if (LogText(text).size() > size + kNote) std::abort();
  // Longer than any input grows: what is beyond the bounds, which takes its time.
  if (size == 0 || data[0] != 'x') return 0;
  std::string log;
  while (log.size() <= player_limits::kMaxLogBytes) log.append(text);
  if (LogText(log).size() > player_limits::kMaxLogBytes + kNote) std::abort();
  return 0;
}
