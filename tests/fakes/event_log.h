#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "interface/events.h"
#include "viewer/video_server_push.h"

namespace orbelcast::fakes {

/// Writes down a viewer's events as "Name(argument,argument)", in the order in which they come.
class EventLog {
 public:
  explicit EventLog(VideoServerPush& viewer) {
    ListenToAll(viewer.Events, [this](const EventEntry& event, std::span<const EventArgument> arguments) {
      std::string line(event.name);
      const char* separator = "(";
      for (const EventArgument& argument : arguments) {
        line += std::exchange(separator, ",") + std::visit([](auto* value) { return Text(*value); }, argument);
      }
      if (!arguments.empty()) line += ")";
      if (skip_time_codes && event.name == "VigilboxTCR") return;
      lines.push_back(line);
      if (on_event) on_event(line);
    });
  }

  std::vector<std::string> Take() { return std::exchange(lines, {}); }

  std::vector<std::string> lines;
  bool skip_time_codes = true;  ///< They come with every frame.
  std::function<void(const std::string& line)> on_event;

 private:
  static std::string Text(const std::string& value) { return value; }
  static std::string Text(bool value) { return value ? "True" : "False"; }
  static std::string Text(const DropData& value) { return std::to_string(value.formats.size()) + " formats"; }
  template <typename Number>
  static std::string Text(Number value) {
    return std::to_string(value);
  }
};

}  // namespace orbelcast::fakes
