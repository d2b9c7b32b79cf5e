#pragma once

#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "camera_server/bounds.h"

namespace orbelcast::camera_server {

using WallClock = std::chrono::system_clock;

/// A time's parts, as std::strftime writes them in `format`: at most 80 bytes. The program keeps the C locale, so names
/// of days and months are English.
inline std::string TimeText(const std::tm& parts, const char* format) {
  std::array<char, 80> text{};
  return {text.data(), std::strftime(text.data(), text.size(), format, &parts)};
}
/// The local time's parts. Before 1970, too, a part of a second is cut off, not rounded up.
inline std::tm LocalParts(WallClock::time_point time) {
  const std::time_t seconds = WallClock::to_time_t(std::chrono::floor<std::chrono::seconds>(time));
  std::tm parts{};
  localtime_r(&seconds, &parts);
  return parts;
}
/// The local time, as std::strftime writes it in `format`.
inline std::string LocalText(WallClock::time_point time, const char* format) {
  return TimeText(LocalParts(time), format);
}
/// The picture's time code: 14 digits, YYYYMMDDhhmmss, local time.
inline std::string TimeCode(WallClock::time_point time) {
  return LocalText(time, "%Y%m%d%H%M%S");
}
/// The part behind the second: ".4" with one digit, ".432" with three. Cut, not rounded.
inline std::string Fraction(WallClock::time_point time, std::size_t digits) {
  const auto within = time - std::chrono::floor<std::chrono::seconds>(time);
  const auto thousandths = std::chrono::duration_cast<std::chrono::milliseconds>(within).count();
  return "." + std::to_string(1000 + thousandths).substr(1, digits);
}
/// "Sun, 06 Nov 1994 08:49:37 GMT"
inline std::string HttpDate(WallClock::time_point time) {
  const std::time_t seconds = WallClock::to_time_t(time);
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  return TimeText(parts, "%a, %d %b %Y %H:%M:%S GMT");
}

inline constexpr const char* kServerName = "Orbelcast-Camera-Server/1.0";

/// Size in pixels and quality (1 to 100) of a picture.
struct PictureForm {
  int width = 640;
  int height = 480;
  int quality = 80;

  /// The nearest within the bounds of bounds.h.
  PictureForm Bounded() const {
    return {.width = std::clamp(width, kMinSide, kMaxWidth),
            .height = std::clamp(height, kMinSide, kMaxHeight),
            .quality = std::clamp(quality, kMinQuality, kMaxQuality)};
  }
};

/// An input, output or alert.
struct Contact {
  std::string name;
  bool is_on = false;  ///< in the settings: when the server starts
};

struct User {
  std::string name;
  std::string password;
};

/// An account of the relay service.
struct Account {
  std::string name;
  std::string address;  ///< host, or host and port; empty: this server, as the client reached it
};

enum class Recording { kYes, kNo, kAlternate };
/// The light of a live picture: the camera's own time of day, which does not pass, or the clock's.
enum class Light { kOwn, kClock };
enum class AuthenticationScheme { kNone, kBasic, kDigest };

/// The choices of the command line.
struct Settings {
  std::string address = "127.0.0.1";
  int port = 8080;
  std::vector<Contact> cameras{};  ///< camera 1 first; of each its name alone
  PictureForm form{};              ///< of a request that asks for none
  Light light = Light::kOwn;
  int archive_hours = 24;
  int archive_step = 1;  ///< seconds
  std::vector<Contact> alerts{};
  std::vector<Contact> inputs{};
  std::vector<Contact> outputs{};
  std::vector<Account> accounts{};
  std::string system_name = "Orbelcast cameras";
  std::string gateway{};  ///< "http://HOST:PORT", from which the server's page has its elements; empty: it has none
  std::vector<std::string> gps{"47.3769", "8.5417", "408"};  ///< latitude, longitude and height, or nothing
  std::string rc_query = "2";
  std::vector<std::string> info_flags{"AES", "CST", "ADM"};
  std::map<std::string, std::string> info_values{};  ///< by key, in place of the server's own
  std::shared_ptr<const std::string> info_text{};    ///< sent in place of the server's own; may be null
  std::string folder{};                              ///< of JPEG files to send; empty draws the pictures
  Recording recording = Recording::kAlternate;
  std::string vigilbox_info{};  ///< the header's value; empty sends none
  std::string plug_ins{};       ///< likewise
  AuthenticationScheme scheme = AuthenticationScheme::kNone;
  std::vector<User> users{};
  std::string log_file{};                                     ///< of requests; empty writes none
  bool shows_passwords = false;                               ///< in the log of requests
  std::vector<std::pair<std::string, std::string>> faults{};  ///< place and fault, as written

  bool HasCamera(int camera) const { return camera >= 1 && camera <= static_cast<int>(cameras.size()); }
  const std::string& NameOf(int camera) const { return cameras.at(static_cast<std::size_t>(camera - 1)).name; }
  /// Whether the camera records at that time: kAlternate records ten seconds of twenty, odd and even cameras in turn.
  bool IsRecording(int camera, WallClock::time_point time) const {
    if (recording != Recording::kAlternate) return recording == Recording::kYes;
    return (time.time_since_epoch() / std::chrono::seconds(10) + camera) % 2 != 0;
  }
};

}  // namespace orbelcast::camera_server
