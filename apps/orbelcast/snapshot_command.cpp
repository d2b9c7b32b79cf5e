#include <algorithm>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "common/command_line.h"
#include "common/option_values.h"
#include "common/standard_stream.h"
#include "orbelcast/camera_address.h"
#include "orbelcast/camera_options.h"
#include "orbelcast/commands.h"
#include "orbelcast/doctor/time_code.h"
#include "orbelcast/event_json.h"
#include "orbelcast/snapshot_series.h"
#include "orbelcast/timed_name.h"
#include "orbelcast/watcher.h"
#include "protocol/server_address.h"

namespace orbelcast {

namespace {

struct SnapshotOptions {
  WatchOptions watch;           ///< A single picture, as it was sent; no event is printed.
  std::optional<double> every;  ///< Seconds from one picture of a series to the next.
  std::optional<LocalTime> at;  ///< Of a camera server's archive.
  bool json = false;
};

/// The seconds that a first answer may take, of a camera that wakes up.
constexpr double kSnapshotWithin = 60;

void PrintSaved(const std::string& file, const FrameBytes& picture, JpegDecoder& decoder, const std::string& taken) {
  const Size size = decoder.SizeOf(picture).value_or(Size{});
  Json json{{"file", file}, {"bytes", picture.Size()}, {"width", size.width}, {"height", size.height}};
  if (!taken.empty()) json["taken"] = taken;
  std::cout << ToLine(json) << std::endl;
}

ExitStatus Fail(const Problem& problem, const SnapshotOptions& options, ExitStatus status) {
  if (options.json) {
    std::cout << ToLine(Json{{"file", options.watch.picture.string()}, {"error", ToJson(problem)}}) << std::endl;
  }
  return status;
}

/// Puts the address of the archive's picture in the place of the server.
std::optional<Problem> FindInArchive(StreamOptions& stream, const LocalTime& at, std::optional<double> time_out) {
  const ServerOptions server = ServerOfStream(stream, time_out);
  if (stream.device.empty()) {
    StreamOptions first = stream;
    if (auto problem = FindPicture(first, time_out)) return problem;
    stream.device = first.device;
  }
  const auto text = [](int number) { return std::to_string(number); };
  const std::string parts[] = {text(at.day),  text(at.month),  text(at.year),
                               text(at.hour), text(at.minute), text(at.second)};
  ServerTalk talk(server);
  stream.url = talk.AddressOf([&](const std::string& base) {
    return ArchiveSearchAddress(ArchiveAddress(base, stream.device),
                                {.day = parts[0],
                                 .month = parts[1],
                                 .year = parts[2],
                                 .hour = parts[3],
                                 .minute = parts[4],
                                 .second = parts[5]},
                                AskedPicture());
  });
  return stream.url.empty() ? talk.WhyNo("picture") : std::nullopt;
}

std::optional<Problem> Find(SnapshotOptions& options) {
  StreamOptions& stream = options.watch.stream;
  const auto time_out = options.watch.time_out;
  options.watch.from = options.at ? stream.url : "";
  return options.at ? FindInArchive(stream, *options.at, time_out) : FindPicture(stream, time_out);
}

/// Saves a camera's picture. With `json` its file and sizes are printed.
ExitStatus TakeOne(const SnapshotOptions& options) {
  Watcher watcher(options.watch, std::cout, std::cerr);
  const ExitStatus status = watcher.Run();
  if (status != kWorked) return Fail(*watcher.WhatWentWrong(), options, status);
  std::string taken = watcher.Host().Requested().NewestTimeCode();
  taken = options.at && SecondsOf(taken) ? DateAndTime(taken) : "";
  if (options.json) {
    PrintSaved(options.watch.picture.string(), watcher.Host().Pictures().Newest(),
               watcher.Host().Services().jpeg_decoder, taken);
  } else if (!taken.empty() && !options.watch.stream.messages.quiet) {
    std::cerr << "orbelcast: the archive's nearest picture is of " << taken << '\n';
  }
  return kWorked;
}

ExitStatus TakeSeries(const SnapshotOptions& options) {
  const WatchOptions& watch = options.watch;
  const SeriesOptions series_options{.stream = watch.stream,
                                     .name = watch.picture.string(),
                                     .every = *options.every,
                                     .time_out = *watch.time_out,
                                     .pictures = watch.frames,
                                     .seconds = watch.seconds};
  SnapshotSeries series(series_options);
  HeadlessPlatform services;
  series.on_saved = [&](const std::string& file, const FrameBytes& picture) {
    if (options.json) return PrintSaved(file, picture, services.Get().jpeg_decoder, {});
    if (!watch.stream.messages.quiet && !IsStandardStream(file)) std::cout << file << std::endl;
  };
  series.on_problem = [&](const Problem& problem) {
    Tell(problem, std::cerr);
    Fail(problem, options, kNoPictures);
  };
  return series.Run();
}

ExitStatus Snapshot(SnapshotOptions& options) {
  if (const auto problem = Find(options)) {
    Tell(*problem, std::cerr);
    return Fail(*problem, options, kNoPictures);
  }
  return options.every ? TakeSeries(options) : TakeOne(options);
}

void Complete(SnapshotOptions& options) {
  WatchOptions& watch = options.watch;
  if (options.json && IsStandardStream(watch.picture)) {
    throw UsageError("--json", "standard output is the picture's: name a file");
  }
  if (!options.every && (watch.frames || watch.seconds)) throw UsageError("--frames, --seconds", "give --every too");
  if (options.at && watch.stream.device.empty() && !NamesServer(watch.stream.url)) {
    throw UsageError("--at",
                     "an archive is a camera server's: give HOST:PORT, and --device for another camera than the first");
  }
  watch.once = !options.every;
  if (!watch.time_out) watch.time_out = std::min(kSnapshotWithin, options.every.value_or(kSnapshotWithin));
}

}  // namespace

CommandRun BuildSnapshot(CommandLine& command) {
  const auto shared = std::make_shared<SnapshotOptions>();
  SnapshotOptions& options = *shared;
  WatchOptions& watch = options.watch;
  watch.picture_as_sent = true;
  watch.events.emplace();
  AddCameraOptions(command, watch.stream);
  AddFileArgument(command, watch.picture, "picture");

  const std::string which = "Which pictures (default: one, as it is now)";
  Option every =
      AddSecondsOption(command, "--every", options.every,
                       "One every S seconds, until Ctrl-C. FILE has the time in its name, by the conversions "
                       "of strftime, such as yard-%Y%m%d-%H%M%S.jpg; without one each takes the place of "
                       "the one before")
          .Group(which);
  AddCountOption(command, "-n,--frames", watch.frames, "With --every: end after N pictures, 1 or more").Group(which);
  AddSecondsOption(command, "--seconds", watch.seconds, "With --every: end after S seconds").Group(which);
  command
      .AddText(
          "--at",
          [&options](const std::string& text) {
            options.at = ReadTime(text);
            if (!options.at) throw UsageError("--at", "give a day and a time, such as \"2026-11-24 13:00\"");
          },
          "The one of a camera server's archive that is nearest to TIME, \"YYYY-MM-DD HH:MM\" or with \":SS\"")
      .ValueName("TIME")
      .Group(which)
      .Excludes(every);
  AddSecondsOption(command, "--timeout", watch.time_out,
                   "Give a picture up that has not come after S seconds; may have decimals (default: 60, or --every "
                   "where that is less)",
                   kLongestTimeOut)
      .Group("Request");
  command.AddFlag("--json", options.json, "Print what was saved, or why not, as JSON, for programs").Group("Output");
  command.OnRight([&options] { Complete(options); });
  return [shared] { return Snapshot(*shared); };
}

}  // namespace orbelcast
