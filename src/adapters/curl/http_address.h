#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orbelcast {

/// True for what HTTP allows as a method or a header's name.
bool IsHttpToken(std::string_view text);

/// An http or https address, split into what names the server and what is asked of it.
struct HttpAddress {
  std::string origin;  ///< "http://host:port", as it was written.
  std::string target;  ///< What goes into the request line, byte for byte; begins with "/".

  /// Empty where the text is no address that can be asked: another scheme, no host, a control character.
  static std::optional<HttpAddress> Parse(std::string_view url);

  /// True when libcurl, told to leave the path as it is, sends the target unchanged.
  bool IsPlain() const;
};

}  // namespace orbelcast
