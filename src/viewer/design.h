#pragma once

#include <memory>

#include "platform/platform.h"
#include "toolkit/surface.h"

namespace orbelcast {

class VideoServerPush;

/// Sets the design values of the viewer's children, before anything runs: places, colours, fonts, pictures,
/// captions and intervals.
void ApplyDesign(VideoServerPush& viewer, const Platform& platform);

/// The picture that is shown while there is no video, as a BuiltInPicture.
std::shared_ptr<const Surface> MakeTestCard(PictureCodec& pictures);

}  // namespace orbelcast
