#pragma once

namespace orbelcast::camera_server {

/// Red, green, blue, each from 0 to 1.
struct Colour {
  double red = 0;
  double green = 0;
  double blue = 0;
};

/// 0xRRGGBB
constexpr Colour Rgb(unsigned value) {
  return {((value >> 16) & 0xff) / 255.0, ((value >> 8) & 0xff) / 255.0, (value & 0xff) / 255.0};
}
/// `colour` under `light`.
constexpr Colour Lit(Colour colour, Colour light) {
  return {colour.red * light.red, colour.green * light.green, colour.blue * light.blue};
}
/// From `a` (share 0) to `b` (share 1).
constexpr Colour Mix(Colour a, Colour b, double share) {
  return {a.red + (b.red - a.red) * share, a.green + (b.green - a.green) * share, a.blue + (b.blue - a.blue) * share};
}

}  // namespace orbelcast::camera_server
