#include "machine.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>

namespace orbelcast::camera_server {

namespace {

/// The number behind the first line of `file` that begins with `name`, such as "MemTotal:  8000000 kB"; 0 without one.
double NumberAt(const char* file, const std::string& name) {
  std::ifstream lines(file);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(name)) return std::strtod(line.c_str() + std::min(line.size(), line.find(':') + 1), nullptr);
  }
  return 0;
}

}  // namespace

MachineFigures ReadMachine() {
  constexpr double kKilobytes = 1024;
  MachineFigures figures;
  figures.processors = static_cast<int>(std::thread::hardware_concurrency());
  double load = 0;
  if (getloadavg(&load, 1) == 1)
    figures.load_percent = std::min(100, static_cast<int>(100 * load / std::max(1, figures.processors)));
  const double total = NumberAt("/proc/meminfo", "MemTotal");
  const double available = NumberAt("/proc/meminfo", "MemAvailable");
  if (total > 0) figures.memory_percent = static_cast<int>(100 * (total - available) / total);
  figures.available_megabytes = static_cast<long>(available / kKilobytes);
  figures.megahertz = static_cast<int>(NumberAt("/proc/cpuinfo", "cpu MHz"));
  return figures;
}

}  // namespace orbelcast::camera_server
