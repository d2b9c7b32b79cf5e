#include "viewer/time_code.h"

#include <cstdio>

namespace orbelcast {

namespace {

std::string PieceOf(const std::string& text, std::size_t first, std::size_t count) {
  return first < text.size() ? text.substr(first, count) : std::string();
}

}  // namespace

std::string TimeCodeOf(const LocalTime& now) {
  char text[32];
  std::snprintf(text, sizeof text, "%04d%02d%02d%02d%02d%02d", now.year, now.month, now.day, now.hour, now.minute,
                now.second);
  return text;
}

std::string TimeOfDay(const LocalTime& now) {
  char text[16];
  std::snprintf(text, sizeof text, "%02d:%02d:%02d", now.hour, now.minute, now.second);
  return text;
}

void RaiseTimeCode(VideoServerPushEvents& events, std::string time_code) {
  std::string year = PieceOf(time_code, 0, 4);
  std::string month = PieceOf(time_code, 4, 2);
  std::string day = PieceOf(time_code, 6, 2);
  std::string hour = PieceOf(time_code, 8, 2);
  std::string minute = PieceOf(time_code, 10, 2);
  std::string second = PieceOf(time_code, 12, 2);
  std::string hundredths = "00";
  events.VigilboxTCR(year, month, day, hour, minute, second, hundredths, time_code);
}

}  // namespace orbelcast
