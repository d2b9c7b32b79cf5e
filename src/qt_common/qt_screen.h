#pragma once

#include "platform/screen.h"

namespace orbelcast {

/// The screen that Qt shows the application on.
class QtScreen final : public Screen {
 public:
  int TwipsPerPixelX() const override;
  int TwipsPerPixelY() const override;
  int Width() const override;
  int Height() const override;
};

}  // namespace orbelcast
