#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orbelcast {

struct Credentials {
  std::string user_name;
  std::string password;
  bool operator==(const Credentials&) const = default;
};

/// A server's Digest challenge (RFC 7616, and RFC 2617 before it).
struct DigestChallenge {
  enum class Hash { kMd5, kSha256 };

  std::string realm;
  std::string nonce;
  std::string opaque;     ///< Given back as it came; empty where there is none.
  std::string algorithm;  ///< As the server writes it; empty where it does not, which means MD5.
  Hash hash = Hash::kMd5;
  bool session = false;  ///< The algorithm's "-sess" form.
  bool counts = false;   ///< It offers the protection "auth", which counts requests; older servers do not.
  bool stale = false;    ///< The answer was right, but its nonce is too old.

  /// A server's nonce and its like are some dozen bytes; they are sent back with each request.
  static constexpr std::size_t kMaxChallengeBytes = 4096;

  /// The first one in a WWW-Authenticate header's value that can be answered: MD5 or SHA-256, no control characters,
  /// kMaxChallengeBytes in all.
  static std::optional<DigestChallenge> Find(std::string_view header);
};

/// True where a WWW-Authenticate header's value asks for Basic, among others perhaps.
bool AsksForBasic(std::string_view header);

/// The Authorization header's value: the answer to a Digest challenge. `count` is that of the requests
/// sent with this nonce, this one included; `client_nonce` is random, and the same for one nonce's requests, which
/// "-sess" needs. Empty where the hash is not available.
std::string DigestAuthorization(const DigestChallenge& challenge, const Credentials& credentials,
                                std::string_view method, std::string_view target, const std::string& client_nonce,
                                std::uint32_t count);

/// One user's login at one server: nothing is sent until the server asks, and from then on at once.
class HttpLogin {
 public:
  explicit HttpLogin(Credentials credentials) : credentials_(std::move(credentials)) {}

  const Credentials& Of() const { return credentials_; }
  /// Takes the challenges of a 401's WWW-Authenticate headers; Digest before Basic. False where a request that is sent
  /// again would not say anything new.
  bool Take(const std::vector<std::string_view>& headers);
  /// True where the challenge taken last says that only the nonce was wrong.
  bool IsStale() const { return challenge_ && challenge_->stale; }
  /// The Authorization header's value for the next request; empty while nothing was asked for.
  std::string Authorization(std::string_view method, std::string_view target);

 private:
  Credentials credentials_;
  bool basic_ = false;
  std::optional<DigestChallenge> challenge_;
  std::string client_nonce_;
  std::uint32_t requests_ = 0;  // with this nonce
};

}  // namespace orbelcast
