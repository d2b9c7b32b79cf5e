#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "camera_server/http_message.h"
#include "camera_server/settings.h"

namespace orbelcast::camera_server {

/// Digest's nonces: made of the time and a keyed hash of it, so that none has to be remembered before it is used, and
/// good for five minutes. Each count of a nonce serves once, in whatever order they come. Thread-safe.
class Nonces {
 public:
  using Clock = std::chrono::system_clock;

  Nonces();
  std::string Make(Clock::time_point now) const;
  /// Whether the nonce is ours and young enough.
  bool IsGood(std::string_view nonce, Clock::time_point now) const;
  /// Uses a count of a good nonce; false when it was used already.
  bool Use(const std::string& nonce, std::uint32_t count);

 private:
  std::string Signed(std::string time) const;

  std::array<unsigned char, 32> secret_{};
  std::mutex mutex_;
  std::set<std::pair<std::string, std::uint32_t>> used_;  // the oldest first, since a nonce begins with its time
};

/// Why a request is not answered.
struct Refusal {
  Response response;       ///< 401 with a challenge, or 400 for Digest credentials that were made for another address
  bool was_wrong = false;  ///< there were credentials, and they are nobody's
};

/// Lets users in. Where there are none, everybody is let in. Thread-safe.
class Authenticator {
 public:
  /// `settings` outlives this.
  explicit Authenticator(const Settings& settings) : settings_(settings) {}

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

  const Settings& settings_;
  Nonces nonces_;
};

}  // namespace orbelcast::camera_server
