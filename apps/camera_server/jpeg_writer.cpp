#include "jpeg_writer.h"

#include <array>
#include <csetjmp>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>

#include <jpeglib.h>

namespace orbelcast::camera_server {

namespace {

/// The encoder reports an error by a call that must not return.
struct ErrorExit {
  jpeg_error_mgr manager;
  std::jmp_buf jump;
  std::array<char, JMSG_LENGTH_MAX> message;
};

void LeaveEncoder(j_common_ptr info) {
  auto* error = reinterpret_cast<ErrorExit*>(info->err);
  info->err->format_message(info, error->message.data());
  std::longjmp(error->jump, 1);
}

struct Encoded {
  unsigned char* bytes = nullptr;
  unsigned long size = 0;
};

/// Holds nothing that a jump over it would leave behind. False with the message in `error`.
bool Encode(const std::uint8_t* pixels, int width, int height, int stride, int quality, ErrorExit& error,
            Encoded& encoded) {
  jpeg_compress_struct info{};
  info.err = jpeg_std_error(&error.manager);
  error.manager.error_exit = LeaveEncoder;
  if (setjmp(error.jump) != 0) {
    jpeg_destroy_compress(&info);
    return false;
  }
  jpeg_create_compress(&info);
  jpeg_mem_dest(&info, &encoded.bytes, &encoded.size);
  info.image_width = static_cast<JDIMENSION>(width);
  info.image_height = static_cast<JDIMENSION>(height);
  info.input_components = 4;
  info.in_color_space = JCS_EXT_BGRX;
  jpeg_set_defaults(&info);
  jpeg_set_quality(&info, quality, TRUE);
  jpeg_start_compress(&info, TRUE);
  while (info.next_scanline < info.image_height) {
    const std::ptrdiff_t offset = static_cast<std::ptrdiff_t>(info.next_scanline) * stride;
    auto* row = const_cast<JSAMPROW>(pixels + offset);  // the encoder only reads it
    jpeg_write_scanlines(&info, &row, 1);
  }
  jpeg_finish_compress(&info);
  jpeg_destroy_compress(&info);
  return true;
}

}  // namespace

std::string EncodeJpeg(const std::uint8_t* pixels, int width, int height, int stride, int quality) {
  ErrorExit error{};
  Encoded encoded;
  const bool worked = Encode(pixels, width, height, stride, quality, error, encoded);
  const std::unique_ptr<unsigned char, decltype(&std::free)> owned(encoded.bytes, std::free);
  if (!worked) throw std::runtime_error(error.message.data());
  return {reinterpret_cast<const char*>(encoded.bytes), encoded.size};
}

}  // namespace orbelcast::camera_server
