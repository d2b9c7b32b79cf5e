#include "designer_widgets.h"

#include <orbelcast/player_widget.h>
#include <orbelcast/video_server_push_widget.h>

namespace orbelcast {

namespace {

using enum PropertyKind;

std::vector<PropertyDescription> PlayerProperties() {
  return {
      {"SystemName", kText, "What the camera server calls itself, once it has told."},
      {"ShowExtendedFeatures", kOther,
       "Whether the buttons for log, messages, alerts, outputs and several cameras are shown. To have them in the "
       "program, set ExtendedControls."},
      {"Server", kText,
       "The camera server, a host name or address; the player asks it for its cameras when it is shown. Empty: it "
       "plays "
       "LURL."},
      {"Port", kText, "The server's port. Empty is 80."},
      {"Username", kText, "The user name at the server."},
      {"Password", kText,
       "The password at the server. In a form everybody can read it: better let the program set it."},
      {"LURL", kText, "Without a server: the address of the live stream, beginning with http://."},
      {"IURL", kText, "Without a server: the address that archive steps are added to, beginning with http://."},
      {"Start", kText, "Yes: show the stream of LURL at once."},
      {"ExtendedControls", kText, "Yes: show the buttons for log, messages, alerts, outputs and several cameras."},
      {"Device", kText, "The id of the camera to begin with, as the server names it. Empty: the user chooses one."},
      {"_ExtentX", kText,
       "A width. Where both extents are set, everything in the player stays at its place when it is resized."},
      {"_ExtentY", kText,
       "A height. Where both extents are set, everything in the player stays at its place when it is resized."},
      {"_Resize", kText, "Yes: everything follows the player's size, also where both extents are set."},
  };
}

std::vector<PropertyDescription> ViewerProperties() {
  return {
      {"FrameRate", kOther, "Pictures a second that are asked for, 1 to 30."},
      {"Server", kText, "Always empty."},
      {"ShowBandwidth", kOther, "Show the strip with the state, the bandwidth and the time."},
      {"MotionDetector", kOther, "Tell where something moves: MotionDetected, or MotionDetectedArea with zones."},
      {"Username", kText, "The user name, sent when the server asks for it."},
      {"Password", kText,
       "The password, sent when the server asks for it. In a form everybody can read it: better let the program set "
       "it."},
      {"DirectToDisk", kOther, "Kept for the program; it changes nothing."},
      {"MotionArea_x1", kOther, "Left edge of the watched rectangle, in hundredths of the picture's width."},
      {"MotionArea_y1", kOther, "Upper edge of the watched rectangle, in hundredths of the picture's height."},
      {"MotionArea_x2", kOther,
       "Right edge of the watched rectangle, in hundredths of the picture's width. With all four edges 0 nothing is "
       "watched."},
      {"MotionArea_Y2", kOther,
       "Lower edge of the watched rectangle, in hundredths of the picture's height. With all four edges 0 nothing is "
       "watched."},
      {"ShowMotion", kOther, "Show what the motion detector sees, in the corner of the picture."},
      {"AlwaysSmooth", kOther, "Kept for the program; it changes nothing."},
      {"DisableTestScreen", kOther, "Leave the test card out while a camera is connected to."},
      {"MotionByZones", kOther, "Watch the zones of MotionString instead of the rectangle."},
      {"MotionString", kText,
       "The watched zones: a character for each of 5 × 5, row by row; 0 leaves the zone out, anything else watches "
       "it."},
      {"URL", kText, "The address of the stream that is connected."},
      {"AutoReconnect", kOther, "Try again silently and for ever where a camera fails, instead of telling it."},
  };
}

}  // namespace

const std::vector<WidgetDescription>& DesignerWidgets() {
  static const std::vector<WidgetDescription> widgets{
      {.class_name = "orbelcast::PlayerWidget",
       .header = "orbelcast/player_widget.h",
       .display_name = "Camera Player",
       .object_name = "player",
       .icon = ":/orbelcast/designer/player.png",
       .tool_tip = "A camera server's cameras, with archive, snapshots, clips, alerts and outputs",
       .whats_this =
           "Shows a camera server's cameras, live and from their archive, with a list and a toolbar. Name the "
           "server in its properties, or let the program do it before the player is shown.",
       .size = {353, 396},
       .properties = PlayerProperties(),
       .make = [](QWidget* parent) -> QWidget* { return new PlayerWidget(parent); },
       .make_for_design = [](QWidget* parent) -> QWidget* {
         auto* const player = new PlayerWidget(parent);
         player->ShowDesign();
         return player;
       }},
      {.class_name = "orbelcast::VideoServerPushWidget",
       .header = "orbelcast/video_server_push_widget.h",
       .display_name = "Camera Viewer",
       .object_name = "viewer",
       .icon = ":/orbelcast/designer/viewer.png",
       .tool_tip = "One camera's live picture, with motion detection",
       .whats_this = "Shows one camera as a sequence of JPEG pictures and tells what happens by signals. The program "
                     "connects it to the camera's address: Connect.",
       .size = {400, 260},
       .properties = ViewerProperties(),
       .make = [](QWidget* parent) -> QWidget* { return new VideoServerPushWidget(parent); },
       .make_for_design = [](QWidget* parent) -> QWidget* { return new VideoServerPushWidget(parent); }},
  };
  return widgets;
}

}  // namespace orbelcast
