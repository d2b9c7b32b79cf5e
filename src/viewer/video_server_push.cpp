#include "viewer/video_server_push.h"

#include <algorithm>
#include <utility>

#include "imaging/layout.h"
#include "toolkit/rounding.h"
#include "toolkit/version.h"
#include "viewer/design.h"

namespace orbelcast {

namespace {

/// The strip's height.
constexpr int kStripHeightPixels = 26;
/// The status line's top until the first layout, in pixels.
constexpr int kStatusTopPixels = 5;

/// The menu item that does not choose what the strip shows.
constexpr std::int16_t kReconnect = 4;

}  // namespace

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

VideoServerPush::VideoServerPush(Platform& platform)
    : platform_(platform),
      test_card_(MakeTestCard(platform.pictures)),
      undertakings_(platform.loop),
      strip_({StatusDisplay, lStatus, TimeRetrieve, {&RecIcon, &StopIcon, &ConnectIcon, &DisconnectIcon}, Menux},
             Events, undertakings_, platform.text_mapper, platform.clock),
      motion_(MotionPicture, Events, undertakings_),
      frames_({VideoStream, BuffPic, IconNet}, platform, Events, strip_, motion_),
      stream_({VideoStream, Mira, WarningFrame, WarningMsg, MasterTimer, MultiCam, test_card_}, platform, Events,
              undertakings_, frames_, strip_),
      mosaic_({VideoStream, MasterTimer, MultiCam}, Events, undertakings_, platform.http, frames_, stream_,
              [this] { UserControl_Resize(); }),
      export_({VideoStream, BuffPic, Mira, MultiCam}, platform, frames_) {
  ApplyDesign(*this, platform);
  ConnectUser();
  DriveTimers();
}

VideoServerPush::~VideoServerPush() = default;

// ---- Making the control --------------------------------------------------------------------------------------------

void VideoServerPush::ConnectUser() {
  for (MenuItem& item : Menux) {
    if (item.Caption.Get() == "-") continue;
    item.OnClick = [this, index = static_cast<std::int16_t>(&item - Menux.data())] {
      Handle([this, index] { index == kReconnect ? stream_.Reconnect() : strip_.ChooseMode(index); });
    };
  }
  const auto raise_mouse_down = [this](std::int16_t button) {
    Handle([this, button]() mutable { Events.MouseDown(button); });
  };
  VideoStream.OnMouseDown = [raise_mouse_down](std::int16_t button) {
    if (button == kLeftButton) raise_mouse_down(button);
  };
  Mira.OnMouseDown = raise_mouse_down;
  const auto strip_mouse_down = [this](std::int16_t button) {
    Handle([this, button] { StatusStrip_MouseDown(button); });
  };
  lStatus.OnMouseDown = strip_mouse_down;
  StatusDisplay.OnMouseDown = strip_mouse_down;
  TimeRetrieve.OnMouseDown = strip_mouse_down;

  const auto on_drop = [this](Drop& drop) {
    // The handler may still wait when the front end has its answer, so it works on a drop of its own.
    const auto mine = std::make_shared<Drop>(drop);
    Handle([this, mine] { Events.OLEDragDrop(mine->data, mine->effect, mine->button, mine->shift, mine->x, mine->y); });
    drop.effect = mine->effect;
  };
  VideoStream.OnDrop = on_drop;
  Mira.OnDrop = on_drop;
}

void VideoServerPush::DriveTimers() {
  const auto drive = [this](Timer& timer, TimerDriver::Ticks ticks, std::function<void()> tick) {
    const auto on_tick = [this, tick = std::move(tick)] {
      const auto alive = StayAlive();
      if (alive) tick();
    };
    drivers_.push_back(std::make_unique<TimerDriver>(platform_.loop, timer, on_tick, ticks));
  };
  drive(Dummy, TimerDriver::Ticks::kOneAtATime, [this] { platform_.loop.Yield(); });
  drive(MasterTimer, TimerDriver::Ticks::kOneAtATime, [this] { stream_.MasterTimer_Timer(); });
  // A tick that falls due while another one yields fetches its own tile.
  drive(MultiCam, TimerDriver::Ticks::kOverlapping, [this] { mosaic_.Tick(); });
}

void VideoServerPush::UserControl_Initialize() {
  TimeRetrieve.Caption = "Version " + VersionText();
  strip_.ChooseMode(0);
  StatusDisplay.Visible = false;
  std::int16_t rate = 1;
  FrameRate(rate);
  VideoStream.Visible = false;
  Mira.Visible = true;
  Mira.SetPicture(test_card_);
  MasterTimer.Enabled = false;
  const TwipsScale scale = TwipsScale::Of(platform_.screen);
  StatusDisplay.Height = scale.TwipsY(kStripHeightPixels);
  DockStatusDisplay();
  lStatus.Top = scale.TwipsY(kStatusTopPixels);
  lStatus.Caption = "";
}

void VideoServerPush::UserControl_Terminate() {
  Terminating = true;
  stream_.End();
  Events.Clear();
  drivers_.clear();
}

void VideoServerPush::Handle(std::function<void()> action) {
  platform_.loop.RunHandler([this, action = std::move(action)] {
    const auto alive = StayAlive();
    if (alive) action();
  });
}

// ---- Properties ----------------------------------------------------------------------------------------------------

void VideoServerPush::FrameRate(std::int16_t& value) {
  value = std::clamp<std::int16_t>(value, 1, 30);
  stream_.settings.frame_rate = value;
  MasterTimer.Interval = RoundToEven(1000.0 / value);
}

void VideoServerPush::MotionSensivity(std::int32_t& value) {
  motion_.settings.Threshold = MotionThreshold(value);
}

void VideoServerPush::ShowBandwidth(bool value) {
  StatusDisplay.Visible = value;
  stream_.settings.show_bandwidth = value;
  UserControl_Resize();
}

void VideoServerPush::ShowMotion(bool value) {
  motion_.shows = value;
  UserControl_Resize();
}

void VideoServerPush::MotionDetector(bool value) {
  motion_.detects = value;
  UserControl_Resize();
}

void VideoServerPush::MotionByZones(bool value) {
  const auto alive = StayAlive();
  motion_.settings.MotionByZones = value;
  platform_.loop.Yield();
}

void VideoServerPush::MotionString(const std::string& value) {
  const auto alive = StayAlive();
  motion_.settings.MotionString = value;
  platform_.loop.Yield();
}

// ---- Methods -------------------------------------------------------------------------------------------------------

void VideoServerPush::Connect(std::string URL, bool OnlyOnce, std::string msg) {
  const auto alive = StayAlive();
  stream_.Connect(std::move(URL), OnlyOnce, msg);
}

void VideoServerPush::Disconnect(bool NoNewStatus) {
  const auto alive = StayAlive();
  stream_.Disconnect(NoNewStatus);
}

void VideoServerPush::Pulse() {
  const auto alive = StayAlive();
  stream_.Pulse();
}

void VideoServerPush::RequestEnd() {
  const auto alive = StayAlive();
  stream_.RequestEnd();
}

void VideoServerPush::ShowStatus(const std::string& X) {
  const auto alive = StayAlive();
  strip_.SetStatus(X);
  strip_.Show(true);
  platform_.loop.Yield();
}

void VideoServerPush::MultiCamView(std::string inpString) {
  const auto alive = StayAlive();
  if (!mosaic_.Begin(inpString)) return;
  strip_.Show(false);
  stream_.settings.show_bandwidth = false;
}

void VideoServerPush::StatusStrip_MouseDown(std::int16_t Button) {
  if (Button == kRightButton) MainMenu.PopUp();
  platform_.loop.Yield();
}

// ---- Layout --------------------------------------------------------------------------------------------------------

void VideoServerPush::Resize(float width, float height) {
  width_ = width;
  height_ = height;
  // The strip is docked: it follows before the layout runs.
  DockStatusDisplay();
  UserControl_Resize();
}

void VideoServerPush::DockStatusDisplay() {
  StatusDisplay.Left = 0;
  StatusDisplay.Width = width_;
  StatusDisplay.Top = height_ - StatusDisplay.Height;
}

void VideoServerPush::UserControl_Resize() {
  if (Terminating) return;
  const auto alive = StayAlive();
  lStatus.Width = StatusDisplay.Width - lStatus.Left;
  TimeRetrieve.Width = lStatus.Width;
  lStatus.Top = 0;
  TimeRetrieve.Top = lStatus.Top + lStatus.Height;
  Place(Mira, 0, 0, width_, height_);
  Place(VideoStream, Mira.Left, Mira.Top, Mira.Width, Mira.Height);
  if (VideoStream.Visible) stream_.ProcessFrame(true);
  motion_.LayOut(TwipsScale::Of(platform_.screen));
  const Box warning = Centred(WarningFrame.Width, WarningFrame.Height, width_, height_);
  WarningFrame.Left = warning.left;
  WarningFrame.Top = warning.top;
  motion_.ShowOverlay();
}

}  // namespace orbelcast
