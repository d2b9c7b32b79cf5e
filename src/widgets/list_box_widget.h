#pragma once

#include <QListWidget>

#include "widgets/mirror.h"

namespace orbelcast {

/// A list that is open. Where several items may be selected, each click (or the space bar) selects or clears one.
class ListBoxWidget final : public QListWidget {
 public:
  ListBoxWidget(ListBox& list, const Screen& screen, QWidget* parent);

 protected:
  void mousePressEvent(QMouseEvent* event) override;

 private:
  void ShowItems();
  void ShowSelection();
  void TakeSelection();

  ListBox& list_;
  bool showing_ = false;  // the control's selection is being shown: changes are not the user's
  Mirror mirror_;
};

}  // namespace orbelcast
