#pragma once

#include <QLineEdit>
#include <QPlainTextEdit>
#include <string>

#include "widgets/mirror.h"

namespace orbelcast {

/// A box for one line of text. Entering it selects its text, so that typing replaces it; a text that is selected as a
/// whole stays so when the control writes another one.
class LineWidget final : public QLineEdit {
 public:
  LineWidget(TextBox& box, const Screen& screen, QWidget* parent);

  /// While held, the box keeps what it shows and what is typed: a text that its control writes does not stay. What the
  /// control makes of the text when the box is left does.
  void Hold(bool held) { held_ = held; }

 protected:
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  void ShowText();

  TextBox& box_;
  bool held_ = false;
  Mirror mirror_;
};

/// A box for many lines of text.
class TextWidget final : public QPlainTextEdit {
 public:
  TextWidget(TextBox& box, const Screen& screen, QWidget* parent);

 protected:
  void focusOutEvent(QFocusEvent* event) override;

 private:
  void ShowText(const std::string& text);
  void TakeText();

  TextBox& box_;
  bool typing_ = false;
  Mirror mirror_;
};

}  // namespace orbelcast
