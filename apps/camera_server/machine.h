#pragma once

namespace orbelcast::camera_server {

/// How the machine that the server runs on is doing. What cannot be read is 0.
struct MachineFigures {
  int load_percent = 0;    ///< of the last minute, at most 100
  int memory_percent = 0;  ///< in use
  long available_megabytes = 0;
  int processors = 0;
  int megahertz = 0;
};

MachineFigures ReadMachine();

}  // namespace orbelcast::camera_server
