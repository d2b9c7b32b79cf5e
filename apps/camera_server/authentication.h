#pragma once

#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "camera_server/http.h"
#include "camera_server/settings.h"

namespace orbelcast::camera_server {

/// A request that is not answered as it would be, and why.
struct Refusal {
  Response response;       ///< 401 with a challenge, or 400 for Digest credentials that were made for another address
  bool was_wrong = false;  ///< there were credentials, and they are nobody's
};

/// Lets users in. Without any, everybody is let in. Thread-safe.
class Authenticator {
 public:
  /// `settings` outlives this. Throws std::runtime_error where there is no randomness to be had.
  explicit Authenticator(const Settings& settings);

  /// Nothing when the request may be answered.
  std::optional<Refusal> Refuse(const Request& request);
  /// The same where only Basic serves, whatever the scheme: viewers send it unasked for the info text.
  std::optional<Refusal> RefuseUnlessBasic(const Request& request) const;
  /// Nothing when `login` is "user/password" of a user, as a login base has it.
  std::optional<Refusal> RefuseLoginBase(std::string_view login) const;
  /// The user whose name, `separator` and password `login` is: ':' where viewers write it into a live address. Null
  /// where it is nobody's.
  const User* FindUser(std::string_view login, char separator) const;
  /// That user's name; where it is nobody's, what stands before its first separator.
  std::string NameIn(std::string_view login, char separator) const;
  /// The user that the request's credentials name, whether they are right or not; empty without any.
  static std::string UserOf(const Request& request);

 private:
  enum class Verdict { kGood, kBad, kStale, kOtherAddress };
  Verdict CheckDigest(const Request& request, std::string_view credentials);
  Response Challenge(AuthenticationScheme scheme, Verdict verdict) const;
  /// A nonce is the time and a keyed hash of it, so that none has to be remembered before it is used.
  std::string NonceOf(const std::string& time) const;
  /// Whether the nonce is this server's and young enough.
  bool IsGoodNonce(const std::string& nonce) const;

  const Settings& settings_;
  std::string secret_;
  std::mutex mutex_;
  std::set<std::string> used_;  // nonces and counts, each of which serves once; the oldest first
};

}  // namespace orbelcast::camera_server
