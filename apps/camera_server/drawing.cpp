#include <cairo.h>
#include <turbojpeg.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <memory>
#include <numbers>
#include <stdexcept>

#include "camera_server/pictures.h"

namespace orbelcast::camera_server {

namespace {

using Surface = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;
using Context = std::unique_ptr<cairo_t, decltype(&cairo_destroy)>;

/// Red, green and blue, each from 0 to 1.
using Colour = std::array<double, 3>;

Colour Mix(const Colour& a, const Colour& b, double share) {
  return {std::lerp(a[0], b[0], share), std::lerp(a[1], b[1], share), std::lerp(a[2], b[2], share)};
}

/// The light at an hour of the day: the colours of the sky, and how bright all below it is.
struct Sky {
  double hour;
  Colour top;
  Colour bottom;
  double brightness;
};
constexpr std::array<Sky, 8> kSkies{{{0, {.03, .06, .15}, {.14, .20, .37}, .5},
                                     {5, {.03, .06, .15}, {.14, .20, .37}, .5},
                                     {7, {.62, .70, .80}, {.96, .87, .80}, .82},
                                     {10, {.20, .50, .84}, {.80, .90, .97}, 1},
                                     {17, {.20, .50, .84}, {.80, .90, .97}, 1},
                                     {19.5, {.25, .22, .48}, {.98, .64, .38}, .75},
                                     {21.5, {.03, .06, .15}, {.14, .20, .37}, .5},
                                     {24, {.03, .06, .15}, {.14, .20, .37}, .5}}};

Sky SkyAt(double hour) {
  const auto* const to =
      std::find_if(kSkies.begin() + 1, kSkies.end() - 1, [&](const Sky& s) { return hour < s.hour; });
  const Sky& from = *(to - 1);
  const double share = (hour - from.hour) / (to->hour - from.hour);
  return {hour, Mix(from.top, to->top, share), Mix(from.bottom, to->bottom, share),
          std::lerp(from.brightness, to->brightness, share)};
}

double HourOf(const View& view) {
  constexpr std::array<double, 4> kOwnHours{13, 19.5, 1, 7};  // of the cameras in turn
  if (view.light == Light::kOwn) return kOwnHours.at(static_cast<std::size_t>(view.camera - 1) % kOwnHours.size());
  const std::tm parts = LocalParts(view.time);
  return parts.tm_hour + parts.tm_min / 60.0;
}

/// Draws on a field that is 480 units high and at least 640 wide.
class Painter {
 public:
  Painter(cairo_t* cr, const View& view, double width)
      : cr_(cr),
        view_(view),
        width_(width),
        seconds_(std::chrono::duration<double>(view.time.time_since_epoch()).count()),
        sky_(SkyAt(HourOf(view))) {}

  void Draw() {
    Use(sky_.top);
    cairo_paint(cr_);
    Gradient(0, kShore, sky_.top, sky_.bottom);
    DrawSun();
    DrawHills(.35, 70, 150);
    DrawHills(.75, 42, 95);
    Gradient(kShore, kHeight, Mix(sky_.bottom, Lit(.25, .45, .6), .55), Lit(.05, .16, .26));
    DrawWaves();
    DrawBoat();
  }

 private:
  static constexpr double kHeight = 480;
  static constexpr double kShore = 270;

  void Use(const Colour& colour, double opacity = 1) {
    cairo_set_source_rgba(cr_, colour[0], colour[1], colour[2], opacity);
  }
  Colour Lit(double red, double green, double blue) const {
    return Mix({0, 0, 0}, {red, green, blue}, sky_.brightness);
  }
  /// A colour of the camera's own, under the light.
  Colour OwnColour(double saturation) const {
    const auto part = [&](double turn) {
      const double wave = std::cos(2 * std::numbers::pi * (view_.camera * .382 + turn));
      return std::lerp(.62, .5 + .4 * wave, saturation);
    };
    return Lit(part(0), part(1 / 3.0), part(2 / 3.0));
  }
  void Gradient(double top, double bottom, const Colour& from, const Colour& to) {
    const std::unique_ptr<cairo_pattern_t, decltype(&cairo_pattern_destroy)> pattern(
        cairo_pattern_create_linear(0, top, 0, bottom), cairo_pattern_destroy);
    cairo_pattern_add_color_stop_rgb(pattern.get(), 0, from[0], from[1], from[2]);
    cairo_pattern_add_color_stop_rgb(pattern.get(), 1, to[0], to[1], to[2]);
    cairo_set_source(cr_, pattern.get());
    cairo_rectangle(cr_, 0, top, width_, bottom - top);
    cairo_fill(cr_);
  }
  /// The sun from six to twenty, else the moon, each on its way over the sky.
  void DrawSun() {
    const bool is_day = sky_.hour >= 6 && sky_.hour < 20;
    const double way = is_day ? (sky_.hour - 6) / 14 : std::fmod(sky_.hour + 4, 24) / 10;
    Use(is_day ? Colour{1, .95, .75} : Colour{.93, .93, .86});
    cairo_arc(cr_, width_ * (.15 + .75 * way), kShore - 210 * std::sin(way * std::numbers::pi), is_day ? 26 : 18, 0, 7);
    cairo_fill(cr_);
  }
  void DrawHills(double nearness, double height, double length) {
    cairo_move_to(cr_, 0, kShore);
    for (double x = 0; x < width_ + 8; x += 8) {
      const double at = x / length + view_.camera * 1.7 + nearness * 5;
      cairo_line_to(cr_, x, kShore - height * (.55 + .3 * std::sin(at) + .15 * std::sin(2.3 * at)));
    }
    cairo_line_to(cr_, width_, kShore);
    Use(Mix(sky_.bottom, OwnColour(.45), nearness));
    cairo_fill(cr_);
  }
  void DrawWaves() {
    cairo_set_line_width(cr_, 2);
    cairo_set_line_cap(cr_, CAIRO_LINE_CAP_ROUND);
    Use(sky_.bottom, .35);
    for (int i = 0; i < 60; ++i) {
      const double y = kShore + 8 + std::fmod(i * .5698, 1) * 195;
      const double x = std::fmod(i * .7549 * width_ + seconds_ * (6 + i % 5), width_ + 60) - 60;
      cairo_move_to(cr_, x, y);
      cairo_rel_line_to(cr_, (y - kShore) * .25 + 4, 0);
    }
    cairo_stroke(cr_);
  }
  /// It crosses the picture in about twelve seconds, each second camera's from the right.
  void DrawBoat() {
    const bool from_right = view_.camera % 2 == 0;
    const double way = std::fmod((seconds_ + view_.camera * 3) * 70, width_ + 160) - 80;
    cairo_save(cr_);
    cairo_translate(cr_, from_right ? width_ - way : way, 372);
    cairo_scale(cr_, from_right ? -1 : 1, 1);
    cairo_rotate(cr_, .06 * std::sin(seconds_ * 1.6));
    Polygon({{-4, -8}, {-4, -126}, {-62, -8}}, Lit(.96, .95, .92));
    Polygon({{2, -8}, {2, -112}, {44, -8}}, OwnColour(1));
    Polygon({{-66, 0}, {64, 0}, {44, 24}, {-50, 24}}, Lit(.45, .20, .15));
    cairo_restore(cr_);
  }
  struct Point {
    double x;
    double y;
  };
  void Polygon(std::initializer_list<Point> corners, const Colour& colour) {
    for (const Point& corner : corners) cairo_line_to(cr_, corner.x, corner.y);
    Use(colour);
    cairo_fill(cr_);
  }

  cairo_t* cr_;
  const View& view_;
  double width_;
  double seconds_;
  Sky sky_;
};

/// Writes `text` in white from x, in letters of `size` or as many smaller as `most` pixels need; gives its width. A
/// missing font is replaced by the nearest the system has, in the end by one that Cairo carries itself.
double Write(cairo_t* cr, double x, double y, double size, const char* family, const std::string& text, double most) {
  cairo_select_font_face(cr, family, CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_BOLD);
  cairo_set_font_size(cr, size);
  cairo_text_extents_t extents;
  cairo_text_extents(cr, text.c_str(), &extents);
  const double fitting = std::min(1.0, most / std::max(1.0, extents.x_advance));
  cairo_set_font_size(cr, size * fitting);
  cairo_set_source_rgba(cr, 1, 1, 1, .95);
  cairo_move_to(cr, x, y);
  cairo_show_text(cr, text.c_str());
  return extents.x_advance * fitting;
}

/// The panel with name, clock and date, on a picture of `width` by `height` pixels.
void DrawPanel(cairo_t* cr, const View& view, int width, int height) {
  constexpr double kMargin = 12;
  constexpr double kWidth = 262;
  constexpr double kHeight = 92;
  constexpr double kInset = 14;
  constexpr double kLeastScale = .42;  // below it the clock cannot be read
  const double widest = width / (kWidth + 2 * kMargin);
  const double scale = std::min(std::max(std::min(width / 640.0, height / 480.0), kLeastScale), widest);
  cairo_scale(cr, scale, scale);
  cairo_translate(cr, kMargin, kMargin);
  cairo_set_source_rgba(cr, .04, .06, .10, .58);
  cairo_rectangle(cr, 0, 0, kWidth, kHeight);
  cairo_fill(cr);
  constexpr double kTextWidth = kWidth - 2 * kInset;
  Write(cr, kInset, 63, 38, "DejaVu Sans Mono", LocalText(view.time, "%T") + Fraction(view.time, 1), kTextWidth);
  const double date = Write(cr, kInset, 83, 16, "DejaVu Sans Mono", LocalText(view.time, "%F"), kTextWidth);
  if (view.mark != Mark::kNone) {
    const bool is_recording = view.mark == Mark::kRecording;
    Write(cr, kInset + date + 30, 83, 14, "DejaVu Sans", is_recording ? "REC" : "ARCHIVE", kTextWidth - date - 30);
    cairo_new_path(cr);
    cairo_set_source_rgb(cr, is_recording ? 1 : .5, is_recording ? .23 : .82, is_recording ? .19 : .55);
    cairo_arc(cr, kInset + date + 19, 78, 5, 0, 7);
    cairo_fill(cr);
  }
  // Last: a name that is no UTF-8 ends this context's drawing.
  Write(cr, kInset, 25, 16, "DejaVu Sans", view.name, kTextWidth);
}

}  // namespace

std::string DrawJpeg(const View& view, const PictureForm& form) {
  const Surface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, form.width, form.height), cairo_surface_destroy);
  if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) throw std::bad_alloc();
  const double scale = std::min(form.height / 480.0, form.width / 640.0);
  const Context scene(cairo_create(surface.get()), cairo_destroy);
  cairo_translate(scene.get(), 0, form.height - 480 * scale);
  cairo_scale(scene.get(), scale, scale);
  Painter(scene.get(), view, form.width / scale).Draw();
  const Context panel(cairo_create(surface.get()), cairo_destroy);
  DrawPanel(panel.get(), view, form.width, form.height);
  cairo_surface_flush(surface.get());

  const std::unique_ptr<void, decltype(&tjDestroy)> encoder(tjInitCompress(), tjDestroy);
  unsigned char* bytes = nullptr;
  unsigned long size = 0;
  const int failed = tjCompress2(encoder.get(), cairo_image_surface_get_data(surface.get()), form.width,
                                 cairo_image_surface_get_stride(surface.get()), form.height, TJPF_BGRX, &bytes, &size,
                                 TJSAMP_420, form.quality, 0);
  const std::unique_ptr<unsigned char, decltype(&tjFree)> owned(bytes, tjFree);
  if (failed != 0) throw std::runtime_error(tjGetErrorStr2(encoder.get()));
  return {reinterpret_cast<const char*>(bytes), size};
}

}  // namespace orbelcast::camera_server
