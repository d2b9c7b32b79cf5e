#include "player/full_screen.h"

#include <QEvent>
#include <QKeySequence>
#include <QShortcut>
#include <QTimer>
#include <utility>

#include "player/user_control1.h"
#include "widgets/full_screen_widget.h"

namespace orbelcast {

namespace {

constexpr int kHintPadding = 10;

void LeaveAsAPressDoes(FullScreenWindow& screen) {
  if (!screen.vs) return;
  if (const auto press = screen.vs->Mira.OnMouseDown) press(kLeftButton);
}

}  // namespace

Hint::Hint(QWidget& over, const QString& text) : QLabel(text, &over) {
  setObjectName(QStringLiteral("hint"));
  setAccessibleName(text);
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setStyleSheet(QStringLiteral("background: rgba(0, 0, 0, 170); color: white; border-radius: 6px; padding: %1px;")
                    .arg(kHintPadding));
  adjustSize();
  Place();
  show();
  raise();
  over.installEventFilter(this);
  QTimer::singleShot(kShownMilliseconds, this, &QObject::deleteLater);
}

void Hint::Place() {
  move((parentWidget()->width() - width()) / 2, parentWidget()->height() - 3 * height());
}

bool Hint::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize) Place();
  return QLabel::eventFilter(watched, event);
}

FullScreen::FullScreen(QMainWindow& window) : QObject(&window), window_(window) {
  QObject::connect(new QShortcut(QKeySequence(Qt::Key_F11), &window), &QShortcut::activated, this, &FullScreen::Toggle);
  window.installEventFilter(this);
}

bool FullScreen::Leave() {
  if (!window_.isFullScreen()) return false;
  Toggle();
  return true;
}

bool FullScreen::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::WindowStateChange) {
    for (Hint* each : window_.findChildren<Hint*>(QString(), Qt::FindDirectChildrenOnly)) delete each;
    if (window_.isFullScreen()) new Hint(window_, tr("Esc or F11 leaves the full screen"));
  }
  return QObject::eventFilter(watched, event);
}

PictureFullScreen::PictureFullScreen(PlayerWidget& player, std::function<void(VideoServerPushWidget&)> opened)
    : QObject(&player) {
  FullScreenWindow& screen = player.Control().XFullScreen;
  auto* const window = static_cast<FullScreenWidget*>(player.findChild<QWidget*>(QStringLiteral("XFullScreen")));
  for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_F11}) {
    QObject::connect(new QShortcut(QKeySequence(key), window), &QShortcut::activated, window,
                     [&screen] { LeaveAsAPressDoes(screen); });
  }
  opened_ = screen.Opened.Connect([window, opened = std::move(opened)] {
    VideoServerPushWidget* const viewer = window->Viewer();
    if (viewer == nullptr) return;
    opened(*viewer);
    new Hint(*viewer, tr("Esc, F11 or a click leaves the full screen"));
  });
}

}  // namespace orbelcast
