#include "router.h"

#include <memory>
#include <string>
#include <utility>

#include "home_page.h"
#include "live_address.h"

namespace orbelcast::camera_server {

namespace {

constexpr int kVideoNotFound = 506;

std::string StatusLine(const std::string& name, int viewers) {
  return name + ": " + std::to_string(viewers) + (viewers == 1 ? " viewer" : " viewers");
}

}  // namespace

Reply Router::Answer(const Request& request, const Client& client) {
  if (request.Path() == "/") return AnswerHome();
  if (request.Path().starts_with("/live/")) return AnswerLive(request, client);
  return {TextResponse(404, "There is nothing here. The cameras are at /live/1, /live/2, and so on; / lists them."),
          {}};
}

Reply Router::AnswerHome() const {
  Response response;
  response.headers = {{"Content-Type", "text/html; charset=utf-8"}, {"Cache-Control", "no-store"}};
  response.body = std::make_shared<const std::string>(HomePage(settings_));
  return {std::move(response), {}};
}

Reply Router::AnswerLive(const Request& request, const Client& client) {
  const LiveAddress address = ParseLiveAddress(request.target, settings_.form).value_or(LiveAddress{});
  if (!settings_.HasCamera(address.camera)) return {TextResponse(kVideoNotFound, "There is no such camera."), {}};
  const Picture picture = pictures_.Take(address.camera, address.form);
  Response response;
  response.headers = {
      {"Content-Type", "image/jpeg"},
      {"Cache-Control", "no-store"},
      {"RC_TCR", TimeCode(picture.time)},
      {"Recording", settings_.IsRecording(address.camera, picture.time) ? "Yes" : "No"},
      {"HolmvaneStatus", StatusLine(settings_.NameOf(address.camera), viewers_.Note(client.id, address.camera))},
  };
  if (!settings_.vigilbox_info.empty()) response.headers.emplace_back("VigilboxInfo", settings_.vigilbox_info);
  if (!settings_.plug_ins.empty()) response.headers.emplace_back("PlugIns", settings_.plug_ins);
  response.body = picture.jpeg;
  return {std::move(response), {}};
}

}  // namespace orbelcast::camera_server
