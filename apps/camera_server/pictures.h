#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "camera_server/http.h"
#include "camera_server/settings.h"

namespace orbelcast::camera_server {

/// A JPEG file's bytes and the time that they show.
struct Picture {
  Body jpeg;
  WallClock::time_point time;
};

/// A source of pictures. Called from many threads at once.
class PictureSource {
 public:
  virtual ~PictureSource() = default;
  /// The camera's picture now, or the one that it took at the time `archived`, of whole seconds. Throws std::exception
  /// when there is none.
  virtual Picture Take(int camera, const PictureForm& form, std::optional<WallClock::time_point> archived = {}) = 0;
};

/// Draws the pictures, or sends the settings' folder of JPEG files. `settings` outlives the source. Throws
/// std::runtime_error when the folder cannot be read or holds no .jpg or .jpeg file.
std::unique_ptr<PictureSource> MakePictureSource(const Settings& settings);

/// All of a regular file of at most `most` bytes; throws std::runtime_error where it cannot be read or is larger.
Body ReadFile(const std::filesystem::path& file, std::size_t most);

enum class Mark { kNone, kRecording, kArchive };

/// The subject of a drawn picture.
struct View {
  int camera = 1;  ///< gives the landscape, its colours and its own time of day
  std::string name{};
  WallClock::time_point time{};  ///< of the clock, and of the things that move
  Mark mark = Mark::kNone;
  Light light = Light::kOwn;
};

/// A lake with a sailing boat under the camera's name and a clock, as a baseline JPEG with 4:2:0 colour. Throws
/// std::exception.
std::string DrawJpeg(const View& view, const PictureForm& form);

}  // namespace orbelcast::camera_server
