#include "widgets/control_widgets.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QFocusEvent>
#include <QHash>
#include <QKeyEvent>
#include <QProxyStyle>
#include <QResizeEvent>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStyleOptionComboBox>
#include <QStylePainter>
#include <QTimer>
#include <QWheelEvent>
#include <algorithm>
#include <array>
#include <utility>

namespace orbelcast {

namespace {

/// Pixels of an icon's side that a button may ask for, on screens of one or more dots a pixel; pictures that are scaled
/// beforehand are sharper than those scaled while they are painted.
constexpr std::array kIconSides{16, 20, 24, 32, 40, 48, 64};

/// The part of a button's height that its picture takes: 16 of 21 pixels.
constexpr double kPictureShare = 0.78;

/// Of a text beside a picture: its width in hundredths, and the pixels between the two and around them.
constexpr int kCondensedText = 85;
constexpr int kGapBesidePicture = 10;

/// A grey's three parts differ by less than this; above it, the colour counts as one the more, the more they differ.
constexpr double kChromaOfColour = 0.25;

QRgb Themed(QRgb pixel, QRgb text) {
  const int highest = std::max({qRed(pixel), qGreen(pixel), qBlue(pixel)});
  const int lowest = std::min({qRed(pixel), qGreen(pixel), qBlue(pixel)});
  const double grey = std::max(0.0, 1 - (highest - lowest) / 255.0 / kChromaOfColour);
  const auto mix = [grey](int from, int to) { return qRound(from + (to - from) * grey); };
  return qRgba(mix(qRed(pixel), qRed(text)), mix(qGreen(pixel), qGreen(text)), mix(qBlue(pixel), qBlue(text)),
               qAlpha(pixel));
}

/// Where the boxes of a toolbar were made for smaller fonts, their texts are condensed down to this many hundredths.
constexpr int kMostCondensed = 75;

/// A box that drops down, with an arrow that leaves the room to the text.
class CompactComboStyle final : public QProxyStyle {
 public:
  QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                       const QWidget* widget) const override {
    if (control != CC_ComboBox || (part != SC_ComboBoxEditField && part != SC_ComboBoxArrow)) {
      return QProxyStyle::subControlRect(control, option, part, widget);
    }
    const QRect box = option->rect;
    const QRect logical = part == SC_ComboBoxArrow ? box.adjusted(box.width() - kArrowWidth, 0, 0, 0)
                                                   : box.adjusted(kTextMargin, 1, -kArrowWidth, -1);
    return visualRect(option->direction, box, logical);
  }

  /// A list that ends after some items and scrolls; as a menu it would cover the screen with two hundred cameras.
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* returned) const override {
    return hint == SH_ComboBox_Popup ? 0 : QProxyStyle::styleHint(hint, option, widget, returned);
  }

 private:
  static constexpr int kArrowWidth = 15;
  static constexpr int kTextMargin = 3;
};

QStyle* CompactComboStyleOf(QObject* owner) {
  auto* style = new CompactComboStyle;
  style->setParent(owner);
  return style;
}

/// Leaving for another program's window, or for a menu of one's own, does not leave the box.
bool LeavesControl(const QFocusEvent& event) {
  return event.reason() != Qt::PopupFocusReason && event.reason() != Qt::ActiveWindowFocusReason;
}

/// Calls a copy: what is called may end the control that it belongs to.
void Call(const std::function<void()>& handler) {
  if (const auto copy = handler) copy();
}

}  // namespace

QIcon ThemedIcon(const Surface& picture, const QPalette& palette) {
  QImage image = ViewOf(picture, QImage::Format_ARGB32).copy();
  if (image.isNull()) return {};
  const QRgb text = palette.color(QPalette::ButtonText).rgb();
  for (int y = 0; y < image.height(); ++y) {
    auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
    std::transform(row, row + image.width(), row, [text](QRgb pixel) { return Themed(pixel, text); });
  }
  QIcon icon;
  for (const int side : kIconSides) {
    icon.addPixmap(QPixmap::fromImage(image.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation)));
  }
  return icon;
}

QString ToLine(const std::string& text) {
  return ToText(text).replace(QLatin1Char('\n'), QLatin1Char(' ')).replace(QLatin1Char('\t'), QLatin1Char(' '));
}

// ---- Frame ---------------------------------------------------------------------------------------------------------

FrameWidget::FrameWidget(Frame& frame, const Screen& screen, QWidget* parent)
    : QFrame(parent), mirror_(frame, *this, screen) {}

// ---- Buttons -------------------------------------------------------------------------------------------------------

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

// A button may lie over another one's right part: what the lower one shows keeps to the rest.
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

// ---- Lists ---------------------------------------------------------------------------------------------------------

ComboBoxWidget::ComboBoxWidget(ComboBox& list, const Screen& screen, QWidget* parent)
    : QComboBox(parent), list_(list), mirror_(list, *this, screen) {
  setStyle(CompactComboStyleOf(this));
  setFont(SmallFont(Label().Font));
  setMaxVisibleItems(15);
  setAccessibleName(ToLine(list.ToolTipText));
  // Once for all items that are added together.
  fit_soon_.setSingleShot(true);
  QObject::connect(&fit_soon_, &QTimer::timeout, this, [this] { FitTexts(); });
  // Without focus the wheel is somebody's who scrolls past.
  setFocusPolicy(Qt::StrongFocus);
  ShowItems();
  mirror_.Keep(list.ListChanged.Connect([this] { ShowItems(); }));
  mirror_.Keep(list.ListIndexChanged.Connect([this](int index) { setCurrentIndex(index); }));
  QObject::connect(this, &QComboBox::activated, this, [&list](int index) { list.Choose(index); });
}

// A list only grows at its end, or is cleared.
void ComboBoxWidget::ShowItems() {
  if (count() > list_.ListCount()) clear();
  while (count() < list_.ListCount()) addItem(ToLine(list_.List()[static_cast<std::size_t>(count())]));
  setCurrentIndex(list_.ListIndex());
  fit_soon_.start(0);
}

void ComboBoxWidget::FitTexts() {
  QFont font = SmallFont(Label().Font);
  const auto widest_at = [&](int stretch) {
    font.setStretch(stretch);
    const QFontMetrics metrics(font);
    int widest = 1;
    for (int i = 0; i < count(); ++i) widest = std::max(widest, metrics.horizontalAdvance(itemText(i)));
    return widest;
  };
  QStyleOptionComboBox option;
  initStyleOption(&option);
  const int room =
      style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this).width() - 2;
  // A font's letters keep to whole pixels, so a text does not shrink just as its stretch does.
  int stretch = std::clamp(100 * room / widest_at(100), kMostCondensed, 100);
  while (stretch > kMostCondensed && widest_at(stretch) > room) --stretch;
  font.setStretch(stretch);
  setFont(font);
}

void ComboBoxWidget::resizeEvent(QResizeEvent* event) {
  QComboBox::resizeEvent(event);
  FitTexts();
}

void ComboBoxWidget::showPopup() {
  // As wide as its texts, which the closed box may cut off.
  view()->setMinimumWidth(view()->sizeHintForColumn(0) + view()->verticalScrollBar()->sizeHint().width());
  QComboBox::showPopup();
}

void ComboBoxWidget::wheelEvent(QWheelEvent* event) {
  if (hasFocus()) {
    QComboBox::wheelEvent(event);
  } else {
    event->ignore();
  }
}

ListBoxWidget::ListBoxWidget(ListBox& list, const Screen& screen, QWidget* parent)
    : QListWidget(parent), list_(list), mirror_(list, *this, screen) {
  setSelectionMode(list.MultiSelect ? QAbstractItemView::MultiSelection : QAbstractItemView::SingleSelection);
  setFont(SmallFont(list.Font));
  setUniformItemSizes(true);
  setTabKeyNavigation(false);
  ShowItems();
  mirror_.Keep(list.ListChanged.Connect([this] { ShowItems(); }));
  mirror_.Keep(list.ListIndexChanged.Connect([this](int) { ShowSelection(); }));
  mirror_.Keep(list.SelectionChanged.Connect([this] { ShowSelection(); }));
  QObject::connect(this, &QListWidget::itemSelectionChanged, this, [this] { TakeSelection(); });
}

void ListBoxWidget::ShowItems() {
  showing_ = true;
  if (count() > list_.ListCount()) clear();
  while (count() < list_.ListCount()) addItem(ToLine(list_.List()[static_cast<std::size_t>(count())]));
  showing_ = false;
  // Where several may be selected, items come without being.
  if (!list_.MultiSelect) ShowSelection();
}

void ListBoxWidget::ShowSelection() {
  if (showing_) return;
  showing_ = true;
  if (list_.MultiSelect) {
    for (int row = 0; row < count(); ++row) item(row)->setSelected(list_.Selected(row));
  } else {
    setCurrentRow(list_.ListIndex(), QItemSelectionModel::ClearAndSelect);
  }
  showing_ = false;
}

void ListBoxWidget::TakeSelection() {
  if (showing_) return;
  if (!list_.MultiSelect) {
    const auto selected = selectedItems();
    if (!selected.isEmpty()) {
      list_.Choose(row(selected.first()));
    } else {
      ShowSelection();  // what is selected can be changed, not taken away
    }
    return;
  }
  showing_ = true;
  for (int row = 0; row < count(); ++row) list_.Selected(row, item(row)->isSelected());
  showing_ = false;
}

void ListBoxWidget::mousePressEvent(QMouseEvent* event) {
  const QListWidgetItem* pressed = itemAt(event->pos());
  const bool again = !list_.MultiSelect && pressed != nullptr && pressed->isSelected();
  QListWidget::mousePressEvent(event);
  if (again) list_.Choose(list_.ListIndex());
}

// ---- Texts ---------------------------------------------------------------------------------------------------------

LineWidget::LineWidget(TextBox& box, const Screen& screen, QWidget* parent)
    : QLineEdit(parent), box_(box), mirror_(box, *this, screen) {
  setFont(SmallFont(box.Font));
  setTextMargins(-1, 0, -1, 0);
  if (box.MaxLength > 0) setAlignment(Qt::AlignCenter);
  ShowText();
  mirror_.Keep(box.Text.Changed.Connect([this](const std::string&) { ShowText(); }));
  QObject::connect(this, &QLineEdit::textEdited, this, [this](const QString& text) {
    box_.Type(FromText(text));
    ShowText();
  });
}

// The longest input bounds what is typed; what the control itself writes into its box may be longer.
void LineWidget::ShowText() {
  const QString shown = ToLine(box_.Text);
  const int cursor = cursorPosition();
  if (box_.MaxLength > 0) setMaxLength(std::max(box_.MaxLength, static_cast<int>(shown.size())));
  if (shown == text()) return;
  setText(shown);
  setCursorPosition(cursor);
}

void LineWidget::focusInEvent(QFocusEvent* event) {
  QLineEdit::focusInEvent(event);
  // After the press that entered it has put the cursor somewhere.
  if (event->reason() == Qt::MouseFocusReason) QTimer::singleShot(0, this, [this] { selectAll(); });
}

void LineWidget::focusOutEvent(QFocusEvent* event) {
  QLineEdit::focusOutEvent(event);
  if (LeavesControl(*event)) Call(box_.OnLostFocus);
}

TextWidget::TextWidget(TextBox& box, const Screen& screen, QWidget* parent)
    : QPlainTextEdit(parent), box_(box), mirror_(box, *this, screen) {
  setFont(SmallFont(box.Font));
  setTabChangesFocus(true);
  ShowText(box.Text);
  mirror_.Keep(box.Text.Changed.Connect([this](const std::string& text) { ShowText(text); }));
  QObject::connect(this, &QPlainTextEdit::textChanged, this, [this] { TakeText(); });
}

void TextWidget::ShowText(const std::string& text) {
  if (typing_) return;
  const QSignalBlocker nobody_typed(this);
  setPlainText(ToText(text));
}

void TextWidget::TakeText() {
  typing_ = true;
  box_.Type(FromText(toPlainText()));
  typing_ = false;
}

void TextWidget::focusOutEvent(QFocusEvent* event) {
  QPlainTextEdit::focusOutEvent(event);
  if (LeavesControl(*event)) Call(box_.OnLostFocus);
}

// ---- Any of them ---------------------------------------------------------------------------------------------------

namespace {

struct WidgetMaker {
  const Screen& screen;
  QWidget* parent;

  QWidget* operator()(Label* label) const { return new LabelWidget(*label, screen, parent); }
  QWidget* operator()(Frame* frame) const { return new FrameWidget(*frame, screen, parent); }
  QWidget* operator()(PictureBox* box) const { return new PictureWidget(*box, screen, parent); }
  QWidget* operator()(Image* image) const { return new ImageWidget(*image, screen, parent); }
  QWidget* operator()(Button* button) const {
    if (button->Picture().Empty()) return new ButtonWidget(*button, screen, parent);
    return new PictureButtonWidget(*button, screen, parent);
  }
  QWidget* operator()(ComboBox* list) const { return new ComboBoxWidget(*list, screen, parent); }
  QWidget* operator()(ListBox* list) const { return new ListBoxWidget(*list, screen, parent); }
  QWidget* operator()(TextBox* box) const {
    if (box->MultiLine) return new TextWidget(*box, screen, parent);
    return new LineWidget(*box, screen, parent);
  }
  // What has no place on a surface: timers, menus, windows.
  template <typename Other>
  QWidget* operator()(Other* /*control*/) const {
    return nullptr;
  }
};

const ChildControl* PlaceOf(const ChildReference& control) {
  return std::visit(
      [](auto* each) -> const ChildControl* {
        if constexpr (std::is_convertible_v<decltype(each), const ChildControl*>) return each;
        return nullptr;
      },
      control);
}

QWidget* MakeWidget(const NamedChild& child, const Screen& screen, QWidget* parent) {
  QWidget* widget = std::visit(WidgetMaker{screen, parent}, child.control);
  if (widget != nullptr) widget->setObjectName(QString::fromStdString(child.name));
  return widget;
}

void OrderFocusByLayout(QWidget& root) {
  QList<QWidget*> order;
  for (QWidget* each : root.findChildren<QWidget*>()) {
    if ((each->focusPolicy() & Qt::TabFocus) != 0 && each->window() == root.window()) order.push_back(each);
  }
  const auto place = [&root](const QWidget* widget) {
    const QPoint corner = widget->mapTo(&root, QPoint(0, 0));
    return std::pair(corner.y(), corner.x());
  };
  std::ranges::stable_sort(order, {}, place);
  for (qsizetype i = 1; i < order.size(); ++i) QWidget::setTabOrder(order[i - 1], order[i]);
}

}  // namespace

void MakeWidgets(const std::vector<NamedChild>& children, const Screen& screen, QWidget& root) {
  QHash<const ChildControl*, QWidget*> made;
  QLabel* heading = nullptr;
  for (const NamedChild& child : children) {
    QWidget* const widget = MakeWidget(child, screen, made.value(child.inside, &root));
    if (widget == nullptr) continue;
    made.insert(PlaceOf(child.control), widget);
    if (heading != nullptr && widget->focusPolicy() != Qt::NoFocus) heading->setBuddy(widget);
    heading = qobject_cast<QLabel*>(widget);
  }
  OrderFocusByLayout(root);
}

}  // namespace orbelcast
