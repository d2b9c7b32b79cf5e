#pragma once

#include <string>
#include <string_view>

/// Texts of unknown origin on their way to a terminal.
namespace orbelcast {

/// The text with `with` in place of each character that drives a terminal or changes the order in which a line is read:
/// control characters (those of ASCII, DEL, U+0080 to U+009F, and bytes of these numbers that are no UTF-8) and the
/// marks of writing direction. Everything else stays, byte for byte.
std::string WithoutControls(std::string_view text, char with = '?');

/// JSON that means the same, with \uXXXX in place of those of these characters that a JSON writer leaves as they are.
/// Line breaks between its values stay.
std::string JsonWithoutControls(std::string_view json);

}  // namespace orbelcast
