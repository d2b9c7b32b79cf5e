#include "viewer_window.h"

#include <QKeySequence>
#include <QPointer>
#include <QShortcut>
#include <QTimer>
#include <chrono>
#include <iostream>

#include "viewer/video_server_push.h"

namespace orbelcast {

namespace {

constexpr int kUsualFrameRate = 25;
constexpr QSize kUsualSize{640, 480};

void Show(VideoServerPushWidget& viewer, const PlayerOptions& options) {
  if (options.mosaic.empty()) {
    viewer.Connect(QString::fromStdString(options.camera));
    return;
  }
  QString cameras;
  for (const std::string& camera : options.mosaic)
    cameras += QString::fromStdString(TileAddress(camera, options.access)) + QStringLiteral("\r\n");
  viewer.MultiCamView(cameras);
}

}  // namespace

ViewerWindow::ViewerWindow(Platform& platform, const PlayerOptions& options)
    : options_(options), viewer_(new VideoServerPushWidget(platform, this)) {
  setCentralWidget(viewer_);
  const QString title = options_.mosaic.empty() ? ShownAddress(options_.camera)
                                                : QStringLiteral("Mosaic of %1").arg(options_.mosaic.size());
  setWindowTitle(QStringLiteral("%1 – Orbelcast").arg(title));
  resize(options_.WindowSize().value_or(kUsualSize));
  Configure();
  AddShortcuts();
}

void ViewerWindow::Configure() {
  viewer_->setFrameRate(options_.frame_rate.value_or(kUsualFrameRate));
  viewer_->setUsername(QString::fromStdString(options_.access.user));
  viewer_->setPassword(QString::fromStdString(options_.access.password));
  viewer_->setAutoReconnect(options_.auto_reconnect);
  viewer_->setMotionSensivity(options_.sensitivity);
  if (options_.motion_area) {
    const auto& [x1, y1, x2, y2] = *options_.motion_area;
    viewer_->setMotionArea_x1(x1);
    viewer_->setMotionArea_y1(y1);
    viewer_->setMotionArea_x2(x2);
    viewer_->setMotionArea_Y2(y2);
  }
  if (options_.motion_zones) {
    viewer_->setMotionByZones(true);
    viewer_->setMotionString(QString::fromStdString(*options_.motion_zones));
  }
  viewer_->setMotionDetector(options_.motion_area || options_.motion_zones);
  viewer_->setShowMotion(options_.show_motion);
  viewer_->setShowBandwidth(!options_.no_status);
}

void ViewerWindow::AddShortcuts() {
  const auto on = [this](const QKeySequence& keys, auto action) {
    QObject::connect(new QShortcut(keys, this), &QShortcut::activated, this, action);
  };
  on(QKeySequence(Qt::Key_Escape), [this] { isFullScreen() ? showNormal() : static_cast<void>(close()); });
  on(QKeySequence::Quit, [this] { close(); });
  on(QKeySequence(Qt::Key_F11), [this] { isFullScreen() ? showNormal() : showFullScreen(); });
  on(QKeySequence(Qt::Key_F5), [this] { Start(); });
}

void ViewerWindow::TimeFirstPicture() {
  const auto begin = std::chrono::steady_clock::now();
  first_picture_ = viewer_->Control().VideoStream.Visible.Changed.Connect([this, begin](bool visible) {
    if (!visible) return;
    // What is painted now is on the screen when this call returns.
    viewer_->repaint();
    const std::chrono::duration<double, std::milli> wait = std::chrono::steady_clock::now() - begin;
    std::cout << "first picture after " << wait.count() << " ms" << std::endl;
    first_picture_.Disconnect();
  });
}

void ViewerWindow::Start() {
  // As a handler, so that the wait for the first answer suspends this call alone.
  QTimer::singleShot(0, viewer_, [this] {
    if (options_.time_first_picture) TimeFirstPicture();
    viewer_->RunHandler([viewer = QPointer(viewer_), options = options_] {
      if (viewer) Show(*viewer, options);
    });
  });
}

}  // namespace orbelcast
