#include "common/pixel_size.h"

#include "toolkit/whole_number.h"

namespace orbelcast {

std::optional<Size> ReadPixelSize(std::string_view text, int least) {
  const std::size_t mark = text.find_first_of("xX");
  if (mark == std::string_view::npos) return std::nullopt;
  const auto width = WholeNumber<int>(text.substr(0, mark));
  const auto height = WholeNumber<int>(text.substr(mark + 1));
  const auto fits = [least](const std::optional<int>& side) { return side && *side >= least && *side <= kMaxSide; };
  if (!fits(width) || !fits(height)) return std::nullopt;
  return Size{*width, *height};
}

}  // namespace orbelcast
