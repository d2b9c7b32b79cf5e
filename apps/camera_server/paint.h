#pragma once

#include <cairo.h>

#include <memory>

/// What the parts of the scene are painted with: colours, light, and a few shapes on a Cairo context.
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

struct SurfaceDeleter {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
struct ContextDeleter {
  void operator()(cairo_t* context) const { cairo_destroy(context); }
};
using CairoSurface = std::unique_ptr<cairo_surface_t, SurfaceDeleter>;
using CairoContext = std::unique_ptr<cairo_t, ContextDeleter>;

/// The time of day that a camera shows, and all that follows from it.
struct Mood {
  Colour sky_top;
  Colour sky_bottom;
  Colour far_hills;
  Colour near_hills;
  Colour light;  ///< what falls on everything else
  Colour sun;
  double sun_x;  ///< share of the width
  double sun_y;  ///< units from the top
  double sun_radius;
  Colour cloud;
  double cloud_share;  ///< opacity
  double mist;         ///< 0 clear to 1 white
  bool is_dark;        ///< lamps, windows and headlights are on, and there are stars
};

/// Camera 1 has noon, 2 dusk, 3 night, 4 a misty morning, and so on round.
const Mood& MoodOf(int camera);

/// Where things stand. All drawing is in units of which a picture of ordinary shape is 480 high; y grows downwards.
struct Stage {
  double width = 0;
  double height = 0;
  int camera = 1;

  double Horizon() const { return height - 236; }
  double Pavement() const { return height - 116; }  ///< its far edge; it is 22 deep
  double Road() const { return height - 90; }       ///< its far edge; it is 70 deep
};

/// A number from 0 to 1 that is the same whenever the same is asked.
double Scatter(int camera, int index);

void SetColour(cairo_t* cr, Colour colour, double opacity = 1);
void FillRectangle(cairo_t* cr, double x, double y, double width, double height, Colour colour, double opacity = 1);
void FillEllipse(cairo_t* cr, double x, double y, double radius_x, double radius_y, Colour colour, double opacity = 1);
void AddEllipse(cairo_t* cr, double x, double y, double radius_x, double radius_y);
void AddRoundedRectangle(cairo_t* cr, double x, double y, double width, double height, double radius);
void FillRoundedRectangle(cairo_t* cr, double x, double y, double width, double height, double radius, Colour colour,
                          double opacity = 1);
/// Fills the current path from `top` at y0 to `bottom` at y1.
void FillDownwards(cairo_t* cr, double y0, Colour top, double y1, Colour bottom);
/// A disc of light that fades out at `radius`.
void FillGlow(cairo_t* cr, double x, double y, double radius, Colour colour, double opacity);
void Line(cairo_t* cr, double x0, double y0, double x1, double y1, double width, Colour colour);

}  // namespace orbelcast::camera_server
