#pragma once

#include <array>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "camera_server/recent.h"
#include "camera_server/settings.h"

/// The targets of requests, and the archive that they lead to. Everything is taken as raw bytes: nothing is decoded.
/// The parts read of a target point into it.
namespace orbelcast::camera_server {

inline constexpr std::string_view kLivePath = "/live/";
inline constexpr std::string_view kStreamPath = "/stream/";
inline constexpr std::string_view kPictureCodeMark = "?live-special";
inline constexpr std::string_view kLoginBase = "/$openlogin/";
inline constexpr std::string_view kCommandMark = "/srv_vigilbox$";

/// `text` before and behind the first `mark`; all of it and nothing where there is none.
std::pair<std::string_view, std::string_view> CutAt(std::string_view text, std::string_view mark);
/// Names and values of a query's items, which "&" separates; an item without "=" has an empty value.
std::vector<std::pair<std::string_view, std::string_view>> QueryItems(std::string_view query);
/// The value of the first item of that name in the query behind the target's first "?", or empty.
std::string_view QueryValue(std::string_view target, std::string_view name);

/// A number of 0 or more, of digits and nothing else; nothing for any other text, and for one beyond an int.
std::optional<int> WholeNumber(std::string_view text);

/// The target of a live picture, /live/CAMERA, or of a stream of them, /stream/CAMERA; then any path, then one of
///   ?live-specialWWWWxHHHHQQQ              the viewers' picture code: four digits of width, four of height, three of
///                                          quality
///   ?width=W&height=H&quality=Q&rate=R     any of them; the rate is a stream's
struct LiveAddress {
  int camera = 0;  ///< 0 where no camera can have that number
  /// The path behind the camera's number, without its first "/"; viewers put "user:password" there.
  std::string_view login{};
  PictureForm form{};         ///< bounded
  std::optional<int> rate{};  ///< pictures a second; none for a single one
};
/// None when `target` is no live address. Parts that it does not have, or that cannot be read, are taken from
/// `form`.
std::optional<LiveAddress> ParseLiveAddress(std::string_view target, const PictureForm& form);

/// The target of a command behind a login base: /$openlogin/USER/PASSWORD/srv_vigilbox$COMMAND
struct LoginBaseAddress {
  /// "USER/PASSWORD" as typed. Either may hold blanks, slashes and any other bytes, so it is compared whole.
  std::string_view login{};
  /// The bytes behind "srv_vigilbox$", empty where there is none: "output=3+1".
  std::string_view command{};
};
/// None when `target` does not begin with the login base. The login ends at the first "/srv_vigilbox$".
std::optional<LoginBaseAddress> ParseLoginBase(std::string_view target);

/// Year, month, day, hour, minute and second as a person typed them: a part that begins with no digit is missing, and
/// any number may come.
using TypedTime = std::array<std::optional<int>, 6>;

/// The command img and its query:
///   Device=ID&Day=D&Month=M&Year=Y&Hour=H&Minute=M&Second=S&FLAG=0&Quality=?live-specialWWWWxHHHHQQQ
/// The order of the items is free, but for the picture code, which ends the query.
struct ArchiveQuery {
  std::string_view device{};
  char move = 0;     ///< FLAG: T top, R reverse, F forward, B bottom, P position
  TypedTime time{};  ///< heeded by P alone
  PictureForm form{};
};
/// Reads what follows the command's "?". None when there is no flag.
std::optional<ArchiveQuery> ParseArchiveQuery(std::string_view query, const PictureForm& form);

/// The cameras' archive: a picture each archive step of whole seconds, back from now as far as the settings say. A
/// visitor (a client's address, user and camera) has a position in it that each request moves. Thread-safe.
class Archive {
 public:
  /// `settings` outlives this.
  explicit Archive(const Settings& settings) : settings_(settings) {}

  /// Moves the visitor and gives the time of the picture where it then is.
  ///
  /// Top and bottom are the first and the last picture. Reverse and forward go one picture back or on, and stay at
  /// either end; a visitor without a position begins with the last picture, or with the first. Position goes to the
  /// picture nearest to the time that was typed, which CompleteTime makes whole.
  WallClock::time_point Move(const std::string& visitor, const ArchiveQuery& query, WallClock::time_point now);

 private:
  const Settings& settings_;
  std::mutex mutex_;
  Recent<std::optional<WallClock::time_point>> positions_{kMaxSessions, kSessionTime};
};

/// Makes a typed time whole: a missing part, and a year, month or day of 0, is that of `base`; a part too large is the
/// largest there is, the day by its month. In local time.
WallClock::time_point CompleteTime(const TypedTime& typed, WallClock::time_point base);

}  // namespace orbelcast::camera_server
