#pragma once

#include <string>

#include "camera_server/services.h"

namespace orbelcast::camera_server {

/// A web page with all cameras, and how outputs, inputs and alerts stand. Where the settings name a gateway its
/// elements show the cameras, which it asks for at `authority`, host and port under which the browser reached this
/// server.
std::string HomePage(const Services& services, const std::string& authority);

}  // namespace orbelcast::camera_server
