#pragma once

#include "platform/clipboard.h"
#include "toolkit/surface.h"

namespace orbelcast {

/// A clipboard in memory, for a program without a screen.
class MemoryClipboard final : public Clipboard {
 public:
  void Clear() override { picture_ = {}; }
  void SetPicture(const Surface& picture) override { picture_ = picture; }
  Surface Picture() const override { return picture_; }

 private:
  Surface picture_;
};

}  // namespace orbelcast
