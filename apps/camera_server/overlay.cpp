#include "overlay.h"

#include <algorithm>

namespace orbelcast::camera_server {

namespace {

// The panel at scale 1, which is that of a picture of 640x480.
constexpr double kMargin = 12;
constexpr double kPanelWidth = 262;
constexpr double kPanelHeight = 92;
constexpr double kInset = 14;
/// The smallest scale: below it the clock cannot be read.
constexpr double kLeastScale = 0.42;

/// Any missing font is replaced by the nearest the system has, in the end by one that Cairo carries itself.
void SetFont(cairo_t* cr, const char* family, double size) {
  cairo_select_font_face(cr, family, CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_BOLD);
  cairo_set_font_size(cr, size);
}

double TextWidth(cairo_t* cr, const std::string& text) {
  cairo_text_extents_t extents;
  cairo_text_extents(cr, text.c_str(), &extents);
  return extents.x_advance;
}

/// `text`, or as much of its beginning as `room` holds, with dots behind.
std::string Shorten(cairo_t* cr, std::string text, double room) {
  if (TextWidth(cr, text) <= room) return text;
  const auto is_inside_character = [](char byte) { return (static_cast<unsigned char>(byte) & 0xc0) == 0x80; };
  while (!text.empty() && TextWidth(cr, text + "…") > room) {
    while (is_inside_character(text.back()) && text.size() > 1) text.pop_back();
    text.pop_back();
  }
  return text + "…";
}

void Write(cairo_t* cr, double x, double y, double size, const char* family, const std::string& text, double room) {
  SetFont(cr, family, size);
  SetColour(cr, Rgb(0xffffff), 0.95);
  cairo_move_to(cr, x, y);
  cairo_show_text(cr, Shorten(cr, text, room).c_str());
}

/// A word with its sign before it: the red dot of a recording, or the triangle of what is played.
void DrawMark(cairo_t* cr, double right, double y, OverlayMark mark) {
  if (mark == OverlayMark::kNone) return;
  const bool is_recording = mark == OverlayMark::kRecording;
  const char* word = is_recording ? "REC" : "ARCHIVE";
  SetFont(cr, "DejaVu Sans", 13);
  const double left = right - TextWidth(cr, word);
  SetColour(cr, Rgb(0xffffff), 0.95);
  cairo_move_to(cr, left, y);
  cairo_show_text(cr, word);
  if (is_recording) {
    FillEllipse(cr, left - 9, y - 5, 5, 5, Rgb(0xff3b30));
  } else {
    SetColour(cr, Rgb(0x7fd18b));
    cairo_move_to(cr, left - 13, y - 10);
    cairo_line_to(cr, left - 4, y - 5);
    cairo_line_to(cr, left - 13, y);
    cairo_fill(cr);
  }
}

}  // namespace

void DrawOverlay(cairo_t* cr, int width, int height, const OverlayText& text) {
  const double fitting = std::min(width / 640.0, height / 480.0);
  const double widest = width / (kPanelWidth + kMargin);
  const double scale = std::min(std::max(fitting, kLeastScale), widest);
  constexpr double kRoom = kPanelWidth - 2 * kInset;
  const double mark_room = text.mark == OverlayMark::kArchive ? 92 : 60;
  cairo_save(cr);
  cairo_scale(cr, scale, scale);
  const double margin = std::min(kMargin, std::max(0.0, (width / scale - kPanelWidth) / 2));
  cairo_translate(cr, margin, margin);
  FillRoundedRectangle(cr, 0, 0, kPanelWidth, kPanelHeight, 9, Rgb(0x0b0f18), 0.58);
  Write(cr, kInset, 63, 38, "DejaVu Sans Mono", LocalTimeWithTenths(text.time), kRoom);
  Write(cr, kInset, 83, 16, "DejaVu Sans Mono", LocalDate(text.time), kRoom);
  DrawMark(cr, kPanelWidth - kInset, 25, text.mark);
  // Last: a name that is no UTF-8 ends this context's drawing.
  Write(cr, kInset, 25, 16, "DejaVu Sans", text.name, kRoom - mark_room);
  cairo_restore(cr);
}

}  // namespace orbelcast::camera_server
