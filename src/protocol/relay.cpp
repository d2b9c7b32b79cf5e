#include "protocol/relay.h"

#include <optional>

#include "protocol/server_address.h"
#include "protocol/text.h"
#include "toolkit/ascii.h"

namespace orbelcast {

namespace {

std::string RelayPrefix(const Configuration& configuration) {
  return configuration.relay_host + "/";
}

std::string_view AccountOf(std::string_view address, std::size_t prefix_length) {
  return address.substr(prefix_length, address.find('/', prefix_length) - prefix_length);
}

/// The relay service's answer; nothing where that is not status 200.
std::optional<std::string> AskForAccount(HttpRequestFactory& http, const Configuration& configuration,
                                         std::string_view account, std::int32_t time_out) {
  const auto request = http.Create();
  request->Open("GET", RelayLookupAddress(configuration.relay_lookup_host, account), false);
  request->SetTimeouts(time_out, time_out, time_out, time_out);
  request->Send();
  request->WaitForResponse();
  std::string answer = request->ResponseText();
  std::erase_if(answer, [](char letter) { return letter == '\r' || letter == '\n'; });
  if (request->Status() != kHttpOk) return std::nullopt;
  return answer;
}

}  // namespace

bool IsRelayAddress(const Configuration& configuration, std::string_view address) {
  return StartsWithIgnoringCase(address, RelayPrefix(configuration));
}

std::string LookupRelayAddress(HttpRequestFactory& http, const Configuration& configuration, std::string_view url,
                               std::int32_t time_out) {
  const std::string_view address = WithoutHttp(url);
  if (!IsRelayAddress(configuration, address)) return std::string(url);
  const std::string_view account = AccountOf(address, RelayPrefix(configuration).size());
  return AskForAccount(http, configuration, account, time_out).value_or("");
}

std::string ResolveRelayUrl(HttpRequestFactory& http, const Configuration& configuration, std::string_view url,
                            std::int32_t time_out) {
  const std::string_view address = WithoutHttp(url);
  if (!IsRelayAddress(configuration, address)) return std::string(url);
  const std::string prefix = RelayPrefix(configuration);
  const std::string_view account = AccountOf(address, prefix.size());
  const auto answer = AskForAccount(http, configuration, account, time_out);
  if (!answer) return {};
  return Replaced(url, prefix + std::string(account), ServerOfRelayAnswer(*answer));
}

std::string ServerOfRelayAnswer(std::string_view answer) {
  return Replaced(Replaced(answer, "http://", ""), "/", "");
}

}  // namespace orbelcast
