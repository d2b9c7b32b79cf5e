#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "recording/picture_file.h"
#include "toolkit/controls.h"
#include "toolkit/surface.h"
#include "toolkit/timer_driver.h"
#include "viewer/events.h"
#include "viewer/failure.h"
#include "viewer/frame_view.h"
#include "viewer/mosaic_view.h"
#include "viewer/motion_watch.h"
#include "viewer/picture_export.h"
#include "viewer/status_strip.h"
#include "viewer/stream.h"
#include "viewer/undertakings.h"

namespace orbelcast {

/// The stream viewer: shows one camera by asking its server for one JPEG picture after another.
///
/// Everything happens on the thread of the platform's message loop. A method that waits (`Connect`) lets other handlers
/// run meanwhile; called on the host's own stack it handles the queue itself and returns when it is done. Nothing
/// throws and nothing is reported as an error: outcomes are events and status texts.
///
/// The host owns the control through the pointer that Create returns. Releasing it, also from inside an event or while
/// a method of it waits, ends the control: what is under way is aborted, and no event is raised any more.
class VideoServerPush {
 public:
  /// The size in twips that a control has until its host gives it another.
  static constexpr float kDesignWidth = 6015;
  static constexpr float kDesignHeight = 3900;

  /// Makes a control with its defaults: test card, no stream, `FrameRate` 1. `platform` outlives it.
  static std::shared_ptr<VideoServerPush> Create(Platform& platform);

  ~VideoServerPush();
  VideoServerPush(const VideoServerPush&) = delete;
  VideoServerPush& operator=(const VideoServerPush&) = delete;

  VideoServerPushEvents Events;

  // ---- Properties -------------------------------------------------------------------------------------------------

  // Each member's meaning is in its interface's description, interface/video_server_push_interface.h.

  std::int16_t FrameRate() const { return stream_.settings.frame_rate; }
  void FrameRate(std::int16_t& value);
  std::string Server() const { return {}; }
  bool ShowBandwidth() const { return stream_.settings.show_bandwidth; }
  void ShowBandwidth(bool value);
  bool MotionDetector() const { return motion_.detects; }
  void MotionDetector(bool value);
  std::string Username() const { return stream_.settings.username; }
  void Username(const std::string& value) { stream_.settings.username = value; }
  std::string Password() const { return stream_.settings.password; }
  void Password(const std::string& value) { stream_.settings.password = value; }
  bool DirectToDisk() const { return direct_to_disk_; }
  void DirectToDisk(bool value) { direct_to_disk_ = value; }
  std::int32_t MotionArea_Y2() const { return motion_.settings.MotionArea_Y2; }
  void MotionArea_Y2(std::int32_t value) { motion_.settings.MotionArea_Y2 = value; }
  std::int32_t MotionArea_y1() const { return motion_.settings.MotionArea_y1; }
  void MotionArea_y1(std::int32_t value) { motion_.settings.MotionArea_y1 = value; }
  std::int32_t MotionArea_x2() const { return motion_.settings.MotionArea_x2; }
  void MotionArea_x2(std::int32_t value) { motion_.settings.MotionArea_x2 = value; }
  std::int32_t MotionArea_x1() const { return motion_.settings.MotionArea_x1; }
  void MotionArea_x1(std::int32_t value) { motion_.settings.MotionArea_x1 = value; }
  std::int32_t MotionSensivity() const { return motion_.settings.Threshold; }
  void MotionSensivity(std::int32_t& value);
  bool ShowMotion() const { return motion_.shows; }
  void ShowMotion(bool value);
  bool AlwaysSmooth() const { return always_smooth_; }
  void AlwaysSmooth(bool value) { always_smooth_ = value; }
  bool DisableTestScreen() const { return stream_.settings.disable_test_screen; }
  void DisableTestScreen(bool value) { stream_.settings.disable_test_screen = value; }
  bool MotionByZones() const { return motion_.settings.MotionByZones; }
  void MotionByZones(bool value);
  std::string MotionString() const { return motion_.settings.MotionString; }
  void MotionString(const std::string& value);
  std::string URL() const { return stream_.URL(); }
  bool AutoReconnect() const { return stream_.settings.auto_reconnect; }
  void AutoReconnect(bool value) { stream_.settings.auto_reconnect = value; }

  // ---- Methods ----------------------------------------------------------------------------------------------------

  void Connect(std::string URL, bool OnlyOnce = false, std::string msg = {});
  void Disconnect(bool NoNewStatus = false);
  void StopGettingFrames() { stream_.StopGettingFrames(); }
  void ShowStatus(const std::string& X);
  void ToogleClock(bool X) { MasterTimer.Enabled = X; }
  void Pulse();
  void RequestEnd();
  void SaveImage(const std::string& Filename) { export_.SaveImage(Filename); }
  void ImageOnClipboard() { export_.ImageOnClipboard(); }
  std::vector<std::uint8_t> GetPictureArray() const { return export_.GetPictureArray(); }
  std::optional<Surface> GetPicture() { return export_.GetPicture(); }
  void MultiCamView(std::string inpString);
  void RenderPicture(std::int32_t PictureHdc, std::int32_t sX = 0, std::int32_t sY = 0) {
    export_.RenderPicture(PictureHdc, sX, sY);
  }

  // ---- For the container and front ends ---------------------------------------------------------------------------

  /// Gives the control its size in twips (the container keeps left and top) and runs the layout.
  void Resize(float width, float height);
  /// The picture that SaveImage saves, without a file: a stream's newest frame as received, else the mosaic or the test
  /// card.
  ShownPicture PictureToSave() const { return export_.PictureToSave(); }
  /// Why the newest request, of a stream or of a mosaic's tile, brought no picture. kNone where it brought one, and
  /// from each new `Connect` or `MultiCamView` until its first answer. Set before the events that tell it.
  Failure LastFailure() const { return frames_.LastFailure(); }
  /// The container hides the control: the frame loop does nothing until the next successful Connect.
  void UserControl_Hide() { stream_.Stop(); }

  float Width() const { return width_; }
  float Height() const { return height_; }

  // The child controls, from the topmost to the bottommost.
  PictureBox BuffPic;
  PictureBox IconNet;
  Frame WarningFrame;
  Label WarningMsg;  ///< Inside WarningFrame.
  PictureBox DisconnectIcon;
  PictureBox ConnectIcon;
  PictureBox StopIcon;
  PictureBox RecIcon;
  std::array<PictureBox, 3> MotionPicture;  ///< 0 current thumbnail, 1 reference, 2 the visible overlay (above 1).
  PictureBox StatusDisplay;
  Label lStatus;       ///< Inside StatusDisplay.
  Label TimeRetrieve;  ///< Inside StatusDisplay.
  PictureBox VideoStream;
  Image Mira;
  Timer MasterTimer;
  Timer Dummy;
  Timer MultiCam;
  Menu MainMenu;
  std::array<MenuItem, 5> Menux;

 private:
  explicit VideoServerPush(Platform& platform);

  // Lifecycle.
  void ConnectUser();
  void DriveTimers();
  void UserControl_Initialize();
  void UserControl_Terminate();
  /// Runs `action` as a handler of the loop, with the control kept alive until it has ended.
  void Handle(std::function<void()> action);
  /// Keeps the control alive until a handler has ended, whatever the host does meanwhile.
  std::shared_ptr<VideoServerPush> StayAlive() const { return self_.lock(); }

  void DockStatusDisplay();
  void UserControl_Resize();
  void StatusStrip_MouseDown(std::int16_t Button);

  Platform& platform_;
  std::weak_ptr<VideoServerPush> self_;
  bool Terminating = false;  ///< The host has released the control: no layout any more.

  float width_ = kDesignWidth;  ///< Until the host sites the control.
  float height_ = kDesignHeight;
  bool direct_to_disk_ = false;
  bool always_smooth_ = false;
  const std::shared_ptr<const Surface> test_card_;

  // The control's parts; each may use those declared before it.
  Undertakings undertakings_;
  StatusStrip strip_;
  MotionWatch motion_;
  FrameView frames_;
  Stream stream_;
  MosaicView mosaic_;
  PictureExport export_;

  // Of the three timers; last, so that they end first.
  std::vector<std::unique_ptr<TimerDriver>> drivers_;
};

}  // namespace orbelcast
