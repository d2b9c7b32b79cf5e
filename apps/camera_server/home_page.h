#pragma once

#include <string>

#include "settings.h"
#include "site.h"

namespace orbelcast::camera_server {

/// The page that shows a browser all cameras, each with its address, and how outputs, inputs and alerts stand.
std::string HomePage(const Settings& settings, const Site& site);

}  // namespace orbelcast::camera_server
