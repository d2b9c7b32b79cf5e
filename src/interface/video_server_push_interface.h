#pragma once

#include <array>
#include <tuple>

#include "interface/describe.h"
#include "viewer/video_server_push.h"

namespace orbelcast::interface {

namespace video_server_push {

using Control = VideoServerPush;

inline constexpr std::tuple kProperties{
    Property("FrameRate", 0x68030000, &Control::FrameRate, &Control::FrameRate,
             "Pictures asked for a second, 1 to 30; 1 at first. What is beyond becomes the nearest, which the let "
             "writes back into `value`."),
    ReadOnly("Server", 0x68030001, &Control::Server, "Always empty."),
    Property("ShowBandwidth", 0x68030002, &Control::ShowBandwidth, &Control::ShowBandwidth,
             "Shows the status strip. Connecting, disconnecting and `ShowStatus` show it as well."),
    Property("MotionDetector", 0x68030003, &Control::MotionDetector, &Control::MotionDetector,
             "Looks for motion in each frame: in the rectangle `MotionArea_…`, or in zones with `MotionByZones`."),
    Property("Username", 0x68030004, &Control::Username, &Control::Username,
             "The user's name, sent once the server asks for one (Basic or Digest), and from then on at once."),
    Property("Password", 0x68030005, &Control::Password, &Control::Password,
             "The user's password, sent together with the name."),
    Property("DirectToDisk", 0x68030006, &Control::DirectToDisk, &Control::DirectToDisk,
             "Kept for the host; it changes nothing."),
    Property(
        "MotionArea_Y2", 0x68030007, &Control::MotionArea_Y2, &Control::MotionArea_Y2,
        "The lower edge of the watched rectangle, in hundredths of the picture's height. What lies below it is watched "
        "all the same. Any number is stored; with all four edges 0, as they are at first, nothing is watched."),
    Property("MotionArea_y1", 0x68030008, &Control::MotionArea_y1, &Control::MotionArea_y1,
             "The upper edge of the watched rectangle, in hundredths of the picture's height."),
    Property("MotionArea_x2", 0x68030009, &Control::MotionArea_x2, &Control::MotionArea_x2,
             "The right edge of the watched rectangle, in hundredths of the picture's width."),
    Property("MotionArea_x1", 0x6803000a, &Control::MotionArea_x1, &Control::MotionArea_x1,
             "The left edge of the watched rectangle, in hundredths of the picture's width."),
    Property("MotionSensivity", 0x6803000b, &Control::MotionSensivity, &Control::MotionSensivity,
             "Write: how small a change counts as motion, in percent (100 takes any, what is beyond counts as 100); "
             "the let writes 100 minus it back into `value`. Read: the threshold that it was made into, a difference "
             "of grey levels in percent of 256, 0 to 255."),
    Property("ShowMotion", 0x6803000c, &Control::ShowMotion, &Control::ShowMotion,
             "Shows what the motion detection sees in a corner of the picture, while `MotionDetector` is on."),
    Property("AlwaysSmooth", 0x6803000d, &Control::AlwaysSmooth, &Control::AlwaysSmooth,
             "Kept for the host; it changes nothing."),
    Property("DisableTestScreen", 0x6803000e, &Control::DisableTestScreen, &Control::DisableTestScreen,
             "When true, `Connect` leaves the last picture on screen while it connects, instead of the test card."),
    Property("MotionByZones", 0x6803004d, &Control::MotionByZones, &Control::MotionByZones,
             "Watches the zones of `MotionString` instead of the rectangle. Yields."),
    Property("MotionString", 0x6803004e, &Control::MotionString, &Control::MotionString,
             "One character a zone, 25 zones in five rows from the top; \"0\" excludes the zone, anything else, and a "
             "text that is too short, includes it. Yields."),
    ReadOnly("URL", 0x6803004f, &Control::URL,
             "The address of the stream that is connected; empty after `Disconnect`. It may hold a password, as it was "
             "given."),
    Property("AutoReconnect", 0x68030050, &Control::AutoReconnect, &Control::AutoReconnect,
             "Retries silently and for ever instead of reporting failures.")};

inline constexpr std::tuple kMethods{
    Method("Connect", 0x6003000f, &Control::Connect, {"URL", Optional("OnlyOnce"), Optional("msg")},
           "Opens a stream, or with `OnlyOnce` fetches and shows one picture. `URL` is the whole address and begins "
           "with \"http://\" in any letter case; any other is ignored. `msg` is shown in a box while the first request "
           "is under way. Waits for the first answer, 20 seconds for the connection and 60 for the picture at most. "
           "What becomes of it is told by `Connected`, or `ConnectionFailed`; a newer `Connect` takes over."),
    Method("ImageOnClipboard", 0x60030010, &Control::ImageOnClipboard, {},
           "Puts the picture that is shown on the clipboard, at the size at which it is shown."),
    Method("SaveImage", 0x60030011, &Control::SaveImage, {"Filename"},
           "Saves the picture that is shown as the file `Filename`, replacing it: of a stream the server's JPEG byte "
           "for byte, of a mosaic or the test card a bitmap, whatever the name ends in. A name that cannot be written "
           "leaves no file."),
    Method("Disconnect", 0x60030012, &Control::Disconnect, {Optional("NoNewStatus")},
           "Ends the stream and shows the test card. With `NoNewStatus` the status texts stay as they are."),
    Method("StopGettingFrames", 0x6003001b, &Control::StopGettingFrames, {},
           "Lets one more tick fetch its picture, then stops; the last picture stays on screen."),
    Method("ShowStatus", 0x6003001d, &Control::ShowStatus, {"X"},
           "Shows `X` on the status line, and the status strip. Yields."),
    Method("ToogleClock", 0x60030033, &Control::ToogleClock, {"X"},
           "Pauses (false) or resumes (true) the frame loop without touching the connection."),
    Method("Pulse", 0x6003003f, &Control::Pulse, {},
           "Steps one frame with the frame loop switched off. Nothing before the first frame."),
    Method("RequestEnd", 0x6003004c, &Control::RequestEnd, {},
           "Treats the answer that the request object holds as a frame."),
    Method("MultiCamView", 0x60030064, &Control::MultiCamView, {"inpString"},
           "Shows several cameras as a grid, one tile every half second, until the next `Connect`. `inpString` holds "
           "the cameras' live addresses, each followed by CR LF; an empty one does nothing. A tile's request blocks "
           "the thread until the picture is there, for five seconds at most; a tile without an answer is black. "
           "`StreamInfo` (0, 1) is raised once a round."),
    Method("GetPictureArray", 0x60030065, &Control::GetPictureArray, {},
           "A copy of the newest answer's bytes, a JPEG as the server sent it; empty before the first."),
    Method("GetPicture", 0x60030066, &Control::GetPicture, {},
           "The newest picture at its own size, in pixels; nothing where there is none or it cannot be read."),
    Method(
        "RenderPicture", 0x60030067, &Control::RenderPicture, {"PictureHdc", Optional("sX"), Optional("sY")},
        "Draws the newest picture at the top-left corner of the host's surface that `PictureHdc` stands for, stretched "
        "to `sX` × `sY` pixels; 0 is the picture's own size. Nothing where there is no such surface or no picture.")};

using Events = VideoServerPushEvents;

inline constexpr std::tuple kEvents{
    Event("StreamInfo", 1, &Events::StreamInfo, {"BytesPerSecond", "FrameRate"},
          "Once a clock second while pictures come: bytes received and frames shown since the last time. A second in "
          "which less than half a kilobyte came has none. Of a mosaic once a round, as (0, 1)."),
    Event("MotionDetected", 2, &Events::MotionDetected, {"X1", "Y1", "X2", "Y2"},
          "Motion, with `MotionDetector` on: its bounding box in hundredths of the picture's width and height; X1 is "
          "the column of the first sample found, not the leftmost one."),
    Event("Connected", 3, &Events::Connected, {},
          "The server has answered with status 200 and the stream runs; for a stream once more with its second new "
          "frame."),
    Event("Disconnected", 4, &Events::Disconnected, {},
          "`Disconnect` has ended the stream, also the one that a failed `Connect` makes."),
    Event("ConnectionFailed", 5, &Events::ConnectionFailed, {},
          "`Connect` got no answer, or another status than 200; the `Status` before it tells which. Not with "
          "`AutoReconnect`."),
    Event("ConnectionFailedV2", 6, &Events::ConnectionFailedV2, {"xUrl", "xType"},
          "The same, right after it: the address that failed, and whether a single picture was asked for."),
    Event("ConnectionBroken", 7, &Events::ConnectionBroken, {},
          "Five frame requests in a row have failed; raised again after each further five. The viewer goes on trying. "
          "Not with `AutoReconnect`."),
    Event("Status", 8, &Events::Status, {"xDesc"}, "The status line's new text, in the language of the text mapper."),
    Event("VigilboxInfo", 9, &Events::VigilboxInfo, {"rX"},
          "The first answer's header \"VigilboxInfo\", whatever the answer's status, where it begins with \"1\"."),
    Event(
        "VigilboxTCR", 10, &Events::VigilboxTCR,
        {"xYear", "xMonth", "xDay", "xHour", "xMinute", "xSecond", "xDs", "xTCR"},
        "Each frame's time, and the first answer's: the parts of the header \"RC_TCR\" by their position, whatever "
        "they hold, and the header as a whole; `xDs` is \"00\". A frame without that header has this machine's clock."),
    Event("MouseDown", 11, &Events::MouseDown, {"Button"},
          "A mouse button was pressed over the picture: 1 left, 2 right, 4 middle. Over the video the left one alone, "
          "over the test card any."),
    Event("RCQueryMethod", 12, &Events::RCQueryMethod, {"Rc_Query"}, "Declared; nothing raises it."),
    Event("Plugin", 13, &Events::Plugin, {"Plugin"}, "The first answer's header \"PlugIns\", where there is one."),
    Event("OLEDragDrop", 14, &Events::OLEDragDrop, {"Data", "Effect", "Button", "Shift", "X", "y"},
          "Something was dropped on the picture: what it holds by media type, the effect that the source expects (a "
          "listener may change it), the buttons and keys held, and the place in twips of the control that was dropped "
          "on."),
    Event("MotionArea", 15, &Events::MotionArea, {"X1", "Y1", "X2", "Y2"},
          "Right before `MotionDetected`, with the same box."),
    Event("MotionDetectedArea", 16, &Events::MotionDetectedArea, {"Area"},
          "Right after `MotionDetected`: the zone of the first sample found, 1 to 25; −1 where the rectangle is "
          "watched.")};

}  // namespace video_server_push

/// The interface of VideoServerPush.
inline constexpr ControlInterface kVideoServerPush{"VideoServerPush",
                                                   "Orbelcast stream viewer",
                                                   kEntries<PropertyOf, video_server_push::kProperties>,
                                                   kEntries<MethodOf, video_server_push::kMethods>,
                                                   kEntries<EventOf, video_server_push::kEvents>,
                                                   {}};

}  // namespace orbelcast::interface
