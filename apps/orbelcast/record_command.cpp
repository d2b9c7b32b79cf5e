#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "common/command_line.h"
#include "common/option_values.h"
#include "orbelcast/camera_address.h"
#include "orbelcast/camera_options.h"
#include "orbelcast/clip_options.h"
#include "orbelcast/commands.h"
#include "orbelcast/event_json.h"
#include "orbelcast/timed_clip.h"
#include "orbelcast/watcher.h"
#include "stream/seconds.h"

namespace orbelcast {

namespace {

struct RecordOptions {
  StreamOptions stream{.frame_rate = 10};
  ClipOptions clip;
  std::optional<int> frames;       ///< End after that many pictures.
  std::optional<double> seconds;   ///< End when the clip is that long.
  std::optional<double> time_out;  ///< End after that time where no picture came.
  bool json = false;
};

constexpr std::chrono::seconds kProgressEvery{1};
/// Side of the viewer's own picture, which is not shown: as small as decoding gets.
constexpr int kUnseenSide = 8;

WatchOptions WatchSilently(const RecordOptions& options) {
  WatchOptions watch;
  watch.stream = options.stream;
  watch.size = {kUnseenSide, kUnseenSide};
  watch.events.emplace();
  watch.decodes_all = true;
  watch.time_out =
      options.time_out.value_or(std::min(kFirstPictureWithin, options.seconds.value_or(kFirstPictureWithin)));
  return watch;
}

/// A host without a window: a watcher whose pictures go into a clip.
class Recording {
 public:
  explicit Recording(const RecordOptions& options)
      : options_(options),
        watcher_(WatchSilently(options), std::cout, std::cerr),
        clip_(
            watcher_.Host().ServicesUnderneath(), options.clip, [this] { return watcher_.Host().Pictures().Newest(); },
            [this] { return TimedClip::RateOfInterval(watcher_.Host().Viewer().MasterTimer.Interval); }) {}

  ExitStatus Run() {
    watcher_.on_picture = [this] { Add(); };
    const bool quiet = options_.stream.messages.quiet;
    const bool shows_progress = !quiet && ::isatty(STDERR_FILENO) != 0;
    if (shows_progress) ShowProgress();
    const ExitStatus status = watcher_.Run();
    clip_.Finish();
    if (shows_progress) ClearProgress();
    problem_ = watcher_.WhatWentWrong();
    if (!clip_.WhyNot().empty()) {
      problem_ = Problem{.kind = "unwritable", .text = options_.clip.file.string() + ": " + clip_.WhyNot()};
      Tell(*problem_, std::cerr);
    }
    if (options_.json) {
      std::cout << ClipAsJson() << '\n';
    } else if (clip_.Pictures() > 0 && !quiet) {
      std::cout << ClipAsText() << '\n';
    }
    return clip_.WhyNot().empty() ? status : kBadUsage;
  }

 private:
  void Add() {
    if (ended_) return;
    const bool first = clip_.Pictures() == 0;
    if (!clip_.Add() || clip_.Pictures() == options_.frames) return End();
    if (first && options_.seconds) {
      Queue().ArmTimer(Seconds(*options_.seconds), [this] { End(); });
    }
  }

  void End() {
    ended_ = true;
    watcher_.Host().End();
  }

  std::string ClipAsText() const { return options_.clip.file.string() + ": " + clip_.Summary(); }
  std::string ClipAsJson() const {
    std::error_code error;
    const auto bytes = std::filesystem::file_size(options_.clip.file, error);
    Json json{{"file", options_.clip.file.string()},
              {"seconds", clip_.Seconds()},
              {"pictures", clip_.Pictures()},
              {"bytes", error ? 0 : bytes}};
    if (problem_) json["error"] = ToJson(*problem_);
    return ToLine(json);
  }

  void ShowProgress() {
    if (ended_) return;
    std::fprintf(stderr, "\r\033[K%s",
                 clip_.Pictures() > 0 ? (clip_.Summary() + "; Ctrl-C ends it").c_str() : "waiting for a picture");
    Queue().ArmTimer(kProgressEvery, [this] { ShowProgress(); });
  }
  static void ClearProgress() { std::fputs("\r\033[K", stderr); }

  EventQueue& Queue() { return watcher_.Host().Services().loop.Queue(); }

  const RecordOptions& options_;
  Watcher watcher_;
  TimedClip clip_;
  std::optional<Problem> problem_;
  bool ended_ = false;
};

/// Records until the options, a failure or a signal end it, and prints a line about the finished clip. How far it is
/// goes to standard error, where that is a terminal.
ExitStatus Record(RecordOptions& options) {
  if (TellIfTaken(options.clip)) return kBadUsage;
  if (const auto problem = FindPicture(options.stream)) {
    Tell(*problem, std::cerr);
    return kNoPictures;
  }
  return Recording(options).Run();
}

}  // namespace

CommandRun BuildRecord(CommandLine& command) {
  command.Footer(kExitStatusOfPictures);
  const auto shared = std::make_shared<RecordOptions>();
  RecordOptions& options = *shared;
  AddCameraOptions(command, options.stream);
  AddFileArgument(
      command, [&options](const std::string& text) { options.clip.file = ParseClipFile("FILE", text); },
      "The clip's file; its name ends in .avi");

  AddStreamOptions(command, options.stream.frame_rate, options.stream.auto_reconnect);
  AddClipOptions(command, options.clip);

  const std::string end = "When to end (default: at Ctrl-C)";
  AddCountOption(command, "-n,--frames", options.frames, "End after N pictures, 1 or more").Group(end);
  AddSecondsOption(command, "--seconds", options.seconds,
                   "End S seconds after the first picture, or after the start where none came; may have decimals")
      .Group(end);
  AddTimeOutOption(command, options.time_out, "10, or --seconds where that is less");
  command.AddFlag("--json", options.json, "Tell of the finished clip as JSON, for programs").Group("Output");
  return [shared] { return Record(*shared); };
}

}  // namespace orbelcast
