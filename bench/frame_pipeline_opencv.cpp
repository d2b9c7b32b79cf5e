#include "frame_pipelines.h"

#ifdef ORBELCAST_BENCH_OPENCV

#include <algorithm>
#include <cstring>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

namespace orbelcast::bench {

namespace {

/// As its manual does it: imdecode, resize, a thumbnail in grey, absdiff.
class OpenCv final : public Pipeline {
 public:
  OpenCv(int width, int height) : area_(width, height) { cv::setNumThreads(1); }

  void Show(const FrameBytes& frame) override {
    const cv::Mat bytes(1, static_cast<int>(frame.Size()), CV_8U, const_cast<std::uint8_t*>(frame.Bytes().data()));
    cv::imdecode(bytes, cv::IMREAD_COLOR, &picture_);
    if (picture_.size() == area_) {
      shown_ = picture_;
    } else {
      cv::resize(picture_, shown_, area_);
    }
    cv::resize(picture_, thumbnail_, {100, 100});
    cv::cvtColor(thumbnail_, grey_, cv::COLOR_BGR2GRAY);
    if (!last_.empty()) cv::absdiff(grey_, last_, difference_);
    std::swap(grey_, last_);
  }
  Surface Shown() override {
    cv::Mat bgra;
    cv::cvtColor(shown_, bgra, cv::COLOR_BGR2BGRA);
    Surface surface(bgra.cols, bgra.rows);
    std::memcpy(surface.MutablePixels().data(), bgra.data, surface.Pixels().size_bytes());
    return surface;
  }

 private:
  cv::Size area_;
  cv::Mat picture_, shown_, thumbnail_, grey_, last_, difference_;
};

}  // namespace

std::unique_ptr<Pipeline> OpenCvPipeline(int width, int height) {
  return std::make_unique<OpenCv>(width, height);
}

}  // namespace orbelcast::bench

#else

std::unique_ptr<orbelcast::bench::Pipeline> orbelcast::bench::OpenCvPipeline(int, int) {
  return nullptr;
}

#endif
