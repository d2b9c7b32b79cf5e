#include "widgets/combo_box_widget.h"

#include <QAbstractItemView>
#include <QProxyStyle>
#include <QResizeEvent>
#include <QScrollBar>
#include <QStyleOptionComboBox>
#include <QWheelEvent>
#include <algorithm>

#include "qt_common/qt_texts.h"

namespace orbelcast {

namespace {

/// Hundredths: texts that do not fit their box, which was made for smaller fonts, are condensed down to this.
constexpr int kMostCondensed = 75;

/// A box that drops down, with an arrow that leaves its width to the text.
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

}  // namespace

ComboBoxWidget::ComboBoxWidget(ComboBox& list, const Screen& screen, QWidget* parent)
    : QComboBox(parent), list_(list), mirror_(list, *this, screen) {
  setStyle(CompactComboStyleOf(this));
  setFont(SmallFont(Label().Font));
  setMaxVisibleItems(15);
  setAccessibleName(ToLine(list.ToolTipText));
  // Once for all items that are added together.
  fit_soon_.setSingleShot(true);
  QObject::connect(&fit_soon_, &QTimer::timeout, this, [this] { FitTexts(); });
  // Not by the wheel, with which a person may be scrolling past.
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
  const int available =
      style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this).width() - 2;
  // A font's letters keep to whole pixels, so a text does not shrink just as its stretch does.
  int stretch = std::clamp(100 * available / widest_at(100), kMostCondensed, 100);
  while (stretch > kMostCondensed && widest_at(stretch) > available) --stretch;
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

}  // namespace orbelcast
