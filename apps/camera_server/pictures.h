#pragma once

#include <cstdint>
#include <filesystem>
#include <future>
#include <map>
#include <memory>
#include <mutex>
#include <ratio>
#include <string>
#include <tuple>
#include <vector>

#include "camera_server/settings.h"

namespace orbelcast::camera_server {

/// A JPEG file's bytes and the time that they show.
struct Picture {
  std::shared_ptr<const std::string> jpeg;
  WallClock::time_point time;
};

/// Where pictures come from. Called from many threads at once.
class PictureSource {
 public:
  virtual ~PictureSource() = default;
  /// The camera's picture now. Throws std::exception when there is none.
  virtual Picture Take(int camera, const PictureForm& form) = 0;
  /// The picture that the camera took at `time`, of whole seconds.
  virtual Picture TakeArchived(int camera, const PictureForm& form, WallClock::time_point time) = 0;
};

/// Draws its pictures. A live one is that of the current tenth of a second; however many clients ask for it, it is
/// drawn and encoded once.
class DrawnPictures final : public PictureSource {
 public:
  /// `settings` outlives this.
  explicit DrawnPictures(const Settings& settings) : settings_(settings) {}
  Picture Take(int camera, const PictureForm& form) override;
  Picture TakeArchived(int camera, const PictureForm& form, WallClock::time_point time) override;

 private:
  using Jpeg = std::shared_ptr<const std::string>;
  using Tenth = std::chrono::time_point<WallClock, std::chrono::duration<std::int64_t, std::deci>>;
  using Key = std::tuple<int, int, int, int>;  // camera, width, height, quality

  const Settings& settings_;
  std::mutex mutex_;
  Tenth tenth_;
  std::map<Key, std::shared_future<Jpeg>> made_;  // of that tenth of a second
};

/// Sends the JPEG files of a folder as they are, in the order of their names: each request for a camera gets its next
/// file, round and round; camera 2 begins at the second file, and so on. The archive has a file each archive step. A
/// size asked for is not heeded.
class FolderPictures final : public PictureSource {
 public:
  /// Throws std::runtime_error when the folder cannot be read or holds no .jpg or .jpeg file.
  FolderPictures(const std::filesystem::path& folder, int archive_step);
  Picture Take(int camera, const PictureForm& form) override;
  Picture TakeArchived(int camera, const PictureForm& form, WallClock::time_point time) override;

 private:
  int archive_step_;  // seconds
  std::vector<std::filesystem::path> files_;
  std::mutex mutex_;
  std::map<int, std::size_t> taken_;  // files, by camera
};

std::unique_ptr<PictureSource> MakePictureSource(const Settings& settings);

/// All of a regular file of at most `most` bytes; throws std::runtime_error where it cannot be read or is larger.
std::shared_ptr<const std::string> ReadFile(const std::filesystem::path& file, std::size_t most);

}  // namespace orbelcast::camera_server
