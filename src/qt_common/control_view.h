#pragma once

#include <QFont>
#include <QImage>
#include <QRect>
#include <QSizeF>
#include <cstdint>
#include <functional>
#include <utility>

#include "platform/screen.h"
#include "toolkit/controls.h"
#include "toolkit/surface.h"

class QDropEvent;

/// Child controls as Qt shows them, with and without widgets.
namespace orbelcast {

/// A surface as Qt sees it, without a copy; valid until the surface is drawn on or sized.
QImage ViewOf(const Surface& surface, QImage::Format format);

/// A picture that keeps its own pixels, opaque. They are those of `surface`, without a copy.
QImage ImageOf(Surface surface);

/// A size in twips: width, height.
std::pair<float, float> SizeInTwips(QSizeF pixels, const Screen& screen);

/// A control's place in pixels of its container.
QRect PlaceOf(const ChildControl& control, const Screen& screen);

/// The font of a small control: the family that the control names, at the size that its design was made for.
QFont SmallFont(const std::string& family);

/// A mouse button as handlers are told it; 0 for one that they are not told.
std::int16_t ButtonNumber(Qt::MouseButton button);

/// Gives a control what was dropped on it, and the data's source the control's answer.
void HandOver(QDropEvent& event, const std::function<void(Drop&)>& on_drop, const Screen& screen);

}  // namespace orbelcast
