#include "orbelcast/doctor/network_steps.h"

#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>

#include "adapters/posix/descriptor.h"
#include "protocol/text.h"

namespace orbelcast {

namespace {

using SteadyClock = std::chrono::steady_clock;
using Found = std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)>;

int Resolve(const HostAndPort& server, int flags, Found& found) {
  addrinfo wanted{};
  wanted.ai_family = AF_UNSPEC;
  wanted.ai_socktype = SOCK_STREAM;
  wanted.ai_flags = flags | AI_NUMERICSERV;
  addrinfo* list = nullptr;
  const int error = ::getaddrinfo(server.host.c_str(), server.port.c_str(), &wanted, &list);
  if (error == 0) found.reset(list);
  return error;
}

std::string NumericText(const sockaddr* address, socklen_t size) {
  std::array<char, NI_MAXHOST> text{};
  const int error = ::getnameinfo(address, size, text.data(), text.size(), nullptr, 0, NI_NUMERICHOST);
  return error == 0 ? text.data() : "?";
}

int WaitForConnection(int socket, std::chrono::milliseconds limit) {
  pollfd waiting{.fd = socket, .events = POLLOUT, .revents = 0};
  const auto end = SteadyClock::now() + limit;
  for (;;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - SteadyClock::now());
    const int ready = ::poll(&waiting, 1, static_cast<int>(std::max<std::int64_t>(left.count(), 0)));
    if (ready < 0 && errno == EINTR) continue;
    if (ready < 0) return errno;
    if (ready == 0) return ETIMEDOUT;
    int error = 0;
    socklen_t size = sizeof error;
    return ::getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &size) == 0 ? error : errno;
  }
}

int Connect(const NetworkAddress& address, std::chrono::milliseconds limit) {
  const auto* const name = reinterpret_cast<const sockaddr*>(address.storage.data());
  const Descriptor socket(::socket(name->sa_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  if (!socket.IsOpen()) return errno;
  if (::connect(socket.Number(), name, static_cast<socklen_t>(address.storage.size())) == 0) return 0;
  return errno == EINPROGRESS ? WaitForConnection(socket.Number(), limit) : errno;
}

}  // namespace

HostAndPort HostAndPortOf(std::string_view address) {
  std::string_view place = WithoutHttp(address);
  place = place.substr(0, place.find_first_of("/?#"));
  if (const std::size_t at = place.rfind('@'); at != std::string_view::npos) place.remove_prefix(at + 1);
  HostAndPort server;
  const std::size_t bracket = place.starts_with('[') ? place.find(']') : std::string_view::npos;
  const std::size_t colon = place.find(':', bracket == std::string_view::npos ? 0 : bracket);
  if (bracket == std::string_view::npos) {
    server.host = place.substr(0, colon);
  } else {
    server.host = place.substr(1, bracket - 1);
  }
  if (colon != std::string_view::npos && colon + 1 < place.size()) server.port = place.substr(colon + 1);
  return server;
}

NameLookup LookUpName(const HostAndPort& server) {
  NameLookup lookup;
  Found found(nullptr, &::freeaddrinfo);
  lookup.was_numeric = Resolve(server, AI_NUMERICHOST, found) == 0;
  if (!lookup.was_numeric) {
    if (const int error = Resolve(server, 0, found); error != 0) lookup.error = ::gai_strerror(error);
  }
  for (const addrinfo* each = found.get(); each != nullptr; each = each->ai_next) {
    const auto* const bytes = reinterpret_cast<const unsigned char*>(each->ai_addr);
    lookup.addresses.push_back({NumericText(each->ai_addr, each->ai_addrlen), {bytes, bytes + each->ai_addrlen}});
  }
  return lookup;
}

ConnectionTry TryToConnect(const std::vector<NetworkAddress>& addresses, std::chrono::milliseconds limit) {
  ConnectionTry result{.error = EADDRNOTAVAIL};
  for (const NetworkAddress& address : addresses) {
    const auto start = SteadyClock::now();
    result = {.error = Connect(address, limit), .address = address.text, .took = SteadyClock::now() - start};
    if (result.error == 0) break;
  }
  return result;
}

}  // namespace orbelcast
