#pragma once

#include <cairo.h>

#include <memory>
#include <numbers>

#include "colour.h"
#include "mood.h"

/// What the parts of the scene are painted with: colours, light, and a few shapes on a Cairo context.
namespace orbelcast::camera_server {

struct SurfaceDeleter {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
struct ContextDeleter {
  void operator()(cairo_t* context) const { cairo_destroy(context); }
};
using CairoSurface = std::unique_ptr<cairo_surface_t, SurfaceDeleter>;
using CairoContext = std::unique_ptr<cairo_t, ContextDeleter>;

/// Where things stand. All drawing is in units of which a picture of ordinary shape is 480 high; y grows downwards.
struct Stage {
  double width = 0;
  double height = 0;
  int camera = 1;
  Mood mood;

  double Horizon() const { return height - 236; }
  double Pavement() const { return height - 116; }  ///< its far edge; it is 22 deep
  double Road() const { return height - 90; }       ///< its far edge; it is 70 deep
};

/// A full turn, as angles are counted.
inline constexpr double kTurn = 2 * std::numbers::pi;

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
