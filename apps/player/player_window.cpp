#include "player/player_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeySequence>
#include <QPointer>
#include <QSettings>
#include <QShortcut>
#include <iostream>

#include "common/shown_text.h"
#include "player/archive_search.h"
#include "player/badges.h"
#include "player/camera_failures.h"
#include "player/command_failures.h"
#include "player/key_commands.h"
#include "player/picture_age.h"
#include "player/player_commands.h"
#include "player/player_mosaic.h"
#include "player/proportions.h"
#include "player/recording_sign.h"
#include "player/save_name.h"
#include "player/user_control1.h"
#include "player/window_size.h"
#include "qt_common/qt_texts.h"
#include "widgets/mirror.h"

namespace orbelcast {

namespace {

constexpr const char* kGeometryKey = "player/geometry";
constexpr int kLongestTitle = 80;

}  // namespace

PlayerWindow::PlayerWindow(QtPlatform& platform, const PlayerOptions& options)
    : options_(options),
      first_choices_(platform.Get().registry),
      player_(new PlayerWidget(platform.Get(), this)),
      notice_(new Notice(this)),
      login_(new Login(*this, *notice_, options_,
                       [this] {
                         Configure();
                         LoadAgain();
                       })),
      full_screen_(new FullScreen(*this)) {
  setCentralWidget(player_);
  Configure();
  first_choices_.Choose(*player_);
  new LastCamera(*player_, QString::fromStdString(options_.camera), QString::fromStdString(options_.device));
  TakeSize(platform.Get().screen);
  AddCommands(platform.Get());
  WatchRequests(platform.Requests());
  WatchPicture(platform);
  ShowTitle();
  QObject::connect(player_, &PlayerWidget::Loaded, this, &PlayerWindow::OnLoaded);
  QObject::connect(notice_, &Notice::Retried, this, &PlayerWindow::LoadAgain);
}

void PlayerWindow::WatchPicture(QtPlatform& platform) {
  const auto camera = [this] { return ChosenCamera(); };
  const Screen& screen = platform.Get().screen;
  auto* const age = new PictureAge(*this, *player_->Control().VS, *notice_, camera);
  auto* const badges = new Badges(player_->VS(), *age);
  new RecordingSign(*player_, *badges);
  new CameraFailures(*player_, *notice_, *login_, camera);
  new Proportions(player_->VS(), screen, [this, &screen] { return PlaceOf(player_->Control().VSPlace, screen); });
  new CommandFailures(platform, *new StatusLine(this));
  new PictureFullScreen(*player_, [this, &screen](auto& viewer) { WatchFullScreen(viewer, screen); });
  platform.Questions().ProposeName = [this, watch = QPointer(player_), badges] {
    return watch ? SaveName(*player_, ChosenCamera(), *badges) : QString();
  };
}

void PlayerWindow::WatchFullScreen(VideoServerPushWidget& viewer, const Screen& screen) {
  auto* const notice = new Notice(&viewer);
  new Badges(viewer, *new PictureAge(viewer, viewer.Control(), *notice, [this] { return ChosenCamera(); }));
  new Proportions(viewer, screen, [&viewer] { return viewer.parentWidget()->rect(); });
}

void PlayerWindow::Configure() {
  const auto text = [](const std::string& option) { return QString::fromStdString(option); };
  const auto yes = [](bool option) { return option ? QStringLiteral("Yes") : QString(); };
  const ServerAddress address = ParseServer(options_.camera);
  player_->setServer(text(address.server));
  player_->setPort(text(address.port));
  player_->setUsername(text(options_.access.user));
  player_->setPassword(text(options_.access.password));
  player_->setDevice(options_.device.empty() ? LastCamera::On(text(options_.camera)) : text(options_.device));
  player_->setLURL(text(options_.live_url));
  player_->setIURL(text(options_.archive_url));
  player_->setStart(yes(options_.start));
  player_->setExtendedControls(yes(options_.extended));
  if (options_.fixed_layout) {
    // Any size: that there is one keeps everything at its place.
    player_->setExtentX(QStringLiteral("1"));
    player_->setExtentY(QStringLiteral("1"));
  }
}

void PlayerWindow::TakeSize(const Screen& screen) {
  const auto asked_for = options_.WindowSize();
  const QSize least = LeastPlayerSize(*this, screen);
  setMinimumSize(asked_for ? least.boundedTo(*asked_for) : least);
  if (asked_for) {
    resize(*asked_for);
  } else if (options_.fixed_layout) {
    resize(player_->sizeHint());
  } else if (!restoreGeometry(QSettings().value(QLatin1String(kGeometryKey)).toByteArray())) {
    resize(FirstPlayerSize(*this, screen));
  }
}

void PlayerWindow::AddCommands(Platform& platform) {
  new PlayerMosaic(*player_);
  auto* const archive = new ArchiveSearch(platform, *player_);
  new KeyCommands(*this, player_->VS(),
                  PlayerCommands(*player_, {.search_archive = [archive] { archive->Open(); },
                                            .connect_again = [this] { LoadAgain(); },
                                            .quit = [this] { close(); }}));
  QObject::connect(new QShortcut(QKeySequence(Qt::Key_Escape), this), &QShortcut::activated, this, [this] {
    if (!notice_->Close()) full_screen_->Leave();
  });
}

void PlayerWindow::LoadAgain() {
  if (const std::string device = player_->Control().SelectedDevice(); !device.empty()) {
    player_->setDevice(QString::fromStdString(device));
  }
  player_->RunHandler([this] { player_->Load(); });
}

void PlayerWindow::WatchRequests(YieldingHttp& requests) {
  patience_.setSingleShot(true);
  patience_.setInterval(Notice::kPatienceMilliseconds);
  QObject::connect(&patience_, &QTimer::timeout, this, [this] {
    notice_->ShowProgress(tr("Waiting for %1…").arg(ShownAddress(options_.camera)));
    setCursor(Qt::BusyCursor);
  });
  connections_.push_back(requests.Waiting().Changed.Connect([this](int waiting) {
    if (waiting > 0) {
      if (!patience_.isActive()) patience_.start();
      return;
    }
    patience_.stop();
    notice_->EndProgress();
    unsetCursor();
  }));
  connections_.push_back(
      requests.Ended().Connect([this](const YieldingHttp::Outcome& outcome) { outcome_ = outcome; }));
}

void PlayerWindow::OnLoaded() {
  ShowTitle();
  if (RefusesLogin()) return login_->Refused(ShownAddress(options_.camera), {.close = false});
  if (LacksServer()) return notice_->ShowProblem(Problem(), {.close = false});
  notice_->Dismiss();
  ChooseFirst();
  if (LacksDevice()) TellOfDevice();
}

bool PlayerWindow::LacksServer() const {
  return !player_->Server().isEmpty() && player_->Control().CamList.ListCount() == 0;
}

bool PlayerWindow::RefusesLogin() const {
  return LacksServer() && outcome_.answered && Login::IsRefused(outcome_.status);
}

QString PlayerWindow::Problem() const {
  const QString place = ShownAddress(options_.camera);
  if (!outcome_.answered) {
    return tr("%1 does not answer. Is the address right, and is the camera server running?").arg(place);
  }
  if (outcome_.status != kHttpOk) {
    return tr("%1 answers, but not as a camera server does (status %2).").arg(place).arg(outcome_.status);
  }
  return tr("%1 has no cameras for this user.").arg(place);
}

bool PlayerWindow::LacksDevice() const {
  return !player_->Device().isEmpty() && !player_->Server().isEmpty() && player_->Control().CamList.ListIndex() < 0;
}

QString PlayerWindow::ChosenCamera() const {
  const ComboBox& cameras = player_->Control().CamList;
  const int index = cameras.ListIndex();
  if (index < 0) return ShownAddress(options_.camera);
  return ToLine(cameras.List()[static_cast<std::size_t>(index)]).left(kLongestTitle);
}

void PlayerWindow::TellOfDevice() {
  const QString place = ShownAddress(options_.camera);
  const QString device = player_->Device();
  notice_->ShowProblem(tr("%1 has no camera “%2”. Choose one in the list above.").arg(place, device));
  device_chosen_ = player_->Control().CamList.ListIndexChanged.Connect([this](int index) {
    if (index >= 0) notice_->Dismiss();
  });
  // On the terminal too, for the author of the command line.
  std::cerr << "orbelcast-player: there is no camera '" << Shown(device.toStdString()) << "'; 'orbelcast info "
            << Shown(place.toStdString()) << "' lists the ids of those there are\n";
}

// Chooses once, as a person would, what no option has chosen.
void PlayerWindow::ChooseFirst() {
  UserControl1& player = player_->Control();
  if (std::exchange(chosen_, true)) return;
  if (options_.frame_rate) player.FrameRate.Choose(std::min(*options_.frame_rate, player.FrameRate.ListCount() - 1));
  if (!options_.device.empty() || player.CamList.ListIndex() >= 0) return;
  // The camera of last time is gone.
  player_->setDevice({});
  player.CamList.Choose(0);
}

void PlayerWindow::ShowTitle() {
  // The system's own name. Without one the player gives the address as it was typed.
  const QString name = player_->SystemName();
  const QString shown = name == player_->Server() ? ShownAddress(options_.camera) : name.left(kLongestTitle);
  setWindowTitle(shown.isEmpty() ? QStringLiteral("Orbelcast") : QStringLiteral("%1 – Orbelcast").arg(shown));
}

void PlayerWindow::closeEvent(QCloseEvent* event) {
  // A size that was asked for is not the user's.
  if (options_.size.empty()) QSettings().setValue(QLatin1String(kGeometryKey), saveGeometry());
  event->accept();
}

}  // namespace orbelcast
