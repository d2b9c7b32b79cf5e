#pragma once

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "camera_server/bounds.h"
#include "camera_server/time_text.h"

namespace orbelcast::camera_server {

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
/// Whose light a live picture shows: the camera's own time of day, which does not pass, or the clock's.
enum class Light { kOwn, kClock };
enum class AuthenticationScheme { kNone, kBasic, kDigest };

/// What the command line chose.
struct Settings {
  std::string address = "127.0.0.1";
  int port = 8080;
  std::vector<std::string> camera_names{};  ///< camera 1 first
  PictureForm form{};                       ///< of a request that asks for none
  Light light = Light::kOwn;
  int archive_hours = 24;
  int archive_step = 1;  ///< seconds
  std::vector<Contact> alerts{};
  std::vector<Contact> inputs{};
  std::vector<Contact> outputs{};
  std::vector<Account> accounts{};
  std::string system_name = "Orbelcast cameras";
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

  bool HasCamera(int camera) const { return camera >= 1 && camera <= static_cast<int>(camera_names.size()); }
  const std::string& NameOf(int camera) const { return camera_names.at(static_cast<std::size_t>(camera - 1)); }
  /// Whether the camera records at that time: kAlternate records ten seconds of twenty, odd and even cameras in turn.
  bool IsRecording(int camera, WallClock::time_point time) const {
    if (recording != Recording::kAlternate) return recording == Recording::kYes;
    return (time.time_since_epoch() / std::chrono::seconds(10) + camera) % 2 != 0;
  }
};

}  // namespace orbelcast::camera_server
