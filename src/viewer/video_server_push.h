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

  /// Pictures asked for a second, 1 to 30; 1 at first. What is beyond becomes the nearest, which the let writes back
  /// into `value`.
  std::int16_t FrameRate() const { return stream_.settings.frame_rate; }
  void FrameRate(std::int16_t& value);
  /// Always empty.
  std::string Server() const { return {}; }
  /// Shows the status strip. Connecting, disconnecting and `ShowStatus` show it as well.
  bool ShowBandwidth() const { return stream_.settings.show_bandwidth; }
  void ShowBandwidth(bool value);
  /// Looks for motion in each frame: in the rectangle `MotionArea_…`, or in zones with `MotionByZones`.
  bool MotionDetector() const { return motion_.detects; }
  void MotionDetector(bool value);
  /// The user's name, sent once the server asks for one (Basic or Digest), and from then on at once.
  std::string Username() const { return stream_.settings.username; }
  void Username(const std::string& value) { stream_.settings.username = value; }
  /// The user's password, likewise.
  std::string Password() const { return stream_.settings.password; }
  void Password(const std::string& value) { stream_.settings.password = value; }
  /// Stored only.
  bool DirectToDisk() const { return direct_to_disk_; }
  void DirectToDisk(bool value) { direct_to_disk_ = value; }
  /// The lower edge of the watched rectangle, in hundredths of the picture's height. What lies below it is watched all
  /// the same. Any number is stored; with all four edges 0, as they are at first, nothing is watched.
  std::int32_t MotionArea_Y2() const { return motion_.settings.MotionArea_Y2; }
  void MotionArea_Y2(std::int32_t value) { motion_.settings.MotionArea_Y2 = value; }
  /// Its upper edge, likewise.
  std::int32_t MotionArea_y1() const { return motion_.settings.MotionArea_y1; }
  void MotionArea_y1(std::int32_t value) { motion_.settings.MotionArea_y1 = value; }
  /// Its right edge, in hundredths of the picture's width.
  std::int32_t MotionArea_x2() const { return motion_.settings.MotionArea_x2; }
  void MotionArea_x2(std::int32_t value) { motion_.settings.MotionArea_x2 = value; }
  /// Its left edge, likewise.
  std::int32_t MotionArea_x1() const { return motion_.settings.MotionArea_x1; }
  void MotionArea_x1(std::int32_t value) { motion_.settings.MotionArea_x1 = value; }
  /// Write: how small a change counts as motion, in percent (100 takes any, what is beyond counts as 100); the let
  /// writes 100 minus it back into `value`. Read: the threshold that it was made into, a difference of grey
  /// levels in percent of 256, 0 to 255.
  std::int32_t MotionSensivity() const { return motion_.settings.Threshold; }
  void MotionSensivity(std::int32_t& value);
  /// Shows what the motion detection sees in a corner of the picture, while `MotionDetector` is on.
  bool ShowMotion() const { return motion_.shows; }
  void ShowMotion(bool value);
  /// Stored only.
  bool AlwaysSmooth() const { return always_smooth_; }
  void AlwaysSmooth(bool value) { always_smooth_ = value; }
  /// When true, `Connect` leaves the last picture on screen while it connects, instead of the test card.
  bool DisableTestScreen() const { return stream_.settings.disable_test_screen; }
  void DisableTestScreen(bool value) { stream_.settings.disable_test_screen = value; }
  /// Watches the zones of `MotionString` instead of the rectangle. Yields.
  bool MotionByZones() const { return motion_.settings.MotionByZones; }
  void MotionByZones(bool value);
  /// One character a zone, 25 zones in five rows from the top; "0" excludes the zone, anything else, and a text that is
  /// too short, includes it. Yields.
  std::string MotionString() const { return motion_.settings.MotionString; }
  void MotionString(const std::string& value);
  /// The address of the stream that is connected; empty after `Disconnect`. It may hold a password, as it was given.
  std::string URL() const { return stream_.URL(); }
  /// Retries silently and for ever instead of reporting failures.
  bool AutoReconnect() const { return stream_.settings.auto_reconnect; }
  void AutoReconnect(bool value) { stream_.settings.auto_reconnect = value; }

  // ---- Methods ----------------------------------------------------------------------------------------------------

  /// Opens a stream, or with `OnlyOnce` fetches and shows one picture. `URL` is the whole address and begins with
  /// "http://" in any letter case; any other is ignored. `msg` is shown in a box while the first request is under way.
  /// Waits for the first answer, 20 seconds for the connection and 60 for the picture at most. What becomes of it is
  /// told by `Connected`, or `ConnectionFailed`; a newer `Connect` takes over.
  void Connect(std::string URL, bool OnlyOnce = false, std::string msg = {});
  /// Ends the stream and shows the test card. With `NoNewStatus` the status texts stay as they are.
  void Disconnect(bool NoNewStatus = false);
  /// Lets one more tick fetch its picture, then stops; the last picture stays on screen.
  void StopGettingFrames() { stream_.StopGettingFrames(); }
  /// Shows `X` on the status line, and the status strip. Yields.
  void ShowStatus(const std::string& X);
  /// Pauses (false) or resumes (true) the frame loop without touching the connection.
  void ToogleClock(bool X) { MasterTimer.Enabled = X; }
  /// Steps one frame with the frame loop switched off. Nothing before the first frame.
  void Pulse();
  /// Treats the answer that the request object holds as a frame.
  void RequestEnd();
  /// Saves the picture that is shown as the file `Filename`, replacing it: of a stream the server's JPEG byte for byte,
  /// of a mosaic or the test card a bitmap, whatever the name ends in. A name that cannot be written leaves no file.
  void SaveImage(const std::string& Filename) { export_.SaveImage(Filename); }
  /// Puts the picture that is shown on the clipboard, at the size at which it is shown.
  void ImageOnClipboard() { export_.ImageOnClipboard(); }
  /// A copy of the newest answer's bytes, a JPEG as the server sent it; empty before the first.
  std::vector<std::uint8_t> GetPictureArray() const { return export_.GetPictureArray(); }
  /// The newest picture at its own size, in pixels; nothing where there is none or it cannot be read.
  std::optional<Surface> GetPicture() { return export_.GetPicture(); }
  /// Shows several cameras as a grid, one tile every half second, until the next `Connect`. `inpString` holds the
  /// cameras' live addresses, each followed by CR LF; an empty one does nothing. A tile's request blocks the thread
  /// until the picture is there, for five seconds at most; a tile without an answer is black. `StreamInfo` (0, 1) is
  /// raised once a round.
  void MultiCamView(std::string inpString);
  /// Draws the newest picture at the top-left corner of the host's surface that `PictureHdc` stands for, stretched to
  /// `sX` × `sY` pixels; 0 is the picture's own size. Nothing where there is no such surface or no picture.
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
