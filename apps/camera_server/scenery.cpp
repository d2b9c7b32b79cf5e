#include "scenery.h"

#include <array>
#include <cmath>

namespace orbelcast::camera_server {

namespace {

constexpr double kHouseWidth = 158;
constexpr double kHouseHeight = 78;
constexpr double kRoofHeight = 54;
constexpr Colour kWindowLight = Rgb(0xffd98a);
constexpr Colour kLampLight = Rgb(0xffe2a0);

double HouseLeft(const Stage& stage) {
  return stage.width * 0.13;
}
double HouseFoot(const Stage& stage) {
  return stage.height - 148;
}

void DrawSky(cairo_t* cr, const Stage& stage, const Mood& mood) {
  cairo_rectangle(cr, 0, 0, stage.width, stage.Horizon() + 20);
  FillDownwards(cr, 0, mood.sky_top, stage.Horizon(), mood.sky_bottom);
}

void DrawStars(cairo_t* cr, const Stage& stage, double opacity) {
  constexpr int kStars = 90;
  if (opacity <= 0) return;
  for (int i = 0; i < kStars; ++i) {
    const double x = Scatter(stage.camera, 3 * i) * stage.width;
    const double y = Scatter(stage.camera, 3 * i + 1) * (stage.Horizon() - 40);
    const double brightness = Scatter(stage.camera, 3 * i + 2);
    FillEllipse(cr, x, y, 0.5 + brightness, 0.5 + brightness, Rgb(0xffffff), opacity * (0.25 + 0.6 * brightness));
  }
}

void DrawSun(cairo_t* cr, const Stage& stage, const Mood& mood) {
  constexpr double kOrdinaryHorizon = 244;
  const double x = stage.width * mood.sun_x;
  const double y = mood.sun_y * stage.Horizon() / kOrdinaryHorizon;
  FillGlow(cr, x, y, mood.sun_radius * 6, mood.sun, 0.75);
  FillEllipse(cr, x, y, mood.sun_radius, mood.sun_radius, mood.sun);
}

/// A ridge of waves from edge to edge, down to the foot of the picture.
void AddRidge(cairo_t* cr, const Stage& stage, double level, double swing, double wave, double phase) {
  constexpr double kStep = 6;
  cairo_move_to(cr, -kStep, stage.height);
  for (double x = -kStep; x <= stage.width + kStep; x += kStep) {
    const double y = level - swing * (std::sin(x / wave + phase) + 0.45 * std::sin(x / wave * 2.3 + phase * 1.7));
    cairo_line_to(cr, x, y);
  }
  cairo_line_to(cr, stage.width + kStep, stage.height);
  cairo_close_path(cr);
}

void DrawHills(cairo_t* cr, const Stage& stage, const Mood& mood) {
  const double phase = stage.camera * 1.3;
  AddRidge(cr, stage, stage.Horizon() - 6, 17, 92, phase);
  FillDownwards(cr, stage.Horizon() - 30, mood.far_hills, stage.Horizon() + 40,
                Mix(mood.far_hills, mood.sky_bottom, 0.5));
  AddRidge(cr, stage, stage.Horizon() + 18, 11, 63, phase + 2);
  FillDownwards(cr, stage.Horizon(), mood.near_hills, stage.Horizon() + 60, Mix(mood.near_hills, Rgb(0x203018), 0.25));
}

void DrawMeadow(cairo_t* cr, const Stage& stage, const Mood& mood) {
  AddRidge(cr, stage, stage.Horizon() + 40, 4, 110, stage.camera);
  FillDownwards(cr, stage.Horizon() + 36, Lit(Rgb(0x9cc464), mood.light), stage.Pavement(),
                Lit(Rgb(0x5e9a3c), mood.light));
}

void DrawTree(cairo_t* cr, double x, double foot, double size, const Mood& mood) {
  FillEllipse(cr, x, foot, size * 0.36, size * 0.06, Rgb(0x000000), 0.18);
  FillRectangle(cr, x - size * 0.05, foot - size * 0.42, size * 0.10, size * 0.42, Lit(Rgb(0x6b4a2f), mood.light));
  struct Leaves {
    double x;
    double y;
    double radius;
    unsigned colour;
  };
  static constexpr std::array<Leaves, 6> kLeaves{{{-0.20, 0.50, 0.20, 0x2f6b32},
                                                  {0.20, 0.50, 0.20, 0x2f6b32},
                                                  {0.00, 0.56, 0.27, 0x38793a},
                                                  {-0.11, 0.70, 0.19, 0x43883f},
                                                  {0.12, 0.68, 0.18, 0x43883f},
                                                  {0.00, 0.80, 0.17, 0x549a48}}};
  for (const Leaves& leaves : kLeaves) {
    FillEllipse(cr, x + leaves.x * size, foot - leaves.y * size, leaves.radius * size, leaves.radius * size,
                Lit(Rgb(leaves.colour), mood.light));
  }
}

void DrawFir(cairo_t* cr, double x, double foot, double size, const Mood& mood) {
  FillRectangle(cr, x - size * 0.04, foot - size * 0.15, size * 0.08, size * 0.15, Lit(Rgb(0x5a3f2a), mood.light));
  for (int tier = 0; tier < 3; ++tier) {
    const double bottom = foot - size * (0.10 + 0.25 * tier);
    const double half = size * (0.26 - 0.06 * tier);
    SetColour(cr, Lit(Mix(Rgb(0x23502f), Rgb(0x3b7044), tier / 2.0), mood.light));
    cairo_move_to(cr, x - half, bottom);
    cairo_line_to(cr, x + half, bottom);
    cairo_line_to(cr, x, bottom - size * 0.40);
    cairo_fill(cr);
  }
}

void DrawWood(cairo_t* cr, const Stage& stage, const Mood& mood) {
  constexpr int kFirs = 15;
  for (int i = 0; i < kFirs; ++i) {
    const double x = stage.width * (0.36 + 0.66 * Scatter(stage.camera, 400 + i));
    const double depth = static_cast<double>(i) / kFirs;  // the far ones first
    DrawFir(cr, x, stage.Horizon() + 42 + 10 * depth, 40 + 20 * depth, mood);
  }
}

void DrawWindow(cairo_t* cr, double x, double y, double width, double height, const Mood& mood) {
  const Colour frame = Lit(Rgb(0xf4f0e6), mood.light);
  FillRectangle(cr, x - 3, y - 3, width + 6, height + 6, frame);
  cairo_rectangle(cr, x, y, width, height);
  if (mood.is_dark) {
    FillDownwards(cr, y, kWindowLight, y + height, Rgb(0xf2b45c));
  } else {
    FillDownwards(cr, y, Rgb(0x4c6a80), y + height, Rgb(0x9dbccb));
  }
  FillRectangle(cr, x + width / 2 - 1, y, 2, height, frame);
  FillRectangle(cr, x, y + height / 2 - 1, width, 2, frame);
}

void DrawHouse(cairo_t* cr, const Stage& stage, const Mood& mood) {
  static constexpr std::array<unsigned, 4> kWalls{0xf0e2c4, 0xd9b9a0, 0xc8d2d8, 0xe6d58c};
  static constexpr std::array<unsigned, 4> kRoofs{0xa4493a, 0x5b5f70, 0x7a3f35, 0x8a5a3a};
  const auto kind = static_cast<std::size_t>(stage.camera - 1) % kWalls.size();
  const double left = HouseLeft(stage);
  const double foot = HouseFoot(stage);
  const double top = foot - kHouseHeight;
  const Colour wall = Lit(Rgb(kWalls.at(kind)), mood.light);
  const Colour roof = Lit(Rgb(kRoofs.at(kind)), mood.light);

  FillRectangle(cr, left + 104, top - kRoofHeight - 14, 18, 40, Lit(Rgb(0x8c5846), mood.light));  // chimney
  FillRectangle(cr, left + 101, top - kRoofHeight - 18, 24, 6, Lit(Rgb(0x6f4436), mood.light));
  cairo_rectangle(cr, left, top, kHouseWidth, kHouseHeight);
  FillDownwards(cr, top, Mix(wall, Rgb(0x000000), 0.16), foot, wall);
  cairo_move_to(cr, left - 14, top + 3);
  cairo_line_to(cr, left + 24, top - kRoofHeight);
  cairo_line_to(cr, left + kHouseWidth - 24, top - kRoofHeight);
  cairo_line_to(cr, left + kHouseWidth + 14, top + 3);
  cairo_close_path(cr);
  FillDownwards(cr, top - kRoofHeight, Mix(roof, Rgb(0xffffff), 0.10), top, Mix(roof, Rgb(0x000000), 0.15));

  DrawWindow(cr, left + 16, top + 20, 30, 30, mood);
  DrawWindow(cr, left + 112, top + 20, 30, 30, mood);
  FillRectangle(cr, left + 63, foot - 54, 30, 54, Lit(Rgb(0xf4f0e6), mood.light));
  FillRectangle(cr, left + 66, foot - 51, 24, 51, Lit(Rgb(0x2f5d62), mood.light));
  FillEllipse(cr, left + 85, foot - 24, 2, 2, Lit(Rgb(0xe8c860), mood.light));
  FillRectangle(cr, left + 58, foot - 3, 40, 5, Lit(Rgb(0xa9a294), mood.light));
}

void DrawPath(cairo_t* cr, const Stage& stage, const Mood& mood) {
  const double middle = HouseLeft(stage) + 78;
  SetColour(cr, Lit(Rgb(0xcfc2a4), mood.light));
  cairo_move_to(cr, middle - 15, HouseFoot(stage) + 1);
  cairo_line_to(cr, middle + 15, HouseFoot(stage) + 1);
  cairo_line_to(cr, middle + 30, stage.Pavement());
  cairo_line_to(cr, middle - 30, stage.Pavement());
  cairo_fill(cr);
}

void DrawFence(cairo_t* cr, const Stage& stage, const Mood& mood) {
  const Colour paint = Lit(Rgb(0xf2efe6), mood.light);
  const double top = stage.Pavement() - 24;
  const double gate = HouseLeft(stage) + 78;
  constexpr double kGateHalf = 30;
  FillRectangle(cr, 0, top + 6, gate - kGateHalf, 3, paint);
  FillRectangle(cr, 0, top + 15, gate - kGateHalf, 3, paint);
  FillRectangle(cr, gate + kGateHalf, top + 6, stage.width, 3, paint);
  FillRectangle(cr, gate + kGateHalf, top + 15, stage.width, 3, paint);
  SetColour(cr, paint);
  for (double x = 4; x < stage.width; x += 13) {
    if (std::abs(x + 3 - gate) < kGateHalf) continue;
    cairo_move_to(cr, x, top + 24);
    cairo_line_to(cr, x, top + 4);
    cairo_line_to(cr, x + 3, top);
    cairo_line_to(cr, x + 6, top + 4);
    cairo_line_to(cr, x + 6, top + 24);
    cairo_close_path(cr);
  }
  cairo_fill(cr);
}

void DrawRoad(cairo_t* cr, const Stage& stage, const Mood& mood) {
  FillRectangle(cr, 0, stage.Pavement(), stage.width, 22, Lit(Rgb(0xbdb8ad), mood.light));
  for (double x = 12; x < stage.width; x += 44) {
    Line(cr, x, stage.Pavement(), x - 6, stage.Pavement() + 22, 1, Lit(Rgb(0xa5a095), mood.light));
  }
  FillRectangle(cr, 0, stage.Pavement() + 22, stage.width, 4, Lit(Rgb(0x8d897f), mood.light));
  cairo_rectangle(cr, 0, stage.Road(), stage.width, 70);
  FillDownwards(cr, stage.Road(), Lit(Rgb(0x5d6066), mood.light), stage.Road() + 70, Lit(Rgb(0x4a4d53), mood.light));
  for (double x = 10; x < stage.width; x += 60) {
    FillRectangle(cr, x, stage.Road() + 33, 32, 3.5, Lit(Rgb(0xf0ede0), mood.light));
  }
  cairo_rectangle(cr, 0, stage.Road() + 70, stage.width, 30);
  FillDownwards(cr, stage.Road() + 70, Lit(Rgb(0x4f8534), mood.light), stage.height, Lit(Rgb(0x6ba545), mood.light));
}

void DrawMist(cairo_t* cr, const Stage& stage, const Mood& mood) {
  if (mood.mist <= 0) return;
  cairo_pattern_t* pattern = cairo_pattern_create_linear(0, stage.Horizon() - 70, 0, stage.Pavement());
  const Colour& white = mood.sky_bottom;
  cairo_pattern_add_color_stop_rgba(pattern, 0, white.red, white.green, white.blue, 0);
  cairo_pattern_add_color_stop_rgba(pattern, 0.45, white.red, white.green, white.blue, mood.mist * 1.4);
  cairo_pattern_add_color_stop_rgba(pattern, 1, white.red, white.green, white.blue, mood.mist * 0.3);
  cairo_rectangle(cr, 0, 0, stage.width, stage.height);
  cairo_set_source(cr, pattern);
  cairo_fill(cr);
  cairo_pattern_destroy(pattern);
}

double LampX(const Stage& stage) {
  return stage.width * 0.60;
}

}  // namespace

Place Chimney(const Stage& stage) {
  return {HouseLeft(stage) + 113, HouseFoot(stage) - kHouseHeight - kRoofHeight - 20};
}

void DrawScenery(cairo_t* cr, const Stage& stage) {
  const Mood& mood = stage.mood;
  DrawSky(cr, stage, mood);
  DrawStars(cr, stage, mood.stars);
  DrawSun(cr, stage, mood);
  DrawHills(cr, stage, mood);
  DrawMeadow(cr, stage, mood);
  DrawWood(cr, stage, mood);
  DrawMist(cr, stage, mood);
  DrawTree(cr, HouseLeft(stage) - 34, HouseFoot(stage) + 2, 120, mood);
  DrawHouse(cr, stage, mood);
  DrawPath(cr, stage, mood);
  DrawTree(cr, stage.width * (0.78 + 0.10 * Scatter(stage.camera, 1)), HouseFoot(stage) + 10, 138, mood);
  DrawTree(cr, stage.width * (0.46 + 0.06 * Scatter(stage.camera, 2)), HouseFoot(stage) + 4, 78, mood);
  DrawFence(cr, stage, mood);
  DrawRoad(cr, stage, mood);
}

void DrawStreetLamp(cairo_t* cr, const Stage& stage) {
  const Mood& mood = stage.mood;
  const double x = LampX(stage);
  const double foot = stage.Pavement() + 20;
  const double top = foot - 150;
  const Colour iron = Lit(Rgb(0x3a4148), mood.light);
  if (mood.is_dark) {
    FillGlow(cr, x + 27, top + 6, 85, kLampLight, 0.55);
    cairo_save(cr);
    cairo_translate(cr, x + 27, foot + 8);
    cairo_scale(cr, 1, 0.22);
    FillGlow(cr, 0, 0, 105, kLampLight, 0.42);
    cairo_restore(cr);
  }
  FillRectangle(cr, x - 5, foot - 8, 10, 8, iron);
  FillRectangle(cr, x - 2, top, 4, 150, iron);
  SetColour(cr, iron);
  cairo_set_line_width(cr, 3);
  cairo_move_to(cr, x, top + 8);
  cairo_curve_to(cr, x, top - 6, x + 10, top - 4, x + 22, top - 1);
  cairo_stroke(cr);
  FillRoundedRectangle(cr, x + 16, top - 4, 22, 7, 3, iron);
  FillEllipse(cr, x + 27, top + 4, 8, 4, mood.is_dark ? Rgb(0xfff2cc) : Lit(Rgb(0xd8dde0), mood.light));
}

}  // namespace orbelcast::camera_server
