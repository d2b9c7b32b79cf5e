#include "orbelcast/record_command.h"

#include <unistd.h>
#include <CLI/CLI.hpp>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ostream>

#include "orbelcast/event_json.h"
#include "orbelcast/option_values.h"
#include "orbelcast/seconds.h"
#include "orbelcast/timed_clip.h"
#include "orbelcast/watcher.h"

namespace orbelcast {

namespace {

constexpr std::chrono::seconds kProgressEvery{1};
/// Side of the viewer's own picture, which nobody sees: as small as decoding gets.
constexpr int kUnseenSide = 8;

WatchOptions WatchSilently(const RecordOptions& options) {
  WatchOptions watch;
  watch.url = options.url;
  watch.access = options.access;
  watch.frame_rate = options.frame_rate;
  watch.width = watch.height = kUnseenSide;
  watch.auto_reconnect = options.auto_reconnect;
  watch.events.emplace();
  watch.time_out =
      options.time_out.value_or(std::min(kFirstPictureWithin, options.seconds.value_or(kFirstPictureWithin)));
  return watch;
}

/// A host without a window: a watcher whose pictures go into a clip.
class Recording {
 public:
  Recording(const RecordOptions& options, std::ostream& output, std::ostream& messages)
      : options_(options),
        output_(output),
        messages_(messages),
        watcher_(WatchSilently(options), output, messages),
        clip_(
            watcher_.Services(), options.clip, [this] { return watcher_.NewestFrame(); },
            [this] { return TimedClip::RateOfInterval(watcher_.Viewer().MasterTimer.Interval); }) {}

  ExitStatus Run() {
    watcher_.on_picture = [this] { Add(); };
    const bool shows_progress = ::isatty(STDERR_FILENO) != 0;
    if (shows_progress) ShowProgress();
    const ExitStatus status = watcher_.Run();
    clip_.Finish();
    if (shows_progress) ClearProgress();
    if (clip_.Pictures() > 0) output_ << (options_.json ? ClipAsJson() : ClipAsText()) << '\n';
    if (clip_.WhyNot().empty()) return status;
    messages_ << "orbelcast: " << options_.clip.file.string() << ": " << clip_.WhyNot() << '\n';
    return kBadUsage;
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
    watcher_.End();
  }

  std::string ClipAsText() const { return options_.clip.file.string() + ": " + clip_.Summary(); }
  std::string ClipAsJson() const {
    std::error_code error;
    const auto bytes = std::filesystem::file_size(options_.clip.file, error);
    return ToLine(Json{{"file", options_.clip.file.string()},
                       {"seconds", clip_.Seconds()},
                       {"pictures", clip_.Pictures()},
                       {"bytes", error ? 0 : bytes}});
  }

  void ShowProgress() {
    if (ended_) return;
    std::fprintf(stderr, "\r\033[K%s",
                 clip_.Pictures() > 0 ? (clip_.Summary() + "; Ctrl-C ends it").c_str() : "waiting for a picture");
    Queue().ArmTimer(kProgressEvery, [this] { ShowProgress(); });
  }
  static void ClearProgress() { std::fputs("\r\033[K", stderr); }

  EventQueue& Queue() { return watcher_.Services().loop.Queue(); }

  const RecordOptions& options_;
  std::ostream& output_;
  std::ostream& messages_;
  Watcher watcher_;
  TimedClip clip_;
  bool ended_ = false;
};

}  // namespace

void AddRecordOptions(CLI::App& command, RecordOptions& options) {
  AddCameraOptions(command, options.url, options.access);
  command
      .add_option_function<std::string>(
          "FILE", [&options](const std::string& text) { options.clip.file = ParseClipFile("FILE", text); },
          "The clip's file; its name ends in .avi")
      ->required()
      ->type_name("");

  AddStreamOptions(command, options.frame_rate, options.auto_reconnect);
  AddClipOptions(command, options.clip);

  const std::string end = "When to end (default: at Ctrl-C)";
  AddCountOption(command, "--frames", options.frames, "End after N pictures, 1 or more")->group(end);
  AddSecondsOption(command, "--seconds", options.seconds,
                   "End S seconds after the first picture, or after the start where none came; may have decimals")
      ->group(end);
  AddTimeOutOption(command, options.time_out, ", or --seconds where that is less");
  command.add_flag("--json", options.json, "Tell of the finished clip as JSON, for programs")->group("Output");
}

ExitStatus Record(const RecordOptions& options, std::ostream& output, std::ostream& messages) {
  if (const std::string why = WhyNotRecord(options.clip); !why.empty()) {
    messages << "orbelcast: " << why << '\n';
    return kBadUsage;
  }
  return Recording(options, output, messages).Run();
}

}  // namespace orbelcast
