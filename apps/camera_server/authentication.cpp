#include "camera_server/authentication.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/rand.h>

#include <algorithm>
#include <array>
#include <iomanip>
#include <map>
#include <span>
#include <sstream>
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

std::string Hash(const EVP_MD* kind, std::string_view text) {
  std::array<unsigned char, EVP_MAX_MD_SIZE> hash{};
  unsigned size = 0;
  if (EVP_Digest(text.data(), text.size(), hash.data(), &size, kind, nullptr) != 1) {
    throw std::runtime_error("MD5 or SHA-256 is not available, so nobody can log in");
  }
  return Hexadecimal(std::span(hash).first(size));
}

std::string Md5(std::string_view text) {
  return Hash(EVP_md5(), text);
}

/// Takes as long wherever the texts differ, so that nobody can guess one from how long it took.
bool Same(std::string_view a, std::string_view b) {
  return a.size() == b.size() && CRYPTO_memcmp(a.data(), b.data(), a.size()) == 0;
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
  std::istringstream rest{std::string(text)};
  for (std::string name; std::getline(rest, name, '=');) {
    std::string value;
    if (rest.peek() == '"') {
      rest >> std::quoted(value);
    } else {
      std::getline(rest, value, ',');
      value = Trimmed(value);
    }
    parameters.emplace(LowerCase(std::string(Trimmed(name, " \t,"))), value);
  }
  return parameters;
}

/// The credentials behind the scheme's name; nothing when they are of another scheme.
std::optional<std::string_view> AfterScheme(std::string_view credentials, std::string_view scheme) {
  const std::size_t blank = std::min(credentials.find(' '), credentials.size());
  if (!EqualIgnoringCase(credentials.substr(0, blank), scheme)) return std::nullopt;
  return Trimmed(credentials.substr(blank));
}

/// The "USER:PASSWORD" of Basic credentials; nothing when they are of another scheme or cannot be read.
std::optional<std::string> BasicLogin(std::string_view credentials) {
  const auto encoded = AfterScheme(credentials, "Basic");
  return encoded ? DecodeBase64(*encoded) : std::nullopt;
}

/// The text before the first separator. Without one it may as well be a password.
std::string NameBefore(std::string_view login, char separator) {
  const std::size_t end = login.find(separator);
  return end == std::string_view::npos ? std::string() : std::string(login.substr(0, end));
}

}  // namespace

Authenticator::Authenticator(const Settings& settings) : settings_(settings) {
  std::array<unsigned char, 32> bytes{};
  if (RAND_bytes(bytes.data(), static_cast<int>(bytes.size())) != 1) throw std::runtime_error("no random bytes");
  secret_ = Hexadecimal(bytes);
}

std::string Authenticator::NonceOf(const std::string& time) const {
  return time + Hash(EVP_sha256(), secret_ + Hash(EVP_sha256(), secret_ + time)).substr(0, 32);
}

bool Authenticator::IsGoodNonce(const std::string& nonce) const {
  const std::string time = nonce.substr(0, kTimeDigits);
  if (!Same(nonce, NonceOf(time))) return false;
  const auto age = WallClock::now().time_since_epoch() - std::chrono::microseconds(std::stoll(time));
  return age >= -kNonceLife && age <= kNonceLife;
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
  const auto login = BasicLogin(credentials);
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
    // Hashed first, so that the length does not tell either.
    if (Same(Md5(login), Md5(user.name + separator + user.password))) found = &user;
  }
  return found;
}

std::string Authenticator::NameIn(std::string_view login, char separator) const {
  const User* const user = FindUser(login, separator);
  return user != nullptr ? user->name : NameBefore(login, separator);
}

std::string Authenticator::UserOf(const Request& request) {
  const std::string_view credentials = request.Header("Authorization");
  if (const auto digest = AfterScheme(credentials, "Digest")) return ParseParameters(*digest)["username"];
  return NameBefore(BasicLogin(credentials).value_or(""), ':');
}

Authenticator::Verdict Authenticator::CheckDigest(const Request& request, std::string_view credentials) {
  Parameters given = ParseParameters(AfterScheme(credentials, "Digest").value_or(""));
  const std::string& nc = given["nc"];
  if (nc.size() != 8 || nc.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) return Verdict::kBad;
  if (!given["algorithm"].empty() && !EqualIgnoringCase(given["algorithm"], "MD5")) return Verdict::kBad;
  if (given["qop"] != "auth" || given["cnonce"].empty() || given["realm"] != kRealm) return Verdict::kBad;
  if (given["uri"] != request.target) return Verdict::kOtherAddress;
  if (!IsGoodNonce(given["nonce"])) return Verdict::kStale;

  const std::string proven =
      ":" + given["nonce"] + ":" + nc + ":" + given["cnonce"] + ":auth:" + Md5(request.method + ":" + request.target);
  bool is_good = false;
  for (const User& user : settings_.users) {
    const std::string user_hash = Md5(user.name + ":" + std::string(kRealm) + ":" + user.password);
    is_good |= user.name == given["username"] && Same(Md5(user_hash + proven), given["response"]);
  }
  if (!is_good) return Verdict::kBad;
  const std::lock_guard lock(mutex_);
  while (used_.size() >= kMaxUses) used_.erase(used_.begin());
  return used_.insert(given["nonce"] + nc).second ? Verdict::kGood : Verdict::kStale;
}

Response Authenticator::Challenge(AuthenticationScheme scheme, Verdict verdict) const {
  if (verdict == Verdict::kOtherAddress) return TextResponse(400, "The credentials were made for another address.");
  Response response = TextResponse(401, "A user name and a password are needed.");
  const std::string realm = "realm=\"" + std::string(kRealm) + "\"";
  const std::string now = std::to_string(WallClock::now().time_since_epoch() / std::chrono::microseconds(1));
  const std::string digest = "Digest " + realm + ", qop=\"auth\", algorithm=MD5, nonce=\"" + NonceOf(now) + "\"" +
                             (verdict == Verdict::kStale ? ", stale=true" : "");
  response.headers.emplace_back(
      "WWW-Authenticate", scheme == AuthenticationScheme::kDigest ? digest : "Basic " + realm + ", charset=\"UTF-8\"");
  return response;
}

}  // namespace orbelcast::camera_server
