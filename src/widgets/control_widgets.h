#pragma once

#include <QWidget>
#include <vector>

#include "platform/screen.h"
#include "toolkit/controls.h"

namespace orbelcast {

/// Makes the widgets for child controls, each inside its container's widget or else inside `root`, with the
/// control's name as its object name. Timers and menus, which are not seen, have none; windows are not included. A
/// label names the control that follows it. Tab goes through them line by line by position.
void MakeWidgets(const std::vector<NamedChild>& children, const Screen& screen, QWidget& root);

}  // namespace orbelcast
