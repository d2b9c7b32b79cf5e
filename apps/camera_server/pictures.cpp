#include "camera_server/pictures.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "camera_server/drawing.h"
#include "toolkit/ascii.h"

namespace orbelcast::camera_server {

Picture DrawnPictures::Take(int camera, const PictureForm& form) {
  const Tenth tenth = std::chrono::floor<Tenth::duration>(WallClock::now());
  const auto time = std::chrono::time_point_cast<WallClock::duration>(tenth);
  std::packaged_task<Jpeg()> draw([&] {
    const Mark mark = settings_.IsRecording(camera, time) ? Mark::kRecording : Mark::kNone;
    const View view{
        .camera = camera, .name = settings_.NameOf(camera), .time = time, .mark = mark, .light = settings_.light};
    return std::make_shared<const std::string>(DrawJpeg(view, form));
  });
  std::unique_lock lock(mutex_);
  if (tenth != tenth_) made_.clear();
  tenth_ = tenth;
  const auto [found, is_new] = made_.try_emplace({camera, form.width, form.height, form.quality});
  if (is_new) found->second = draw.get_future().share();
  const std::shared_future<Jpeg> made = found->second;
  lock.unlock();
  if (is_new) draw();
  return {made.get(), time};
}

Picture DrawnPictures::TakeArchived(int camera, const PictureForm& form, WallClock::time_point time) {
  const View view{
      .camera = camera, .name = settings_.NameOf(camera), .time = time, .mark = Mark::kArchive, .light = Light::kClock};
  return {std::make_shared<const std::string>(DrawJpeg(view, form)), time};
}

FolderPictures::FolderPictures(const std::filesystem::path& folder, int archive_step) : archive_step_(archive_step) {
  std::error_code error;
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    const std::string extension = entry->path().extension().string();
    if (!EqualIgnoringCase(extension, ".jpg") && !EqualIgnoringCase(extension, ".jpeg")) continue;
    if (files_.size() >= kMaxFolderFiles) break;
    files_.push_back(entry->path());
  }
  if (error) throw std::runtime_error("cannot read the folder " + folder.string() + ": " + error.message());
  if (files_.empty()) throw std::runtime_error("there is no .jpg or .jpeg file in the folder " + folder.string());
  std::sort(files_.begin(), files_.end());
}

Picture FolderPictures::Take(int camera, const PictureForm& /*form*/) {
  std::unique_lock lock(mutex_);
  const std::size_t index = static_cast<std::size_t>(camera - 1) + taken_[camera]++;
  lock.unlock();
  return {ReadFile(files_.at(index % files_.size()), kMaxFileBytes), WallClock::now()};
}

Picture FolderPictures::TakeArchived(int camera, const PictureForm& /*form*/, WallClock::time_point time) {
  const auto steps = std::chrono::floor<std::chrono::seconds>(time.time_since_epoch()).count() / archive_step_;
  const auto index = static_cast<std::size_t>(steps + camera) % files_.size();
  return {ReadFile(files_.at(index), kMaxFileBytes), time};
}

std::unique_ptr<PictureSource> MakePictureSource(const Settings& settings) {
  if (settings.folder.empty()) return std::make_unique<DrawnPictures>(settings);
  return std::make_unique<FolderPictures>(settings.folder, settings.archive_step);
}

std::shared_ptr<const std::string> ReadFile(const std::filesystem::path& file, std::size_t most) {
  std::ifstream stream(file, std::ios::binary);
  std::error_code error;
  const auto size = std::filesystem::file_size(file, error);
  if (!stream || error || size > most) throw std::runtime_error("cannot send " + file.string());
  std::string bytes(size, '\0');
  stream.read(bytes.data(), static_cast<std::streamsize>(size));
  bytes.resize(static_cast<std::size_t>(stream.gcount()));
  return std::make_shared<const std::string>(std::move(bytes));
}

}  // namespace orbelcast::camera_server
