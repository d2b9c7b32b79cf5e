// Any bytes as a picture, drawn at sizes that take each of the decoder's ways.

#include <cstdint>
#include <cstdlib>
#include <vector>

#include "adapters/jpeg/jpeg_decoder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using orbelcast::FrameBytes;
  using orbelcast::Surface;
  static orbelcast::TurboJpegDecoder decoder;
  static Surface area(64, 48, orbelcast::Rgb(1, 2, 3));
  const FrameBytes frame(std::vector<std::uint8_t>(data, data + size));
  const Surface before = area;
  const bool drawn = decoder.DrawJpeg(area, frame, 64, 48);
  if (!drawn) {
    // A picture that cannot be read leaves the surface as it was.
    for (int y = 0; y < 48; ++y) {
      for (int x = 0; x < 64; ++x) {
        if (area.Point(x, y) != before.Point(x, y)) std::abort();
      }
    }
  }
  static Surface thumbnail(89, 82);
  decoder.DrawJpeg(thumbnail, frame, 100, 100);
  decoder.DrawJpegAt(area, frame, -5, 40, 30, 30);
  static Surface native(100, 100);
  decoder.DrawJpeg(native, FrameBytes(std::vector<std::uint8_t>(data, data + size)), 0, 0);
  return 0;
}
