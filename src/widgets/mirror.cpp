#include "widgets/mirror.h"

#include "qt_common/qt_texts.h"

namespace orbelcast {

std::pair<float, float> SizeInTwips(const QWidget& widget, const Screen& screen) {
  return SizeInTwips(widget.size(), screen);
}

void Call(const std::function<void()>& handler) {
  if (const auto copy = handler) copy();
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
  widget_.setGeometry(PlaceOf(control_, screen_));
}

// As escaped markup: a plain text might be taken for markup.
void Mirror::SetToolTip(const std::string& text) {
  const QString shown = ToText(text);
  widget_.setToolTip(shown.isEmpty() ? QString() : QStringLiteral("<qt>%1</qt>").arg(shown.toHtmlEscaped()));
}

void Mirror::Press(Qt::MouseButton button) {
  const std::int16_t number = ButtonNumber(button);
  if (number != 0 && control_.OnMouseDown) control_.OnMouseDown(number);
}

}  // namespace orbelcast
