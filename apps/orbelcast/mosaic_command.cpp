#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "common/access.h"
#include "common/command_line.h"
#include "common/option_values.h"
#include "common/shown_text.h"
#include "common/standard_stream.h"
#include "interface/events.h"
#include "mosaic/mosaic_tile.h"
#include "orbelcast/camera_address.h"
#include "orbelcast/camera_options.h"
#include "orbelcast/clip_options.h"
#include "orbelcast/commands.h"
#include "orbelcast/event_json.h"
#include "orbelcast/picture_file.h"
#include "orbelcast/play_command.h"
#include "orbelcast/timed_clip.h"
#include "stream/failure_text.h"
#include "stream/stream_host.h"

namespace orbelcast {

namespace {

struct MosaicOptions {
  std::vector<std::string> cameras;  ///< Live addresses, without the picture code; at first also servers.
  Access access;
  Messages messages;
  std::optional<double> time_out;  ///< End after that time where no picture came.
  Size size{640, 480};             ///< The video area.
  std::filesystem::path output;    ///< The file for the grid at the end.
  ClipOptions clip;                ///< The clip that each round is a picture of.
  int rounds = 1;                  ///< End after that many rounds, unless `seconds` says when.
  std::optional<double> seconds;
  bool window = false;
};

/// A host without a window: one viewer that goes round the cameras until the options or a signal end it.
class MosaicHost {
 public:
  explicit MosaicHost(const MosaicOptions& options) : options_(options) {
    host_.on_end = [this] { grid_ = host_.Viewer().VideoStream.Image(); };
    if (options_.clip.file.empty()) return;
    const int round = host_.Viewer().MultiCam.Interval * static_cast<int>(options_.cameras.size());
    clip_.emplace(host_.ServicesUnderneath(), options_.clip,
                  ClipSource{.take_picture = [this] { return host_.Viewer().PictureToSave(); },
                             .interval = [round] { return round; }});
  }

  ExitStatus Run() {
    host_.Run([this] { Begin(); });
    if (clip_) clip_->Finish();
    return Outcome();
  }

 private:
  void Begin() {
    ListenToAll(host_.Viewer().Events, [this](const EventEntry& event, std::span<const EventArgument> arguments) {
      NoteEvent(event, arguments);
    });
    if (options_.seconds) host_.EndAfter(*options_.seconds);
    if (options_.time_out) host_.EndWithoutPictureAfter(*options_.time_out);
    host_.Pictures().decodes_all = true;  // Outcome tells which cameras gave none.
    host_.Resize(options_.size);
    std::string cameras;
    for (const std::string& camera : options_.cameras) cameras += TileAddress(camera, options_.access) + "\r\n";
    // In a handler: what it waits for does not hold up the end.
    host_.Services().loop.RunHandler([cameras, viewer = &host_.Viewer()]() mutable { viewer->MultiCamView(cameras); });
  }

  void NoteEvent(const EventEntry& event, std::span<const EventArgument> arguments) {
    if (host_.HasEnded()) return;
    const bool prints = !IsStandardStream(options_.output) && !options_.messages.quiet;
    if (prints && !PrintViewerEvent(std::cout, event, arguments)) host_.End();
    if (event.name != "StreamInfo") return;
    if (clip_ && !clip_->Add()) host_.End();
    if (++rounds_ == options_.rounds && !options_.seconds) host_.End();
  }

  ExitStatus Outcome() {
    if (!options_.output.empty()) {
      const std::string why = WritePicture(options_.output, grid_, host_.Services().pictures);
      if (TellIfUnwritten(options_.output, why)) return kBadUsage;
    }
    if (clip_ && !TellOfClip()) return kBadUsage;
    const auto cameras = static_cast<std::int32_t>(options_.cameras.size());
    for (std::int32_t index = 0; index < cameras; ++index) {
      const auto tile = PlaceTile(index, cameras, options_.size.width, options_.size.height);
      if (tile && host_.Pictures().At(tile->x, tile->y)) continue;
      std::cerr << "orbelcast: " << WhyNot(options_.cameras[static_cast<std::size_t>(index)]) << '\n';
    }
    return host_.Pictures().Count() > 0 ? kWorked : kNoPictures;
  }

  std::string WhyNot(const std::string& camera) const {
    const std::string address = TileAddress(camera, options_.access);
    const bool given = address != camera || !options_.access.user.empty();
    const auto asked = host_.Requested().NewestOf(address);
    if (!asked) return "no picture from " + MaskedAddress(camera).Text() + ": it was not its turn yet";
    const Failure failure = asked->kind == FailureKind::kNone ? Failure{FailureKind::kNoPicture} : *asked;
    return "no picture from " + MaskedAddress(camera).Text() + ": " + TextOf(failure, {.user_was_given = given}).line;
  }

  bool TellOfClip() {
    const std::string file = options_.clip.file.string();
    if (clip_->Pictures() > 0 && !options_.messages.quiet) std::cerr << file << ": " << clip_->Summary() << '\n';
    if (!clip_->WhyNot().empty()) std::cerr << "orbelcast: " << file << ": " << clip_->WhyNot() << '\n';
    return clip_->WhyNot().empty();
  }

  const MosaicOptions& options_;
  StreamHost host_{StreamHost::Requests::kYielding, options_.messages.verbose};
  std::optional<TimedClip> clip_;
  int rounds_ = 0;
  /// As it was when it was time to end: a tick that goes on would mark the next tile in it.
  Surface grid_;
};

/// Puts the player program in this program's place.
ExitStatus ShowInWindow(const MosaicOptions& options) {
  std::vector<std::string> arguments{"--size",
                                     std::to_string(options.size.width) + "x" + std::to_string(options.size.height)};
  if (options.seconds) {
    arguments.emplace_back("--quit-after");
    arguments.push_back(std::to_string(*options.seconds));
  }
  arguments.emplace_back("--mosaic");
  arguments.insert(arguments.end(), options.cameras.begin(), options.cameras.end());
  PassOn(options.access);
  return Play(arguments);
}

ExitStatus RunMosaic(MosaicOptions& options) {
  const ServerOptions server{.access = options.access,
                             .time_out = std::min(options.time_out.value_or(kAnswerWithin), kAnswerWithin),
                             .messages = options.messages};
  if (const auto problem = FindAllCameras(options.cameras, server)) {
    Tell(*problem, std::cerr);
    return kNoPictures;
  }
  if (options.window) return ShowInWindow(options);
  if (const auto problem = WhyTaken(options.clip)) {
    Tell(*problem, std::cerr);
    return kBadUsage;
  }
  return MosaicHost(options).Run();
}

/// Where the grid goes. A window has its own end: `rounds` is another one.
void AddOutputOptions(CommandLine& command, MosaicOptions& options, Option rounds) {
  const std::string output = "Output (at least one of them)";
  Option file =
      command
          .AddText(
              "-o,--output",
              [&options](const std::string& text) {
                options.output = ParsePictureFile("--output", text, {PictureFormat::kPng, PictureFormat::kBmp});
              },
              "At the end, write the grid to FILE: .png or .bmp")
          .ValueName("FILE")
          .Group(output);
  Option window = command.AddFlag("--window", options.window, "Show the grid in a window, until that is closed")
                      .Group(output)
                      .Excludes(file)
                      .Excludes(rounds);
  Option clip = command
                    .AddText(
                        "--record",
                        [&options](const std::string& text) {
                          options.clip.file = ParseClipFile("--record", text, ClipPictures::kDrawn);
                        },
                        "Record a clip, FILE.avi, with a picture of each round")
                    .ValueName("FILE")
                    .Group(output)
                    .Excludes(window);
  command.OnRight([file, window, clip] {
    if (!file.IsGiven() && !window.IsGiven() && !clip.IsGiven()) {
      throw UsageError("mosaic", "say where the grid goes: --output FILE, --record FILE.avi, or --window");
    }
  });
}

}  // namespace

CommandRun BuildMosaic(CommandLine& command) {
  command.Footer(kExitStatusOfPictures);
  const auto shared = std::make_shared<MosaicOptions>();
  MosaicOptions& options = *shared;
  command
      .AddList("CAMERA", options.cameras,
               "The cameras' live addresses, in the grid's order, row by row; each begins with http:// and is asked "
               "for pictures of its tile's size (?live-special… is added). A camera server, HOST or HOST:PORT, stands "
               "for all its cameras")
      .Required()
      .Check(CheckCamera)
      .ShowEach(KeepSecretsOf)
      .ValueName("");
  AddAccessOptions(command, options.access, "User name, added to each address that has no login yet (default: none)",
                   WithoutPassword::kAsk);
  AddMessageOptions(command, options.messages);
  AddSizeOption(command, options.size, "Size of the grid in pixels, 1 to 8192 each (default: 640x480)");

  const std::string end = "When to end";
  Option rounds = AddCountOption(command, "-n,--rounds", options.rounds,
                                 "End after N rounds, 1 or more; a round takes half a second a camera (default: 1)")
                      .Group(end);
  AddSecondsOption(command, "--seconds", options.seconds, "End after S seconds, more than 0; may have decimals",
                   kLongestTimeOut)
      .Group(end)
      .Excludes(rounds);
  AddTimeOutOption(command, options.time_out, "each camera has five seconds a round").Group(end);

  AddClipOptions(command, options.clip, ClipPictures::kDrawn);
  AddOutputOptions(command, options, rounds);
  return [shared] { return RunMosaic(*shared); };
}

}  // namespace orbelcast
