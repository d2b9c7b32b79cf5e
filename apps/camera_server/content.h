#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "camera_server/http_message.h"
#include "camera_server/services.h"

/// What the server tells and shows.
namespace orbelcast::camera_server {

/// The answer that carries a picture: its time code, whether the camera records now, and `status` for people.
Response PictureResponse(const Settings& settings, int camera, const Picture& picture, const std::string& status);

/// What the server says of itself: lines of a key and a value, each with CR LF. `authority` is the
/// host and port under which the client reached the server; `running` is for how long it has run.
std::string InfoText(const Services& services, const std::string& authority, std::chrono::seconds running);

/// A web page with all cameras, and how outputs, inputs and alerts stand.
std::string HomePage(const Services& services);

}  // namespace orbelcast::camera_server
