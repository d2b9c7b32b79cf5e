#pragma once

#include <cstdint>
#include <string>

#include "toolkit/controls.h"
#include "toolkit/signal.h"

namespace orbelcast {

/// The events of a VideoServerPush. Each one's meaning is in the interface's description,
/// interface/video_server_push_interface.h. Listeners run where the control is at that moment, in the middle of its
/// work: they may call any member, wait, or release the control.
///
/// Arguments are references to copies, as the interface has them; MotionDetected's are values.
struct VideoServerPushEvents {
  Signal<std::int32_t& /*BytesPerSecond*/, std::int32_t& /*FrameRate*/> StreamInfo;
  Signal<std::int32_t /*X1*/, std::int32_t /*Y1*/, std::int32_t /*X2*/, std::int32_t /*Y2*/> MotionDetected;
  Signal<> Connected;
  Signal<> Disconnected;
  Signal<> ConnectionFailed;
  Signal<std::string& /*xUrl*/, bool& /*xType*/> ConnectionFailedV2;
  Signal<> ConnectionBroken;
  Signal<std::string& /*xDesc*/> Status;
  Signal<std::string& /*rX*/> VigilboxInfo;
  Signal<std::string& /*xYear*/, std::string& /*xMonth*/, std::string& /*xDay*/, std::string& /*xHour*/,
         std::string& /*xMinute*/, std::string& /*xSecond*/, std::string& /*xDs*/, std::string& /*xTCR*/>
      VigilboxTCR;
  Signal<std::int16_t& /*Button*/> MouseDown;
  Signal<std::string& /*Rc_Query*/> RCQueryMethod;
  Signal<std::string& /*Plugin*/> Plugin;
  Signal<DropData& /*Data*/, std::int32_t& /*Effect*/, std::int16_t& /*Button*/, std::int16_t& /*Shift*/, float& /*X*/,
         float& /*y*/>
      OLEDragDrop;
  Signal<std::int32_t& /*X1*/, std::int32_t& /*Y1*/, std::int32_t& /*X2*/, std::int32_t& /*Y2*/> MotionArea;
  Signal<std::int16_t& /*Area*/> MotionDetectedArea;

  // For front ends; the interface has no such events.

  /// A new frame of a stream was taken and drawn, and all that it raises has been raised. Not a mosaic's tile, nor a
  /// redraw.
  Signal<> NewFrame;
  /// An address was given that nothing is done with; empty where none was given.
  Signal<const std::string& /*address*/> AddressIgnored;

  /// Forgets every listener.
  void Clear();
};

}  // namespace orbelcast
