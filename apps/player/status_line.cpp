#include "player/status_line.h"

#include <QAccessible>
#include <QEvent>

namespace orbelcast {

namespace {

constexpr int kShownMilliseconds = 12'000;
constexpr int kStatusPadding = 4;

}  // namespace

StatusLine::StatusLine(QWidget* parent) : QLabel(parent) {
  setObjectName(QStringLiteral("status"));
  setStyleSheet(QStringLiteral("#status { background: palette(base); color: palette(text);"
                               " border-top: 1px solid palette(mid); padding: %1px; }")
                    .arg(kStatusPadding));
  setTextFormat(Qt::PlainText);
  setWordWrap(true);
  setToolTip(tr("Click to close"));
  shown_.setSingleShot(true);
  shown_.setInterval(kShownMilliseconds);
  QObject::connect(&shown_, &QTimer::timeout, this, &QWidget::hide);
  parent->installEventFilter(this);
  hide();
}

void StatusLine::Tell(const QString& text) {
  setText(text);
  setAccessibleName(text);
  Place();
  show();
  raise();
  shown_.start();
  QAccessibleEvent alert(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

void StatusLine::Place() {
  const int width = parentWidget()->width();
  const int height = heightForWidth(width);
  setGeometry(0, parentWidget()->height() - height, width, height);
}

void StatusLine::mousePressEvent(QMouseEvent*) {
  hide();
}

bool StatusLine::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize) Place();
  return QLabel::eventFilter(watched, event);
}

}  // namespace orbelcast
