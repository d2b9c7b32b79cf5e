#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "imaging/motion.h"
#include "platform/controls.h"
#include "platform/platform.h"
#include "platform/timer_driver.h"

namespace orbelcast {

/// What a VideoServerPush tells its host. Listeners run where the control is at that moment, in the middle of its work:
/// they may call any member, wait, or release the control.
///
/// Arguments are references to copies, as the interface has them; MotionDetected's are values.
struct VideoServerPushEvents {
  /// Once a clock second while pictures come: bytes and frames since the last time.
  Signal<std::int32_t& /*BytesPerSecond*/, std::int32_t& /*FrameRate*/> StreamInfo;
  /// Motion's bounding box in hundredths of the picture's width and height.
  Signal<std::int32_t /*X1*/, std::int32_t /*Y1*/, std::int32_t /*X2*/, std::int32_t /*Y2*/> MotionDetected;
  Signal<> Connected;
  Signal<> Disconnected;
  Signal<> ConnectionFailed;
  Signal<std::string& /*xUrl*/, bool& /*xType*/> ConnectionFailedV2;
  Signal<> ConnectionBroken;
  Signal<std::string& /*xDesc*/> Status;
  Signal<std::string& /*rX*/> VigilboxInfo;
  Signal<std::string& /*xYear*/, std::string& /*xMonth*/, std::string& /*xDay*/, std::string& /*xHour*/,
         std::string& /*xMinute*/, std::string& /*xSecond*/, std::string& /*xDs*/, std::string& /*xTCR*/>
      VigilboxTCR;
  Signal<std::int16_t& /*Button*/> MouseDown;
  Signal<std::string& /*Rc_Query*/> RCQueryMethod;  ///< Declared; nothing raises it.
  Signal<std::string& /*Plugin*/> Plugin;
  Signal<DropData& /*Data*/, std::int32_t& /*Effect*/, std::int16_t& /*Button*/, std::int16_t& /*Shift*/, float& /*X*/,
         float& /*y*/>
      OLEDragDrop;
  Signal<std::int32_t& /*X1*/, std::int32_t& /*Y1*/, std::int32_t& /*X2*/, std::int32_t& /*Y2*/> MotionArea;
  Signal<std::int16_t& /*Area*/> MotionDetectedArea;

  /// Forgets every listener.
  void Clear();
};

/// The stream viewer: shows one camera by asking its server for one JPEG picture after another.
///
/// Everything happens on the thread of the platform's message loop. A method that waits (`Connect`) lets other handlers
/// run meanwhile; called on the host's own stack it handles the queue itself and returns when it is done. Nothing throws
/// and nothing is reported as an error: outcomes are events and status texts.
///
/// The host owns the control through the pointer that Create returns. Releasing it, also from inside an event or while a
/// method of it waits, ends the control: what is under way is aborted, and no event is raised any more.
class VideoServerPush {
 public:
  /// Makes a control with its defaults: test card, no stream, `FrameRate` 1. `platform` outlives it.
  static std::shared_ptr<VideoServerPush> Create(Platform& platform);

  ~VideoServerPush();
  VideoServerPush(const VideoServerPush&) = delete;
  VideoServerPush& operator=(const VideoServerPush&) = delete;

  VideoServerPushEvents Events;

  // ---- Properties -------------------------------------------------------------------------------------------------

  /// Requests a second, 1 to 30. The let writes the corrected value back into `value`.
  std::int16_t FrameRate() const { return frame_rate_; }
  void FrameRate(std::int16_t& value);
  /// Always empty.
  std::string Server() const { return {}; }
  /// Shows the status strip.
  bool ShowBandwidth() const { return show_bandwidth_; }
  void ShowBandwidth(bool value);
  bool MotionDetector() const { return motion_detector_; }
  void MotionDetector(bool value);
  /// Sent when the server asks for them.
  std::string Username() const { return username_; }
  void Username(const std::string& value) { username_ = value; }
  std::string Password() const { return password_; }
  void Password(const std::string& value) { password_ = value; }
  /// Stored only.
  bool DirectToDisk() const { return direct_to_disk_; }
  void DirectToDisk(bool value) { direct_to_disk_ = value; }
  /// The watched rectangle, in hundredths of the picture. With all four 0 nothing is watched.
  std::int32_t MotionArea_Y2() const { return motion_.MotionArea_Y2; }
  void MotionArea_Y2(std::int32_t value) { motion_.MotionArea_Y2 = value; }
  std::int32_t MotionArea_y1() const { return motion_.MotionArea_y1; }
  void MotionArea_y1(std::int32_t value) { motion_.MotionArea_y1 = value; }
  std::int32_t MotionArea_x2() const { return motion_.MotionArea_x2; }
  void MotionArea_x2(std::int32_t value) { motion_.MotionArea_x2 = value; }
  std::int32_t MotionArea_x1() const { return motion_.MotionArea_x1; }
  void MotionArea_x1(std::int32_t value) { motion_.MotionArea_x1 = value; }
  /// Get: the stored threshold, 0 to 255. The let takes a sensitivity in percent and writes 100 minus it back.
  std::int32_t MotionSensivity() const { return motion_.Threshold; }
  void MotionSensivity(std::int32_t& value);
  /// Shows the motion overlay while the motion detector is on.
  bool ShowMotion() const { return show_motion_; }
  void ShowMotion(bool value);
  /// Stored only.
  bool AlwaysSmooth() const { return always_smooth_; }
  void AlwaysSmooth(bool value) { always_smooth_ = value; }
  /// When true, Connect does not show the test card while it connects.
  bool DisableTestScreen() const { return disable_test_screen_; }
  void DisableTestScreen(bool value) { disable_test_screen_ = value; }
  /// Watches zones by `MotionString` instead of the rectangle.
  bool MotionByZones() const { return motion_.MotionByZones; }
  void MotionByZones(bool value);
  /// One character a zone, 25 zones row by row; "0" excludes the zone.
  std::string MotionString() const { return motion_.MotionString; }
  void MotionString(const std::string& value);
  /// The address of the stream that is connected; empty after Disconnect.
  std::string URL() const { return current_url_; }
  /// Retries silently and for ever instead of reporting failures.
  bool AutoReconnect() const { return auto_reconnect_; }
  void AutoReconnect(bool value) { auto_reconnect_ = value; }

  // ---- Methods ----------------------------------------------------------------------------------------------------

  /// Opens a stream, or with `OnlyOnce` fetches and shows one picture. `URL` is the whole address and begins with
  /// "http://" in any letter case; any other is ignored. `msg` is shown in a box while the first request is under way.
  void Connect(std::string URL, bool OnlyOnce = false, std::string msg = {});
  /// Ends the stream and shows the test card. With `NoNewStatus` the status texts stay as they are.
  void Disconnect(bool NoNewStatus = false);
  /// Lets one more tick fetch its picture, then stops; the last picture stays on screen.
  void StopGettingFrames();
  /// Shows `X` on the status line.
  void ShowStatus(const std::string& X);
  /// Pauses (false) or resumes (true) the frame loop without touching the connection.
  void ToogleClock(bool X);
  /// Steps one frame with the frame loop switched off. Nothing before the first frame.
  void Pulse();
  /// Treats the answer that the request object holds as a frame.
  void RequestEnd();

  // ---- For the container and front ends ---------------------------------------------------------------------------

  /// Gives the control its size in twips (left and top are the container's business) and runs the layout.
  void Resize(float width, float height);
  /// The container hides the control: the frame loop does nothing until the next successful Connect.
  void UserControl_Hide();

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

  // Written out with the control's own work.
  std::int16_t frame_rate_ = 1;
  bool show_bandwidth_ = false;
  bool motion_detector_ = false;
  bool direct_to_disk_ = false;
  bool show_motion_ = false;
  bool always_smooth_ = false;
  bool disable_test_screen_ = false;
  bool auto_reconnect_ = false;
  std::string username_;
  std::string password_;
  std::string current_url_;
  MotionSettings motion_;
  float width_ = 6015;
  float height_ = 3900;
};

}  // namespace orbelcast
