#include "mood.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace orbelcast::camera_server {

namespace {

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
     .stars = 0,
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
     .stars = 0,
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
     .stars = 1,
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
     .stars = 0,
     .is_dark = false},
}};

enum Time : std::size_t { kDay, kDusk, kNight, kDawn };

/// The moods of a day, each with the hour at which it is there alone.
struct Hour {
  double hour;
  Time time;
};
constexpr std::array<Hour, 8> kHours{
    {{0, kNight}, {5.2, kNight}, {6.8, kDawn}, {9, kDay}, {17, kDay}, {19.4, kDusk}, {21, kNight}, {24, kNight}}};
constexpr double kSunrise = 5.8;
constexpr double kSunset = 20.2;

double Between(double a, double b, double share) {
  return a + (b - a) * share;
}

/// All but what stands in the sky.
Mood Blend(const Mood& a, const Mood& b, double share) {
  return {.sky_top = Mix(a.sky_top, b.sky_top, share),
          .sky_bottom = Mix(a.sky_bottom, b.sky_bottom, share),
          .far_hills = Mix(a.far_hills, b.far_hills, share),
          .near_hills = Mix(a.near_hills, b.near_hills, share),
          .light = Mix(a.light, b.light, share),
          .cloud = Mix(a.cloud, b.cloud, share),
          .cloud_share = Between(a.cloud_share, b.cloud_share, share),
          .mist = Between(a.mist, b.mist, share),
          .stars = std::max(0.0, 2 * Between(a.stars, b.stars, share) - 1),
          .is_dark = (share < 0.5 ? a : b).is_dark};
}

/// Sun or moon on its way, of which `share` has passed, from behind the hills to behind the hills.
void PutIntoSky(Mood& mood, double share, double highest) {
  constexpr double kBehindHills = 276;
  mood.sun_x = Between(0.06, 0.94, share);
  mood.sun_y = Between(kBehindHills, highest, std::sin(share * std::numbers::pi));
}

}  // namespace

const Mood& OwnMood(int camera) {
  return kMoods.at(static_cast<std::size_t>(camera - 1) % kMoods.size());
}

Mood MoodAt(double hour) {
  const auto after =
      std::find_if(kHours.begin() + 1, kHours.end() - 1, [&](const Hour& each) { return hour < each.hour; });
  const Hour& to = *after;
  const Hour& from = *(after - 1);
  Mood mood = Blend(kMoods.at(from.time), kMoods.at(to.time), (hour - from.hour) / (to.hour - from.hour));
  if (hour >= kSunrise && hour < kSunset) {
    const double share = (hour - kSunrise) / (kSunset - kSunrise);
    const double lowness = std::abs(2 * share - 1);  // 0 at noon
    PutIntoSky(mood, share, 62);
    mood.sun = Mix(kMoods[kDay].sun, kMoods[kDusk].sun, lowness * lowness);
    mood.sun_radius = Between(kMoods[kDay].sun_radius, kMoods[kDusk].sun_radius, lowness);
  } else {
    const double since_sunset = hour >= kSunset ? hour - kSunset : hour + 24 - kSunset;
    PutIntoSky(mood, since_sunset / (kSunrise + 24 - kSunset), 78);
    mood.sun = kMoods[kNight].sun;
    mood.sun_radius = kMoods[kNight].sun_radius;
  }
  return mood;
}

}  // namespace orbelcast::camera_server
