#include "player/full_screen_window.h"

#include <string>

namespace orbelcast {

FullScreenWindow::FullScreenWindow(Platform& platform, PlayerLife& life) : platform_(platform) {
  FullScreen = true;
  OnResize = [this, &life] { life.Start([this] { Form_Resize(); }); };
}

void FullScreenWindow::Load() {
  Tag = "";
  vs.reset();
}

VideoServerPush& FullScreenWindow::Viewer() {
  if (!vs) {
    vs = VideoServerPush::Create(platform_);
    ViewerMade(*vs);
    vs->Events.MouseDown.Listen([this](std::int16_t&) { vs_MouseDown(); });
  }
  return *vs;
}

// Starts the stream anew at each size: the last picture, of another size, would be shown stretched until the next
// one.
void FullScreenWindow::Form_Resize() {
  const std::weak_ptr<VideoServerPush> mine = vs;
  if (!vs) return;
  vs->Resize(Width, Height);
  if (mine.expired()) return;
  const std::string tag = Tag;
  if (tag.starts_with('*')) {
    vs->MultiCamView(tag.substr(1));
  } else {
    vs->Connect(tag);
  }
}

void FullScreenWindow::vs_MouseDown() {
  vs->StopGettingFrames();
  Unload();
}

}  // namespace orbelcast
