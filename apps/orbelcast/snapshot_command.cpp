#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>

#include "common/command_line.h"
#include "common/standard_stream.h"
#include "orbelcast/camera_options.h"
#include "orbelcast/commands.h"
#include "orbelcast/event_json.h"
#include "orbelcast/watcher.h"

namespace orbelcast {

namespace {

struct SnapshotOptions {
  WatchOptions watch;  ///< A single picture, as it was sent; no event is printed.
  bool json = false;
};

/// Saves a camera's picture. With `json` its file and sizes are printed.
ExitStatus Snapshot(const SnapshotOptions& options) {
  Watcher watcher(options.watch, std::cout, std::cerr);
  const ExitStatus status = watcher.Run();
  if (status != kWorked || !options.json) return status;
  const FrameBytes& picture = watcher.Host().Pictures().Newest();
  const Size size = watcher.Host().Services().jpeg_decoder.SizeOf(picture).value_or(Size{});
  std::cout << ToLine(Json{{"file", options.watch.picture.string()},
                           {"bytes", picture.Size()},
                           {"width", size.width},
                           {"height", size.height}})
            << '\n';
  return kWorked;
}

}  // namespace

CommandRun BuildSnapshot(CommandLine& command) {
  command.Footer(
      "Exit status: 0 the picture is in FILE; 1 no picture came, and FILE is as it was; 2 wrong\n"
      "usage, or a file that cannot be written.");
  const auto options = std::make_shared<SnapshotOptions>();
  WatchOptions& watch = options->watch;
  watch.once = true;
  watch.picture_as_sent = true;
  watch.events.emplace();
  AddCameraOptions(command, watch.stream.url, watch.stream.access);
  AddFileArgument(command, watch.picture,
                  "Where the picture goes, as the server sent it; an existing file is replaced once the picture is "
                  "there. - is standard output");
  command.AddFlag("--json", options->json, "Print what was saved as JSON, for programs").Group("Output");
  command.OnRight([options] {
    if (options->json && IsStandardStream(options->watch.picture)) {
      throw UsageError("--json", "standard output is the picture's: name a file");
    }
  });
  return [options] { return Snapshot(*options); };
}

}  // namespace orbelcast
