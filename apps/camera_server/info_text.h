#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "settings.h"
#include "site.h"

namespace orbelcast::camera_server {

/// What the server says of itself: lines of a key and a value, each with CR LF. `authority` is the
/// host and port under which the client reached the server; `running` is for how long it has run.
std::string InfoText(const Settings& settings, const Site& site, std::string_view authority,
                     std::chrono::seconds running);

}  // namespace orbelcast::camera_server
