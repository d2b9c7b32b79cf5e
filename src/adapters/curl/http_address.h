#pragma once

#include <curl/curl.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace orbelcast {

/// True for a text that HTTP allows as a method or a header's name.
bool IsHttpToken(std::string_view text);

/// An http or https address, split into the server's part and the request's target.
struct HttpAddress {
  std::string origin;  ///< "http://host:port", as it was written.
  std::string target;  ///< The target of the request line, byte for byte; begins with "/".
  /// The origin as libcurl reads it, so that it is not read anew for each request.
  std::shared_ptr<CURLU> parsed_origin;

  /// Empty where the text is no address that can be asked: another scheme, no host, a control character.
  static std::optional<HttpAddress> Parse(std::string_view url);

  /// Host and port as they are asked, the host without the brackets of a numeric address.
  std::pair<std::string, int> Server() const;

  /// The target of a redirect to `location` from here: a whole address or a part of one, blanks escaped, the
  /// fragment left out. Empty where that is no address that can be asked.
  std::optional<HttpAddress> Resolve(const std::string& location) const;

  /// True where both name the same scheme, host and port.
  bool SameServer(const HttpAddress& other) const;
};

}  // namespace orbelcast
