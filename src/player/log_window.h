#pragma once

#include <vector>

#include "toolkit/controls.h"

namespace orbelcast {

/// Shows the server's activity log.
struct LogWindow final : Window {
  /// Twips: its inner size, and that of the box.
  static constexpr float kDesignWidth = 9015;
  static constexpr float kDesignHeight = 4395;

  LogWindow();

  TextBox Log;

  std::vector<NamedChild> Children() override;

 protected:
  void Load() override;
};

}  // namespace orbelcast
