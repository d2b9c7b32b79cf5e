#include "player/full_screen_command.h"

#include <cstdint>
#include <optional>

namespace orbelcast {

void FullScreenCommand::ShowFullScreen() {
  Frame& toolbar = children_.PlayerControls;
  std::optional<BusyPointer::Scope> busy(pointer_);
  if (!life_.Yield()) return;
  children_.VS->StopGettingFrames();
  const bool toolbar_was_visible = toolbar.Visible;
  toolbar.Visible = false;
  if (!life_.Yield()) return;
  VideoServerPush& viewer = XFullScreen.Viewer();
  std::int16_t rate = children_.VS->FrameRate();
  viewer.FrameRate(rate);
  viewer.AlwaysSmooth(true);
  viewer.ShowBandwidth(true);
  if (life_.Ended()) return;
  busy.reset();
  XFullScreen.Tag = cameras_.Selection().empty() ? children_.VS->URL() : "*" + cameras_.Selection();
  if (!life_.Yield() || !life_.Open(XFullScreen)) return;
  toolbar.Visible = toolbar_was_visible;
}

}  // namespace orbelcast
