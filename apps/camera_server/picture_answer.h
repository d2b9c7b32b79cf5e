#pragma once

#include <string>

#include "http_message.h"
#include "pictures.h"
#include "settings.h"

namespace orbelcast::camera_server {

/// The answer that carries a picture: its time code, whether the camera records now, and `status` for people.
Response PictureAnswer(const Settings& settings, int camera, const Picture& picture, const std::string& status);

}  // namespace orbelcast::camera_server
