#include "viewer/video_server_push.h"

#include <algorithm>

#include "imaging/layout.h"
#include "toolkit/rounding.h"
#include "toolkit/version.h"
#include "viewer/pictures.h"

namespace orbelcast {

namespace {

/// What the reference thumbnail and the overlay show before the first scan.
constexpr Color kUnseen = Rgb(64, 64, 64);
constexpr Color kStripColor = Rgb(255, 255, 192);
/// Height of one line of text in the status strip, whose 26 pixels hold two.
constexpr float kStripLineHeight = 195;
constexpr int kStripHeightPixels = 26;
/// What a request may take before the first Connect sets the stream's own limits, in milliseconds.
constexpr int kIdleTimeout = 10000;

}  // namespace

void VideoServerPushEvents::Clear() {
  StreamInfo.Clear();
  MotionDetected.Clear();
  Connected.Clear();
  Disconnected.Clear();
  ConnectionFailed.Clear();
  ConnectionFailedV2.Clear();
  ConnectionBroken.Clear();
  Status.Clear();
  VigilboxInfo.Clear();
  VigilboxTCR.Clear();
  MouseDown.Clear();
  RCQueryMethod.Clear();
  Plugin.Clear();
  OLEDragDrop.Clear();
  MotionArea.Clear();
  MotionDetectedArea.Clear();
}

// The host's pointer and the handlers' are two: when the host lets go of its own, the control ends at once for the
// host, while a handler that is still inside a method keeps the memory until it returns.
std::shared_ptr<VideoServerPush> VideoServerPush::Create(Platform& platform) {
  std::shared_ptr<VideoServerPush> inner(new VideoServerPush(platform));
  inner->self_ = inner;
  inner->UserControl_Initialize();
  VideoServerPush* control = inner.get();
  return {control, [inner = std::move(inner)](VideoServerPush*) mutable {
            inner->UserControl_Terminate();
            inner.reset();
          }};
}

VideoServerPush::VideoServerPush(Platform& platform) : platform_(platform) {
  PlaceChildren();
  ConnectHandlers();
}

VideoServerPush::~VideoServerPush() = default;

void VideoServerPush::PlaceChildren() {
  scale_ = TwipsScale::Of(platform_.screen);
  for (PictureBox* box : {&BuffPic, &IconNet, &DisconnectIcon, &ConnectIcon, &StopIcon, &RecIcon, &MotionPicture[0],
                          &MotionPicture[1], &MotionPicture[2], &StatusDisplay, &VideoStream}) {
    box->SetScale(scale_);
  }
  Place(BuffPic, 2400, 120, 1035, 915);
  Place(WarningFrame, 840, 1440, 4455, 495);
  Place(WarningMsg, 120, 120, 4215, 255);
  Place(StatusDisplay, 0, 0, width_, 375);
  Place(lStatus, 870, 0, 0, kStripLineHeight);
  Place(TimeRetrieve, 870, kStripLineHeight, 0, kStripLineHeight);
  Place(VideoStream, 120, 1080, 1035, 795);
  Place(Mira, 120, 120, 1035, 855);
  for (PictureBox& picture : MotionPicture) {
    Place(picture, 0, 0, scale_.TwipsX(kMotionPictureWidth), scale_.TwipsY(kMotionPictureHeight));
  }

  WarningMsg.Font = "Verdana";
  WarningFrame.Visible = false;
  for (PictureBox* hidden : {&BuffPic, &IconNet, &DisconnectIcon, &ConnectIcon, &StopIcon, &RecIcon, &MotionPicture[0],
                             &MotionPicture[1], &MotionPicture[2]}) {
    hidden->Visible = false;
  }
  StatusDisplay.BackColor = kStripColor;
  VideoStream.BackColor = Rgb(0, 0, 0);
  MotionPicture[0].BackColor = Rgb(0, 0, 0);
  MotionPicture[1].BackColor = kUnseen;
  MotionPicture[2].BackColor = kUnseen;

  const auto load = [&](PictureBox& box, std::span<const std::uint8_t> bytes) {
    const Surface picture = platform_.pictures.Decode(bytes);
    Place(box, 0, 0, scale_.TwipsX(picture.Width()), scale_.TwipsY(picture.Height()));
    box.SetPicture(picture);
  };
  load(IconNet, resources::no_answer_png);
  load(RecIcon, resources::recording_png);
  load(StopIcon, resources::stop_png);
  load(ConnectIcon, resources::connect_png);
  load(DisconnectIcon, resources::disconnect_png);
  test_card_ = std::make_shared<Surface>(platform_.pictures.Decode(resources::test_card_png));

  MainMenu.Caption = "Ghost";
  constexpr std::array<const char*, 5> kCaptions{"Time", "Server", "Status", "-", "Reconnect"};
  for (std::size_t i = 0; i < Menux.size(); ++i) {
    Menux[i].Caption = kCaptions[i];
    MainMenu.Items.push_back(&Menux[i]);
  }
  MultiCam.Interval = 500;
}

void VideoServerPush::ConnectHandlers() {
  // What a front end calls becomes a handler, which keeps the control alive until it ends.
  const auto on_press = [this](void (VideoServerPush::*handler)(std::int16_t)) {
    return [this, handler](std::int16_t button) {
      platform_.loop.RunHandler([this, handler, button] {
        const auto alive = StayAlive();
        if (alive) (this->*handler)(button);
      });
    };
  };
  VideoStream.OnMouseDown = [raise = on_press(&VideoServerPush::RaiseMouseDown)](std::int16_t button) {
    if (button == kLeftButton) raise(button);
  };
  Mira.OnMouseDown = on_press(&VideoServerPush::RaiseMouseDown);
  lStatus.OnMouseDown = on_press(&VideoServerPush::StatusStrip_MouseDown);
  StatusDisplay.OnMouseDown = on_press(&VideoServerPush::StatusStrip_MouseDown);
  TimeRetrieve.OnMouseDown = on_press(&VideoServerPush::StatusStrip_MouseDown);

  const auto on_drop = [this](Drop& drop) {
    // The handler may still wait when the front end has its answer, so it works on a drop of its own.
    const auto shared = std::make_shared<Drop>(drop);
    platform_.loop.RunHandler([this, shared] {
      const auto alive = StayAlive();
      if (alive) RaiseDrop(*shared);
    });
    drop.effect = shared->effect;
  };
  VideoStream.OnDrop = on_drop;
  Mira.OnDrop = on_drop;

  for (MenuItem& item : Menux) {
    if (item.Caption.Get() == "-") continue;
    item.OnClick = [this, index = static_cast<std::int16_t>(&item - Menux.data())] {
      platform_.loop.RunHandler([this, index] {
        const auto alive = StayAlive();
        if (alive) Menux_Click(index);
      });
    };
  }

  Dummy.Interval = 500;
  Dummy.Enabled = true;
  dummy_driver_ = std::make_unique<TimerDriver>(platform_.loop, Dummy, [this] {
    const auto alive = StayAlive();
    if (alive) platform_.loop.Yield();
  });
  master_driver_ = std::make_unique<TimerDriver>(platform_.loop, MasterTimer, [this] {
    const auto alive = StayAlive();
    if (alive) MasterTimer_Timer();
  });
  const auto fetch_next_tile = [this] {
    const auto alive = StayAlive();
    if (alive) MultiCam_Timer();
  };
  // A tick that falls due while another one yields fetches its own tile.
  multi_cam_driver_ =
      std::make_unique<TimerDriver>(platform_.loop, MultiCam, fetch_next_tile, TimerDriver::Ticks::kOverlapping);
}

void VideoServerPush::UserControl_Initialize() {
  Requester = platform_.http.Create();
  TimeRetrieve.Caption = "Version " + VersionText();
  StatusLineMode = 0;
  Menux[0].Checked = true;
  StatusDisplay.Visible = false;
  std::int16_t rate = 1;
  FrameRate(rate);
  StreamStopped = true;
  VideoStream.Visible = false;
  Mira.Visible = true;
  Mira.SetPicture(test_card_);
  MasterTimer.Enabled = false;
  // The number in the name tells the instances of all processes' controls apart while they live.
  StreamTempFile = platform_.files.TemporaryDirectory() + "FSTREAM" +
                   std::to_string(reinterpret_cast<std::uintptr_t>(this)) + ".tmp";
  Requester->SetTimeouts(kIdleTimeout, kIdleTimeout, kIdleTimeout, kIdleTimeout);
  StatusDisplay.Height = scale_.TwipsY(kStripHeightPixels);
  DockStatusDisplay();
  lStatus.Top = scale_.TwipsY(5);
  lStatus.Caption = "";
}

void VideoServerPush::UserControl_Terminate() {
  Terminating = true;
  generations_.Begin();
  Requester->Abort();
  StreamStopped = true;
  Events.Clear();
  master_driver_.reset();
  dummy_driver_.reset();
  multi_cam_driver_.reset();
}

void VideoServerPush::UserControl_Hide() {
  StreamStopped = true;
}

void VideoServerPush::Notify(std::int16_t code) {
  constexpr std::int16_t kRequestEnded = 12;
  if (code == kRequestEnded) RequestEnd();
}

void VideoServerPush::FrameRate(std::int16_t& value) {
  value = std::clamp<std::int16_t>(value, 1, 30);
  frame_rate_ = value;
  MasterTimer.Interval = RoundToEven(1000.0 / value);
}

void VideoServerPush::MotionSensivity(std::int32_t& value) {
  motion_.Threshold = MotionThreshold(value);
}

void VideoServerPush::ShowBandwidth(bool value) {
  StatusDisplay.Visible = value;
  show_bandwidth_ = value;
  UserControl_Resize();
}

void VideoServerPush::ShowMotion(bool value) {
  show_motion_ = value;
  UserControl_Resize();
}

void VideoServerPush::MotionDetector(bool value) {
  motion_detector_ = value;
  UserControl_Resize();
}

void VideoServerPush::MotionByZones(bool value) {
  const auto alive = StayAlive();
  motion_.MotionByZones = value;
  platform_.loop.Yield();
}

void VideoServerPush::MotionString(const std::string& value) {
  const auto alive = StayAlive();
  motion_.MotionString = value;
  platform_.loop.Yield();
}

void VideoServerPush::ShowStatus(const std::string& X) {
  const auto alive = StayAlive();
  SetStatus(X);
  StatusDisplay.Visible = true;
  platform_.loop.Yield();
}

void VideoServerPush::ToogleClock(bool X) {
  MasterTimer.Enabled = X;
}

void VideoServerPush::Pulse() {
  if (!FirstFrameShown) return;
  const auto alive = StayAlive();
  MasterTimer.Enabled = false;
  MasterTimer_Timer();
}

VideoServerPush::Generation VideoServerPush::TakeOver() {
  if (request_under_way_) Requester->Abort();  // Whoever waits for it is void, and ends at once.
  request_under_way_ = false;
  doing_ = Doing::kNothing;
  WarningFrame.Visible = false;
  failure_ = {};
  return generations_.Begin();
}

bool VideoServerPush::Yield(const Generation& mine) const {
  platform_.loop.Yield();
  return mine.IsCurrent();
}

}  // namespace orbelcast
