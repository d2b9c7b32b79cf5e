#include "viewer/interface.h"

#include <array>
#include <memory>

#include "viewer/video_server_push.h"

namespace orbelcast {

namespace {

using enum ValueType;

constexpr ArgumentEntry kConnect[] = {{"URL", kText}, {"OnlyOnce", kBoolean, true}, {"msg", kText, true}};
constexpr ArgumentEntry kSaveImage[] = {{"Filename", kText}};
constexpr ArgumentEntry kDisconnect[] = {{"NoNewStatus", kBoolean, true}};
constexpr ArgumentEntry kShowStatus[] = {{"X", kText}};
constexpr ArgumentEntry kToogleClock[] = {{"X", kBoolean}};
constexpr ArgumentEntry kMultiCamView[] = {{"inpString", kText}};
constexpr ArgumentEntry kRenderPicture[] = {{"PictureHdc", kLong}, {"sX", kLong, true}, {"sY", kLong, true}};

constexpr ArgumentEntry kStreamInfo[] = {{"BytesPerSecond", kLong}, {"FrameRate", kLong}};
constexpr ArgumentEntry kMotionDetected[] = {
    {"X1", kLong, false, true}, {"Y1", kLong, false, true}, {"X2", kLong, false, true}, {"Y2", kLong, false, true}};
constexpr ArgumentEntry kConnectionFailedV2[] = {{"xUrl", kText}, {"xType", kBoolean}};
constexpr ArgumentEntry kStatus[] = {{"xDesc", kText}};
constexpr ArgumentEntry kVigilboxInfo[] = {{"rX", kText}};
constexpr ArgumentEntry kVigilboxTcr[] = {{"xYear", kText},   {"xMonth", kText},  {"xDay", kText}, {"xHour", kText},
                                          {"xMinute", kText}, {"xSecond", kText}, {"xDs", kText},  {"xTCR", kText}};
constexpr ArgumentEntry kMouseDown[] = {{"Button", kInteger}};
constexpr ArgumentEntry kRcQueryMethod[] = {{"Rc_Query", kText}};
constexpr ArgumentEntry kPlugin[] = {{"Plugin", kText}};
constexpr ArgumentEntry kOleDragDrop[] = {{"Data", kData},     {"Effect", kLong}, {"Button", kInteger},
                                          {"Shift", kInteger}, {"X", kSingle},    {"y", kSingle}};
constexpr ArgumentEntry kMotionArea[] = {{"X1", kLong}, {"Y1", kLong}, {"X2", kLong}, {"Y2", kLong}};
constexpr ArgumentEntry kMotionDetectedArea[] = {{"Area", kInteger}};

constexpr PropertyEntry kProperties[] = {
    {"FrameRate", 0x68030000, kInteger, true},
    {"Server", 0x68030001, kText, false},
    {"ShowBandwidth", 0x68030002, kBoolean, true},
    {"MotionDetector", 0x68030003, kBoolean, true},
    {"Username", 0x68030004, kText, true},
    {"Password", 0x68030005, kText, true},
    {"DirectToDisk", 0x68030006, kBoolean, true},
    {"MotionArea_Y2", 0x68030007, kLong, true},
    {"MotionArea_y1", 0x68030008, kLong, true},
    {"MotionArea_x2", 0x68030009, kLong, true},
    {"MotionArea_x1", 0x6803000a, kLong, true},
    {"MotionSensivity", 0x6803000b, kLong, true},
    {"ShowMotion", 0x6803000c, kBoolean, true},
    {"AlwaysSmooth", 0x6803000d, kBoolean, true},
    {"DisableTestScreen", 0x6803000e, kBoolean, true},
    {"MotionByZones", 0x6803004d, kBoolean, true},
    {"MotionString", 0x6803004e, kText, true},
    {"URL", 0x6803004f, kText, false},
    {"AutoReconnect", 0x68030050, kBoolean, true},
};

constexpr MethodEntry kMethods[] = {
    {"Connect", 0x6003000f, kConnect, kNone},
    {"ImageOnClipboard", 0x60030010, {}, kNone},
    {"SaveImage", 0x60030011, kSaveImage, kNone},
    {"Disconnect", 0x60030012, kDisconnect, kNone},
    {"StopGettingFrames", 0x6003001b, {}, kNone},
    {"ShowStatus", 0x6003001d, kShowStatus, kNone},
    {"ToogleClock", 0x60030033, kToogleClock, kNone},
    {"Pulse", 0x6003003f, {}, kNone},
    {"RequestEnd", 0x6003004c, {}, kNone},
    {"MultiCamView", 0x60030064, kMultiCamView, kNone},
    {"GetPictureArray", 0x60030065, {}, kVariant},
    {"GetPicture", 0x60030066, {}, kPicture},
    {"RenderPicture", 0x60030067, kRenderPicture, kNone},
};

constexpr EventEntry kEvents[] = {
    {"StreamInfo", 1, kStreamInfo},
    {"MotionDetected", 2, kMotionDetected},
    {"Connected", 3, {}},
    {"Disconnected", 4, {}},
    {"ConnectionFailed", 5, {}},
    {"ConnectionFailedV2", 6, kConnectionFailedV2},
    {"ConnectionBroken", 7, {}},
    {"Status", 8, kStatus},
    {"VigilboxInfo", 9, kVigilboxInfo},
    {"VigilboxTCR", 10, kVigilboxTcr},
    {"MouseDown", 11, kMouseDown},
    {"RCQueryMethod", 12, kRcQueryMethod},
    {"Plugin", 13, kPlugin},
    {"OLEDragDrop", 14, kOleDragDrop},
    {"MotionArea", 15, kMotionArea},
    {"MotionDetectedArea", 16, kMotionDetectedArea},
};

template <typename... Args>
void Forward(Signal<Args...>& signal, const EventEntry& entry, const std::shared_ptr<EventListener>& listener) {
  signal.Listen([&entry, listener](Args... args) {
    const std::array<EventArgument, sizeof...(Args)> arguments{EventArgument(&args)...};
    (*listener)(entry, arguments);
  });
}

}  // namespace

std::span<const PropertyEntry> video_server_push_interface::Properties() {
  return kProperties;
}
std::span<const MethodEntry> video_server_push_interface::Methods() {
  return kMethods;
}
std::span<const EventEntry> video_server_push_interface::Events() {
  return kEvents;
}

void ListenToAll(VideoServerPushEvents& events, EventListener listener) {
  const auto shared = std::make_shared<EventListener>(std::move(listener));
  Forward(events.StreamInfo, kEvents[0], shared);
  Forward(events.MotionDetected, kEvents[1], shared);
  Forward(events.Connected, kEvents[2], shared);
  Forward(events.Disconnected, kEvents[3], shared);
  Forward(events.ConnectionFailed, kEvents[4], shared);
  Forward(events.ConnectionFailedV2, kEvents[5], shared);
  Forward(events.ConnectionBroken, kEvents[6], shared);
  Forward(events.Status, kEvents[7], shared);
  Forward(events.VigilboxInfo, kEvents[8], shared);
  Forward(events.VigilboxTCR, kEvents[9], shared);
  Forward(events.MouseDown, kEvents[10], shared);
  Forward(events.RCQueryMethod, kEvents[11], shared);
  Forward(events.Plugin, kEvents[12], shared);
  Forward(events.OLEDragDrop, kEvents[13], shared);
  Forward(events.MotionArea, kEvents[14], shared);
  Forward(events.MotionDetectedArea, kEvents[15], shared);
}

}  // namespace orbelcast
