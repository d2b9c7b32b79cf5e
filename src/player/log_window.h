#pragma once

#include <vector>

#include "toolkit/controls.h"

namespace orbelcast {

/// Shows the server's activity log.
struct LogWindow final : Window {
  LogWindow();

  TextBox Log;

  std::vector<NamedChild> Children() override;

 protected:
  void Load() override;
};

}  // namespace orbelcast
