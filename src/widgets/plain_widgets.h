#pragma once

#include <QFrame>
#include <QLabel>

#include "widgets/mirror.h"

namespace orbelcast {

/// A label: plain text, as it is.
class LabelWidget final : public QLabel {
 public:
  LabelWidget(Label& label, const Screen& screen, QWidget* parent);

 protected:
  void mousePressEvent(QMouseEvent* event) override;

 private:
  Mirror mirror_;
};

/// A frame around other controls.
class FrameWidget final : public QFrame {
 public:
  FrameWidget(Frame& frame, const Screen& screen, QWidget* parent);

 private:
  Mirror mirror_;
};

}  // namespace orbelcast
