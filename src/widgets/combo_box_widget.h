#pragma once

#include <QComboBox>
#include <QTimer>

#include "widgets/mirror.h"

namespace orbelcast {

/// A list that drops down.
class ComboBoxWidget final : public QComboBox {
 public:
  ComboBoxWidget(ComboBox& list, const Screen& screen, QWidget* parent);

  void showPopup() override;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  void ShowItems();
  void FitTexts();

  ComboBox& list_;
  QTimer fit_soon_;
  Mirror mirror_;
};

}  // namespace orbelcast
