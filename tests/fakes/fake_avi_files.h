#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/avi_file.h"

namespace orbelcast::fakes {

/// Clips that are kept as what was done with them; nothing is written anywhere.
class FakeAviFiles final : public AviFiles {
 public:
  /// "create PATH", "stream RATE/SCALE WIDTHxHEIGHT BYTES", "compress CODEC KEY_FRAME_EVERY KILOBYTES", "format BYTES",
  /// "write POSITION WIDTHxHEIGHT", "release" (also where the file was just let go), in order.
  std::vector<std::string> log;
  /// The step that fails: how its entry in the log begins. It is logged all the same.
  std::string fails = "none";
  /// The pixels of each sample that was written.
  std::vector<std::vector<std::uint8_t>> samples;

  std::vector<std::string> Codecs() const override { return {"Uncompressed", "MPEG-4"}; }
  std::unique_ptr<AviFile> Create(const std::string& path) override {
    if (!Note("create " + path)) return nullptr;
    return std::make_unique<File>(*this);
  }

 private:
  class File final : public AviFile {
   public:
    explicit File(FakeAviFiles& files) : files_(files) {}
    ~File() override { File::Release(); }

    bool CreateStream(const AviStreamInfo& info) override {
      return files_.Note("stream " + std::to_string(info.rate) + "/" + std::to_string(info.scale) + " " +
                         Size(info.width, info.height));
    }
    bool MakeCompressedStream(const Dialogs::Compression& choice) override {
      return files_.Note("compress " + choice.codec + " " + std::to_string(choice.key_frame_every) + " " +
                         std::to_string(choice.kilobytes_per_second));
    }
    bool SetFormat(std::span<const std::uint8_t> bitmap_info) override {
      return files_.Note("format " + std::to_string(bitmap_info.size()));
    }
    bool Write(std::int32_t position, const AviSample& sample) override {
      if (!files_.Note("write " + std::to_string(position) + " " + Size(sample.width, sample.height))) return false;
      files_.samples.emplace_back(sample.pixels.begin(), sample.pixels.end());
      return true;
    }
    void Release() override {
      if (open_) files_.Note("release");
      open_ = false;
    }

   private:
    static std::string Size(int width, int height) { return std::to_string(width) + "x" + std::to_string(height); }
    FakeAviFiles& files_;
    bool open_ = true;
  };

  bool Note(std::string entry) {
    log.push_back(std::move(entry));
    return !log.back().starts_with(fails);
  }
};

}  // namespace orbelcast::fakes
