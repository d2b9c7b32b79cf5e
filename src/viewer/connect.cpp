// Opening a stream: the first request, what its answer says, and handing on to the frame loop.

#include <memory>
#include <optional>
#include <utility>

#include "toolkit/ascii.h"
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
  const Generation mine = TakeOver();
  Until connecting(doing_, Doing::kConnecting, Doing::kNothing, mine);
  MultiCam.Enabled = false;
  Requester = platform_.http.Create();
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
  if (!Yield(mine)) return;
  first_frames_ = 0;
  SetStatus(MapStatus("Connecting..."));
  RaiseStatus();
  if (!Yield(mine)) return;
  current_url_ = URL;
  const std::optional<bool> answered = SendFirstRequest(msg, mine);
  if (!answered || !RaiseFirstAnswer(mine)) return;

  FrameBuffer = Requester->ResponseBody();
  const int status = *answered ? Requester->Status() : 0;
  if (status == kHttpOk) {
    if (!AnnounceStream(mine)) return;
    connecting.End();
    StartStreaming(OnlyOnce, mine);
  } else if (!auto_reconnect_) {
    ReportFailure(URL, OnlyOnce, status, mine);
  }
  // With AutoReconnect a failure is not told: a stream that was running goes on ticking, now with the new address.
}

void VideoServerPush::ShowConnecting() {
  DrawStatusIcon(StatusIcon::kConnect);
  SetStatus(MapStatus("Connecting..."));
  StatusDisplay.Visible = true;
}

// Whether every step worked and the answer is there; none where the Connect is void.
std::optional<bool> VideoServerPush::SendFirstRequest(const std::string& msg, const Generation& mine) {
  if (!msg.empty()) {
    WarningMsg.Caption = msg;
    WarningFrame.Visible = true;
  }
  const std::shared_ptr<HttpRequest> request = Requester;
  const Until under_way(request_under_way_, true, false, mine);
  request->SetTimeouts(kStreamTimeout, kStreamTimeout, kStreamTimeout, kStreamReceiveTimeout);
  const bool opened = OpenRequest(*request);
  if (!Yield(mine)) return std::nullopt;
  const bool sent = request->Send();
  const bool answered = request->WaitForResponse();
  if (!mine.IsCurrent()) return std::nullopt;
  const bool worked = opened && sent && answered;
  failure_ = FailureOf(*request, worked);
  if (!msg.empty()) WarningFrame.Visible = false;
  return worked;
}

// False where the Connect is void, as of the following.
bool VideoServerPush::RaiseFirstAnswer(const Generation& mine) {
  const std::shared_ptr<HttpRequest> request = Requester;
  if (std::string info(request->GetResponseHeader("VigilboxInfo")); info.starts_with('1')) Events.VigilboxInfo(info);
  if (!mine.IsCurrent()) return false;
  if (std::string plug_ins(request->GetResponseHeader("PlugIns")); !plug_ins.empty()) Events.Plugin(plug_ins);
  return mine.IsCurrent();
}

bool VideoServerPush::AnnounceStream(const Generation& mine) {
  const std::string server(Requester->GetResponseHeader("Server"));
  DrawStatusIcon(StatusIcon::kConnect);
  SetStatus(MapStatus("Connected.") + "  " + server);
  ConnectedFlag = true;
  Requester->GetResponseHeader("Plug-In");
  if (std::string time_code(Requester->GetResponseHeader("RC_TCR")); !time_code.empty()) {
    RaiseTimeCode(std::move(time_code));
    if (!mine.IsCurrent()) return false;
  }
  DrawStatusIcon(StatusIcon::kConnect);
  SetStatus(MapStatus("Streaming...") + "\r\n" + server + "\r\n");
  RaiseStatus();
  return Yield(mine);
}

void VideoServerPush::StartStreaming(bool once, const Generation& mine) {
  StreamStopped = false;
  StopAfterTick = true;
  MasterTimer_Timer();
  if (!mine.IsCurrent()) return;
  if (!once) {
    StopAfterTick = false;
    MasterTimer.Enabled = true;
  } else {
    MasterTimer.Enabled = false;
  }
  Events.Connected();
  if (!mine.IsCurrent()) return;
  StatusDisplay.Visible = show_bandwidth_;
}

void VideoServerPush::ReportFailure(std::string& url, bool& once, int status, const Generation& mine) {
  StatusDisplay.Cls();
  DrawStatusIcon(StatusIcon::kDisconnect);
  SetStatus(MapStatus("Connection failed.") + "  (" + std::to_string(status) + ")");
  if (status == kVideoNotFound) {
    SetStatus(MapStatus("Video not found."));
    lStatus.ToolTipText = url;
  }
  Disconnect(true);
  if (!mine.IsCurrent() || !Yield(mine)) return;
  Events.ConnectionFailed();
  if (!mine.IsCurrent()) return;
  Events.ConnectionFailedV2(url, once);
  Yield(mine);
}

}  // namespace orbelcast
