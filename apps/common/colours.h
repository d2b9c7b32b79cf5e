#pragma once

#include <string>
#include <string_view>

namespace orbelcast {

enum class Colour { kGood, kWarning, kBad, kFaint, kHeading };

/// Colours a text on its way to people. They are used on a terminal alone, unless NO_COLOR is set (to anything but an
/// empty text) or the terminal is a dumb one.
class Colours {
 public:
  /// Of a file descriptor, such as STDOUT_FILENO.
  explicit Colours(int descriptor);

  std::string Paint(Colour colour, std::string_view text) const;

 private:
  bool used_;
};

}  // namespace orbelcast
