#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orbelcast {

/// The camera servers that may be asked for pages: those that were named, and no others, whatever a page wants and
/// wherever a server redirects to.
class AllowedServers {
 public:
  static constexpr int kMaxPort = 65535;

  /// Adds "HOST:PORT"; "HOST", which is its ports 80 and 443; or "HOST:*", all of its ports. A numeric address of
  /// version 6 is in brackets. False where `text` is none of these.
  bool Add(std::string_view text);
  /// Whether that server was named: as it is written in an address, without looking up names.
  bool Allow(std::string_view host, int port) const;

  /// As they were added.
  const std::vector<std::string>& Texts() const { return texts_; }

 private:
  static constexpr int kAnyPort = 0;
  struct Server {
    std::string host;  ///< In lower case, without brackets.
    int port;
  };

  std::vector<Server> servers_;
  std::vector<std::string> texts_;
};

}  // namespace orbelcast
