#include "viewer/stream.h"

#include <utility>

#include "toolkit/ascii.h"
#include "viewer/time_code.h"

namespace orbelcast {

namespace {

/// A request's time limit before the first Connect sets the stream's own, in milliseconds.
constexpr int kIdleTimeout = 10000;
/// The stream's limits. A camera may take long to wake up, hence the minute for an answer.
constexpr int kStreamTimeout = 20000;
constexpr int kStreamReceiveTimeout = 60000;

/// The camera server's own status for a picture that it does not have.
constexpr int kVideoNotFound = 506;

/// That many failed requests in a row are a broken connection.
constexpr int kFailuresToBreak = 5;

}  // namespace

Stream::Stream(Children children, Platform& platform, VideoServerPushEvents& events, Undertakings& undertakings,
               FrameView& frames, StatusStrip& strip)
    : on_(std::move(children)),
      platform_(platform),
      events_(events),
      undertakings_(undertakings),
      frames_(frames),
      strip_(strip),
      Requester(platform.http.Create()),
      // The number in the name tells the streams of all processes apart while they live.
      StreamTempFile(platform.files.TemporaryDirectory() + "FSTREAM" +
                     std::to_string(reinterpret_cast<std::uintptr_t>(this)) + ".tmp") {
  Requester->SetTimeouts(kIdleTimeout, kIdleTimeout, kIdleTimeout, kIdleTimeout);
}

Undertakings::Generation Stream::TakeOver() {
  if (request_under_way_) Requester->Abort();  // The handler that waits for it is void, and ends at once.
  request_under_way_ = false;
  doing_ = Doing::kNothing;
  on_.WarningFrame.Visible = false;
  frames_.ForgetFailure();
  return undertakings_.Begin();
}

void Stream::End() {
  undertakings_.Begin();
  Requester->Abort();
  StreamStopped = true;
}

// ---- Connect -------------------------------------------------------------------------------------------------------

void Stream::Connect(std::string URL, bool OnlyOnce, const std::string& msg) {
  if (!StartsWithIgnoringCase(URL, "http://")) return events_.AddressIgnored(URL);
  const Generation mine = TakeOver();
  Until connecting(doing_, Doing::kConnecting, Doing::kNothing, mine);
  on_.MultiCam.Enabled = false;
  Requester = platform_.http.Create();
  frames_.Forget();
  FailureCount = 0;
  SingleShot = OnlyOnce;
  if (!OnlyOnce) ShowConnecting();
  ConnectedFlag = false;
  DisconnectPending = false;
  if (!OnlyOnce && !settings.disable_test_screen) ShowTestCard();
  if (!undertakings_.Yield(mine)) return;
  frames_.ResetFirstFrames();
  strip_.SetStatus(strip_.Map("Connecting..."));
  strip_.RaiseStatus();
  if (!undertakings_.Yield(mine)) return;
  CurrentUrl = URL;
  const std::optional<bool> answered = SendFirstRequest(msg, mine);
  if (!answered || !RaiseFirstAnswer(mine)) return;

  frames_.Take(*Requester);
  const int status = *answered ? Requester->Status() : 0;
  if (status == kHttpOk) {
    if (!AnnounceStream(mine)) return;
    connecting.End();
    StartStreaming(OnlyOnce, mine);
  } else if (!settings.auto_reconnect) {
    ReportFailure(URL, OnlyOnce, status, mine);
  }
  // With AutoReconnect a failure is not told: a stream that was running goes on ticking, now with the new address.
}

void Stream::ShowConnecting() {
  strip_.DrawStatusIcon(StatusIcon::kConnect);
  strip_.SetStatus(strip_.Map("Connecting..."));
  strip_.Show(true);
}

void Stream::ShowTestCard() {
  on_.Mira.SetPicture(on_.test_card);
  on_.Mira.Visible = true;
  on_.VideoStream.Visible = false;
}

// Whether every step worked and the answer is there; none where the Connect is void.
std::optional<bool> Stream::SendFirstRequest(const std::string& msg, const Generation& mine) {
  if (!msg.empty()) {
    on_.WarningMsg.Caption = msg;
    on_.WarningFrame.Visible = true;
  }
  const std::shared_ptr<HttpRequest> request = Requester;
  const Until under_way(request_under_way_, true, false, mine);
  request->SetTimeouts(kStreamTimeout, kStreamTimeout, kStreamTimeout, kStreamReceiveTimeout);
  const bool opened = OpenRequest(*request);
  if (!undertakings_.Yield(mine)) return std::nullopt;
  const bool sent = request->Send();
  const bool answered = request->WaitForResponse();
  if (!mine.IsCurrent()) return std::nullopt;
  const bool worked = opened && sent && answered;
  frames_.NoteAnswer(*request, worked);
  if (!msg.empty()) on_.WarningFrame.Visible = false;
  return worked;
}

// False where the Connect is void, as of the following.
bool Stream::RaiseFirstAnswer(const Generation& mine) {
  const std::shared_ptr<HttpRequest> request = Requester;
  if (std::string info(request->GetResponseHeader("VigilboxInfo")); info.starts_with('1')) events_.VigilboxInfo(info);
  if (!mine.IsCurrent()) return false;
  if (std::string plug_ins(request->GetResponseHeader("PlugIns")); !plug_ins.empty()) events_.Plugin(plug_ins);
  return mine.IsCurrent();
}

bool Stream::AnnounceStream(const Generation& mine) {
  const std::string server(Requester->GetResponseHeader("Server"));
  strip_.DrawStatusIcon(StatusIcon::kConnect);
  strip_.SetStatus(strip_.Map("Connected.") + "  " + server);
  ConnectedFlag = true;
  Requester->GetResponseHeader("Plug-In");  // Read, and not used.
  if (std::string time_code(Requester->GetResponseHeader("RC_TCR")); !time_code.empty()) {
    RaiseTimeCode(events_, std::move(time_code));
    if (!mine.IsCurrent()) return false;
  }
  strip_.DrawStatusIcon(StatusIcon::kConnect);
  strip_.SetStatus(strip_.Map("Streaming...") + "\r\n" + server + "\r\n");
  strip_.RaiseStatus();
  return undertakings_.Yield(mine);
}

void Stream::StartStreaming(bool once, const Generation& mine) {
  StreamStopped = false;
  StopAfterTick = true;
  MasterTimer_Timer();
  if (!mine.IsCurrent()) return;
  if (!once) {
    StopAfterTick = false;
    on_.MasterTimer.Enabled = true;
  } else {
    on_.MasterTimer.Enabled = false;
  }
  events_.Connected();
  if (!mine.IsCurrent()) return;
  strip_.Show(settings.show_bandwidth);
}

void Stream::ReportFailure(std::string& url, bool& once, int status, const Generation& mine) {
  strip_.ClearDrawing();
  strip_.DrawStatusIcon(StatusIcon::kDisconnect);
  strip_.SetStatus(strip_.Map("Connection failed.") + "  (" + std::to_string(status) + ")");
  if (status == kVideoNotFound) {
    strip_.SetStatus(strip_.Map("Video not found."));
    strip_.SetToolTip(url);
  }
  Disconnect(true);
  if (!mine.IsCurrent() || !undertakings_.Yield(mine)) return;
  events_.ConnectionFailed();
  if (!mine.IsCurrent()) return;
  events_.ConnectionFailedV2(url, once);
  undertakings_.Yield(mine);
}

// ---- The master timer's tick ---------------------------------------------------------------------------------------

void Stream::MasterTimer_Timer() {
  if (StreamStopped || doing_ != Doing::kNothing) return;
  if (DisconnectPending) {
    Disconnect(false);
    return;
  }
  const Generation mine = undertakings_.Current();
  const Until ticking(doing_, Doing::kTicking, Doing::kNothing, mine);
  StatusStrip::TickTexts texts;
  // The comparison admits equality: one frame more than FrameRate fits into a clock second.
  if (strip_.Frames() <= settings.frame_rate && !FetchFrame(texts, mine)) return;
  if (!strip_.UpdateOncePerSecond(texts, mine)) return;
  if (StopAfterTick) on_.MasterTimer.Enabled = false;
}

// False ends the tick: no once-a-second work, no stop.
bool Stream::FetchFrame(StatusStrip::TickTexts& texts, const Generation& mine) {
  const std::shared_ptr<HttpRequest> request = Requester;
  // A single picture is the answer that Connect has.
  const std::optional<bool> good = SingleShot ? request->Status() == kHttpOk : RequestFrame(*request, mine);
  if (!good) return false;
  if (!*good) {
    FailTick(mine);
    return false;
  }
  frames_.Take(*request);
  FailureCount = 0;
  RaiseTimeCodeOrClock(*request);
  if (!mine.IsCurrent()) return false;
  texts.recording = request->GetResponseHeader("Recording");
  texts.server_information = strip_.ServerInformation(*request);
  ProcessFrame(false);
  return mine.IsCurrent();
}

// Whether every step worked and status 200 came; none where the tick is void.
std::optional<bool> Stream::RequestFrame(HttpRequest& request, const Generation& mine) {
  const Until under_way(request_under_way_, true, false, mine);
  const bool opened = OpenRequest(request);
  const bool sent = request.Send();
  if (!undertakings_.Yield(mine)) return std::nullopt;
  const bool answered = request.WaitForResponse();
  if (!mine.IsCurrent()) return std::nullopt;
  const bool worked = opened && sent && answered;
  frames_.NoteAnswer(request, worked);
  return worked && request.Status() == kHttpOk;
}

bool Stream::OpenRequest(HttpRequest& request) const {
  const bool opened = request.Open("GET", CurrentUrl, true);
  if (settings.username.empty() && settings.password.empty()) return opened;
  return request.SetCredentials(settings.username, settings.password, 0) && opened;
}

void Stream::FailTick(const Generation& mine) {
  frames_.PaintNoAnswer();
  if (settings.auto_reconnect) return;
  if (++FailureCount < kFailuresToBreak) return;
  events_.ConnectionBroken();
  if (!mine.IsCurrent()) return;
  FailureCount = 0;
  undertakings_.Yield(mine);
}

void Stream::RaiseTimeCodeOrClock(HttpRequest& request) {
  std::string time_code(request.GetResponseHeader("RC_TCR"));
  if (time_code.empty()) time_code = TimeCodeOf(platform_.clock.Now());
  RaiseTimeCode(events_, std::move(time_code));
}

void Stream::ProcessFrame(bool SkipMotion) {
  if (on_.MultiCam.Enabled || StreamStopped) return;
  const Generation mine = undertakings_.Current();
  frames_.Show(SkipMotion);
  if (!SkipMotion && mine.IsCurrent()) events_.NewFrame();
}

// ---- Single steps and the end --------------------------------------------------------------------------------------

void Stream::Pulse() {
  if (!frames_.HasShown()) return;
  on_.MasterTimer.Enabled = false;
  MasterTimer_Timer();
}

// A frame of an answer that is there already: the second half of a tick, without a request. While a request is under
// way there is none: its answer belongs to its waiter.
void Stream::RequestEnd() {
  const Generation mine = undertakings_.Current();
  const std::shared_ptr<HttpRequest> request = request_under_way_ ? platform_.http.Create() : Requester;
  frames_.Take(*request);
  frames_.NoteAnswer(*request, true);
  if (request->Status() != kHttpOk && ++FailureCount >= kFailuresToBreak) {
    events_.ConnectionBroken();
    if (!mine.IsCurrent()) return;
    Disconnect(true);
    undertakings_.Yield(mine);
    return;
  }
  // Also after a failure that stayed below the limit: only failed ticks before can make this the fifth.
  FailureCount = 0;
  RaiseTimeCodeOrClock(*request);
  if (!mine.IsCurrent()) return;
  strip_.ShowRecording(request->GetResponseHeader("Recording"));
  strip_.KeepDrawing();
  ProcessFrame(false);
}

void Stream::StopGettingFrames() {
  strip_.SetStatus("Stopped");
  strip_.ClearServerInformation();
  StopAfterTick = true;
}

void Stream::Disconnect(bool NoNewStatus) {
  const Generation mine = undertakings_.Current();
  DisconnectPending = true;
  CurrentUrl.clear();
  on_.MasterTimer.Enabled = false;
  Requester->Abort();
  if (!undertakings_.Yield(mine)) return;
  if (!NoNewStatus) {
    strip_.DrawStatusIcon(StatusIcon::kConnect);
    strip_.SetStatus(strip_.Map("Disconnecting..."));
  }
  strip_.RaiseStatus();
  if (!mine.IsCurrent()) return;
  StreamStopped = true;
  on_.VideoStream.Visible = false;
  on_.Mira.Visible = true;
  frames_.ResetFirstFrames();
  strip_.Show(true);
  if (!NoNewStatus) {
    strip_.SetStatus(strip_.Map("Disconnected."));
    strip_.ClearDrawing();
    strip_.DrawStatusIcon(StatusIcon::kConnect);
  }
  events_.Disconnected();
}

}  // namespace orbelcast
