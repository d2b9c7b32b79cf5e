#include "paint.h"

#include <array>
#include <cstdint>
#include <numbers>

namespace orbelcast::camera_server {

namespace {

constexpr double kTurn = 2 * std::numbers::pi;

constexpr std::array<Mood, 4> kMoods{{
    {.sky_top = Rgb(0x3f86d8),
     .sky_bottom = Rgb(0xcfe6f5),
     .far_hills = Rgb(0x86a9bf),
     .near_hills = Rgb(0x5f9160),
     .light = {1, 1, 1},
     .sun = Rgb(0xfff6d0),
     .sun_x = 0.80,
     .sun_y = 74,
     .sun_radius = 26,
     .cloud = Rgb(0xffffff),
     .cloud_share = 0.92,
     .mist = 0,
     .is_dark = false},
    {.sky_top = Rgb(0x3d3a78),
     .sky_bottom = Rgb(0xf7a866),
     .far_hills = Rgb(0x7b5a80),
     .near_hills = Rgb(0x574f52),
     .light = {0.80, 0.62, 0.58},
     .sun = Rgb(0xffd27a),
     .sun_x = 0.68,
     .sun_y = 208,
     .sun_radius = 32,
     .cloud = Rgb(0xe88f86),
     .cloud_share = 0.75,
     .mist = 0.05,
     .is_dark = true},
    {.sky_top = Rgb(0x070d22),
     .sky_bottom = Rgb(0x27365f),
     .far_hills = Rgb(0x18233f),
     .near_hills = Rgb(0x131e2c),
     .light = {0.27, 0.32, 0.47},
     .sun = Rgb(0xf2f0df),
     .sun_x = 0.82,
     .sun_y = 78,
     .sun_radius = 20,
     .cloud = Rgb(0x3a4768),
     .cloud_share = 0.55,
     .mist = 0,
     .is_dark = true},
    {.sky_top = Rgb(0xa9bccb),
     .sky_bottom = Rgb(0xf1ebe0),
     .far_hills = Rgb(0xbac7cf),
     .near_hills = Rgb(0x9db1a3),
     .light = {0.86, 0.88, 0.90},
     .sun = Rgb(0xfffbee),
     .sun_x = 0.66,
     .sun_y = 150,
     .sun_radius = 24,
     .cloud = Rgb(0xf7f5f0),
     .cloud_share = 0.6,
     .mist = 0.45,
     .is_dark = false},
}};

}  // namespace

const Mood& MoodOf(int camera) {
  return kMoods.at(static_cast<std::size_t>(camera - 1) % kMoods.size());
}

double Scatter(int camera, int index) {
  std::uint32_t bits =
      static_cast<std::uint32_t>(camera) * 0x9e3779b9u + static_cast<std::uint32_t>(index) * 0x85ebca6bu;
  bits = (bits ^ (bits >> 16)) * 0x7feb352du;
  bits = (bits ^ (bits >> 15)) * 0x846ca68bu;
  return ((bits ^ (bits >> 16)) & 0xffff) / 65535.0;
}

void SetColour(cairo_t* cr, Colour colour, double opacity) {
  cairo_set_source_rgba(cr, colour.red, colour.green, colour.blue, opacity);
}

void FillRectangle(cairo_t* cr, double x, double y, double width, double height, Colour colour, double opacity) {
  SetColour(cr, colour, opacity);
  cairo_rectangle(cr, x, y, width, height);
  cairo_fill(cr);
}

void AddEllipse(cairo_t* cr, double x, double y, double radius_x, double radius_y) {
  cairo_save(cr);
  cairo_translate(cr, x, y);
  cairo_scale(cr, radius_x, radius_y);
  cairo_new_sub_path(cr);
  cairo_arc(cr, 0, 0, 1, 0, kTurn);
  cairo_restore(cr);
}

void FillEllipse(cairo_t* cr, double x, double y, double radius_x, double radius_y, Colour colour, double opacity) {
  SetColour(cr, colour, opacity);
  AddEllipse(cr, x, y, radius_x, radius_y);
  cairo_fill(cr);
}

void AddRoundedRectangle(cairo_t* cr, double x, double y, double width, double height, double radius) {
  cairo_new_sub_path(cr);
  cairo_arc(cr, x + width - radius, y + radius, radius, -kTurn / 4, 0);
  cairo_arc(cr, x + width - radius, y + height - radius, radius, 0, kTurn / 4);
  cairo_arc(cr, x + radius, y + height - radius, radius, kTurn / 4, kTurn / 2);
  cairo_arc(cr, x + radius, y + radius, radius, kTurn / 2, kTurn * 3 / 4);
  cairo_close_path(cr);
}

void FillRoundedRectangle(cairo_t* cr, double x, double y, double width, double height, double radius, Colour colour,
                          double opacity) {
  SetColour(cr, colour, opacity);
  AddRoundedRectangle(cr, x, y, width, height, radius);
  cairo_fill(cr);
}

void FillDownwards(cairo_t* cr, double y0, Colour top, double y1, Colour bottom) {
  cairo_pattern_t* pattern = cairo_pattern_create_linear(0, y0, 0, y1);
  cairo_pattern_add_color_stop_rgb(pattern, 0, top.red, top.green, top.blue);
  cairo_pattern_add_color_stop_rgb(pattern, 1, bottom.red, bottom.green, bottom.blue);
  cairo_set_source(cr, pattern);
  cairo_fill(cr);
  cairo_pattern_destroy(pattern);
}

void FillGlow(cairo_t* cr, double x, double y, double radius, Colour colour, double opacity) {
  cairo_pattern_t* pattern = cairo_pattern_create_radial(x, y, 0, x, y, radius);
  cairo_pattern_add_color_stop_rgba(pattern, 0, colour.red, colour.green, colour.blue, opacity);
  // A straight fall-off would show its edge.
  cairo_pattern_add_color_stop_rgba(pattern, 0.25, colour.red, colour.green, colour.blue, opacity * 0.50);
  cairo_pattern_add_color_stop_rgba(pattern, 0.55, colour.red, colour.green, colour.blue, opacity * 0.14);
  cairo_pattern_add_color_stop_rgba(pattern, 1, colour.red, colour.green, colour.blue, 0);
  cairo_set_source(cr, pattern);
  AddEllipse(cr, x, y, radius, radius);
  cairo_fill(cr);
  cairo_pattern_destroy(pattern);
}

void Line(cairo_t* cr, double x0, double y0, double x1, double y1, double width, Colour colour) {
  SetColour(cr, colour);
  cairo_set_line_width(cr, width);
  cairo_move_to(cr, x0, y0);
  cairo_line_to(cr, x1, y1);
  cairo_stroke(cr);
}

}  // namespace orbelcast::camera_server
