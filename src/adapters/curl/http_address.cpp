#include "adapters/curl/http_address.h"

#include <curl/curl.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <memory>

#include "toolkit/ascii.h"

namespace orbelcast {

namespace {

// libcurl is the judge of host names, ports and bracketed addresses.
using Url = std::unique_ptr<CURLU, decltype(&curl_url_cleanup)>;

/// Null where libcurl does not take it.
Url ParseUrl(const std::string& text) {
  Url url(curl_url(), &curl_url_cleanup);
  if (url && curl_url_set(url.get(), CURLUPART_URL, text.c_str(), 0) != CURLUE_OK) url.reset();
  return url;
}

std::string PartOf(const Url& url, CURLUPart part, unsigned flags = 0) {
  char* text = nullptr;
  if (curl_url_get(url.get(), part, &text, flags) != CURLUE_OK) return {};
  const std::unique_ptr<char, decltype(&curl_free)> owned(text, &curl_free);
  return text;
}

/// Scheme, host and port in one spelling.
std::string ServerOf(const std::string& origin) {
  const Url url = ParseUrl(origin);
  if (!url) return {};
  return PartOf(url, CURLUPART_SCHEME) + "://" + LowerCase(PartOf(url, CURLUPART_HOST)) + ":" +
         PartOf(url, CURLUPART_PORT, CURLU_DEFAULT_PORT);
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
  HttpAddress address{std::string(url.substr(0, end)), std::string(url.substr(end)), nullptr};
  if (!address.target.starts_with('/')) address.target.insert(0, 1, '/');
  address.parsed_origin = ParseUrl(address.origin);
  if (!address.parsed_origin) return std::nullopt;
  return address;
}

std::optional<HttpAddress> HttpAddress::Resolve(const std::string& location) const {
  const Url url = ParseUrl(origin);
  if (!url) return std::nullopt;
  const std::size_t mark = target.find('?');
  curl_url_set(url.get(), CURLUPART_PATH, target.substr(0, mark).c_str(), 0);
  if (mark != std::string::npos) curl_url_set(url.get(), CURLUPART_QUERY, target.substr(mark + 1).c_str(), 0);
  constexpr unsigned kAsWritten = CURLU_PATH_AS_IS | CURLU_ALLOW_SPACE | CURLU_URLENCODE;
  if (curl_url_set(url.get(), CURLUPART_URL, location.c_str(), kAsWritten) != CURLUE_OK) return std::nullopt;
  curl_url_set(url.get(), CURLUPART_FRAGMENT, nullptr, 0);
  return Parse(PartOf(url, CURLUPART_URL));
}

std::pair<std::string, int> HttpAddress::Server() const {
  const Url url = ParseUrl(origin);
  if (!url) return {};
  std::string host = LowerCase(PartOf(url, CURLUPART_HOST));
  if (host.starts_with('[') && host.ends_with(']')) host = host.substr(1, host.size() - 2);
  return {std::move(host), std::atoi(PartOf(url, CURLUPART_PORT, CURLU_DEFAULT_PORT).c_str())};
}

bool HttpAddress::SameServer(const HttpAddress& other) const {
  return origin == other.origin || ServerOf(origin) == ServerOf(other.origin);
}

}  // namespace orbelcast
