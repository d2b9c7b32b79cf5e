#include "gateway/allowed_servers.h"

#include <algorithm>
#include <optional>

#include "toolkit/ascii.h"
#include "toolkit/whole_number.h"

namespace orbelcast {

namespace {

std::optional<int> ParsePort(std::string_view text) {
  const auto port = WholeNumber<int>(text);
  return port && *port >= 1 && *port <= AllowedServers::kMaxPort ? port : std::nullopt;
}

bool IsHost(std::string_view host) {
  return !host.empty() && std::ranges::all_of(host, [](char each) {
    const auto byte = static_cast<unsigned char>(each);
    return (byte >= '0' && byte <= '9') || (byte >= 'a' && byte <= 'z') || byte == '.' || byte == '-' || byte == '_' ||
           byte == ':' || byte >= 0x80;
  });
}

}  // namespace

bool AllowedServers::Add(std::string_view text) {
  std::string host = LowerCase(std::string(text));
  std::string port;
  const bool bracketed = host.starts_with('[');
  const std::size_t colon = host.find(':', bracketed ? std::min(host.find(']'), host.size()) : 0);
  if (colon != std::string::npos) {
    port = host.substr(colon + 1);
    host.resize(colon);
    if (port.empty()) return false;
  }
  if (bracketed) {
    if (host.size() < 2 || host.back() != ']') return false;
    host = host.substr(1, host.size() - 2);
  }
  if (!IsHost(host) || (!bracketed && host.find(':') != std::string::npos)) return false;
  if (port.empty()) {
    servers_.push_back({host, 80});
    servers_.push_back({host, 443});
  } else if (port == "*") {
    servers_.push_back({host, kAnyPort});
  } else if (const auto number = ParsePort(port)) {
    servers_.push_back({host, *number});
  } else {
    return false;
  }
  texts_.emplace_back(text);
  return true;
}

bool AllowedServers::Allow(std::string_view host, int port) const {
  return std::ranges::any_of(servers_, [&](const Server& server) {
    return server.host == host && (server.port == port || server.port == kAnyPort);
  });
}

}  // namespace orbelcast
