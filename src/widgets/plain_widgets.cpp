#include "widgets/plain_widgets.h"

#include <QMouseEvent>

#include "qt_common/qt_texts.h"

namespace orbelcast {

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

FrameWidget::FrameWidget(Frame& frame, const Screen& screen, QWidget* parent)
    : QFrame(parent), mirror_(frame, *this, screen) {}

}  // namespace orbelcast
