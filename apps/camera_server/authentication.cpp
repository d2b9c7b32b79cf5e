#include "authentication.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/hmac.h>
#include <openssl/rand.h>

#include <algorithm>
#include <charconv>
#include <span>
#include <stdexcept>

#include "toolkit/ascii.h"
#include "toolkit/hexadecimal.h"

namespace orbelcast::camera_server {

namespace {

constexpr std::string_view kRealm = "Orbelcast cameras";
/// How long a nonce is taken, by the server's clock: a client that comes later is asked again, with a fresh one.
constexpr std::chrono::minutes kNonceLife{5};
/// Nonces whose counts are remembered: some hundred clients' of several minutes.
constexpr std::size_t kMaxUsedNonces = 4096;
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

/// The parameters of Digest credentials, such as username="u", nc=00000001. Stops at what cannot be read.
class Parameters {
 public:
  explicit Parameters(std::string_view text) : rest_(text) {
    while (ReadOne()) {
    }
  }

  std::string_view operator[](std::string_view name) const {
    const auto found = std::find_if(values_.begin(), values_.end(),
                                    [&](const auto& value) { return EqualIgnoringCase(value.first, name); });
    return found == values_.end() ? std::string_view() : std::string_view(found->second);
  }

 private:
  bool ReadOne() {
    rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t,"), rest_.size()));
    const std::size_t equals = rest_.find('=');
    if (equals == std::string_view::npos) return false;
    std::string name(rest_.substr(0, equals));
    rest_.remove_prefix(equals + 1);
    values_.emplace_back(std::move(name), rest_.starts_with('"') ? ReadQuoted() : ReadToken());
    return true;
  }

  std::string ReadQuoted() {
    std::string value;
    std::size_t at = 1;
    for (; at < rest_.size() && rest_[at] != '"'; ++at) {
      if (rest_[at] == '\\' && at + 1 < rest_.size()) ++at;
      value += rest_[at];
    }
    rest_.remove_prefix(std::min(at + 1, rest_.size()));
    return value;
  }

  std::string ReadToken() {
    std::string value(rest_.substr(0, rest_.find_first_of(", \t")));
    rest_.remove_prefix(value.size());
    return value;
  }

  std::string_view rest_;
  std::vector<std::pair<std::string, std::string>> values_;
};

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

std::string Nonces::Sign(std::string_view time) const {
  std::array<unsigned char, EVP_MAX_MD_SIZE> hash{};
  unsigned size = 0;
  HMAC(EVP_sha256(), secret_.data(), static_cast<int>(secret_.size()),
       reinterpret_cast<const unsigned char*>(time.data()), time.size(), hash.data(), &size);
  return Hexadecimal(std::span(hash).first(size)).substr(0, 32);
}

std::string Nonces::Make(Clock::time_point now) const {
  const auto microseconds = std::chrono::duration_cast<std::chrono::microseconds>(now.time_since_epoch()).count();
  std::array<unsigned char, kTimeDigits / 2> bytes{};
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    bytes.at(i) = static_cast<unsigned char>(microseconds >> (8 * (bytes.size() - 1 - i)));
  }
  const std::string time = Hexadecimal(bytes);
  return time + Sign(time);
}

bool Nonces::IsGood(std::string_view nonce, Clock::time_point now) const {
  if (nonce.size() < kTimeDigits || !Same(nonce.substr(kTimeDigits), Sign(nonce.substr(0, kTimeDigits)))) return false;
  std::int64_t microseconds = 0;
  std::from_chars(nonce.data(), nonce.data() + kTimeDigits, microseconds, 16);
  const auto age = now.time_since_epoch() - std::chrono::microseconds(microseconds);
  return age >= -kNonceLife && age <= kNonceLife;
}

bool Nonces::Use(const std::string& nonce, std::uint32_t count) {
  constexpr std::uint32_t kRemembered = 64;
  const std::lock_guard lock(mutex_);
  while (used_.size() >= kMaxUsedNonces) used_.erase(used_.begin());
  Used& used = used_[nonce];
  if (count > used.highest) {
    const std::uint32_t step = count - used.highest;
    used.seen = (step < kRemembered ? used.seen << step : 0) | 1;
    used.highest = count;
    return true;
  }
  const std::uint32_t behind = used.highest - count;
  const std::uint64_t bit = behind < kRemembered ? std::uint64_t{1} << behind : 0;
  if (bit == 0 || (used.seen & bit) != 0) return false;
  used.seen |= bit;
  return true;
}

std::optional<Refusal> Authenticator::Refuse(const Request& request) {
  if (settings_.scheme == AuthenticationScheme::kNone) return std::nullopt;
  if (settings_.scheme == AuthenticationScheme::kBasic) return RefuseUnlessBasic(request);
  const std::string_view credentials = request.Header("Authorization");
  const Verdict verdict = CheckDigest(request, credentials);
  if (verdict == Verdict::kGood) return std::nullopt;
  return Refusal{Challenge(AuthenticationScheme::kDigest, verdict), verdict == Verdict::kBad && !credentials.empty()};
}

std::optional<Refusal> Authenticator::RefuseUnlessBasic(const Request& request) const {
  const std::string_view credentials = request.Header("Authorization");
  if (settings_.users.empty() || CheckBasic(credentials)) return std::nullopt;
  return Refusal{Challenge(AuthenticationScheme::kBasic, Verdict::kBad), !credentials.empty()};
}

std::optional<Refusal> Authenticator::RefuseLoginBase(std::string_view login) const {
  bool is_login = settings_.users.empty();
  for (const User& user : settings_.users) is_login |= SameSecret(login, user.name + "/" + user.password);
  if (is_login) return std::nullopt;
  return Refusal{Challenge(AuthenticationScheme::kBasic, Verdict::kBad), true};
}

bool Authenticator::IsLogin(std::string_view login) const {
  bool is_login = false;
  for (const User& user : settings_.users) is_login |= SameSecret(login, user.name + ":" + user.password);
  return is_login;
}

std::string Authenticator::UserOfLoginBase(std::string_view login) const {
  return UserBefore(login, '/');
}

std::string Authenticator::UserOfLogin(std::string_view login) const {
  return UserBefore(login, ':');
}

std::string Authenticator::UserBefore(std::string_view login, char separator) const {
  for (const User& user : settings_.users) {
    if (SameSecret(login, user.name + separator + user.password)) return user.name;
  }
  const std::size_t end = login.find(separator);
  // Without a separator it may as well be a password.
  return end == std::string_view::npos ? std::string() : std::string(login.substr(0, end));
}

std::string Authenticator::UserOf(const Request& request) {
  const std::string_view credentials = request.Header("Authorization");
  if (const auto digest = AfterScheme(credentials, "Digest")) return std::string(Parameters(*digest)["username"]);
  const auto encoded = AfterScheme(credentials, "Basic");
  const std::string login = (encoded ? DecodeBase64(*encoded) : std::nullopt).value_or("");
  const std::size_t colon = login.find(':');
  return colon == std::string::npos ? std::string() : login.substr(0, colon);
}

bool Authenticator::CheckBasic(std::string_view credentials) const {
  const auto encoded = AfterScheme(credentials, "Basic");
  const auto login = encoded ? DecodeBase64(*encoded) : std::nullopt;
  return login && IsLogin(*login);
}

Authenticator::Verdict Authenticator::CheckDigest(const Request& request, std::string_view credentials) {
  const auto text = AfterScheme(credentials, "Digest");
  if (!text) return Verdict::kBad;
  const Parameters given(*text);
  const std::string nonce(given["nonce"]);
  const std::string nc(given["nc"]);
  std::uint32_t count = 0;
  const auto [end, error] = std::from_chars(nc.data(), nc.data() + nc.size(), count, 16);
  if (error != std::errc() || end != nc.data() + nc.size() || nc.size() != 8) return Verdict::kBad;
  const std::string_view algorithm = given["algorithm"];
  if (!algorithm.empty() && !EqualIgnoringCase(algorithm, "MD5")) return Verdict::kBad;
  if (given["qop"] != "auth" || given["cnonce"].empty() || given["realm"] != kRealm) return Verdict::kBad;
  if (given["uri"] != request.target) return Verdict::kOtherAddress;
  if (!nonces_.IsGood(nonce, Nonces::Clock::now())) return Verdict::kStale;

  const std::string proven = ":" + nonce + ":" + nc + ":" + std::string(given["cnonce"]) +
                             ":auth:" + Md5(request.method + ":" + request.target);
  bool is_good = false;
  for (const User& user : settings_.users) {
    const std::string user_hash = Md5(user.name + ":" + std::string(kRealm) + ":" + user.password);
    is_good |= user.name == given["username"] && Same(Md5(user_hash + proven), given["response"]);
  }
  if (!is_good) return Verdict::kBad;
  return nonces_.Use(nonce, count) ? Verdict::kGood : Verdict::kStale;
}

Response Authenticator::Challenge(AuthenticationScheme scheme, Verdict verdict) const {
  if (verdict == Verdict::kOtherAddress) return TextResponse(400, "The credentials were made for another address.");
  Response response = TextResponse(401, "A user name and a password are needed.");
  const std::string realm = "realm=\"" + std::string(kRealm) + "\"";
  if (scheme == AuthenticationScheme::kBasic) {
    response.headers.emplace_back("WWW-Authenticate", "Basic " + realm + ", charset=\"UTF-8\"");
  } else {
    response.headers.emplace_back("WWW-Authenticate", "Digest " + realm + ", qop=\"auth\", algorithm=MD5, nonce=\"" +
                                                          nonces_.Make(Nonces::Clock::now()) + "\"" +
                                                          (verdict == Verdict::kStale ? ", stale=true" : ""));
  }
  return response;
}

}  // namespace orbelcast::camera_server
