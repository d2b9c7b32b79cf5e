#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>

#include "frame_pipelines.h"

namespace orbelcast::bench {

namespace {

class Bare final : public Pipeline {
 public:
  Bare() {
    decompress_.err = jpeg_std_error(&errors_);
    errors_.error_exit = [](j_common_ptr) { std::abort(); };
    jpeg_create_decompress(&decompress_);
  }
  ~Bare() override { jpeg_destroy_decompress(&decompress_); }

  void Show(const FrameBytes& frame) override {
    jpeg_mem_src(&decompress_, frame.Bytes().data(), static_cast<unsigned long>(frame.Size()));
    jpeg_read_header(&decompress_, TRUE);
    decompress_.out_color_space = JCS_EXT_BGRX;
    jpeg_start_decompress(&decompress_);
    surface_.Resize(static_cast<int>(decompress_.output_width), static_cast<int>(decompress_.output_height), 0);
    auto* row = reinterpret_cast<JSAMPROW>(surface_.MutablePixels().data());
    while (decompress_.output_scanline < decompress_.output_height) {
      jpeg_read_scanlines(&decompress_, &row, 1);
      row += std::size_t{decompress_.output_width} * 4;
    }
    jpeg_finish_decompress(&decompress_);
  }
  Surface Shown() override { return surface_; }

 private:
  jpeg_decompress_struct decompress_{};
  jpeg_error_mgr errors_{};
  Surface surface_;
};

}  // namespace

std::unique_ptr<Pipeline> BareDecode() {
  return std::make_unique<Bare>();
}

}  // namespace orbelcast::bench
