#include "widgets/full_screen_widget.h"

namespace orbelcast {

FullScreenWidget::FullScreenWidget(FullScreenWindow& window, Platform& platform, QWidget* parent)
    : WindowWidget(window, platform.screen, parent), window_(window), platform_(platform) {}

void FullScreenWidget::Fill() {
  if (!window_.vs) return;
  viewer_ = new VideoServerPushWidget(platform_, window_.vs, this);
  viewer_->setGeometry(rect());
  viewer_->show();
}

// Later: it may be a press on the viewer that closes the window.
void FullScreenWidget::Empty() {
  if (viewer_) viewer_->deleteLater();
  viewer_ = nullptr;
}

void FullScreenWidget::resizeEvent(QResizeEvent* event) {
  WindowWidget::resizeEvent(event);
  if (viewer_) viewer_->setGeometry(rect());
}

}  // namespace orbelcast
