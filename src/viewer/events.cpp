#include "viewer/events.h"

namespace orbelcast {

void VideoServerPushEvents::Clear() {
  StreamInfo.Clear();
  MotionDetected.Clear();
  Connected.Clear();
  Disconnected.Clear();
  ConnectionFailed.Clear();
  ConnectionFailedV2.Clear();
  ConnectionBroken.Clear();
  Status.Clear();
  VigilboxInfo.Clear();
  VigilboxTCR.Clear();
  MouseDown.Clear();
  RCQueryMethod.Clear();
  Plugin.Clear();
  OLEDragDrop.Clear();
  MotionArea.Clear();
  MotionDetectedArea.Clear();
}

}  // namespace orbelcast
