#pragma once

#include <string>
#include <string_view>

namespace orbelcast {

/// An address on its way to a person: the one way in which a message holds one.
///
/// A password in it, before an "@", as the second segment after "$openlogin" or behind the last segment's ":", becomes
/// "***"; control characters become "?".
class MaskedAddress {
 public:
  explicit MaskedAddress(std::string_view address);
  const std::string& Text() const { return text_; }

 private:
  std::string text_;
};

}  // namespace orbelcast
