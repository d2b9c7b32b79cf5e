#include "widgets/button_widgets.h"

#include <QEvent>
#include <QKeyEvent>
#include <QResizeEvent>
#include <QStyleOptionToolButton>
#include <QStylePainter>

#include "qt_common/qt_texts.h"
#include "widgets/themed_icon.h"

namespace orbelcast {

namespace {

/// The part of a button's height that its picture takes: 16 of 21 pixels.
constexpr double kPictureShare = 0.78;

/// Of a text beside a picture: its width in hundredths, and the pixels between the two and around them.
constexpr int kCondensedText = 85;
constexpr int kGapBesidePicture = 10;

}  // namespace

PictureButtonWidget::PictureButtonWidget(Button& button, const Screen& screen, QWidget* parent)
    : QToolButton(parent), button_(button), mirror_(button, *this, screen) {
  setAutoRaise(true);
  setFocusPolicy(Qt::StrongFocus);
  QFont font = SmallFont(Label().Font);
  font.setStretch(kCondensedText);
  setFont(font);
  setText(ToLine(button.ToolTipText));
  setAccessibleName(text());
  setIcon(ThemedIcon(button.Picture(), palette()));
  QObject::connect(this, &QToolButton::clicked, this, [&button] { Call(button.OnClick); });
}

void PictureButtonWidget::resizeEvent(QResizeEvent* event) {
  const int side = qRound(height() * kPictureShare);
  setIconSize({side, side});
  QToolButton::resizeEvent(event);
}

// A button may cover another one's right part: the lower one draws in the rest alone.
QRect PictureButtonWidget::Uncovered() const {
  QRect rest = rect();
  const QObjectList& siblings = parent()->children();
  for (auto i = siblings.indexOf(this) + 1; i < siblings.size(); ++i) {
    const auto* above = qobject_cast<const QToolButton*>(siblings[i]);
    if (above == nullptr || !above->isVisible()) continue;
    const QRect covered = above->geometry().translated(-pos());
    if (covered.left() > 0 && covered.intersects(rest)) rest.setRight(covered.left() - 1);
  }
  return rest;
}

void PictureButtonWidget::paintEvent(QPaintEvent*) {
  QStyleOptionToolButton option;
  initStyleOption(&option);
  option.rect = Uncovered();
  const int needed = iconSize().width() + kGapBesidePicture + option.fontMetrics.horizontalAdvance(text());
  const bool fits = !text().isEmpty() && needed <= option.rect.width();
  option.toolButtonStyle = fits ? Qt::ToolButtonTextBesideIcon : Qt::ToolButtonIconOnly;
  QStylePainter(this).drawComplexControl(QStyle::CC_ToolButton, option);
}

void PictureButtonWidget::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange) setIcon(ThemedIcon(button_.Picture(), palette()));
  QToolButton::changeEvent(event);
}

void PictureButtonWidget::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    animateClick();
  } else {
    QToolButton::keyPressEvent(event);
  }
}

ButtonWidget::ButtonWidget(Button& button, const Screen& screen, QWidget* parent)
    : QPushButton(parent), mirror_(button, *this, screen) {
  setFont(SmallFont(button.Font));
  setText(ToLine(button.Caption));
  setAutoDefault(false);
  mirror_.Keep(button.Caption.Changed.Connect([this](const std::string& text) { setText(ToLine(text)); }));
  QObject::connect(this, &QPushButton::clicked, this, [&button] { Call(button.OnClick); });
}

}  // namespace orbelcast
