#include "widgets/list_box_widget.h"

#include <QMouseEvent>

#include "qt_common/qt_texts.h"

namespace orbelcast {

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
  // A list of several selections gets its items unselected.
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

}  // namespace orbelcast
