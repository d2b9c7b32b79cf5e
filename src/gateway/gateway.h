#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "gateway/allowed_servers.h"
#include "gateway/http_front.h"
#include "platform/platform.h"

namespace orbelcast {

struct GatewaySettings {
  AllowedServers servers{};
  /// Origins ("https://example.org") whose pages may use the gateway, beside its own.
  std::vector<std::string> origins{};
  /// What people log in with; nothing for everybody.
  std::optional<std::pair<std::string, std::string>> login{};
  int sessions = 256;
};

/// Serves the page elements, a page with the player, and a session of controls for each element on a page.
class Gateway {
 public:
  /// Elements that are connected at a time, of all pages; 256 unless more are asked for.
  static constexpr int kMaxSessions = 1024;

  /// `platform`, which asks `settings.servers` alone, outlives the gateway.
  Gateway(Platform& platform, GatewaySettings settings);

  /// As HttpFront's.
  int Listen(const std::string& address, int port) { return front_.Listen(address, port); }

 private:
  HttpReply Answer(const HttpQuestion& question) const;
  std::optional<HttpReply> Refuse(const HttpQuestion& question) const;
  std::shared_ptr<PageUser> Open(std::shared_ptr<Page> page);
  bool IsLoggedIn(const HttpQuestion& question) const;
  bool IsOwnPage(const HttpQuestion& question) const;
  bool IsAllowedOrigin(const std::string& origin) const;
  std::string Description() const;

  Platform& platform_;
  const GatewaySettings settings_;
  const std::shared_ptr<int> sessions_ = std::make_shared<int>(0);
  HttpFront front_;
};

}  // namespace orbelcast
