#pragma once

namespace orbelcast {

class Surface;

/// The clipboard, as far as pictures go.
class Clipboard {
 public:
  virtual ~Clipboard() = default;
  virtual void Clear() = 0;
  /// Puts a copy of `picture` there, as a bitmap.
  virtual void SetPicture(const Surface& picture) = 0;
  /// The picture; empty where the clipboard holds none.
  virtual Surface Picture() const = 0;
};

}  // namespace orbelcast
