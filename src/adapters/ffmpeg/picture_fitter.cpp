#include "adapters/ffmpeg/picture_fitter.h"

#include <algorithm>
#include <cstring>

namespace orbelcast {

namespace {

constexpr int kBytesPerPixel = 3;

std::int64_t RowBytes(int width) {
  return (std::int64_t{width} * kBytesPerPixel + 3) / 4 * 4;
}

bool IsWhole(const AviSample& sample) {
  return sample.width > 0 && sample.height > 0 &&
         sample.height <= static_cast<std::int64_t>(sample.pixels.size()) / RowBytes(sample.width);
}

/// Copies a sample, whose rows come from the bottom, into a picture of its size.
void CopyRows(const AviSample& sample, AVFrame& picture) {
  const auto stride = RowBytes(sample.width);
  const auto length = static_cast<std::size_t>(sample.width) * kBytesPerPixel;
  for (std::ptrdiff_t row = 0; row < sample.height; ++row) {
    std::memcpy(picture.data[0] + row * picture.linesize[0], sample.pixels.data() + (sample.height - 1 - row) * stride,
                length);
  }
}

void Blacken(AVFrame& picture) {
  for (std::ptrdiff_t row = 0; row < picture.height; ++row) {
    std::memset(picture.data[0] + row * picture.linesize[0], 0,
                static_cast<std::size_t>(picture.width) * kBytesPerPixel);
  }
}

/// The other side of a picture that is scaled to `fitted` on its one side; at least a pixel.
int Scaled(int side, int other, int fitted) {
  return std::max(1, static_cast<int>((std::int64_t{other} * fitted + side / 2) / side));
}

}  // namespace

PictureFitter::PictureFitter(int width, int height)
    : width_(width), height_(height), fitted_(av::MakeFrame(width, height, AV_PIX_FMT_BGR24)) {}

const AVFrame* PictureFitter::Fit(const AviSample& sample) {
  if (!fitted_ || !IsWhole(sample)) return nullptr;
  if (sample.width == width_ && sample.height == height_) {
    CopyRows(sample, *fitted_);
  } else if (!Scale(sample)) {
    return nullptr;
  }
  return fitted_.get();
}

bool PictureFitter::Scale(const AviSample& sample) {
  const auto picture = av::MakeFrame(sample.width, sample.height, AV_PIX_FMT_BGR24);
  if (!picture) return false;
  CopyRows(sample, *picture);

  const bool wider = std::int64_t{sample.width} * height_ > std::int64_t{width_} * sample.height;
  const int width = wider ? width_ : std::min(width_, Scaled(sample.height, sample.width, height_));
  const int height = wider ? std::min(height_, Scaled(sample.width, sample.height, width_)) : height_;
  scaler_.reset(sws_getCachedContext(scaler_.release(), sample.width, sample.height, AV_PIX_FMT_BGR24, width, height,
                                     AV_PIX_FMT_BGR24, SWS_BILINEAR, nullptr, nullptr, nullptr));
  // Scaled beside the clip's picture, because the scaler may write a little beyond a row's end.
  const auto scaled = av::MakeFrame(width, height, AV_PIX_FMT_BGR24);
  if (!scaler_ || !scaled) return false;
  sws_scale(scaler_.get(), picture->data, picture->linesize, 0, sample.height, scaled->data, scaled->linesize);

  Blacken(*fitted_);
  const std::ptrdiff_t left = std::ptrdiff_t{(width_ - width) / 2} * kBytesPerPixel;
  const std::ptrdiff_t top = (height_ - height) / 2;
  for (std::ptrdiff_t row = 0; row < height; ++row) {
    std::memcpy(fitted_->data[0] + (top + row) * fitted_->linesize[0] + left,
                scaled->data[0] + row * scaled->linesize[0], static_cast<std::size_t>(width) * kBytesPerPixel);
  }
  return true;
}

}  // namespace orbelcast
