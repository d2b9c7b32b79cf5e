#include "info_text.h"

#include <cstddef>
#include <string>
#include <vector>

#include "live_address.h"
#include "machine.h"
#include "time_text.h"

namespace orbelcast::camera_server {

namespace {

/// A number, a name and a state, as alerts, inputs and outputs have them.
void AddItems(std::string& text, std::string_view key, const std::vector<Site::Item>& items) {
  int number = 0;
  for (const Site::Item& item : items) {
    text.append(key).append(std::to_string(++number)).append("\t");
    text.append(item.name).append(item.is_on ? "\t1\r\n" : "\t0\r\n");
  }
}

std::string Hours(std::chrono::seconds time) {
  const auto tenths = time.count() / 360;
  return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10);
}

}  // namespace

std::string InfoText(const Settings& settings, const Site& site, std::string_view authority,
                     std::chrono::seconds running) {
  std::string text = "RDXVIEWER\r\n";
  for (int camera = 1; settings.HasCamera(camera); ++camera) {
    const std::string number = std::to_string(camera);
    text.append("CAM:").append(number).append("\t").append(settings.NameOf(camera));
    text.append("\thttp://").append(authority).append(kLivePath).append(number).append("\r\n");
  }
  AddItems(text, "ALT:", site.Alerts());
  AddItems(text, "HWO:", site.Outputs());
  AddItems(text, "HWI:", site.Inputs());

  const MachineFigures machine = ReadMachine();
  const std::vector<std::pair<std::string, std::string>> values = {
      {"SNM", settings.system_name},
      {"SVR", kServerName},
      {"SYN", TimeCode(WallClock::now())},
      {"CPU", std::to_string(machine.load_percent)},
      {"RAM", std::to_string(machine.memory_percent)},
      {"AME", std::to_string(machine.available_megabytes)},
      {"CPN", std::to_string(machine.processors)},
      {"CPS", std::to_string(machine.megahertz)},
      {"UPS", Hours(running)},
  };
  for (const auto& [key, value] : values) {
    const auto given = settings.info_values.find(key);
    text.append(key).append(":").append(given == settings.info_values.end() ? value : given->second).append("\r\n");
  }
  for (const std::string& flag : settings.info_flags) text.append(flag).append(":1\r\n");
  return text;
}

}  // namespace orbelcast::camera_server
