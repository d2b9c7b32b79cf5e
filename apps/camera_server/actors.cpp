#include "actors.h"

#include <array>
#include <cmath>

#include "scenery.h"

namespace orbelcast::camera_server {

namespace {

/// The share of a round that has passed, from 0 up to 1.
double Round(double seconds, double period, double offset) {
  const double rounds = seconds / period + offset;
  return rounds - std::floor(rounds);
}

void DrawCloud(cairo_t* cr, double x, double y, double size, const Mood& mood) {
  // One path for all puffs: where they overlap, an opacity must not add up.
  SetColour(cr, mood.cloud, mood.cloud_share);
  AddEllipse(cr, x, y, size * 0.62, size * 0.17);
  AddEllipse(cr, x - size * 0.27, y - size * 0.10, size * 0.22, size * 0.20);
  AddEllipse(cr, x + size * 0.04, y - size * 0.19, size * 0.27, size * 0.26);
  AddEllipse(cr, x + size * 0.31, y - size * 0.08, size * 0.20, size * 0.17);
  cairo_fill(cr);
}

void DrawClouds(cairo_t* cr, const Stage& stage, const Mood& mood, double seconds) {
  constexpr int kClouds = 4;
  for (int i = 0; i < kClouds; ++i) {
    const double size = 56 + 44 * Scatter(stage.camera, 10 + i);
    const double reach = stage.width + 2 * size;
    const double x = Round(seconds, 150 + 40 * i, Scatter(stage.camera, 20 + i)) * reach - size;
    DrawCloud(cr, x, 50 + 26 * i, size, mood);
  }
}

void DrawSmoke(cairo_t* cr, const Stage& stage, const Mood& mood, double seconds) {
  constexpr int kPuffs = 6;
  const Place chimney = Chimney(stage);
  for (int i = 0; i < kPuffs; ++i) {
    const double age = Round(seconds, 5, static_cast<double>(i) / kPuffs);
    const double radius = 4 + 11 * age;
    const double x = chimney.x + 26 * age * age + 4 * std::sin(age * kTurn + i);
    FillEllipse(cr, x, chimney.y - 54 * age, radius, radius, Mix(mood.cloud, Rgb(0x909090), 0.4), 0.42 * (1 - age));
  }
}

void DrawBirds(cairo_t* cr, const Stage& stage, const Mood& mood, double seconds) {
  if (mood.is_dark) return;
  SetColour(cr, Rgb(0x2c3440));
  cairo_set_line_width(cr, 1.8);
  cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
  for (int i = 0; i < 3; ++i) {
    const double along = Round(seconds, 23, Scatter(stage.camera, 30));
    const double x = along * (stage.width + 120) - 60 - 24 * i;
    const double y = stage.Horizon() - 62 + 9 * std::abs(i - 1) + 12 * std::sin(along * kTurn);
    const double wing = 5 * std::sin(seconds * 9 + i);
    cairo_move_to(cr, x - 9, y - wing);
    cairo_curve_to(cr, x - 5, y - 3 - wing / 2, x - 2, y - 1, x, y);
    cairo_curve_to(cr, x + 2, y - 1, x + 5, y - 3 - wing / 2, x + 9, y - wing);
    cairo_stroke(cr);
  }
}

void Limb(cairo_t* cr, double x, double y, double length, double angle, double bend, double width, Colour colour) {
  const double middle_x = x + length / 2 * std::sin(angle);
  const double middle_y = y + length / 2 * std::cos(angle);
  SetColour(cr, colour);
  cairo_set_line_width(cr, width);
  cairo_move_to(cr, x, y);
  cairo_line_to(cr, middle_x, middle_y);
  cairo_line_to(cr, middle_x + length / 2 * std::sin(angle + bend), middle_y + length / 2 * std::cos(angle + bend));
  cairo_stroke(cr);
}

/// A walker of 62 units, facing the way of growing x, with its feet on y 0.
void DrawWalker(cairo_t* cr, const Mood& mood, int camera, double seconds) {
  static constexpr std::array<unsigned, 4> kCoats{0xc8352c, 0x2c63b8, 0xd9a521, 0x7a3f8c};
  const Colour coat = Lit(Rgb(kCoats.at(static_cast<std::size_t>(camera - 1) % kCoats.size())), mood.light);
  const Colour trousers = Lit(Rgb(0x2d3748), mood.light);
  const Colour skin = Lit(Rgb(0xe8b991), mood.light);
  const double swing = std::sin(seconds * kTurn / 1.1);
  const double bob = 1.2 * std::abs(swing);
  cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
  cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
  FillEllipse(cr, 0, 0, 15, 3.5, Rgb(0x000000), 0.25);
  Limb(cr, 1, -46 + bob, 20, -0.6 * swing, 0.4, 5, Mix(coat, Rgb(0x000000), 0.25));
  Limb(cr, 0, -27 + bob, 27, 0.5 * swing, -0.35 * std::max(0.0, -swing), 6.5, Mix(trousers, Rgb(0x000000), 0.25));
  Limb(cr, 0, -27 + bob, 27, -0.5 * swing, -0.35 * std::max(0.0, swing), 6.5, trousers);
  FillRoundedRectangle(cr, -7, -49 + bob, 14, 26, 6, coat);
  Limb(cr, -1, -45 + bob, 20, 0.6 * swing, 0.4, 5, Mix(coat, Rgb(0xffffff), 0.12));
  FillEllipse(cr, 1, -56 + bob, 6.5, 7, skin);
  cairo_arc(cr, 0.5, -57.5 + bob, 7, kTurn / 2, kTurn);
  SetColour(cr, Lit(Rgb(0x4a3222), mood.light));
  cairo_fill(cr);
}

void DrawWalkerOnPavement(cairo_t* cr, const Stage& stage, const Mood& mood, double seconds) {
  const double along = Round(seconds, 36, Scatter(stage.camera, 40));
  const bool is_returning = along > 0.5;
  const double share = is_returning ? 2 - 2 * along : 2 * along;
  cairo_save(cr);
  cairo_translate(cr, share * (stage.width + 80) - 40, stage.Pavement() + 13);
  if (is_returning) cairo_scale(cr, -1, 1);
  DrawWalker(cr, mood, stage.camera, seconds);
  cairo_restore(cr);
}

void DrawBall(cairo_t* cr, const Stage& stage, const Mood& mood, double seconds) {
  constexpr double kRadius = 7;
  const double bounce = Round(seconds, 1.3, 0);
  const double height = 46 * (1 - (2 * bounce - 1) * (2 * bounce - 1));
  const double x = stage.width * 0.66 + 34 * std::sin(seconds * kTurn / 11);
  const double ground = stage.Pavement() - 34;
  FillEllipse(cr, x, ground, kRadius * (1 - height / 120), 2, Rgb(0x000000), 0.25);
  const double y = ground - kRadius - height;
  FillEllipse(cr, x, y, kRadius, kRadius, Lit(Rgb(0xe2572b), mood.light));
  FillEllipse(cr, x - 2, y - 2.5, 2.4, 2, Lit(Rgb(0xffc9a8), mood.light), 0.8);
}

void DrawWheel(cairo_t* cr, double x, double angle, const Mood& mood) {
  constexpr double kRadius = 10;
  FillEllipse(cr, x, -kRadius, kRadius, kRadius, Lit(Rgb(0x1d1f22), mood.light));
  FillEllipse(cr, x, -kRadius, 6, 6, Lit(Rgb(0xc9cdd2), mood.light));
  cairo_set_line_cap(cr, CAIRO_LINE_CAP_BUTT);
  for (int spoke = 0; spoke < 3; ++spoke) {
    const double turn = angle + spoke * kTurn / 6;
    Line(cr, x - 5 * std::cos(turn), -kRadius - 5 * std::sin(turn), x + 5 * std::cos(turn),
         -kRadius + 5 * std::sin(turn), 1.6, Lit(Rgb(0x5a5f66), mood.light));
  }
}

/// A car of 118 units that drives the way of growing x, its wheels standing on y 0.
void DrawCar(cairo_t* cr, const Mood& mood, Colour paint, double travelled) {
  const Colour body = Lit(paint, mood.light);
  FillEllipse(cr, 0, 0, 62, 4, Rgb(0x000000), 0.30);
  if (mood.is_dark) {
    cairo_move_to(cr, 56, -22);
    cairo_line_to(cr, 190, -30);
    cairo_line_to(cr, 190, 10);
    cairo_line_to(cr, 56, -16);
    cairo_pattern_t* beam = cairo_pattern_create_linear(56, 0, 190, 0);
    cairo_pattern_add_color_stop_rgba(beam, 0, 1, 0.95, 0.75, 0.5);
    cairo_pattern_add_color_stop_rgba(beam, 1, 1, 0.95, 0.75, 0);
    cairo_set_source(cr, beam);
    cairo_fill(cr);
    cairo_pattern_destroy(beam);
  }
  cairo_move_to(cr, -59, -10);
  cairo_curve_to(cr, -61, -26, -58, -29, -44, -30);
  cairo_curve_to(cr, -34, -48, -28, -50, -8, -50);
  cairo_curve_to(cr, 10, -50, 16, -46, 28, -31);
  cairo_curve_to(cr, 46, -29, 58, -27, 59, -20);
  cairo_line_to(cr, 59, -10);
  cairo_close_path(cr);
  FillDownwards(cr, -50, Mix(body, Rgb(0xffffff), 0.25), -10, Mix(body, Rgb(0x000000), 0.25));
  SetColour(cr, mood.is_dark ? Lit(Rgb(0xd9c48a), mood.light) : Rgb(0xbfd8e6));
  cairo_move_to(cr, -37, -31);
  cairo_curve_to(cr, -31, -43, -27, -45, -13, -45);
  cairo_line_to(cr, -13, -31);
  cairo_close_path(cr);
  cairo_move_to(cr, -8, -31);
  cairo_line_to(cr, -8, -45);
  cairo_curve_to(cr, 6, -45, 10, -42, 20, -31);
  cairo_close_path(cr);
  cairo_fill(cr);
  FillRectangle(cr, -8, -26, 9, 2, Mix(body, Rgb(0x000000), 0.5));
  FillEllipse(cr, 56, -20, 3, 3.5, mood.is_dark ? Rgb(0xfff6d8) : Rgb(0xeef2f4));
  FillRoundedRectangle(cr, -60, -24, 4, 7, 1.5, mood.is_dark ? Rgb(0xff3b30) : Rgb(0xb02a22));
  DrawWheel(cr, -34, travelled / 10, mood);
  DrawWheel(cr, 35, travelled / 10, mood);
}

struct Lane {
  double period;  // seconds from edge to edge and round again
  double below_road_edge;
  bool leads_left;
};

void DrawCarOnRoad(cairo_t* cr, const Stage& stage, const Mood& mood, const Lane& lane, int index, double seconds) {
  static constexpr std::array<unsigned, 6> kPaints{0xd23b2e, 0x2d6fc4, 0xe9b824, 0x2f8f5b, 0xe8e6e0, 0x7c4fa0};
  const double reach = stage.width + 420;
  const double share = Round(seconds, lane.period, Scatter(stage.camera, 50 + index));
  const double travelled = share * reach;
  const auto paint = static_cast<std::size_t>(stage.camera + 2 * index) % kPaints.size();
  cairo_save(cr);
  cairo_translate(cr, lane.leads_left ? stage.width + 210 - travelled : travelled - 210,
                  stage.Road() + lane.below_road_edge);
  if (lane.leads_left) cairo_scale(cr, -1, 1);
  DrawCar(cr, mood, Rgb(kPaints.at(paint)), travelled);
  cairo_restore(cr);
}

}  // namespace

void DrawActors(cairo_t* cr, const Stage& stage, double seconds) {
  constexpr Lane kFarLane{.period = 11, .below_road_edge = 27, .leads_left = true};
  constexpr Lane kNearLane{.period = 8, .below_road_edge = 62, .leads_left = false};
  const Mood& mood = stage.mood;
  DrawClouds(cr, stage, mood, seconds);
  DrawBirds(cr, stage, mood, seconds);
  DrawSmoke(cr, stage, mood, seconds);
  DrawBall(cr, stage, mood, seconds);
  DrawWalkerOnPavement(cr, stage, mood, seconds);
  DrawStreetLamp(cr, stage);
  DrawCarOnRoad(cr, stage, mood, kFarLane, 0, seconds);
  DrawCarOnRoad(cr, stage, mood, kNearLane, 1, seconds);
}

}  // namespace orbelcast::camera_server
