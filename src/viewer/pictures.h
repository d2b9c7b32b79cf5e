#pragma once

#include <cstdint>
#include <span>

/// The viewer's built-in pictures, as the bytes of PNG files.
namespace orbelcast::resources {

// NOLINTBEGIN(readability-identifier-naming): each has its file's name.
extern const std::span<const std::uint8_t> test_card_png;  ///< Shown while there is no video.
extern const std::span<const std::uint8_t> no_answer_png;  ///< 100 × 100, painted when a frame request failed.
// The status icons: 16 × 16, with transparent pixels.
extern const std::span<const std::uint8_t> recording_png;
extern const std::span<const std::uint8_t> stop_png;
extern const std::span<const std::uint8_t> connect_png;
extern const std::span<const std::uint8_t> disconnect_png;
// NOLINTEND(readability-identifier-naming)

}  // namespace orbelcast::resources
