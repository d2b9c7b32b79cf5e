#pragma once

#include "platform/avi_file.h"

namespace orbelcast {

/// The clips of the library that writes them, liborbelcast-clips.so, which is loaded when the first clip is asked for.
///
/// FFmpeg's libraries bring a hundred others. Who only watches pays for none of them: not in memory, and not in the
/// tenth of a second that loading them takes at each start. The library is looked for in the folder "orbelcast" beside
/// the program or library that this code is part of, and in the library folder of the same installation. Where it
/// cannot be loaded no compression is offered and no clip made; the reason is written to standard error, once.
class ClipLibrary final : public AviFiles {
 public:
  std::vector<std::string> Codecs() const override;
  std::unique_ptr<AviFile> Create(const std::string& path) override;
};

}  // namespace orbelcast
