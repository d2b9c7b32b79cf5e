// The master timer's tick: the next request, its picture, and the once-a-second work.

#include <cstdio>
#include <utility>

#include "platform/rounding.h"
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
  if (StreamStopped || Terminating) return;
  if (DisconnectPending) {
    Disconnect(false);
    return;
  }
  ++ticks_running_;
  std::string recording = std::exchange(spare_recording_, {});
  std::string server_information = std::exchange(spare_information_, {});
  recording.clear();
  server_information.clear();

  // The comparison admits equality: one frame more than FrameRate fits into a clock second.
  const bool goes_on = FramesThisSecond > frame_rate_ || FetchFrame(recording, server_information);
  if (goes_on) {
    UpdateOncePerSecond(recording, server_information);
    if (StopAfterTick) MasterTimer.Enabled = false;
  }

  spare_recording_ = std::move(recording);
  spare_information_ = std::move(server_information);
  --ticks_running_;
}

// False ends the tick: no once-a-second work, no stop.
bool VideoServerPush::FetchFrame(std::string& recording, std::string& server_information) {
  if (!SingleShot && !OpenAndSend()) return false;
  if (RequestFailed()) {
    FailTick();
    return false;
  }
  FrameBuffer = Requester->ResponseBody();
  FailureCount = 0;
  RaiseTimeCodeOrClock();
  recording.assign(Requester->GetResponseHeader("Recording"));
  ReadServerInformation(server_information);
  ProcessFrame(false);
  return !Terminating;
}

// False when the control was released, or a newer Connect has taken the stream over, in the middle of it.
bool VideoServerPush::OpenAndSend() {
  const std::shared_ptr<HttpRequest> request = Requester;
  request->Open("GET", current_url_, true);
  if (!username_.empty() || !password_.empty()) request->SetCredentials(username_, password_, 0);
  request->Send();
  if (!Yield() || request != Requester) return false;
  return WaitForResponse();
}

bool VideoServerPush::RequestFailed() const {
  return Requester->Failed() || Requester->Status() != kHttpOk;
}

void VideoServerPush::FailTick() {
  const float left = VideoStream.Width / 2 - IconNet.Width / 2;
  const float top = VideoStream.Height / 2 - IconNet.Height / 2;
  VideoStream.Canvas(TwipsPerPixelX, TwipsPerPixelY)
      .Draw(IconNet.Picture(), RoundToEven(left / static_cast<float>(TwipsPerPixelX)),
            RoundToEven(top / static_cast<float>(TwipsPerPixelY)));
  VideoStream.Refresh();
  if (auto_reconnect_) return;
  if (++FailureCount < kFailuresToBreak) return;
  Events.ConnectionBroken();
  FailureCount = 0;
  Yield();
}

void VideoServerPush::ReadServerInformation(std::string& text) const {
  switch (StatusLineMode) {
    case 0:
      text.assign(Requester->GetResponseHeader("Date"));
      break;
    case 1:
      text.assign(Requester->GetResponseHeader("Server"));
      break;
    case 2:
      text.assign(Requester->GetResponseHeader("HolmvaneStatus"));
      break;
    default:
      break;
  }
}

void VideoServerPush::UpdateOncePerSecond(const std::string& recording, const std::string& server_information) {
  if (TimeOfDayText(platform_.clock.Now()) == LastSecondText) return;
  ShowRecording(recording);
  TimeRetrieve.Caption = server_information;
  KeepStatusDrawing();
  KilobytesPerSecond = RoundToEven(BytesThisSecond / 1024.0);
  if (KilobytesPerSecond != 0) PublishRates();
  BytesThisSecond = 0;
  FramesThisSecond = 0;
  LastSecondText = TimeOfDayText(platform_.clock.Now());
  Yield();
}

void VideoServerPush::PublishRates() {
  SetStatus(std::to_string(KilobytesPerSecond) + " KB/s (" + std::to_string(std::int64_t{KilobytesPerSecond} * 8) +
            "Kbps) -> " + std::to_string(FramesThisSecond) + " fps");
  std::int32_t bytes = BytesThisSecond;
  std::int32_t frames = FramesThisSecond;
  Events.StreamInfo(bytes, frames);
}

void VideoServerPush::RaiseTimeCodeOrClock() {
  std::string time_code(Requester->GetResponseHeader("RC_TCR"));
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
    EraseActivityIcon(StatusDisplay.Canvas(TwipsPerPixelX, TwipsPerPixelY), StatusDisplay.BackColor);
  }
}

void VideoServerPush::KeepStatusDrawing() {
  StatusDisplay.Refresh();
}

// A frame of an answer that is there already: the second half of a tick, without a request.
void VideoServerPush::RequestEnd() {
  const auto alive = StayAlive();
  FrameBuffer = Requester->ResponseBody();
  if (Requester->Status() != kHttpOk && ++FailureCount >= kFailuresToBreak) {
    Events.ConnectionBroken();
    Disconnect(true);
    Yield();
    return;
  }
  // Also after a failure that stayed below the limit: only failed ticks before can make this the fifth.
  FailureCount = 0;
  RaiseTimeCodeOrClock();
  ShowRecording(Requester->GetResponseHeader("Recording"));
  KeepStatusDrawing();
  ProcessFrame(false);
}

}  // namespace orbelcast
