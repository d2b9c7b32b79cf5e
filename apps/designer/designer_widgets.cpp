#include "designer/designer_widgets.h"

#include <orbelcast/player_widget.h>
#include <orbelcast/video_server_push_widget.h>

#include <algorithm>
#include <array>
#include <initializer_list>

#include "interface/user_control1_interface.h"
#include "interface/video_server_push_interface.h"

namespace orbelcast {

namespace {

/// A sentence for Designer alone, after the text of the interface.
constexpr std::string_view NoteFor(std::string_view property) {
  if (property == "Password") return " In a form everybody can read it: better let the program set it.";
  if (property == "ShowExtendedFeatures") return " A form does not keep it: set ExtendedControls there.";
  return {};
}

/// The members of a control that a form can set, its properties and the texts that it keeps for its host, as the
/// interface describes them. At compile time: the plug-in links nothing of the controls.
template <std::size_t Count>
consteval std::array<PropertyDescription, Count> PropertiesOf(const ControlInterface& described,
                                                              std::initializer_list<PropertyDescription> own = {}) {
  std::array<PropertyDescription, Count> properties{};
  auto next = std::copy(own.begin(), own.end(), properties.begin());
  for (const PropertyEntry& property : described.properties) {
    const auto kind = property.type == ValueType::kText ? PropertyKind::kText : PropertyKind::kOther;
    *next++ = {property.name.data(), kind, property.text, NoteFor(property.name)};
  }
  for (const PersistedEntry& kept : described.persisted) {
    *next++ = {kept.key.data(), PropertyKind::kText, kept.text, NoteFor(kept.key)};
  }
  return properties;
}
constexpr std::size_t CountIn(const ControlInterface& described) {
  return described.properties.size() + described.persisted.size();
}

constexpr auto kPlayerProperties = PropertiesOf<CountIn(interface::kUserControl1)>(interface::kUserControl1);
constexpr auto kViewerProperties = PropertiesOf<CountIn(interface::kVideoServerPush) + 1>(
    interface::kVideoServerPush,
    {{"url", PropertyKind::kText,
      "The address of the camera to show, beginning with http://. The form connects it when it is shown, without code.",
      " Nothing is connected while the form is designed."}});

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
       .properties = kPlayerProperties,
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
       .whats_this = "Shows one camera as a sequence of JPEG pictures and tells what happens by signals. Its "
                     "property url is the camera's address; the program may connect it by itself, too: Connect.",
       .size = {400, 260},
       .properties = kViewerProperties,
       .make = [](QWidget* parent) -> QWidget* { return new VideoServerPushWidget(parent); },
       .make_for_design = [](QWidget* parent) -> QWidget* {
         auto* const viewer = new VideoServerPushWidget(parent);
         viewer->ShowDesign();
         return viewer;
       }},
  };
  return widgets;
}

}  // namespace orbelcast
