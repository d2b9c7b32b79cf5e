#include "widgets/text_widgets.h"

#include <QFocusEvent>
#include <QPointer>
#include <QSignalBlocker>
#include <QTimer>
#include <algorithm>
#include <utility>

#include "qt_common/qt_texts.h"

namespace orbelcast {

namespace {

/// Leaving for another program's window, or for a menu of one's own, does not leave the box.
bool LeavesControl(const QFocusEvent& event) {
  return event.reason() != Qt::PopupFocusReason && event.reason() != Qt::ActiveWindowFocusReason;
}

}  // namespace

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

// The longest input bounds typing; the control itself may write a longer text into its box.
void LineWidget::ShowText() {
  if (held_) {
    box_.Text = FromText(text());
    return;
  }
  const QString shown = ToLine(box_.Text);
  const int cursor = cursorPosition();
  if (box_.MaxLength > 0) setMaxLength(std::max(box_.MaxLength, static_cast<int>(shown.size())));
  if (shown == text()) return;
  const bool all_selected = hasSelectedText() && selectedText() == text();
  setText(shown);
  setCursorPosition(cursor);
  if (all_selected) selectAll();
}

void LineWidget::focusInEvent(QFocusEvent* event) {
  QLineEdit::focusInEvent(event);
  // After the press that entered it has put the cursor somewhere.
  if (event->reason() == Qt::MouseFocusReason) QTimer::singleShot(0, this, [this] { selectAll(); });
}

void LineWidget::focusOutEvent(QFocusEvent* event) {
  QLineEdit::focusOutEvent(event);
  if (!LeavesControl(*event)) return;
  const QPointer watch(this);
  const bool held = std::exchange(held_, false);
  Call(box_.OnLostFocus);
  if (watch) held_ = held;
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

}  // namespace orbelcast
