// Opening a stream: the first request, what its answer says, and handing on to the frame loop.

#include <utility>

#include "platform/ascii.h"
#include "viewer/video_server_push.h"

namespace orbelcast {

namespace {

/// The stream's limits in milliseconds. A camera may take long to wake up, hence the minute for an answer.
constexpr int kStreamTimeout = 20000;
constexpr int kStreamReceiveTimeout = 60000;

/// The camera server's own status for a picture that it does not have.
constexpr int kVideoNotFound = 506;

}  // namespace

void VideoServerPush::Connect(std::string URL, bool OnlyOnce, std::string msg) {
  if (!StartsWithIgnoringCase(URL, "http://")) return;
  const auto alive = StayAlive();
  ++connects_;
  MultiCam.Enabled = false;
  // Whoever still waits for the old request (a tick, an older Connect) would hold up the new stream's ticks.
  std::exchange(Requester, platform_.http.Create())->Abort();
  FirstFrameShown = false;
  FailureCount = 0;
  SingleShot = OnlyOnce;
  if (!OnlyOnce) ShowConnecting();
  FailureCount = 0;
  ConnectedFlag = false;
  DisconnectPending = false;
  if (!OnlyOnce && !disable_test_screen_) {
    Mira.SetPicture(test_card_);
    Mira.Visible = true;
    VideoStream.Visible = false;
  }
  if (!YieldInConnect()) return;
  first_frames_ = 0;
  SetStatus(MapStatus("Connecting..."));
  RaiseStatus();
  if (!YieldInConnect()) return;
  current_url_ = URL;
  if (!SendFirstRequest(msg)) return;

  RaiseFirstAnswer();
  FrameBuffer = Requester->ResponseBody();
  const int status = Requester->Status();
  if (status == kHttpOk) {
    StartStreaming(OnlyOnce);
  } else if (!auto_reconnect_) {
    ReportFailure(URL, OnlyOnce, status);
  }
  // With AutoReconnect a failure is not told: a stream that was running goes on ticking, now with the new address.
}

void VideoServerPush::ShowConnecting() {
  DrawStatusIcon(StatusIcon::kConnect);
  SetStatus(MapStatus("Connecting..."));
  StatusDisplay.Visible = true;
}

bool VideoServerPush::SendFirstRequest(const std::string& msg) {
  if (!msg.empty()) {
    WarningMsg.Caption = msg;
    WarningFrame.Visible = true;
  }
  Requester->SetTimeouts(kStreamTimeout, kStreamTimeout, kStreamTimeout, kStreamReceiveTimeout);
  Requester->Open("GET", current_url_, true);
  if (!password_.empty() || !username_.empty()) Requester->SetCredentials(username_, password_, 0);
  const bool answered = YieldInConnect() && (Requester->Send(), WaitForResponse());
  if (!msg.empty()) WarningFrame.Visible = false;
  return answered;
}

void VideoServerPush::RaiseFirstAnswer() {
  if (std::string info(Requester->GetResponseHeader("VigilboxInfo")); info.starts_with('1')) Events.VigilboxInfo(info);
  if (std::string plug_ins(Requester->GetResponseHeader("PlugIns")); !plug_ins.empty()) Events.Plugin(plug_ins);
}

void VideoServerPush::StartStreaming(bool once) {
  const std::string server(Requester->GetResponseHeader("Server"));
  DrawStatusIcon(StatusIcon::kConnect);
  SetStatus(MapStatus("Connected.") + "  " + server);
  ConnectedFlag = true;
  Requester->GetResponseHeader("Plug-In");
  if (std::string time_code(Requester->GetResponseHeader("RC_TCR")); !time_code.empty()) {
    RaiseTimeCode(std::move(time_code));
  }
  DrawStatusIcon(StatusIcon::kConnect);
  SetStatus(MapStatus("Streaming...") + "\r\n" + server + "\r\n");
  RaiseStatus();
  if (!YieldInConnect()) return;

  StreamStopped = false;
  StopAfterTick = true;
  MasterTimer_Timer();
  if (Terminating) return;
  if (!once) {
    StopAfterTick = false;
    MasterTimer.Enabled = true;
  } else {
    MasterTimer.Enabled = false;
  }
  Events.Connected();
  StatusDisplay.Visible = show_bandwidth_;
}

void VideoServerPush::ReportFailure(std::string& url, bool& once, int status) {
  StatusDisplay.Cls();
  DrawStatusIcon(StatusIcon::kDisconnect);
  SetStatus(MapStatus("Connection failed.") + "  (" + std::to_string(status) + ")");
  if (status == kVideoNotFound) {
    SetStatus(MapStatus("Video not found."));
    lStatus.ToolTipText = url;
  }
  Disconnect(true);
  if (!YieldInConnect()) return;
  Events.ConnectionFailed();
  Events.ConnectionFailedV2(url, once);
  Yield();
}

bool VideoServerPush::YieldInConnect() {
  const std::uint64_t mine = connects_;
  return Yield() && mine == connects_;
}

}  // namespace orbelcast
