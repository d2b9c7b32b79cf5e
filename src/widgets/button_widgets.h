#pragma once

#include <QPushButton>
#include <QToolButton>

#include "widgets/mirror.h"

namespace orbelcast {

/// A button that shows a picture. Its tool tip is its name, and is written beside the picture where there is room.
class PictureButtonWidget final : public QToolButton {
 public:
  PictureButtonWidget(Button& button, const Screen& screen, QWidget* parent);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QRect Uncovered() const;

  Button& button_;
  Mirror mirror_;
};

/// A button that shows its caption.
class ButtonWidget final : public QPushButton {
 public:
  ButtonWidget(Button& button, const Screen& screen, QWidget* parent);

 private:
  Mirror mirror_;
};

}  // namespace orbelcast
