#include "player/recording_sign.h"

#include <QToolButton>

#include "player/toolbar.h"
#include "player/user_control1.h"

namespace orbelcast {

RecordingSign::RecordingSign(PlayerWidget& player, Badges& badges) : QObject(&player), badges_(&badges) {
  UserControl1& control = player.Control();
  auto* const button = player.findChild<QToolButton*>(QStringLiteral("Player(%1)").arg(toolbar::kStopAvi));
  button->setCheckable(true);
  button->setChecked(true);
  // A press ends the clip, which hides the button; until then it stays in.
  QObject::connect(button, &QToolButton::toggled, button, [button] { button->setChecked(true); });
  connections_.push_back(control.Player[toolbar::kStopAvi].Visible.Changed.Connect([this](bool recording) {
    recording_ = recording;
    seconds_ = 0;
    Show();
  }));
  connections_.push_back(control.VS->Events.StreamInfo.Connect([this](auto&, auto&) {
    if (!recording_) return;
    ++seconds_;
    Show();
  }));
}

void RecordingSign::Show() {
  if (badges_) recording_ ? badges_->ShowRecording(seconds_) : badges_->EndRecording();
}

}  // namespace orbelcast
