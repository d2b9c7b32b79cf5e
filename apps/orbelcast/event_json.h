#pragma once

#include "remote/json.h"

namespace orbelcast {

/// `value` with its texts as HidePasswords leaves them.
Json WithoutPasswords(Json value);

}  // namespace orbelcast
