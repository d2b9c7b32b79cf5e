#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

/// Connecting to a server below HTTP, step by step, to find the step that fails.
namespace orbelcast {

/// A server as an address names it.
struct HostAndPort {
  std::string host;
  std::string port = "80";
};

/// Takes apart "http://HOST[:PORT][/…]", or the same without "http://". An IPv6 address is in brackets.
HostAndPort HostAndPortOf(std::string_view address);

/// A numeric address of a server, with what the system needs to connect to it.
struct NetworkAddress {
  std::string text;                    ///< "127.0.0.1"
  std::vector<unsigned char> storage;  ///< A socket address.
};

struct NameLookup {
  std::vector<NetworkAddress> addresses;
  std::string error;  ///< The system's words, where there is no address.
  bool was_numeric = false;
};

/// Looks the host's name up. Takes as long as the system's resolver does.
NameLookup LookUpName(const HostAndPort& server);

struct ConnectionTry {
  int error = 0;          ///< An errno; 0 where it worked.
  std::string address{};  ///< The one that answered, or was tried last.
  std::chrono::nanoseconds took{};
};

/// Connects to one address after the other until one answers, and closes the connection. Each has `limit`.
ConnectionTry TryToConnect(const std::vector<NetworkAddress>& addresses, std::chrono::milliseconds limit);

}  // namespace orbelcast
