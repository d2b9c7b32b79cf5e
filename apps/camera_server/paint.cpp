#include "paint.h"

#include <cstdint>

namespace orbelcast::camera_server {

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
