#include "player/badges.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <array>

#include "player/archive_extent.h"
#include "protocol/server_address.h"
#include "viewer/video_server_push.h"

namespace orbelcast {

namespace {

/// The same on every theme: the picture below it is.
constexpr QColor kGround{0, 0, 0, 170};
constexpr QColor kText{255, 255, 255};
constexpr std::array<QColor, 4> kMarks{QColor(64, 220, 96), QColor(255, 184, 48), QColor(225, 225, 225),
                                       QColor(255, 64, 56)};

constexpr int kSecondsOfAMinute = 60;

}  // namespace

Badge::Badge(QWidget* parent) : QLabel(parent) {
  QFont bold = font();
  bold.setBold(true);
  setFont(bold);
  hide();
}

void Badge::Show(Mark mark, const QString& text) {
  if (isVisibleTo(parentWidget()) && mark_ == mark && this->text() == text) return;
  mark_ = mark;
  setText(text);
  setAccessibleName(text);
  updateGeometry();
  show();
}

int Badge::MarkSide() const {
  return fontMetrics().capHeight();
}

int Badge::Gap() const {
  return fontMetrics().capHeight() * 2 / 3;
}

QSize Badge::sizeHint() const {
  return {MarkSide() + 3 * Gap() + fontMetrics().horizontalAdvance(text()), fontMetrics().height() + Gap()};
}

void Badge::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(kGround);
  painter.drawRoundedRect(rect(), Gap(), Gap());
  const QRect mark(Gap(), (height() - MarkSide()) / 2, MarkSide(), MarkSide());
  painter.setBrush(kMarks[static_cast<std::size_t>(mark_)]);
  mark_ == Mark::kStopped ? painter.drawRect(mark) : painter.drawEllipse(mark);
  painter.setPen(kText);
  painter.drawText(rect().adjusted(mark.right() + Gap(), 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, text());
}

Badges::Badges(VideoServerPushWidget& viewer, const PictureAge& age)
    : QWidget(&viewer), viewer_(viewer.Control()), age_(age), state_(new Badge(this)), recording_(new Badge(this)) {
  setObjectName(QStringLiteral("badges"));
  setAttribute(Qt::WA_TransparentForMouseEvents);
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(recording_);
  row->addWidget(state_);
  connections_.push_back(
      viewer_.Events.VigilboxTCR.Connect([this](auto&, auto&, auto&, auto&, auto&, auto&, auto&,
                                                std::string& time_code) { time_ = TimeOfCode(time_code); }));
  connections_.push_back(viewer_.MasterTimer.Enabled.Changed.Connect([this](bool) { Update(); }));
  connections_.push_back(viewer_.VideoStream.Visible.Changed.Connect([this](bool) { Update(); }));
  QObject::connect(&age, &PictureAge::Looked, this, &Badges::Update);
  viewer.installEventFilter(this);
}

void Badges::Update() {
  const bool archive = AsksForArchive(viewer_.URL());
  if (!viewer_.VideoStream.Visible || viewer_.MultiCam.Enabled || !age_.PictureIsTrue()) {
    state_->hide();
  } else if (archive) {
    state_->Show(
        Badge::Mark::kArchive,
        tr("ARCHIVE %1").arg(time_.value_or(QDateTime()).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"))).trimmed());
  } else if (viewer_.MasterTimer.Enabled) {
    state_->Show(Badge::Mark::kLive, tr("LIVE"));
  } else {
    state_->Show(Badge::Mark::kStopped, tr("STOPPED"));
  }
  Place();
}

void Badges::ShowRecording(int seconds) {
  const QLatin1Char zero('0');
  recording_->Show(
      Badge::Mark::kRecording,
      tr("REC %1:%2").arg(seconds / kSecondsOfAMinute, 2, 10, zero).arg(seconds % kSecondsOfAMinute, 2, 10, zero));
  Place();
}

void Badges::EndRecording() {
  recording_->hide();
  Place();
}

void Badges::Place() {
  const int margin = fontMetrics().height() / 2;
  resize(layout()->sizeHint());
  move(parentWidget()->width() - width() - margin, margin);
  raise();
  setVisible(state_->isVisibleTo(this) || recording_->isVisibleTo(this));
}

bool Badges::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize) Place();
  return QWidget::eventFilter(watched, event);
}

}  // namespace orbelcast
