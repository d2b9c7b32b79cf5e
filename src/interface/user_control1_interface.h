#pragma once

#include <array>
#include <tuple>

#include "interface/describe.h"
#include "player/user_control1.h"

namespace orbelcast::interface {

namespace user_control1 {

using Control = UserControl1;

inline constexpr std::tuple kProperties{
    ReadOnly("SystemName", 0x6803002b, &Control::SystemName,
             "The name that the server gives itself; its address where it gave none."),
    Property(
        "ShowExtendedFeatures", 0x6803002c, &Control::ShowExtendedFeatures, &Control::ShowExtendedFeatures,
        "Whether the toolbar has its extended buttons: log, alerts, inputs and outputs, message, several cameras.")};

inline constexpr std::tuple kMethods{
    Method("AviStart", 0x60030008, &Control::AviStart, {},
           "Begins a clip: asks for a file and a compression, then takes a picture at each `StreamInfo` of the viewer. "
           "Ends a clip that is being recorded. Where an answer is cancelled, or there is no picture, none begins."),
    Method("StopAvi", 0x60030011, &Control::StopAvi, {},
           "Ends the clip and tells \"Total frames\" in a message box: the clip's next position, one more than its "
           "pictures. The box is shown where none is being recorded, too."),
    Method("RefreshURLs", 0x60030018, &Control::RefreshURLs, {"l", "i"},
           "Takes `l` as the camera's live address and `i` as its archive address, each beginning with \"http://\", "
           "and shows the live stream."),
    Method("DoResize", 0x60030022, &Control::DoResize, {"X"},
           "Whether the children follow the control's size, from the next resize on."),
    Method("Connect2Server", 0x6003002a, &Control::Connect2Server, {"xServer", "xUsername", "xPassword"},
           "Loads the camera list of a server, a host or host:port; the port that was set before is forgotten. Waits "
           "for the answer, at most 10 seconds for the connection and 10 for the answer. A server that does not answer "
           "gives an empty list; an empty `xServer` changes nothing but what the host has kept. A newer call takes "
           "over: what an older one, or a button of the toolbar, still waits for is not looked at any more."),
    Method("SetMultiCams", 0x60030037, &Control::SetMultiCams, {},
           "Opens the chooser of cameras, a modal window, and shows those that were chosen together.")};

inline constexpr std::array<PersistedEntry, 12> kPersisted{{
    {"Server",
     "The camera server, a host name or address; the player asks it for its cameras when it is shown. Empty: it plays "
     "LURL."},
    {"Port", "The server's port. Empty is 80."},
    {"Username", "The user name at the server."},
    {"Password", "The password at the server."},
    {"LURL", "Without a server: the address of the live stream, beginning with http://."},
    {"IURL", "Without a server: the address that archive steps are added to, beginning with http://."},
    {"Start", "Yes: show the stream of LURL at once."},
    {"ExtendedControls", "Yes: show the buttons for log, messages, alerts, outputs and several cameras."},
    {"Device", "The id of the camera to begin with, as the server names it. Empty: the user chooses one."},
    {"_ExtentX",
     "A width. Where both extents are set, everything in the player stays at its place when it is resized."},
    {"_ExtentY",
     "A height. Where both extents are set, everything in the player stays at its place when it is resized."},
    {"_Resize", "Yes: everything follows the player's size, also where both extents are set."},
}};

}  // namespace user_control1

/// The interface of UserControl1.
inline constexpr ControlInterface kUserControl1{"UserControl1",
                                                "Orbelcast player",
                                                kEntries<PropertyOf, user_control1::kProperties>,
                                                kEntries<MethodOf, user_control1::kMethods>,
                                                {},
                                                user_control1::kPersisted};

}  // namespace orbelcast::interface
