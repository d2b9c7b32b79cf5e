#pragma once

#include <cstdint>
#include <span>

/// The pictures that the controls carry with them, as the bytes of their PNG files.
namespace orbelcast::resources {

std::span<const std::uint8_t> TestCard();       ///< 454 × 340, shown while there is no video.
std::span<const std::uint8_t> NoAnswer();       ///< 100 × 100, painted when a frame request failed.
std::span<const std::uint8_t> RecordingIcon();  ///< The four status icons are 16 × 16 and have transparent pixels.
std::span<const std::uint8_t> StopIcon();
std::span<const std::uint8_t> ConnectIcon();
std::span<const std::uint8_t> DisconnectIcon();

/// The picture of the player's toolbar button `index`, 0 to 17; empty for others. 128 × 128, to be scaled down, on
/// transparent ground. Grey shapes may take on a front end's text colour; coloured ones mark what is special and stay.
std::span<const std::uint8_t> ToolbarPicture(int index);

}  // namespace orbelcast::resources
