#include "widgets/mirrors.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QGuiApplication>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>

namespace orbelcast {

namespace {

constexpr double kTwipsPerInch = 1440;

int TwipsPerPixel(double dots_per_inch) {
  return dots_per_inch > 0 ? qMax(1, qRound(kTwipsPerInch / dots_per_inch)) : Screen().TwipsPerPixelX();
}

std::int16_t ButtonNumber(Qt::MouseButton button) {
  switch (button) {
    case Qt::LeftButton:
      return kLeftButton;
    case Qt::RightButton:
      return kRightButton;
    case Qt::MiddleButton:
      return kMiddleButton;
    default:
      return 0;
  }
}

Drop ToDrop(const QDropEvent& event, const Screen& screen) {
  Drop drop;
  for (const QString& format : event.mimeData()->formats()) {
    drop.data.formats.emplace_back(format.toStdString(), event.mimeData()->data(format).toStdString());
  }
  const Qt::KeyboardModifiers keys = event.modifiers();
  for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
    if (event.buttons().testFlag(button)) drop.button = static_cast<std::int16_t>(drop.button + ButtonNumber(button));
  }
  drop.shift = static_cast<std::int16_t>((keys.testFlag(Qt::ShiftModifier) ? 1 : 0) +
                                         (keys.testFlag(Qt::ControlModifier) ? 2 : 0) +
                                         (keys.testFlag(Qt::AltModifier) ? 4 : 0));
  drop.effect = event.proposedAction() == Qt::MoveAction ? 2 : 1;
  drop.x = static_cast<float>(event.position().x() * screen.TwipsPerPixelX());
  drop.y = static_cast<float>(event.position().y() * screen.TwipsPerPixelY());
  return drop;
}

}  // namespace

QImage ViewOf(const Surface& surface, QImage::Format format) {
  if (surface.Empty()) return {};
  return {reinterpret_cast<const uchar*>(surface.Pixels().data()), surface.Width(), surface.Height(),
          surface.Width() * 4, format};
}

QString ToText(const std::string& text) {
  QString shown = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
  shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  for (QChar& character : shown) {
    const bool kept = character == QLatin1Char('\n') || character == QLatin1Char('\t');
    if (character.category() == QChar::Other_Control && !kept) {
      character = QChar::ReplacementCharacter;
    }
  }
  return shown;
}

std::string FromText(const QString& text) {
  return text.toStdString();
}

std::pair<float, float> SizeInTwips(const QWidget& widget, const Screen& screen) {
  return {static_cast<float>(widget.width() * screen.TwipsPerPixelX()),
          static_cast<float>(widget.height() * screen.TwipsPerPixelY())};
}

QFont SmallFont(const std::string& family) {
  constexpr double kSmallPoints = 8;
  QFont font(QString::fromStdString(family));
  font.setPointSizeF(kSmallPoints);
  return font;
}

int QtScreen::TwipsPerPixelX() const {
  const QScreen* screen = QGuiApplication::primaryScreen();
  return screen != nullptr ? TwipsPerPixel(screen->logicalDotsPerInchX()) : Screen::TwipsPerPixelX();
}

int QtScreen::TwipsPerPixelY() const {
  const QScreen* screen = QGuiApplication::primaryScreen();
  return screen != nullptr ? TwipsPerPixel(screen->logicalDotsPerInchY()) : Screen::TwipsPerPixelY();
}

int QtScreen::Width() const {
  const QScreen* screen = QGuiApplication::primaryScreen();
  return screen != nullptr ? screen->size().width() : Screen::Width();
}

int QtScreen::Height() const {
  const QScreen* screen = QGuiApplication::primaryScreen();
  return screen != nullptr ? screen->size().height() : Screen::Height();
}

Mirror::Mirror(ChildControl& control, QWidget& widget, const Screen& screen)
    : control_(control), widget_(widget), screen_(screen) {
  for (Property<float>* side : {&control.Left, &control.Top, &control.Width, &control.Height}) {
    Keep(side->Changed.Connect([this](float) { Place(); }));
  }
  Keep(control.Visible.Changed.Connect([this](bool visible) { widget_.setVisible(visible); }));
  Keep(control.Enabled.Changed.Connect([this](bool enabled) { widget_.setEnabled(enabled); }));
  Keep(control.ToolTipText.Changed.Connect([this](const std::string& text) { SetToolTip(text); }));
  SetToolTip(control.ToolTipText);
  Place();
  widget.setEnabled(control.Enabled);
  widget.setVisible(control.Visible);
}

void Mirror::Place() {
  const auto x = static_cast<float>(screen_.TwipsPerPixelX());
  const auto y = static_cast<float>(screen_.TwipsPerPixelY());
  widget_.setGeometry(qRound(control_.Left / x), qRound(control_.Top / y), qRound(control_.Width / x),
                      qRound(control_.Height / y));
}

// As markup that shows the text as it is: what a plain tool tip holds might be taken for markup.
void Mirror::SetToolTip(const std::string& text) {
  const QString shown = ToText(text);
  widget_.setToolTip(shown.isEmpty() ? QString() : QStringLiteral("<qt>%1</qt>").arg(shown.toHtmlEscaped()));
}

void Mirror::Press(Qt::MouseButton button) {
  const std::int16_t number = ButtonNumber(button);
  if (number != 0 && control_.OnMouseDown) control_.OnMouseDown(number);
}

LabelWidget::LabelWidget(Label& label, const Screen& screen, QWidget* parent)
    : QLabel(parent), mirror_(label, *this, screen) {
  setTextFormat(Qt::PlainText);
  setAlignment(Qt::AlignLeft | Qt::AlignTop);
  setFont(SmallFont(label.Font));
  setText(ToText(label.Caption));
  mirror_.Keep(label.Caption.Changed.Connect([this](const std::string& text) { setText(ToText(text)); }));
}

void LabelWidget::mousePressEvent(QMouseEvent* event) {
  mirror_.Press(event->button());
}

DropWidget::DropWidget(ChildControl& control, std::function<void(Drop&)>& on_drop, const Screen& screen,
                       QWidget* parent)
    : QWidget(parent), on_drop_(on_drop), screen_(screen), mirror_(control, *this, screen) {
  setAcceptDrops(static_cast<bool>(on_drop));
}

void DropWidget::mousePressEvent(QMouseEvent* event) {
  mirror_.Press(event->button());
}

void DropWidget::dragEnterEvent(QDragEnterEvent* event) {
  event->acceptProposedAction();
}

void DropWidget::dropEvent(QDropEvent* event) {
  if (!on_drop_) return;
  Drop drop = ToDrop(*event, screen_);
  on_drop_(drop);
  event->setDropAction(drop.effect == 0 ? Qt::IgnoreAction : drop.effect == 2 ? Qt::MoveAction : Qt::CopyAction);
  event->setAccepted(drop.effect != 0);
}

PictureWidget::PictureWidget(PictureBox& box, const Screen& screen, QWidget* parent)
    : DropWidget(box, box.OnDrop, screen, parent), box_(box) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  Mirrored().Keep(box.Refreshed.Connect([this] { update(); }));
}

QImage PictureWidget::View() const {
  return ViewOf(box_.Image(), QImage::Format_RGB32);
}

void PictureWidget::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  const QImage view = View();
  const Color back = box_.BackColor;
  if (!QRect(QPoint(0, 0), view.size()).contains(event->rect())) {
    painter.fillRect(event->rect(), QColor(RedOf(back), GreenOf(back), BlueOf(back)));
  }
  if (!view.isNull()) painter.drawImage(event->rect().topLeft(), view, event->rect());
}

ImageWidget::ImageWidget(Image& image, const Screen& screen, QWidget* parent)
    : DropWidget(image, image.OnDrop, screen, parent), image_(image) {
  Mirrored().Keep(image.PictureChanged.Connect([this] { update(); }));
}

void ImageWidget::paintEvent(QPaintEvent*) {
  const QImage view = ViewOf(image_.Picture(), QImage::Format_ARGB32);
  const QSize wanted = size() * devicePixelRatioF();
  if (view.isNull() || wanted.isEmpty()) return;
  // Not kept: while there is video it would take as much memory as a picture of it, unseen.
  QImage scaled = view.scaled(wanted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  scaled.setDevicePixelRatio(devicePixelRatioF());
  QPainter(this).drawImage(0, 0, scaled);
}

}  // namespace orbelcast
