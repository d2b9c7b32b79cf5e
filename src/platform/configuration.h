#pragma once

#include <string>

namespace orbelcast {

/// Settings of the product that carries the controls, not of its users. The defaults resolve nowhere.
struct Configuration {
  /// Host name of the relay service: an address that begins with it and "/" names an account instead of a server.
  std::string relay_host = "relay.invalid";
  /// Host of the page that tells an account's server, with ":" and a port where it has one of its own.
  std::string relay_lookup_host = "lookup.relay.invalid";
};

}  // namespace orbelcast
