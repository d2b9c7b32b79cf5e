#pragma once

#include <cstddef>

/// The limits of the player's own requests, however a server behaves.
namespace orbelcast::player_limits {

/// Milliseconds that asking a server for its cameras, alerts, inputs and outputs may take in each of its phases.
inline constexpr int kInformationTimeout = 10000;
/// Milliseconds that each phase of a command (log, message, output, alert) may take. They block the user interface as
/// the questions above do, so they get the same patience.
inline constexpr int kCommandTimeout = 10000;
/// Milliseconds for the relay service: no limit of the player's own.
inline constexpr int kRelayTimeout = 0;
/// Items of a server's list that are shown. The largest installations have some hundred cameras; a list of ten thousand
/// is still quick to fill, one of millions would hold up the user interface.
inline constexpr int kMaxListItems = 10000;
/// Bytes of the activity log that are shown, the newest ones: more than anybody reads, and quick to lay out.
inline constexpr std::size_t kMaxLogBytes = 1u * 1024 * 1024;
/// Lines of the activity log that are shown, the newest ones.
inline constexpr std::size_t kMaxLogLines = 60'000;
/// Bytes of a line of the activity log that are shown. A box of text lays out a line as a whole, in time that grows
/// with it; an entry of a log is a few hundred bytes.
inline constexpr std::size_t kMaxLogLineBytes = 4096;

}  // namespace orbelcast::player_limits
