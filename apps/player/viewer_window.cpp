#include "player/viewer_window.h"

#include <QKeySequence>
#include <QPointer>
#include <QScreen>
#include <QShortcut>
#include <QUrl>
#include <chrono>
#include <cstdint>
#include <iostream>
#include <utility>
#include <vector>

#include "player/badges.h"
#include "player/key_commands.h"
#include "player/picture_age.h"
#include "player/proportions.h"
#include "player/server_cameras.h"
#include "player/status_line.h"
#include "player/viewer_commands.h"
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

}  // namespace

ViewerWindow::ViewerWindow(Platform& platform, const PlayerOptions& options)
    : platform_(platform),
      options_(options),
      viewer_(new VideoServerPushWidget(platform, new QWidget(this))),
      notice_(new Notice(this)),
      login_(new Login(*this, *notice_, options_, [this] {
        Configure();
        Start();
      })) {
  setCentralWidget(viewer_->parentWidget());
  new Proportions(*viewer_, platform.screen, [this] { return viewer_->parentWidget()->rect(); });
  resize(options_.WindowSize().value_or(FittingScreen(*this, kUsualSize)));
  // Nobody is there to try again.
  if (options_.kiosk) options_.auto_reconnect = true;
  Configure();
  MakeShow();
  setWindowTitle(QStringLiteral("%1 – Orbelcast").arg(Name()));
  if (options_.kiosk) FillScreen();
  AddShortcuts();
  TellOfCamera();
}

void ViewerWindow::Configure() {
  orbelcast::Configure(viewer_->Control(), StreamOf(options_));
  viewer_->setShowMotion(options_.show_motion);
  viewer_->setShowBandwidth(!options_.no_status && !options_.kiosk);
}

void ViewerWindow::MakeShow() {
  if (options_.mosaic.empty() && !options_.ShowsServer()) return;
  show_ = new CameraShow(*viewer_, viewer_->ShowBandwidth());
  std::vector<ShownCamera> cameras;
  for (const std::string& camera : options_.mosaic) {
    cameras.push_back({.device = {}, .name = ShownAddress(camera), .address = TileAddress(camera, options_.access)});
  }
  show_->Take(std::move(cameras));
  QObject::connect(show_, &CameraShow::Changed, this, [this] {
    setWindowTitle(QStringLiteral("%1 – Orbelcast").arg(Name()));
    notice_->Dismiss();
  });
  QObject::connect(show_, &CameraShow::Began, this, &ViewerWindow::OnStarted);
}

// Also where no window manager makes it so large.
void ViewerWindow::FillScreen() {
  setCursor(Qt::BlankCursor);
  setGeometry(screen()->geometry());
  setWindowState(Qt::WindowFullScreen);
}

QString ViewerWindow::Name() const {
  return show_ != nullptr && !show_->Empty() ? show_->Name() : ShownAddress(options_.camera);
}

void ViewerWindow::AddShortcuts() {
  ViewerWindowActions actions{.connect = [this] { Start(); },
                              .fill_screen = [this] { full_screen_->Toggle(); },
                              .quit = [this] { close(); },
                              .tell = [line = new StatusLine(this)](const QString& text) { line->Tell(text); }};
  if (show_ != nullptr) actions.show_camera = [this](int camera) { show_->Choose(camera); };
  if (options_.kiosk) {
    new KeyCommands(*this, *viewer_, KioskCommands(actions), KeyCommands::Offers::kKeysAlone);
    return;
  }
  full_screen_ = new FullScreen(*this);
  new KeyCommands(*this, *viewer_, ViewerCommands(*viewer_, actions));
  QObject::connect(new QShortcut(QKeySequence(Qt::Key_Escape), this), &QShortcut::activated, this, [this] {
    if (!notice_->Close() && !full_screen_->Leave()) close();
  });
}

void ViewerWindow::TellOfCamera() {
  auto* const age = new PictureAge(*this, viewer_->Control(), *notice_, [this] { return Name(); });
  if (!options_.kiosk) new Badges(*viewer_, *age);
  patience_.setSingleShot(true);
  patience_.setInterval(Notice::kPatienceMilliseconds);
  retry_.setSingleShot(true);
  retry_.setInterval(kRetryAfter);
  QObject::connect(&patience_, &QTimer::timeout, this,
                   [this] { notice_->ShowProgress(tr("Waiting for %1…").arg(Name())); });
  QObject::connect(&retry_, &QTimer::timeout, this, &ViewerWindow::Start);
  QObject::connect(notice_, &Notice::Retried, this, &ViewerWindow::Start);
  QObject::connect(viewer_, &VideoServerPushWidget::Connected, this, &ViewerWindow::OnConnected);
  QObject::connect(viewer_, &VideoServerPushWidget::ConnectionFailed, this, [this] {
    patience_.stop();
    const Failure failure = viewer_->Control().LastFailure();
    // Nobody answers a kiosk's questions.
    if (failure.kind == FailureKind::kStatus && Login::IsRefused(failure.status) && !options_.kiosk) {
      login_->Refused(Name(), {.close = false});
    } else {
      notice_->ShowProblem(WhyNoPicture(), {.close = false});
    }
  });
  QObject::connect(viewer_, &VideoServerPushWidget::ConnectionBroken, this,
                   [this] { notice_->ShowProgress(tr("%1 does not answer any more. Trying again…").arg(Name())); });
  QObject::connect(viewer_, &VideoServerPushWidget::StreamInfo, notice_, &Notice::EndProgress);
}

void ViewerWindow::OnConnected() {
  patience_.stop();
  if (viewer_->Control().LastFailure().kind != FailureKind::kNoPicture) return notice_->Dismiss();
  notice_->ShowProblem(WhyNoPicture(), {.close = false});
}

void ViewerWindow::OnStarted() {
  const bool runs = viewer_->Control().MasterTimer.Enabled;
  if (options_.auto_reconnect && !runs && !viewer_->Control().MultiCam.Enabled) retry_.start();
}

QString ViewerWindow::WhyNoPicture() {
  const std::string address = show_ != nullptr ? show_->Address() : options_.camera;
  const FailureText told = TextOf(viewer_->Control().LastFailure(),
                                  {.address = Name().toStdString(), .server = ServerOf(address).toStdString()});
  return QString::fromStdString(told.notice);
}

int ViewerWindow::FirstCamera() const {
  if (const int named = show_->Find(options_.device); named != CameraShow::kAll) return named;
  return options_.tour || show_->Count() == 1 ? 0 : CameraShow::kAll;
}

void ViewerWindow::TellOfServer(const QString& problem) {
  if (options_.auto_reconnect) {
    notice_->ShowProgress(tr("%1 Trying again…").arg(problem));
  } else {
    notice_->ShowProblem(problem);
  }
}

void ViewerWindow::ShowCameras() {
  const QPointer watch(this);
  if (show_->Empty()) {
    const ServerCameras told = AskForCameras(platform_, PlayerOptions(options_));
    if (!watch) return;
    patience_.stop();
    if (!told.problem.isEmpty()) return TellOfServer(told.problem);
    show_->Take(told.cameras);
  }
  const bool first = !std::exchange(showing_, true);
  if (first && options_.tour && show_->Count() > 1) show_->StartTour(*options_.tour);
  show_->Show(first ? FirstCamera() : show_->Shown());
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
    if ((show_ == nullptr || show_->Empty()) && !notice_->isVisible()) patience_.start();
    retry_.stop();
    viewer_->RunHandler([this, viewer = QPointer(viewer_), camera = options_.camera, mine = ++starts_] {
      if (viewer && show_ != nullptr) {
        ShowCameras();
      } else if (viewer) {
        viewer->Connect(QString::fromStdString(camera));
      }
      // A newer start takes over.
      if (viewer && mine == starts_) OnStarted();
    });
  });
}

}  // namespace orbelcast
