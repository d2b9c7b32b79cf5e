#include "platform/controls.h"

#include "platform/rounding.h"

namespace orbelcast {

Surface& PictureBox::Canvas(int twips_x, int twips_y) {
  const int width = twips_x > 0 ? static_cast<int>(RoundToEven(Width / static_cast<float>(twips_x))) : 0;
  const int height = twips_y > 0 ? static_cast<int>(RoundToEven(Height / static_cast<float>(twips_y))) : 0;
  if (width != surface_.Width() || height != surface_.Height()) surface_.Resize(width, height, BackColor);
  return surface_;
}

}  // namespace orbelcast
