#pragma once

#include <cstdint>
#include <string>

#include "toolkit/controls.h"
#include "toolkit/signal.h"

namespace orbelcast {

/// The events of a VideoServerPush. Listeners run where the control is at that moment, in the middle of its work:
/// they may call any member, wait, or release the control.
///
/// Arguments are references to copies, as the interface has them; MotionDetected's are values.
struct VideoServerPushEvents {
  /// Once a clock second while pictures come: bytes received and frames shown since the last time. A second in which
  /// less than half a kilobyte came has none. Of a mosaic once a round, as (0, 1).
  Signal<std::int32_t& /*BytesPerSecond*/, std::int32_t& /*FrameRate*/> StreamInfo;
  /// Motion, with `MotionDetector` on: its bounding box in hundredths of the picture's width and height; X1 is the
  /// column of the first sample found, not the leftmost one.
  Signal<std::int32_t /*X1*/, std::int32_t /*Y1*/, std::int32_t /*X2*/, std::int32_t /*Y2*/> MotionDetected;
  /// The server has answered with status 200 and the stream runs; for a stream once more with its second new frame.
  Signal<> Connected;
  /// `Disconnect` has ended the stream, also the one that a failed `Connect` makes.
  Signal<> Disconnected;
  /// `Connect` got no answer, or another status than 200; the `Status` before it tells which. Not with `AutoReconnect`.
  Signal<> ConnectionFailed;
  /// The same, right after it: the address that failed, and whether a single picture was asked for.
  Signal<std::string& /*xUrl*/, bool& /*xType*/> ConnectionFailedV2;
  /// Five frame requests in a row have failed; raised again after each further five. The viewer goes on trying. Not
  /// with `AutoReconnect`.
  Signal<> ConnectionBroken;
  /// The status line's new text, in the language of the text mapper.
  Signal<std::string& /*xDesc*/> Status;
  /// The first answer's header "VigilboxInfo", whatever the answer's status, where it begins with "1".
  Signal<std::string& /*rX*/> VigilboxInfo;
  /// Each frame's time, and the first answer's: the parts of the header "RC_TCR" by their position, whatever they hold,
  /// and the header as a whole; `xDs` is "00". A frame without that header has this machine's clock.
  Signal<std::string& /*xYear*/, std::string& /*xMonth*/, std::string& /*xDay*/, std::string& /*xHour*/,
         std::string& /*xMinute*/, std::string& /*xSecond*/, std::string& /*xDs*/, std::string& /*xTCR*/>
      VigilboxTCR;
  /// A mouse button was pressed over the picture: 1 left, 2 right, 4 middle. Over the video the left one alone, over
  /// the test card any.
  Signal<std::int16_t& /*Button*/> MouseDown;
  /// Declared; nothing raises it.
  Signal<std::string& /*Rc_Query*/> RCQueryMethod;
  /// The first answer's header "PlugIns", where there is one.
  Signal<std::string& /*Plugin*/> Plugin;
  /// Something was dropped on the picture: what it holds by media type, the effect that the source expects (a listener
  /// may change it), the buttons and keys held, and the place in twips of the control that was dropped on.
  Signal<DropData& /*Data*/, std::int32_t& /*Effect*/, std::int16_t& /*Button*/, std::int16_t& /*Shift*/, float& /*X*/,
         float& /*y*/>
      OLEDragDrop;
  /// Right before `MotionDetected`, with the same box.
  Signal<std::int32_t& /*X1*/, std::int32_t& /*Y1*/, std::int32_t& /*X2*/, std::int32_t& /*Y2*/> MotionArea;
  /// Right after `MotionDetected`: the zone of the first sample found, 1 to 25; −1 where the rectangle is watched.
  Signal<std::int16_t& /*Area*/> MotionDetectedArea;

  /// Forgets every listener.
  void Clear();
};

}  // namespace orbelcast
