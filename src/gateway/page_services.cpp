#include "gateway/page_services.h"

#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <numeric>
#include <system_error>
#include <utility>

namespace orbelcast {

// ---- Files ----------------------------------------------------------------------------------------------------------

bool PageFiles::Write(const std::string& path, std::span<const std::uint8_t> bytes) {
  return Put(path, FrameBytes(FrameBytes::Storage(bytes.begin(), bytes.end())));
}

bool PageFiles::Put(const std::string& path, FrameBytes bytes) {
  kept_.erase(path);
  if (!path.starts_with(kModuleFolder)) {
    offer_(path, std::move(bytes));
    return true;
  }
  const std::size_t sum =
      std::accumulate(kept_.begin(), kept_.end(), bytes.Size(),
                      [](std::size_t so_far, const auto& each) { return so_far + each.second.Size(); });
  if (sum > kMaxFileBytes) return false;
  kept_[path] = std::move(bytes);
  return true;
}

std::optional<std::uintmax_t> PageFiles::LengthOf(const std::string& path) const {
  const auto found = kept_.find(path);
  return found == kept_.end() ? std::nullopt : std::optional<std::uintmax_t>(found->second.Size());
}

bool PageFiles::Move(const std::string& from, const std::string& to) {
  const auto found = kept_.find(from);
  if (found == kept_.end() || kept_.contains(to)) return false;
  FrameBytes bytes = std::move(found->second);
  kept_.erase(found);
  return Put(to, std::move(bytes));
}

// ---- Clips ----------------------------------------------------------------------------------------------------------

namespace {

/// A new empty file of this user's alone, below the system's temporary folder; empty where none can be made.
std::string MakeTemporaryFile() {
  std::error_code error;
  const auto folder = std::filesystem::temp_directory_path(error);
  if (error) return {};
  std::string name = (folder / "orbelcast-clip-XXXXXX").string();
  const int file = ::mkstemp(name.data());
  if (file < 0) return {};
  ::close(file);
  return name;
}

/// A clip in a temporary file, which ends with it.
class PageClip final : public AviFile {
 public:
  /// `open` counts it until it is released.
  PageClip(std::unique_ptr<AviFile> clip, std::string file, std::string name, OfferFile offer,
           std::shared_ptr<int> open)
      : clip_(std::move(clip)),
        file_(std::move(file)),
        name_(std::move(name)),
        offer_(std::move(offer)),
        open_clips_(std::move(open)) {
    ++*open_clips_;
  }
  ~PageClip() override { PageClip::Release(); }
  PageClip(const PageClip&) = delete;
  PageClip& operator=(const PageClip&) = delete;

  bool CreateStream(const AviStreamInfo& info) override { return clip_->CreateStream(info); }
  bool MakeCompressedStream(const Dialogs::Compression& choice) override { return clip_->MakeCompressedStream(choice); }
  bool SetFormat(std::span<const std::uint8_t> bitmap_info) override { return clip_->SetFormat(bitmap_info); }

  bool Write(std::int32_t position, const AviSample& sample) override {
    std::error_code error;
    if (std::filesystem::file_size(file_, error) > PageClips::kMaxClipBytes || error) return false;
    const bool written = clip_->Write(position, sample);
    written_ = written_ || written;
    return written;
  }

  void Release() override {
    if (!std::exchange(open_, false)) return;
    --*open_clips_;
    clip_->Release();
    std::error_code ignored;
    if (written_) {
      std::ifstream file(file_, std::ios::binary);
      FrameBytes::Storage bytes(std::filesystem::file_size(file_, ignored));
      file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
      if (file) offer_(name_, FrameBytes(std::move(bytes)));
    }
    std::filesystem::remove(file_, ignored);
  }

 private:
  const std::unique_ptr<AviFile> clip_;
  const std::string file_;
  const std::string name_;
  const OfferFile offer_;
  const std::shared_ptr<int> open_clips_;
  bool written_ = false;
  bool open_ = true;
};

}  // namespace

std::unique_ptr<AviFile> PageClips::Create(const std::string& path) {
  const std::string file = MakeTemporaryFile();
  if (file.empty()) return nullptr;
  if (auto clip = clips_.Create(file)) return std::make_unique<PageClip>(std::move(clip), file, path, offer_, open_);
  std::error_code ignored;
  std::filesystem::remove(file, ignored);
  return nullptr;
}

// ---- Settings, loop -------------------------------------------------------------------------------------------------

bool PageRegistry::SetValue(Hive hive, const std::string& key, const std::string& name, const std::string& text) {
  if (key.size() > kMaxTextBytes || name.size() > kMaxTextBytes || text.size() > kMaxTextBytes) return false;
  if (!names_.contains({key, name}) && names_.size() >= kMaxValues) return false;
  names_.emplace(key, name);
  if (!Registry::SetValue(hive, key, name, text)) return false;
  stored_(key, {name, text});
  return true;
}

void PageLoop::RunHandler(std::function<void()> handler) {
  // Everything that the handler holds goes before the session does.
  loop_.RunHandler([session = session_.lock(), handler = std::move(handler)]() mutable {
    handler();
    handler = nullptr;
  });
}

}  // namespace orbelcast
