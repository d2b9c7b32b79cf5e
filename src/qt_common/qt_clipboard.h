#pragma once

#include "platform/clipboard.h"
#include "toolkit/surface.h"

namespace orbelcast {

/// The desktop's clipboard.
class QtClipboard final : public Clipboard {
 public:
  void Clear() override;
  void SetPicture(const Surface& picture) override;
  Surface Picture() const override;
};

}  // namespace orbelcast
