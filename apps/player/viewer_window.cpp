#include "player/viewer_window.h"

#include <QKeySequence>
#include <QPointer>
#include <QShortcut>
#include <QUrl>
#include <chrono>
#include <cstdint>
#include <iostream>

#include "player/badges.h"
#include "player/picture_age.h"
#include "player/proportions.h"
#include "player/window_size.h"
#include "stream/failure_text.h"
#include "stream/stream_options.h"
#include "viewer/video_server_push.h"

namespace orbelcast {

namespace {

constexpr int kUsualFrameRate = 25;
constexpr QSize kUsualSize{640, 480};

StreamOptions StreamOf(const PlayerOptions& options) {
  return {.url = options.camera,
          .access = options.access,
          .frame_rate = static_cast<std::int16_t>(options.frame_rate.value_or(kUsualFrameRate)),
          .motion_area = options.motion_area,
          .motion_zones = options.motion_zones,
          .sensitivity = options.sensitivity,
          .auto_reconnect = options.auto_reconnect};
}

/// How the server of a picture's address would be named to the player.
QString ServerOf(const std::string& address) {
  const QUrl url(QString::fromStdString(address));
  return url.port() == -1 ? url.host() : QStringLiteral("%1:%2").arg(url.host()).arg(url.port());
}

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
    : options_(options),
      viewer_(new VideoServerPushWidget(platform, new QWidget(this))),
      notice_(new Notice(this)),
      login_(new Login(*this, *notice_, options_,
                       [this] {
                         Configure();
                         Start();
                       })),
      full_screen_(new FullScreen(*this)) {
  setCentralWidget(viewer_->parentWidget());
  new Proportions(*viewer_, platform.screen, [this] { return viewer_->parentWidget()->rect(); });
  const QString title = options_.mosaic.empty() ? ShownAddress(options_.camera)
                                                : QStringLiteral("Mosaic of %1").arg(options_.mosaic.size());
  setWindowTitle(QStringLiteral("%1 – Orbelcast").arg(title));
  resize(options_.WindowSize().value_or(FittingScreen(*this, kUsualSize)));
  Configure();
  AddShortcuts();
  if (options_.mosaic.empty()) TellOfCamera();
}

void ViewerWindow::Configure() {
  orbelcast::Configure(viewer_->Control(), StreamOf(options_));
  viewer_->setShowMotion(options_.show_motion);
  viewer_->setShowBandwidth(!options_.no_status);
}

void ViewerWindow::AddShortcuts() {
  const auto on = [this](const QKeySequence& keys, auto action) {
    QObject::connect(new QShortcut(keys, this), &QShortcut::activated, this, action);
  };
  on(QKeySequence(Qt::Key_Escape), [this] {
    if (!notice_->Close() && !full_screen_->Leave()) close();
  });
  on(QKeySequence::Quit, [this] { close(); });
  on(QKeySequence(Qt::Key_F5), [this] { Start(); });
}

void ViewerWindow::TellOfCamera() {
  new Badges(*viewer_,
             *new PictureAge(*this, viewer_->Control(), *notice_, [this] { return ShownAddress(options_.camera); }));
  patience_.setSingleShot(true);
  patience_.setInterval(Notice::kPatienceMilliseconds);
  retry_.setSingleShot(true);
  retry_.setInterval(kRetryAfter);
  QObject::connect(&patience_, &QTimer::timeout, this,
                   [this] { notice_->ShowProgress(tr("Waiting for %1…").arg(ShownAddress(options_.camera))); });
  QObject::connect(&retry_, &QTimer::timeout, this, &ViewerWindow::Start);
  QObject::connect(notice_, &Notice::Retried, this, &ViewerWindow::Start);
  QObject::connect(viewer_, &VideoServerPushWidget::Connected, this, &ViewerWindow::OnConnected);
  QObject::connect(viewer_, &VideoServerPushWidget::ConnectionFailed, this, [this] {
    patience_.stop();
    const Failure failure = viewer_->Control().LastFailure();
    if (failure.kind == FailureKind::kStatus && Login::IsRefused(failure.status)) {
      login_->Refused(ShownAddress(options_.camera), {.close = false});
    } else {
      notice_->ShowProblem(WhyNoPicture(), {.close = false});
    }
  });
  QObject::connect(viewer_, &VideoServerPushWidget::ConnectionBroken, this, [this] {
    notice_->ShowProgress(tr("%1 does not answer any more. Trying again…").arg(ShownAddress(options_.camera)));
  });
  QObject::connect(viewer_, &VideoServerPushWidget::StreamInfo, notice_, &Notice::EndProgress);
}

void ViewerWindow::OnConnected() {
  patience_.stop();
  if (viewer_->Control().LastFailure().kind != FailureKind::kNoPicture) return notice_->Dismiss();
  notice_->ShowProblem(WhyNoPicture(), {.close = false});
}

void ViewerWindow::OnStarted() {
  const bool runs = viewer_->Control().MasterTimer.Enabled;
  if (options_.auto_reconnect && !runs && options_.mosaic.empty()) retry_.start();
}

QString ViewerWindow::WhyNoPicture() {
  const FailureText told = TextOf(
      viewer_->Control().LastFailure(),
      {.address = ShownAddress(options_.camera).toStdString(), .server = ServerOf(options_.camera).toStdString()});
  return QString::fromStdString(told.notice);
}

void ViewerWindow::TimeFirstPicture() {
  const auto begin = std::chrono::steady_clock::now();
  first_picture_ = viewer_->Control().VideoStream.Visible.Changed.Connect([this, begin](bool visible) {
    if (!visible) return;
    // Synchronous: the picture is on the screen when the call returns.
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
    if (notice_->ShowsProblem()) notice_->Dismiss();
    if (options_.mosaic.empty() && !notice_->isVisible()) patience_.start();
    retry_.stop();
    viewer_->RunHandler([this, viewer = QPointer(viewer_), options = options_, mine = ++starts_] {
      if (viewer) Show(*viewer, options);
      // A newer start takes over.
      if (viewer && mine == starts_) OnStarted();
    });
  });
}

}  // namespace orbelcast
