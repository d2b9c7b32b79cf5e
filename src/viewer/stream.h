#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/platform.h"
#include "toolkit/controls.h"
#include "viewer/events.h"
#include "viewer/frame_view.h"
#include "viewer/status_strip.h"
#include "viewer/undertakings.h"

namespace orbelcast {

/// A camera's stream: its first request, the frame loop that the master timer drives, and its end. The methods under
/// the interface's names are VideoServerPush's.
///
/// A stream does one thing at a time (`doing_`): kNothing → kConnecting by `Connect`, until its first answer was told →
/// kTicking by its first tick → kNothing; from there on kNothing → kTicking → kNothing by each tick, whatever starts
/// it. A tick that finds the stream busy does nothing. Only the newest undertaking is valid: see Undertakings.
class Stream {
 public:
  struct Children {
    PictureBox& VideoStream;
    Image& Mira;
    Frame& WarningFrame;
    Label& WarningMsg;
    Timer& MasterTimer;
    Timer& MultiCam;
    std::shared_ptr<const Surface> test_card;  ///< The picture of Mira.
  };

  /// The properties that the host sets.
  struct Settings {
    std::int16_t frame_rate = 1;
    std::string username;
    std::string password;
    bool show_bandwidth = false;
    bool disable_test_screen = false;
    bool auto_reconnect = false;
  };
  Settings settings;

  Stream(Children children, Platform& platform, VideoServerPushEvents& events, Undertakings& undertakings,
         FrameView& frames, StatusStrip& strip);

  void Connect(std::string URL, bool OnlyOnce, const std::string& msg);
  /// `Connect` with the address and the kind of the stream that there is.
  void Reconnect() { Connect(CurrentUrl, SingleShot, {}); }
  void MasterTimer_Timer();
  void Pulse();
  void RequestEnd();
  void StopGettingFrames();
  void Disconnect(bool NoNewStatus);
  /// The ticks do nothing until the next successful Connect.
  void Stop() { StreamStopped = true; }
  /// The control ends: aborts what is under way and voids it.
  void End();

  const std::string& URL() const { return CurrentUrl; }
  /// Shows the newest frame; with `SkipMotion` once more, at the size that the area has now. Not without a stream.
  void ProcessFrame(bool SkipMotion);
  /// Begins an undertaking that voids all others, and resets their marks.
  Undertakings::Generation TakeOver();

 private:
  using Generation = Undertakings::Generation;
  enum class Doing { kNothing, kConnecting, kTicking };

  // Connect, in its order.
  void ShowConnecting();
  void ShowTestCard();
  std::optional<bool> SendFirstRequest(const std::string& msg, const Generation& mine);
  bool RaiseFirstAnswer(const Generation& mine);
  bool AnnounceStream(const Generation& mine);
  void StartStreaming(bool once, const Generation& mine);
  void ReportFailure(std::string& url, bool& once, int status, const Generation& mine);

  // A tick, in its order.
  bool FetchFrame(StatusStrip::TickTexts& texts, const Generation& mine);
  std::optional<bool> RequestFrame(HttpRequest& request, const Generation& mine);
  bool OpenRequest(HttpRequest& request) const;
  void FailTick(const Generation& mine);
  void RaiseTimeCodeOrClock(HttpRequest& request);

  const Children on_;
  Platform& platform_;
  VideoServerPushEvents& events_;
  Undertakings& undertakings_;
  FrameView& frames_;
  StatusStrip& strip_;

  std::shared_ptr<HttpRequest> Requester;  ///< Every Connect makes a new one.
  std::string CurrentUrl;
  std::string StreamTempFile;  ///< The name of a temporary file of this stream's own, which nothing makes.
  bool ConnectedFlag = false;  ///< The server has answered the newest Connect with 200; nothing reads it.
  bool StreamStopped = true;   ///< No stream runs: ticks do nothing.
  bool SingleShot = false;
  bool StopAfterTick = false;      ///< The tick that runs switches the timer off at its end.
  bool DisconnectPending = false;  ///< A tick that still comes disconnects instead of fetching.
  std::int32_t FailureCount = 0;   ///< Frame requests that failed in a row.
  Doing doing_ = Doing::kNothing;
  bool request_under_way_ = false;  ///< From `Open` until the waiter has the outcome.
};

}  // namespace orbelcast
