#pragma once

#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "common/access.h"
#include "orbelcast/clip_options.h"
#include "orbelcast/exit_status.h"

namespace CLI {
class App;
}

namespace orbelcast {

/// What `orbelcast mosaic` was asked to do.
struct MosaicOptions {
  std::vector<std::string> cameras;  ///< Live addresses, without what says which picture.
  Access access;
  int width = 640;  ///< The video area, in pixels.
  int height = 480;
  std::filesystem::path output;  ///< Where the grid goes at the end.
  ClipOptions clip;              ///< The clip that each round is a picture of.
  int rounds = 1;                ///< End after that many rounds, unless `seconds` says when.
  std::optional<double> seconds;
  bool window = false;
};

/// Declares the options of `mosaic` on `command`, filling `options` when it is parsed.
void AddMosaicOptions(CLI::App& command, MosaicOptions& options);

/// Shows the cameras until the options or a signal end it, and writes the grid; a line of JSON for each round goes to
/// `output`, what people should know to `messages`. With a window it puts the player program in this program's place.
ExitStatus Mosaic(const MosaicOptions& options, std::ostream& output, std::ostream& messages);

}  // namespace orbelcast
