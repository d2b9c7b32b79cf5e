#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "common/command_line.h"
#include "common/option_values.h"
#include "common/standard_stream.h"
#include "orbelcast/camera_address.h"
#include "orbelcast/camera_options.h"
#include "orbelcast/clip_options.h"
#include "orbelcast/commands.h"
#include "orbelcast/event_json.h"
#include "orbelcast/timed_clip.h"
#include "orbelcast/timed_name.h"
#include "orbelcast/watcher.h"
#include "stream/seconds.h"

namespace orbelcast {

namespace {

struct RecordOptions {
  StreamOptions stream{.frame_rate = 10};
  ClipOptions clip;
  std::optional<double> segment;   ///< A new clip begins after that time; the file's name is strftime's.
  std::optional<int> frames;       ///< End after that many pictures.
  std::optional<double> seconds;   ///< End that long after the first picture.
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
  watch.decodes_all = !options.clip.copies;
  watch.time_out =
      options.time_out.value_or(std::min(kFirstPictureWithin, options.seconds.value_or(kFirstPictureWithin)));
  return watch;
}

/// A host without a window: a watcher whose pictures go into a clip, or into one after the other.
class Recording {
 public:
  explicit Recording(const RecordOptions& options)
      : options_(options), watcher_(WatchSilently(options), std::cout, std::cerr) {}

  ExitStatus Run() {
    watcher_.on_picture = [this] { Add(); };
    const bool shows_progress = !options_.stream.messages.quiet && ::isatty(STDERR_FILENO) != 0;
    if (shows_progress) ShowProgress();
    const ExitStatus status = watcher_.Run();
    if (shows_progress) ClearProgress();
    problem_ = watcher_.WhatWentWrong();
    FinishClip();
    if (!told_ && options_.json) std::cout << ToLine(ClipAsJson()) << '\n';
    return unwritten_ ? kBadUsage : status;
  }

 private:
  void Add() {
    if (ended_) return;
    if (options_.segment && clip_ && Queue().Now() - begun_of_clip_ >= Seconds(*options_.segment)) FinishClip();
    if (ended_) return;
    if (!clip_) BeginClip();
    if (!clip_->Add() || ++pictures_ == options_.frames) return End();
    if (pictures_ == 1 && options_.seconds) Queue().ArmTimer(Seconds(*options_.seconds), [this] { End(); });
  }

  void End() {
    ended_ = true;
    watcher_.Host().End();
  }

  void BeginClip() {
    ClipOptions clip = options_.clip;
    if (options_.segment) clip.file = NameOfNow(clip.file.string());
    file_ = clip.file.string();
    begun_of_clip_ = Queue().Now();
    clip_.emplace(watcher_.Host().ServicesUnderneath(), clip,
                  ClipSource{.take_picture = [this] { return watcher_.Host().Pictures().Newest(); },
                             .interval = [this] { return int{watcher_.Host().Viewer().MasterTimer.Interval}; }});
  }

  void FinishClip() {
    if (!clip_) return;
    clip_->Finish();
    if (!clip_->WhyNot().empty()) {
      problem_ = Problem{.kind = "unwritable", .text = ShownFile() + ": " + clip_->WhyNot()};
      Tell(*problem_, std::cerr);
      unwritten_ = true;
      End();
    }
    TellOfClip();
    clip_.reset();
  }

  std::string ShownFile() const { return IsStandardStream(file_) ? "standard output" : file_; }

  void TellOfClip() {
    told_ = true;
    if (options_.json) {
      std::cout << ToLine(ClipAsJson()) << std::endl;
    } else if (clip_->Pictures() > 0 && !options_.stream.messages.quiet) {
      // Standard output gets the clip alone where it is the clip's file.
      (IsStandardStream(file_) ? std::cerr : std::cout) << ShownFile() << ": " << clip_->Summary() << std::endl;
    }
  }

  Json ClipAsJson() const {
    std::error_code error;
    const std::string file = clip_ ? file_ : options_.clip.file.string();
    const auto bytes = clip_ ? std::filesystem::file_size(file, error) : 0;
    Json json{{"file", file},
              {"seconds", clip_ ? clip_->Seconds() : 0},
              {"pictures", clip_ ? clip_->Pictures() : 0},
              {"bytes", error ? 0 : bytes}};
    if (problem_) json["error"] = ToJson(*problem_);
    return json;
  }

  void ShowProgress() {
    if (ended_) return;
    std::fprintf(
        stderr, "\r\033[K%s",
        clip_ && clip_->Pictures() > 0 ? (clip_->Summary() + "; Ctrl-C ends it").c_str() : "waiting for a picture");
    Queue().ArmTimer(kProgressEvery, [this] { ShowProgress(); });
  }
  static void ClearProgress() { std::fputs("\r\033[K", stderr); }

  EventQueue& Queue() { return watcher_.Host().Services().loop.Queue(); }

  const RecordOptions& options_;
  Watcher watcher_;
  std::optional<TimedClip> clip_;
  std::string file_;  ///< Of the clip.
  EventQueue::Nanoseconds begun_of_clip_{};
  int pictures_ = 0;  ///< In all clips.
  std::optional<Problem> problem_;
  bool unwritten_ = false;
  bool told_ = false;  ///< Of a clip, at least.
  bool ended_ = false;
};

/// Records until the options, a failure or a signal end it, and prints a line about the finished clip. How far it is
/// goes to standard error, where that is a terminal.
ExitStatus Record(RecordOptions& options) {
  const auto fail = [&options](const Problem& problem, ExitStatus status) {
    Tell(problem, std::cerr);
    if (options.json)
      std::cout << ToLine(Json{{"file", options.clip.file.string()}, {"error", ToJson(problem)}}) << '\n';
    return status;
  };
  if (const auto problem = options.segment ? std::nullopt : WhyTaken(options.clip)) return fail(*problem, kBadUsage);
  if (const auto problem = FindPicture(options.stream, options.time_out)) return fail(*problem, kNoPictures);
  return Recording(options).Run();
}

}  // namespace

CommandRun BuildRecord(CommandLine& command) {
  command.Footer(kExitStatusOfPictures);
  const auto shared = std::make_shared<RecordOptions>();
  RecordOptions& options = *shared;
  AddCameraOptions(command, options.stream);
  AddFileArgument(
      command,
      [&options](const std::string& text) { options.clip.file = ParseClipFile("FILE", text, ClipPictures::kCameras); },
      "The clip's file: .avi, or .mkv, into which the camera's own pictures go. - is standard output, as .mkv");

  AddStreamOptions(command, options.stream.frame_rate, options.stream.auto_reconnect);
  AddClipOptions(command, options.clip, ClipPictures::kCameras);
  AddSecondsOption(command, "--segment", options.segment,
                   "Begin a new clip every S seconds. FILE has the time in its name, by the conversions of strftime, "
                   "such as yard-%Y%m%d-%H%M%S.avi")
      .Group("Clip");

  const std::string end = "When to end (default: at Ctrl-C)";
  AddCountOption(command, "-n,--frames", options.frames, "End after N pictures, 1 or more").Group(end);
  AddSecondsOption(command, "--seconds", options.seconds,
                   "End S seconds after the first picture, or after the start where none came; may have decimals")
      .Group(end);
  AddTimeOutOption(command, options.time_out, "10, or --seconds where that is less");
  command.AddFlag("--json", options.json, "Tell of the finished clip as JSON, for programs").Group("Output");
  command.OnRight([&options] {
    const std::string file = options.clip.file.string();
    if (options.json && IsStandardStream(file))
      throw UsageError("--json", "standard output is the clip's: name a file");
    if (options.segment && file.find('%') == std::string::npos) {
      throw UsageError("--segment", "FILE needs the time in its name, such as yard-%Y%m%d-%H%M%S.avi");
    }
  });
  return [shared] { return Record(*shared); };
}

}  // namespace orbelcast
