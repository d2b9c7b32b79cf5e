#pragma once

#include <QWidget>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/screen.h"
#include "qt_common/control_view.h"
#include "toolkit/controls.h"

namespace orbelcast {

/// A widget's size in twips: width, height.
std::pair<float, float> SizeInTwips(const QWidget& widget, const Screen& screen);

/// Calls a copy of `handler`, where there is one: the call may end the control that the handler belongs to.
void Call(const std::function<void()>& handler);

/// Keeps a widget at its child control's place in pixels, visibility and tool tip. The control and the screen outlive
/// the mirror.
class Mirror {
 public:
  Mirror(ChildControl& control, QWidget& widget, const Screen& screen);
  Mirror(const Mirror&) = delete;
  Mirror& operator=(const Mirror&) = delete;

  /// Adds a connection that ends with the mirror.
  void Keep(Connection connection) { connections_.push_back(std::move(connection)); }
  /// Tells the control that a button went down.
  void Press(Qt::MouseButton button);

 private:
  void Place();
  void SetToolTip(const std::string& text);

  ChildControl& control_;
  QWidget& widget_;
  const Screen& screen_;
  std::vector<Connection> connections_;
};

}  // namespace orbelcast
