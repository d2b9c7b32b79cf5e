#include "orbelcast/watcher.h"

#include <chrono>
#include <ostream>

#include "common/shown_text.h"
#include "common/stop_signals.h"
#include "orbelcast/event_json.h"
#include "orbelcast/picture_file.h"
#include "orbelcast/seconds.h"
#include "orbelcast/server_entries.h"

namespace orbelcast {

namespace {

/// What events say they come from.
constexpr std::string_view kControlName = "viewer";
/// Between two tries to connect to a camera that does not answer: often enough for a person, no burden for a camera.
constexpr std::chrono::seconds kRetryAfter{2};
/// What a picture that is being looked at for motion may still take once it was drawn.
constexpr std::chrono::milliseconds kSettle{20};

}  // namespace

Watcher::Watcher(WatchOptions options, std::ostream& output, std::ostream& messages)
    : options_(std::move(options)),
      output_(output),
      messages_(messages),
      services_(std::make_unique<HeadlessPlatform>()),
      drawn_(services_->Get().jpeg_decoder),
      platform_(services_->Get().With(drawn_)),
      viewer_(VideoServerPush::Create(platform_)) {}

Watcher::~Watcher() {
  viewer_.reset();
  // Ends the handlers that still wait; they go by the platform and the decoder, which therefore end after it.
  services_.reset();
}

ExitStatus Watcher::Run() {
  EventQueue& queue = platform_.loop.Queue();
  const StopSignals signals(queue, [this] { end_.Complete(); });
  ListenToAll(viewer_->Events,
              [this](const EventEntry& event, std::span<const EventArgument> arguments) { Note(event, arguments); });
  drawn_.on_frame = [this] {
    if (on_picture) on_picture();
    if (options_.frames && drawn_.Count() >= *options_.frames) end_.Complete();
  };
  if (options_.seconds) {
    queue.ArmTimer(Seconds(*options_.seconds), [this] { end_.Complete(); });
  }
  if (options_.time_out) {
    queue.ArmTimer(Seconds(*options_.time_out), [this] { GiveUp(); });
  }
  Configure();
  Connect();
  platform_.loop.Wait(end_);

  // The frame loop ends first, so that the newest picture's events come before those of the end.
  viewer_->ToogleClock(false);
  if (options_.Motion()) Pause(kSettle);
  Disconnect();
  return Outcome();
}

void Watcher::GiveUp() {
  if (drawn_.Count() > 0 || end_.IsDone()) return;
  gave_up_ = true;
  end_.Complete();
}

void Watcher::Configure() {
  const auto twips_x = static_cast<float>(platform_.screen.TwipsPerPixelX());
  const auto twips_y = static_cast<float>(platform_.screen.TwipsPerPixelY());
  viewer_->Resize(static_cast<float>(options_.width) * twips_x, static_cast<float>(options_.height) * twips_y);
  viewer_->Username(options_.access.user);
  viewer_->Password(options_.access.password);
  std::int16_t frame_rate = options_.frame_rate;
  viewer_->FrameRate(frame_rate);
  viewer_->AutoReconnect(options_.auto_reconnect);
  if (!options_.Motion()) return;
  if (options_.motion_area) {
    const auto& [x1, y1, x2, y2] = *options_.motion_area;
    viewer_->MotionArea_x1(x1);
    viewer_->MotionArea_y1(y1);
    viewer_->MotionArea_x2(x2);
    viewer_->MotionArea_Y2(y2);
  } else {
    viewer_->MotionString(*options_.motion_zones);
    viewer_->MotionByZones(true);
  }
  std::int32_t sensitivity = options_.sensitivity;
  viewer_->MotionSensivity(sensitivity);
  viewer_->MotionDetector(true);
}

void Watcher::Connect() {
  if (end_.IsDone()) return;
  platform_.loop.RunHandler([this, viewer = viewer_.get()] {
    viewer->Connect(options_.url, options_.once);
    AfterConnect();
  });
}

void Watcher::AfterConnect() {
  if (end_.IsDone() || viewer_->MasterTimer.Enabled) return;
  const bool retry = options_.auto_reconnect && drawn_.Count() == 0;
  if (retry) {
    // A viewer that reconnects by itself goes on with a stream that it had; a first try it makes once only.
    platform_.loop.Queue().ArmTimer(kRetryAfter, [this] { Connect(); });
  } else {
    end_.Complete();
  }
}

void Watcher::Note(const EventEntry& event, std::span<const EventArgument> arguments) {
  if (event.name == "Status") status_ = *std::get<std::string*>(arguments[0]);
  if (event.name == "Connected") connected_ = true;
  if (event.name == "ConnectionFailed") failed_ = true;
  if (event.name == "ConnectionBroken") broken_at_ = drawn_.Count();
  if (options_.events && !options_.events->contains(event.name)) return;
  output_ << ToLine(WithoutPasswords(EventToJson(event, kControlName, arguments)))
          << std::endl;  // at once: others read along
  if (!output_) end_.Complete();
}

void Watcher::Disconnect() {
  if (!failed_) viewer_->Disconnect();  // A failed Connect has done so itself.
}

void Watcher::Pause(EventQueue::Nanoseconds time) {
  Completion over;
  platform_.loop.Queue().ArmTimer(time, [&over] { over.Complete(); });
  platform_.loop.Wait(over);
}

ExitStatus Watcher::Outcome() {
  const std::string address = MaskedAddress(options_.url).Text();
  if (drawn_.Count() == 0) {
    messages_ << "orbelcast: no picture from " << address << ": " << WhyNoPicture();
    if (gave_up_) messages_ << "; gave up after " << *options_.time_out << " s (--timeout S waits longer)";
    messages_ << '\n';
    return kNoPictures;
  }
  if (!options_.picture.empty()) {
    if (const std::string why = WriteLastPicture(); !why.empty()) {
      messages_ << "orbelcast: cannot write " << options_.picture.string() << ": " << why << '\n';
      return kBadUsage;
    }
  }
  if (broken_at_ == drawn_.Count()) {
    messages_ << "orbelcast: the connection to " << address << " was broken at the end\n";
    return kNoPictures;
  }
  return kWorked;
}

std::string Watcher::WhyNoPicture() const {
  const auto told = [this](std::string_view part) { return status_.find(part) != std::string::npos; };
  if (!failed_) return connected_ ? "what it sent is no picture that can be read" : "it had not answered";
  if (told("(0)")) return "it does not answer as a web server; 'orbelcast doctor' finds out why";
  if (told("(401)")) return kAsksForAnotherLogin;
  if (told("(404)"))
    return "the server has nothing at this address (404); 'orbelcast info' lists its cameras' addresses";
  if (told("not found")) return "the camera server has no such camera; 'orbelcast info' lists those it has";
  return Shown(status_);
}

std::string Watcher::WriteLastPicture() {
  if (options_.picture_as_sent || FormatOf(options_.picture) == PictureFormat::kJpeg) {
    return WritePicture(options_.picture, drawn_.Newest().Bytes());
  }
  return WritePicture(options_.picture, viewer_->VideoStream.Image(), platform_.pictures);
}

}  // namespace orbelcast
