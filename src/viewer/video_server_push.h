#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "imaging/motion.h"
#include "imaging/status_icons.h"
#include "mosaic/mosaic_round.h"
#include "mosaic/mosaic_tile.h"
#include "platform/platform.h"
#include "recording/picture_file.h"
#include "toolkit/controls.h"
#include "toolkit/generation.h"
#include "toolkit/surface.h"
#include "toolkit/timer_driver.h"
#include "viewer/failure.h"

/// The stream viewer: its state and members in video_server_push.h, each of its doings in a file of its own (connect,
/// frame_loop, process_frame, disconnect, multi_cam_view, picture_export, resize, status_line), the table of its
/// interface in interface.h.
namespace orbelcast {

/// What a VideoServerPush tells its host. Listeners run where the control is at that moment, in the middle of its work:
/// they may call any member, wait, or release the control.
///
/// Arguments are references to copies, as the interface has them; MotionDetected's are values.
struct VideoServerPushEvents {
  /// Once a clock second while pictures come: bytes received and frames shown since the last time. A second in which
  /// less than half a kilobyte came has none. Of a mosaic once a round, as (0, 1).
  Signal<std::int32_t& /*BytesPerSecond*/, std::int32_t& /*FrameRate*/> StreamInfo;
  /// Motion, with `MotionDetector` on: its bounding box in hundredths of the picture's width and height; X1 is the
  /// column of the first sample found, not the leftmost one.
  Signal<std::int32_t /*X1*/, std::int32_t /*Y1*/, std::int32_t /*X2*/, std::int32_t /*Y2*/> MotionDetected;
  /// The server has answered with status 200 and the stream runs; for a stream once more with its second new frame.
  Signal<> Connected;
  /// `Disconnect` has ended the stream, also the one that a failed `Connect` makes.
  Signal<> Disconnected;
  /// `Connect` got no answer, or another status than 200; the `Status` before it tells which. Not with `AutoReconnect`.
  Signal<> ConnectionFailed;
  /// The same, right after it: the address that failed, and whether a single picture was asked for.
  Signal<std::string& /*xUrl*/, bool& /*xType*/> ConnectionFailedV2;
  /// Five frame requests in a row have failed; raised again after each further five. The viewer goes on trying. Not
  /// with `AutoReconnect`.
  Signal<> ConnectionBroken;
  /// The status line's new text, in the language of the text mapper.
  Signal<std::string& /*xDesc*/> Status;
  /// The first answer's header "VigilboxInfo", whatever the answer's status, where it begins with "1".
  Signal<std::string& /*rX*/> VigilboxInfo;
  /// Each frame's time, and the first answer's: the parts of the header "RC_TCR" by their position, whatever they hold,
  /// and the header as a whole; `xDs` is "00". A frame without that header has this machine's clock.
  Signal<std::string& /*xYear*/, std::string& /*xMonth*/, std::string& /*xDay*/, std::string& /*xHour*/,
         std::string& /*xMinute*/, std::string& /*xSecond*/, std::string& /*xDs*/, std::string& /*xTCR*/>
      VigilboxTCR;
  /// A mouse button was pressed over the picture: 1 left, 2 right, 4 middle. Over the video the left one alone, over
  /// the test card any.
  Signal<std::int16_t& /*Button*/> MouseDown;
  /// Declared; nothing raises it.
  Signal<std::string& /*Rc_Query*/> RCQueryMethod;
  /// The first answer's header "PlugIns", where there is one.
  Signal<std::string& /*Plugin*/> Plugin;
  /// Something was dropped on the picture: what it holds by media type, the effect that the source expects (a listener
  /// may change it), the buttons and keys held, and the place in twips of the control that was dropped on.
  Signal<DropData& /*Data*/, std::int32_t& /*Effect*/, std::int16_t& /*Button*/, std::int16_t& /*Shift*/, float& /*X*/,
         float& /*y*/>
      OLEDragDrop;
  /// Right before `MotionDetected`, with the same box.
  Signal<std::int32_t& /*X1*/, std::int32_t& /*Y1*/, std::int32_t& /*X2*/, std::int32_t& /*Y2*/> MotionArea;
  /// Right after `MotionDetected`: the zone of the first sample found, 1 to 25; −1 where the rectangle is watched.
  Signal<std::int16_t& /*Area*/> MotionDetectedArea;

  /// Forgets every listener.
  void Clear();
};

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
  std::int16_t FrameRate() const { return frame_rate_; }
  void FrameRate(std::int16_t& value);
  /// Always empty.
  std::string Server() const { return {}; }
  /// Shows the status strip. Connecting, disconnecting and `ShowStatus` show it as well.
  bool ShowBandwidth() const { return show_bandwidth_; }
  void ShowBandwidth(bool value);
  /// Looks for motion in each frame: in the rectangle `MotionArea_…`, or in zones with `MotionByZones`.
  bool MotionDetector() const { return motion_detector_; }
  void MotionDetector(bool value);
  /// The user's name, sent once the server asks for one (Basic or Digest), and from then on at once.
  std::string Username() const { return username_; }
  void Username(const std::string& value) { username_ = value; }
  /// The user's password, likewise.
  std::string Password() const { return password_; }
  void Password(const std::string& value) { password_ = value; }
  /// Stored only.
  bool DirectToDisk() const { return direct_to_disk_; }
  void DirectToDisk(bool value) { direct_to_disk_ = value; }
  /// The lower edge of the watched rectangle, in hundredths of the picture's height. What lies below it is watched all
  /// the same. Any number is stored; with all four edges 0, as they are at first, nothing is watched.
  std::int32_t MotionArea_Y2() const { return motion_.MotionArea_Y2; }
  void MotionArea_Y2(std::int32_t value) { motion_.MotionArea_Y2 = value; }
  /// Its upper edge, likewise.
  std::int32_t MotionArea_y1() const { return motion_.MotionArea_y1; }
  void MotionArea_y1(std::int32_t value) { motion_.MotionArea_y1 = value; }
  /// Its right edge, in hundredths of the picture's width.
  std::int32_t MotionArea_x2() const { return motion_.MotionArea_x2; }
  void MotionArea_x2(std::int32_t value) { motion_.MotionArea_x2 = value; }
  /// Its left edge, likewise.
  std::int32_t MotionArea_x1() const { return motion_.MotionArea_x1; }
  void MotionArea_x1(std::int32_t value) { motion_.MotionArea_x1 = value; }
  /// Write: how small a change counts as motion, in percent (100 takes any, what is beyond counts as 100); the let
  /// writes 100 minus it back into `value`. Read: the threshold that it was made into, a difference of grey
  /// levels in percent of 256, 0 to 255.
  std::int32_t MotionSensivity() const { return motion_.Threshold; }
  void MotionSensivity(std::int32_t& value);
  /// Shows what the motion detection sees in a corner of the picture, while `MotionDetector` is on.
  bool ShowMotion() const { return show_motion_; }
  void ShowMotion(bool value);
  /// Stored only.
  bool AlwaysSmooth() const { return always_smooth_; }
  void AlwaysSmooth(bool value) { always_smooth_ = value; }
  /// When true, `Connect` leaves the last picture on screen while it connects, instead of the test card.
  bool DisableTestScreen() const { return disable_test_screen_; }
  void DisableTestScreen(bool value) { disable_test_screen_ = value; }
  /// Watches the zones of `MotionString` instead of the rectangle. Yields.
  bool MotionByZones() const { return motion_.MotionByZones; }
  void MotionByZones(bool value);
  /// One character a zone, 25 zones in five rows from the top; "0" excludes the zone, anything else, and a text that is
  /// too short, includes it. Yields.
  std::string MotionString() const { return motion_.MotionString; }
  void MotionString(const std::string& value);
  /// The address of the stream that is connected; empty after `Disconnect`. It may hold a password, as it was given.
  std::string URL() const { return current_url_; }
  /// Retries silently and for ever instead of reporting failures.
  bool AutoReconnect() const { return auto_reconnect_; }
  void AutoReconnect(bool value) { auto_reconnect_ = value; }

  // ---- Methods ----------------------------------------------------------------------------------------------------

  /// Opens a stream, or with `OnlyOnce` fetches and shows one picture. `URL` is the whole address and begins with
  /// "http://" in any letter case; any other is ignored. `msg` is shown in a box while the first request is under way.
  /// Waits for the first answer, 20 seconds for the connection and 60 for the picture at most. What becomes of it is
  /// told by `Connected`, or `ConnectionFailed`; a newer `Connect` takes over.
  void Connect(std::string URL, bool OnlyOnce = false, std::string msg = {});
  /// Ends the stream and shows the test card. With `NoNewStatus` the status texts stay as they are.
  void Disconnect(bool NoNewStatus = false);
  /// Lets one more tick fetch its picture, then stops; the last picture stays on screen.
  void StopGettingFrames();
  /// Shows `X` on the status line, and the status strip. Yields.
  void ShowStatus(const std::string& X);
  /// Pauses (false) or resumes (true) the frame loop without touching the connection.
  void ToogleClock(bool X);
  /// Steps one frame with the frame loop switched off. Nothing before the first frame.
  void Pulse();
  /// Treats the answer that the request object holds as a frame.
  void RequestEnd();
  /// Saves the picture that is shown as the file `Filename`, replacing it: of a stream the server's JPEG byte for byte,
  /// of a mosaic or the test card a bitmap, whatever the name ends in. A name that cannot be written leaves no file.
  void SaveImage(const std::string& Filename);
  /// Puts the picture that is shown on the clipboard, at the size at which it is shown.
  void ImageOnClipboard();
  /// A copy of the newest answer's bytes, a JPEG as the server sent it; empty before the first.
  std::vector<std::uint8_t> GetPictureArray() const;
  /// The newest picture at its own size, in pixels; nothing where there is none or it cannot be read.
  std::optional<Surface> GetPicture();
  /// Shows several cameras as a grid, one tile every half second, until the next `Connect`. `inpString` holds the
  /// cameras' live addresses, each followed by CR LF; an empty one does nothing. A tile's request blocks the thread
  /// until the picture is there, for five seconds at most; a tile without an answer is black. `StreamInfo` (0, 1) is
  /// raised once a round.
  void MultiCamView(std::string inpString);
  /// Draws the newest picture at the top-left corner of the host's surface that `PictureHdc` stands for, stretched to
  /// `sX` × `sY` pixels; 0 is the picture's own size. Nothing where there is no such surface or no picture.
  void RenderPicture(std::int32_t PictureHdc, std::int32_t sX = 0, std::int32_t sY = 0);

  // ---- For the container and front ends ---------------------------------------------------------------------------

  /// Gives the control its size in twips (left and top are the container's business) and runs the layout.
  void Resize(float width, float height);
  /// What SaveImage saves, without a file: a stream's newest frame as received, else the mosaic or the test card.
  ShownPicture PictureToSave() const;
  /// Why the newest request, of a stream or of a mosaic's tile, brought no picture. kNone where it brought one, and
  /// from each new `Connect` or `MultiCamView` until its first answer. Set before the events that tell it.
  Failure LastFailure() const { return failure_; }
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

  // Lifecycle (video_server_push.cpp).
  void PlaceChildren();
  void ConnectHandlers();
  void UserControl_Initialize();
  void UserControl_Terminate();
  /// The entry for who is told of a request's end by a number; nothing in this library is.
  void Notify(std::int16_t code);

  // Handlers of one viewer overlap wherever one of them yields, waits or raises an event. Two rules hold them apart.
  //
  // The newest undertaking holds: `Connect` and `MultiCamView` each begin a generation (TakeOver), which voids the
  // `Connect`, ticks and `Disconnect` that are under way; each of these asks after every yield, wait and event whether
  // its generation is still current, and returns where it is not. The control's end voids all of them.
  //
  // The stream does one thing at a time (`doing_`): kNothing → kConnecting by `Connect`, until its first answer was
  // told → kTicking by its first tick → kNothing; from there on kNothing → kTicking → kNothing by each tick, whatever
  // starts it. A tick that finds the stream doing something is no tick.
  using Generation = GenerationCounter::Generation;
  enum class Doing { kNothing, kConnecting, kTicking };

  /// Begins an undertaking that voids all others, and what they left standing.
  Generation TakeOver();
  /// Lets other handlers run. False where `mine` is void afterwards: the caller then just returns.
  bool Yield(const Generation& mine) const;
  /// Sets what the stream is doing, or a mark, until it goes out of scope or its generation is void.
  template <typename T>
  class Until;

  // Connect, in its order (connect.cpp).
  void ShowConnecting();
  std::optional<bool> SendFirstRequest(const std::string& msg, const Generation& mine);
  bool RaiseFirstAnswer(const Generation& mine);
  bool AnnounceStream(const Generation& mine);
  void StartStreaming(bool once, const Generation& mine);
  void ReportFailure(std::string& url, bool& once, int status, const Generation& mine);

  // The frame loop (frame_loop.cpp).
  /// What one tick shows in the strip once a second: views of its answer, empty where it fetched nothing.
  struct TickTexts {
    std::string_view recording;
    std::string_view server_information;
  };
  void MasterTimer_Timer();
  bool FetchFrame(TickTexts& texts, const Generation& mine);
  std::optional<bool> RequestFrame(HttpRequest& request, const Generation& mine);
  bool OpenRequest(HttpRequest& request) const;
  void FailTick(const Generation& mine);
  std::string_view ServerInformation(HttpRequest& request) const;
  bool UpdateOncePerSecond(const TickTexts& texts, const Generation& mine);
  void PublishRates();

  // What the frame loop and RequestEnd share (frame_loop.cpp).
  void RaiseTimeCode(std::string time_code);
  void RaiseTimeCodeOrClock(HttpRequest& request);
  void ShowRecording(std::string_view recording);
  void KeepStatusDrawing();

  // A frame on its way to the screen (process_frame.cpp).
  void ProcessFrame(bool SkipMotion);
  bool DrawFrame(bool with_thumbnail);
  void NoteDrawing(bool drawn);
  bool DetectMotion();
  void CountFirstFrames();

  // The mosaic (multi_cam_view.cpp).
  void MultiCam_Timer();
  std::optional<bool> FetchTile(const std::string& address, const Generation& mine);
  void PaintTile(const MosaicTile& tile, bool fetched);
  void PaintMosaicBlack();

  // Layout and strip (resize.cpp, status_line.cpp).
  void DockStatusDisplay();
  void UserControl_Resize();
  void DrawStatusIcon(StatusIcon Kind);
  void SetStatus(const std::string& text) { lStatus.Caption = text; }
  std::string MapStatus(const std::string& text) const { return platform_.text_mapper.Map(text, 0); }
  void RaiseStatus();
  void Menux_Click(std::int16_t Index);
  void StatusStrip_MouseDown(std::int16_t Button);
  void RaiseMouseDown(std::int16_t Button);
  void RaiseDrop(Drop& drop);

  /// Keeps the control alive until a handler has ended, whatever the host does meanwhile.
  std::shared_ptr<VideoServerPush> StayAlive() const { return self_.lock(); }

  Platform& platform_;
  std::weak_ptr<VideoServerPush> self_;

  // The properties' stored values.
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
  MotionSettings motion_;

  // The control's state.
  std::shared_ptr<HttpRequest> Requester;  ///< The one request object; every Connect makes a new one.
  std::string current_url_;                ///< What URL gives.
  FrameBytes FrameBuffer;                  ///< Body of the last answer, as received.
  bool StreamStopped = true;               ///< No stream runs: ticks do nothing.
  bool SingleShot = false;
  bool StopAfterTick = false;      ///< The tick that runs switches the timer off at its end.
  bool DisconnectPending = false;  ///< A tick that still comes disconnects instead of fetching.
  std::int32_t FailureCount = 0;   ///< Frame requests that failed in a row.
  std::int32_t BytesThisSecond = 0;
  std::int32_t FramesThisSecond = 0;
  std::int32_t KilobytesPerSecond = 0;
  Failure failure_;                 ///< Of the newest request.
  std::string LastSecondText;       ///< hh:mm:ss of the last once-a-second update.
  std::int16_t StatusLineMode = 0;  ///< TimeRetrieve shows: 0 the server's date, 1 its name, 2 its status.
  bool FirstFrameShown = false;
  bool ConnectedFlag = false;  ///< The server has answered 200. Nothing reads it.
  TwipsScale scale_;           ///< The screen's, when the control was made.
  std::string StreamTempFile;  ///< A name only: no such file is made.
  bool Terminating = false;    ///< The host has released the control: no layout any more.
  int first_frames_ = 0;       ///< New frames since Connect, up to the second, which raises Connected again.

  GenerationCounter generations_;
  Doing doing_ = Doing::kNothing;
  bool request_under_way_ = false;    ///< From `Open` until whoever waits has the outcome.
  std::vector<std::string> cameras_;  ///< Live addresses of the mosaic.
  MosaicRound mosaic_round_;          ///< Kept from one mosaic to the next.
  std::shared_ptr<const Surface> test_card_;

  float width_ = kDesignWidth;  ///< Until the host sites the control.
  float height_ = kDesignHeight;

  // Last, so that they end first.
  std::unique_ptr<TimerDriver> master_driver_;
  std::unique_ptr<TimerDriver> dummy_driver_;
  std::unique_ptr<TimerDriver> multi_cam_driver_;
};

template <typename T>
class VideoServerPush::Until {
 public:
  Until(T& field, T value, T afterwards, const Generation& mine) : field_(field), afterwards_(afterwards), mine_(mine) {
    field_ = value;
  }
  ~Until() { End(); }
  Until(const Until&) = delete;
  Until& operator=(const Until&) = delete;

  void End() {
    if (!ended_ && mine_.IsCurrent()) field_ = afterwards_;
    ended_ = true;
  }

 private:
  T& field_;
  const T afterwards_;
  const Generation mine_;
  bool ended_ = false;
};

}  // namespace orbelcast
