#pragma once

#include <QWidget>
#include <vector>

#include "platform/screen.h"
#include "toolkit/controls.h"

namespace orbelcast {

/// Makes the widgets for child controls, each inside of what its control lies in or else inside `root`, with the
/// control's name as its object name. What is not seen (a timer, a menu) has none, and a window is none of them. A
/// label names the control that follows it. Tab goes through them line by line as they lie.
void MakeWidgets(const std::vector<NamedChild>& children, const Screen& screen, QWidget& root);

}  // namespace orbelcast
