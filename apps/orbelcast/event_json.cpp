#include "orbelcast/event_json.h"

#include <chrono>
#include <cstdio>
#include <ctime>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <utility>

#include "common/shown_text.h"

namespace orbelcast {

namespace {

/// This moment, such as "2026-11-24T13:07:05.250+01:00".
std::string TimeNow() {
  using namespace std::chrono;
  const auto now = time_point_cast<milliseconds>(system_clock::now());
  const std::time_t seconds = system_clock::to_time_t(now);
  std::tm local{};
  ::localtime_r(&seconds, &local);
  char day[32];
  char zone[8] = "+0000";
  char text[64];
  std::strftime(day, sizeof day, "%Y-%m-%dT%H:%M:%S", &local);
  std::strftime(zone, sizeof zone, "%z", &local);
  std::snprintf(text, sizeof text, "%s.%03d%.3s:%s", day, static_cast<int>(now.time_since_epoch().count() % 1000), zone,
                zone + 3);
  return text;
}

}  // namespace

bool PrintViewerEvent(std::ostream& output, const EventEntry& event, std::span<const EventArgument> arguments) {
  Json json{{"time", TimeNow()}};
  json.update(EventToJson(event, "viewer", arguments));
  output << ToLine(WithoutPasswords(json)) << std::endl;
  return output.good();
}

Json WithoutPasswords(Json value) {
  if (value.is_string()) return HidePasswords(value.get_ref<const std::string&>());
  if (value.is_structured()) {
    for (Json& each : value) each = WithoutPasswords(std::move(each));
  }
  return value;
}

}  // namespace orbelcast
