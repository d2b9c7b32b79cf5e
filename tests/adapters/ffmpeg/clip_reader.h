#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <opencv2/videoio.hpp>
#include <sstream>
#include <string>
#include <vector>

/// Clips as other programs read them.
namespace orbelcast::tests {

/// What a command prints.
inline std::string OutputOf(const std::string& command) {
  std::unique_ptr<FILE, int (*)(FILE*)> pipe(::popen(command.c_str(), "r"), ::pclose);
  std::string output;
  std::array<char, 4096> part{};
  while (pipe) {
    const std::size_t count = std::fread(part.data(), 1, part.size(), pipe.get());
    if (count == 0) break;
    output.append(part.data(), count);
  }
  return output;
}

/// What ffprobe says of the video stream: "width", "r_frame_rate", "nb_frames" (as the header declares),
/// "nb_read_frames" (as they could be decoded; empty ones do not count) and so on. Anything it complains of is under
/// "complaints".
inline std::map<std::string, std::string> Probe(const std::filesystem::path& clip) {
  std::istringstream lines(OutputOf(
      "ffprobe -v warning -count_frames -select_streams v:0 -show_entries stream -of default=noprint_wrappers=1 '" +
      clip.string() + "' 2>&1"));
  std::map<std::string, std::string> entries;
  for (std::string line; std::getline(lines, line);) {
    // Its decoder says so of some very small pictures that do end with the marker.
    if (line.ends_with("EOI missing, emulating")) continue;
    const auto equals = line.find('=');
    if (equals == std::string::npos || line.starts_with('[')) {
      entries["complaints"] += line + '\n';
    } else {
      entries[line.substr(0, equals)] = line.substr(equals + 1);
    }
  }
  return entries;
}

/// The time of each decoded frame, in the stream's own frames.
inline std::vector<int> Positions(const std::filesystem::path& clip) {
  std::istringstream lines(
      OutputOf("ffprobe -v error -select_streams v:0 -show_entries frame=pts -of csv=p=0 '" + clip.string() + "'"));
  std::vector<int> positions;
  for (std::string line; std::getline(lines, line);) positions.push_back(std::atoi(line.c_str()));
  return positions;
}

/// Every picture of the clip, as OpenCV reads it: 24 bits, blue first, rows from the top.
inline std::vector<cv::Mat> ReadPictures(const std::filesystem::path& clip) {
  cv::VideoCapture capture(clip.string(), cv::CAP_FFMPEG);
  std::vector<cv::Mat> pictures;
  for (cv::Mat picture; capture.read(picture);) pictures.push_back(picture.clone());
  return pictures;
}

}  // namespace orbelcast::tests
