#pragma once

#include <cstddef>

/// The limits on how much of a camera server's answer is read.
namespace orbelcast::protocol_limits {

/// Bytes of an information text. Ten thousand cameras with their names and addresses take a quarter of it.
inline constexpr std::size_t kMaxInfoBytes = 4u * 1024 * 1024;
/// Lines of an information text: cameras, alerts, inputs and outputs together.
inline constexpr std::size_t kMaxInfoLines = 50'000;
/// Fields of a line of a list: the id, the name, the address or the state. No line means anything by a fourth.
inline constexpr std::size_t kMaxListFields = 3;

}  // namespace orbelcast::protocol_limits
