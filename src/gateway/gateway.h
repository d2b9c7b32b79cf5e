#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "gateway/allowed_servers.h"
#include "gateway/http_front.h"
#include "gateway/named_servers.h"
#include "platform/platform.h"

namespace orbelcast {

struct GatewaySettings {
  AllowedServers servers{};
  NamedServers named{};
  /// Origins ("https://example.org") whose pages may use the gateway, beside its own.
  std::vector<std::string> origins{};
  /// The logins that people use, a user and a password each; none for everybody.
  std::vector<std::pair<std::string, std::string>> logins{};
  /// With one, pages come over https alone; without, over http alone.
  std::optional<TlsIdentity> tls{};
  int sessions = 256;
};

/// Serves the page elements, a page with the player, and a session of controls for each element on a page.
class Gateway {
 public:
  /// Elements that are connected at a time, of all pages; 256 unless more are asked for.
  static constexpr int kMaxSessions = 1024;

  /// `platform`, which asks `settings.servers` and `settings.named` alone, outlives the gateway. Throws
  /// std::runtime_error where `settings.tls` cannot be used.
  Gateway(Platform& platform, GatewaySettings settings);

  /// As HttpFront's.
  int Listen(const std::string& address, int port) { return front_.Listen(address, port); }
  /// As HttpFront's.
  void Renew(const TlsIdentity& identity) { front_.Renew(identity); }

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
  const std::shared_ptr<const NamedServers> named_;  ///< Of `settings_`; sessions keep it.
  const std::shared_ptr<int> sessions_ = std::make_shared<int>(0);
  HttpFront front_;
};

}  // namespace orbelcast
