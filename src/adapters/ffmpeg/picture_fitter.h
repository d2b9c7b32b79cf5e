#pragma once

#include "adapters/ffmpeg/av_pointers.h"
#include "platform/avi_file.h"

namespace orbelcast {

/// Brings pictures to the one size that a clip has.
class PictureFitter {
 public:
  PictureFitter(int width, int height);

  /// The picture as rows from the top, 24 bits a pixel, blue first, at the clip's size: one of another size is scaled
  /// as large as it fits, its shape kept, on black. Null where the sample has fewer bytes than its size says, or no
  /// size. Valid until the next call.
  const AVFrame* Fit(const AviSample& sample);

 private:
  bool Scale(const AviSample& sample);

  const int width_;
  const int height_;
  av::Owned<AVFrame> fitted_;
  av::Owned<SwsContext> scaler_;
};

}  // namespace orbelcast
