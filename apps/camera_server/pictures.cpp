#include "pictures.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "bounds.h"
#include "http_message.h"
#include "jpeg_writer.h"
#include "toolkit/ascii.h"

namespace orbelcast::camera_server {

namespace {

std::shared_ptr<const std::string> ReadFile(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::error_code error;
  const auto size = std::filesystem::file_size(file, error);
  if (!stream || error || size > kMaxFileBytes) throw std::runtime_error("cannot send " + file.string());
  std::string bytes(size, '\0');
  stream.read(bytes.data(), static_cast<std::streamsize>(size));
  bytes.resize(static_cast<std::size_t>(stream.gcount()));
  return std::make_shared<const std::string>(std::move(bytes));
}

}  // namespace

Picture DrawnPictures::Take(int camera, const PictureForm& form) {
  const Tenth tenth = std::chrono::floor<Tenth::duration>(WallClock::now());
  const auto time = std::chrono::time_point_cast<WallClock::duration>(tenth);
  std::promise<Jpeg> promise;
  std::shared_future<Jpeg> made;
  bool is_ours = false;
  {
    const std::lock_guard lock(made_mutex_);
    if (tenth != tenth_) made_.clear();
    tenth_ = tenth;
    const auto [found, is_new] = made_.try_emplace({camera, form.width, form.height, form.quality});
    if (is_new) found->second = promise.get_future().share();
    made = found->second;
    is_ours = is_new;
  }
  if (is_ours) {
    try {
      promise.set_value(
          Make(camera, form,
               {.name = settings_.NameOf(camera),
                .time = time,
                .mark = settings_.IsRecording(camera, time) ? OverlayMark::kRecording : OverlayMark::kNone},
               settings_.light));
    } catch (...) {
      promise.set_exception(std::current_exception());
    }
  }
  return {made.get(), time};
}

Picture DrawnPictures::TakeArchived(int camera, const PictureForm& form, WallClock::time_point time) {
  const OverlayText text{.name = settings_.NameOf(camera), .time = time, .mark = OverlayMark::kArchive};
  return {Make(camera, form, text, Light::kClock), time};
}

DrawnPictures::Jpeg DrawnPictures::Make(int camera, const PictureForm& form, const OverlayText& text, Light light) {
  CairoSurface surface;
  {
    const std::lock_guard lock(scene_mutex_);
    surface = scene_.Draw(camera, form.width, form.height, text, light);
  }
  return std::make_shared<const std::string>(EncodeJpeg(cairo_image_surface_get_data(surface.get()), form.width,
                                                        form.height, cairo_image_surface_get_stride(surface.get()),
                                                        form.quality));
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
  std::filesystem::path file;
  {
    const std::lock_guard lock(mutex_);
    const auto next = next_.try_emplace(camera, static_cast<std::size_t>(camera - 1)).first;
    file = files_.at(next->second++ % files_.size());
  }
  return {ReadFile(file), WallClock::now()};
}

Picture FolderPictures::TakeArchived(int camera, const PictureForm& /*form*/, WallClock::time_point time) {
  const auto steps = std::chrono::floor<std::chrono::seconds>(time.time_since_epoch()).count() / archive_step_;
  return {ReadFile(files_.at(static_cast<std::size_t>(steps + camera) % files_.size())), time};
}

std::unique_ptr<PictureSource> MakePictureSource(const Settings& settings) {
  if (settings.folder.empty()) return std::make_unique<DrawnPictures>(settings);
  return std::make_unique<FolderPictures>(settings.folder, settings.archive_step);
}

}  // namespace orbelcast::camera_server
