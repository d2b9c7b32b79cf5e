#pragma once

#include <cstddef>

/// What the player's own requests are held to, however a server behaves.
namespace orbelcast::player_limits {

/// Milliseconds that asking a server for its cameras, alerts, inputs and outputs may take in each of its phases.
inline constexpr int kInformationTimeout = 10000;
/// Milliseconds that each phase of a command (log, message, output, alert) may take. They block the user interface as
/// the questions above do, so they get the same patience.
inline constexpr int kCommandTimeout = 10000;
/// Milliseconds for the relay service: no limit of the player's own.
inline constexpr int kRelayTimeout = 0;
/// Lines of a server's list that are shown. The largest installations have some hundred cameras; a list of ten thousand
/// is still quick to fill, one of millions would hold up the user interface.
inline constexpr std::size_t kMaxListLines = 10000;

}  // namespace orbelcast::player_limits
