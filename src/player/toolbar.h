#pragma once

#include <array>
#include <cstdint>

/// The toolbar's commands, by the index of their button.
namespace orbelcast::toolbar {

inline constexpr std::int16_t kArchiveTop = 0;
inline constexpr std::int16_t kReversePlay = 1;
inline constexpr std::int16_t kStop = 2;
inline constexpr std::int16_t kPlay = 3;
inline constexpr std::int16_t kArchiveEnd = 4;
inline constexpr std::int16_t kLive = 5;
inline constexpr std::int16_t kInformation = 6;
inline constexpr std::int16_t kSearch = 7;
inline constexpr std::int16_t kStopAvi = 8;
inline constexpr std::int16_t kSaveAvi = 9;
inline constexpr std::int16_t kSnapshot = 10;
inline constexpr std::int16_t kLogViewer = 11;
inline constexpr std::int16_t kWithoutCommand = 12;
inline constexpr std::int16_t kSendMessage = 13;
inline constexpr std::int16_t kInputsAndOutputs = 14;
inline constexpr std::int16_t kAlerts = 15;
inline constexpr std::int16_t kFullScreen = 16;
inline constexpr std::int16_t kMultipleCameras = 17;

/// The extended buttons, in the order in which they are shown and hidden.
inline constexpr std::array kExtended{kLogViewer,   kAlerts,         kInputsAndOutputs,
                                      kSendMessage, kWithoutCommand, kMultipleCameras};

/// Whether the command asks the player's server something itself.
inline constexpr bool AsksServer(std::int16_t command) {
  return command == kLogViewer || command == kSendMessage || command == kInputsAndOutputs || command == kAlerts;
}

/// LastCommand before the first command.
inline constexpr std::int16_t kNone = 1000;
/// LastCommand after a command that a new picture quality does not run again.
inline constexpr std::int16_t kNotRepeated = 10000;

}  // namespace orbelcast::toolbar
