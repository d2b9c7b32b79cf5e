#pragma once

#include <cstdint>
#include <string>

namespace orbelcast {

/// Turns a status text into the one that is shown: a place for translations. This one changes nothing.
class TextMapper {
 public:
  virtual ~TextMapper() = default;
  /// `mode` is always 0 today.
  virtual std::string Map(const std::string& text, std::int16_t mode) const {
    static_cast<void>(mode);
    return text;
  }
};

}  // namespace orbelcast
