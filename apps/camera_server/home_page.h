#pragma once

#include <string>

#include "settings.h"

namespace orbelcast::camera_server {

/// The page that shows a browser all cameras, each with its address.
std::string HomePage(const Settings& settings);

}  // namespace orbelcast::camera_server
