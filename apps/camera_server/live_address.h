#pragma once

#include <optional>
#include <string_view>

#include "settings.h"

namespace orbelcast::camera_server {

inline constexpr std::string_view kLivePath = "/live/";
inline constexpr std::string_view kPictureCodeMark = "?live-special";

/// Reads "0640x0480080": four digits of width, "x", four of height, three of quality, and anything behind. The numbers
/// are as they stand, not bounded.
std::optional<PictureForm> ParsePictureCode(std::string_view code);

/// What the target of a live picture says: /live/CAMERA, then any path, then one of
///   ?live-specialWWWWxHHHHQQQ              the viewers' picture code: width, height, quality
///   ?width=W&height=H&quality=Q            any of the three
struct LiveAddress {
  int camera = 0;  ///< 0 where no camera can have that number
  /// The path behind the camera's number, without its first "/"; viewers put "user:password" there.
  std::string_view login;
  PictureForm form;
};

/// None when `target` is no live address. What it does not say, or says in a way that cannot be read, is taken from
/// `form`; sizes and quality are bounded. The result points into `target`.
std::optional<LiveAddress> ParseLiveAddress(std::string_view target, const PictureForm& form);

}  // namespace orbelcast::camera_server
