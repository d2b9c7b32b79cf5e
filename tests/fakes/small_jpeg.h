#pragma once

#include <string>

namespace orbelcast::fakes {

/// A real JPEG, 16 × 16, in one grey (128).
inline std::string SmallJpeg() {
  // Written out, so that tests need no encoder: 16 × 16, baseline, grey level 128.
  static const std::string file = [] {
    std::string bytes("\xff\xd8\xff\xdb\x00\x43\x00", 7);
    bytes += std::string(64, '\x10');
    bytes += std::string("\xff\xc0\x00\x0b\x08\x00\x10\x00\x10\x01\x01\x11\x00", 13);
    bytes += std::string("\xff\xc4\x00\x14\x00\x01", 6) + std::string(15, '\0') + std::string("\x00", 1);
    bytes += std::string("\xff\xc4\x00\x14\x10\x01", 6) + std::string(15, '\0') + std::string("\x00", 1);
    // A comment gives it the length of a picture.
    bytes += std::string("\xff\xfe\x02\x02", 4) + std::string(512, 'c');
    bytes += std::string("\xff\xda\x00\x08\x01\x01\x00\x00\x3f\x00", 10);
    // Four blocks, each: difference 0 (code 0), end of block (code 0); then ones to the byte's end.
    bytes += std::string("\x00", 1);
    bytes += std::string("\xff\xd9", 2);
    return bytes;
  }();
  return file;
}

}  // namespace orbelcast::fakes
