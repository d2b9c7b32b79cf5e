#include "server/control_class.h"
#include "viewer/video_server_push.h"

namespace orbelcast::server {

namespace {

using Viewer = VideoServerPush;
using Value = ArgumentValue;
using Values = std::span<ArgumentValue>;

const PropertyBinding<Viewer> kProperties[] = {
    {"FrameRate", [](Viewer& v) -> ResultValue { return v.FrameRate(); },
     [](Viewer& v, Value& x) { v.FrameRate(Integer(x)); }},
    {"Server", [](Viewer& v) -> ResultValue { return v.Server(); }},
    {"ShowBandwidth", [](Viewer& v) -> ResultValue { return v.ShowBandwidth(); },
     [](Viewer& v, Value& x) { v.ShowBandwidth(Boolean(x)); }},
    {"MotionDetector", [](Viewer& v) -> ResultValue { return v.MotionDetector(); },
     [](Viewer& v, Value& x) { v.MotionDetector(Boolean(x)); }},
    {"Username", [](Viewer& v) -> ResultValue { return v.Username(); },
     [](Viewer& v, Value& x) { v.Username(Text(x)); }},
    {"Password", [](Viewer& v) -> ResultValue { return v.Password(); },
     [](Viewer& v, Value& x) { v.Password(Text(x)); }},
    {"DirectToDisk", [](Viewer& v) -> ResultValue { return v.DirectToDisk(); },
     [](Viewer& v, Value& x) { v.DirectToDisk(Boolean(x)); }},
    {"MotionArea_Y2", [](Viewer& v) -> ResultValue { return v.MotionArea_Y2(); },
     [](Viewer& v, Value& x) { v.MotionArea_Y2(Long(x)); }},
    {"MotionArea_y1", [](Viewer& v) -> ResultValue { return v.MotionArea_y1(); },
     [](Viewer& v, Value& x) { v.MotionArea_y1(Long(x)); }},
    {"MotionArea_x2", [](Viewer& v) -> ResultValue { return v.MotionArea_x2(); },
     [](Viewer& v, Value& x) { v.MotionArea_x2(Long(x)); }},
    {"MotionArea_x1", [](Viewer& v) -> ResultValue { return v.MotionArea_x1(); },
     [](Viewer& v, Value& x) { v.MotionArea_x1(Long(x)); }},
    {"MotionSensivity", [](Viewer& v) -> ResultValue { return v.MotionSensivity(); },
     [](Viewer& v, Value& x) { v.MotionSensivity(Long(x)); }},
    {"ShowMotion", [](Viewer& v) -> ResultValue { return v.ShowMotion(); },
     [](Viewer& v, Value& x) { v.ShowMotion(Boolean(x)); }},
    {"AlwaysSmooth", [](Viewer& v) -> ResultValue { return v.AlwaysSmooth(); },
     [](Viewer& v, Value& x) { v.AlwaysSmooth(Boolean(x)); }},
    {"DisableTestScreen", [](Viewer& v) -> ResultValue { return v.DisableTestScreen(); },
     [](Viewer& v, Value& x) { v.DisableTestScreen(Boolean(x)); }},
    {"MotionByZones", [](Viewer& v) -> ResultValue { return v.MotionByZones(); },
     [](Viewer& v, Value& x) { v.MotionByZones(Boolean(x)); }},
    {"MotionString", [](Viewer& v) -> ResultValue { return v.MotionString(); },
     [](Viewer& v, Value& x) { v.MotionString(Text(x)); }},
    {"URL", [](Viewer& v) -> ResultValue { return v.URL(); }},
    {"AutoReconnect", [](Viewer& v) -> ResultValue { return v.AutoReconnect(); },
     [](Viewer& v, Value& x) { v.AutoReconnect(Boolean(x)); }},
};

const MethodBinding<Viewer> kMethods[] = {
    {"Connect", Sub<Viewer, [](Viewer& v, Values a) { v.Connect(Text(a[0]), Boolean(a[1]), Text(a[2])); }>},
    {"ImageOnClipboard", Sub<Viewer, [](Viewer& v, Values) { v.ImageOnClipboard(); }>},
    {"SaveImage", Sub<Viewer, [](Viewer& v, Values a) { v.SaveImage(Text(a[0])); }>},
    {"Disconnect", Sub<Viewer, [](Viewer& v, Values a) { v.Disconnect(Boolean(a[0])); }>},
    {"StopGettingFrames", Sub<Viewer, [](Viewer& v, Values) { v.StopGettingFrames(); }>},
    {"ShowStatus", Sub<Viewer, [](Viewer& v, Values a) { v.ShowStatus(Text(a[0])); }>},
    {"ToogleClock", Sub<Viewer, [](Viewer& v, Values a) { v.ToogleClock(Boolean(a[0])); }>},
    {"Pulse", Sub<Viewer, [](Viewer& v, Values) { v.Pulse(); }>},
    {"RequestEnd", Sub<Viewer, [](Viewer& v, Values) { v.RequestEnd(); }>},
    {"MultiCamView", Sub<Viewer, [](Viewer& v, Values a) { v.MultiCamView(Text(a[0])); }>},
    {"GetPictureArray", [](Viewer& v, Values) -> ResultValue { return v.GetPictureArray(); }},
    {"GetPicture", [](Viewer& v, Values) -> ResultValue { return v.GetPicture(); }},
    {"RenderPicture", Sub<Viewer, [](Viewer& v, Values a) { v.RenderPicture(Long(a[0]), Long(a[1]), Long(a[2])); }>},
};

class Model final : public BoundModel<Viewer> {
 public:
  explicit Model(std::shared_ptr<VideoServerPush> viewer) : BoundModel(std::move(viewer), kProperties, kMethods) {}

  void Place(float width, float height) override { Controlled().Resize(width, height); }
  void Hide() override { Controlled().UserControl_Hide(); }
  void ListenToAll(EventListener listener) override {
    orbelcast::ListenToAll(Controlled().Events, std::move(listener));
  }
  VideoServerPush* Viewer() override { return &Controlled(); }
};

}  // namespace

std::unique_ptr<ControlModel> CreateVideoServerPush(Platform& platform) {
  return std::make_unique<Model>(VideoServerPush::Create(platform));
}

std::unique_ptr<ControlModel> ModelOf(VideoServerPush& viewer) {
  return std::make_unique<Model>(std::shared_ptr<VideoServerPush>(std::shared_ptr<void>(), &viewer));
}

}  // namespace orbelcast::server
