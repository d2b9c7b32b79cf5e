#include "widgets/window_widget.h"

#include <QApplication>
#include <QCloseEvent>
#include <QCursor>
#include <QMouseEvent>
#include <QScreen>

#include "qt_common/qt_texts.h"
#include "toolkit/twips.h"
#include "widgets/control_widgets.h"
#include "widgets/mirror.h"

namespace orbelcast {

WindowWidget::WindowWidget(Window& window, const Screen& screen, QWidget* parent)
    : QDialog(parent), window_(window), screen_(screen) {
  setWindowModality(Qt::WindowModal);
  setWindowFlag(Qt::WindowContextHelpButtonHint, false);
  if (window.FullScreen) setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
  size_settles_.setSingleShot(true);
  QObject::connect(&size_settles_, &QTimer::timeout, this, [this] { TellSize(); });
  pointer_rests_.setSingleShot(true);
  QObject::connect(&pointer_rests_, &QTimer::timeout, this, [this] { ShowPointer(false); });
  MakeWidgets(window.Children(), screen, *this);

  const auto keep = [this](Connection connection) { connections_.push_back(std::move(connection)); };
  keep(window.Opened.Connect([this] { Present(); }));
  keep(window.Closed.Connect([this] { Shut(); }));
  keep(window.Caption.Changed.Connect([this](const std::string& text) { setWindowTitle(ToLine(text)); }));
  keep(window.Width.Changed.Connect([this](float) { TakeSize(); }));
  keep(window.Height.Changed.Connect([this](float) { TakeSize(); }));
}

WindowWidget::~WindowWidget() {
  connections_.clear();
  window_.Unload();
}

void WindowWidget::Present() {
  // One without a name of its own is found under its opener's where people switch between windows.
  const bool nameless = window_.Caption.Get().empty() && parentWidget() != nullptr;
  setWindowTitle(nameless ? parentWidget()->window()->windowTitle() : ToLine(window_.Caption));
  Fill();
  // Each opening tells its size, also one that is as large as the last one and so gets no event.
  told_ = {};
  if (window_.OnResize) size_settles_.start(0);
  if (window_.FullScreen) {
    CoverScreen();
    return;
  }
  TakeSize();
  show();
  raise();
  activateWindow();
}

void WindowWidget::Shut() {
  pointer_rests_.stop();
  size_settles_.stop();
  qApp->removeEventFilter(this);
  hide();
  Empty();
}

// The size that the control gives its window; a window that tells its own is only sized that way when it opens.
void WindowWidget::TakeSize() {
  const TwipsScale scale = TwipsScale::Of(screen_);
  const QSize wanted(scale.PixelsX(window_.Width), scale.PixelsY(window_.Height));
  if (window_.OnResize) {
    if (!isVisible()) resize(wanted);
  } else {
    setFixedSize(wanted);
  }
}

void WindowWidget::CoverScreen() {
  QScreen* const covered = parentWidget() != nullptr ? parentWidget()->screen() : screen();
  setGeometry(covered->geometry());
  showFullScreen();
  activateWindow();
  pointer_ = QCursor::pos();
  qApp->installEventFilter(this);
  ShowPointer(true);
}

// Told once the window has the size that it is to keep: it passes through others while it opens.
void WindowWidget::resizeEvent(QResizeEvent* event) {
  QDialog::resizeEvent(event);
  if (window_.OnResize) size_settles_.start(0);
}

void WindowWidget::TellSize() {
  if (!isVisible() || size() == told_) return;
  told_ = size();
  const auto [width, height] = SizeInTwips(*this, screen_);
  window_.Width = width;
  window_.Height = height;
  if (const auto told = window_.OnResize) told();
}

void WindowWidget::ShowPointer(bool shown) {
  if (shown) {
    unsetCursor();
    pointer_rests_.start(kPointerRestMilliseconds);
  } else {
    setCursor(Qt::BlankCursor);
  }
}

bool WindowWidget::eventFilter(QObject* watched, QEvent* event) {
  // Windows that open under a resting pointer get moves that are none.
  if (event->type() == QEvent::MouseMove && QCursor::pos() != pointer_) {
    pointer_ = QCursor::pos();
    ShowPointer(true);
  }
  return QDialog::eventFilter(watched, event);
}

void WindowWidget::closeEvent(QCloseEvent* event) {
  event->ignore();
  window_.Close();
}

void WindowWidget::reject() {
  if (!window_.FullScreen) window_.Close();
}

}  // namespace orbelcast
