#include "scene.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <new>
#include <utility>

#include "actors.h"
#include "bounds.h"
#include "scenery.h"

namespace orbelcast::camera_server {

namespace {

/// The scene needs this many units either way; a picture of a stranger shape gets more sky, or more road.
constexpr double kLeastHeight = 480;
constexpr double kLeastWidth = 420;

CairoSurface NewSurface(int width, int height) {
  CairoSurface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height));
  if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) throw std::bad_alloc();
  return surface;
}

constexpr int kOwnLook = -1;
/// By the clock a day has this many looks, so that a background serves ten minutes of pictures.
constexpr int kLooksADay = 24 * 6;

int LookOf(Light light, WallClock::time_point time) {
  if (light == Light::kOwn) return kOwnLook;
  const std::tm parts = LocalParts(time);
  return (parts.tm_hour * 60 + parts.tm_min) * kLooksADay / (24 * 60);
}

Mood MoodOfLook(int camera, int look) {
  return look == kOwnLook ? OwnMood(camera) : MoodAt(24.0 * look / kLooksADay);
}

/// Sets a context from pixels to units, and says how many there are. Every second round of cameras looks from the other
/// side.
Stage SetStage(cairo_t* cr, int camera, int width, int height, int look) {
  const double unit = std::min(height / kLeastHeight, width / kLeastWidth);
  const bool is_mirrored = ((camera - 1) / 4) % 2 == 1;
  cairo_scale(cr, unit, unit);
  const Stage stage{.width = width / unit, .height = height / unit, .camera = camera, .mood = MoodOfLook(camera, look)};
  if (is_mirrored) {
    cairo_translate(cr, stage.width, 0);
    cairo_scale(cr, -1, 1);
  }
  return stage;
}

void Copy(cairo_surface_t* from, cairo_surface_t* to) {
  cairo_surface_flush(from);
  const std::size_t bytes = static_cast<std::size_t>(cairo_image_surface_get_stride(from)) *
                            static_cast<std::size_t>(cairo_image_surface_get_height(from));
  std::copy_n(cairo_image_surface_get_data(from), bytes, cairo_image_surface_get_data(to));
  cairo_surface_mark_dirty(to);
}

}  // namespace

CairoSurface Scene::Draw(int camera, int width, int height, const OverlayText& text, Light light) {
  const Look look = LookOf(light, text.time);
  CairoSurface picture = NewSurface(width, height);
  Copy(BackgroundOf(camera, width, height, look), picture.get());
  const CairoContext context(cairo_create(picture.get()));
  cairo_t* cr = context.get();
  cairo_save(cr);
  const Stage stage = SetStage(cr, camera, width, height, look);
  DrawActors(cr, stage, std::chrono::duration<double>(text.time.time_since_epoch()).count());
  cairo_restore(cr);
  DrawOverlay(cr, width, height, text);
  cairo_surface_flush(picture.get());
  return picture;
}

cairo_surface_t* Scene::BackgroundOf(int camera, int width, int height, Look look) {
  const auto found = std::find_if(backgrounds_.begin(), backgrounds_.end(), [&](const Background& background) {
    return background.camera == camera && background.width == width && background.height == height &&
           background.look == look;
  });
  if (found != backgrounds_.end()) {
    backgrounds_.splice(backgrounds_.begin(), backgrounds_, found);
    return backgrounds_.front().surface.get();
  }
  CairoSurface surface = NewSurface(width, height);
  const CairoContext context(cairo_create(surface.get()));
  DrawScenery(context.get(), SetStage(context.get(), camera, width, height, look));
  backgrounds_.push_front({camera, width, height, look, std::move(surface)});
  background_bytes_ += backgrounds_.front().Bytes();
  while (background_bytes_ > kMaxBackgroundBytes && backgrounds_.size() > 1) {
    background_bytes_ -= backgrounds_.back().Bytes();
    backgrounds_.pop_back();
  }
  return backgrounds_.front().surface.get();
}

}  // namespace orbelcast::camera_server
