#include "camera_server/authentication.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/hmac.h>
#include <openssl/rand.h>

#include <algorithm>
#include <charconv>
#include <map>
#include <span>
#include <stdexcept>

#include "toolkit/ascii.h"
#include "toolkit/hexadecimal.h"

namespace orbelcast::camera_server {

namespace {

constexpr std::string_view kRealm = "Orbelcast cameras";
/// How long a nonce is taken, by the server's clock: a client that comes later is asked again, with a fresh one.
constexpr std::chrono::minutes kNonceLife{5};
/// Uses of nonces that are remembered: ten clients' at thirty pictures a second, for a nonce's life.
constexpr std::size_t kMaxUses = 100'000;
/// Of the microseconds since 1970, until the year 2286.
constexpr std::size_t kTimeDigits = 16;

std::string Md5(std::string_view text) {
  std::array<unsigned char, EVP_MAX_MD_SIZE> hash{};
  unsigned size = 0;
  if (EVP_Digest(text.data(), text.size(), hash.data(), &size, EVP_md5(), nullptr) != 1) {
    throw std::runtime_error("MD5 is not available, so Digest authentication is not either");
  }
  return Hexadecimal(std::span(hash).first(size));
}

/// Takes as long wherever the texts differ, so that nobody can guess one from how long it took.
bool Same(std::string_view a, std::string_view b) {
  return a.size() == b.size() && CRYPTO_memcmp(a.data(), b.data(), a.size()) == 0;
}

/// Hashed first, so that the length does not tell either.
bool SameSecret(std::string_view a, std::string_view b) {
  return Same(Md5(a), Md5(b));
}

std::optional<std::string> DecodeBase64(std::string_view text) {
  if (text.empty() || text.size() % 4 != 0) return std::nullopt;
  std::string bytes(text.size() / 4 * 3, '\0');
  const int size = EVP_DecodeBlock(reinterpret_cast<unsigned char*>(bytes.data()),
                                   reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()));
  if (size < 0) return std::nullopt;
  bytes.resize(static_cast<std::size_t>(size));
  // The padding was decoded to zero bytes.
  for (std::size_t i = text.size(); i > text.size() - 2 && text[i - 1] == '=' && !bytes.empty(); --i) {
    bytes.pop_back();
  }
  return bytes;
}

using Parameters = std::map<std::string, std::string>;

/// The parameters of Digest credentials, such as username="u", nc=00000001, by their names in small letters; of two of
/// one name the first. Stops at what cannot be read.
Parameters ParseParameters(std::string_view text) {
  Parameters parameters;
  for (std::size_t equals = text.find('='); equals != std::string_view::npos; equals = text.find('=')) {
    const std::string name = LowerCase(std::string(Trimmed(text.substr(0, equals), " \t,")));
    text.remove_prefix(equals + 1);
    std::string value;
    std::size_t at = 0;
    if (text.starts_with('"')) {
      for (at = 1; at < text.size() && text[at] != '"'; ++at) {
        if (text[at] == '\\' && at + 1 < text.size()) ++at;
        value += text[at];
      }
    } else {
      at = std::min(text.find_first_of(", \t"), text.size());
      value = text.substr(0, at);
    }
    text.remove_prefix(std::min(at + 1, text.size()));
    parameters.emplace(name, value);
  }
  return parameters;
}

/// What follows the scheme's name, or nothing when the credentials are of another scheme.
std::optional<std::string_view> AfterScheme(std::string_view credentials, std::string_view scheme) {
  const std::size_t blank = credentials.find(' ');
  if (blank == std::string_view::npos || !EqualIgnoringCase(credentials.substr(0, blank), scheme)) return std::nullopt;
  credentials.remove_prefix(blank);
  credentials.remove_prefix(std::min(credentials.find_first_not_of(' '), credentials.size()));
  return credentials;
}

}  // namespace

Nonces::Nonces() {
  if (RAND_bytes(secret_.data(), static_cast<int>(secret_.size())) != 1) throw std::runtime_error("no random bytes");
}

std::string Nonces::Signed(std::string time) const {
  std::array<unsigned char, EVP_MAX_MD_SIZE> hash{};
  unsigned size = 0;
  HMAC(EVP_sha256(), secret_.data(), static_cast<int>(secret_.size()),
       reinterpret_cast<const unsigned char*>(time.data()), time.size(), hash.data(), &size);
  return std::move(time) + Hexadecimal(std::span(hash).first(size)).substr(0, 32);
}

std::string Nonces::Make(Clock::time_point now) const {
  return Signed(std::to_string(now.time_since_epoch() / std::chrono::microseconds(1)));
}

bool Nonces::IsGood(std::string_view nonce, Clock::time_point now) const {
  const std::string time(nonce.substr(0, kTimeDigits));
  if (!Same(nonce, Signed(time))) return false;
  const auto age = now.time_since_epoch() - std::chrono::microseconds(std::stoll(time));
  return age >= -kNonceLife && age <= kNonceLife;
}

bool Nonces::Use(const std::string& nonce, std::uint32_t count) {
  const std::lock_guard lock(mutex_);
  while (used_.size() >= kMaxUses) used_.erase(used_.begin());
  return used_.emplace(nonce, count).second;
}

std::optional<Refusal> Authenticator::Refuse(const Request& request) {
  if (settings_.scheme != AuthenticationScheme::kDigest) return RefuseUnlessBasic(request);
  const std::string_view credentials = request.Header("Authorization");
  const Verdict verdict = CheckDigest(request, credentials);
  if (verdict == Verdict::kGood) return std::nullopt;
  return Refusal{Challenge(AuthenticationScheme::kDigest, verdict), verdict == Verdict::kBad && !credentials.empty()};
}

std::optional<Refusal> Authenticator::RefuseUnlessBasic(const Request& request) const {
  const std::string_view credentials = request.Header("Authorization");
  const auto encoded = AfterScheme(credentials, "Basic");
  const auto login = encoded ? DecodeBase64(*encoded) : std::nullopt;
  if (settings_.users.empty() || (login && FindUser(*login, ':') != nullptr)) return std::nullopt;
  return Refusal{Challenge(AuthenticationScheme::kBasic, Verdict::kBad), !credentials.empty()};
}

std::optional<Refusal> Authenticator::RefuseLoginBase(std::string_view login) const {
  if (settings_.users.empty() || FindUser(login, '/') != nullptr) return std::nullopt;
  return Refusal{Challenge(AuthenticationScheme::kBasic, Verdict::kBad), true};
}

const User* Authenticator::FindUser(std::string_view login, char separator) const {
  const User* found = nullptr;
  for (const User& user : settings_.users) {
    if (SameSecret(login, user.name + separator + user.password)) found = &user;
  }
  return found;
}

std::string Authenticator::NameIn(std::string_view login, char separator) const {
  if (const User* user = FindUser(login, separator)) return user->name;
  const std::size_t end = login.find(separator);
  // Without a separator it may as well be a password.
  return end == std::string_view::npos ? std::string() : std::string(login.substr(0, end));
}

std::string Authenticator::UserOf(const Request& request) {
  const std::string_view credentials = request.Header("Authorization");
  if (const auto digest = AfterScheme(credentials, "Digest")) return ParseParameters(*digest)["username"];
  const auto encoded = AfterScheme(credentials, "Basic");
  const std::string login = (encoded ? DecodeBase64(*encoded) : std::nullopt).value_or("");
  const std::size_t colon = login.find(':');
  return colon == std::string::npos ? std::string() : login.substr(0, colon);
}

Authenticator::Verdict Authenticator::CheckDigest(const Request& request, std::string_view credentials) {
  Parameters given = ParseParameters(AfterScheme(credentials, "Digest").value_or(""));
  const std::string& nc = given["nc"];
  std::uint32_t count = 0;
  const auto [end, error] = std::from_chars(nc.data(), nc.data() + nc.size(), count, 16);
  if (error != std::errc() || end != nc.data() + nc.size() || nc.size() != 8) return Verdict::kBad;
  if (!given["algorithm"].empty() && !EqualIgnoringCase(given["algorithm"], "MD5")) return Verdict::kBad;
  if (given["qop"] != "auth" || given["cnonce"].empty() || given["realm"] != kRealm) return Verdict::kBad;
  if (given["uri"] != request.target) return Verdict::kOtherAddress;
  if (!nonces_.IsGood(given["nonce"], Nonces::Clock::now())) return Verdict::kStale;

  const std::string proven =
      ":" + given["nonce"] + ":" + nc + ":" + given["cnonce"] + ":auth:" + Md5(request.method + ":" + request.target);
  bool is_good = false;
  for (const User& user : settings_.users) {
    const std::string user_hash = Md5(user.name + ":" + std::string(kRealm) + ":" + user.password);
    is_good |= user.name == given["username"] && Same(Md5(user_hash + proven), given["response"]);
  }
  if (!is_good) return Verdict::kBad;
  return nonces_.Use(given["nonce"], count) ? Verdict::kGood : Verdict::kStale;
}

Response Authenticator::Challenge(AuthenticationScheme scheme, Verdict verdict) const {
  if (verdict == Verdict::kOtherAddress) return TextResponse(400, "The credentials were made for another address.");
  Response response = TextResponse(401, "A user name and a password are needed.");
  const std::string realm = "realm=\"" + std::string(kRealm) + "\"";
  const std::string basic = "Basic " + realm + ", charset=\"UTF-8\"";
  const std::string digest = "Digest " + realm + ", qop=\"auth\", algorithm=MD5, nonce=\"" +
                             nonces_.Make(Nonces::Clock::now()) + "\"" +
                             (verdict == Verdict::kStale ? ", stale=true" : "");
  response.headers.emplace_back("WWW-Authenticate", scheme == AuthenticationScheme::kBasic ? basic : digest);
  return response;
}

}  // namespace orbelcast::camera_server
