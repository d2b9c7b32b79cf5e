#include "viewer/children.h"

#include "viewer/video_server_push.h"

namespace orbelcast {

std::vector<NamedChild> Children(VideoServerPush& viewer) {
  std::vector<NamedChild> children{
      {"BuffPic", &viewer.BuffPic},
      {"IconNet", &viewer.IconNet},
      {"WarningFrame", &viewer.WarningFrame},
      {"WarningMsg", &viewer.WarningMsg, &viewer.WarningFrame},
      {"DisconnectIcon", &viewer.DisconnectIcon},
      {"ConnectIcon", &viewer.ConnectIcon},
      {"StopIcon", &viewer.StopIcon},
      {"RecIcon", &viewer.RecIcon},
      {"MotionPicture(0)", &viewer.MotionPicture[0]},
      {"StatusDisplay", &viewer.StatusDisplay},
      {"lStatus", &viewer.lStatus, &viewer.StatusDisplay},
      {"TimeRetrieve", &viewer.TimeRetrieve, &viewer.StatusDisplay},
      {"MotionPicture(2)", &viewer.MotionPicture[2]},
      {"MotionPicture(1)", &viewer.MotionPicture[1]},
      {"VideoStream", &viewer.VideoStream},
      {"Mira", &viewer.Mira},
      {"MasterTimer", &viewer.MasterTimer},
      {"Dummy", &viewer.Dummy},
      {"MultiCam", &viewer.MultiCam},
      {"MainMenu", &viewer.MainMenu},
  };
  for (std::size_t i = 0; i < viewer.Menux.size(); ++i) {
    children.push_back({"Menux(" + std::to_string(i) + ")", &viewer.Menux[i]});
  }
  return children;
}

}  // namespace orbelcast
