#include <benchmark/benchmark.h>

#include "assembly/headless_platform.h"
#include "frame_pipelines.h"
#include "imaging/motion.h"
#include "toolkit/twips.h"
#include "viewer/video_server_push.h"
#include "whole_picture.h"

namespace orbelcast::bench {

namespace {

/// A request whose answer is there at once: the frame that the benchmark says.
class FrameInHand final : public HttpRequest {
 public:
  explicit FrameInHand(const FrameBytes& frame) : frame_(frame) {}
  bool Open(std::string_view, std::string_view, bool) override { return true; }
  bool SetRequestHeader(std::string_view, std::string_view) override { return true; }
  bool SetCredentials(std::string_view, std::string_view, int) override { return true; }
  bool SetTimeouts(int, int, int, int) override { return true; }
  bool LimitExchange(std::chrono::milliseconds) override { return true; }
  bool Send() override { return true; }
  bool WaitForResponse(std::optional<std::chrono::milliseconds>) override { return true; }
  int Status() override { return 200; }
  HttpFailure Failure() override { return HttpFailure::kNone; }
  std::string_view GetResponseHeader(std::string_view) override { return {}; }
  std::string GetAllResponseHeaders() override { return {}; }
  std::string ResponseText() override { return {}; }
  FrameBytes ResponseBody() override { return frame_; }
  void Abort() override {}

 private:
  const FrameBytes& frame_;
};

class FramesInHand final : public HttpRequestFactory {
 public:
  std::shared_ptr<HttpRequest> Create() override { return std::make_shared<FrameInHand>(frame); }
  FrameBytes frame;
};

class Viewer final : public Pipeline {
 public:
  Viewer(int width, int height) : width_(width), height_(height) {}
  ~Viewer() override { viewer_.reset(); }

  void Show(const FrameBytes& frame) override {
    http_.frame = frame;
    if (!viewer_) Begin();
    viewer_->RequestEnd();
    viewer_->VideoStream.Image().Pixels();  // As a window does that paints it.
  }
  Surface Shown() override { return viewer_->VideoStream.Image(); }

 private:
  void Begin() {
    viewer_ = VideoServerPush::Create(platform_);
    const TwipsScale scale = TwipsScale::Of(platform_.screen);
    viewer_->Resize(scale.TwipsX(width_), scale.TwipsY(height_));
    WatchWholePicture(*viewer_);
    viewer_->Connect("http://camera/");
    viewer_->ToogleClock(false);
  }

  int width_;
  int height_;
  HeadlessPlatform services_;
  FramesInHand http_;
  Platform platform_ = services_.Get().With(http_);
  std::shared_ptr<VideoServerPush> viewer_;
};

class Parts final : public Pipeline {
 public:
  Parts(int width, int height) : area_(width, height) {
    std::int32_t sensitivity = kSensitivity;
    settings_.MotionArea_x2 = settings_.MotionArea_Y2 = kWholePicture;
    settings_.Threshold = MotionThreshold(sensitivity);
  }
  void Show(const FrameBytes& frame) override {
    const JpegTarget targets[]{{area_, area_.Width(), area_.Height()}, {current_, kWholePicture, kWholePicture}};
    decoder_.DrawOnAll(frame, targets);
    ScanMotion(current_, reference_, overlay_, settings_, [] { return true; });
  }
  Surface Shown() override { return area_; }

 private:
  TurboJpegDecoder decoder_;
  Surface area_;
  Surface current_{89, 82};
  Surface reference_{89, 82};
  Surface overlay_{89, 82};
  MotionSettings settings_;
};

}  // namespace

std::unique_ptr<Pipeline> ViewerPipeline(int width, int height) {
  return std::make_unique<Viewer>(width, height);
}
std::unique_ptr<Pipeline> PartsPipeline(int width, int height) {
  return std::make_unique<Parts>(width, height);
}

}  // namespace orbelcast::bench
