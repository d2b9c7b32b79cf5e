#pragma once

#include <cstdint>
#include <span>

namespace orbelcast::toolbar {

/// The picture of a command's button, as the bytes of a PNG file; empty for other numbers.
///
/// 128 × 128 pixels, to be scaled down, on transparent ground. Grey shapes may take on a front end's text colour;
/// coloured ones mark special commands and stay.
std::span<const std::uint8_t> PictureOf(std::int16_t command);

}  // namespace orbelcast::toolbar
