// Any bytes as the relay service's answer and as what is asked of it: the first byte is the status, the first line the
// address, the rest the answer.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "fakes/fake_platform.h"
#include "protocol/relay.h"
#include "protocol/server_info.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orbelcast;
  std::string text(reinterpret_cast<const char*>(data), size);
  fakes::Answer answer;
  if (!text.empty()) answer.status = text[0] % 4 == 0 ? 404 : 200;
  const std::size_t end = std::min(text.find('\n'), text.size());
  const std::string address = "http://relay.invalid/" + text.substr(0, end).erase(0, 1);
  answer.body.assign(text.begin() + static_cast<std::ptrdiff_t>(end), text.end());

  fakes::FakePlatform world;
  world.http.answers = {answer};
  const auto& configuration = world.configuration;
  const std::string looked_up = LookupRelayAddress(world.http, configuration, address, 0);
  if (looked_up.find_first_of("\r\n") != std::string::npos) std::abort();
  const std::string server = ServerOfRelayAnswer(looked_up);
  if (server.find('/') != std::string::npos) std::abort();
  const std::string resolved = ResolveRelayUrl(world.http, configuration, address, 0);
  // An account that no request can hold is not asked for.
  if (!resolved.empty() && !resolved.starts_with("http://" + server)) std::abort();
  if (answer.status != 200 && !(looked_up + resolved).empty()) std::abort();
  const ServerInfo info = QueryServerInfo(world.http, configuration, address, "", "", 10000, InfoMode::kAllLines);
  if (info.ViaRelay != !looked_up.empty() || info.RelayHost.find(':') != std::string::npos) std::abort();
  return 0;
}
