// Any bytes as an info text, in every mode.

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "protocol/info_text.h"
#include "protocol/text.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orbelcast;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  for (const int mode : {1, 2, 3, 4}) {
    ServerInfo info;
    ParseInfoText(text, static_cast<InfoMode>(mode), info);
    // Nothing is made up: a line is told with its end, which the text's last one may lack.
    if (info.Lines.size() > size + kCrLf.size() || info.SystemName.size() > size) std::abort();
    if (mode == 3 && std::string_view(info.Lines).substr(0, size) != text.substr(0, info.Lines.size())) std::abort();
  }
  return 0;
}
