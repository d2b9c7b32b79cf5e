#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/configuration.h"
#include "platform/http_request.h"

/// A relay service knows where the camera server of an account is at the moment. An address that begins with the
/// service's host name and "/" names an account in place of a server.
///
/// Both look-ups block the thread until the service has answered or a time-out (milliseconds, 0 is none) has ended it.
namespace orbelcast {

/// True for a relay account's address, in any letter case, without "http://".
bool IsRelayAddress(const Configuration& configuration, std::string_view address);

/// The relay service's answer about the account that `url` names, without line breaks; empty where it does not answer
/// with status 200. Any other address comes back as it is, without a request.
std::string LookupRelayAddress(HttpRequestFactory& http, const Configuration& configuration, std::string_view url,
                               std::int32_t time_out);

/// `url` with the account's server in place of the relay service and the account; empty where the service does not
/// answer with status 200. Any other address comes back as it is, without a request.
///
/// The replacement compares with `Configuration::relay_host` letter by letter; the look-up itself takes any letter
/// case, so an address in another case comes back unchanged after it.
std::string ResolveRelayUrl(HttpRequestFactory& http, const Configuration& configuration, std::string_view url,
                            std::int32_t time_out);

/// The host, and port where it names one, in a relay service's answer: without "http://" and slashes.
std::string ServerOfRelayAnswer(std::string_view answer);

}  // namespace orbelcast
