#include "orbelcast/mosaic_command.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <optional>
#include <ostream>
#include <set>

#include "adapters/http/yielding_http.h"
#include "assembly/headless_platform.h"
#include "common/shown_text.h"
#include "common/stop_signals.h"
#include "mosaic/mosaic_tile.h"
#include "orbelcast/event_json.h"
#include "orbelcast/option_values.h"
#include "orbelcast/picture_file.h"
#include "orbelcast/play_command.h"
#include "orbelcast/seconds.h"
#include "orbelcast/timed_clip.h"
#include "viewer/interface.h"
#include "viewer/video_server_push.h"

namespace orbelcast {

namespace {

/// What events say they come from.
constexpr std::string_view kControlName = "viewer";

/// Notes where a picture was drawn, by its top-left corner.
class DrawnTiles final : public ForwardingJpegDecoder {
 public:
  using ForwardingJpegDecoder::ForwardingJpegDecoder;

  bool DrawJpegAt(Surface& target, const FrameBytes& jpeg, int x, int y, int width, int height) override {
    const bool drawn = ForwardingJpegDecoder::DrawJpegAt(target, jpeg, x, y, width, height);
    if (drawn) corners_.emplace(x, y);
    return drawn;
  }

  bool Any() const { return !corners_.empty(); }
  bool At(int x, int y) const { return corners_.contains({x, y}); }

 private:
  std::set<std::pair<int, int>> corners_;
};

/// A host without a window: one viewer that goes round the cameras.
class MosaicHost {
 public:
  MosaicHost(const MosaicOptions& options, std::ostream& output, std::ostream& messages)
      : options_(options),
        output_(output),
        messages_(messages),
        services_(std::make_unique<HeadlessPlatform>()),
        drawn_(services_->Get().jpeg_decoder),
        requests_(services_->Get().http),
        platform_(services_->Get().With(drawn_).With(requests_)),
        viewer_(VideoServerPush::Create(platform_)) {
    if (options_.clip.file.empty()) return;
    const int round = viewer_->MultiCam.Interval * static_cast<int>(options_.cameras.size());
    clip_.emplace(
        services_->Get(), options_.clip, [this] { return viewer_->PictureToSave(); },
        [round] { return TimedClip::RateOfInterval(round); });
  }
  ~MosaicHost() {
    clip_.reset();
    viewer_.reset();
    // Ends the handlers that still wait; they go by the platform and the decoder, which therefore end after it.
    services_.reset();
  }
  MosaicHost(const MosaicHost&) = delete;
  MosaicHost& operator=(const MosaicHost&) = delete;

  ExitStatus Run() {
    EventQueue& queue = platform_.loop.Queue();
    const StopSignals signals(queue, [this] { End(); });
    ListenToAll(viewer_->Events,
                [this](const EventEntry& event, std::span<const EventArgument> arguments) { Note(event, arguments); });
    if (options_.seconds) {
      queue.ArmTimer(Seconds(*options_.seconds), [this] { End(); });
    }
    viewer_->Resize(static_cast<float>(options_.width * platform_.screen.TwipsPerPixelX()),
                    static_cast<float>(options_.height * platform_.screen.TwipsPerPixelY()));
    std::string cameras;
    for (const std::string& camera : options_.cameras) cameras += TileAddress(camera, options_.access) + "\r\n";
    // In a handler: what it waits for does not hold up the end.
    platform_.loop.RunHandler([cameras, viewer = viewer_.get()]() mutable { viewer->MultiCamView(cameras); });
    platform_.loop.Wait(end_);
    if (clip_) clip_->Finish();
    return Outcome();
  }

 private:
  void Note(const EventEntry& event, std::span<const EventArgument> arguments) {
    if (end_.IsDone()) return;
    output_ << ToLine(WithoutPasswords(EventToJson(event, kControlName, arguments)))
            << std::endl;  // at once: others read along
    if (!output_) End();
    if (event.name != "StreamInfo") return;
    if (clip_ && !clip_->Add()) End();
    if (++rounds_ == options_.rounds && !options_.seconds) End();
  }

  // The grid is kept as it is now: a tick that goes on would mark the next tile in it.
  void End() {
    if (end_.IsDone()) return;
    grid_ = viewer_->VideoStream.Image();
    end_.Complete();
  }

  ExitStatus Outcome() {
    if (!options_.output.empty()) {
      if (const std::string why = WritePicture(options_.output, grid_, platform_.pictures); !why.empty()) {
        messages_ << "orbelcast: cannot write " << options_.output.string() << ": " << why << '\n';
        return kBadUsage;
      }
    }
    if (clip_ && !TellOfClip()) return kBadUsage;
    const auto cameras = static_cast<std::int32_t>(options_.cameras.size());
    for (std::int32_t index = 0; index < cameras; ++index) {
      const auto tile = PlaceTile(index, cameras, options_.width, options_.height);
      if (tile && drawn_.At(tile->x, tile->y)) continue;
      messages_ << "orbelcast: no picture from "
                << MaskedAddress(options_.cameras[static_cast<std::size_t>(index)]).Text() << '\n';
    }
    return drawn_.Any() ? kWorked : kNoPictures;
  }

  bool TellOfClip() {
    const std::string file = options_.clip.file.string();
    if (clip_->Pictures() > 0) messages_ << file << ": " << clip_->Summary() << '\n';
    if (!clip_->WhyNot().empty()) messages_ << "orbelcast: " << file << ": " << clip_->WhyNot() << '\n';
    return clip_->WhyNot().empty();
  }

  const MosaicOptions& options_;
  std::ostream& output_;
  std::ostream& messages_;

  std::unique_ptr<HeadlessPlatform> services_;
  DrawnTiles drawn_;
  YieldingHttp requests_;
  Platform platform_;  ///< The services, with `drawn_` before the decoder and `requests_` before the requests.
  std::shared_ptr<VideoServerPush> viewer_;

  std::optional<TimedClip> clip_;
  Completion end_;  ///< It is time to end.
  int rounds_ = 0;
  Surface grid_;
};

ExitStatus ShowInWindow(const MosaicOptions& options, std::ostream& messages) {
  std::vector<std::string> arguments{"--size", std::to_string(options.width) + "x" + std::to_string(options.height)};
  if (options.seconds) {
    arguments.emplace_back("--quit-after");
    arguments.push_back(std::to_string(*options.seconds));
  }
  arguments.emplace_back("--mosaic");
  arguments.insert(arguments.end(), options.cameras.begin(), options.cameras.end());
  PassOn(options.access);
  return Play(arguments, messages);
}

}  // namespace

void AddMosaicOptions(CLI::App& command, MosaicOptions& options) {
  command
      .add_option("URL", options.cameras,
                  "The cameras' live addresses, in the grid's order, row by row; each begins with http:// and is asked "
                  "for pictures of its tile's size (?live-special… is added)")
      ->required()
      ->check(CheckAddress)
      ->each(KeepSecretsOf)
      ->type_name("");
  AddAccessOptions(command, options.access, "User name, added to each address that has no login yet (default: none)");
  command
      .add_option_function<std::string>(
          "--size",
          [&options](const std::string& text) {
            const PixelSize size = ParsePixelSize("--size", text);
            options.width = size.width;
            options.height = size.height;
          },
          "Size of the grid in pixels, 1 to 8192 each (default: 640x480)")
      ->type_name("WxH");

  const std::string end = "When to end";
  auto* rounds = AddCountOption(command, "--rounds", options.rounds,
                                "End after N rounds, 1 or more; a round takes half a second a camera (default: 1)")
                     ->group(end);
  AddSecondsOption(command, "--seconds", options.seconds, "End after S seconds, more than 0; may have decimals",
                   kLongestTimeOut)
      ->group(end)
      ->excludes(rounds);

  AddClipOptions(command, options.clip);

  const std::string output = "Output (at least one of them)";
  auto* file =
      command
          .add_option_function<std::string>(
              "--output",
              [&options](const std::string& text) {
                options.output = ParsePictureFile("--output", text, {PictureFormat::kPng, PictureFormat::kBmp});
              },
              "At the end, write the grid to FILE: .png or .bmp")
          ->type_name("FILE")
          ->group(output);
  auto* window = command.add_flag("--window", options.window, "Show the grid in a window, until that is closed")
                     ->group(output)
                     ->excludes(file)
                     ->excludes(rounds);
  auto* clip =
      command
          .add_option_function<std::string>(
              "--record", [&options](const std::string& text) { options.clip.file = ParseClipFile("--record", text); },
              "Record a clip, FILE.avi, with a picture of each round")
          ->type_name("FILE")
          ->group(output)
          ->excludes(window);
  command.callback([file, window, clip] {
    if (file->count() + window->count() + clip->count() == 0) {
      throw CLI::ValidationError("mosaic", "say where the grid goes: --output FILE, --record FILE.avi, or --window");
    }
  });
}

ExitStatus Mosaic(const MosaicOptions& options, std::ostream& output, std::ostream& messages) {
  if (options.window) return ShowInWindow(options, messages);
  if (const std::string why = WhyNotRecord(options.clip); !why.empty()) {
    messages << "orbelcast: " << why << '\n';
    return kBadUsage;
  }
  return MosaicHost(options, output, messages).Run();
}

}  // namespace orbelcast
