#pragma once

namespace orbelcast {

/// The screen that the controls are shown on. A twip is 1/1440 inch; at 96 dots an inch a pixel has 15 of them.
class Screen {
 public:
  virtual ~Screen() = default;
  virtual int TwipsPerPixelX() const { return 15; }
  virtual int TwipsPerPixelY() const { return 15; }
  /// Size in pixels.
  virtual int Width() const { return 1920; }
  virtual int Height() const { return 1080; }
};

}  // namespace orbelcast
