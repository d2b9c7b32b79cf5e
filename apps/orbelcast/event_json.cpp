#include "orbelcast/event_json.h"

#include <chrono>
#include <cstdio>
#include <ctime>
#include <ostream>
#include <string>
#include <utility>

#include "common/shown_text.h"
#include "remote/event_to_json.h"

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
  json.Update(EventToJson(event, "viewer", arguments));
  output << ToLine(WithoutPasswords(json)) << std::endl;
  return output.good();
}

Json WithoutPasswords(Json value) {
  value.ForEachText([](std::string& text) { text = HidePasswords(text); });
  return value;
}

}  // namespace orbelcast
