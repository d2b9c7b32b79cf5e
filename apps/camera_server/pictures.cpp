#include "camera_server/pictures.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <fstream>
#include <future>
#include <map>
#include <mutex>
#include <ratio>
#include <stdexcept>
#include <system_error>
#include <tuple>
#include <utility>
#include <vector>

#include "toolkit/ascii.h"

namespace orbelcast::camera_server {

namespace {

/// Draws its pictures. A live one is that of the current tenth of a second; however many clients ask for it, it is
/// drawn and encoded once.
class DrawnPictures final : public PictureSource {
 public:
  explicit DrawnPictures(const Settings& settings) : settings_(settings) {}

  Picture Take(int camera, const PictureForm& form, std::optional<WallClock::time_point> archived) override {
    if (archived) return {Draw(camera, form, *archived, Mark::kArchive, Light::kClock), *archived};
    const Tenth tenth = std::chrono::floor<Tenth::duration>(WallClock::now());
    const auto time = std::chrono::time_point_cast<WallClock::duration>(tenth);
    std::packaged_task<Body()> draw([&] {
      const Mark mark = settings_.IsRecording(camera, time) ? Mark::kRecording : Mark::kNone;
      return Draw(camera, form, time, mark, settings_.light);
    });
    std::unique_lock lock(mutex_);
    if (tenth != tenth_) made_.clear();
    tenth_ = tenth;
    const auto [found, is_new] = made_.try_emplace({camera, form.width, form.height, form.quality});
    if (is_new) found->second = draw.get_future().share();
    const std::shared_future<Body> made = found->second;
    lock.unlock();
    if (is_new) draw();
    return {made.get(), time};
  }

 private:
  using Tenth = std::chrono::time_point<WallClock, std::chrono::duration<std::int64_t, std::deci>>;
  using Key = std::tuple<int, int, int, int>;  // camera, width, height, quality

  Body Draw(int camera, const PictureForm& form, WallClock::time_point time, Mark mark, Light light) const {
    return MakeBody(DrawJpeg({camera, settings_.NameOf(camera), time, mark, light}, form));
  }

  const Settings& settings_;
  std::mutex mutex_;
  Tenth tenth_;
  std::map<Key, std::shared_future<Body>> made_;  // of that tenth of a second
};

/// Sends the JPEG files of a folder as they are, in the order of their names: each request for a camera gets its next
/// file, round and round; camera 2 begins at the second file, and so on. The archive has a file each archive step. A
/// size asked for is not heeded.
class FolderPictures final : public PictureSource {
 public:
  explicit FolderPictures(const Settings& settings) : archive_step_(settings.archive_step) {
    using Entries = std::filesystem::directory_iterator;
    std::error_code error;
    for (Entries entry(settings.folder, error), end; !error && entry != end; entry.increment(error)) {
      const std::string extension = LowerCase(entry->path().extension().string());
      if (extension != ".jpg" && extension != ".jpeg") continue;
      if (files_.size() >= kMaxFolderFiles) break;
      files_.push_back(entry->path());
    }
    if (error) throw std::runtime_error("cannot read the folder " + settings.folder + ": " + error.message());
    if (files_.empty()) throw std::runtime_error("there is no .jpg or .jpeg file in the folder " + settings.folder);
    std::ranges::sort(files_);
  }

  Picture Take(int camera, const PictureForm& /*form*/, std::optional<WallClock::time_point> archived) override {
    std::size_t index = 0;
    if (archived) {
      const auto seconds = std::chrono::floor<std::chrono::seconds>(archived->time_since_epoch()).count();
      index = static_cast<std::size_t>(seconds / archive_step_ + camera);
    } else {
      const std::lock_guard lock(mutex_);
      index = static_cast<std::size_t>(camera - 1) + taken_[camera]++;
    }
    return {ReadFile(files_.at(index % files_.size()), kMaxFileBytes), archived.value_or(WallClock::now())};
  }

 private:
  int archive_step_;  // seconds
  std::vector<std::filesystem::path> files_;
  std::mutex mutex_;
  std::map<int, std::size_t> taken_;  // files, by camera
};

}  // namespace

std::unique_ptr<PictureSource> MakePictureSource(const Settings& settings) {
  if (settings.folder.empty()) return std::make_unique<DrawnPictures>(settings);
  return std::make_unique<FolderPictures>(settings);
}

Body ReadFile(const std::filesystem::path& file, std::size_t most) {
  std::ifstream stream(file, std::ios::binary);
  std::error_code error;
  const auto size = std::filesystem::file_size(file, error);
  if (!stream || error || size > most) throw std::runtime_error("cannot send " + file.string());
  std::string bytes(size, '\0');
  stream.read(bytes.data(), static_cast<std::streamsize>(size));
  bytes.resize(static_cast<std::size_t>(stream.gcount()));
  return MakeBody(std::move(bytes));
}

}  // namespace orbelcast::camera_server
