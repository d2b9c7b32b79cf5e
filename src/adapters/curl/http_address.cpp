#include "adapters/curl/http_address.h"

#include <curl/curl.h>

#include <algorithm>
#include <cctype>
#include <memory>

#include "platform/ascii.h"

namespace orbelcast {

namespace {

// libcurl is the judge of host names, ports and bracketed addresses.
bool IsOrigin(const std::string& origin) {
  const std::unique_ptr<CURLU, decltype(&curl_url_cleanup)> url(curl_url(), &curl_url_cleanup);
  return url && curl_url_set(url.get(), CURLUPART_URL, origin.c_str(), 0) == CURLUE_OK;
}

}  // namespace

bool IsHttpToken(std::string_view text) {
  return !text.empty() && std::ranges::all_of(text, [](char each) {
    const auto byte = static_cast<unsigned char>(each);
    return (byte < 0x80 && std::isalnum(byte) != 0) ||
           std::string_view("!#$%&'*+-.^_`|~").find(each) != std::string_view::npos;
  });
}

std::optional<HttpAddress> HttpAddress::Parse(std::string_view url) {
  if (HasControlCharacter(url)) return std::nullopt;
  std::size_t host = 0;
  for (const std::string_view scheme : {"http://", "https://"}) {
    if (StartsWithIgnoringCase(url, scheme)) host = scheme.size();
  }
  if (host == 0) return std::nullopt;
  const std::size_t end = std::min(url.find_first_of("/?#", host), url.size());
  HttpAddress address{std::string(url.substr(0, end)), std::string(url.substr(end))};
  if (!address.target.starts_with('/')) address.target.insert(0, 1, '/');
  if (!IsOrigin(address.origin)) return std::nullopt;
  return address;
}

bool HttpAddress::IsPlain() const {
  return std::ranges::all_of(target, [](char each) { return each > ' ' && each < 0x7f && each != '#'; });
}

}  // namespace orbelcast
