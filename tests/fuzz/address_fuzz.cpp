// Any text as an address, as where a redirect leads from it, and as a server's challenge: a line each.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "adapters/curl/http_address.h"
#include "adapters/curl/http_login.h"
#include "toolkit/ascii.h"

using namespace orbelcast;

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

void LookAt(const HttpAddress& address) {
  Require(address.target.starts_with('/') && !HasControlCharacter(address.origin + address.target));
  Require(address.SameServer(address));
  const auto again = HttpAddress::Parse(address.origin + address.target);
  Require(again && again->origin == address.origin && again->target == address.target);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const std::size_t first = std::min(text.find('\n'), text.size());
  const std::size_t second = std::min(text.find('\n', first + 1), text.size());
  const std::string location = text.substr(std::min(first + 1, second), second - std::min(first + 1, second));
  const std::string challenge = text.substr(std::min(second + 1, text.size()));

  if (const auto address = HttpAddress::Parse(text.substr(0, first))) {
    LookAt(*address);
    if (const auto next = address->Resolve(location)) {
      LookAt(*next);
      Require(next->target.find_first_of(" #") == std::string::npos);
    }
  }

  HttpLogin login({location, challenge.substr(0, 8)});
  if (login.Take({challenge, location})) {
    const std::string told = login.Authorization("GET", "/");
    Require(told.starts_with("Basic ") || told.starts_with("Digest username="));
    Require(location.size() > 4096 || told.size() < 8 * DigestChallenge::kMaxChallengeBytes);
    if (!HasControlCharacter(location)) Require(!HasControlCharacter(told));
  } else {
    Require(!DigestChallenge::Find(challenge) && !AsksForBasic(challenge));
  }
  return 0;
}
