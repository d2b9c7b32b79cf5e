// The master timer's tick: the next request, its picture, and the once-a-second work.

#include <cstdio>
#include <memory>
#include <optional>
#include <utility>

#include "toolkit/rounding.h"
#include "viewer/video_server_push.h"

namespace orbelcast {

namespace {

/// That many failed requests in a row are a broken connection.
constexpr int kFailuresToBreak = 5;

std::string ClockTimeCode(const LocalTime& now) {
  char text[32];
  std::snprintf(text, sizeof text, "%04d%02d%02d%02d%02d%02d", now.year, now.month, now.day, now.hour, now.minute,
                now.second);
  return text;
}

std::string TimeOfDayText(const LocalTime& now) {
  char text[16];
  std::snprintf(text, sizeof text, "%02d:%02d:%02d", now.hour, now.minute, now.second);
  return text;
}

std::string PieceOf(const std::string& text, std::size_t first, std::size_t count) {
  return first < text.size() ? text.substr(first, count) : std::string();
}

}  // namespace

void VideoServerPush::MasterTimer_Timer() {
  if (StreamStopped || doing_ != Doing::kNothing) return;
  if (DisconnectPending) {
    Disconnect(false);
    return;
  }
  const Generation mine = generations_.Current();
  const Until ticking(doing_, Doing::kTicking, Doing::kNothing, mine);
  TickTexts texts;
  // The comparison admits equality: one frame more than FrameRate fits into a clock second.
  if (FramesThisSecond <= frame_rate_ && !FetchFrame(texts, mine)) return;
  if (!UpdateOncePerSecond(texts, mine)) return;
  if (StopAfterTick) MasterTimer.Enabled = false;
}

// False ends the tick: no once-a-second work, no stop.
bool VideoServerPush::FetchFrame(TickTexts& texts, const Generation& mine) {
  const std::shared_ptr<HttpRequest> request = Requester;
  // A single picture is the answer that Connect has.
  const std::optional<bool> good = SingleShot ? request->Status() == kHttpOk : RequestFrame(*request, mine);
  if (!good) return false;
  if (!*good) {
    FailTick(mine);
    return false;
  }
  FrameBuffer = request->ResponseBody();
  FailureCount = 0;
  RaiseTimeCodeOrClock(*request);
  if (!mine.IsCurrent()) return false;
  texts.recording = request->GetResponseHeader("Recording");
  texts.server_information = ServerInformation(*request);
  ProcessFrame(false);
  return mine.IsCurrent();
}

// Whether every step worked and status 200 came; none where the tick is void.
std::optional<bool> VideoServerPush::RequestFrame(HttpRequest& request, const Generation& mine) {
  const Until under_way(request_under_way_, true, false, mine);
  const bool opened = OpenRequest(request);
  const bool sent = request.Send();
  if (!Yield(mine)) return std::nullopt;
  const bool answered = request.WaitForResponse();
  if (!mine.IsCurrent()) return std::nullopt;
  failure_ = FailureOf(request, opened && sent && answered);
  return failure_.kind == FailureKind::kNone;
}

bool VideoServerPush::OpenRequest(HttpRequest& request) const {
  const bool opened = request.Open("GET", current_url_, true);
  if (username_.empty() && password_.empty()) return opened;
  return request.SetCredentials(username_, password_, 0) && opened;
}

void VideoServerPush::FailTick(const Generation& mine) {
  const float left = VideoStream.Width / 2 - IconNet.Width / 2;
  const float top = VideoStream.Height / 2 - IconNet.Height / 2;
  VideoStream.Canvas().Draw(IconNet.Picture(), scale_.PixelsX(left), scale_.PixelsY(top));
  VideoStream.Refresh();
  if (auto_reconnect_) return;
  if (++FailureCount < kFailuresToBreak) return;
  Events.ConnectionBroken();
  if (!mine.IsCurrent()) return;
  FailureCount = 0;
  Yield(mine);
}

std::string_view VideoServerPush::ServerInformation(HttpRequest& request) const {
  switch (StatusLineMode) {
    case 0:
      return request.GetResponseHeader("Date");
    case 1:
      return request.GetResponseHeader("Server");
    case 2:
      return request.GetResponseHeader("HolmvaneStatus");
    default:
      return {};
  }
}

// False where the tick is void.
bool VideoServerPush::UpdateOncePerSecond(const TickTexts& texts, const Generation& mine) {
  if (TimeOfDayText(platform_.clock.Now()) == LastSecondText) return true;
  ShowRecording(texts.recording);
  TimeRetrieve.Caption = std::string(texts.server_information);
  KeepStatusDrawing();
  KilobytesPerSecond = RoundToEven(BytesThisSecond / 1024.0);
  if (KilobytesPerSecond != 0) PublishRates();
  if (!mine.IsCurrent()) return false;
  BytesThisSecond = 0;
  FramesThisSecond = 0;
  LastSecondText = TimeOfDayText(platform_.clock.Now());
  return Yield(mine);
}

void VideoServerPush::PublishRates() {
  SetStatus(std::to_string(KilobytesPerSecond) + " KB/s (" + std::to_string(std::int64_t{KilobytesPerSecond} * 8) +
            "Kbps) -> " + std::to_string(FramesThisSecond) + " fps");
  std::int32_t bytes = BytesThisSecond;
  std::int32_t frames = FramesThisSecond;
  Events.StreamInfo(bytes, frames);
}

void VideoServerPush::RaiseTimeCodeOrClock(HttpRequest& request) {
  std::string time_code(request.GetResponseHeader("RC_TCR"));
  if (time_code.empty()) time_code = ClockTimeCode(platform_.clock.Now());
  RaiseTimeCode(std::move(time_code));
}

void VideoServerPush::RaiseTimeCode(std::string time_code) {
  std::string year = PieceOf(time_code, 0, 4);
  std::string month = PieceOf(time_code, 4, 2);
  std::string day = PieceOf(time_code, 6, 2);
  std::string hour = PieceOf(time_code, 8, 2);
  std::string minute = PieceOf(time_code, 10, 2);
  std::string second = PieceOf(time_code, 12, 2);
  std::string hundredths = "00";
  Events.VigilboxTCR(year, month, day, hour, minute, second, hundredths, time_code);
}

void VideoServerPush::ShowRecording(std::string_view recording) {
  if (recording == "Yes") {
    DrawStatusIcon(StatusIcon::kRecording);
  } else {
    EraseActivityIcon(StatusDisplay.Canvas(), StatusDisplay.BackColor);
  }
}

void VideoServerPush::KeepStatusDrawing() {
  StatusDisplay.Refresh();
}

// A frame of an answer that is there already: the second half of a tick, without a request. While a request is under
// way there is none: its answer belongs to whoever waits for it.
void VideoServerPush::RequestEnd() {
  const auto alive = StayAlive();
  const Generation mine = generations_.Current();
  const std::shared_ptr<HttpRequest> request = request_under_way_ ? platform_.http.Create() : Requester;
  FrameBuffer = request->ResponseBody();
  if (!request_under_way_) failure_ = FailureOf(*request, true);
  if (request->Status() != kHttpOk && ++FailureCount >= kFailuresToBreak) {
    Events.ConnectionBroken();
    if (!mine.IsCurrent()) return;
    Disconnect(true);
    Yield(mine);
    return;
  }
  // Also after a failure that stayed below the limit: only failed ticks before can make this the fifth.
  FailureCount = 0;
  RaiseTimeCodeOrClock(*request);
  if (!mine.IsCurrent()) return;
  ShowRecording(request->GetResponseHeader("Recording"));
  KeepStatusDrawing();
  ProcessFrame(false);
}

}  // namespace orbelcast
