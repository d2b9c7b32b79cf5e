#pragma once

#include <filesystem>

#include "platform/avi_file.h"

namespace orbelcast {

/// The clips of the library that writes them, liborbelcast-clips.so, which is loaded when the first clip is asked for.
///
/// FFmpeg's libraries bring a hundred others. A program that records nothing loads none of them, which saves
/// memory and a tenth of a second at each start. The library is looked for in the folder "orbelcast" beside
/// the program or library that this code is part of, and in the library folder of the same installation. Where it
/// cannot be loaded no compression is offered and no clip made; the reason is written to standard error, once.
class ClipLibrary final : public AviFiles {
 public:
  /// `own_folder` answers the folder of that program or library; asked with the first clip of the process alone.
  explicit ClipLibrary(std::filesystem::path (*own_folder)()) : own_folder_(own_folder) {}

  std::vector<std::string> Codecs() const override;
  std::unique_ptr<AviFile> Create(const std::string& path) override;
  std::unique_ptr<JpegClip> CreateOfJpegs(const std::string& path, const JpegClip::Header& header) override;

 private:
  AviFiles& Loaded() const;

  std::filesystem::path (*const own_folder_)();
};

}  // namespace orbelcast
