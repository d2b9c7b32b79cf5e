#include "orbelcast/snapshot_command.h"

#include <CLI/CLI.hpp>
#include <ostream>

#include "orbelcast/event_json.h"
#include "orbelcast/option_values.h"
#include "orbelcast/watcher.h"

namespace orbelcast {

void AddSnapshotOptions(CLI::App& command, SnapshotOptions& options) {
  WatchOptions& watch = options.watch;
  watch.once = true;
  watch.picture_as_sent = true;
  watch.events.emplace();
  AddCameraOptions(command, watch.url, watch.access);
  command
      .add_option_function<std::string>(
          "FILE",
          [&watch](const std::string& text) {
            watch.picture = text;
            CheckWritable("FILE", text);
          },
          "Where the picture goes, as the server sent it; an existing file is replaced once the picture is there")
      ->required()
      ->type_name("");
  command.add_flag("--json", options.json, "Print what was saved as JSON, for programs")->group("Output");
}

ExitStatus Snapshot(const SnapshotOptions& options, std::ostream& output, std::ostream& messages) {
  Watcher watcher(options.watch, output, messages);
  const ExitStatus status = watcher.Run();
  if (status != kWorked || !options.json) return status;
  const JpegDecoder& decoder = watcher.Services().jpeg_decoder;
  output << ToLine(Json{{"file", options.watch.picture.string()},
                        {"bytes", watcher.NewestFrame().Size()},
                        {"width", decoder.JpegWidth()},
                        {"height", decoder.JpegHeight()}})
         << '\n';
  return kWorked;
}

}  // namespace orbelcast
