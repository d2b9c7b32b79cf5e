#pragma once

#include "platform/surface.h"

namespace orbelcast {

/// The clipboard, as far as pictures go. This one keeps the picture in memory, for a program without a screen.
class Clipboard {
 public:
  virtual ~Clipboard() = default;
  virtual void Clear() { picture_ = {}; }
  /// Puts a copy of `picture` there, as a bitmap.
  virtual void SetPicture(const Surface& picture) { picture_ = picture; }
  /// The picture; empty where the clipboard holds none.
  virtual Surface Picture() const { return picture_; }

 private:
  Surface picture_;
};

}  // namespace orbelcast
