#include "adapters/curl/http_login.h"

#include <openssl/evp.h>
#include <openssl/rand.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <span>
#include <utility>

#include "toolkit/ascii.h"

namespace orbelcast {

namespace {

struct Parameter {
  std::string_view name;
  std::string value;
};
struct Challenge {
  std::string_view scheme;
  std::vector<Parameter> parameters;
};

/// Reads a WWW-Authenticate header: challenges, each a scheme and its parameters, with commas between all of them. Text
/// after a scheme that is no parameter is skipped.
class ChallengeReader {
 public:
  explicit ChallengeReader(std::string_view text) : rest_(text) {}

  std::vector<Challenge> Read() {
    std::vector<Challenge> challenges;
    while (Skip(" \t,"), !rest_.empty()) {
      const std::string_view word = Take(rest_.find_first_of(" \t,=\""));
      Skip(" \t");
      if (!rest_.starts_with('=')) {
        // A quotation mark out of place is passed over, so that each turn takes something.
        if (word.empty()) rest_.remove_prefix(1);
        if (!word.empty()) challenges.push_back({word, {}});
        continue;
      }
      rest_.remove_prefix(1);
      Skip(" \t");
      std::string value = rest_.starts_with('"') ? Quoted() : std::string(Take(rest_.find_first_of(" \t,")));
      if (!challenges.empty()) challenges.back().parameters.push_back({word, std::move(value)});
    }
    return challenges;
  }

 private:
  void Skip(std::string_view letters) { Take(rest_.find_first_not_of(letters)); }
  std::string_view Take(std::size_t count) {
    const std::string_view taken = rest_.substr(0, count);
    rest_.remove_prefix(taken.size());
    return taken;
  }
  std::string Quoted() {
    std::string value;
    std::size_t at = 1;
    for (; at < rest_.size() && rest_[at] != '"'; ++at) {
      if (rest_[at] == '\\' && at + 1 < rest_.size()) ++at;
      value += rest_[at];
    }
    rest_.remove_prefix(std::min(at + 1, rest_.size()));
    return value;
  }

  std::string_view rest_;
};

/// True where `word` is one of a list with commas between.
bool Lists(std::string_view list, std::string_view word) {
  while (!list.empty()) {
    const std::size_t end = std::min(list.find(','), list.size());
    if (EqualIgnoringCase(Trimmed(list.substr(0, end)), word)) return true;
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return false;
}

std::optional<DigestChallenge> ReadDigest(const Challenge& challenge) {
  DigestChallenge digest;
  bool has_nonce = false;
  bool has_protection = false;
  std::size_t bytes = 0;
  for (const auto& [name, value] : challenge.parameters) {
    bytes += value.size();
    if (HasControlCharacter(value) || bytes > DigestChallenge::kMaxChallengeBytes) return std::nullopt;
    if (EqualIgnoringCase(name, "realm")) digest.realm = value;
    if (EqualIgnoringCase(name, "nonce")) {
      digest.nonce = value;
      has_nonce = true;
    }
    if (EqualIgnoringCase(name, "opaque")) digest.opaque = value;
    if (EqualIgnoringCase(name, "stale")) digest.stale = EqualIgnoringCase(value, "true");
    if (EqualIgnoringCase(name, "algorithm")) digest.algorithm = value;
    if (EqualIgnoringCase(name, "qop")) {
      has_protection = true;
      digest.counts = Lists(value, "auth");
    }
  }
  // With "auth-int" alone the answer would have to cover what was sent before it is known.
  if (!has_nonce || (has_protection && !digest.counts)) return std::nullopt;
  std::string_view algorithm = digest.algorithm;
  constexpr std::string_view kSession = "-sess";
  if (algorithm.size() > kSession.size() &&
      EqualIgnoringCase(algorithm.substr(algorithm.size() - kSession.size()), kSession)) {
    digest.session = true;
    algorithm.remove_suffix(kSession.size());
  }
  if (EqualIgnoringCase(algorithm, "SHA-256")) {
    digest.hash = DigestChallenge::Hash::kSha256;
  } else if (!algorithm.empty() && !EqualIgnoringCase(algorithm, "MD5")) {
    return std::nullopt;
  }
  return digest;
}

std::string Hexadecimal(std::span<const unsigned char> bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  for (const unsigned char byte : bytes) {
    text += kDigits[byte >> 4];
    text += kDigits[byte & 0xf];
  }
  return text;
}

/// Empty where the hash is not available, as MD5 is not on some machines.
std::string HashOf(DigestChallenge::Hash hash, const std::string& text) {
  std::array<unsigned char, EVP_MAX_MD_SIZE> bytes{};
  unsigned size = 0;
  const EVP_MD* const kind = hash == DigestChallenge::Hash::kMd5 ? EVP_md5() : EVP_sha256();
  if (EVP_Digest(text.data(), text.size(), bytes.data(), &size, kind, nullptr) != 1) return {};
  return Hexadecimal(std::span(bytes).first(size));
}

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char each : text) {
    if (each == '"' || each == '\\') quoted += '\\';
    quoted += each;
  }
  return quoted + '"';
}

std::string Base64(const std::string& text) {
  std::string encoded((text.size() + 2) / 3 * 4 + 1, '\0');
  const int size = EVP_EncodeBlock(reinterpret_cast<unsigned char*>(encoded.data()),
                                   reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()));
  encoded.resize(static_cast<std::size_t>(size));
  return encoded;
}

/// Empty where there is no randomness to be had.
std::string RandomText() {
  std::array<unsigned char, 16> bytes{};
  if (RAND_bytes(bytes.data(), static_cast<int>(bytes.size())) != 1) return {};
  return Hexadecimal(bytes);
}

}  // namespace

std::optional<DigestChallenge> DigestChallenge::Find(std::string_view header) {
  for (const Challenge& each : ChallengeReader(header).Read()) {
    if (!EqualIgnoringCase(each.scheme, "Digest")) continue;
    if (auto digest = ReadDigest(each)) return digest;
  }
  return std::nullopt;
}

bool AsksForBasic(std::string_view header) {
  return std::ranges::any_of(ChallengeReader(header).Read(),
                             [](const Challenge& each) { return EqualIgnoringCase(each.scheme, "Basic"); });
}

std::string DigestAuthorization(const DigestChallenge& challenge, const Credentials& credentials,
                                std::string_view method, std::string_view target, const std::string& client_nonce,
                                std::uint32_t count) {
  const auto hash = [&](const std::string& text) { return HashOf(challenge.hash, text); };
  char counted[9];
  std::snprintf(counted, sizeof counted, "%08x", count);

  std::string who = hash(credentials.user_name + ":" + challenge.realm + ":" + credentials.password);
  if (challenge.session) who = hash(who + ":" + challenge.nonce + ":" + client_nonce);
  const std::string what = hash(std::string(method) + ":" + std::string(target));
  const std::string when =
      challenge.counts ? challenge.nonce + ":" + counted + ":" + client_nonce + ":auth" : challenge.nonce;
  const std::string response = hash(who + ":" + when + ":" + what);
  if (response.empty() || who.empty()) return {};

  std::string text = "Digest username=" + Quoted(credentials.user_name) + ", realm=" + Quoted(challenge.realm) +
                     ", nonce=" + Quoted(challenge.nonce) + ", uri=" + Quoted(target) + ", response=\"" + response +
                     '"';
  if (!challenge.algorithm.empty()) text += ", algorithm=" + challenge.algorithm;
  if (!challenge.opaque.empty()) text += ", opaque=" + Quoted(challenge.opaque);
  if (challenge.counts) text += std::string(", qop=auth, nc=") + counted;
  if (challenge.counts || challenge.session) text += ", cnonce=" + Quoted(client_nonce);
  return text;
}

bool HttpLogin::Take(const std::vector<std::string_view>& headers) {
  for (const std::string_view header : headers) {
    auto challenge = DigestChallenge::Find(header);
    if (!challenge) continue;
    std::string client_nonce = RandomText();
    if (client_nonce.empty()) continue;
    challenge_ = std::move(challenge);
    client_nonce_ = std::move(client_nonce);
    requests_ = 0;
    basic_ = false;
    return true;
  }
  const bool had_basic = basic_;
  basic_ = std::ranges::any_of(headers, AsksForBasic);
  challenge_.reset();
  return basic_ && !had_basic;
}

std::string HttpLogin::Authorization(std::string_view method, std::string_view target) {
  if (challenge_) {
    return DigestAuthorization(*challenge_, credentials_, method, target, client_nonce_, ++requests_);
  }
  return basic_ ? "Basic " + Base64(credentials_.user_name + ":" + credentials_.password) : std::string();
}

}  // namespace orbelcast
