#pragma once

#include <optional>
#include <string_view>

namespace orbelcast::camera_server {

inline constexpr std::string_view kLoginBase = "/$openlogin/";
inline constexpr std::string_view kCommandMark = "/srv_vigilbox$";

/// The target of a command behind a login base: /$openlogin/USER/PASSWORD/srv_vigilbox$COMMAND
struct LoginBaseAddress {
  /// "USER/PASSWORD" as typed. Either may hold blanks, slashes and any other bytes, so it is compared whole.
  std::string_view login;
  /// What follows "srv_vigilbox$", empty where there is none: "output=3+1".
  std::string_view command;
};

/// None when `target` does not begin with the login base. The login ends at the first "/srv_vigilbox$". The result
/// points into `target`.
std::optional<LoginBaseAddress> ParseLoginBase(std::string_view target);

}  // namespace orbelcast::camera_server
