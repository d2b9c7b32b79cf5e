#pragma once

#include <QDialog>
#include <QPoint>
#include <QSize>
#include <QTimer>
#include <vector>

#include "platform/screen.h"
#include "toolkit/controls.h"

namespace orbelcast {

/// A window of the controls as a dialog, modal to the window that its parent is on. Its children are mirrored; its
/// close box asks the window to close. A window whose control wants to know its size can be sized by the user.
///
/// A window that covers the screen covers the one that its parent is on, and hides the pointer while it rests; the
/// keyboard does not close it.
class WindowWidget : public QDialog {
 public:
  /// How long the pointer rests until it is hidden.
  static constexpr int kPointerRestMilliseconds = 3000;

  /// `window` outlives the widget; `parent` is on the window that waits for this one.
  WindowWidget(Window& window, const Screen& screen, QWidget* parent);
  /// Ends a window that is open, since it could not be closed without its dialog.
  ~WindowWidget() override;

  void reject() override;

 protected:
  /// The window is about to be shown, or was closed: for its parts besides its children.
  virtual void Fill() {}
  virtual void Empty() {}

  bool eventFilter(QObject* watched, QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void Present();
  void Shut();
  void TakeSize();
  void CoverScreen();
  void TellSize();
  void ShowPointer(bool shown);

  Window& window_;
  const Screen& screen_;
  QSize told_;  // the size that the control knows, in pixels
  QTimer size_settles_;
  QTimer pointer_rests_;
  QPoint pointer_;
  std::vector<Connection> connections_;
};

}  // namespace orbelcast
