#include "orbelcast/watch_options.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "common/command_line.h"
#include "common/option_values.h"
#include "common/standard_stream.h"
#include "interface/events.h"
#include "orbelcast/camera_options.h"
#include "protocol/text.h"
#include "toolkit/whole_number.h"

namespace orbelcast {

namespace {

constexpr int kZones = 25;
constexpr std::string_view kNoEvents = "none";

void ParseArea(const std::string& text, WatchOptions& options) {
  const auto parts = Split(text, ",");
  std::array<std::int32_t, 4> area{};
  bool good = parts.size() == area.size();
  for (std::size_t i = 0; good && i < area.size(); ++i) {
    area[i] = WholeNumber<std::int32_t>(parts[i]).value_or(-1);
    good = area[i] >= 0 && area[i] <= 100;
  }
  if (!good || area[0] >= area[2] || area[1] >= area[3]) {
    throw UsageError("--motion-area",
                     "give x1,y1,x2,y2 in hundredths of the picture, each from 0 to 100, x1 less than x2 and "
                     "y1 less than y2; 0,0,100,100 is the whole picture");
  }
  options.stream.motion_area = area;
}

void ParseZones(const std::string& text, WatchOptions& options) {
  if (text.size() != kZones || text.find_first_not_of("01") != std::string::npos) {
    throw UsageError("--motion-zones",
                     "give 25 characters, five for each of five rows from the top: 1 watches a zone, 0 does not");
  }
  options.stream.motion_zones = text;
}

std::string EventNames() {
  std::string names;
  for (const EventEntry& event : ViewerEvents()) {
    names += (names.empty() ? "" : ", ") + std::string(event.name);
  }
  return names;
}

void ParseEvents(const std::string& text, WatchOptions& options) {
  options.events.emplace();
  if (text == kNoEvents) return;
  const auto known = ViewerEvents();
  for (const std::string_view part : Split(text, ",")) {
    const std::string name(part);
    if (std::none_of(known.begin(), known.end(), [&](const EventEntry& event) { return event.name == name; })) {
      throw UsageError("--events", "there is no event '" + name + "'; there are " + EventNames() + " (or none)");
    }
    options.events->insert(name);
  }
}

void ParsePicture(const std::string& text, WatchOptions& options) {
  options.picture =
      ParsePictureFile("--picture", text, {PictureFormat::kPng, PictureFormat::kBmp, PictureFormat::kJpeg});
}

// An option whose text `parse` reads into the options.
template <typename Parse>
Option AddParsed(CommandLine& command, const std::string& name, WatchOptions& options, Parse parse,
                 const std::string& description, const std::string& form) {
  return command
      .AddText(
          name, [&options, parse](const std::string& text) { parse(text, options); }, description)
      .ValueName(form);
}

}  // namespace

void AddWatchOptions(CommandLine& command, WatchOptions& options) {
  StreamOptions& stream = options.stream;
  AddCameraOptions(command, stream);

  AddStreamOptions(command, stream.frame_rate, stream.auto_reconnect);
  AddSizeOption(command, options.size, "Size of the video area in pixels, 1 to 8192 each (default: 640x480)")
      .Group("Stream");

  const std::string motion = "Motion";
  Option area =
      AddParsed(command, "--motion-area", options, ParseArea,
                "Report motion in this rectangle, in hundredths of the picture, 0 to 100 (default: no motion)",
                "x1,y1,x2,y2")
          .Group(motion);
  AddParsed(
      command, "--motion-zones", options, ParseZones,
      "Report motion in zones: 25 characters, five for each of five rows from the top, 1 for a watched zone and 0 "
      "for another (default: no motion)",
      "MASK")
      .Group(motion)
      .Excludes(area);
  Option sensitivity = AddSensitivityOption(command, stream.sensitivity).Group(motion);

  const std::string end = "When to end (default: at Ctrl-C)";
  Option frames = AddCountOption(command, "-n,--frames", options.frames, "End after N pictures, 1 or more").Group(end);
  AddSecondsOption(command, "--seconds", options.seconds, "End after S seconds, more than 0; may have decimals")
      .Group(end);
  AddTimeOutOption(command, options.time_out, "10 with --frames");
  command.AddFlag("--once", options.once, "Fetch and show a single picture").Group(end).Excludes(frames);

  const std::string output = "Output";
  AddParsed(command, "-o,--picture", options, ParsePicture,
            "At the end, write the picture to FILE: .png or .bmp, as the viewer shows it; .jpg, as the server sent it "
            "(default: no file). - is standard output, as PNG; no event is printed then",
            "FILE")
      .Group(output);
  AddParsed(command, "--events", options, ParseEvents,
            "Print these events only, separated by commas, or none (default: all; VigilboxTCR comes with each picture)",
            "NAMES")
      .Group(output);

  command.OnRight([&options, sensitivity] {
    if (IsStandardStream(options.picture) || options.stream.messages.quiet) options.events.emplace();
    if (options.frames && !options.time_out) options.time_out = kFirstPictureWithin;
    if (sensitivity.IsGiven() && !options.stream.Motion()) {
      throw UsageError("--sensitivity",
                       "say where to look for motion too: --motion-area 0,0,100,100 is the "
                       "whole picture");
    }
  });
}

}  // namespace orbelcast
