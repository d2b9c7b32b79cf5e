#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "camera_server/settings.h"

/// What the targets of requests say. Everything is taken as raw bytes: nothing is decoded. What is read of a target
/// points into it.
namespace orbelcast::camera_server {

inline constexpr std::string_view kLivePath = "/live/";
inline constexpr std::string_view kPictureCodeMark = "?live-special";
inline constexpr std::string_view kLoginBase = "/$openlogin/";
inline constexpr std::string_view kCommandMark = "/srv_vigilbox$";

/// Names and values of a query's items, which "&" separates; an item without "=" has an empty value.
std::vector<std::pair<std::string_view, std::string_view>> QueryItems(std::string_view query);
/// The value of the first item of that name in the query behind the target's first "?", or empty.
std::string_view QueryValue(std::string_view target, std::string_view name);

/// A number of 0 or more, of digits and nothing else; nothing for any other text, and for one beyond an int.
std::optional<int> WholeNumber(std::string_view text);

/// The target of a live picture: /live/CAMERA, then any path, then one of
///   ?live-specialWWWWxHHHHQQQ              the viewers' picture code: four digits of width, four of height, three of
///                                          quality
///   ?width=W&height=H&quality=Q            any of the three
struct LiveAddress {
  int camera = 0;  ///< 0 where no camera can have that number
  /// The path behind the camera's number, without its first "/"; viewers put "user:password" there.
  std::string_view login{};
  PictureForm form{};  ///< bounded
};
/// None when `target` is no live address. What it does not say, or says in a way that cannot be read, is taken from
/// `form`.
std::optional<LiveAddress> ParseLiveAddress(std::string_view target, const PictureForm& form);

/// The target of a command behind a login base: /$openlogin/USER/PASSWORD/srv_vigilbox$COMMAND
struct LoginBaseAddress {
  /// "USER/PASSWORD" as typed. Either may hold blanks, slashes and any other bytes, so it is compared whole.
  std::string_view login{};
  /// What follows "srv_vigilbox$", empty where there is none: "output=3+1".
  std::string_view command{};
};
/// None when `target` does not begin with the login base. The login ends at the first "/srv_vigilbox$".
std::optional<LoginBaseAddress> ParseLoginBase(std::string_view target);

/// Year, month, day, hour, minute and second as a person typed them: a part that begins with no digit is missing, and
/// any number may come.
using TypedTime = std::array<std::optional<int>, 6>;

/// What the command img asks for:
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

}  // namespace orbelcast::camera_server
