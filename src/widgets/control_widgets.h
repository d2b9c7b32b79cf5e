#pragma once

#include <QComboBox>
#include <QFrame>
#include <QIcon>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>

#include "widgets/mirrors.h"

/// The child controls that a user operates, mirrored into the toolkit's own widgets, so that they look, sound and are
/// driven by keyboard as people know it. What a user does goes to the control, which decides; the widget then shows
/// what the control holds.
namespace orbelcast {

/// A picture as an icon for every size and screen: its grey shapes in the palette's text colour, its coloured ones as
/// they are.
QIcon ThemedIcon(const Surface& picture, const QPalette& palette);

/// A text of unknown quality in one line.
QString ToLine(const std::string& text);

/// A frame around other controls.
class FrameWidget final : public QFrame {
 public:
  FrameWidget(Frame& frame, const Screen& screen, QWidget* parent);

 private:
  Mirror mirror_;
};

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
  bool showing_ = false;  // what the control holds is being shown: nothing here is a user's doing
  Mirror mirror_;
};

/// A box for one line of text. Entering it selects what it holds, so that typing replaces it.
class LineWidget final : public QLineEdit {
 public:
  LineWidget(TextBox& box, const Screen& screen, QWidget* parent);

 protected:
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  void ShowText();

  TextBox& box_;
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

/// Makes the widgets for child controls, each inside of what its control lies in or else inside `root`, with the
/// control's name as its object name. What is not seen (a timer, a menu) has none, and a window is none of them. A
/// label names the control that follows it. Tab goes through them line by line as they lie.
void MakeWidgets(const std::vector<NamedChild>& children, const Screen& screen, QWidget& root);

}  // namespace orbelcast
