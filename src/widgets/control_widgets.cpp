#include "widgets/control_widgets.h"

#include <QHash>
#include <QLabel>
#include <QPoint>
#include <algorithm>
#include <type_traits>
#include <utility>
#include <variant>

#include "widgets/button_widgets.h"
#include "widgets/combo_box_widget.h"
#include "widgets/list_box_widget.h"
#include "widgets/picture_widgets.h"
#include "widgets/plain_widgets.h"
#include "widgets/text_widgets.h"

namespace orbelcast {

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
  // The rest has no place on a surface: timers, menus, windows.
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
