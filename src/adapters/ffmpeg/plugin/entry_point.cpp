#include "adapters/ffmpeg/ffmpeg_avi_files.h"

/// The service of this library, which lives as long as the process does.
extern "C" orbelcast::AviFiles* OrbelcastAviFiles() {
  static orbelcast::FfmpegAviFiles files;
  return &files;
}
