#include "player/time_line.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>

namespace orbelcast {

namespace {

constexpr int kHour = 3600;
constexpr int kLabelEvery = 3;  // hours
constexpr int kBarHeight = 20;
constexpr int kTick = 4;

}  // namespace

TimeLine::TimeLine(QWidget* parent) : QSlider(Qt::Horizontal, parent) {
  setAccessibleName(tr("Time of the day"));
  setRange(0, kSecondsOfDay - 1);
  setSingleStep(60);
  setPageStep(kHour);
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  QObject::connect(this, &QSlider::valueChanged, this,
                   [this] { setAccessibleDescription(Time().toString(QStringLiteral("HH:mm:ss"))); });
}

void TimeLine::ShowDay(const QDate& day, const ArchiveExtent& extent) {
  filled_.reset();
  if (extent.Known()) {
    const QDateTime midnight(day, QTime(0, 0), Qt::UTC);
    const auto second = [&](const QDateTime& time) {
      return static_cast<int>(std::clamp<qint64>(midnight.secsTo(time), 0, kSecondsOfDay));
    };
    filled_ = {second(*extent.first), second(*extent.last)};
  }
  update();
}

QSize TimeLine::sizeHint() const {
  return {24 * fontMetrics().horizontalAdvance(QLatin1Char('0')) * 2, kBarHeight + kTick + fontMetrics().height()};
}

// With room for half of a label at each end.
QRect TimeLine::Bar() const {
  const int margin = fontMetrics().horizontalAdvance(QStringLiteral("24")) / 2 + 2;
  return {margin, 1, std::max(width() - 2 * margin, 1), kBarHeight};
}

int TimeLine::PlaceOf(int second) const {
  const QRect bar = Bar();
  return bar.left() + static_cast<int>(static_cast<qint64>(second) * bar.width() / kSecondsOfDay);
}

// To the minute, which is about a pixel's worth.
int TimeLine::SecondAt(int x) const {
  const QRect bar = Bar();
  const int minute = static_cast<int>(static_cast<qint64>(x - bar.left()) * kSecondsOfDay / bar.width() / 60);
  return std::clamp(minute * 60, minimum(), maximum());
}

void TimeLine::DrawHours(QPainter& painter) const {
  const int below = Bar().bottom() + 1;
  for (int hour = 0; hour <= 24; ++hour) {
    const int x = PlaceOf(hour * kHour);
    const bool labelled = hour % kLabelEvery == 0;
    painter.drawLine(x, below, x, below + (labelled ? kTick : kTick / 2));
    if (!labelled) continue;
    const QRect label(x - 20, below + kTick, 40, fontMetrics().height());
    painter.drawText(label, Qt::AlignHCenter | Qt::AlignTop, QString::number(hour));
  }
}

void TimeLine::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRect bar = Bar();
  painter.fillRect(bar, palette().base());
  if (filled_) {
    const QRect part(QPoint(PlaceOf(filled_->first), bar.top()), QPoint(PlaceOf(filled_->second) - 1, bar.bottom()));
    if (!part.isEmpty()) painter.fillRect(part, palette().highlight());
  }
  painter.setPen(hasFocus() ? QPen(palette().windowText(), 2) : QPen(palette().mid(), 1));
  painter.drawRect(bar);
  painter.setPen(palette().windowText().color());
  DrawHours(painter);
  const QRect mark(PlaceOf(value()) - 2, 0, 5, kBarHeight + 2);
  painter.fillRect(mark, palette().windowText());
  painter.fillRect(mark.adjusted(1, 1, -1, -1), palette().window());
}

void TimeLine::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) setValue(SecondAt(qRound(event->position().x())));
}

void TimeLine::mouseMoveEvent(QMouseEvent* event) {
  const int second = SecondAt(qRound(event->position().x()));
  if (event->buttons().testFlag(Qt::LeftButton)) setValue(second);
  QToolTip::showText(event->globalPosition().toPoint(), QTime(0, 0).addSecs(second).toString(QStringLiteral("HH:mm")),
                     this);
}

void TimeLine::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) Q_EMIT Chosen();
}

void TimeLine::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    Q_EMIT Chosen();
  } else {
    QSlider::keyPressEvent(event);
  }
}

}  // namespace orbelcast
