#include "picture_answer.h"

#include "time_text.h"

namespace orbelcast::camera_server {

Response PictureAnswer(const Settings& settings, int camera, const Picture& picture, const std::string& status) {
  Response response;
  response.headers = {
      {"Content-Type", "image/jpeg"},
      {"Cache-Control", "no-store"},
      {"RC_TCR", TimeCode(picture.time)},
      {"Recording", settings.IsRecording(camera, WallClock::now()) ? "Yes" : "No"},
      {"HolmvaneStatus", settings.NameOf(camera) + ": " + status},
  };
  if (!settings.vigilbox_info.empty()) response.headers.emplace_back("VigilboxInfo", settings.vigilbox_info);
  if (!settings.plug_ins.empty()) response.headers.emplace_back("PlugIns", settings.plug_ins);
  response.body = picture.jpeg;
  return response;
}

}  // namespace orbelcast::camera_server
