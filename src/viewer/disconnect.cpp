// Ending a stream.

#include "viewer/video_server_push.h"

namespace orbelcast {

void VideoServerPush::Disconnect(bool NoNewStatus) {
  const auto alive = StayAlive();
  const Generation mine = generations_.Current();
  DisconnectPending = true;
  current_url_.clear();
  MasterTimer.Enabled = false;
  Requester->Abort();
  if (!Yield(mine)) return;
  if (!NoNewStatus) {
    DrawStatusIcon(StatusIcon::kConnect);
    SetStatus(MapStatus("Disconnecting..."));
  }
  RaiseStatus();
  if (!mine.IsCurrent()) return;
  StreamStopped = true;
  VideoStream.Visible = false;
  Mira.Visible = true;
  first_frames_ = 0;
  StatusDisplay.Visible = true;
  if (!NoNewStatus) {
    SetStatus(MapStatus("Disconnected."));
    StatusDisplay.Cls();
    DrawStatusIcon(StatusIcon::kConnect);
  }
  Events.Disconnected();
}

void VideoServerPush::StopGettingFrames() {
  SetStatus("Stopped");
  TimeRetrieve.Caption = "";
  StopAfterTick = true;
}

}  // namespace orbelcast
