// The status strip, its menu, and what the mouse does.

#include "imaging/status_icons.h"
#include "viewer/video_server_push.h"

namespace orbelcast {

void VideoServerPush::DrawStatusIcon(StatusIcon Kind) {
  const auto& picture = [&]() -> const Surface& {
    switch (Kind) {
      case StatusIcon::kRecording:
        return RecIcon.Picture();
      case StatusIcon::kStop:
        return StopIcon.Picture();
      case StatusIcon::kConnect:
        return ConnectIcon.Picture();
      case StatusIcon::kDisconnect:
        break;
    }
    return DisconnectIcon.Picture();
  }();
  PaintStatusIcon(StatusDisplay.Canvas(), StatusDisplay.BackColor, Kind, picture);
  StatusDisplay.Refresh();
}

void VideoServerPush::RaiseStatus() {
  std::string text = lStatus.Caption;
  Events.Status(text);
}

void VideoServerPush::Menux_Click(std::int16_t Index) {
  constexpr std::int16_t kReconnect = 4;
  if (Index == kReconnect) {
    Connect(current_url_, SingleShot, {});
    return;
  }
  for (MenuItem& item : Menux) item.Checked = false;
  Menux[static_cast<std::size_t>(Index)].Checked = true;
  StatusLineMode = Index;
}

void VideoServerPush::StatusStrip_MouseDown(std::int16_t Button) {
  if (Button == kRightButton) MainMenu.PopUp();
  platform_.loop.Yield();
}

void VideoServerPush::RaiseMouseDown(std::int16_t Button) {
  Events.MouseDown(Button);
}

void VideoServerPush::RaiseDrop(Drop& drop) {
  Events.OLEDragDrop(drop.data, drop.effect, drop.button, drop.shift, drop.x, drop.y);
}

}  // namespace orbelcast
